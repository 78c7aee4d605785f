#include "ui/StreamRules.h"

#include "streaming/StreamAddresses.h"

namespace orvalen {

namespace accent = kit::accent;

namespace {

// On the solid colours of the button, in both themes.
constexpr kit::Shade litDot = kit::shade(0x7CFFB0, 0x7CFFB0);
constexpr kit::Shade dullDot = kit::shade(0xD0D3D8, 0xD0D3D8);

} // namespace

QString StreamRules::offlineLabel(bool isRunning)
{
    return isRunning ? tr("Stop Offline Stream") : tr("⚡ Start Offline Stream");
}

kit::Accent StreamRules::buttonAccent(bool isRunning)
{
    return isRunning ? accent::orange : accent::green;
}

kit::Shade StreamRules::dotShade(bool isRunning)
{
    return isRunning ? litDot : dullDot;
}

QString StreamRules::dotName(bool isRunning)
{
    return isRunning ? tr("The stream is on") : tr("The stream is off");
}

QString StreamRules::browserBadge(bool isRunning)
{
    return isRunning ? tr("ONLINE") : tr("NO APP NEEDED");
}

QString StreamRules::browserLabel(bool isRunning)
{
    return isRunning ? tr("Stop Stream") : tr("Start Browser Cast");
}

QString StreamRules::bridgeBadge(const USBBridgeInfo &bridge)
{
    return bridge.isDetected ? tr("CONNECTED") : tr("100% OFFLINE");
}

kit::Accent StreamRules::bridgeAccent(const USBBridgeInfo &bridge)
{
    return bridge.isDetected ? accent::green : accent::blue;
}

QString StreamRules::bridgeLine(const USBBridgeInfo &bridge)
{
    return tr("USB Bridge Active: %1").arg(QString::fromStdString(bridge.ipAddress));
}

QString StreamRules::usbLink(const std::string &usbIP, int port)
{
    return QString::fromStdString(streamURL(usbIP, port));
}

} // namespace orvalen
