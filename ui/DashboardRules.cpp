#include "ui/DashboardRules.h"

#include "ui/kit/Formats.h"

namespace orvalen {

namespace accent = kit::accent;

namespace {

// The large number is legible from 3:1 on, which vivid orange misses on a white card.
constexpr kit::Shade heatingNumber{kit::shade(0xD97706, 0).light, accent::orange.vivid.dark};

bool isReached(double targetTemp, const SystemThermalData &data)
{
    return targetTemp <= data.bridgeTemp;
}

} // namespace

QString DashboardRules::statusWord(bool isWarmingUp, double targetTemp, const SystemThermalData &data)
{
    if (isWarmingUp)
        return tr("WARMING UP");
    return isReached(targetTemp, data) ? tr("PROTECTED") : tr("STANDBY");
}

kit::Accent DashboardRules::statusAccent(bool isWarmingUp, double targetTemp, const SystemThermalData &data)
{
    if (isWarmingUp)
        return accent::orange;
    return isReached(targetTemp, data) ? accent::green : accent::yellow;
}

double DashboardRules::shownTemperature(bool isWarmingUp, double currentPulseTemp, const SystemThermalData &data)
{
    return isWarmingUp ? currentPulseTemp : data.bridgeTemp;
}

kit::Shade DashboardRules::temperatureShade(bool isWarmingUp, double targetTemp, const SystemThermalData &data)
{
    if (isWarmingUp)
        return heatingNumber;
    return isReached(targetTemp, data) ? accent::green.vivid : accent::blue.vivid;
}

QString DashboardRules::targetLine(double targetTemp)
{
    return tr("Target Optimal: %1°C • Hotkey: ⌘⌥W").arg(kit::oneDecimal(targetTemp));
}

QString DashboardRules::warmupLabel(bool isWarmingUp, double warmupProgress)
{
    return isWarmingUp ? tr("Optimizing Gate Drivers (%1%)...").arg(kit::wholePart(warmupProgress * 100))
                       : tr("Trigger Prime Warmup Now");
}

QString DashboardRules::warmupSymbol(bool isWarmingUp)
{
    return isWarmingUp ? "flame.fill" : "play.fill";
}

kit::Accent DashboardRules::warmupAccent(bool isWarmingUp)
{
    return isWarmingUp ? accent::orange : accent::blue;
}

std::optional<double> DashboardRules::runningProgress(bool isWarmingUp, double warmupProgress)
{
    return isWarmingUp ? std::optional(warmupProgress) : std::nullopt;
}

QString DashboardRules::bridgeValue(const SystemThermalData &data)
{
    return tr("%1°C").arg(kit::oneDecimal(data.bridgeTemp));
}

QString DashboardRules::socValue(const SystemThermalData &data)
{
    return tr("%1°C").arg(kit::oneDecimal(data.socTemp));
}

QString DashboardRules::powerValue(bool isAcConnected, int batteryPercent)
{
    return isAcConnected ? tr("AC Adapter") : tr("%1% Battery").arg(batteryPercent);
}

QString DashboardRules::powerSymbol(bool isAcConnected)
{
    return isAcConnected ? "bolt.fill" : "battery.75";
}

kit::Accent DashboardRules::powerAccent(bool isAcConnected)
{
    return isAcConnected ? accent::green : accent::orange;
}

QString DashboardRules::presenceValue(bool isUserAway)
{
    return isUserAway ? tr("User Away (Idle)") : tr("Active Workstation");
}

QString DashboardRules::presenceSymbol(bool isUserAway)
{
    return isUserAway ? "moon.zzz.fill" : "person.fill.checkmark";
}

kit::Accent DashboardRules::presenceAccent(bool isUserAway)
{
    return isUserAway ? accent::gray : accent::green;
}

} // namespace orvalen
