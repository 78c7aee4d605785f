#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>

#include "app/NativePlatform.h"
#include "mirroring/USBMirrorManager.h"

namespace orvalen {
namespace {

TEST(USBMirrorManagerShared, isOneAndLooksAtTheMachineAtHand)
{
    int argc = 1;
    char name[] = "test";
    char *argv[] = {name, nullptr};
    const QGuiApplication application(argc, argv);
    Platform::install(nativePlatform(QStringLiteral("Orvalen Test")));
    auto &manager = USBMirrorManager::shared();
    EXPECT_EQ(&manager, &USBMirrorManager::shared());
    EXPECT_TRUE(manager.connectedDevices.value().empty());
    while (manager.connectedDevices.value().empty()) // the test's own time limit ends a wait in vain
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    for (const auto &device : manager.connectedDevices.value())
        EXPECT_FALSE(device.instructions.empty()) << device.name; // whatever is connected here
}

} // namespace
} // namespace orvalen
