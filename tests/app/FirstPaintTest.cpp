#include "app/FirstPaint.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QPaintEvent>
#include <QWidget>

#include <memory>
#include <string>
#include <vector>

namespace orvalen {
namespace {

struct FirstPaintTest : ::testing::Test
{
    struct Window : QWidget
    {
        int paints = 0;
        void paintEvent(QPaintEvent *) override { ++paints; }
    };

    std::unique_ptr<Window> window = std::make_unique<Window>();
    int runs = 0;

    /// Lets the event loop run until `done`.
    template <typename Done>
    static bool eventually(Done done)
    {
        const QDeadlineTimer limit(60'000);
        while (!done() && !limit.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        return done();
    }

    /// Whether the task has run by the end of another one that was put off in the same way, and later.
    int runsAfterAnother()
    {
        Window other;
        bool isOver = false;
        afterFirstPaint(other, [&] { isOver = true; });
        EXPECT_TRUE(eventually([&] { return isOver; }));
        return runs;
    }
};

TEST_F(FirstPaintTest, theTaskRunsOnceWhenTheWindowHasBeenPainted)
{
    int paintsBefore = 0;
    afterFirstPaint(*window, [&] {
        ++runs;
        paintsBefore = window->paints;
    });
    EXPECT_EQ(runs, 0) << "from the event loop only";
    window->show();
    EXPECT_TRUE(eventually([this] { return runs > 0; }));
    EXPECT_GE(paintsBefore, 1);
    window->update();
    EXPECT_TRUE(eventually([&] { return window->paints > paintsBefore; }));
    EXPECT_EQ(runsAfterAnother(), 1);
}

TEST_F(FirstPaintTest, theTaskRunsOnceForAWindowThatNobodySeesEvenIfItIsPaintedMeanwhile)
{
    afterFirstPaint(*window, [&] {
        if (++runs > 1)
            return;
        window->show();
        EXPECT_TRUE(eventually([this] { return window->paints > 0; }));
        QCoreApplication::processEvents();
    });
    EXPECT_TRUE(eventually([this] { return runs > 0; }));
    EXPECT_GT(window->paints, 0);
    EXPECT_EQ(runsAfterAnother(), 1);
}

TEST_F(FirstPaintTest, aWindowThatIsCoveredByWhatIsInItIsPaintedToo)
{
    Window unseen;
    std::vector<std::string> order;
    afterFirstPaint(unseen, [&] { order.emplace_back("unseen"); }); // put off first, and for as long as it may be
    afterFirstPaint(*window, [&] { order.emplace_back("covered"); });
    auto *cover = new Window;
    cover->setAttribute(Qt::WA_OpaquePaintEvent);
    cover->setParent(window.get());
    cover->resize(window->size());
    window->show();
    EXPECT_TRUE(eventually([&] { return order.size() == 2; }));
    EXPECT_EQ(window->paints, 0);
    EXPECT_EQ(order, (std::vector<std::string>{"covered", "unseen"}));
}

TEST_F(FirstPaintTest, theTaskMayDoAwayWithTheWindow)
{
    afterFirstPaint(*window, [&] {
        window.reset();
        ++runs;
    });
    window->show();
    EXPECT_TRUE(eventually([this] { return runs > 0; }));
    EXPECT_EQ(runsAfterAnother(), 1);
}

TEST_F(FirstPaintTest, theTaskDoesNotRunForAWindowThatIsGone)
{
    afterFirstPaint(*window, [&] { ++runs; });
    window.reset();
    EXPECT_EQ(runsAfterAnother(), 0);
}

} // namespace
} // namespace orvalen
