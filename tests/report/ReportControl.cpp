// report_control: makes the technician's report on the machine at hand, with the program's own services, and prints its
// path and how many milliseconds that took; "nothing" in the place of the path if it could not be written.
//
// Reads one order a line and ends with its input:   report
#include <chrono>
#include <cstdio>
#include <iostream>
#include <string>

#include "app/NativePlatform.h"
#include "app/Program.h"
#include "platform/posix/TerminationSignals.h"
#include "report/ReportGenerator.h"

int main(int argc, char **argv)
{
    using namespace orvalen;
    using std::chrono::steady_clock;

    const TerminationSignals signals;
    const Program program(argc, argv, signals);
    Platform::install(nativePlatform(QStringLiteral("Orvalen Report")));
    for (std::string order; std::getline(std::cin, order);) {
        if (order != "report")
            return 64;
        const auto began = steady_clock::now();
        const auto path = ReportGenerator::generateAndOpenReport();
        const std::chrono::duration<double, std::milli> took = steady_clock::now() - began;
        std::cout << path.value_or("nothing") << '\n' << took.count() << std::endl;
    }
    std::_Exit(0); // as the program does: background threads may still use the services
}
