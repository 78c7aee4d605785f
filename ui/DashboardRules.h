#pragma once

#include <QCoreApplication>
#include <QString>

#include <optional>

#include "core/SystemThermalData.h"
#include "ui/kit/Shade.h"

namespace orvalen {

/// What the dashboard says and in which colour, as functions of what is known. Temperatures in °C.
struct DashboardRules
{
    Q_DECLARE_TR_FUNCTIONS(DashboardRules)

public:
    [[nodiscard]] static QString statusWord(bool isWarmingUp, double targetTemp, const SystemThermalData &data);
    [[nodiscard]] static kit::Accent statusAccent(bool isWarmingUp, double targetTemp, const SystemThermalData &data);

    /// While a warm-up runs, its own latest sample.
    [[nodiscard]] static double shownTemperature(bool isWarmingUp, double currentPulseTemp,
                                                 const SystemThermalData &data);
    [[nodiscard]] static kit::Shade temperatureShade(bool isWarmingUp, double targetTemp,
                                                     const SystemThermalData &data);
    [[nodiscard]] static QString targetLine(double targetTemp);

    [[nodiscard]] static QString warmupLabel(bool isWarmingUp, double warmupProgress);
    [[nodiscard]] static QString warmupSymbol(bool isWarmingUp);
    [[nodiscard]] static kit::Accent warmupAccent(bool isWarmingUp);
    [[nodiscard]] static std::optional<double> runningProgress(bool isWarmingUp, double warmupProgress);

    [[nodiscard]] static QString bridgeValue(const SystemThermalData &data);
    [[nodiscard]] static QString socValue(const SystemThermalData &data);
    [[nodiscard]] static QString powerValue(bool isAcConnected, int batteryPercent);
    [[nodiscard]] static QString powerSymbol(bool isAcConnected);
    [[nodiscard]] static kit::Accent powerAccent(bool isAcConnected);
    [[nodiscard]] static QString presenceValue(bool isUserAway);
    [[nodiscard]] static QString presenceSymbol(bool isUserAway);
    [[nodiscard]] static kit::Accent presenceAccent(bool isUserAway);
};

} // namespace orvalen
