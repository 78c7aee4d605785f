#include "app/SimulatedLaptopWindow.h"

#include <QTimer>
#include <QVBoxLayout>

#include "app/SimulatedSlider.h"
#include "app/TemperaturePlot.h"
#include "core/AppState.h"
#include "platform/simulated/SimulatedLaptop.h"
#include "ui/kit/Builders.h"
#include "ui/kit/FocusRing.h"
#include "ui/kit/ScrollArea.h"
#include "ui/kit/Theme.h"

namespace orvalen {

using namespace kit;

namespace {

constexpr std::chrono::milliseconds refreshPeriod{500};

QString wholeDegrees(double celsius)
{
    return QString::asprintf("%.0f °C", celsius);
}

QString percent(double value)
{
    return QString::asprintf("%.0f %%", value);
}

QString minutesAndSeconds(double seconds)
{
    const int whole = static_cast<int>(seconds);
    return QString::asprintf("%d:%02d", whole / 60, whole % 60);
}

QString whereTheUserIs(bool isAway, double secondsAway)
{
    return isAway ? SimulatedLaptopWindow::tr("Away, no input for %1").arg(minutesAndSeconds(secondsAway))
                  : SimulatedLaptopWindow::tr("At the keyboard");
}

} // namespace

SimulatedLaptopWindow::SimulatedLaptopWindow(AppState &state, SimulatedLaptop &laptop, QWidget *parent)
    : QWidget(parent), theme(new Theme(*this)), state(state), laptop(laptop), controls(laptop)
{
    setWindowTitle(tr("Simulated laptop"));
    setMinimumSize(420, 320);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new ScrollArea(content()));
    new FocusRing(*this);

    auto *timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &SimulatedLaptopWindow::refresh);
    timer->start(refreshPeriod);
    refresh();
}

void SimulatedLaptopWindow::followColorScheme(ColorScheme &scheme)
{
    theme->follow(scheme);
}

QSize SimulatedLaptopWindow::sizeHint() const
{
    return {420, 700};
}

QWidget *SimulatedLaptopWindow::content()
{
    auto *panel = new Panel(neutral::window);
    auto *layout = new QVBoxLayout(panel);
    layout->setContentsMargins(14, 14, 14, 14);
    layout->setSpacing(10);
    layout->addWidget(header());
    layout->addWidget(plotCard(), 1);
    layout->addWidget(grid(2, {roomCard(), powerCard()}));
    layout->addWidget(userCard());
    layout->addWidget(faultsCard());
    return panel;
}

QWidget *SimulatedLaptopWindow::header()
{
    return hStack({
                      filling(vStack({
                                         text(tr("Simulated laptop")).size(15).weight(QFont::DemiBold),
                                         note(tr("Warmed by what this program really does")),
                                     })
                                  .spacing(1)),
                      statusBadge(
                          {state.isWarmingUp, [](bool warming) { return warming ? tr("HEATING") : tr("AT REST"); }},
                          {state.isWarmingUp, [](bool warming) { return warming ? accent::orange : accent::gray; }}),
                  })
        .spacing(12);
}

QWidget *SimulatedLaptopWindow::plotCard()
{
    plot = new TemperaturePlot;
    Live<double>(state.targetTemp).follow(*plot, [this](double celsius) { plot->setTarget(celsius); });
    return card({filling(plot)});
}

QWidget *SimulatedLaptopWindow::roomCard()
{
    return card({
                    hStack(
                        {title(tr("Room")), spacer(), text({controls.roomCelsius, wholeDegrees}).color(accent::blue)}),
                    new SimulatedSlider(controls.roomCelsius, {.from = 0, .to = 35}, tr("Room"), accent::blue),
                    leading(smallButton(tr("Cool down to room temperature"), [this] { controls.coolDown(); })),
                    spacer(),
                })
        .spacing(8);
}

QWidget *SimulatedLaptopWindow::powerCard()
{
    return card({
                    hStack({title(tr("Battery")), spacer(),
                            text({controls.batteryPercent, percent}).color(accent::green)}),
                    new SimulatedSlider(controls.batteryPercent, {.page = 10}, tr("Battery"), accent::green),
                    hStack({text(tr("Charger")), spacer(),
                            toggle(controls.isChargerPluggedIn, tr("Charger"), tr("Plugs the charger in or out"))}),
                    spacer(),
                })
        .spacing(8);
}

QWidget *SimulatedLaptopWindow::userCard()
{
    const auto comeOrGo = smallButton({}, [this] { controls.isUserAway = !controls.isUserAway; });
    Live<bool>(controls.isUserAway).follow(*comeOrGo, [button = comeOrGo.operator SmallButton *()](bool away) {
        button->setLabel(away ? tr("Come back") : tr("Walk away"));
    });
    return card({hStack({
        filling(
            vStack({title(tr("User")), note({controls.isUserAway, controls.secondsAway, whereTheUserIs})}).spacing(1)),
        comeOrGo,
    })});
}

QWidget *SimulatedLaptopWindow::faultsCard()
{
    return card({
                    title(tr("Sensor faults")),
                    toggleRow(controls.allSensorsGone, tr("All sensors gone"), tr("The program reads nothing at all")),
                    toggleRow(controls.oneSensorStuck, tr("One sensor stuck"), tr("It stays at what it reads now")),
                    toggleRow(controls.oneSensorNotANumber, tr("One sensor NaN"), tr("It reads what is no number")),
                })
        .spacing(6);
}

void SimulatedLaptopWindow::refresh()
{
    controls.refresh();
    const auto &now = controls.temperatures.value();
    plot->add({.time = laptop.now(),
               .bridge = now.bridgeTemp,
               .soc = now.socTemp,
               .pmu = now.pmuTemp,
               .room = controls.roomCelsius,
               .isWarmingUp = state.isWarmingUp});
}

} // namespace orvalen
