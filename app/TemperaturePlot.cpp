#include "app/TemperaturePlot.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPolygonF>

#include <array>
#include <cmath>

#include "ui/kit/Shade.h"
#include "ui/kit/Type.h"

namespace orvalen {

using kit::Shade;
using Moment = SimulatedHistory::Moment;

namespace {

constexpr kit::Type axisType{.size = 10};
constexpr kit::Type nameType{.size = 11};
constexpr kit::Type valueType{.size = 11, .weight = QFont::DemiBold};
constexpr Shade warmupShade = kit::accent::orange.vivid.at(18);

constexpr int legendColumns = 3;
constexpr int legendRow = 20; // px
constexpr int legendGap = 10;
constexpr int swatchWidth = 20;
constexpr int axisGap = 6; // between a label and what it labels

constexpr int legendHeight = 2 * legendRow + legendGap;

QString degrees(double celsius)
{
    return QString::asprintf("%.1f °C", celsius);
}

} // namespace

struct TemperaturePlot::Curve
{
    const char *name;
    double Moment::*value;
    Shade color;
    double width;
    Qt::PenStyle style;

    [[nodiscard]] QPen pen(const QWidget &widget) const
    {
        QPen pen(color.in(widget), width, style, Qt::RoundCap, Qt::RoundJoin);
        if (style == Qt::DotLine)
            pen.setDashPattern({0.1, 2.6});
        return pen;
    }
};

// In the order of the legend; drawn from the last to the first, so that the bridge lies on top.
const std::vector<TemperaturePlot::Curve> &TemperaturePlot::curves()
{
    static const std::vector<Curve> all{
        {QT_TR_NOOP("Bridge"), &Moment::bridge, kit::accent::blue.vivid, 3.0, Qt::SolidLine},
        {QT_TR_NOOP("SoC"), &Moment::soc, kit::accent::purple.vivid, 1.5, Qt::SolidLine},
        {QT_TR_NOOP("PMU"), &Moment::pmu, kit::accent::green.vivid, 1.5, Qt::DashLine},
        {QT_TR_NOOP("Room"), &Moment::room, kit::neutral::secondary, 1.8, Qt::DotLine},
    };
    return all;
}

/// One painting of the plot.
class TemperaturePlot::Canvas
{
public:
    explicit Canvas(const TemperaturePlot &plot)
        : plot(plot),
          painter(const_cast<TemperaturePlot *>(&plot)),
          moments(plot.history.moments()),
          scale(scaleFor(plot.history, plot.target))
    {
        painter.setRenderHint(QPainter::Antialiasing);
        const QFontMetricsF metrics(axisType.font(plot));
        const double left = metrics.horizontalAdvance("100") + axisGap;
        const double right = metrics.horizontalAdvance(tr("now")) / 2.0;
        area = QRectF(plot.rect())
                   .adjusted(left, legendHeight + metrics.height() + axisGap, -right, -metrics.height() - axisGap);
    }

    void paint()
    {
        paintLegend();
        paintWarmups();
        paintGrid();
        paintCurves();
        paintTarget();
    }

private:
    static QString tr(const char *text) { return TemperaturePlot::tr(text); }
    [[nodiscard]] QColor color(const Shade &shade) const { return shade.in(plot); }

    [[nodiscard]] double x(std::chrono::nanoseconds time) const
    {
        const std::chrono::duration<double> ago = moments.back().time - time;
        const std::chrono::duration<double> all = SimulatedHistory::length;
        return area.right() - ago / all * area.width();
    }

    [[nodiscard]] double y(double celsius) const
    {
        return area.bottom() - (celsius - scale.from) / (scale.to - scale.from) * area.height();
    }

    void paintLegend()
    {
        int cell = 0;
        for (const auto &curve : curves())
            paintLegendEntry(cell++, curve.pen(plot), tr(curve.name),
                             moments.empty() ? QString() : degrees(moments.back().*curve.value));
        paintLegendEntry(cell++, targetPen(), tr("Target"), degrees(plot.target));
        painter.fillRect(swatch(legendCell(cell)).adjusted(0, -6, 0, 6), color(warmupShade));
        paintLegendEntry(cell, Qt::NoPen, tr("Warming up"), {});
    }

    void paintLegendEntry(int cell, const QPen &pen, const QString &name, const QString &value)
    {
        const auto place = legendCell(cell);
        painter.setPen(pen);
        painter.drawLine(swatch(place).topLeft(), swatch(place).topRight());
        const auto words = place.adjusted(swatchWidth + axisGap, 0, 0, 0);
        const double advance = text(words, name, nameType, kit::neutral::secondary);
        text(words.adjusted(advance + axisGap, 0, 0, 0), value, valueType, kit::neutral::text);
    }

    [[nodiscard]] QRectF legendCell(int cell) const
    {
        const double width = plot.width() / double(legendColumns);
        return {(cell % legendColumns) * width, double(cell / legendColumns) * legendRow, width, legendRow};
    }

    [[nodiscard]] static QRectF swatch(const QRectF &place)
    {
        return {place.left() + 2, place.center().y(), swatchWidth - 4, 0};
    }

