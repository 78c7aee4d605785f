#include "ui/RightSidebarUtilityView.h"

#include "core/MakerSite.h"
#include "mirroring/USBMirrorManager.h"
#include "platform/UrlOpener.h"
#include "streaming/WebScreenServer.h"
#include "ui/StreamRules.h"
#include "ui/kit/ScrollArea.h"

namespace orvalen {

using namespace kit;
using Rules = StreamRules;

RightSidebarUtilityView::RightSidebarUtilityView(WebScreenServer &webServer, USBMirrorManager &usbManager,
                                                 UrlOpener &urls, QWidget *parent)
    : Panel(neutral::panel, EdgeLine::leading, parent), webServer(webServer), usbManager(usbManager), urls(urls)
{
    setFixedWidth(columnWidth);
    auto *column = new Ground;
    vStackIn(*column,
             {
                 header(),
                 hotKeyReminder(),
                 streamButton(),
                 usbSection(),
                 wifiSection(),
                 settingsShortcuts(),
                 spacer(),
                 promotion(),
             })
        .spacing(9)
        .padding(12);
    vStackIn(*this, {filling(new ScrollArea(column))});
}

QWidget *RightSidebarUtilityView::header()
{
    return vStack({
                      hStack({
                          symbol("wifi.slash", 14).color(accent::green),
                          filling(text(tr("100% OFFLINE MIRROR"))
                                      .size(11)
                                      .weight(QFont::Bold)
                                      .capitals()
                                      .color(accent::green)
                                      .wrapped()),
                      }),
                      leading(capsule(tr("NO INTERNET"), accent::green, 7, 20)),
                      note(tr("Works completely offline without Wi-Fi, Router or Active Internet.")).size(10),
                  })
        .spacing(5);
}

QWidget *RightSidebarUtilityView::hotKeyReminder()
{
    return card({
                    hStack({
                        symbol("eye.slash.fill", 13).color(accent::orange),
                        filling(caption(tr("BLANK SCREEN HOTKEY:")).color(accent::orange).wrapped()),
                    }),
                    leading(keyBadge(tr("⌘ + ⌥ + M"), accent::orange)),
                })
        .spacing(5)
        .padding(10, 9);
}

QWidget *RightSidebarUtilityView::streamButton()
{
    return callToAction({webServer.isRunning, Rules::offlineLabel}, [this] { webServer.toggleServer(); })
        .textSize(11)
        .color({webServer.isRunning, Rules::buttonAccent})
        .dot({webServer.isRunning, Rules::dotShade}, {webServer.isRunning, Rules::dotName});
}

QWidget *RightSidebarUtilityView::usbSection()
{
    const auto heading = tr("USB CABLE (OFFLINE)");
    const Live<QString> link(webServer.usbIP, webServer.serverPort, Rules::usbLink);
    return card({
                    hStack({symbol("cable.connector", 14), filling(caption(heading).color(neutral::text).wrapped())}),
                    shownWhile({webServer.usbBridge, Rules::isBridgeThere},
                               vStack({
                                   caption(tr("USB LINK ACTIVE")).color(accent::green),
                                   card({address(link, heading).size(10).color(accent::green)})
                                       .tint(accent::green, 12)
                                       .radius(7)
                                       .padding(8, 5),
                                   leading(smallButton(tr("Copy"), [this] { webServer.copyUSBLink(); })
                                               .color(accent::green)
                                               .about(link)),
                               })),
                    shownWhile({webServer.usbBridge, Rules::isBridgeMissing},
                               note(tr("Plug USB cable & turn on Hotspot/Tethering:"))),
                })
        .spacing(6)
        .padding(10);
}

QWidget *RightSidebarUtilityView::wifiSection()
{
    const auto heading = tr("WI-FI / LOCAL MDNS");
    const Live<QString> link(webServer.primaryURL, QString::fromStdString);
    return card({
                    hStack({
                        symbol("wifi", 14).color(accent::blue),
                        filling(caption(heading).size(9).color(accent::blue).wrapped()),
                    }),
                    addressRow(address(link, heading).size(8).color(accent::blue),
                               {smallButton(tr("Copy"), [this] { webServer.copyPrimaryLink(); }).about(link)}),
                })
        .spacing(6)
        .padding(10);
}

QWidget *RightSidebarUtilityView::settingsShortcuts()
{
    constexpr const char *elsewhere = "arrow.up.forward.app";
    return vStack({
                      caption(tr("SYSTEM SETTINGS JUMP")).size(9).wrapped(),
                      rowButton({"display", elsewhere}, tr("Displays & Mirroring"),
                                [this] { usbManager.openDisplaysSettings(); })
                          .color(accent::blue),
                      rowButton({"record.circle", elsewhere}, tr("Screen Recording Access"),
                                [this] { usbManager.openScreenRecordingSettings(); })
                          .color(accent::red),
                  })
        .spacing(9)
        .padding(0, 2, 0, 0);
}

QWidget *RightSidebarUtilityView::promotion()
{
    const auto heading = tr("Servers and engineers, rented");
    return card({
                    text(heading).size(11).weight(QFont::DemiBold).wrapped(),
                    note(tr("Quenmark hosts what you build, and helps you build it.")).size(10),
                    leading(link(tr("Talk to us ↗"), [this] { urls.open(sitePage(makerSite, "contact")); })
                                .size(10)
                                .weight(QFont::DemiBold)
                                .color(accent::indigo)
                                .wrapped()
                                .about(heading)),
                })
        .tint(accent::indigo, 8)
        .spacing(2)
        .padding(10, 10, 10, 5);
}

} // namespace orvalen
