#include "ui/TemperatureReadout.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

#include "ui/kit/Formats.h"
#include "ui/kit/Type.h"

namespace orvalen {

namespace {

constexpr int numberSize = 42;
constexpr kit::Type unitType{.size = 20, .weight = QFont::Medium};
constexpr int gap = 4;
const auto unit = QStringLiteral("°C");

/// Three of the widest digit and the point, each by itself: nothing is shaped for it.
int widestUsualNumber(const QFont &font)
{
    const QFontMetricsF metrics(font);
    double widestDigit = 0.0;
    for (const QChar digit : QStringLiteral("0123456789"))
        widestDigit = std::max(widestDigit, metrics.horizontalAdvance(digit));
    return static_cast<int>(std::ceil(3 * widestDigit + metrics.horizontalAdvance(QChar('.'))));
}

} // namespace

TemperatureReadout::TemperatureReadout(QWidget *parent) : QLabel(parent), fading(*this)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void TemperatureReadout::setCelsius(double celsius)
{
    const auto number = kit::oneDecimal(celsius);
    if (text() == number)
        return;
    setText(number);
    setAccessibleName(number + unit);
}

void TemperatureReadout::setShade(const kit::Shade &shade)
{
    if (wantedShade == shade)
        return;
    wantedShade = shade;
    fading.set(shade);
}

QSize TemperatureReadout::sizeHint() const
{
    const auto font = kit::numberFont(*this, numberSize);
    const QFontMetrics number(font);
    const int box = std::max(widestUsualNumber(font), kit::textWidth(font, text()));
    return {box + gap + kit::textWidth(unitType.font(*this), unit), number.ascent() + number.descent()};
}

void TemperatureReadout::paintEvent(QPaintEvent *)
{
    const auto numberFont = kit::numberFont(*this, numberSize);
    const auto unitFont = unitType.font(*this);
    const QFontMetrics number(numberFont);
    const int baseline = number.ascent();
    const int unitLeft = width() - kit::textWidth(unitFont, unit);

    QPainter painter(this);
    painter.setLayoutDirection(Qt::LeftToRight); // number before unit, everywhere
    painter.setFont(numberFont);
    painter.setPen(fading.shown().in(*this));
    painter.drawText(unitLeft - gap - kit::textWidth(numberFont, text()), baseline, text());
    painter.setFont(unitFont);
    painter.setPen(kit::neutral::secondary.in(*this));
    painter.drawText(unitLeft, baseline, unit);
}

void TemperatureReadout::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        update();
}

} // namespace orvalen
