#include <gmock/gmock.h>

#include <QAccessible>
#include <QImage>
#include <QTest>

#include <algorithm>

#include <memory>

#include "tests/ui/Dashboard.h"
#include "ui/kit/Builders.h"
#include "ui/kit/Theme.h"

namespace orvalen::kit {
namespace {

using test::Dashboard;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A widget of the kit on a white page.
template <typename Widget>
struct OnAPage
{
    explicit OnAPage(Widget *widget, int width = 0) : widget(widget)
    {
        auto palette = themePalette(false);
        palette.setColor(QPalette::Window, Qt::white);
        widget->setPalette(palette);
        widget->resize(width ? width : widget->sizeHint().width(), widget->sizeHint().height());
        widget->show();
        Dashboard::settle();
    }

    /// The columns from `from` to `to` in which something is drawn: first and last.
    [[nodiscard]] std::pair<int, int> drawn(int from = 0, int to = 1 << 20) const
    {
        const auto picture = widget->grab().toImage();
        std::pair<int, int> columns{-1, -1};
        for (int x = from; x < std::min(to, picture.width()); ++x) {
            for (int y = 0; y < picture.height(); ++y) {
                if (picture.pixelColor(x, y).lightness() < 200) {
                    columns = {columns.first < 0 ? x : columns.first, x};
                    break;
                }
            }
        }
        return columns;
    }

    std::unique_ptr<Widget> widget;
};

TEST(LinkLabel, aSymbolBeforeItTakesItsPlaceAndAGap)
{
    const OnAPage<LinkLabel> plain(link("address", [] {}));
    const OnAPage<LinkLabel> withSymbol(link("address", [] {}).leadingSymbol("globe"));
    EXPECT_EQ(withSymbol.widget->sizeHint().width(), plain.widget->sizeHint().width() + 13 + 6);
    EXPECT_GE(withSymbol.drawn(0, 13).first, 0);
    EXPECT_EQ(withSymbol.drawn(13, 19).first, -1) << "the gap";
    EXPECT_GE(withSymbol.drawn(19).first, 19);
    EXPECT_EQ(withSymbol.drawn(19).second - 19, plain.drawn().second);
}

TEST(LinkLabel, itsSymbolsChangeSidesWhereReadingDoes)
{
    const OnAPage<LinkLabel> page(link("address", [] {}).size(10).leadingSymbol("globe").symbol("arrow.up.right"));
    const int width = page.widget->width();
    const auto start = page.widget->grab().toImage().copy(0, 0, 13, page.widget->height());
    page.widget->setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(page.drawn(width - 19, width - 13).first, -1) << "the gap";
    EXPECT_EQ(page.widget->grab().toImage().copy(width - 13, 0, 13, page.widget->height()), start);
    EXPECT_GE(page.drawn(0, 8).first, 0) << "the symbol behind the text";
}

TEST(LinkLabel, theSymbolBehindTheTextIsAFifthSmallerThanIt)
{
    const OnAPage<LinkLabel> plain(link("address", [] {}).size(10));
    const OnAPage<LinkLabel> withSymbol(link("address", [] {}).size(10).symbol("arrow.up.right"));
    EXPECT_EQ(withSymbol.widget->sizeHint().width(), plain.widget->sizeHint().width() + 3 + 8);
}

TEST(LinkLabel, insistsOnItsWidthUnlessItMayWrap)
{
    const std::unique_ptr<LinkLabel> whole(link("an address of some length", [] {}).symbol("arrow.up.right"));
    EXPECT_EQ(whole->minimumSizeHint(), whole->sizeHint());
    const std::unique_ptr<LinkLabel> wrapping(
        link("an address of some length", [] {}).symbol("arrow.up.right").wrapped());
    EXPECT_EQ(wrapping->sizeHint(), whole->sizeHint());
    EXPECT_LT(wrapping->minimumSizeHint().width(), 90);
    EXPECT_GT(wrapping->heightForWidth(90), whole->sizeHint().height());
}

TEST(LinkLabel, isReadWithoutItsSymbols)
{
    const OnAPage<LinkLabel> page(link("address", [] {}).leadingSymbol("globe").about("the maker"));
    const auto *accessible = QAccessible::queryAccessibleInterface(page.widget.get());
    EXPECT_EQ(accessible->role(), QAccessible::Link);
    EXPECT_EQ(accessible->text(QAccessible::Name), "address");
    EXPECT_EQ(accessible->text(QAccessible::Description), "the maker");
}

RowButton::Symbols towards(const QString &leading)
{
    return {.leading = leading, .trailing = "arrow.up.forward.app"};
}

TEST(RowButton, isPressedByPointerAndKeyboard)
{
    int presses = 0;
    const OnAPage<RowButton> page(rowButton(towards("display"), "Displays", [&] { ++presses; }), 190);
    QTest::mouseClick(page.widget.get(), Qt::LeftButton);
    QTest::keyClick(page.widget.get(), Qt::Key_Space);
    QTest::keyClick(page.widget.get(), Qt::Key_Return);
    QTest::mouseClick(page.widget.get(), Qt::RightButton);
    EXPECT_EQ(presses, 3);
    EXPECT_EQ(page.widget->focusPolicy(), Qt::StrongFocus);
}

TEST(RowButton, saysItsTitle)
{
    const OnAPage<RowButton> page(rowButton(towards("display"), "Displays & Mirroring", [] {}));
    const auto *accessible = QAccessible::queryAccessibleInterface(page.widget.get());
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Name), "Displays & Mirroring");
}

