#include "ui/kit/TabButton.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include "ui/kit/Shade.h"
#include "ui/kit/Symbols.h"
#include "ui/kit/Type.h"

namespace orvalen::kit {

namespace {

struct Layout
{
    int textSize;
    int symbolSize;
    int padding;
    int gap;
    int height;
};
constexpr Layout beside{.textSize = 12, .symbolSize = 14, .padding = 10, .gap = 6, .height = 28};
constexpr Layout above{.textSize = 11, .symbolSize = 16, .padding = 4, .gap = 4, .height = 50};
constexpr int radius = 8;

QFont fontFor(const QWidget &widget, const Layout &layout, bool selected)
{
    return Type{.size = layout.textSize, .weight = selected ? QFont::DemiBold : QFont::Medium}.font(widget);
}

} // namespace

TabButton::TabButton(QString title, QString symbol, QWidget *parent)
    : Control(parent), title(std::move(title)), symbolName(std::move(symbol))
{
    setCheckable(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void TabButton::setStacked(bool newStacked)
{
    if (stacked == newStacked)
        return;
    stacked = newStacked;
    updateGeometry();
    update();
}

void TabButton::setSelected(bool selected)
{
    if (isChecked() != selected)
        setChecked(selected);
}

// As wide as the heavier of its two weights, so that choosing a tab moves nothing.
QSize TabButton::sizeHintWhen(bool isStackedThen) const
{
    const auto &layout = isStackedThen ? above : beside;
    const int titleWidth = textWidth(fontFor(*this, layout, true), title);
    const int width = isStackedThen ? titleWidth : layout.symbolSize + layout.gap + titleWidth;
    return {width + 2 * layout.padding, layout.height};
}

QSize TabButton::minimumSizeHint() const
{
    return {above.symbolSize + 2 * above.padding, sizeHint().height()};
}

void TabButton::paintEvent(QPaintEvent *)
{
    const auto &layout = stacked ? above : beside;
    const auto color = (isSelected() ? accent::blue.ink : neutral::text).in(*this);
    const auto font = fontFor(*this, layout, isSelected());
    const QFontMetrics metrics(font);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (isSelected() || underMouse()) {
        painter.setBrush((isSelected() ? accent::blue.vivid.at(15) : neutral::text.at(5)).in(*this));
        painter.drawRoundedRect(rect(), radius, radius);
    }

    const int room = stacked ? width() : width() - 2 * layout.padding - layout.symbolSize - layout.gap;
    const auto shown = metrics.elidedText(title, Qt::ElideRight, room);
    const int titleWidth = metrics.horizontalAdvance(shown);
    QRect symbolPlace;
    QRect textPlace;
    if (stacked) {
        const int textHeight = lineHeight(font);
        const int top = (height() - layout.symbolSize - layout.gap - textHeight) / 2;
        symbolPlace = {(width() - layout.symbolSize) / 2, top, layout.symbolSize, layout.symbolSize};
        textPlace = {(width() - titleWidth) / 2, top + layout.symbolSize + layout.gap, titleWidth + 1, textHeight};
    } else {
        const int left = (width() - layout.symbolSize - layout.gap - titleWidth) / 2;
        symbolPlace = {left, (height() - layout.symbolSize) / 2, layout.symbolSize, layout.symbolSize};
        textPlace = {left + layout.symbolSize + layout.gap, 0, titleWidth + 1, height()};
    }
    const auto mirrored = [this](const QRect &place) { return QStyle::visualRect(layoutDirection(), rect(), place); };
    paintSymbol(painter, mirrored(symbolPlace), symbolName, color);
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(mirrored(textPlace), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, shown);
}

} // namespace orvalen::kit
