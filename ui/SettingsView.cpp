#include "ui/SettingsView.h"

#include "core/AppState.h"
#include "core/MakerSite.h"
#include "platform/UrlOpener.h"
#include "ui/QuenmarkLogo.h"
#include "ui/SettingsRules.h"

namespace orvalen {

using namespace kit;
using Rules = SettingsRules;

SettingsView::SettingsView(AppState &state, UrlOpener &urls, QWidget *parent) : Ground(parent), state(state), urls(urls)
{
    vStackIn(*this,
             {
                 automationsCard(),
                 hotKeyCard(),
                 targetTemperatureCard(),
                 idleTimeoutCard(),
                 aboutCard(),
                 spacer(),
             })
        .spacing(14);
}

QWidget *SettingsView::automationsCard()
{
    return card({
                    title(tr("Automations & Feedback")),
                    toggleRow(state.autoWarmupOnCharger, tr("Auto-Warmup on Charger Plug-In"),
                              tr("Immediately primes display when USB-C charger is connected.")),
                    hairline(),
                    toggleRow(state.soundFeedbackEnabled, tr("Audio Chimes & Sound Feedback"),
                              tr("Plays audio signals when warmup starts and display is ready.")),
                })
        .spacing(9);
}

QWidget *SettingsView::hotKeyCard()
{
    return card({
        hStack({
                   symbol("command.square.fill", 24).color(accent::blue),
                   filling(vStack({
                                      text(tr("Emergency Blind Hotkey:")).weight(QFont::DemiBold).wrapped(),
                                      note(tr("Press anytime (even on a pitch-black screen) to trigger instant "
                                              "warm-up with audio chimes.")),
                                  })
                               .spacing(1)),
                   keyBadge(tr("⌘ + ⌥ + W"), accent::blue),
               })
            .spacing(12),
    });
}

QWidget *SettingsView::targetTemperatureCard()
{
    return sliderCard(tr("Target Bridge Temperature"), state.targetTemp, Rules::targetScale,
                      {state.targetTemp, Rules::targetValue}, accent::blue,
                      tr("Recommended: 39.5°C – 41.0°C. Safely bridges connection without excess heat."));
}

QWidget *SettingsView::idleTimeoutCard()
{
    return sliderCard(tr("Idle Sleep Timeout"), state.idleTimeoutMinutes, Rules::idleTimeoutScale,
                      {state.idleTimeoutMinutes, Rules::idleTimeoutValue}, accent::purple,
                      tr("If no keyboard/mouse input is detected for this duration, Orvalen stands down to save "
                         "battery."));
}

QWidget *SettingsView::sliderCard(const QString &heading, Published<double> &setting, const SliderScale &scale,
                                  const Live<QString> &value, const Accent &color, const QString &explanation)
{
    const auto knob = slider(setting, scale, heading, value).color(color);
    knob->setAccessibleDescription(explanation);
    return card({
                    hStack({filling(title(heading).wrapped()), title(value).color(color)}),
                    knob,
                    note(explanation),
                })
        .spacing(0);
}

QWidget *SettingsView::aboutCard()
{
    return card({
                    hStack({
                               logoView(loadQuenmarkLogo(), 22),
                               filling(vStack({
                                                  text(tr("Quenmark Technologies")).weight(QFont::DemiBold).wrapped(),
                                                  note(tr("Hardware & Software Intelligence")).size(10),
                                              })
                                           .spacing(0)),
                           })
                        .spacing(10),
                    note(tr("Orvalen is crafted by Quenmark Technologies to solve Apple Silicon thermal bridge and "
                            "display interconnect sensitivity.")),
                    flow({siteLink("safari.fill", makerSite), siteLink("globe", makerToolsSite)}, 16),
                })
        .spacing(4)
        .padding(12, 12, 12, 7);
}

QWidget *SettingsView::siteLink(const QString &icon, std::string_view url)
{
    const auto name = siteName(url);
    return link(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())) + " ↗",
                [this, url] { urls.open(url); })
        .size(11)
        .weight(QFont::DemiBold)
        .leadingSymbol(icon);
}

} // namespace orvalen
