// The lock of the heating flag: how much load it lets the spinners make, and how long it keeps the supervisor waiting.
//
//   lock_bench [seconds]     length of each measurement, 5 by default
//
// Everything runs on two cores. "CPU" is CPU seconds burnt per second and spinner where every spinner has a core of its
// own; "kernel" the part of them spent in the kernel; "vs stress-ng" the same CPU against `stress-ng --cpu n` run for
// the same time; "longest gap" the longest time between two samples of a supervisor that wants one every 0.25 s, with
// four spinners and two competing busy threads.

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

#include "core/EngineAtomicFlag.h"
#include "core/SpinThenParkLock.h"

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr int cores = 2;
constexpr Seconds samplingInterval{0.25};

class AdaptiveMutex
{
public:
    AdaptiveMutex()
    {
        pthread_mutexattr_t attributes;
        pthread_mutexattr_init(&attributes);
        pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ADAPTIVE_NP);
        pthread_mutex_init(&mutex, &attributes);
        pthread_mutexattr_destroy(&attributes);
    }
    ~AdaptiveMutex() { pthread_mutex_destroy(&mutex); }
    AdaptiveMutex(const AdaptiveMutex &) = delete;
    AdaptiveMutex &operator=(const AdaptiveMutex &) = delete;
    void lock() { pthread_mutex_lock(&mutex); }
    void unlock() { pthread_mutex_unlock(&mutex); }

private:
    pthread_mutex_t mutex = {};
};

class NaiveSpinLock
{
public:
    void lock()
    {
        while (taken.test_and_set(std::memory_order_acquire)) {
        }
    }
    void unlock() { taken.clear(std::memory_order_release); }

private:
    std::atomic_flag taken;
};

struct CpuTime
{
    double user = 0.0;
    double system = 0.0;
    [[nodiscard]] double total() const { return user + system; }
    CpuTime operator+(const CpuTime &other) const { return {user + other.user, system + other.system}; }
};

CpuTime cpuTime(int who)
{
    rusage usage{};
    getrusage(who, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {seconds(usage.ru_utime), seconds(usage.ru_stime)};
}

struct Outcome
{
    CpuTime spinners;
    Seconds elapsed{};
    Seconds longestGap{};
};

template <typename Flag>
Outcome run(int spinners, int competitors, Seconds duration)
{
    Flag flag;
    std::atomic<bool> competing = true;
    std::vector<CpuTime> burnt(static_cast<std::size_t>(spinners));
    std::vector<std::thread> threads;
    for (auto &own : burnt) {
        threads.emplace_back([&flag, &own] {
            while (flag.value()) {
            }
            own = cpuTime(RUSAGE_THREAD);
        });
    }
    for (int i = 0; i < competitors; ++i) {
        threads.emplace_back([&competing] {
            while (competing.load(std::memory_order_relaxed)) {
            }
        });
    }

    Outcome outcome;
    const auto start = Clock::now();
    auto lastSample = start;
    while (Clock::now() - start < duration) {
        std::this_thread::sleep_for(samplingInterval);
        static_cast<void>(flag.value());
        const auto sample = Clock::now();
        outcome.longestGap = std::max(outcome.longestGap, Seconds(sample - lastSample));
        lastSample = sample;
    }
    flag.setValue(false);
    outcome.elapsed = Clock::now() - start;
    competing = false;
    for (auto &thread : threads)
        thread.join();
    outcome.spinners = std::accumulate(burnt.begin(), burnt.end(), CpuTime{});
    return outcome;
}

/// CPU seconds per second and worker of `stress-ng --cpu n`; 0 without stress-ng.
double stressNg(int workers, Seconds duration)
{
    const auto before = cpuTime(RUSAGE_CHILDREN);
    const auto start = Clock::now();
    const std::string command = "stress-ng --quiet --cpu " + std::to_string(workers) + " --timeout " +
                                std::to_string(static_cast<int>(duration.count())) + "s >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0)
        return 0.0;
    const Seconds elapsed = Clock::now() - start;
    return (cpuTime(RUSAGE_CHILDREN).total() - before.total()) / elapsed.count() / workers;
}

struct PeerBurn
{
    double one = 0.0;
    double two = 0.0;
};

template <typename Lock>
void report(const char *name, const PeerBurn &peer, Seconds duration)
{
    using Flag = orvalen::LockedFlag<Lock>;
    for (const int spinners : {1, 2}) {
        const auto free = run<Flag>(spinners, 0, duration);
        const double burnt = free.spinners.total() / free.elapsed.count() / spinners;
        const double stress = spinners == 1 ? peer.one : peer.two;
        std::printf("%-16s %8d %9.3f %8.2f%% %13.2f", name, spinners, burnt,
                    100.0 * free.spinners.system / free.spinners.total(), stress > 0.0 ? burnt / stress : 0.0);
        if (spinners == 1) {
            const auto crowded = run<Flag>(4, 2, 2 * duration);
            std::printf(" %14.3f s\n", crowded.longestGap.count());
        } else {
            std::printf("\n");
        }
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char **argv)
{
    const Seconds duration(argc > 1 ? std::atof(argv[1]) : 5.0);
    cpu_set_t two;
    CPU_ZERO(&two);
    for (int core = 0; core < cores; ++core)
        CPU_SET(core, &two);
    sched_setaffinity(0, sizeof two, &two);

    const PeerBurn peer{stressNg(1, duration), stressNg(2, duration)};
    if (peer.one == 0.0)
        std::puts("stress-ng is not there: its column stays 0.");
    std::printf("%-16s %8s %9s %9s %13s %16s\n", "lock", "spinners", "CPU", "kernel", "vs stress-ng", "longest gap");
    report<std::mutex>("ordinary", peer, duration);
    report<AdaptiveMutex>("adaptive", peer, duration);
    report<NaiveSpinLock>("naive spin", peer, duration);
    report<orvalen::SpinThenParkLock>("spin then park", peer, duration);
    std::puts("goals: CPU at least 0.97, kernel at most 1 %, longest gap at most 0.35 s");
}
