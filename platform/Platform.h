#pragma once

#include <memory>
#include <string>

#include "platform/Application.h"
#include "platform/ChildProcesses.h"
#include "platform/Clock.h"
#include "platform/ColorScheme.h"
#include "platform/Dispatch.h"
#include "platform/Documents.h"
#include "platform/GraphicsCopies.h"
#include "platform/HostName.h"
#include "platform/HotKeys.h"
#include "platform/InputIdleTime.h"
#include "platform/LocalisedDates.h"
#include "platform/NetworkInterfaces.h"
#include "platform/Notifications.h"
#include "platform/Pasteboard.h"
#include "platform/PowerAssertions.h"
#include "platform/PowerSources.h"
#include "platform/Processors.h"
#include "platform/ScreenCaptureAccess.h"
#include "platform/SettingsPages.h"
#include "platform/SettingsStore.h"
#include "platform/Sounds.h"
#include "platform/Speech.h"
#include "platform/StatusBar.h"
#include "platform/TemperatureSensors.h"
#include "platform/TextFiles.h"
#include "platform/UrlOpener.h"
#include "platform/UsbTree.h"

namespace orvalen {

/// One machine: an implementation of each service. The entry point fills it and installs it once, before anything asks
/// a `shared()`; it is never destroyed, because background threads may use it until the process ends.
struct Platform
{
    std::unique_ptr<Clock> clock;
    std::unique_ptr<Dispatch> dispatch;
    std::unique_ptr<Processors> processors;
    std::unique_ptr<TemperatureSensors> temperatureSensors;
    std::unique_ptr<PowerSources> powerSources;
    std::unique_ptr<InputIdleTime> inputIdleTime;
    std::unique_ptr<GraphicsCopies> graphicsCopies;
    std::unique_ptr<SettingsStore> settings;
    std::unique_ptr<Sounds> sounds;
    std::unique_ptr<Notifications> notifications;
    std::unique_ptr<UrlOpener> urls;
    std::unique_ptr<ColorScheme> colorScheme;
    std::unique_ptr<ChildProcesses> processes;
    std::unique_ptr<HostName> hostName;
    std::unique_ptr<NetworkInterfaces> interfaces;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<ScreenCaptureAccess> captureAccess;
    std::unique_ptr<Speech> speech;
    std::unique_ptr<TextFiles> files;
    std::unique_ptr<HotKeys> hotKeys;
    std::unique_ptr<PowerAssertions> powerAssertions;
    std::unique_ptr<Application> application;
    std::unique_ptr<StatusBar> statusBar;
    std::unique_ptr<UsbTree> usb;
    std::unique_ptr<SettingsPages> settingsPages;
    std::unique_ptr<LocalisedDates> dates;
    std::unique_ptr<Documents> documents;
    std::string streamServer; ///< Absolute path of the stream server's program.

    /// Main thread. Installing twice, or a platform with a service missing, is a programming error and aborts.
    static void install(Platform platform);

    /// The installed platform; aborts when there is none.
    [[nodiscard]] static Platform &installed();
};

} // namespace orvalen
