#include "ui/SettingsRules.h"

#include "ui/kit/Formats.h"

namespace orvalen {

QString SettingsRules::targetValue(double targetTemp)
{
    return tr("%1 °C").arg(kit::oneDecimal(targetTemp));
}

QString SettingsRules::idleTimeoutValue(double minutes)
{
    return tr("%1 mins").arg(kit::wholePart(minutes));
}

} // namespace orvalen
