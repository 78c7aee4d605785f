#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

namespace orvalen {

/// Whether there is a picture of that name, such as "flame.fill".
[[nodiscard]] bool hasSymbolPicture(const QString &symbol);

/// A symbol in one colour on nothing, as large as fits in the middle of `size`, device pixels. Without a picture of
/// that name: nothing.
[[nodiscard]] QImage symbolPicture(const QString &symbol, const QSize &size, const QColor &color);

} // namespace orvalen
