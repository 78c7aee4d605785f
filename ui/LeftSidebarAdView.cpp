#include "ui/LeftSidebarAdView.h"

#include "core/MakerSite.h"
#include "platform/UrlOpener.h"
#include "ui/kit/ScrollArea.h"

namespace orvalen {

using namespace kit;

LeftSidebarAdView::LeftSidebarAdView(UrlOpener &urls, QWidget *parent)
    : Panel(neutral::panel, EdgeLine::trailing, parent),
      ads{
          {
              .id = "harbor",
              .title = tr("Quenmark Harbor"),
              .badge = tr("HOSTING"),
              .description = tr("Small servers, and a person on call who knows them by name."),
              .cta = tr("See the plans"),
              .url = sitePage(makerSite, "harbor"),
              .iconName = "server.rack",
              .accentColor = accent::blue,
          },
          {
              .id = "workshop",
              .title = tr("Quenmark Workshop"),
              .badge = tr("TOOLS"),
              .description = tr("Convert, sign and tidy files in a browser tab. Nothing to install."),
              .cta = tr("Open the workshop"),
              .url = sitePage(makerSite, "workshop"),
              .iconName = "wrench.and.screwdriver.fill",
              .accentColor = accent::orange,
          },
      },
      urls(urls)
{
    setFixedWidth(columnWidth);
    auto *column = new Ground;
    vStackIn(*column, {header(), adCards(), socialCard(), spacer()}).spacing(14).padding(12);
    vStackIn(*this, {filling(new ScrollArea(column))});
}

QWidget *LeftSidebarAdView::header()
{
    return hStack({
        symbol("megaphone.fill", 14).color(accent::blue),
        filling(text(tr("QUENMARK NETWORK")).size(11).weight(QFont::Bold).capitals().color(accent::blue).wrapped()),
    });
}

QWidget *LeftSidebarAdView::adCards()
{
    Elements cards;
    for (const auto &ad : ads)
        cards.emplace_back(adCard(ad));
    return vStack(cards).spacing(14);
}

QWidget *LeftSidebarAdView::adCard(const SponsoredAdItem &ad)
{
    return card({
                    hStack({
                        symbol(ad.iconName, 18).color(ad.accentColor),
                        spacer(),
                        capsule(ad.badge, ad.accentColor),
                    }),
                    text(ad.title).weight(QFont::DemiBold).wrapped(),
                    note(ad.description),
                    leading(link(ad.cta, [this, url = ad.url] { urls.open(url); })
                                .size(10)
                                .weight(QFont::DemiBold)
                                .color(ad.accentColor)
                                .symbol("arrow.up.right")
                                .wrapped()
                                .about(ad.title)),
                })
        .tint(ad.accentColor, 7)
        .spacing(5)
        .padding(12, 12, 12, 7);
}

QWidget *LeftSidebarAdView::socialCard()
{
    const auto heading = tr("Boards, cables and second chances");
    return card({
                    caption(tr("SPONSORED INFOTAINMENT")).size(9).wrapped(),
                    text(heading).size(10).weight(QFont::DemiBold).wrapped(),
                    leading(link(tr("Watch the channel"), [this] { urls.open(sitePage(makerSite, "channel")); })
                                .size(10)
                                .weight(QFont::DemiBold)
                                .color(accent::purple)
                                .wrapped()
                                .about(heading)),
                })
        .tint(accent::purple, 8)
        .spacing(4)
        .padding(12, 12, 12, 7);
}

} // namespace orvalen
