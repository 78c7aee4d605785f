#include "ui/DiagnosticsView.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QLayout>
#include <QTest>

#include "tests/ui/Reading.h"
#include "ui/kit/Theme.h"

namespace orvalen {
namespace {

using namespace kit;
using test::cardsOf;
using test::contentOf;
using test::Dashboard;
using test::Lettering;
using test::letteringOf;
using test::onlyIn;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString saved = "Saved to Desktop & Opened in Safari!";
const QString failed = "Error generating report";
const std::string reportFile = "/srv/anna/Desktop/Quenmark_Display_Diagnostic_Report.html";

/// The window with the tab "Diagnostics" chosen.
struct Diagnostics : ::testing::Test, Dashboard
{
    Diagnostics()
    {
        state.selectedTab = 1;
        show();
        window.activateWindow();
        settle();
    }

    [[nodiscard]] DiagnosticsView &tab() const { return onlyIn<DiagnosticsView>(window); }
    [[nodiscard]] CallToAction &button() const { return onlyIn<CallToAction>(tab()); }
    [[nodiscard]] Card &reportCard() const { return *cardsOf(tab()).front(); }
    void press() const { QTest::mouseClick(&button(), Qt::LeftButton); }

    /// What follows the button on the card.
    [[nodiscard]] std::vector<std::string> status() const
    {
        auto all = contentOf(reportCard());
        all.erase(all.begin(), all.begin() + 3);
        return all;
    }
    [[nodiscard]] auto writes() const { return std::count(reportDiary.begin(), reportDiary.end(), "write"); }
    [[nodiscard]] auto chimes()
    {
        machine.world.settle();
        return machine.sounds.played;
    }
};

TEST_F(Diagnostics, standInFourCards)
{
    const auto cards = cardsOf(tab());
    ASSERT_EQ(cards.size(), 4u);
    test::expectStandsInOrder(cards, tab());
    EXPECT_THAT(contentOf(*cards[0]),
                ElementsAre("Service Shop Report", "Official proof for technicians that your M1 GPU is 100% healthy",
                            "[doc.text.fill] Generate Technician Diagnostic Report (button)"));
    EXPECT_THAT(contentOf(*cards[1]),
                ElementsAre("Hardware Integrity Check", "[checkmark.circle.fill]", "Apple M1 GPU: Normal & Rendering",
                            "[checkmark.circle.fill]", "Internal Color LCD: Online in macOS",
                            "[exclamationmark.triangle.fill]", "Flex/T-CON Connection: Thermal Sensitive"));
    EXPECT_THAT(contentOf(*cards[2]),
                ElementsAre("💡 1-Minute Flashlight Test",
                            "When the screen is black, shine your phone torch close to the glass at an angle:",
                            "• Faint Desktop/Logo visible: LCD works! Issue is only Backlight power circuit.",
                            "• Completely dark: T-CON / eDP display data line is open when cold."));
    EXPECT_THAT(contentOf(*cards[3]),
                ElementsAre("⚠️ Safety Precaution",
                            "Never use a hair dryer or external hot air directly on the glass. The polarizer melts at "
                            "65°C. Always use Orvalen's safe internal warm-up."));
}

TEST_F(Diagnostics, areSetInTheStatedTypeAndColours)
{
    const auto setAs = [this](const QString &words) { return letteringOf(tab(), words); };
    const Lettering explanation{11, QFont::Normal, neutral::secondary};
    const Lettering line{11, QFont::Normal, neutral::text};
    EXPECT_EQ(setAs("Service Shop Report"), (Lettering{13, QFont::Bold, neutral::text}));
    EXPECT_EQ(setAs("Official proof for technicians that your M1 GPU is 100% healthy"), explanation);
    EXPECT_EQ(setAs("Hardware Integrity Check"), (Lettering{13, QFont::DemiBold, neutral::text}));
    EXPECT_EQ(setAs("Apple M1 GPU: Normal & Rendering"), line);
    EXPECT_EQ(setAs("Internal Color LCD: Online in macOS"), line);
    EXPECT_EQ(setAs("Flex/T-CON Connection: Thermal Sensitive"), line);
    EXPECT_EQ(setAs("💡 1-Minute Flashlight Test"), (Lettering{13, QFont::DemiBold, neutral::text}));
    EXPECT_EQ(setAs("When the screen is black, shine your phone torch close to the glass at an angle:"), explanation);
    EXPECT_EQ(setAs("• Faint Desktop/Logo visible: LCD works! Issue is only Backlight power circuit."), line);
    EXPECT_EQ(setAs("• Completely dark: T-CON / eDP display data line is open when cold."), line);
    EXPECT_EQ(setAs("⚠️ Safety Precaution"), (Lettering{12, QFont::DemiBold, accent::orange.ink}));
    EXPECT_EQ(button().accent(), accent::indigo);
    EXPECT_EQ(button().type().weight, QFont::Bold);

    std::vector<Shade> marks;
    for (const auto *symbol : cardsOf(tab())[1]->findChildren<SymbolLabel *>())
        marks.push_back(symbol->shade());
    EXPECT_THAT(marks, ElementsAre(accent::green.ink, accent::green.ink, accent::orange.ink));
}

TEST_F(Diagnostics, theCardsHaveTheirTintAndPadding)
{
    window.setPalette(themePalette(false));
    settle();
    const auto cards = cardsOf(tab());
    const auto picture = window.grab().toImage();
    const auto ground = [&](const Card &card) {
        return picture.pixelColor(card.mapTo(&window, QPoint(card.width() / 2, 4)));
    };
    const auto tinted = [&](const Accent &accent, int percent) {
        return over(accent.vivid.at(percent).in(window), neutral::card.in(window));
    };
    test::expectColour(ground(*cards[0]), tinted(accent::indigo, 8));
    test::expectColour(ground(*cards[1]), neutral::card.in(window));
    test::expectColour(ground(*cards[2]), neutral::card.in(window));
    test::expectColour(ground(*cards[3]), tinted(accent::orange, 10));
    for (const auto *card : cards) {
        EXPECT_EQ(card->contentsRect().adjusted(10, 10, -10, -10), card->layout()->contentsRect());
        EXPECT_EQ(card->width(), cards[0]->width());
    }
    EXPECT_EQ(button().width(), reportCard().width() - 2 * 10);
}

TEST_F(Diagnostics, noStatusIsShownBeforeTheFirstPress)
{
    EXPECT_THAT(status(), IsEmpty());
    EXPECT_FALSE(state.reportStatus.value());
    EXPECT_THAT(reportDiary, IsEmpty()); // and nothing is written by looking
}

TEST_F(Diagnostics, aPressWritesTheReportSaysSoAndChimes)
{
    press();
    EXPECT_EQ(state.reportStatus.value(), saved.toStdString());
    EXPECT_THAT(status(), ElementsAre("[checkmark.circle.fill]", saved.toStdString()));
    EXPECT_EQ(letteringOf(reportCard(), saved), (Lettering{11, QFont::Normal, accent::green.ink}));
    EXPECT_EQ(onlyIn<SymbolLabel>(reportCard()).shade(), accent::green.ink);
    EXPECT_THAT(chimes(), ElementsAre("Glass"));
    EXPECT_EQ(documents.files.count(reportFile), 1u);
    EXPECT_EQ(reportDiary.back(), "open " + reportFile);
}

TEST_F(Diagnostics, aReportThatCannotBeWrittenIsAnErrorBesideTheSameGreenMark)
{
    documents.canWrite = false;
    press();
    EXPECT_EQ(state.reportStatus.value(), failed.toStdString());
    EXPECT_THAT(status(), ElementsAre("[checkmark.circle.fill]", failed.toStdString()));
    EXPECT_EQ(letteringOf(reportCard(), failed), (Lettering{11, QFont::Normal, accent::green.ink}));
    EXPECT_EQ(onlyIn<SymbolLabel>(reportCard()).shade(), accent::green.ink);
    EXPECT_THAT(chimes(), IsEmpty());
    EXPECT_EQ(writes(), 1);
}

TEST_F(Diagnostics, pressingTwiceWritesTwiceAndChimesTwice)
{
    press();
    press();
    EXPECT_EQ(writes(), 2);
    EXPECT_THAT(chimes(), ElementsAre("Glass", "Glass"));
    EXPECT_THAT(status(), ElementsAre("[checkmark.circle.fill]", saved.toStdString()));
}

TEST_F(Diagnostics, theNextPressReplacesTheStatus)
{
    documents.canWrite = false;
    press();
    documents.canWrite = true;
    press();
    EXPECT_THAT(status(), ElementsAre("[checkmark.circle.fill]", saved.toStdString()));
    documents.canWrite = false;
    press();
    EXPECT_THAT(status(), ElementsAre("[checkmark.circle.fill]", failed.toStdString()));
    EXPECT_THAT(chimes(), ElementsAre("Glass"));
}

TEST_F(Diagnostics, theStatusStays)
{
    press();
    for (const int tag : {0, 3, 1}) {
        state.selectedTab = tag;
        settle();
    }
    state.triggerWarmup();
    machine.world.advance(std::chrono::hours(1));
    window.hide();
    window.show();
    EXPECT_THAT(status(), ElementsAre("[checkmark.circle.fill]", saved.toStdString()));
    const DiagnosticsView later(state, services.report);
    EXPECT_THAT(contentOf(later), Contains(saved.toStdString())); // it is the state's, not the view's
}

TEST_F(Diagnostics, withoutSoundsThereIsNoChime)
{
    state.soundFeedbackEnabled = false;
    press();
    EXPECT_THAT(status(), ElementsAre("[checkmark.circle.fill]", saved.toStdString()));
    EXPECT_THAT(chimes(), IsEmpty());
}

TEST_F(Diagnostics, theKeyboardPressesTheButton)
{
    findIn<Control>(window, "Settings")->setFocus(Qt::TabFocusReason); // the last of the tabs
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), &button());
    QTest::keyClick(&button(), Qt::Key_Space);
    QTest::keyClick(&button(), Qt::Key_Return);
    EXPECT_EQ(writes(), 2);
}

