// stream_load [--OPTION VALUE]...     Looks at a stream of motion JPEG on the loopback with many viewers at once.
//
// All on one thread; frames are thrown away in the kernel (StreamViewer). Prints one line of JSON.
//
//   port, path           where; "%d" in the path stands for the display               (8999, /stream.mjpg?d=%d)
//   displays             viewer i looks at display 1 + i mod that                     (1)
//   viewers, seconds     how many look, and for how long they are counted             (1, 5)
//   ramp, warm           seconds over which they connect, and until counting starts   (0, 1)
//   slow-N               that many viewers more, who read at most N bytes a second    (0; may be repeated)
//   stall, stall-after   that many viewers stop reading so many seconds after the
//                        ramp; what they see is not counted                           (0, 0)
//   drops, drop-rate     connections that end at their first frame: how many in all,
//                        and how many a second                                        (0, 50)
//   dialect              ours: parts are checked to the byte; any: of other servers   (ours)
//   freshness            stamps: those of the stand-in; clock: the painter's          (stamps)
//   pid                  a process to charge                                          (may be repeated)
#include <sys/epoll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bench/stream_options.h"
#include "bench/stream_processes.h"
#include "bench/stream_viewer.h"

namespace {

using namespace std::chrono_literals;
using orvalen::bench::StreamOptions;
using orvalen::bench::StreamProcesses;
using orvalen::bench::StreamViewer;
using Clock = StreamViewer::Clock;
using Seconds = std::chrono::duration<double>;

double processorSeconds()
{
    rusage used = {};
    ::getrusage(RUSAGE_SELF, &used);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

template <typename T>
double quantile(std::vector<T> values, double share)
{
    if (values.empty())
        return -1;
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1) + 0.5);
    std::nth_element(values.begin(), at, values.end());
    return static_cast<double>(*at);
}

/// A viewer and the way in which it reads.
struct Place
{
    StreamViewer viewer;
    double bytesPerSecond = 0; ///< 0: as fast as it comes.
    double allowance = 0;      ///< Bytes that a slow one may read now.
    bool stalls = false;
    bool drops = false;
    bool isWatched = false; ///< The descriptor is waited for.
    int display = 1;
};

class Load
{
public:
    explicit Load(StreamOptions wanted) : options(std::move(wanted)), poll(::epoll_create1(EPOLL_CLOEXEC))
    {
        for (int i = 0; i < options.viewers; ++i) {
            add().display = 1 + i % options.displays;
            places.back()->stalls = i < options.stalled;
        }
        for (const auto &[bytesPerSecond, count] : options.slow)
            for (int i = 0; i < count; ++i)
                add().bytesPerSecond = bytesPerSecond;
    }

    void run()
    {
        start = Clock::now();
        const auto countFrom = start + Seconds(options.ramp + options.warm);
        const auto countTo = countFrom + Seconds(options.seconds);
        const auto stallAt = start + Seconds(options.ramp + options.stallAfter);
        bool isCounting = false;
        for (auto now = start; now < countTo; now = Clock::now()) {
            if (!isCounting && now >= countFrom) {
                isCounting = true;
                beginCounting();
            }
            connectThoseDue(now);
            if (options.stalled > 0 && now >= stallAt)
                stall();
            replaceDropped(now);
            feedSlowOnes(now);
            wait(std::min(longestPause(), Seconds(countTo - now)));
        }
        counted = Clock::now() - countedFrom;
    }

    void print();

private:
    Place &add() { return *places.emplace_back(std::make_unique<Place>()); }

    void beginCounting()
    {
        for (const auto &place : places)
            place->viewer.begin();
        before = StreamProcesses::read(options.pids);
        ownBefore = processorSeconds();
        countedFrom = Clock::now();
    }

    void connect(Place &place)
    {
        auto request = options.request;
        if (const auto at = request.path.find("%d"); at != std::string::npos)
            request.path.replace(at, 2, std::to_string(place.display));
        if (place.bytesPerSecond > 0 || place.stalls)
            request.receiveBuffer = 65'536; // what a phone's system holds back counts for the phone
        if (place.viewer.connect(request))
            watch(place, EPOLLOUT, EPOLL_CTL_ADD);
        else
            complain(place);
    }

