#include "ui/MultiCloneView.h"

#include "mirroring/USBMirrorManager.h"
#include "streaming/WebScreenServer.h"
#include "ui/StreamRules.h"

namespace orvalen {

using namespace kit;
using Rules = StreamRules;

namespace {

constexpr int codeSize = 100;

} // namespace

MultiCloneView::MultiCloneView(WebScreenServer &webServer, USBMirrorManager &usbManager, QWidget *parent)
    : Ground(parent), webServer(webServer), usbManager(usbManager)
{
    vStackIn(*this,
             {
                 titleBlock(),
                 permissionWarning(),
                 webMirrorCard(),
                 tetheringCard(),
                 sidecarCard(),
                 blindVoiceCard(),
                 spacer(),
             })
        .spacing(14);
}

QWidget *MultiCloneView::titleBlock()
{
    return hStack(
               {
                   symbol("rectangle.on.rectangle.angled", 22).color(accent::blue),
                   filling(
                       vStack({
                                  text(tr("Multi-Screen Clone & Bypass Studio")).size(15).weight(QFont::Bold).wrapped(),
                                  note(tr("Multiple zero-downtime display mirroring methods for when screen "
                                          "blacks out.")),
                              })
                           .spacing(1)),
               })
        .spacing(10);
}

QWidget *MultiCloneView::permissionWarning()
{
    return shownWhile(
        {webServer.hasScreenRecordingPermission, [](bool granted) { return !granted; }},
        card({
                 hStack(
                     {
                         symbol("exclamationmark.shield.fill", 20).color(accent::orange),
                         filling(
                             vStack(
                                 {
                                     title(tr("Screen Recording Permission Required")).color(accent::orange).wrapped(),
                                     note(tr("Toggle Orvalen ON in System Settings to enable streaming.")),
                                 })
                                 .spacing(1)),
                         smallButton(tr("Open Settings ↗"), [this] { usbManager.openScreenRecordingSettings(); })
                             .color(accent::orange),
                     })
                     .spacing(10),
             })
            .tint(accent::orange, 10));
}

QWidget *MultiCloneView::methodCard(const Method &method)
{
    auto heading = hStack({
                              numberDisc(method.number, method.badgeColor),
                              symbol(method.icon, 16).color(method.badgeColor),
                              filling(title(method.title).wrapped()),
                              capsule(method.badge, method.badgeColor),
                          })
                       .spacing(8);
    auto call = callToAction(method.ctaText, method.action).color(method.ctaColor);
    if (!method.extraContent)
        return card({heading, note(method.description), call}).spacing(8);
    return card({heading, note(method.description), call, method.extraContent}).spacing(8);
}

QWidget *MultiCloneView::webMirrorCard()
{
    return methodCard({
        .number = 1,
        .title = tr("Zero-Install Web Mirror (Phone & Tablets)"),
        .badge = {webServer.isRunning, Rules::browserBadge},
        .badgeColor = accent::green,
        .icon = "safari.fill",
        .description =
            tr("Stream Mac screen directly to any iPhone, Android, or laptop browser with Screen 1 / Screen 2 tabs."),
        .ctaText = {webServer.isRunning, Rules::browserLabel},
        .ctaColor = {webServer.isRunning, Rules::buttonAccent},
        .action = [this] { webServer.toggleServer(); },
        .extraContent = shownWhile(webServer.isRunning, hStack({
                                                                   Element(codeToScan(), 0, Qt::AlignTop),
                                                                   Element(streamAddresses(), 1, Qt::AlignTop),
                                                               })
                                                            .spacing(12)
                                                            .padding(0, 4, 0, 0)),
    });
}

QWidget *MultiCloneView::codeToScan()
{
    return shownWhile(
        {webServer.qrCodeImage, Rules::hasCode},
        vStack({
                   qrCode(webServer.qrCodeImage, codeSize, {webServer.primaryURL, QString::fromStdString}),
                   text(tr("Scan with Phone")).size(9).color(neutral::secondary).centred(),
               })
            .spacing(4));
}

QWidget *MultiCloneView::streamAddresses()
{
    const auto browser = tr("Open in Phone / Tablet Browser:");
    const auto bonjour = tr("Universal Bonjour (mDNS):");
    const Live<QString> primary(webServer.primaryURL, QString::fromStdString);
    const Live<QString> universal(webServer.bonjourURL, QString::fromStdString);
    auto inBrowser =
        vStack({
                   text(browser).size(10).color(neutral::secondary).wrapped(),
                   addressRow(address(primary, browser).size(12).weight(QFont::Bold),
                              {
                                  smallButton(tr("Copy"), [this] { webServer.copyPrimaryLink(); }).about(primary),
                                  smallButton(tr("Open"), [this] { webServer.openLocalBrowser(); }).about(primary),
                              }),
               })
            .spacing(4);
    auto byName = vStack({
                             text(bonjour).size(8).color(neutral::secondary).wrapped(),
                             addressRow(address(universal, bonjour).size(10).color(accent::purple),
                                        {
                                            smallButton(tr("Copy"), [this] { webServer.copyBonjourLink(); })
                                                .color(accent::purple)
                                                .about(universal),
                                        }),
                         })
                      .spacing(4);
    return vStack({inBrowser, byName}).spacing(12);
}

QWidget *MultiCloneView::tetheringCard()
{
    return methodCard({
        .number = 2,
        .title = tr("Direct USB Tethering Mirror"),
        .badge = {webServer.usbBridge, Rules::bridgeBadge},
        .badgeColor = {webServer.usbBridge, Rules::bridgeAccent},
        .icon = "cable.connector",
        .description = tr("Connect phone with USB cable & turn on USB Tethering. Zero Wi-Fi or router needed."),
        .ctaText = tr("Refresh USB Status"),
        .ctaColor = accent::blue,
        .action =
            [this] {
                webServer.refreshIPs();
                usbManager.scanConnectedDevices();
            },
        .extraContent = bridgeState(),
    });
}

QWidget *MultiCloneView::bridgeState()
{
    const auto line = [](const QString &words) { return note(words).size(10); };
    return vStack(
               {
                   shownWhile(
                       {webServer.usbBridge, Rules::isBridgeThere},
                       hStack({
                           dot(7, accent::green),
                           filling(
                               text({webServer.usbBridge, Rules::bridgeLine}).size(10).color(accent::green).wrapped()),
                           smallButton(tr("Copy Link"), [this] { webServer.copyUSBLink(); })
                               .color(accent::green)
                               .about({webServer.usbIP, webServer.serverPort, Rules::usbLink}),
                       })),
                   shownWhile({webServer.usbBridge, Rules::isBridgeMissing},
                              vStack({
                                         line(tr("Waiting for USB Connection:")),
                                         line(tr("• Connect phone to Mac via USB-C / Lightning cable.")),
                                         line(tr("• iPhone: Settings → Personal Hotspot → Enable 'Allow Others to "
                                                 "Join'.")),
                                         line(tr("• Android: Settings → Hotspot & Tethering → Turn on 'USB "
                                                 "Tethering'.")),
                                         line(tr(" (Bonjour works over USB cable)")),
                                     })
                                  .spacing(1)),
               })
        .spacing(0)
        .padding(0, 4, 0, 0);
}

QWidget *MultiCloneView::sidecarCard()
{
    return methodCard({
        .number = 3,
        .title = tr("Apple Sidecar / AirPlay USB Mirror"),
        .badge = tr("RETINA QUALITY"),
        .badgeColor = accent::purple,
        .icon = "ipad.and.iphone",
        .description = tr("Use iPad as a zero-latency secondary screen via USB-C or AirPlay to any TV/Mac."),
        .ctaText = tr("Open Displays Settings ↗"),
        .ctaColor = accent::purple,
        .action = [this] { usbManager.openDisplaysSettings(); },
    });
}

QWidget *MultiCloneView::blindVoiceCard()
{
    return methodCard({
        .number = 4,
        .title = tr("Blind Voice Assistant (When 100% Black)"),
        .badge = tr("KEYBOARD SHORTCUT"),
        .badgeColor = accent::orange,
        .icon = "eye.slash.fill",
        .description = tr("Press ⌘ + ⌥ + M anytime. Mac will instantly start streaming and speak out the connection "
                          "URL via speakers."),
        .ctaText = tr("Test Hotkey Voice"),
        .ctaColor = accent::orange,
        .action = [this] { webServer.triggerBlindCast(); },
    });
}

} // namespace orvalen
