#include "ui/kit/TabButton.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStringList>
#include <QStyle>

#include <algorithm>

#include "ui/kit/Accessibility.h"
#include "ui/kit/Shade.h"
#include "ui/kit/Symbols.h"
#include "ui/kit/Type.h"

namespace orvalen::kit {

namespace {

constexpr int radius = 8;

} // namespace

struct TabButton::Metrics
{
    int textSize;
    int symbolSize;
    int padding;
    int leastPadding;
    int gap;
    int height; ///< With one line.
};

const TabButton::Metrics &TabButton::metricsOf(Form form)
{
    static constexpr Metrics beside{
        .textSize = 12, .symbolSize = 14, .padding = 10, .leastPadding = 6, .gap = 6, .height = 28};
    static constexpr Metrics above{
        .textSize = 11, .symbolSize = 16, .padding = 4, .leastPadding = 2, .gap = 4, .height = 50};
    static constexpr Metrics aboveTwoLines{
        .textSize = 11, .symbolSize = 16, .padding = 4, .leastPadding = 0, .gap = 4, .height = 50};
    switch (form) {
    case Form::beside:
        return beside;
    case Form::above:
        return above;
    case Form::aboveTwoLines:
        break;
    }
    return aboveTwoLines;
}

TabButton::TabButton(QString title, QString symbol, QWidget *parent)
    : Control(parent), title(std::move(title)), symbolName(std::move(symbol))
{
    setCheckable(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TabButton::setForm(Form form)
{
    if (chosenForm == form)
        return;
    chosenForm = form;
    updateGeometry();
    update();
}

void TabButton::setSelected(bool selected)
{
    if (isChecked() == selected)
        return;
    setChecked(selected);
    announceSelected(*this);
}

QFont TabButton::titleFont(Form form, bool selected) const
{
    return Type{.size = metricsOf(form).textSize, .weight = selected ? QFont::DemiBold : QFont::Medium}.font(*this);
}

QStringList TabButton::linesIn(Form form) const
{
    const auto space = title.lastIndexOf(u' ');
    if (form != Form::aboveTwoLines || space < 0)
        return {title};
    return {title.left(space), title.mid(space + 1)};
}

// As wide as the heavier of its two weights, so that choosing a tab moves nothing.
QSize TabButton::sizeIn(Form form, int padding) const
{
    const auto &metrics = metricsOf(form);
    const auto font = titleFont(form, true);
    int width = 0;
    for (const auto &line : linesIn(form))
        width = std::max(width, textWidth(font, line));
    if (form == Form::beside)
        width += metrics.symbolSize + metrics.gap;
    const int furtherLines = form == Form::aboveTwoLines ? lineHeight(font) : 0;
    return {width + 2 * padding, metrics.height + furtherLines};
}

QSize TabButton::sizeHintIn(Form form) const
{
    return sizeIn(form, metricsOf(form).padding);
}

QSize TabButton::minimumSizeIn(Form form) const
{
    return sizeIn(form, metricsOf(form).leastPadding);
}

void TabButton::paintEvent(QPaintEvent *)
{
    const auto &metrics = metricsOf(chosenForm);
    const auto color = (isSelected() ? accent::blue.ink : neutral::text).in(*this);
    const auto font = titleFont(chosenForm, isSelected());
    const QFontMetrics letters(font);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fadeWhereDisabled(painter, *this);
    painter.setPen(Qt::NoPen);
    if (isSelected() || isHovered()) {
        painter.setBrush((isSelected() ? accent::blue.vivid.at(15) : neutral::text.at(5)).in(*this));
        painter.drawRoundedRect(rect(), radius, radius);
    }

    const auto mirrored = [this](const QRect &place) { return QStyle::visualRect(layoutDirection(), rect(), place); };
    const auto symbolAt = [&](int x, int y) {
        paintSymbol(painter, mirrored({x, y, metrics.symbolSize, metrics.symbolSize}), symbolName, color);
        painter.setFont(font);
        painter.setPen(color);
    };
    const auto line = [&](const QString &words, const QRect &place) {
        painter.drawText(mirrored(place), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, words);
    };

    if (chosenForm == Form::beside) {
        const int besideTitle = metrics.symbolSize + metrics.gap;
        const auto shown = letters.elidedText(title, Qt::ElideRight, width() - besideTitle);
        const int titleWidth = letters.horizontalAdvance(shown);
        const int left = (width() - besideTitle - titleWidth) / 2;
        symbolAt(left, (height() - metrics.symbolSize) / 2);
        line(shown, {left + besideTitle, 0, titleWidth + 1, height()});
        return;
    }
    const int textHeight = lineHeight(font);
    int y = (metrics.height - metrics.symbolSize - metrics.gap - textHeight) / 2;
    symbolAt((width() - metrics.symbolSize) / 2, y);
    y += metrics.symbolSize + metrics.gap;
    for (const auto &words : linesIn(chosenForm)) {
        const auto shown = letters.elidedText(words, Qt::ElideRight, width());
        const int shownWidth = letters.horizontalAdvance(shown);
        line(shown, {(width() - shownWidth) / 2, y, shownWidth + 1, textHeight});
        y += textHeight;
    }
}

} // namespace orvalen::kit
