#pragma once

#include <QTextLayout>

namespace orvalen::kit {

/// For a text layout: the signs that are pictures, such as a lightning, come in colour from the font that has them so,
/// not thin and grey from whichever font has them, too. The letters are left alone.
[[nodiscard]] QList<QTextLayout::FormatRange> pictureFormats(const QString &text, const QFont &font);

/// Puts the text on lines of our height, no wider than `width` but for what cannot be broken. How large it is then.
QSizeF layOut(QTextLayout &layout, double width);

/// One line of text with its signs in colour.
class TextLine
{
public:
    TextLine(const QString &text, const QFont &font);

    [[nodiscard]] double width() const { return line.naturalTextWidth(); }

    /// From the left of `place`, in the middle of its height, in the painter's colour.
    void draw(QPainter &painter, const QRectF &place) const;

private:
    QTextLayout layout;
    QTextLine line;
};

} // namespace orvalen::kit