TEST_F(Diagnostics, theVerdictDoesNotDependOnReadings)
{
    const auto before = contentOf(*cardsOf(tab())[1]);
    setBridge(0.0);
    EXPECT_EQ(contentOf(*cardsOf(tab())[1]), before);
    setBridge(90.0, 99.0);
    EXPECT_EQ(contentOf(*cardsOf(tab())[1]), before);
}

TEST_F(Diagnostics, aStatusIsSaidByReadersOnceItShows)
{
    std::vector<std::string> said;
    for (const auto *label : reportCard().findChildren<TextLabel *>()) {
        QObject::connect(label, &TextLabel::announced, label, [&said, label](const QString &words) {
            said.push_back(words.toStdString() + (label->isVisible() ? "" : ", hidden"));
        });
    }
    press();
    settle();
    EXPECT_THAT(said, ElementsAre(saved.toStdString()));
    documents.canWrite = false;
    press();
    settle();
    EXPECT_THAT(said, ElementsAre(saved.toStdString(), failed.toStdString()));
    press();
    settle();
    EXPECT_THAT(said, ElementsAre(saved.toStdString(), failed.toStdString(), failed.toStdString()));
}

TEST_F(Diagnostics, whatIsShownFromTheStartIsNoWindowOfItsOwn)
{
    state.reportStatus = "there already";
    const DiagnosticsView another(state, services.report);
    for (const auto *widget : QApplication::topLevelWidgets())
        EXPECT_TRUE(widget == &window || !widget->isVisible()) << widget->metaObject()->className();
}

/// A state that remembers what stood there when a chime was asked for.
struct ListeningState : AppState
{
    using AppState::AppState;
    void playChime(std::string_view name) override
    {
        asked.push_back(std::string(name) + " after " + reportStatus.value().value_or("nothing"));
    }
    std::vector<std::string> asked;
};

TEST_F(Diagnostics, theChimeComesAfterTheStatus)
{
    ListeningState listening(machine.stateServices(engine));
    DiagnosticsView view(listening, services.report);
    onlyIn<CallToAction>(view).click();
    EXPECT_THAT(listening.asked, ElementsAre("Glass after " + saved.toStdString()));
}

} // namespace
} // namespace orvalen
