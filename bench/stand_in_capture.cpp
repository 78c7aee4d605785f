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
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "bench/stream_stamp.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::system_clock;
using orvalen::bench::StreamStamp;

std::int64_t nanoseconds(Clock::time_point time)
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(time.time_since_epoch()).count();
}

int number(const char *variable)
{
    const char *value = std::getenv(variable);
    return value ? std::atoi(value) : 0;
}

/// The frame as pieces of memory. It is put together by the kernel, in the file: what is copied here would be charged
/// to the server that waits.
using Pieces = std::vector<iovec>;

iovec piece(std::string_view text)
{
    return {const_cast<char *>(text.data()), text.size()}; // only read; the interface is older than const
}

bool writeAll(int descriptor, const Pieces &pieces)
{
    std::size_t size = 0;
    for (const iovec &each : pieces)
        size += each.iov_len;
    return ::writev(descriptor, pieces.data(), static_cast<int>(pieces.size())) == static_cast<ssize_t>(size);
}

/// `count` groups of about the same size.
std::vector<Pieces> divided(const Pieces &pieces, std::size_t count)
{
    std::size_t size = 0;
    for (const iovec &each : pieces)
        size += each.iov_len;
    const std::size_t most = (size + count - 1) / count;
    std::vector<Pieces> groups(1);
    std::size_t room = most;
    for (iovec rest : pieces) {
        while (rest.iov_len > 0) {
            if (room == 0) {
                groups.emplace_back();
                room = most;
            }
            const std::size_t length = std::min(room, rest.iov_len);
            groups.back().push_back({rest.iov_base, length});
            rest = {static_cast<char *>(rest.iov_base) + length, rest.iov_len - length};
            room -= length;
        }
    }
    return groups;
}

std::string_view mapped(const char *path)
{
    struct stat status = {};
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0 || status.st_size == 0)
        return {};
    const auto size = static_cast<std::size_t>(status.st_size);
    void *const bytes = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, descriptor, 0);
    ::close(descriptor);
    return bytes == MAP_FAILED ? std::string_view() : std::string_view(static_cast<const char *>(bytes), size);
}

bool replaceWhole(const std::string &file, const Pieces &frame)
{
    const std::string beside = file + "." + std::to_string(::getpid());
    const int descriptor = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    const bool isWritten = writeAll(descriptor, frame);
    ::close(descriptor);
    return isWritten && ::rename(beside.c_str(), file.c_str()) == 0;
}

bool writeInPlace(const std::string &file, const std::vector<Pieces> &groups)
{
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    bool isWritten = true;
    for (const Pieces &group : groups) {
        if (&group != &groups.front())
            std::this_thread::sleep_for(1ms);
        isWritten = isWritten && writeAll(descriptor, group);
    }
    ::close(descriptor);
    return isWritten;
}

void log(const char *path, std::string_view display, Clock::time_point start)
{
    char line[128];
    const int length =
        std::snprintf(line, sizeof line, "%.*s %lld %lld\n", static_cast<int>(display.size()), display.data(),
                      static_cast<long long>(nanoseconds(start)), static_cast<long long>(nanoseconds(Clock::now())));
    const int descriptor = ::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (descriptor >= 0) {
        (void)writeAll(descriptor, {{line, static_cast<std::size_t>(length)}});
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
    const StreamStamp stamp{nanoseconds(Clock::now()), static_cast<std::uint32_t>(::getpid())};
    const std::string_view jpeg = mapped(prepared);
    if (jpeg.size() < 4)
        return 66;
    std::this_thread::sleep_until(start + std::chrono::milliseconds(number("ORVALEN_STAND_IN_MS")));

    const std::string segment = stamp.segment();
    const Pieces frame = {piece(StreamStamp::startOfImage), piece(segment), piece(jpeg.substr(2, jpeg.size() - 4)),
                          piece(segment), piece(StreamStamp::endOfImage)};
    const std::string file = argv[argc - 1];
    const auto count = static_cast<std::size_t>(number("ORVALEN_STAND_IN_PIECES"));
    if (!(count > 0 ? writeInPlace(file, divided(frame, count)) : replaceWhole(file, frame)))
        return 73;
    if (const char *path = std::getenv("ORVALEN_STAND_IN_LOG"))
        log(path, display, start);
    return 0;
}
