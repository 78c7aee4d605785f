#include <gtest/gtest.h>

#include <QApplication>
#include <QProxyStyle>

#include "tests/ui/Motion.h"

namespace orvalen::test {

namespace {

bool motionWanted = false;

/// The usual style, in which things move only where a test wants it.
struct QuietStyle : QProxyStyle
{
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        if (hint == SH_Widget_Animation_Duration)
            return motionWanted ? 200 : 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
};

} // namespace

void allowMotion(bool allowed)
{
    motionWanted = allowed;
}

} // namespace orvalen::test

int main(int argc, char *argv[])
{
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS(); // asked while building, where there may be no display
    QApplication app(argc, argv);
    QApplication::setStyle(new orvalen::test::QuietStyle);
    return RUN_ALL_TESTS();
}
