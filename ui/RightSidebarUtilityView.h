#pragma once

#include "ui/kit/Builders.h"

namespace orvalen {

class UrlOpener;
class USBMirrorManager;
class WebScreenServer;

/// The right column: the short way to the offline mirror. Always there, whatever the centre column shows.
class RightSidebarUtilityView : public kit::Panel
{
    Q_OBJECT

public:
    RightSidebarUtilityView(WebScreenServer &webServer, USBMirrorManager &usbManager, UrlOpener &urls,
                            QWidget *parent = nullptr);

    static constexpr int columnWidth = 220;

private:
    static QWidget *header();
    static QWidget *hotKeyReminder();
    QWidget *streamButton();
    QWidget *usbSection();
    QWidget *wifiSection();
    QWidget *settingsShortcuts();
    QWidget *promotion();

    WebScreenServer &webServer;
    USBMirrorManager &usbManager;
    UrlOpener &urls;
};

} // namespace orvalen