    void watch(Place &place, std::uint32_t what, int operation = EPOLL_CTL_MOD)
    {
        epoll_event event = {};
        event.events = what;
        event.data.ptr = &place;
        ::epoll_ctl(poll, operation, place.viewer.descriptor(), &event);
        place.isWatched = what != 0;
    }

    void connectThoseDue(Clock::time_point now)
    {
        const auto count = places.size();
        const auto due = options.ramp > 0 ? (now - start) / Seconds(options.ramp) : 1.0;
        while (connected < count && static_cast<double>(connected) <= due * static_cast<double>(count))
            connect(*places[connected++]);
    }

    void stall()
    {
        for (const auto &place : places)
            if (place->stalls && place->isWatched && place->viewer.isWatching())
                watch(*place, 0);
    }

    /// One connection at a time that goes at its first frame, or after a second without one.
    void replaceDropped(Clock::time_point now)
    {
        if (options.drops == 0)
            return;
        if (!dropper) {
            dropper = std::make_unique<Place>();
            dropper->drops = true;
        }
        StreamViewer &viewer = dropper->viewer;
        const bool hasSeen = viewer.firstFrameAfter().count() >= 0;
        if (viewer.descriptor() >= 0 && !hasSeen && now - viewer.connectedAt() < 1s)
            return;
        if (viewer.descriptor() >= 0) {
            viewer.drop();
            ++dropped;
            droppedUnseen += !hasSeen;
        }
        if (dropped < options.drops && now - viewer.connectedAt() >= Seconds(1 / options.dropRate)) {
            dropper->display = 1 + dropped % options.displays;
            connect(*dropper);
        }
    }

    void feedSlowOnes(Clock::time_point now)
    {
        const Seconds passed = now - fedAt;
        fedAt = now;
        for (const auto &place : places) {
            if (place->bytesPerSecond == 0 || !place->viewer.isWatching())
                continue;
            place->allowance = std::min(place->allowance + passed.count() * place->bytesPerSecond,
                                        place->bytesPerSecond / 10); // what was not there to read is not made up for
            if (!place->isWatched && place->allowance >= 4096)
                watch(*place, EPOLLIN);
        }
    }

    [[nodiscard]] Seconds longestPause() const
    {
        const bool hasRhythm = !options.slow.empty() || options.drops > 0 || connected < places.size();
        return hasRhythm ? 2ms : 50ms;
    }

    void wait(Seconds pause)
    {
        epoll_event events[256];
        const int timeout = std::max(0, static_cast<int>(pause / Seconds(1ms)));
        const int count = ::epoll_wait(poll, events, std::size(events), timeout);
        for (int i = 0; i < count; ++i)
            serve(*static_cast<Place *>(events[i].data.ptr));
    }

    void serve(Place &place)
    {
        StreamViewer &viewer = place.viewer;
        if (viewer.descriptor() < 0)
            return;
        if (viewer.isConnecting()) {
            if (viewer.ask())
                watch(place, EPOLLIN);
        } else if (!place.isWatched) {
            viewer.drop(); // a stalled one was let go
            ++letGo;
            return;
        } else if (place.bytesPerSecond > 0) {
            place.allowance -= static_cast<double>(viewer.look(static_cast<std::size_t>(place.allowance)));
            if (viewer.descriptor() >= 0)
                watch(place, 0);
        } else {
            viewer.look(std::size_t{4} << 20);
        }
        if (viewer.descriptor() < 0)
            complain(place);
    }

    void complain(const Place &place)
    {
        if (!place.drops)
            ++complaints[std::string(place.viewer.complaint())];
        else
            ++dropComplaints;
    }

    StreamOptions options;
    int poll;
    std::vector<std::unique_ptr<Place>> places;
    std::unique_ptr<Place> dropper;
    std::size_t connected = 0;
    int dropped = 0;
    int droppedUnseen = 0;
    int dropComplaints = 0;
    int letGo = 0;
    std::map<std::string, int> complaints;
    Clock::time_point start;
    Clock::time_point fedAt = Clock::now();
    Clock::time_point countedFrom;
    Seconds counted{0};
    StreamProcesses before;
    double ownBefore = 0;
};

/// What a group of viewers has seen, as members of a JSON object.
class Group
{
public:
    explicit Group(Seconds counted) : seconds(counted.count()) {}

