#pragma once

#include <QKeyEvent>

namespace orvalen::kit {

/// Whether a key is pressed without another that makes something else of it; those of the number pad count as others
/// do.
[[nodiscard]] inline bool isAlone(const QKeyEvent &event)
{
    return (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace orvalen::kit
