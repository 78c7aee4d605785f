#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

#include <atomic>
#include <latch>

#include "mirroring/USBMirrorManager.h"
#include "platform/qt/DispatchQt.h"
#include "tests/support/MirroringFakes.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;

TEST(ScanQt, aReportThatTakesItsTimeDoesNotHoldTheMainThread)
{
    int argc = 1;
    char name[] = "test";
    char *argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    DispatchQt dispatch;
    test::FakeUsbTree usb;
    test::FakeSettingsPages pages;
    std::latch isReading(1), release(1);
    std::atomic<QThread *> reader = nullptr;
    usb.onRead = [&] {
        reader = QThread::currentThread();
        isReading.count_down();
        release.wait(); // ten seconds, or as long as it takes
        return test::usbNodes(test::usbNode("iPad"));
    };

    USBMirrorManager manager({dispatch, usb, pages});
    isReading.wait();
    int ticks = 0;
    const auto clockwork = dispatch.repeatOnMain(1ms, [&] { ++ticks; });
    while (ticks < 20) // the test's own time limit ends a wait in vain
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_TRUE(manager.connectedDevices.value().empty());
    EXPECT_NE(reader, QThread::currentThread());

    release.count_down();
    QThread *writer = nullptr;
    const auto subscription = manager.connectedDevices.subscribe([&](const auto &devices) {
        if (!devices.empty())
            writer = QThread::currentThread();
    });
    while (!writer)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(writer, QThread::currentThread());
    EXPECT_EQ(manager.connectedDevices.value().front().name, "iPad");
}

} // namespace
} // namespace orvalen
