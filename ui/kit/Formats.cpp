#include "ui/kit/Formats.h"

#include "core/Decimals.h"

namespace orvalen::kit {

QString oneDecimal(double value)
{
    return QString::fromStdString(orvalen::oneDecimal(value));
}

QString wholePart(double value)
{
    return QString::number(static_cast<qlonglong>(value));
}

} // namespace orvalen::kit
