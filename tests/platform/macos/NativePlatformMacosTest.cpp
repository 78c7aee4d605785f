#include <gmock/gmock.h>

#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <future>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "app/NativePlatform.h"
#include "platform/macos/ApplicationAppKit.h"
#include "platform/macos/ClockContinuous.h"
#include "platform/macos/GraphicsCopiesMetal.h"
#include "platform/macos/HostNameScutil.h"
#include "platform/macos/HotKeysCarbon.h"
#include "platform/macos/InputIdleTimeQuartz.h"
#include "platform/macos/LocalisedDatesCoreFoundation.h"
#include "platform/macos/NotificationsOsascript.h"
#include "platform/macos/PowerAssertionsIOKit.h"
#include "platform/macos/ProcessorsSysctl.h"
#include "platform/macos/ScreenCaptureAccessQuartz.h"
#include "platform/macos/SettingsPagesWorkspace.h"
#include "platform/macos/SettingsStoreDefaults.h"
#include "platform/macos/SoundsAfplay.h"
#include "platform/macos/SpeechSay.h"
#include "platform/macos/StatusBarAppKit.h"
#include "platform/macos/UsbTreeSystemProfiler.h"
#include "platform/posix/BoundedPowerSources.h"
#include "platform/posix/BoundedTemperatureSensors.h"
#include "platform/posix/ChildProcessesPosix.h"
#include "platform/posix/NetworkInterfacesPosix.h"
#include "platform/posix/TextFilesPosix.h"
#include "platform/qt/ColorSchemeOfPalette.h"
#include "platform/qt/DispatchQt.h"
#include "platform/qt/DocumentsQt.h"
#include "platform/qt/PasteboardQt.h"
#include "platform/qt/UrlOpenerQt.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/Carbon.h"
#include "tests/platform/macos/fakes/CoreFoundation.h"
#include "tests/platform/macos/fakes/HidEvents.h"
#include "tests/platform/macos/fakes/ObjectiveC.h"
#include "tests/platform/macos/fakes/PowerSources.h"
#include "tests/platform/macos/fakes/Threads.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

template <typename Adapter, typename Service>
void expectIs(const std::unique_ptr<Service> &service)
{
    ASSERT_TRUE(service) << typeid(Adapter).name();
    const auto &adapter = *service;
    EXPECT_STREQ(typeid(adapter).name(), typeid(Adapter).name());
}

class NativePlatformMacosTest : public ::testing::Test
{
protected:
    ~NativePlatformMacosTest() override
    {
        platform = {};
        EXPECT_EQ(carbon.outstanding(), 0);
        EXPECT_EQ(fake::living(), livingBefore) << "forgotten";
        EXPECT_EQ(fake::livingObjects(), livingObjectsBefore) << "forgotten";
        static_cast<void>(fake::takeCalls());
    }

    int argc = 1;
    char name[5] = "test";
    char *argv[2] = {name, nullptr};
    const QCoreApplication application{argc, argv};
    const fake::Kernel kernel;
    const fake::Carbon carbon;
    const int livingBefore = fake::living();
    const int livingObjectsBefore = fake::livingObjects();
    Platform platform = nativePlatform("orvalen");
};

