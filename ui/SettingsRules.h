#pragma once

#include <QCoreApplication>
#include <QString>

#include "ui/kit/SliderScale.h"

namespace orvalen {

/// How the settings are shown, and what the sliders offer.
struct SettingsRules
{
    Q_DECLARE_TR_FUNCTIONS(SettingsRules)

public:
    static constexpr kit::SliderScale targetScale{.from = 38.0, .to = 44.0, .step = 0.5};     ///< °C.
    static constexpr kit::SliderScale idleTimeoutScale{.from = 1.0, .to = 10.0, .step = 1.0}; ///< Minutes.

    [[nodiscard]] static QString targetValue(double targetTemp);
    [[nodiscard]] static QString idleTimeoutValue(double minutes);
};

} // namespace orvalen
