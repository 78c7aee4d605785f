#include <gmock/gmock.h>

#include <QLabel>
#include <QTest>

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <typeinfo>

#include "tests/support/ColorSchemeFake.h"
#include "tests/ui/PaintedInk.h"
#include "tests/ui/Scenes.h"
#include "ui/kit/Builders.h"
#include "ui/kit/Theme.h"

namespace orvalen {
namespace {

using namespace kit;
using test::ChosenScheme;
using test::contrast;
using test::Dashboard;
using test::Ink;
using test::Painting;
using test::Scene;

/// What is to be made of what a kind of widget paints.
enum class Paints
{
    grounds,  // nothing but what others lie on; words and symbols are looked at all the same
    marks,    // areas and outlines that say something: a knob, a dot
    pictures, // those, which are as they are
    words,    // as `grounds`, and words for certain
};

/// The class of a widget, also of one without a name of its own in the meta-object system.
std::string className(const QWidget &widget)
{
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(typeid(widget).name(), nullptr, nullptr, nullptr), &std::free);
    std::string full = name.get();
    for (const std::string_view part : {"orvalen::", "kit::", "(anonymous namespace)::"}) {
        if (full.starts_with(part))
            full.erase(0, part.size());
    }
    return full;
}

/// None for a class that nobody has thought about.
std::optional<Paints> paintsOf(const QWidget &widget)
{
    static const std::map<std::string, Paints> kinds{
        {"QWidget", Paints::grounds},     {"MainView", Paints::grounds},
        {"AddressRow", Paints::grounds},  {"Flow", Paints::grounds},
        {"Hairline", Paints::grounds},    {"ScrollArea", Paints::grounds},
        {"TabBar", Paints::grounds},      {"AddressLabel", Paints::words},
        {"Badge", Paints::words}, // which say what its dot says
        {"CallToAction", Paints::words},  {"Disc", Paints::marks},
        {"FocusRing", Paints::marks},     {"LinkLabel", Paints::words},
        {"Picture", Paints::pictures},    {"QRCodeView", Paints::pictures},
        {"RowButton", Paints::words},     {"SlimBar", Paints::marks},
        {"Slider", Paints::marks},        {"SmallButton", Paints::words},
        {"SymbolLabel", Paints::grounds}, {"SymbolToggle", Paints::grounds},
        {"TabButton", Paints::words},     {"TemperatureReadout", Paints::words},
        {"TextLabel", Paints::words},     {"Toggle", Paints::marks},
    };
    if (const auto kind = kinds.find(className(widget)); kind != kinds.end())
        return kind->second;
    return qobject_cast<const Ground *>(&widget) ? std::optional(Paints::grounds) : std::nullopt;
}

/// By how much it has to stand out; none where it need not.
std::optional<double> wanted(const Ink &ink)
{
    constexpr double legible = 4.5;
    constexpr double recognisable = 3.0;
    const auto paints = paintsOf(*ink.painter);
    const auto *button = qobject_cast<const CallToAction *>(ink.painter);
    switch (ink.kind) {
    case Ink::words:
        return ink.size >= 42 ? recognisable : legible;
    case Ink::symbol:
        return ink.size >= 20 ? recognisable : legible;
    case Ink::picture:
        if (className(*ink.painter) == "Picture")
            return std::nullopt; // the logo, beside the name
        return legible;
    case Ink::area:
    case Ink::outline:
        if (button && button->dot() && ink.size < 10)
            return recognisable; // its light
        if (const auto *disc = qobject_cast<const Disc *>(ink.painter); disc && !disc->text().isEmpty())
            return std::nullopt; // the ground of a number
        return paints == Paints::marks ? std::optional(recognisable) : std::nullopt;
    }
    return legible;
}

struct Contrast : ::testing::Test, Dashboard
{
    Contrast()
    {
        window.followColorScheme(scheme);
        window.resize(1000, 1500); // everything is in view
        show();
        window.activateWindow();
        settle();
    }

    void inBothThemes(const std::function<void()> &look)
    {
        for (const bool dark : {false, true}) {
            scheme.receive(dark ? 1 : 2);
            settle();
            SCOPED_TRACE(dark ? "dark" : "light");
            look();
        }
    }
    void onEveryTab(const std::function<void()> &look)
    {
        for (const int tab : test::tabs) {
            state.selectedTab = tab;
            settle();
            SCOPED_TRACE(tab);
            look();
        }
    }

