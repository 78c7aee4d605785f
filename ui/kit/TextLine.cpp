#include "ui/kit/TextLine.h"

#include <QFontInfo>

#include <algorithm>

#include "core/Text.h"
#include "ui/kit/Type.h"

namespace orvalen::kit {

namespace {

constexpr QChar firstPicture(0x231A); // of Unicode's signs, but for those that ask for it
constexpr QChar asPicture(0xFE0F);    // how a sign asks for that, standing after it

/// How long the sign that the text begins with is; 0 where it begins with none.
int signLength(QStringView words)
{
    const bool isPair = words.size() > 1 && words[0].isHighSurrogate();
    const int length = isPair ? 2 : 1;
    if (words.size() > length && words[length] == asPicture)
        return length + 1;
    if (words.front() < firstPicture)
        return 0;
    const char32_t c = isPair ? QChar::surrogateToUcs4(words[0], words[1]) : words[0].unicode();
    return text::isPicture(c) ? length : 0;
}

} // namespace

QList<QTextLayout::FormatRange> pictureFormats(const QString &text, const QFont &font)
{
    QList<QTextLayout::FormatRange> formats;
    for (int at = 0, length = 0; at < text.size(); at += std::max(length, 1)) {
        length = signLength(QStringView(text).sliced(at));
        if (length == 0)
            continue;
        QTextCharFormat format;
        auto colored = font;
        colored.setFamilies({QStringLiteral("Noto Color Emoji")});
        colored.setPixelSize(QFontInfo(font).pixelSize() * 6 / 5); // as high as the letters beside it
        format.setFont(colored);
        formats.push_back({at, length, format});
    }
    return formats;
}

QSizeF layOut(QTextLayout &layout, double width)
{
    const int height = lineHeight(layout.font());
    double y = 0.0;
    double widest = 0.0;
    layout.beginLayout();
    for (auto line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition({0.0, y + (height - line.height()) / 2});
        y += height;
        widest = std::max(widest, line.naturalTextWidth());
    }
    layout.endLayout();
    return {widest, y};
}

TextLine::TextLine(const QString &text, const QFont &font) : layout(text, font)
{
    layout.setFormats(pictureFormats(text, font));
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    line = layout.createLine();
    layout.endLayout();
}

void TextLine::draw(QPainter &painter, const QRectF &place) const
{
    layout.draw(&painter, {place.left(), place.top() + (place.height() - line.height()) / 2});
}

} // namespace orvalen::kit
