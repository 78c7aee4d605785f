#pragma once

#include "ui/kit/Builders.h"

namespace orvalen {

class WebScreenServer;

/// The right column: the short way to the offline mirror. Always there, whatever the centre column shows.
class RightSidebarUtilityView : public kit::Panel
{
    Q_OBJECT

public:
    explicit RightSidebarUtilityView(WebScreenServer &webServer, QWidget *parent = nullptr);

    static constexpr int columnWidth = 220;

private:
    static QWidget *header();
    QWidget *streamButton();
    QWidget *usbSection();
    QWidget *wifiSection();

    WebScreenServer &webServer;
};

} // namespace orvalen