    std::vector<QWidget *> visible() const
    {
        std::vector<QWidget *> all;
        for (auto *widget : window.findChildren<QWidget *>()) {
            if (widget->isVisible())
                all.push_back(widget);
        }
        return all;
    }

    /// That whatever is in the window now stands out.
    void expectContrast()
    {
        const auto shown = test::painting(window);
        for (const auto &ink : shown.inks) {
            const auto least = wanted(ink);
            if (!least)
                continue;
            ++looks;
            EXPECT_GE(ink.contrast, *least)
                << className(*ink.painter) << ' ' << ink.text.toStdString() << ' ' << ink.kind << " of " << ink.size
                << " px at " << ink.place.x() << ", " << ink.place.y() << ": " << ink.color.name().toStdString()
                << " on " << ink.ground.name().toStdString();
        }
        for (auto *widget : visible())
            expectThatItWasLookedAt(*widget, shown);
    }

    /// That the widget's class is one that is known here, and that the words that it shows were among what was seen.
    static void expectThatItWasLookedAt(QWidget &widget, const Painting &shown)
    {
        const auto paints = paintsOf(widget);
        ASSERT_TRUE(paints) << "What does " << className(widget) << " paint?";
        EXPECT_TRUE(widget.isEnabled()) << className(widget); // nothing is ever greyed out
        const auto *label = qobject_cast<const QLabel *>(&widget);
        const bool hasWords = *paints == Paints::words || (label && !label->text().isEmpty());
        if (!hasWords || (label && label->text().isEmpty()))
            return;
        EXPECT_TRUE(std::any_of(shown.inks.begin(), shown.inks.end(),
                                [&](const Ink &ink) { return ink.painter == &widget && ink.kind == Ink::words; }))
            << className(widget) << " shows no words";
    }