TEST_F(NativePlatformMacosTest, eachServiceIsGivenByTheMacsOwnAdapter)
{
    // A service that is new to Platform does not compile here before it is looked at.
    const auto &[clock, dispatch, processors, temperatureSensors, powerSources, inputIdleTime, graphicsCopies, settings,
                 sounds, notifications, urls, colorScheme, processes, hostName, interfaces, pasteboard, captureAccess,
                 speech, files, hotKeys, powerAssertions, app, statusBar, usb, settingsPages, dates, documents,
                 streamServer] = platform;
    expectIs<ClockContinuous>(clock);
    expectIs<DispatchQt>(dispatch);
    expectIs<ProcessorsSysctl>(processors);
    expectIs<BoundedTemperatureSensors>(temperatureSensors);
    expectIs<BoundedPowerSources>(powerSources);
    expectIs<InputIdleTimeQuartz>(inputIdleTime);
    expectIs<GraphicsCopiesMetal>(graphicsCopies);
    expectIs<SettingsStoreDefaults>(settings);
    expectIs<SoundsAfplay>(sounds);
    expectIs<NotificationsOsascript>(notifications);
    expectIs<UrlOpenerQt>(urls);
    expectIs<ColorSchemeOfPalette>(colorScheme);
    expectIs<ChildProcessesPosix>(processes);
    expectIs<HostNameScutil>(hostName);
    expectIs<NetworkInterfacesPosix>(interfaces);
    expectIs<PasteboardQt>(pasteboard);
    expectIs<ScreenCaptureAccessQuartz>(captureAccess);
    expectIs<SpeechSay>(speech);
    expectIs<TextFilesPosix>(files);
    expectIs<HotKeysCarbon>(hotKeys);
    expectIs<PowerAssertionsIOKit>(powerAssertions);
    expectIs<ApplicationAppKit>(app);
    expectIs<StatusBarAppKit>(statusBar);
    expectIs<UsbTreeSystemProfiler>(usb);
    expectIs<SettingsPagesWorkspace>(settingsPages);
    expectIs<LocalisedDatesCoreFoundation>(dates);
    expectIs<DocumentsQt>(documents);
    const std::filesystem::path program(application.applicationFilePath().toStdString());
    EXPECT_EQ(streamServer, program.parent_path().parent_path() / "Resources/orvalen-stream-server");
}

TEST_F(NativePlatformMacosTest, backgroundTasksGetTheirQuality)
{
    static_cast<void>(fake::takeCalls());
    const auto callsOf = [this](QualityOfService quality) {
        std::promise<std::vector<std::string>> calls;
        platform.dispatch->concurrently(quality, [&] { calls.set_value(fake::takeCalls()); });
        return calls.get_future().get();
    };
    EXPECT_THAT(callsOf(QualityOfService::userInteractive), ElementsAre("pthread_set_qos_class_self_np 33 0"));
    EXPECT_THAT(callsOf(QualityOfService::userInitiated), ElementsAre("pthread_set_qos_class_self_np 25 0"));
}

TEST_F(NativePlatformMacosTest, sensorsAreReadOnAThreadOfAHighQuality)
{
    fake::setHidSystem({.services = {{"PMU tdev1", 31.5}}});
    static_cast<void>(fake::takeCalls());
    while (!platform.temperatureSensors->read()) // on a busy machine
        ;
    const auto calls = fake::takeCalls();
    EXPECT_EQ(calls.at(0), "pthread_set_qos_class_self_np 25 0");
    EXPECT_EQ(calls.at(1), "IOHIDEventSystemClientCreate default");
    fake::setHidSystem({});
}

TEST_F(NativePlatformMacosTest, powerSourcesAreReadOnAThreadOfAHighQuality)
{
    fake::setPowerSources({.descriptions = {[] { return fake::makeDictionary({}); }}});
    static_cast<void>(fake::takeCalls());
    while (platform.powerSources->list().empty()) // on a busy machine
        ;
    const auto calls = fake::takeCalls();
    EXPECT_EQ(calls.at(0), "pthread_set_qos_class_self_np 25 0");
    EXPECT_EQ(calls.at(1), "IOPSCopyPowerSourcesInfo");
    fake::setPowerSources({});
}

/// What is prepared lasts to the end of the process, so it is another one's.
TEST(NativePlatformMacosDeathTest, theProcessOutlivesItsReadersAndIsNoneThatTheSystemSlowsDown)
{
    const auto prepare = [] {
        prepareNativePlatform();
        std::raise(SIGPIPE);
        for (const auto &call : fake::takeCalls())
            std::fprintf(stderr, "%s\n", call.c_str());
        std::_Exit(7);
    };
    EXPECT_EXIT(prepare(), ::testing::ExitedWithCode(7), "^beginActivity 0xefffff Keeps the display warm\n$");
}

} // namespace
} // namespace orvalen
