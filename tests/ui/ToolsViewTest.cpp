#include "ui/ToolsView.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QTest>
#include <QUrl>

#include <set>

#include "core/MakerSite.h"
#include "tests/ui/Reading.h"

namespace orvalen {
namespace {

using namespace kit;
using test::cardsOf;
using test::Dashboard;
using test::FakeUrlOpener;
using test::followLinks;
using test::onlyIn;
using ::testing::ElementsAre;
using ::testing::Property;

/// The page, which needs nothing but a browser.
struct Tools : ::testing::Test
{
    FakeUrlOpener urls;
    ToolsView view{urls};

    Tools()
    {
        view.resize(500, 500);
        view.show();
        Dashboard::settle();
    }

    /// The cards of the tools, without the closing one.
    [[nodiscard]] std::vector<Card *> toolCards() const
    {
        auto cards = cardsOf(view);
        cards.pop_back();
        return cards;
    }

    template <typename Widget>
    [[nodiscard]] static std::vector<Widget *> in(const QWidget &root)
    {
        const auto all = root.findChildren<Widget *>();
        return {all.begin(), all.end()};
    }

    static void expectSet(const TextLabel &text, int size, int weight, const Shade &shade)
    {
        EXPECT_FALSE(text.text().isEmpty());
        EXPECT_EQ(text.type().size, size) << text.text().toStdString();
        EXPECT_EQ(text.type().weight, weight) << text.text().toStdString();
        EXPECT_EQ(text.shade(), shade) << text.text().toStdString();
    }
    static void expectBlueLink(const LinkLabel &link, int weight)
    {
        EXPECT_FALSE(link.label().isEmpty());
        EXPECT_EQ(link.textType().size, 11) << link.label().toStdString();
        EXPECT_EQ(link.textType().weight, weight) << link.label().toStdString();
        EXPECT_EQ(link.shade(), accent::blue.ink) << link.label().toStdString();
    }
};

TEST_F(Tools, beginWithTitleTaglineAndTheWayToThePortal)
{
    const auto symbols = in<SymbolLabel>(view);
    EXPECT_EQ(symbols.front()->symbol(), "sparkles");
    EXPECT_EQ(symbols.front()->geometry().size(), QSize(20, 20));
    EXPECT_EQ(symbols.front()->shade(), accent::orange.large);
    const auto texts = in<TextLabel>(view);
    expectSet(*texts[0], 14, QFont::Bold, neutral::text);
    expectSet(*texts[1], 10, QFont::Normal, neutral::secondary);
    const auto *portal = in<LinkLabel>(view).front();
    EXPECT_EQ(portal->label(), "Visit Portal ↗");
    expectBlueLink(*portal, QFont::DemiBold);
    EXPECT_EQ(portal->mapTo(&view, QPoint(portal->width(), 0)).x(), view.width());
}

TEST_F(Tools, areFourCardsWithTheirSymbolsInOrder)
{
    const auto cards = toolCards();
    ASSERT_EQ(cards.size(), 4u);
    test::expectStandsInOrder(cardsOf(view), view);
    const std::vector<std::pair<QString, Accent>> expected{{"doc.fill", accent::red},
                                                           {"photo.fill", accent::green},
                                                           {"curlybraces", accent::purple},
                                                           {"message.fill", accent::blue}};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto &icon = onlyIn<SymbolLabel>(*cards[i]);
        EXPECT_EQ(icon.symbol(), expected[i].first);
        EXPECT_EQ(icon.shade(), expected[i].second.ink);
        EXPECT_EQ(icon.symbolSize(), 16);
        EXPECT_EQ(icon.geometry().size(), QSize(32, 32));

        // Behind it its colour, faded: between the card and the colour itself.
        const auto drawn = view.grab().toImage().pixelColor(icon.mapTo(&view, QPoint(16, 2)));
        const auto backdrop = over(expected[i].second.vivid.at(12).in(view), neutral::card.in(view));
        test::expectColour(drawn, backdrop);
    }
}

TEST_F(Tools, eachCardHasATitleASentenceAndALinkAtItsEnd)
{
    for (const auto *card : toolCards()) {
        const auto texts = in<TextLabel>(*card);
        ASSERT_EQ(texts.size(), 2u);
        expectSet(*texts[0], 12, QFont::Bold, neutral::text);
        expectSet(*texts[1], 10, QFont::Normal, neutral::secondary);
        EXPECT_GT(texts[1]->mapTo(card, QPoint(0, 0)).y(), texts[0]->mapTo(card, QPoint(0, 0)).y());
        const auto &link = onlyIn<LinkLabel>(*card);
        expectBlueLink(link, QFont::DemiBold);
        EXPECT_EQ(link.mapTo(card, QPoint(link.width(), 0)).x(), card->width() - 12);
        EXPECT_EQ(link.accessibleDescription(), texts[0]->text()); // else all would be the same to readers
    }
}

TEST_F(Tools, endWithAQuestionAndTheServices)
{
    const auto &last = *cardsOf(view).back();
    const auto texts = in<TextLabel>(last);
    ASSERT_EQ(texts.size(), 2u);
    expectSet(*texts[0], 12, QFont::Bold, neutral::text);
    EXPECT_TRUE(texts[0]->text().endsWith('?'));
    expectSet(*texts[1], 11, QFont::Normal, neutral::secondary);
    expectBlueLink(onlyIn<LinkLabel>(last), QFont::Bold);
    onlyIn<LinkLabel>(last).click();
    EXPECT_THAT(urls.opened, ElementsAre(sitePage(makerSite, "services")));
}

TEST_F(Tools, everyLinkOpensAnAddressOfTheMakers)
{
    followLinks(view);
    ASSERT_EQ(urls.opened.size(), 6u);
    EXPECT_EQ(urls.opened.front(), makerToolsSite);
    const auto domain = QString::fromUtf8(makerDomain.data(), static_cast<qsizetype>(makerDomain.size()));
    for (const auto &address : urls.opened) {
        const QUrl url(QString::fromStdString(address), QUrl::StrictMode);
        EXPECT_TRUE(url.isValid()) << address;
        EXPECT_EQ(url.scheme(), "https") << address;
        EXPECT_TRUE(url.host() == domain || url.host().endsWith('.' + domain)) << address;
    }
    EXPECT_EQ(std::set(urls.opened.begin(), urls.opened.end()).size(), 6u); // each one of its own
}

TEST_F(Tools, anAddressIsOpenedAtEachPressAndNotBefore)
{
    EXPECT_THAT(urls.opened, ::testing::IsEmpty());
    auto &link = onlyIn<LinkLabel>(*toolCards()[0]);
    link.setFocus();
    QTest::keyClick(&link, Qt::Key_Return);
    QTest::keyClick(&link, Qt::Key_Space);
    EXPECT_THAT(urls.opened, ElementsAre(sitePage(makerToolsSite, "paper"), sitePage(makerToolsSite, "paper")));
}

TEST(ToolsTab, followsNothing)
{
    Dashboard dashboard;
    dashboard.show();
    const auto observers = [&] {
        const auto &state = dashboard.state;
        return state.thermalData.subscriberCount() + state.targetTemp.subscriberCount() +
               state.isWarmingUp.subscriberCount() + state.reportStatus.subscriberCount() +
               state.soundFeedbackEnabled.subscriberCount() + state.observerCount();
    };
    const auto before = observers();
    dashboard.state.selectedTab = 2;
    ASSERT_TRUE(dashboard.window.findChild<ToolsView *>());
    EXPECT_EQ(observers(), before);
}

} // namespace
} // namespace orvalen
