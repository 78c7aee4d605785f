#include "ui/DiagnosticsView.h"

#include "core/AppState.h"

namespace orvalen {

using namespace kit;

namespace {

constexpr int cardPadding = 10;

bool isThere(const std::optional<std::string> &status)
{
    return status.has_value();
}

QString wordsOf(const std::optional<std::string> &status)
{
    return QString::fromStdString(status.value_or(std::string()));
}

} // namespace

DiagnosticsView::DiagnosticsView(AppState &state, const ReportGenerator::Services &report, QWidget *parent)
    : Ground(parent), state(state), report(report)
{
    vStackIn(*this, {reportCard(), verdictCard(), flashlightCard(), safetyCard(), spacer()}).spacing(14);
}

QWidget *DiagnosticsView::reportCard()
{
    return card({
                    vStack({
                               title(tr("Service Shop Report")).weight(QFont::Bold).wrapped(),
                               note(tr("Official proof for technicians that your M1 GPU is 100% healthy")),
                           })
                        .spacing(1),
                    callToAction(tr("Generate Technician Diagnostic Report"), [this] { writeReport(); })
                        .symbol("doc.text.fill")
                        .color(accent::indigo)
                        .weight(QFont::Bold),
                    reportStatus(),
                })
        .tint(accent::indigo, 8)
        .spacing(9)
        .padding(cardPadding);
}

QWidget *DiagnosticsView::reportStatus()
{
    return shownWhile({state.reportStatus, isThere},
                      hStack({
                          symbol("checkmark.circle.fill", 14).color(accent::green),
                          filling(note({state.reportStatus, wordsOf}).color(accent::green).announced()),
                      }));
}

void DiagnosticsView::writeReport()
{
    const bool isWritten = ReportGenerator::generateAndOpenReport(report).has_value();
    const auto status = isWritten ? tr("Saved to Desktop & Opened in Safari!") : tr("Error generating report");
    state.reportStatus = status.toStdString();
    if (isWritten)
        state.playChime("Glass");
}

QWidget *DiagnosticsView::verdictCard()
{
    return card({
                    title(tr("Hardware Integrity Check")).wrapped(),
                    verdict("checkmark.circle.fill", accent::green, tr("Apple M1 GPU: Normal & Rendering")),
                    verdict("checkmark.circle.fill", accent::green, tr("Internal Color LCD: Online in macOS")),
                    verdict("exclamationmark.triangle.fill", accent::orange,
                            tr("Flex/T-CON Connection: Thermal Sensitive")),
                })
        .spacing(7)
        .padding(cardPadding);
}

QWidget *DiagnosticsView::verdict(const QString &icon, const Accent &color, const QString &words)
{
    return hStack({symbol(icon, 14).color(color), filling(note(words).color(neutral::text))});
}

QWidget *DiagnosticsView::flashlightCard()
{
    return card(
               {
                   title(tr("💡 1-Minute Flashlight Test")).wrapped(),
                   note(tr("When the screen is black, shine your phone torch close to the glass at an angle:")),
                   note(tr("• Faint Desktop/Logo visible: LCD works! Issue is only Backlight power circuit."))
                       .color(neutral::text),
                   note(tr("• Completely dark: T-CON / eDP display data line is open when cold.")).color(neutral::text),
               })
        .padding(cardPadding);
}

QWidget *DiagnosticsView::safetyCard()
{
    return card({
                    text(tr("⚠️ Safety Precaution")).weight(QFont::DemiBold).color(accent::orange).wrapped(),
                    note(tr("Never use a hair dryer or external hot air directly on the glass. The polarizer melts at "
                            "65°C. Always use Orvalen's safe internal warm-up.")),
                })
        .tint(accent::orange, 10)
        .spacing(5)
        .padding(cardPadding);
}

} // namespace orvalen
