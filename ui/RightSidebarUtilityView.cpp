#include "ui/RightSidebarUtilityView.h"

#include "streaming/WebScreenServer.h"
#include "ui/StreamRules.h"

namespace orvalen {

using namespace kit;
using Rules = StreamRules;

RightSidebarUtilityView::RightSidebarUtilityView(WebScreenServer &webServer, QWidget *parent)
    : Panel(neutral::panel, EdgeLine::leading, parent), webServer(webServer)
{
    setFixedWidth(columnWidth);
    vStackIn(*this, {header(), streamButton(), usbSection(), wifiSection(), spacer()}).spacing(9).padding(12);
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

} // namespace orvalen
