#include "ui/kit/CallToAction.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <algorithm>
#include <cmath>

#include "ui/kit/Accessibility.h"
#include "ui/kit/StretchedPicture.h"
#include "ui/kit/Symbols.h"
#include "ui/kit/TextLine.h"

namespace orvalen::kit {

namespace {

constexpr int buttonHeight = 38;
constexpr int padding = 12;
constexpr int symbolSize = 14;
constexpr int dotSize = 6;
constexpr int gap = 6;

} // namespace

CallToAction::CallToAction(QWidget *parent) : Control(parent)
{
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    const auto shadowChanges = [this] { updateShadow(*this); };
    connect(this, &QAbstractButton::pressed, this, shadowChanges);
    connect(this, &QAbstractButton::released, this, shadowChanges);
}

void CallToAction::setLabel(const QString &label)
{
    if (text == label)
        return;
    text = label;
    updateGeometry();
    update();
    announceLater();
}

void CallToAction::setSymbol(const QString &symbol)
{
    if (symbolName == symbol)
        return;
    symbolName = symbol;
    updateGeometry();
    update();
}

void CallToAction::setDot(const Shade &shade)
{
    if (dotShade == shade)
        return;
    if (!dotShade)
        updateGeometry();
    dotShade = shade;
    update();
}

int CallToAction::markSize() const
{
    if (dotShade)
        return dotSize;
    return symbolName.isEmpty() ? 0 : symbolSize;
}

void CallToAction::setAccent(const Accent &accent)
{
    if (color == accent)
        return;
    color = accent;
    update();
    updateShadow(*this);
}

void CallToAction::setProgress(std::optional<double> newProgress)
{
    if (progress == newProgress)
        return;
    progress = newProgress;
    update();
}

void CallToAction::setTextSize(int size)
{
    if (textSize == size)
        return;
    textSize = size;
    updateGeometry();
    update();
}

void CallToAction::setTextWeight(int weight)
{
    if (textWeight == weight)
        return;
    textWeight = weight;
    updateGeometry();
    update();
}

// A label that counts would never let a screen reader come to rest: while something is under way it is announced at
// the start and at each quarter.
QString CallToAction::announcement() const
{
    return progress ? QString::number(std::floor(4 * *progress)) : text;
}

void CallToAction::announceLater()
{
    if (std::exchange(announcing, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            announcing = false;
            if (std::exchange(lastAnnounced, announcement()) == announcement())
                return;
            announceName(*this);
            Q_EMIT announced(text);
        },
        Qt::QueuedConnection);
}

Shadow CallToAction::shadow() const
{
    if (!isEnabled())
        return {};
    const int part = isDown() ? 2 : 1;
    return {.offset = 4 / part, .blur = 14 / part, .radius = radius, .shade = color.solid.at(30)};
}

int CallToAction::besideLabel() const
{
    return 2 * padding + (markSize() ? markSize() + gap : 0);
}

int CallToAction::widthWith(const QFont &font) const
{
    return static_cast<int>(std::ceil(TextLine(text, font).width())) + besideLabel();
}

// Enlarged as other text is, as far as there is room.
QFont CallToAction::labelFont() const
{
    auto font = type().font(*this);
    for (int size = font.pixelSize(); size > textSize && widthWith(font) > width(); --size)
        font.setPixelSize(size - 1);
    return font;
}

QSize CallToAction::sizeHint() const
{
    return {widthWith(type().font(*this)), buttonHeight};
}

QSize CallToAction::minimumSizeHint() const
{
    auto font = type().font(*this);
    font.setPixelSize(textSize);
    return {widthWith(font), buttonHeight};
}

void CallToAction::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fadeWhereDisabled(painter, *this);

    auto fill = color.solid.in(*this);
    if (isDown())
        fill = over(QColor(0, 0, 0, 20), fill);
    else if (isHovered())
        fill = over(QColor(255, 255, 255, 15), fill);
    // What is still to come is darker, rather than what is done lighter: white text stays legible on both.
    paintRounded(painter, rect(), radius, progress ? over(QColor(0, 0, 0, 41), fill) : fill);
    if (progress) {
        auto swept = QRectF(rect());
        swept.setWidth(swept.width() * std::clamp(*progress, 0.0, 1.0));
        if (isRightToLeft())
            swept.moveRight(rect().right() + 1);
        painter.save();
        painter.setClipRect(swept);
        paintRounded(painter, rect(), radius, fill);
        painter.restore();
    }

    const auto font = labelFont();
    const int markRoom = besideLabel() - 2 * padding;
    const TextLine line(QFontMetrics(font).elidedText(text, Qt::ElideRight, width() - besideLabel()), font);
    QRect content(0, 0, markRoom + static_cast<int>(std::ceil(line.width())), height());
    content.moveLeft((width() - content.width()) / 2);

    const auto mark = QStyle::visualRect(layoutDirection(), rect(),
                                         {content.left(), (height() - markSize()) / 2, markSize(), markSize()});
    if (dotShade) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(dotShade->in(*this));
        painter.drawEllipse(mark);
    } else if (markRoom) {
        paintSymbol(painter, mark, symbolName, neutral::onSolid.in(*this));
    }
    painter.setPen(neutral::onSolid.in(*this));
    line.draw(painter, QStyle::visualRect(layoutDirection(), rect(), content.adjusted(markRoom, 0, 0, 0)));
}

} // namespace orvalen::kit
