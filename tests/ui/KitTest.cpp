#include <gmock/gmock.h>

#include <QImage>
#include <QPainter>
#include <QTest>

#include <cmath>

#include "tests/ui/Dashboard.h"
#include "tests/ui/Motion.h"
#include "ui/kit/Builders.h"
#include "ui/kit/ScrollArea.h"
#include "ui/kit/Symbols.h"
#include "ui/kit/TabButton.h"
#include "ui/kit/TextLine.h"
#include "ui/kit/Theme.h"

namespace orvalen::kit {
namespace {

using test::Dashboard;
using ::testing::ElementsAre;

struct Lamp : Observable
{
    Published<int> level{*this, 1};
    Published<bool> isOn{*this, false};
};

TEST(Live, aConstantIsGivenOnce)
{
    QObject owner;
    std::vector<QString> received;
    Live<QString>("fixed").follow(owner, [&](const QString &value) { received.push_back(value); });
    EXPECT_THAT(received, ElementsAre("fixed"));
}

TEST(Live, aFunctionOfSeveralValuesFollowsEach)
{
    Lamp lamp;
    QObject owner;
    QString shown;
    Live<QString>(lamp.isOn, lamp.level, [](bool isOn, int level) {
        return isOn ? QString::number(level) : QString("off");
    }).follow(owner, [&](const QString &value) { shown = value; });
    EXPECT_EQ(shown, "off");
    lamp.isOn = true;
    EXPECT_EQ(shown, "1");
    lamp.level = 7;
    EXPECT_EQ(shown, "7");
}

TEST(Live, endsWithItsWidget)
{
    Lamp lamp;
    {
        const std::unique_ptr<QWidget> label(text({lamp.level, [](int level) { return QString::number(level); }}));
        EXPECT_EQ(lamp.level.subscriberCount(), 1u);
    }
    EXPECT_EQ(lamp.level.subscriberCount(), 0u);
    lamp.level = 2;
}

TEST(Builders, aWidgetIsShownWhileItsConditionHolds)
{
    Lamp lamp;
    const auto *word = shownWhile(lamp.isOn, text("lit"));
    const std::unique_ptr<QWidget> stack(vStack({const_cast<QWidget *>(word)}));
    EXPECT_FALSE(word->isVisibleTo(stack.get()));
    lamp.isOn = true;
    EXPECT_TRUE(word->isVisibleTo(stack.get()));
}

TEST(Builders, elementsStandInTheirOrderAndTheSpacerTakesTheRest)
{
    TextLabel *first = text("first");
    TextLabel *last = text("last");
    const std::unique_ptr<QWidget> stack(hStack({first, spacer(), last}));
    stack->resize(400, 40);
    stack->show();
    EXPECT_EQ(first->x(), 0);
    EXPECT_EQ(last->geometry().right(), 399);
    EXPECT_EQ(first->width(), first->sizeHint().width());
}

TEST(TextLabel, linesAreHigherThanTheirLetters)
{
    const std::unique_ptr<TextLabel> label(text("one\u2028two").size(20));
    EXPECT_EQ(label->sizeHint().height(), 2 * std::lround(1.35 * label->type().font(*label).pixelSize()));
}

TEST(TextLabel, wrappedTextGrowsDownwards)
{
    const std::unique_ptr<TextLabel> label(note("Several words that hardly find room in one short line"));
    EXPECT_GT(label->heightForWidth(80), label->heightForWidth(200));
    EXPECT_GT(label->heightForWidth(200), label->heightForWidth(2000));
}

TEST(Type, aLargeSystemFontEnlargesTextByAQuarterAtMost)
{
    QFont font;
    const auto scaleAt = [&](int pixels) {
        font.setPixelSize(pixels);
        return textScale(font);
    };
    EXPECT_EQ(scaleAt(10), 1.0);
    EXPECT_EQ(scaleAt(13), 1.0);
    EXPECT_NEAR(scaleAt(15), 15 / 13.0, 0.01);
    EXPECT_EQ(scaleAt(26), 1.25);
}

TEST(Type, smallTextIsHeavier)
{
    const QWidget widget;
    EXPECT_EQ((Type{.size = 9}.font(widget).weight()), QFont::DemiBold);
    EXPECT_EQ((Type{.size = 10}.font(widget).weight()), QFont::Normal);
    EXPECT_EQ((Type{.size = 9, .weight = QFont::Bold}.font(widget).weight()), QFont::Bold);
}

/// Whether something that is neither black nor white comes out.
bool isColored(const QString &text, const QFont &font)
{
    QImage picture(300, 30, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    TextLine(text, font).draw(painter, picture.rect());
    for (int x = 0; x < picture.width(); ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            if (picture.pixelColor(x, y).saturation() > 128)
                return true;
        }
    }
    return false;
}

TEST(TextLine, signsAreInColourWhateverTheFont)
{
    for (const auto *family : {"sans-serif", "Inter", "DejaVu Sans"}) {
        QFont font(family);
        font.setPixelSize(13);
        for (const auto *text : {"⚡ Start Offline Stream", "⚠️ Safety Precaution", "💡 1-Minute Flashlight Test"})
            EXPECT_TRUE(isColored(text, font)) << text << " in " << family;
        for (const auto *text : {"Start Offline Stream", "⌘ + ⌥ + W", "Open ↗", "40.0 °C", "1 2 3 # *"})
            EXPECT_FALSE(isColored(text, font)) << text << " in " << family;
    }
}

TEST(TextLine, aSignLeavesTheLettersAlone)
{
    const QFont font("Inter");
    EXPECT_TRUE(pictureFormats("Start Offline Stream ⌘ ↗ 123", font).isEmpty());
    const auto formats = pictureFormats("a ⚠️ b 💡 c", font);
    ASSERT_EQ(formats.size(), 2);
    EXPECT_EQ(formats[0].start, 2);
    EXPECT_EQ(formats[0].length, 2);
    EXPECT_EQ(formats[1].start, 7);
    EXPECT_EQ(formats[1].length, 2);
}

TEST(TextLine, aSignOfLettersAsksToBeAPicture)
{
    const QFont font("Inter");
    const auto formats = pictureFormats("\u00a9 \u00a9\ufe0f", font);
    ASSERT_EQ(formats.size(), 1);
    EXPECT_EQ(formats[0].start, 2);
    EXPECT_EQ(formats[0].length, 2);
}

const QStringList symbols{"shield.lefthalf.filled",
                          "flame.fill",
                          "waveform.path.ecg",
                          "gauge.medium",
                          "rectangle.on.rectangle.angled",
                          "hammer.fill",
                          "gearshape.fill",
                          "play.fill",
                          "display",
                          "cpu",
                          "bolt.fill",
                          "battery.75",
                          "person.fill.checkmark",
                          "moon.zzz.fill",
                          "safari.fill",
                          "globe",
                          "doc.text.fill",
                          "checkmark.circle.fill",
                          "exclamationmark.triangle.fill",
                          "exclamationmark.shield.fill",
                          "cable.connector",
                          "eye.slash.fill",
                          "wifi.slash",
                          "wifi",
                          "record.circle",
                          "arrow.up.forward.app",
                          "arrow.up.right",
                          "megaphone.fill",
                          "sparkles",
                          "doc.fill",
                          "photo.fill",
                          "curlybraces",
                          "message.fill",
                          "cup.and.saucer",
                          "cup.and.saucer.fill"};

TEST(Symbols, haveTheirColourAndNoOther)
{
    const QColor color(0x8A, 0x3F, 0xCB);
    for (const auto &name : symbols) {
        ASSERT_FALSE(symbolIcon(name, color).isNull()) << name.toStdString();
        for (const int size : {14, 20, 64}) {
            const auto image = symbolIcon(name, color).pixmap(QSize(size, size), 1.0).toImage();
            ASSERT_EQ(image.size(), QSize(size, size));
            int drawn = 0;
            for (int y = 0; y < size; ++y) {
                for (int x = 0; x < size; ++x) {
                    const auto pixel = image.pixelColor(x, y);
                    drawn += pixel.alpha();
                    if (pixel.alpha() == 255) {
                        EXPECT_EQ(pixel, color) << name.toStdString();
                    }
                }
            }
            EXPECT_GT(drawn, 255 * size) << name.toStdString() << " at " << size;
        }
    }
}

TEST(Symbols, areSharpAtTwiceTheScale)
{
    const auto pixmap = symbolIcon("flame.fill", Qt::black).pixmap(QSize(16, 16), 2.0);
    EXPECT_EQ(pixmap.size(), QSize(32, 32));
}

TEST(Symbols, aDisabledOneIsFainter)
{
    const auto alphaIn = [](QIcon::Mode mode) {
        return symbolIcon("doc.fill", Qt::black).pixmap(QSize(16, 16), 1.0, mode).toImage().pixelColor(8, 8).alpha();
    };
    EXPECT_EQ(alphaIn(QIcon::Normal), 255);
    EXPECT_NEAR(alphaIn(QIcon::Disabled), 0.45 * 255, 2);
}

TEST(Symbols, anUnknownOneIsEmpty)
{
    EXPECT_TRUE(symbolIcon("no.such.symbol", Qt::black).isNull());
}

struct Motion : ::testing::Test, Dashboard
{
    ~Motion() override { test::allowMotion(false); }
    QColor dotNow() const
    {
        auto *badge = find<Badge>("PROTECTED");
        return badge->grab().toImage().pixelColor(15, badge->height() / 2);
    }
};

TEST_F(Motion, coloursJumpWhereNothingMayMove)
{
    show();
    setBridge(41.0);
    settle();
    EXPECT_EQ(dotNow(), accent::green.vivid.in(window));
}

TEST_F(Motion, coloursFadeWhereThingsMayMove)
{
    test::allowMotion(true);
    show();
    setBridge(41.0);
    settle();
    EXPECT_NE(dotNow(), accent::green.vivid.in(window));
    EXPECT_TRUE(QTest::qWaitFor([this] { return dotNow() == accent::green.vivid.in(window); }));
}

TEST_F(Motion, aBadgeThatIsNoStateJumps)
{
    test::allowMotion(true);
    const std::unique_ptr<Badge> badge(capsule("word", accent::green));
    badge->show();
    settle();
    const auto ground = [&] { return badge->grab().toImage().pixelColor(badge->width() / 2, 1); };
    const auto green = ground();
    badge->setAccent(accent::red);
    const auto red = ground();
    EXPECT_NE(red, green);
    test::allowMotion(false);
    const std::unique_ptr<Badge> other(capsule("word", accent::red));
    other->show();
    settle();
    EXPECT_EQ(red, other->grab().toImage().pixelColor(other->width() / 2, 1));
}

TEST_F(Motion, theKnobEndsWhereItBelongsEitherWay)
{
    show();
    auto *toggle = window.findChild<Toggle *>();
    const auto still = toggle->grab().toImage();
    state.smartModeEnabled = false;
    const auto off = toggle->grab().toImage();
    EXPECT_NE(off, still);
    test::allowMotion(true);
    state.smartModeEnabled = true;
    EXPECT_NE(toggle->grab().toImage(), still);
    EXPECT_TRUE(QTest::qWaitFor([&] { return toggle->grab().toImage() == still; }));
}

TEST(Control, isFaintAndDeafToThePointerWhileItIsDisabled)
{
    Lamp lamp;
    const std::unique_ptr<Control> controls[] = {
        std::unique_ptr<Control>(callToAction("press", [] {})),
        std::unique_ptr<Control>(link("follow", [] {})),
        std::unique_ptr<Control>(smallButton("press", [] {})),
        std::unique_ptr<Control>(rowButton({"display", "arrow.up.right"}, "go", [] {})),
        std::unique_ptr<Control>(toggle(lamp.isOn, "switch")),
        std::unique_ptr<Control>(symbolToggle({"wifi.slash", "wifi"}, "switch", lamp.isOn, [] {})),
        std::make_unique<TabButton>("Tab", "display"),
    };
    for (const auto &control : controls) {
        const auto look = [&](bool isEnabled, bool isUnderMouse) {
            control->setEnabled(isEnabled);
            control->setAttribute(Qt::WA_UnderMouse, isUnderMouse);
            return control->grab().toImage();
        };
        const auto *name = control->metaObject()->className();
        control->resize(control->sizeHint());
        EXPECT_NE(look(false, false), look(true, false)) << name;
        EXPECT_EQ(look(false, true), look(false, false)) << name;
        if (!qobject_cast<Toggle *>(control.get())) {
            EXPECT_NE(look(true, true), look(true, false)) << name;
        }
    }
}

TEST(CallToAction, isPaintedAnewInAnotherSize)
{
    const std::unique_ptr<CallToAction> button(callToAction("press", [] {}));
    button->resize(200, 38);
    button->show();
    Dashboard::settle();
    const auto paintsAfter = [&](const std::function<void()> &change) {
        struct : QObject
        {
            bool eventFilter(QObject *, QEvent *event) override
            {
                count += event->type() == QEvent::Paint;
                return false;
            }
            int count = 0;
        } paints;
        button->installEventFilter(&paints);
        change();
        Dashboard::settle();
        return paints.count;
    };
    EXPECT_GT(paintsAfter([&] { button->setTextSize(15); }), 0);
    EXPECT_EQ(paintsAfter([&] { button->setTextSize(15); }), 0);
    EXPECT_GT(paintsAfter([&] { button->setTextWeight(QFont::Bold); }), 0);
    EXPECT_EQ(paintsAfter([&] { button->setTextWeight(QFont::Bold); }), 0);
}

TEST(ScrollArea, itsBarGoesToTheOtherSideWithTheReading)
{
    auto *content = new QWidget;
    content->setMinimumHeight(500);
    ScrollArea area(content);
    area.resize(300, 200);
    area.show();
    Dashboard::settle();
    const auto barAt = [&] {
        for (const auto *bar : area.findChildren<QScrollBar *>()) {
            if (bar->isVisible())
                return bar->x();
        }
        return -1;
    };
    EXPECT_EQ(barAt(), 292);
    area.setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(barAt(), 0);
    area.setLayoutDirection(Qt::LeftToRight);
    EXPECT_EQ(barAt(), 292);
}

TEST(ScrollArea, followsNothingBeforeItIsLaidOut)
{
    auto *content = new QWidget;
    auto *inside = new QWidget(content);
    const ScrollArea area(content);
    Q_EMIT qApp->focusChanged(nullptr, inside);
    EXPECT_FALSE(area.widget());
}

TEST(ScrollArea, contentTooHighScrollsUnderASlimBar)
{
    auto *content = new QWidget;
    content->setMinimumHeight(500);
    ScrollArea area(content);
    area.resize(300, 200);
    area.show();
    Dashboard::settle();
    EXPECT_EQ(content->width(), 300); // the bar takes nothing from it
    QScrollBar *slim = nullptr;
    for (auto *bar : area.findChildren<QScrollBar *>()) {
        if (bar->isVisible())
            slim = bar;
    }
    ASSERT_TRUE(slim);
    EXPECT_EQ(slim->geometry(), QRect(292, 0, 8, 200));
    slim->setValue(slim->maximum());
    EXPECT_EQ(content->y(), 200 - 500);
    area.resize(300, 600);
    Dashboard::settle();
    EXPECT_FALSE(slim->isVisible());
}

TEST(Ground, aShadowIsPaintedBesideItsCaster)
{
    Panel page(neutral::window);
    page.setPalette(themePalette(false));
    vStackIn(page, {callToAction("press", [] {}), spacer()}).padding(20);
    page.resize(200, 120);
    page.show();
    Dashboard::settle();
    const auto image = page.grab().toImage();
    const auto background = neutral::window.in(page);
    EXPECT_EQ(image.pixelColor(2, 115), background);
    const auto below = image.pixelColor(100, 20 + 38 + 2);
    EXPECT_NE(below, background);
    EXPECT_GT(below.blue(), below.red()); // of the button's own colour
}

} // namespace
} // namespace orvalen::kit