    void add(const StreamViewer &viewer)
    {
        const auto &sight = viewer.sight();
        rates.push_back(static_cast<double>(sight.frames) / seconds);
        freshRates.push_back(static_cast<double>(sight.fresh) / seconds);
        gaps.push_back(sight.longestGap.count() * 1e3);
        ages.insert(ages.end(), sight.ages.begin(), sight.ages.end());
        firsts.push_back(viewer.firstFrameAfter().count() * 1e3);
        frames += sight.frames;
        torn += sight.torn;
        empty += sight.empty;
        unread += sight.unread;
        bytes += sight.bytes;
    }

    void print() const
    {
        std::printf("\"viewers\": %zu, \"frames\": %llu, \"rate_min\": %.3f, \"rate_median\": %.3f, ", rates.size(),
                    frames, quantile(rates, 0), quantile(rates, 0.5));
        std::printf("\"fresh_min\": %.3f, \"fresh_median\": %.3f, ", quantile(freshRates, 0),
                    quantile(freshRates, 0.5));
        std::printf("\"age_median\": %.2f, \"age_p95\": %.2f, ", quantile(ages, 0.5), quantile(ages, 0.95));
        std::printf("\"gap_longest\": %.2f, \"gap_median\": %.2f, ", quantile(gaps, 1), quantile(gaps, 0.5));
        std::printf("\"first_median\": %.2f, \"first_longest\": %.2f, ", quantile(firsts, 0.5), quantile(firsts, 1));
        std::printf("\"torn\": %llu, \"empty\": %llu, \"unread\": %llu, \"megabytes\": %.1f", torn, empty, unread,
                    static_cast<double>(bytes) * 1e-6);
    }

private:
    double seconds;
    std::vector<double> rates;
    std::vector<double> freshRates;
    std::vector<double> gaps;
    std::vector<double> firsts;
    std::vector<float> ages;
    unsigned long long frames = 0;
    unsigned long long torn = 0;
    unsigned long long empty = 0;
    unsigned long long unread = 0;
    unsigned long long bytes = 0;
};

void Load::print()
{
    const StreamProcesses after = StreamProcesses::read(options.pids);
    const double own = processorSeconds() - ownBefore;

    Group prompt(counted);
    std::map<double, Group> slow;
    std::uint64_t everSeen = 0;
    for (const auto &place : places) {
        everSeen += place->viewer.framesEver();
        if (place->bytesPerSecond > 0)
            slow.try_emplace(place->bytesPerSecond, counted).first->second.add(place->viewer);
        else if (!place->stalls)
            prompt.add(place->viewer);
    }
    if (dropper)
        everSeen += dropper->viewer.framesEver();

    std::printf("{\"seconds\": %.3f, ", counted.count());
    prompt.print();
    std::printf(", \"frames_ever\": %llu, \"client_cpu\": %.4f", static_cast<unsigned long long>(everSeen), own);
    std::printf(", \"slow\": {");
    const char *separator = "";
    for (const auto &[bytesPerSecond, group] : slow) {
        std::printf("%s\"%.0f\": {", separator, bytesPerSecond);
        group.print();
        std::printf("}");
        separator = ", ";
    }
    std::printf("}, \"dropped\": %d, \"dropped_unseen\": %d, \"drop_complaints\": %d, \"let_go\": %d", dropped,
                droppedUnseen, dropComplaints, letGo);
    std::printf(", \"complaints\": {");
    separator = "";
    for (const auto &[complaint, count] : complaints) {
        std::printf("%s\"%s\": %d", separator, complaint.c_str(), count);
        separator = ", ";
    }
    std::printf("}, \"cpu_own\": %.4f, \"cpu_children\": %.4f", after.ownSecondsSince(before),
                after.childSeconds - before.childSeconds);
    std::printf(", \"resident_kb\": %ld, \"resident_before_kb\": %ld, \"peak_kb\": %ld", after.residentKilobytes,
                before.residentKilobytes, after.peakKilobytes);
    std::printf(", \"threads\": %ld, \"descriptors\": %ld}\n", after.threads, after.descriptors);
}

} // namespace

int main(int argc, char **argv)
{
    rlimit files = {};
    ::getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &files);

    Load load(StreamOptions::read(argc, argv));
    load.run();
    load.print();
    return 0;
}
