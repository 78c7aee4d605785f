#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QTest>

#include "tests/ui/Dashboard.h"
#include "ui/kit/Builders.h"

namespace orvalen::kit {
namespace {

using test::Dashboard;

const QString full = "http://a-laptop-with-a-long-name.local:8999";

struct Line : ::testing::Test
{
    Line()
    {
        row->resize(row->sizeHint());
        row->show();
        row->activateWindow();
        Dashboard::settle();
    }
    void narrow(int width) const
    {
        row->resize(width, row->heightForWidth(width));
        Dashboard::settle();
    }

    AddressLabel *label = address(full, "Open:").size(10);
    SmallButton *copy = smallButton("Copy", [] {});
    SmallButton *open = smallButton("Open", [] {});
    std::unique_ptr<AddressRow> row{addressRow(label, {copy, open})};
};

TEST_F(Line, hasTheButtonsAtItsFarEnd)
{
    EXPECT_EQ(label->shown(), full);
    EXPECT_EQ(open->geometry().right(), row->width() - 1);
    EXPECT_EQ(copy->y(), open->y());
    narrow(2 * row->width());
    EXPECT_EQ(open->geometry().right(), row->width() - 1);
    EXPECT_EQ(label->x(), 0);
}

TEST_F(Line, hasTheButtonsBeneathWhereItIsShort)
{
    const int height = row->height();
    narrow(row->width() - 1);
    EXPECT_EQ(copy->x(), 0);
    EXPECT_GT(copy->y(), label->geometry().bottom());
    EXPECT_GT(row->height(), height);
    EXPECT_EQ(label->shown(), full);
}

TEST_F(Line, losesTheMiddleOfAnAddressThatIsTooLong)
{
    narrow(120);
    EXPECT_TRUE(label->shown().startsWith("http"));
    EXPECT_TRUE(label->shown().endsWith("8999"));
    EXPECT_TRUE(label->shown().contains(QChar(0x2026)));
    EXPECT_LE(textWidth(label->font(), label->shown()), label->width());
    EXPECT_EQ(label->text(), full);
}

TEST_F(Line, givesTheWholeAddressToWhoeverSelectsIt)
{
    narrow(120);
    QTest::mouseClick(label, Qt::LeftButton);
    EXPECT_TRUE(label->hasFocus());
    EXPECT_EQ(label->shown(), full); // the line scrolls
    QTest::mouseDClick(label, Qt::LeftButton);
    EXPECT_EQ(label->selectedText(), full);
    QTest::keySequence(label, QKeySequence::Copy);
    EXPECT_EQ(QApplication::clipboard()->text(), full);

    copy->setFocus();
    EXPECT_FALSE(label->hasSelectedText());
    EXPECT_NE(label->shown(), full);
}

TEST_F(Line, cannotBeTypedInto)
{
    QTest::mouseClick(label, Qt::LeftButton);
    QTest::keyClicks(label, "x");
    QTest::keyClick(label, Qt::Key_Backspace);
    EXPECT_EQ(label->text(), full);
}

TEST_F(Line, makesRoomForALongerAddress)
{
    EXPECT_EQ(copy->y(), open->y());
    EXPECT_GT(copy->x(), 0);
    label->setAddress(full + "0");
    Dashboard::settle();
    EXPECT_EQ(copy->x(), 0);
    label->setAddress("http://10.0.0.5:8999");
    Dashboard::settle();
    EXPECT_GT(copy->x(), 0);
}

TEST_F(Line, stopsTheTabKeyAtTheButtonsOnly)
{
    row->setFocus();
    QTest::keyClick(row.get(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), copy);
    QTest::keyClick(copy, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), open);
    QTest::keyClick(open, Qt::Key_Tab);
    EXPECT_NE(QApplication::focusWidget(), label);
}

TEST(AddressLabel, growsWithTheSystemsFontAsOtherTextDoes)
{
    AddressLabel *label = address(full, "Open:").size(8);
    const std::unique_ptr<QWidget> stack(vStack({label}));
    const auto usual = QApplication::font();
    auto font = usual;
    for (const auto &[systemSize, size] : {std::pair{13, 8}, {26, 10}, {13, 8}}) {
        font.setPixelSize(systemSize);
        QApplication::setFont(font);
        Dashboard::settle();
        EXPECT_EQ(label->font().pixelSize(), size);
        EXPECT_EQ(label->font().weight(), QFont::DemiBold); // small text is heavier
        EXPECT_EQ(label->font().family(), usual.family());
    }
    QApplication::setFont(usual);
    Dashboard::settle();
}

} // namespace
} // namespace orvalen::kit
