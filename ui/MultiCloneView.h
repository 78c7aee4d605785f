#pragma once

#include "ui/kit/Builders.h"

namespace orvalen {

class USBMirrorManager;
class WebScreenServer;

/// The tab "Screen Clone": the ways to see the desktop elsewhere when the screen has gone black.
class MultiCloneView : public kit::Ground
{
    Q_OBJECT

public:
    MultiCloneView(WebScreenServer &webServer, USBMirrorManager &usbManager, QWidget *parent = nullptr);

private:
    /// What is on a card. `extraContent` stands below the button.
    struct Method
    {
        int number;
        QString title;
        kit::Live<QString> badge;
        kit::Live<kit::Accent> badgeColor;
        QString icon;
        QString description;
        kit::Live<QString> ctaText;
        kit::Live<kit::Accent> ctaColor;
        kit::Action action;
        QWidget *extraContent = nullptr;
    };

    static QWidget *titleBlock();
    QWidget *permissionWarning();
    static QWidget *methodCard(const Method &method);
    QWidget *webMirrorCard();
    QWidget *tetheringCard();
    QWidget *sidecarCard();
    QWidget *blindVoiceCard();

    QWidget *streamAddresses();
    QWidget *codeToScan();
    QWidget *bridgeState();

    WebScreenServer &webServer;
    USBMirrorManager &usbManager;
};

} // namespace orvalen
