#include <QCoreApplication>
#include <QDBusConnection>

#include <filesystem>

#include "app/NativePlatform.h"
#include "platform/linux/ClockBoottime.h"
#include "platform/linux/FontsWarmUp.h"
#include "platform/linux/GraphicsCopiesVulkan.h"
#include "platform/linux/InputIdleTimeX11.h"
#include "platform/linux/NotificationsDBus.h"
#include "platform/linux/PowerSourcesSysfs.h"
#include "platform/linux/ProcessorsAffinity.h"
#include "platform/linux/SoundsCanberra.h"
#include "platform/linux/TemperatureSensorsSysfs.h"
#include "platform/posix/BoundedPowerSources.h"
#include "platform/posix/BoundedTemperatureSensors.h"
#include "platform/posix/InputIdleTimeFirstAvailable.h"
#include "platform/qt/ColorSchemePortal.h"
#include "platform/qt/DispatchQt.h"
#include "platform/qt/SettingsStoreQt.h"
#include "platform/qt/UrlOpenerQt.h"

namespace orvalen {

namespace {

/// The sound theme lies beside the program, in the build tree as where it is installed.
std::filesystem::path soundTheme()
{
    const std::filesystem::path programs(QCoreApplication::applicationDirPath().toStdString());
    return programs.parent_path() / "share/sounds/orvalen";
}

/// Ways to learn the idle time, best first. Other kinds of session join here.
std::unique_ptr<InputIdleTime> inputIdleTime()
{
    std::vector<std::unique_ptr<InputIdleTime>> ways;
    ways.push_back(std::make_unique<InputIdleTimeX11>());
    return std::make_unique<InputIdleTimeFirstAvailable>(std::move(ways));
}

} // namespace

void prepareNativePlatform()
{
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
    platform.sounds = std::make_unique<SoundsCanberra>(soundTheme());
    platform.notifications = std::make_unique<NotificationsDBus>(QStringLiteral(ORVALEN_APPLICATION_ID));
    platform.urls = std::make_unique<UrlOpenerQt>();
    platform.colorScheme = std::make_unique<ColorSchemePortal>();
    return platform;
}

} // namespace orvalen
