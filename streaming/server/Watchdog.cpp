#include "streaming/server/Watchdog.h"

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <sys/wait.h>

#include "streaming/server/Contract.h"

namespace orvalen {

namespace {

/// One who survives being killed is hit again after this.
constexpr std::chrono::seconds secondBlow{1};

} // namespace

Watchdog::Watchdog(std::chrono::nanoseconds patience) : patience(patience)
{
    guarded.reserve(limits::displays);
    thread = std::thread([this] { watch(); });
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    changed.notify_one();
    thread.join();
}

int Watchdog::waitFor(pid_t group) noexcept
{
    {
        const std::lock_guard lock(mutex);
        guarded.push_back({group, Clock::now() + patience});
        if (isIdle)
            changed.notify_one();
    }
    // Not yet buried, its number cannot become another's while the thread may still kill it.
    siginfo_t ended = {};
    while (::waitid(P_PID, static_cast<id_t>(group), &ended, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    {
        const std::lock_guard lock(mutex);
        std::erase_if(guarded, [&](const Guarded &one) { return one.group == group; });
    }
    int status = -1;
    while (::waitpid(group, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

void Watchdog::watch()
{
    std::unique_lock lock(mutex);
    while (!isEnding) {
        if (guarded.empty()) {
            isIdle = true;
            changed.wait(lock);
            isIdle = false;
            continue;
        }
        const auto byDeadline = [](const Guarded &a, const Guarded &b) { return a.deadline < b.deadline; };
        changed.wait_until(lock, std::min_element(guarded.begin(), guarded.end(), byDeadline)->deadline);
        const auto now = Clock::now();
        for (auto &one : guarded) {
            if (one.deadline <= now) {
                ::kill(-one.group, SIGKILL);
                one.deadline = now + secondBlow;
            }
        }
    }
}

} // namespace orvalen
