#include <QCoreApplication>
#include <QDBusConnection>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "app/NativePlatform.h"
#include "platform/linux/ClockBoottime.h"
#include "platform/linux/FontsWarmUp.h"
#include "platform/linux/GraphicsCopiesVulkan.h"
#include "platform/linux/HostNameAvahi.h"
#include "platform/linux/HotKeysX11.h"
#include "platform/linux/InputIdleTimeX11.h"
#include "platform/linux/LaunchFeedbackX11.h"
#include "platform/linux/LocalisedDatesIcu.h"
#include "platform/linux/NotificationsDBus.h"
#include "platform/linux/PowerSourcesSysfs.h"
#include "platform/linux/ProcessorsAffinity.h"
#include "platform/linux/ProgramInstanceDBus.h"
#include "platform/linux/ScreenCaptureAccessLinux.h"
#include "platform/linux/SettingsPagesDesktop.h"
#include "platform/linux/SleepInhibitorsLinux.h"
#include "platform/linux/SoundsCanberra.h"
#include "platform/linux/SpeechCommand.h"
#include "platform/linux/TemperatureSensorsSysfs.h"
#include "platform/linux/TrayHostLinux.h"
#include "platform/linux/UrlOpenerXdg.h"
#include "platform/linux/UsbTreeSysfs.h"
#include "platform/linux/WindowActivationX11.h"
#include "platform/posix/BoundedPowerSources.h"
#include "platform/posix/BoundedTemperatureSensors.h"
#include "platform/posix/ChildProcessesPosix.h"
#include "platform/posix/HotKeysFirstAvailable.h"
#include "platform/posix/InputIdleTimeFirstAvailable.h"
#include "platform/posix/NetworkInterfacesPosix.h"
#include "platform/posix/TextFilesPosix.h"
#include "platform/qt/ApplicationQt.h"
#include "platform/qt/ColorSchemePortal.h"
#include "platform/qt/DispatchQt.h"
#include "platform/qt/DocumentsQt.h"
#include "platform/qt/PasteboardQt.h"
#include "platform/qt/SettingsStoreQt.h"
#include "platform/qt/StatusBarQt.h"

namespace orvalen {

namespace {

/// What belongs to the program lies beside it, in the build tree as where it is installed.
std::filesystem::path besideTheProgram(const char *name)
{
    const std::filesystem::path programs(QCoreApplication::applicationDirPath().toStdString());
    return programs.parent_path() / name;
}

/// Without links and detours where it is there: it shows on a command line.
std::string streamServer()
{
    const auto program = besideTheProgram("libexec/orvalen/orvalen-stream-server");
    std::error_code missing;
    const auto canonical = std::filesystem::canonical(program, missing);
    return missing ? program.string() : canonical.string();
}

std::string environment(const char *variable)
{
    const char *value = std::getenv(variable);
    return value ? value : "";
}

/// Ways to learn the idle time, best first. Other kinds of session join here.
std::unique_ptr<InputIdleTime> inputIdleTime()
{
    std::vector<std::unique_ptr<InputIdleTime>> ways;
    ways.push_back(std::make_unique<InputIdleTimeX11>());
    return std::make_unique<InputIdleTimeFirstAvailable>(std::move(ways));
}

/// Ways to get keys from whatever program is in front, best first. Other kinds of session join here.
std::unique_ptr<HotKeys> hotKeys(Dispatch &dispatch)
{
    std::vector<std::unique_ptr<HotKeys>> ways;
    ways.push_back(std::make_unique<HotKeysX11>(dispatch));
    return std::make_unique<HotKeysFirstAvailable>(std::move(ways));
}

} // namespace

std::unique_ptr<ProgramInstance> nativeProgramInstance(std::string name)
{
    return std::make_unique<ProgramInstanceDBus>(std::move(name));
}

void endLaunch(const std::string &token)
{
    endLaunchFeedback(token);
}

void prepareNativePlatform()
{
    std::signal(SIGPIPE, SIG_IGN); // whoever reads what we print may go; we stay
    warmUpFonts();
}

Platform nativePlatform(const QString &settingsName)
{
    Platform platform;
    platform.clock = std::make_unique<ClockBoottime>();
    platform.dispatch = std::make_unique<DispatchQt>();
    platform.processors = std::make_unique<ProcessorsAffinity>();
    platform.temperatureSensors =
        std::make_unique<BoundedTemperatureSensors>(std::make_shared<TemperatureSensorsSysfs>());
    platform.powerSources = std::make_unique<BoundedPowerSources>(std::make_shared<PowerSourcesSysfs>());
    platform.inputIdleTime = inputIdleTime();
    platform.graphicsCopies = std::make_unique<GraphicsCopiesVulkan>();
    platform.settings = std::make_unique<SettingsStoreQt>(SettingsStoreQt::userFile(settingsName));
    platform.sounds = std::make_unique<SoundsCanberra>(besideTheProgram("share/sounds/orvalen"));
    platform.notifications = std::make_unique<NotificationsDBus>(QStringLiteral(ORVALEN_APPLICATION_ID));
    platform.colorScheme = std::make_unique<ColorSchemePortal>();
    platform.processes = std::make_unique<ChildProcessesPosix>();
    platform.urls = std::make_unique<UrlOpenerXdg>(*platform.processes, environment("PATH"));
    platform.hostName = std::make_unique<HostNameAvahi>();
    platform.interfaces = std::make_unique<NetworkInterfacesPosix>();
    platform.pasteboard = std::make_unique<PasteboardQt>();
    platform.captureAccess = std::make_unique<ScreenCaptureAccessLinux>();
    platform.speech = std::make_unique<SpeechCommand>(*platform.processes, environment("PATH"));
    platform.files = std::make_unique<TextFilesPosix>();
    platform.usb = std::make_unique<UsbTreeSysfs>();
    platform.settingsPages = std::make_unique<SettingsPagesDesktop>(
        *platform.processes, environment("XDG_CURRENT_DESKTOP"), environment("PATH"));
    platform.hotKeys = hotKeys(*platform.dispatch);
    platform.application = std::make_unique<ApplicationQt>(bringForwardForUser);
    platform.statusBar = std::make_unique<StatusBarQt>(std::make_unique<TrayHostLinux>(), *platform.colorScheme);
    platform.dates = std::make_unique<LocalisedDatesIcu>();
    platform.documents = std::make_unique<DocumentsQt>(*platform.urls);
    platform.powerAssertions =
        std::make_unique<PowerAssertionsFirstGranted>(linuxSleepInhibitors({"Orvalen", ORVALEN_APPLICATION_ID}));
    platform.streamServer = streamServer();
    return platform;
}

} // namespace orvalen
