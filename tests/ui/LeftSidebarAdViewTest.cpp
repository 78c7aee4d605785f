#include "ui/LeftSidebarAdView.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QTest>
#include <QUrl>

#include <set>
#include <type_traits>

#include "core/MakerSite.h"
#include "tests/ui/Reading.h"
#include "ui/CenterDashboardView.h"
#include "ui/kit/Symbols.h"
#include "ui/kit/Theme.h"

namespace orvalen {
namespace {

using namespace kit;
using test::bracketed;
using test::cardsOf;
using test::contentOf;
using test::Dashboard;
using test::Lettering;
using test::letteringOf;
using test::onlyIn;
using test::placeIn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

static_assert(!std::is_assignable_v<decltype((std::declval<SponsoredAdItem &>().url)), std::string>);
static_assert(!std::is_assignable_v<decltype((std::declval<SponsoredAdItem &>().title)), QString>);

/// The left column of the window.
struct LeftSidebar : ::testing::Test, Dashboard
{
    LeftSidebar()
    {
        window.setPalette(themePalette(false));
        window.resize(1000, 900);
        show();
        window.activateWindow();
        settle();
    }

    [[nodiscard]] LeftSidebarAdView &column() const { return onlyIn<LeftSidebarAdView>(window); }
    [[nodiscard]] std::vector<Card *> adCards() const
    {
        auto cards = cardsOf(column());
        cards.pop_back();
        return cards;
    }
    [[nodiscard]] Card &socialCard() const { return *cardsOf(column()).back(); }
    [[nodiscard]] QRect placeOf(const QWidget &widget) const { return placeIn(column(), widget); }
    [[nodiscard]] QColor pixel(const QWidget &widget, const QPoint &point)
    {
        return window.grab().toImage().pixelColor(widget.mapTo(&window, point));
    }
};

TEST_F(LeftSidebar, hasTwoEntriesInBlueAndInOrange)
{
    const auto &ads = column().ads;
    ASSERT_EQ(ads.size(), 2u);
    EXPECT_EQ(ads[0].accentColor, accent::blue);
    EXPECT_EQ(ads[1].accentColor, accent::orange);
    std::set<QString> ids;
    for (const auto &ad : ads) {
        ids.insert(ad.id);
        for (const auto &text : {ad.id, ad.title, ad.badge, ad.description, ad.cta, ad.iconName})
            EXPECT_FALSE(text.isEmpty()) << ad.id.toStdString();
        EXPECT_EQ(ad.badge, ad.badge.toUpper());
        EXPECT_FALSE(symbolIcon(ad.iconName, Qt::black).isNull()) << ad.iconName.toStdString();
    }
    EXPECT_EQ(ids.size(), 2u);
}

TEST_F(LeftSidebar, isTheHeaderTheEntriesInTheirOrderAndTheSocialCard)
{
    std::vector<std::string> expected{"[megaphone.fill]", "QUENMARK NETWORK"};
    for (const auto &ad : column().ads) {
        const auto link = ad.cta.toStdString() + " [arrow.up.right] (link)";
        for (const auto &words : {bracketed(ad.iconName), ad.badge.toStdString(), ad.title.toStdString(),
                                  ad.description.toStdString(), link})
            expected.push_back(words);
    }
    auto shown = contentOf(column());
    ASSERT_EQ(shown.size(), expected.size() + 3);
    EXPECT_EQ(std::vector(shown.begin(), shown.end() - 3), expected);
    const auto social = contentOf(socialCard());
    ASSERT_EQ(social.size(), 3u);
    EXPECT_EQ(social[0], "SPONSORED INFOTAINMENT");
    EXPECT_TRUE(social[2].ends_with("(link)"));
    test::expectStandsInOrder(cardsOf(column()), column());
}

TEST_F(LeftSidebar, everyEntryIsSetInItsColour)
{
    for (std::size_t i = 0; i < 2; ++i) {
        const auto &card = *adCards()[i];
        const auto &ad = column().ads[i];
        EXPECT_EQ(letteringOf(card, ad.title).shade, neutral::text);
        EXPECT_EQ(letteringOf(card, ad.description).shade, neutral::secondary);
        EXPECT_EQ(letteringOf(card, ad.cta), (Lettering{10, QFont::DemiBold, ad.accentColor.ink}));
        EXPECT_EQ(onlyIn<SymbolLabel>(card).shade(), ad.accentColor.ink);
        EXPECT_EQ(onlyIn<Badge>(card).accent(), ad.accentColor);
        const auto tint = over(ad.accentColor.vivid.at(7).in(window), neutral::card.in(window));
        test::expectColour(pixel(card, {card.width() / 2, 5}), tint);

        const auto symbol = placeOf(onlyIn<SymbolLabel>(card));
        const auto badge = placeOf(onlyIn<Badge>(card));
        EXPECT_GT(badge.left(), symbol.right()); // beside the symbol
        EXPECT_LT(badge.top(), symbol.bottom());
    }
}

TEST_F(LeftSidebar, theHeaderAndTheSocialCardAreSetAsStated)
{
    const auto header = letteringOf(column(), "QUENMARK NETWORK");
    EXPECT_EQ(header.size, 11);
    EXPECT_EQ(header.shade, accent::blue.ink);
    const auto caption = letteringOf(socialCard(), "SPONSORED INFOTAINMENT");
    EXPECT_EQ(caption.size, 9);
    EXPECT_EQ(caption.shade, neutral::secondary);
    EXPECT_EQ(socialCard().findChildren<TextLabel *>().at(1)->type().size, 10);
    const auto &link = onlyIn<LinkLabel>(socialCard());
    EXPECT_EQ(link.textType().size, 10);
    EXPECT_EQ(link.shade(), accent::purple.ink);
    const auto tint = over(accent::purple.vivid.at(8).in(window), neutral::card.in(window));
    test::expectColour(pixel(socialCard(), {socialCard().width() / 2, 5}), tint);
}

TEST_F(LeftSidebar, keepsItsWidthItsPaddingAndItsSpacing)
{
    for (const int width : {815, 1000, 1600}) {
        window.resize(width, 900);
        settle();
        EXPECT_EQ(column().geometry(), QRect(0, 0, 175, 900));
    }
    const auto cards = cardsOf(column());
    const auto header = placeOf(*findIn<TextLabel>(column(), "QUENMARK NETWORK")->parentWidget());
    EXPECT_EQ(header.topLeft(), QPoint(12, 12));
    EXPECT_EQ(placeOf(*cards[0]).top() - header.bottom() - 1, 14);
    for (std::size_t i = 0; i < cards.size(); ++i) {
        EXPECT_EQ(placeOf(*cards[i]).left(), 12);
        EXPECT_EQ(placeOf(*cards[i]).width(), 175 - 2 * 12);
        if (i > 0) {
            EXPECT_EQ(placeOf(*cards[i]).top() - placeOf(*cards[i - 1]).bottom() - 1, 14);
        }
    }
}

TEST_F(LeftSidebar, hasALineTowardsTheCentre)
{
    const auto ground = neutral::panel.in(window);
    const auto line = over(neutral::columnEdge.in(window), ground);
    test::expectColour(pixel(column(), {174, 880}), line);
    test::expectColour(pixel(column(), {173, 880}), ground);
    test::expectColour(pixel(column(), {0, 880}), ground);
}

TEST_F(LeftSidebar, everyLinkOpensItsAddressAndNothingElseHappens)
{
    const auto writes = machine.settings.writes;
    test::followLinks(column());
    const auto &ads = column().ads;
    ASSERT_EQ(machine.urls.opened.size(), 3u);
    EXPECT_EQ(machine.urls.opened[0], ads[0].url);
    EXPECT_EQ(machine.urls.opened[1], ads[1].url);
    const auto domain = QString::fromUtf8(makerDomain.data(), static_cast<qsizetype>(makerDomain.size()));
    for (const auto &address : machine.urls.opened) {
        const QUrl url(QString::fromStdString(address), QUrl::StrictMode);
        EXPECT_TRUE(url.isValid()) << address;
        EXPECT_EQ(url.scheme(), "https") << address;
        EXPECT_TRUE(url.host() == domain || url.host().endsWith('.' + domain)) << address;
    }
    EXPECT_EQ(std::set(machine.urls.opened.begin(), machine.urls.opened.end()).size(), 3u);
    EXPECT_EQ(machine.settings.writes, writes);
    EXPECT_THAT(engine.targets, IsEmpty());
}

TEST_F(LeftSidebar, theLinksSayWhatTheyAreAbout)
{
    std::vector<QString> about;
    for (const auto *link : column().findChildren<LinkLabel *>())
        about.push_back(link->accessibleDescription());
    EXPECT_THAT(about, ElementsAre(column().ads[0].title, column().ads[1].title,
                                   socialCard().findChildren<TextLabel *>().at(1)->text()));
}

TEST_F(LeftSidebar, staysWhateverTabIsChosen)
{
    const auto before = column().grab().toImage();
    for (const int tag : {4, 1, 2, 3, 99}) {
        state.selectedTab = tag;
        settle();
        EXPECT_EQ(column().grab().toImage(), before) << tag;
    }
}

TEST_F(LeftSidebar, theOrderIsTheSameAtEveryStart)
{
    const LeftSidebarAdView another(machine.urls);
    EXPECT_EQ(contentOf(another), contentOf(column()));
}

} // namespace
} // namespace orvalen
