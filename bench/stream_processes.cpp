#include "bench/stream_processes.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace orvalen::bench {

namespace {

namespace fs = std::filesystem;

void addTimes(const fs::path &process, StreamProcesses &sum)
{
    std::ifstream file(process / "stat");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    const auto nameEnd = text.rfind(')');
    if (nameEnd == std::string::npos)
        return;
    std::istringstream rest(text.substr(nameEnd + 1));
    const std::vector<std::string> fields(std::istream_iterator<std::string>(rest), {});
    if (fields.size() < 15)
        return;
    const double tick = 1.0 / static_cast<double>(::sysconf(_SC_CLK_TCK));
    sum.ownSeconds += tick * static_cast<double>(std::stol(fields[11]) + std::stol(fields[12]));
    sum.childSeconds += tick * static_cast<double>(std::stol(fields[13]) + std::stol(fields[14]));
}

void addHoldings(const fs::path &process, StreamProcesses &sum)
{
    std::ifstream file(process / "status");
    std::string key;
    while (file >> key) {
        long *const figure = key == "VmRSS:"     ? &sum.residentKilobytes
                             : key == "VmHWM:"   ? &sum.peakKilobytes
                             : key == "Threads:" ? &sum.threads
                                                 : nullptr;
        long value = 0;
        if (figure && file >> value)
            *figure += value;
        file.ignore(4096, '\n');
    }
}

} // namespace

StreamProcesses StreamProcesses::read(const std::vector<pid_t> &pids)
{
    StreamProcesses sum;
    for (const pid_t pid : pids) {
        const fs::path process = "/proc/" + std::to_string(pid);
        addTimes(process, sum);
        addHoldings(process, sum);
        std::error_code gone;
        for (const auto &thread : fs::directory_iterator(process / "task", gone)) {
            std::ifstream file(thread.path() / "schedstat");
            double nanoseconds = 0;
            if (file >> nanoseconds)
                sum.threadSeconds[std::stoi(thread.path().filename())] = nanoseconds * 1e-9;
        }
        sum.descriptors += std::distance(fs::directory_iterator(process / "fd", gone), fs::directory_iterator());
    }
    return sum;
}

double StreamProcesses::ownSecondsSince(const StreamProcesses &earlier) const
{
    double seconds = 0;
    for (const auto &[thread, total] : threadSeconds) {
        const auto before = earlier.threadSeconds.find(thread);
        seconds += total - (before == earlier.threadSeconds.end() ? 0 : before->second);
    }
    const bool someEnded = std::any_of(earlier.threadSeconds.begin(), earlier.threadSeconds.end(),
                                       [this](const auto &thread) { return !threadSeconds.contains(thread.first); });
    return someEnded ? ownSeconds - earlier.ownSeconds : seconds;
}

} // namespace orvalen::bench
