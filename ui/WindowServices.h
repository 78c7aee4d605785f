#pragma once

#include "report/ReportGenerator.h"

namespace orvalen {

class AppState;
class CaffeineManager;
class UrlOpener;
class USBMirrorManager;
class WebScreenServer;

/// What the window shows and operates. Everything must outlive it.
struct WindowServices
{
    AppState &state;
    WebScreenServer &webServer;
    USBMirrorManager &usbManager;
    CaffeineManager &caffeine;
    UrlOpener &urls;
    ReportGenerator::Services report;

    /// Those of the installed platform, made now if nobody has asked for them before.
    [[nodiscard]] static WindowServices shared();
};

} // namespace orvalen
