#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <latch>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "mirroring/USBMirrorManager.h"
#include "platform/Dispatch.h"
#include "tests/support/MirroringFakes.h"

namespace orvalen {
namespace {

/// Real threads, so that the thread sanitizer sees what a scan shares with the main thread.
class RealThreads : public Dispatch
{
public:
    ~RealThreads() override
    {
        for (auto &thread : threads)
            thread.join();
    }
    void onMain(Task task) override
    {
        const std::scoped_lock guard(lock);
        main.push_back(std::move(task));
        changed.notify_all();
    }
    void onMainAfter(std::chrono::milliseconds, Task task) override { onMain(std::move(task)); }
    std::unique_ptr<RepeatingTask> repeatOnMain(std::chrono::milliseconds, Task) override { return nullptr; }
    void concurrently(QualityOfService, Task task) override { threads.emplace_back(std::move(task)); }
    void concurrentlyAfter(std::chrono::milliseconds, Task task) override { threads.emplace_back(std::move(task)); }
    std::unique_ptr<ConcurrentQueue> makeConcurrentQueue(const std::string &) override { return nullptr; }

    /// Runs that many main-thread tasks, each when it is there.
    void runMain(int tasks)
    {
        for (; tasks > 0; --tasks) {
            std::unique_lock guard(lock);
            changed.wait(guard, [this] { return !main.empty(); });
            const auto task = std::move(main.front());
            main.pop_front();
            guard.unlock();
            task();
        }
    }

    [[nodiscard]] bool isMainIdle()
    {
        const std::scoped_lock guard(lock);
        return main.empty();
    }

private:
    std::mutex lock;
    std::condition_variable changed;
    std::deque<Task> main;
    std::vector<std::thread> threads;
};

TEST(ScanThreads, scansAtOnceEndInAListEach)
{
    test::FakeUsbTree usb;
    test::FakeSettingsPages pages;
    RealThreads dispatch;
    std::atomic<int> scans = 0;
    usb.onRead = [&] { return test::usbNodes(test::usbNode("iPad " + std::to_string(++scans))); };
    USBMirrorManager manager({dispatch, usb, pages});
    for (int i = 0; i < 20; ++i)
        manager.scanConnectedDevices();
    dispatch.runMain(21);
    EXPECT_EQ(scans, 21);
    EXPECT_EQ(manager.connectedDevices.value().size(), 1U);
}

TEST(ScanThreads, theManagerMayGoBeforeItsScans)
{
    test::FakeUsbTree usb;
    test::FakeSettingsPages pages;
    RealThreads dispatch;
    std::latch release(1);
    usb.onRead = [&] {
        release.wait();
        return test::usbNodes(test::usbNode("iPad"));
    };
    auto manager = std::make_unique<USBMirrorManager>(USBMirrorManager::Services{dispatch, usb, pages});
    manager->scanConnectedDevices();
    manager.reset();
    EXPECT_TRUE(dispatch.isMainIdle());
    release.count_down();
    dispatch.runMain(2);
}

} // namespace
} // namespace orvalen
