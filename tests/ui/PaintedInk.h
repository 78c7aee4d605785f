#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <QString>

#include <vector>

class QWidget;

namespace orvalen::test {

/// How far two colours stand apart, 1 to 21, by the formula of the web's accessibility guidelines.
[[nodiscard]] double contrast(const QColor &one, const QColor &other);

/// Something that a widget has painted, and how it stands out from what was there before.
struct Ink
{
    enum Kind
    {
        words,
        symbol,  ///< A picture of one colour.
        picture, ///< One of several.
        area,    ///< At least half opaque; what is fainter tints the ground, and counts as ground.
        outline,
    };

    Kind kind = words;
    QWidget *painter = nullptr;
    QString text{};        ///< Of words.
    double size = 0.0;     ///< In px: of the letters, or the longer side.
    QRect place{};         ///< In the window.
    QColor color{};        ///< As it comes out on the ground where it is worst.
    QColor ground{};       ///< The ground there.
    double contrast = 0.0; ///< Of the two; of a picture, that of its lightest and its darkest colour.
};

struct Painting
{
    std::vector<Ink> inks;
    QImage picture;
};

/// Paints `window` and all that is visible in it, and notes what is painted in which order, with the very ground that
/// lies below each piece: no tint of any parent is forgotten. Emoji, which have colours of their own, are left out.
[[nodiscard]] Painting painting(QWidget &window);

} // namespace orvalen::test
