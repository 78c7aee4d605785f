#pragma once

#include <QColor>
#include <QIcon>
#include <QRectF>
#include <QString>

class QPainter;

namespace orvalen::kit {

/// A symbol by its name, such as "flame.fill", in one colour, sharp at every size and scale. Without a picture of that
/// name the icon is empty.
[[nodiscard]] QIcon symbolIcon(const QString &name, const QColor &color);

/// Draws a symbol as large as `place`.
void paintSymbol(QPainter &painter, const QRectF &place, const QString &name, const QColor &color);

} // namespace orvalen::kit