TEST(RowButton, hasASymbolAtEitherEndInItsColours)
{
    const OnAPage<RowButton> page(rowButton(towards("record.circle"), "Access", [] {}).color(accent::red), 190);
    const auto darkest = [&](int from, int to) {
        const auto picture = page.widget->grab().toImage();
        QColor found(Qt::white);
        for (int x = from; x < to; ++x) {
            for (int y = 4; y < picture.height() - 4; ++y)
                found = std::min(found, picture.pixelColor(x, y),
                                 [](const auto &a, const auto &b) { return a.lightness() < b.lightness(); });
        }
        return found;
    };
    const auto isRed = [](const QColor &color) { return color.red() > 2 * color.green(); };
    const auto isGray = [](const QColor &color) { return color.lightness() < 200 && color.saturation() < 60; };
    EXPECT_TRUE(isRed(darkest(10, 24)));
    EXPECT_TRUE(isGray(darkest(190 - 21, 190 - 10)));
    page.widget->setLayoutDirection(Qt::RightToLeft);
    EXPECT_TRUE(isRed(darkest(190 - 24, 190 - 10)));
    EXPECT_TRUE(isGray(darkest(10, 21)));
}

TEST(RowButton, aTitleTooLongForOneLineWrapsBetweenTheSymbols)
{
    const OnAPage<RowButton> page(rowButton(towards("display"), "Screen Recording Access", [] {}));
    const auto &row = *page.widget;
    const int natural = row.sizeHint().width();
    EXPECT_EQ(row.heightForWidth(natural), row.sizeHint().height());
    EXPECT_GT(row.heightForWidth(row.minimumSizeHint().width()), row.heightForWidth(natural));
    EXPECT_GE(row.heightForWidth(natural), 24);
    EXPECT_LT(row.minimumSizeHint().width(), natural);
}

TEST(RowButton, showsThatItIsPressed)
{
    const OnAPage<RowButton> page(rowButton(towards("display"), "Displays", [] {}), 190);
    const auto still = page.widget->grab().toImage();
    page.widget->setDown(true);
    EXPECT_NE(page.widget->grab().toImage(), still);
    page.widget->setDown(false);
    EXPECT_EQ(page.widget->grab().toImage(), still);
}

TEST(SmallButton, keepsAnAmpersandAsAWord)
{
    const std::unique_ptr<SmallButton> button(smallButton("Copy & Open", [] {}));
    EXPECT_EQ(button->label(), "Copy & Open");
    EXPECT_TRUE(button->shortcut().isEmpty());
}

/// A text, and what screen readers are told of it.
struct SaidText
{
    explicit SaidText(TextLabel *label) : label(label)
    {
        QObject::connect(label, &TextLabel::announced, label,
                         [this](const QString &words) { said.push_back(words.toStdString()); });
    }
    std::vector<std::string> taken()
    {
        Dashboard::settle();
        return std::exchange(said, {});
    }

    std::unique_ptr<TextLabel> label;
    std::vector<std::string> said;
};

TEST(TextLabel, announcedItSaysEachTextThatIsSet)
{
    SaidText text(kit::text("first").announced());
    EXPECT_THAT(text.taken(), IsEmpty()); // what is there from the start is no news
    text.label->setText("second");
    EXPECT_THAT(text.taken(), ElementsAre("second"));
    text.label->setText("second"); // happened again
    EXPECT_THAT(text.taken(), ElementsAre("second"));
    text.label->setText("third");
    EXPECT_THAT(text.taken(), ElementsAre("third"));
}

TEST(TextLabel, othersKeepQuiet)
{
    SaidText text(kit::text("first"));
    text.label->setText("second");
    EXPECT_THAT(text.taken(), IsEmpty());
}

TEST(TextLabel, isNotAnnouncedAfterItsEnd)
{
    SaidText text(kit::text("first").announced());
    text.label->setText("second");
    text.label.reset();
    EXPECT_THAT(text.taken(), IsEmpty());
}

} // namespace
} // namespace orvalen::kit
