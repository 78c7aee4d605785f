// screencapture: one picture of one display into a file, for systems that have no such command.
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <vector>

#include <malloc.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include "platform/posix/PrivateFile.h"
#include "streaming/screencapture/CaptureBackEnds.h"
#include "streaming/screencapture/CaptureError.h"
#include "streaming/screencapture/CaptureRequest.h"
#include "streaming/screencapture/PictureEncoder.h"

namespace orvalen {

namespace {

constexpr int success = 0;
constexpr int failure = 1;
constexpr int misuse = 2;

/// Longer than any display server takes that is still of use.
constexpr int patienceInSeconds = 5;

/// A previous picture that is larger is not read back. Far more than one of a real display has.
constexpr std::size_t greatestFile = 64U << 20;

/// More threads would wait for the display server's memory rather than work.
constexpr unsigned mostThreads = 4;

void say(std::string_view text)
{
    const auto line = "screencapture: " + std::string(text) + '\n';
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
}

/// A display server may stop answering without closing the connection.
void limitTime(int seconds)
{
    struct sigaction action = {};
    action.sa_handler = [](int) {
        constexpr std::string_view line = "screencapture: The display server does not answer.\n";
        [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
        ::_exit(failure);
    };
    ::sigaction(SIGALRM, &action, nullptr);
    ::alarm(static_cast<unsigned>(seconds));
}

unsigned processors()
{
    cpu_set_t set;
    if (::sched_getaffinity(0, sizeof set, &set) != 0)
        return 1;
    return static_cast<unsigned>(std::max(1, CPU_COUNT(&set)));
}

/// Ends the program as soon as the picture stands in its place, or nothing has changed: what would be tidied up here
/// the system tidies up without our waiting for it.
[[noreturn]] void capture(const CaptureRequest &request)
{
    if (!private_file::isOursOrAbsent(request.file))
        throw CaptureError("What stands at " + request.file + " is not a plain file of yours; it stays as it is.");

    limitTime(patienceInSeconds);
    const auto backEnds = captureBackEnds();
    auto &backEnd = firstAvailable(backEnds);
    const auto display = numbered(inOrder(backEnd.displays()), request.display);
    const auto earlier = private_file::read(request.file, greatestFile).value_or("");
    const auto threads = std::min(processors(), mostThreads);
    const auto picture = backEnd.open(display, threads);
    const PictureFormat format{picture->area().width, picture->area().height, picture->layout()};
    StripFile file(format);
    PictureEncoder encoder(format, file.strips(earlier).value_or(std::vector<EncodedStrip>{}), threads);
    encoder.encode(*picture);
    ::alarm(0);

    if (encoder.isUnchanged())
        ::_exit(success);
    if (const int error = private_file::replace(request.file, file.pieces(encoder.strips())); error != 0)
        throw CaptureError("The picture cannot be written to " + request.file + ": " + std::strerror(error) + '.');
    ::_exit(success);
}

int run(const std::vector<std::string_view> &arguments)
{
    const auto request = captureRequest(arguments);
    if (const auto *const refusal = std::get_if<Refusal>(&request)) {
        say(refusal->reason + '\n' + std::string(captureUsage));
        return misuse;
    }
    try {
        capture(std::get<CaptureRequest>(request));
    } catch (const std::exception &error) {
        say(error.what());
        return failure;
    }
}

} // namespace

} // namespace orvalen

int main(int argc, char **argv)
{
    ::umask(077);
    std::signal(SIGPIPE, SIG_IGN); // a display server that goes amid our words is an answer, too
    // A program of a few milliseconds gives no memory back, and its threads share what there is.
    ::mallopt(M_ARENA_MAX, 1);
    ::mallopt(M_TRIM_THRESHOLD, 64 << 20);
    ::mallopt(M_MMAP_THRESHOLD, 64 << 20);
    return orvalen::run({argv + 1, argv + argc});
}
