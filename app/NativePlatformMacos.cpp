#include <QCoreApplication>

#include <csignal>
#include <filesystem>
#include <system_error>
#include <utility>

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
#include "platform/macos/PowerSourcesIOKit.h"
#include "platform/macos/ProcessorsSysctl.h"
#include "platform/macos/ProgramInstanceAppleEvents.h"
#include "platform/macos/ScreenCaptureAccessQuartz.h"
#include "platform/macos/SettingsPagesWorkspace.h"
#include "platform/macos/SettingsStoreDefaults.h"
#include "platform/macos/SoundsAfplay.h"
#include "platform/macos/SpeechSay.h"
#include "platform/macos/StatusBarAppKit.h"
#include "platform/macos/TemperatureSensorsIOKit.h"
#include "platform/macos/ThreadQuality.h"
#include "platform/macos/UsbTreeSystemProfiler.h"
#include "platform/macos/UserActivity.h"
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

namespace orvalen {

namespace {

/// In the bundle's Resources, beside the folder of its program. Without links and detours where it is there: it shows
/// on a command line.
std::string streamServer()
{
    const std::filesystem::path programs(QCoreApplication::applicationDirPath().toStdString());
    const auto program = programs.parent_path() / "Resources/orvalen-stream-server";
    std::error_code missing;
    const auto canonical = std::filesystem::canonical(program, missing);
    return missing ? program.string() : canonical.string();
}

/// Readings are wanted while heaters of a high quality keep every core busy.
void prepareAskingThread()
{
    setThreadQuality(QualityOfService::userInitiated);
}

} // namespace

std::unique_ptr<ProgramInstance> nativeProgramInstance(std::string name)
{
    static ChildProcessesPosix processes; // to the end of the process
    return std::make_unique<ProgramInstanceAppleEvents>(std::move(name), processes);
}

void endLaunch(const std::string &)
{
    // Nobody waits for it here.
}

void prepareNativePlatform()
{
    std::signal(SIGPIPE, SIG_IGN);                             // whoever reads what we print may go; we stay
    static const UserActivity watch("Keeps the display warm"); // to the end of the process
}

/// The defaults database has a domain for each application, so the settings need no name of ours.
Platform nativePlatform(const QString &)
{
    Platform platform;
    platform.clock = std::make_unique<ClockContinuous>();
    platform.dispatch = std::make_unique<DispatchQt>(setThreadQuality);
    platform.processors = std::make_unique<ProcessorsSysctl>();
    platform.temperatureSensors = std::make_unique<BoundedTemperatureSensors>(
        std::make_shared<TemperatureSensorsIOKit>(), boundedAnswerTime, prepareAskingThread);
    platform.powerSources = std::make_unique<BoundedPowerSources>(std::make_shared<PowerSourcesIOKit>(),
                                                                  boundedAnswerTime, prepareAskingThread);
    platform.inputIdleTime = std::make_unique<InputIdleTimeQuartz>();
    platform.graphicsCopies = std::make_unique<GraphicsCopiesMetal>();
    platform.settings = std::make_unique<SettingsStoreDefaults>();
    platform.processes = std::make_unique<ChildProcessesPosix>();
    platform.sounds = std::make_unique<SoundsAfplay>(*platform.processes);
    platform.notifications = std::make_unique<NotificationsOsascript>(*platform.processes);
    platform.colorScheme = std::make_unique<ColorSchemeOfPalette>();
    platform.urls = std::make_unique<UrlOpenerQt>();
    platform.hostName = std::make_unique<HostNameScutil>(*platform.processes);
    platform.interfaces = std::make_unique<NetworkInterfacesPosix>();
    platform.pasteboard = std::make_unique<PasteboardQt>();
    platform.captureAccess = std::make_unique<ScreenCaptureAccessQuartz>();
    platform.speech = std::make_unique<SpeechSay>(*platform.processes);
    platform.files = std::make_unique<TextFilesPosix>();
    platform.usb = std::make_unique<UsbTreeSystemProfiler>(*platform.processes);
    platform.settingsPages = std::make_unique<SettingsPagesWorkspace>(*platform.urls);
    platform.hotKeys = std::make_unique<HotKeysCarbon>();
    platform.application = std::make_unique<ApplicationAppKit>();
    platform.statusBar = std::make_unique<StatusBarAppKit>();
    platform.dates = std::make_unique<LocalisedDatesCoreFoundation>();
    platform.documents = std::make_unique<DocumentsQt>(*platform.urls);
    platform.powerAssertions = std::make_unique<PowerAssertionsIOKit>();
    platform.streamServer = streamServer();
    return platform;
}

} // namespace orvalen
