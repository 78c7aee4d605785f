#include "tests/ui/Fit.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>

#include "ui/kit/Builders.h"

namespace orvalen {
namespace {

using namespace kit;
using test::misfits;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A window in which everything is as it should be, until a case spoils it.
struct Fit : ::testing::Test
{
    Fit()
    {
        window.resize(400, 300);
        place(text, "Words", {10, 10, 200, 30});
        place(paragraph, "Some words of a longer text, which goes on", {10, 50, 200, 100});
        paragraph.setWraps(true);
        button.setGeometry({{220, 10}, button.sizeHint().expandedTo({24, 24})});
        address.setAddress("http://a-laptop-with-a-name.local:8999");
        address.setGeometry({{10, 160}, address.sizeHint()});
        scrolled.setFrameShape(QFrame::NoFrame);
        scrolled.setWidget(new QWidget);
        scrolled.setGeometry(10, 200, 200, 90);
        scrolled.setWidgetResizable(true);
        scrolled.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        scrolled.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        scrolled.widget()->setMinimumHeight(150);
        window.show();
        QCoreApplication::processEvents();
    }
    static void place(TextLabel &label, const char *words, const QRect &rect)
    {
        label.setText(words);
        label.setGeometry(rect);
    }

    void expectComplaint(const char *what) { EXPECT_THAT(misfits(window), Contains(HasSubstr(what))); }

    QWidget window;
    TextLabel text{&window};
    TextLabel paragraph{&window};
    Toggle button{&window};
    AddressLabel address{&window};
    QScrollArea scrolled{&window};
};

TEST_F(Fit, isFoundWhereNothingIsWrong)
{
    EXPECT_THAT(misfits(window), IsEmpty());
}

TEST_F(Fit, isMissedByWhatLiesBeyondItsParent)
{
    for (const auto &point : {QPoint(-1, 10), QPoint(10, -1), QPoint(201, 10), QPoint(10, 271)}) {
        text.move(point);
        expectComplaint("beyond its parent");
    }
}

TEST_F(Fit, isMissedByWhatLiesUponItsNeighbour)
{
    text.move(10, 21);
    expectComplaint(": upon ");
    text.move(10, 20);
    EXPECT_THAT(misfits(window), IsEmpty());
}

TEST_F(Fit, isMissedByWhatIsSqueezed)
{
    const auto wanted = text.sizeHint();
    text.resize(wanted - QSize(1, 0));
    expectComplaint(": wants ");
    text.resize(wanted - QSize(0, 1));
    expectComplaint(": wants ");
    text.resize(wanted);
    EXPECT_THAT(misfits(window), IsEmpty());
    paragraph.resize(paragraph.width(), paragraph.heightForWidth(paragraph.width()) - 1);
    expectComplaint(": wants ");
}

TEST_F(Fit, isMissedByABrokenWord)
{
    paragraph.setText("Donaudampfschifffahrtsgesellschaftskapitän");
    expectComplaint("breaks a word after \"Donau");
}

TEST_F(Fit, isMissedByWhatIsTooSmallToBeHit)
{
    button.resize(button.width(), 23);
    expectComplaint("too small to be hit");
    button.resize(23, 24);
    expectComplaint("too small to be hit");
}

TEST_F(Fit, isMissedByAnAddressOfWhichTooLittleIsLeft)
{
    address.resize(100, address.height());
    EXPECT_NE(address.shown(), address.text());
    EXPECT_THAT(misfits(window), IsEmpty()); // its middle may go
    address.resize(20, address.height());
    expectComplaint("shortened to ");
}

TEST_F(Fit, isMissedByWhatScrollsSideways)
{
    scrolled.setWidgetResizable(false);
    scrolled.widget()->resize(201, 150);
    expectComplaint("another width than what it scrolls in");
}

TEST_F(Fit, isMissedByWhatCannotBeScrolledTo)
{
    scrolled.verticalScrollBar()->setMaximum(59);
    expectComplaint("not all of it can be scrolled to");
}

} // namespace
} // namespace orvalen
