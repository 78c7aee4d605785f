#include "ui/TemperatureReadout.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

#include "ui/kit/Formats.h"
#include "ui/kit/Type.h"

namespace orvalen {

namespace {

constexpr int numberSize = 42;
constexpr kit::Type unitType{.size = 20, .weight = QFont::Medium};
constexpr int gap = 4;
const auto unit = QStringLiteral("°C");

int widestUsualNumber(const QFont &font)
{
    int widest = 0;
    for (const QChar digit : QStringLiteral("0123456789"))
        widest = std::max(widest, kit::textWidth(font, QString("xx.x").replace('x', digit)));
    return widest;
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