    [[nodiscard]] QPen targetPen() const
    {
        QPen pen(color(kit::accent::orange.ink), 1.2);
        pen.setDashPattern({4, 3});
        return pen;
    }

    double text(const QRectF &place, const QString &words, const kit::Type &type, const Shade &shade,
                Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter)
    {
        painter.setFont(type.font(plot));
        painter.setPen(color(shade));
        painter.drawText(place, static_cast<int>(alignment) | Qt::TextSingleLine | Qt::TextDontClip, words);
        return QFontMetricsF(painter.font()).horizontalAdvance(words);
    }

    void paintWarmups()
    {
        for (const auto &[from, to] : plot.history.warmups()) {
            const double left = std::max(x(from), area.left());
            const double right = std::max(x(to), left + 1.0);
            painter.fillRect(QRectF(left, area.top(), right - left, area.height()), color(warmupShade));
        }
    }

    void paintGrid()
    {
        const QFontMetricsF metrics(axisType.font(plot));
        const double height = metrics.height();
        text(QRectF(0, area.top() - height - axisGap, area.left() - axisGap, height), "°C", axisType,
             kit::neutral::secondary, Qt::AlignRight | Qt::AlignVCenter);
        for (int i = 0; i < scale.lines(); ++i) {
            const double celsius = scale.from + i * scale.step;
            const double line = std::round(y(celsius)) + 0.5;
            painter.setPen(QPen(color(kit::neutral::edge), 1));
            painter.drawLine(QPointF(area.left(), line), QPointF(area.right(), line));
            text(QRectF(0, line - height / 2, area.left() - axisGap, height), QString::number(std::lround(celsius)),
                 axisType, kit::neutral::secondary, Qt::AlignRight | Qt::AlignVCenter);
        }
        const int minutes = static_cast<int>(SimulatedHistory::length.count());
        for (int ago = 0; ago <= minutes; ++ago) {
            const auto words = ago == 0 ? tr("now") : ago == minutes ? tr("%1 min ago").arg(ago) : QString::number(ago);
            const double at = area.right() - double(ago) / minutes * area.width();
            const QRectF place(at - 40, area.bottom() + axisGap, 80, height);
            if (ago == minutes)
                text(place.translated(40, 0), words, axisType, kit::neutral::secondary);
            else
                text(place, words, axisType, kit::neutral::secondary, Qt::AlignCenter);
        }
    }

    void paintCurves()
    {
        if (moments.empty())
            return;
        painter.save();
        painter.setClipRect(area.adjusted(0, -2, 2, 2));
        painter.setBrush(Qt::NoBrush);
        for (auto curve = curves().rbegin(); curve != curves().rend(); ++curve) {
            painter.setPen(curve->pen(plot));
            painter.drawPolyline(points(curve->value));
        }
        painter.restore();
        const auto &bridge = curves().front();
        painter.setPen(QPen(color(kit::neutral::card), 2));
        painter.setBrush(color(bridge.color));
        painter.drawEllipse(QPointF(area.right(), y(moments.back().*bridge.value)), 4.5, 4.5);
    }

    [[nodiscard]] QPolygonF points(double Moment::*value) const
    {
        constexpr double apart = 1.0; // px: what is closer is not seen
        QPolygonF line;
        for (const auto &moment : moments) {
            const QPointF point(x(moment.time), y(moment.*value));
            if (line.isEmpty() || point.x() - line.last().x() >= apart || &moment == &moments.back())
                line += point;
        }
        return line;
    }

    void paintTarget()
    {
        const double line = std::round(y(plot.target)) + 0.5;
        painter.setPen(targetPen());
        painter.drawLine(QPointF(area.left(), line), QPointF(area.right(), line));
    }

    const TemperaturePlot &plot;
    QPainter painter;
    const std::deque<Moment> &moments;
    const TemperatureScale scale;
    QRectF area; // of the curves
};

TemperaturePlot::TemperaturePlot(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName(tr("Temperatures of the last five minutes"));
}

void TemperaturePlot::add(const Moment &moment)
{
    history.add(moment);
    describe();
    update();
}

void TemperaturePlot::setTarget(double celsius)
{
    if (target == celsius)
        return;
    target = celsius;
    describe();
    update();
}

QSize TemperaturePlot::sizeHint() const
{
    return {380, 250};
}

QSize TemperaturePlot::minimumSizeHint() const
{
    return {300, 190};
}

// What the picture says, for those who do not see it; in whole degrees, so that it changes now and then only.
void TemperaturePlot::describe()
{
    QStringList parts;
    if (!history.moments().empty()) {
        for (const auto &curve : curves())
            parts += QString::asprintf("%s %.0f °C", qPrintable(tr(curve.name)), history.moments().back().*curve.value);
    }
    parts += tr("Target %1").arg(degrees(target));
    const auto description = parts.join(", ");
    if (description != accessibleDescription())
        setAccessibleDescription(description);
}

void TemperaturePlot::paintEvent(QPaintEvent *)
{
    Canvas(*this).paint();
}

} // namespace orvalen
