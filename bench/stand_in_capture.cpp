// screencapture [options] [-D DISPLAY] FILE     A stand-in for the capture command that needs no display.
//
// "Captures" by putting a prepared JPEG with a stamp (stream_stamp.h) into FILE, and behaves as the environment says:
//
//   ORVALEN_STAND_IN_FRAME        the JPEG
//   ORVALEN_STAND_IN_MS           how long a capture takes in all                                              (0)
//   ORVALEN_STAND_IN_PICTURE_MS   how long after its start it takes the picture                                (0)
//   ORVALEN_STAND_IN_PIECES       0: FILE is replaced whole; n: it is truncated and written in n pieces, 1 ms apart (0)
//   ORVALEN_STAND_IN_LOG          a file that gets a line for every capture: display, start and end in nanoseconds

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

#include "bench/stream_stamp.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::system_clock;

std::int64_t nanoseconds(Clock::time_point time)
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count();
}

int number(const char *variable)
{
    const char *value = std::getenv(variable);
    return value ? std::atoi(value) : 0;
}

bool writeAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::string contents(const char *path)
{
    struct stat status = {};
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
        return {};
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    if (::read(descriptor, bytes.data(), bytes.size()) != status.st_size)
        bytes.clear();
    ::close(descriptor);
    return bytes;
}

bool replaceWhole(const std::string &file, std::string_view frame)
{
    const std::string beside = file + "." + std::to_string(::getpid());
    const int descriptor = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    const bool written = writeAll(descriptor, frame);
    ::close(descriptor);
    return written && ::rename(beside.c_str(), file.c_str()) == 0;
}

bool writeInPlace(const std::string &file, std::string_view frame, std::size_t pieces)
{
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    const std::size_t size = (frame.size() + pieces - 1) / pieces;
    bool written = true;
    for (std::size_t begin = 0; begin < frame.size() && written; begin += size) {
        if (begin > 0)
            std::this_thread::sleep_for(1ms);
        written = writeAll(descriptor, frame.substr(begin, size));
    }
    ::close(descriptor);
    return written;
}

void log(const char *path, std::string_view display, Clock::time_point start)
{
    char line[128];
    const int length =
        std::snprintf(line, sizeof line, "%.*s %lld %lld\n", static_cast<int>(display.size()), display.data(),
                      static_cast<long long>(nanoseconds(start)), static_cast<long long>(nanoseconds(Clock::now())));
    const int descriptor = ::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (descriptor >= 0) {
        (void)writeAll(descriptor, {line, std::min(static_cast<std::size_t>(length), sizeof line - 1)});
        ::close(descriptor);
    }
}

} // namespace

int main(int argc, char **argv)
{
    const auto start = Clock::now();
    std::string_view display = "1";
    for (int i = 1; i + 1 < argc; ++i)
        if (std::string_view(argv[i]) == "-D")
            display = argv[i + 1];
    const char *prepared = std::getenv("ORVALEN_STAND_IN_FRAME");
    if (argc < 2 || !prepared)
        return 64;

    std::this_thread::sleep_until(start + std::chrono::milliseconds(number("ORVALEN_STAND_IN_PICTURE_MS")));
    const orvalen::bench::StreamStamp stamp{nanoseconds(Clock::now()), static_cast<std::uint32_t>(::getpid())};
    const std::string jpeg = contents(prepared);
    if (jpeg.size() < 4)
        return 66;
    std::this_thread::sleep_until(start + std::chrono::milliseconds(number("ORVALEN_STAND_IN_MS")));

    const std::string file = argv[argc - 1];
    const int pieces = number("ORVALEN_STAND_IN_PIECES");
    const std::string frame = stamp.on(jpeg);
    if (!(pieces > 0 ? writeInPlace(file, frame, static_cast<std::size_t>(pieces)) : replaceWhole(file, frame)))
        return 73;
    if (const char *path = std::getenv("ORVALEN_STAND_IN_LOG"))
        log(path, display, start);
    return 0;
}
