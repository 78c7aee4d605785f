#pragma once

#include <QRect>

namespace orvalen::kit {

/// A widget that says how it wants to be framed while it has the keyboard.
class Outlined
{
public:
    virtual ~Outlined() = default;

    /// The part that the focus ring goes around, and how round that is.
    struct Outline
    {
        QRect rect;
        int radius = 0;
    };
    [[nodiscard]] virtual Outline outline() const = 0;
};

} // namespace orvalen::kit
