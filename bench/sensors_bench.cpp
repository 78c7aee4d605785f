// Reading the machine's sensors against a plain loop that opens, reads and closes the same files.
//
//   sensors_bench [sensors]     60 by default
//
// Both read a tree laid out like /sys, alternating; medians of the rounds. Goal: at most 1.5 times the plain loop.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/TemperatureSensorsSysfs.h"
#include "platform/posix/BoundedTemperatureSensors.h"
#include "tests/support/SysfsTree.h"

namespace {

using orvalen::TemperatureSensors;
using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr int rounds = 201;
constexpr int readsPerRound = 20;

std::string coretempWith(int sensors)
{
    std::string tree = "[class/hwmon/hwmon0]\nname = coretemp\n";
    for (int i = 1; i <= sensors; ++i) {
        const std::string file = "temp" + std::to_string(i);
        tree += file + "_input = " + std::to_string(40'000 + i) + "\n";
        tree += file + "_label = Core " + std::to_string(i) + "\n";
    }
    return tree;
}

double plainLoop(const std::vector<std::string> &files)
{
    double sum = 0.0;
    for (const auto &file : files) {
        char text[32] = {};
        const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor < 0 || ::read(descriptor, text, sizeof text - 1) < 0)
            std::abort();
        ::close(descriptor);
        sum += std::strtod(text, nullptr) / 1000.0;
    }
    return sum;
}

template <typename Read>
Microseconds timed(Read read)
{
    const auto start = Clock::now();
    for (int i = 0; i < readsPerRound; ++i)
        read();
    return Microseconds(Clock::now() - start) / readsPerRound;
}

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + rounds / 2, values.end());
    return values[rounds / 2];
}

} // namespace

int main(int argc, char **argv)
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 60;
    const orvalen::test::SysfsTree tree(coretempWith(count));
    std::vector<std::string> files;
    for (int i = 1; i <= count; ++i)
        files.push_back(tree.path("class/hwmon/hwmon0/temp" + std::to_string(i) + "_input"));

    orvalen::TemperatureSensorsSysfs direct(tree.root());
    orvalen::BoundedTemperatureSensors bounded(std::make_unique<orvalen::TemperatureSensorsSysfs>(tree.root()));
    const auto readAll = [count](TemperatureSensors &sensors) {
        const auto readings = sensors.read();
        if (!readings || readings->size() != static_cast<std::size_t>(count)) {
            std::fputs("sensors_bench: not every sensor was read\n", stderr);
            std::exit(1);
        }
    };

    std::vector<double> plain;
    std::vector<double> ours;
    std::vector<double> oursBounded;
    double sum = 0.0;
    for (int i = 0; i < rounds; ++i) {
        plain.push_back(timed([&] { sum += plainLoop(files); }).count());
        ours.push_back(timed([&] { readAll(direct); }).count());
        oursBounded.push_back(timed([&] { readAll(bounded); }).count());
    }
    if (sum <= 0.0)
        return 1;

    std::printf("%d sensors, one read of all\n", count);
    std::printf("%-28s %8.1f us\n", "plain loop", median(plain));
    std::printf("%-28s %8.1f us %6.2f times\n", "as files", median(ours), median(ours) / median(plain));
    std::printf("%-28s %8.1f us %6.2f times   goal: at most 1.5\n", "as files, bounded in time", median(oursBounded),
                median(oursBounded) / median(plain));
    return 0;
}
