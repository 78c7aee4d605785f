// Keeps the machine awake on demand, for a test that plays the services:
//   hold_awake ANSWER START RESPONSE ALL     how many milliseconds it waits for each, and for all together
// Answers each line of standard input by one: "create [TYPE]" by an identifier or "refused", "release IDENTIFIER" by
// "released", "leave" by the id of a process that outlives this one.
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include <spawn.h>
#include <unistd.h>

#include "platform/linux/PowerAssertionsFirstGranted.h"
#include "platform/linux/SleepInhibitorsLinux.h"

namespace {

using namespace orvalen;

PowerAssertionsFirstGranted powerAssertions(char **argv)
{
    const auto patience = [argv](int i) { return std::chrono::milliseconds(std::atoi(argv[i])); };
    return PowerAssertionsFirstGranted(
        linuxSleepInhibitors({.name = "Orvalen", .id = "com.quenmark.Orvalen"},
                             {.answer = patience(1), .start = patience(2), .response = patience(3)}),
        patience(4));
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
    if (argc != 5)
        return 2;
    auto assertions = powerAssertions(argv);
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        std::string order;
        words >> order;
        if (order == "create") {
            std::string type = "PreventUserIdleSystemSleep";
            words >> type;
            const auto identifier = assertions.create({type, 255, "Orvalen: Prevent System Sleep"});
            std::cout << (identifier ? std::to_string(*identifier) : "refused") << std::endl;
        } else if (order == "release") {
            std::uint32_t identifier = 0;
            words >> identifier;
            assertions.release(identifier);
            std::cout << "released" << std::endl;
        } else if (order == "leave") {
            std::cout << leaveProcess() << std::endl;
        }
    }
}
