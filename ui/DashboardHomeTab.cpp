#include "ui/DashboardHomeTab.h"

#include "core/AppState.h"
#include "ui/DashboardRules.h"
#include "ui/TemperatureReadout.h"

namespace orvalen {

using namespace kit;
using Rules = DashboardRules;

DashboardHomeTab::DashboardHomeTab(AppState &state, QWidget *parent) : Ground(parent), state(state)
{
    vStackIn(*this, {temperaturePanel(), warmupButton(), protectionRow(), metrics(), spacer()}).spacing(14);
}

QWidget *DashboardHomeTab::temperaturePanel()
{
    const auto heading = tr("DISPLAY BRIDGE TEMPERATURE");
    auto *readout = new TemperatureReadout;
    readout->setAccessibleDescription(heading);
    Live<double>(state.isWarmingUp, state.currentPulseTemp, state.thermalData, Rules::shownTemperature)
        .follow(*readout, [readout](double celsius) { readout->setCelsius(celsius); });
    Live<Shade>(state.isWarmingUp, state.targetTemp, state.thermalData, Rules::temperatureShade)
        .follow(*readout, [readout](const Shade &shade) { readout->setShade(shade); });

    return card({
                    caption(heading).centred(),
                    centred(readout),
                    text({state.targetTemp, Rules::targetLine}).size(11).color(neutral::secondary).centred(),
                })
        .padding(18)
        .spacing(4);
}

QWidget *DashboardHomeTab::warmupButton()
{
    return callToAction({state.isWarmingUp, state.warmupProgress, Rules::warmupLabel},
                        [this] { state.triggerWarmup(); })
        .symbol({state.isWarmingUp, Rules::warmupSymbol})
        .color({state.isWarmingUp, Rules::warmupAccent})
        .progress({state.isWarmingUp, state.warmupProgress, Rules::runningProgress});
}

QWidget *DashboardHomeTab::protectionRow()
{
    return card({
        toggleRow(state.smartModeEnabled, tr("Autonomous Thermal Shield"), tr("Auto-heats on wake, sleeps when away")),
    });
}

QWidget *DashboardHomeTab::metrics()
{
    return grid(2,
                {
                    metricCard(tr("Gate Driver T-CON"), {state.thermalData, Rules::bridgeValue}, "display",
                               accent::blue),
                    metricCard(tr("Apple Silicon SoC"), {state.thermalData, Rules::socValue}, "cpu", accent::purple),
                    metricCard(tr("Power Source"), {state.isAcConnected, state.batteryPercent, Rules::powerValue},
                               {state.isAcConnected, Rules::powerSymbol}, {state.isAcConnected, Rules::powerAccent}),
                    metricCard(tr("Active State"), {state.isUserAway, Rules::presenceValue},
                               {state.isUserAway, Rules::presenceSymbol}, {state.isUserAway, Rules::presenceAccent}),
                })
        .spacing(10);
}

QWidget *DashboardHomeTab::metricCard(const QString &title, const Live<QString> &value, const Live<QString> &icon,
                                      const Live<Accent> &color)
{
    const auto reading = text(value).size(14).weight(QFont::Bold).wrapped();
    reading->setAccessibleDescription(title);
    return card({
        hStack({
                   tile(icon).color(color),
                   filling(vStack({text(title).size(11).color(neutral::secondary).wrapped(), reading}).spacing(0)),
               })
            .spacing(9),
    });
}

} // namespace orvalen
