#pragma once

#include <QIcon>
#include <QImage>
#include <QString>

#include <array>

namespace orvalen {

/// What is to be seen in a tray: a symbol and a number, light on dark panels and dark on light ones.
struct StatusLook
{
    QString symbol; ///< As the pictures in assets/icons are named.
    QString number; ///< At most three characters stay legible; empty: the symbol alone.
    bool onDark = true;

    friend bool operator==(const StatusLook &, const StatusLook &) = default;
};

/// The sizes that trays ask for, device pixels.
inline constexpr std::array statusIconSizes = {16, 22, 24, 32, 44, 48, 64};

/// A square of that size. A thin edge in the opposite shade keeps it legible where the panel is not of the shade that
/// was expected.
[[nodiscard]] QImage paintStatusIcon(const StatusLook &look, int size);

/// Offers the sizes above, is sharp in any other, and paints each when it is first asked for.
[[nodiscard]] QIcon statusIcon(const StatusLook &look);

} // namespace orvalen