    ChosenScheme scheme;
    int looks = 0;
};

struct ContrastIn : Contrast, ::testing::WithParamInterface<Scene>
{
    ContrastIn()
    {
        GetParam().set(*this);
        settle();
    }
};

TEST_P(ContrastIn, everythingStandsOut)
{
    inBothThemes([this] { onEveryTab([this] { expectContrast(); }); });
    EXPECT_GT(looks, 500);
}

TEST_P(ContrastIn, everythingStandsOutUnderThePointerAndPressed)
{
    inBothThemes([this] {
        onEveryTab([this] {
            for (const bool isDown : {false, true}) {
                SCOPED_TRACE(isDown ? "pressed" : "under the pointer");
                for (auto *widget : visible()) {
                    widget->setAttribute(Qt::WA_UnderMouse);
                    if (auto *control = qobject_cast<Control *>(widget))
                        control->setDown(isDown);
                }
                expectContrast();
            }
            for (auto *widget : visible()) {
                widget->setAttribute(Qt::WA_UnderMouse, false);
                if (auto *control = qobject_cast<Control *>(widget))
                    control->setDown(false);
            }
        });
    });
}

INSTANTIATE_TEST_SUITE_P(Scenes, ContrastIn, ::testing::ValuesIn(test::scenes()),
                         [](const auto &tested) { return tested.param.name; });

TEST_F(Contrast, theRingStandsOutAroundEveryControl)
{
    test::full(*this);
    int rings = 0;
    inBothThemes([&] {
        onEveryTab([&] {
            for (auto *widget : visible()) {
                if (!(widget->focusPolicy() & Qt::TabFocus))
                    continue;
                QTest::keyClick(&window, Qt::Key_Down); // the keyboard is in use
                widget->setFocus(Qt::TabFocusReason);
                settle();
                const auto shown = test::painting(window);
                const auto ring = std::find_if(shown.inks.begin(), shown.inks.end(), [](const Ink &ink) {
                    return ink.kind == Ink::outline && className(*ink.painter) == "FocusRing";
                });
                ASSERT_NE(ring, shown.inks.end()) << className(*widget);
                EXPECT_GE(ring->contrast, 3.0)
                    << className(*widget) << " at " << ring->place.x() << ", " << ring->place.y() << ": "
                    << ring->color.name().toStdString() << " on " << ring->ground.name().toStdString();
                ++rings;
            }
        });
    });
    EXPECT_GT(rings, 100);
}

TEST_F(Contrast, aSelectionStandsOut)
{
    test::full(*this);
    state.selectedTab = 4;
    int addresses = 0;
    inBothThemes([&] {
        for (auto *address : window.findChildren<AddressLabel *>()) {
            if (!address->isVisible())
                continue;
            address->setFocus(Qt::MouseFocusReason);
            address->selectAll();
            settle();
            expectContrast();
            ++addresses;
        }
    });
    EXPECT_EQ(addresses, 8);
}

TEST_F(Contrast, theBarThatScrollsStandsOut)
{
    test::full(*this);
    window.resize(815, 560);
    state.selectedTab = 4;
    inBothThemes([this] {
        const auto shown = test::painting(window);
        const auto isBar = [](const Ink &ink) { return className(*ink.painter) == "SlimBar"; };
        EXPECT_GE(std::count_if(shown.inks.begin(), shown.inks.end(), isBar), 2);
        for (const auto &ink : shown.inks)
            EXPECT_GE(isBar(ink) ? ink.contrast : 3.0, 3.0) << ink.color.name().toStdString();
    });
}

// The yardstick itself.
TEST_F(Contrast, whatIsLookedAtIsWhatIsSeen)
{
    test::full(*this);
    inBothThemes([this] {
        onEveryTab([this] {
            const auto seen = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
            const auto picture = test::painting(window).picture;
            ASSERT_EQ(seen.size(), picture.size());
            int different = 0;
            for (int y = 0; y < seen.height(); ++y) {
                for (int x = 0; x < seen.width(); ++x)
                    different += contrast(seen.pixel(x, y), picture.pixel(x, y)) > 1.05;
            }
            EXPECT_LT(different, seen.width() * seen.height() / 1000);
        });
    });
}

// What the kit promises of its colours wherever they are used, also where no view uses them yet.
TEST(Tones, standOutOnEveryGround)
{
    const std::vector<std::pair<const char *, Accent>> accents{
        {"blue", accent::blue},     {"green", accent::green},   {"orange", accent::orange}, {"yellow", accent::yellow},
        {"purple", accent::purple}, {"indigo", accent::indigo}, {"red", accent::red},       {"gray", accent::gray}};
    for (const bool dark : {false, true}) {
        QWidget widget;
        widget.setPalette(themePalette(dark));
        const auto in = [&](const Shade &shade) { return shade.in(widget); };
        for (const auto &ground : {neutral::card, neutral::window, neutral::panel}) {
            EXPECT_GE(contrast(in(neutral::text), in(ground)), 4.5);
            EXPECT_GE(contrast(in(neutral::secondary), in(ground)), 4.5);
            EXPECT_GE(contrast(in(neutral::focusRing), in(ground)), 3.0);
            for (const auto &[name, accent] : accents) {
                EXPECT_GE(contrast(in(accent.large), in(ground)), 3.0) << name << dark;
                for (const int tint : {0, 8, 10, 12, 13, 15, 20}) {
                    const auto tinted = over(in(accent.vivid.at(tint)), in(ground));
                    EXPECT_GE(contrast(in(accent.ink), tinted), 4.5) << name << dark << tint;
                }
            }
        }
        for (const auto &[name, accent] : accents) {
            EXPECT_GE(contrast(Qt::white, in(accent.solid)), 4.5) << name;
            EXPECT_GE(contrast(Qt::white, over(QColor(255, 255, 255, 15), in(accent.solid))), 4.5) << name; // hovered
        }
    }
}

TEST(Yardstick, seesEveryTintBelow)
{
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21.0, 0.01);
    EXPECT_NEAR(contrast(QColor(0x767676), Qt::white), 4.54, 0.01);

    QWidget window;
    window.resize(200, 100);
    window.setPalette(themePalette(false));
    auto *outer = new Card(&window);
    outer->setTint(accent::blue.vivid.at(50));
    outer->setGeometry(0, 0, 200, 100);
    auto *inner = new Badge({.tint = 50, .radius = 0}, outer);
    inner->setGeometry(20, 20, 160, 60);
    inner->setAccent(accent::green);
    inner->setWord("Word");
    const auto inks = test::painting(window).inks;
    const auto word = std::find_if(inks.begin(), inks.end(), [](const Ink &ink) { return ink.kind == Ink::words; });
    ASSERT_NE(word, inks.end());
    EXPECT_EQ(word->text, "Word");
    EXPECT_EQ(word->painter, inner);
    const auto in = [&](const Shade &shade) { return shade.in(window); };
    const auto ground = over(in(accent::green.vivid.at(50)), over(in(accent::blue.vivid.at(50)), Qt::white));
    EXPECT_LT(contrast(word->ground, ground), 1.05) << word->ground.name().toStdString();
    EXPECT_EQ(word->color, in(accent::green.ink));
}

} // namespace
} // namespace orvalen
