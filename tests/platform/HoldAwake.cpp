// Keeps the machine awake on demand, for a test that plays the services:
//   hold_awake PATIENCE     in milliseconds, for each answer and for all together; 0 for the usual ones
// Answers each line of standard input by one: "create [TYPE]" by an identifier or "refused", "release IDENTIFIER" by
// "released", "leave" by the id of a process that outlives this one.
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include <spawn.h>
#include <unistd.h>

#include "platform/linux/PowerAssertionsFirstGranted.h"
#include "platform/linux/SleepInhibitorsLinux.h"

namespace {

using namespace orvalen;

std::unique_ptr<PowerAssertions> powerAssertions(std::chrono::milliseconds patience)
{
    const SleepApplicant applicant{"Orvalen", "com.quenmark.Orvalen"};
    if (patience.count() == 0)
        return std::make_unique<PowerAssertionsFirstGranted>(linuxSleepInhibitors(applicant));
    return std::make_unique<PowerAssertionsFirstGranted>(linuxSleepInhibitors(applicant, {patience, patience}),
                                                         patience);
}

pid_t leaveProcess()
{
    std::string name = "sleep";
    std::string time = "600";
    char *arguments[] = {name.data(), time.data(), nullptr};
    pid_t child = -1;
    return ::posix_spawnp(&child, name.c_str(), nullptr, nullptr, arguments, environ) == 0 ? child : -1;
}

} // namespace

int main(int argc, char **argv)
{
    const auto assertions = powerAssertions(std::chrono::milliseconds(argc > 1 ? std::atoi(argv[1]) : 0));
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        std::string order;
        words >> order;
        if (order == "create") {
            std::string type = "PreventUserIdleSystemSleep";
            words >> type;
            const auto identifier = assertions->create({type, 255, "Orvalen: Prevent System Sleep"});
            std::cout << (identifier ? std::to_string(*identifier) : "refused") << std::endl;
        } else if (order == "release") {
            std::uint32_t identifier = 0;
            words >> identifier;
            assertions->release(identifier);
            std::cout << "released" << std::endl;
        } else if (order == "leave") {
            std::cout << leaveProcess() << std::endl;
        }
    }
}
