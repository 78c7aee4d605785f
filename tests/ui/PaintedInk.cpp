#include "tests/ui/PaintedInk.h"

#include <QApplication>
#include <QEvent>
#include <QFontMetricsF>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <map>

#include "ui/kit/Shade.h"

namespace orvalen::test {

namespace {

double luminance(const QColor &color)
{
    const auto part = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

using Share = std::map<QRgb, int>; // how many pixels of each colour

/// The colours of a picture without its soft edges.
Share solidColors(const QImage &image)
{
    constexpr int solid = 250;
    Share share;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (const auto pixel = image.pixel(x, y); qAlpha(pixel) >= solid)
                ++share[pixel | 0xFF000000];
        }
    }
    return share;
}

QRgb mostOf(const Share &share)
{
    const auto rarer = [](const auto &a, const auto &b) { return a.second < b.second; };
    return std::max_element(share.begin(), share.end(), rarer)->first;
}

bool isOneColor(const Share &share)
{
    const auto near = [&](QRgb pixel) {
        const auto first = share.begin()->first;
        const auto apart = [](int a, int b) { return std::abs(a - b) <= 8; };
        return apart(qRed(first), qRed(pixel)) && apart(qGreen(first), qGreen(pixel)) &&
               apart(qBlue(first), qBlue(pixel));
    };
    return std::all_of(share.begin(), share.end(), [&](const auto &entry) { return near(entry.first); });
}

/// Whether the letters have colours of their own.
bool isColored(const QTextItem &item)
{
    const QRectF box(0, 0, item.width() + 4, item.ascent() + item.descent() + 4);
    QImage image(box.size().toSize(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setPen(Qt::magenta);
    painter.setFont(item.font());
    painter.drawTextItem(QPointF(2, 2 + item.ascent()), item);
    painter.end();
    const auto share = solidColors(image);
    return !share.empty() && (share.size() > 1 || share.begin()->first != QColor(Qt::magenta).rgb());
}

/// Hands all on to a picture, and looks at the picture before.
class Engine : public QPaintEngine
{
public:
    explicit Engine(QImage &canvas) : QPaintEngine(AllFeatures), canvas(canvas) {}

    QWidget *current = nullptr; // who paints
    const QWidget *window = nullptr;
    std::vector<Ink> found;

    bool begin(QPaintDevice *) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState &) override {}
    Type type() const override { return User; }

    void drawRects(const QRectF *rects, int count) override
    {
        for (int i = 0; i < count; ++i) {
            QPainterPath path;
            path.addRect(rects[i]);
            drawPath(path);
        }
    }
    void drawRects(const QRect *rects, int count) override
    {
        for (int i = 0; i < count; ++i) {
            const QRectF rect(rects[i]);
            drawRects(&rect, 1);
        }
    }
    void drawLines(const QLineF *lines, int count) override
    {
        onCanvas([&](QPainter &painter) { painter.drawLines(lines, count); });
    }
    void drawLines(const QLine *lines, int count) override
    {
        onCanvas([&](QPainter &painter) { painter.drawLines(lines, count); });
    }
    void drawPolygon(const QPointF *points, int count, PolygonDrawMode mode) override
    {
        QPainterPath path;
        path.addPolygon(QPolygonF(QList<QPointF>(points, points + count)));
        if (mode != PolylineMode)
            path.closeSubpath();
        drawPath(path);
    }

    void drawPath(const QPainterPath &path) override
    {
        const auto opacity = static_cast<float>(painter()->opacity());
        const auto isSolid = [opacity](const QColor &color) { return color.alphaF() * opacity >= 0.5F; };
        const auto onDevice = painter()->deviceTransform().map(path);
        const auto box = onDevice.boundingRect();
        if (painter()->brush().style() != Qt::NoBrush && isSolid(painter()->brush().color()) && !box.isEmpty())
            noteArea(onDevice, painter()->brush().color());
        if (painter()->pen().style() != Qt::NoPen && isSolid(painter()->pen().color()) && !box.isEmpty())
            noteOutline(onDevice, painter()->pen().color());
        onCanvas([&](QPainter &to) { to.drawPath(path); });
    }

    void drawPixmap(const QRectF &place, const QPixmap &pixmap, const QRectF &part) override
    {
        notePicture(place, pixmap.toImage());
        onCanvas([&](QPainter &to) { to.drawPixmap(place, pixmap, part); });
    }
    void drawImage(const QRectF &place, const QImage &image, const QRectF &part, Qt::ImageConversionFlags) override
    {
        notePicture(place, image);
        onCanvas([&](QPainter &to) { to.drawImage(place, image, part); });
    }

    void drawTextItem(const QPointF &place, const QTextItem &item) override
    {
        const auto text = item.text();
        const bool hasLetters = std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetterOrNumber(); });
        const auto box = QFontMetricsF(item.font()).tightBoundingRect(text).translated(place);
        const auto under = grounds(painter()->deviceTransform().mapRect(box));
        if (!under.empty() && !text.trimmed().isEmpty() && (hasLetters || !isColored(item)))
            noteWorst({.kind = Ink::words, .text = text, .size = static_cast<double>(item.font().pixelSize())},
                      painter()->deviceTransform().mapRect(box), painter()->pen().color(), under);
        onCanvas([&](QPainter &to) { to.drawTextItem(place, item); });
    }

private:
    template <typename Draw>
    void onCanvas(const Draw &draw)
    {
        QPainter to(&canvas);
        const auto shown = seen();
        to.setClipRegion(shown);
        to.setTransform(painter()->deviceTransform());
        if (painter()->hasClipping())
            to.setClipPath(painter()->clipPath(), Qt::IntersectClip);
        to.setRenderHints(painter()->renderHints());
        to.setOpacity(painter()->opacity());
        to.setCompositionMode(painter()->compositionMode());
        to.setPen(painter()->pen());
        to.setBrush(painter()->brush());
        to.setFont(painter()->font());
        draw(to);
    }

    /// What of the widget is in view, in the window.
    [[nodiscard]] QRect seen() const
    {
        QRect rect(current->mapTo(window, QPoint()), current->size());
        for (const auto *around = current; around != window; around = around->parentWidget())
            rect &= QRect(around->parentWidget()->mapTo(window, QPoint()), around->parentWidget()->size());
        return rect;
    }

    [[nodiscard]] QRegion visible(const QRectF &place) const
    {
        QRegion region(place.toAlignedRect() & seen() & canvas.rect());
        if (painter()->hasClipping())
            region &= painter()->deviceTransform().map(painter()->clipRegion());
        return region;
    }

    /// The colours that lie there now, but for a few odd pixels.
    [[nodiscard]] std::vector<QColor> grounds(const QRectF &place) const
    {
        Share share;
        int all = 0;
        for (const auto &rect : visible(place)) {
            for (int y = rect.top(); y <= rect.bottom(); ++y) {
                for (int x = rect.left(); x <= rect.right(); ++x, ++all)
                    ++share[canvas.pixel(x, y)];
            }
        }
        std::vector<QColor> colors;
        for (const auto &[pixel, count] : share) {
            if (count * 50 >= all)
                colors.emplace_back(pixel);
        }
        return colors;
    }

    [[nodiscard]] QColor blended(QColor color, const QColor &ground) const
    {
        color.setAlphaF(color.alphaF() * static_cast<float>(painter()->opacity()));
        return kit::over(color, ground);
    }

    void note(Ink ink, const QRectF &place)
    {
        ink.painter = current;
        ink.place = place.toAlignedRect();
        found.push_back(std::move(ink));
    }

    void noteWorst(Ink ink, const QRectF &place, const QColor &color, const std::vector<QColor> &under)
    {
        ink.contrast = 100.0;
        for (const auto &ground : under) {
            const auto shown = blended(color, ground);
            if (const double apart = contrast(shown, ground); apart < ink.contrast) {
                ink.contrast = apart;
                ink.color = shown;
                ink.ground = ground;
            }
        }
        note(std::move(ink), place);
    }

    // It is seen where it differs from what it lies on or from what lies around it: a switch's knob from the switch,
    // the filled part of a groove from the card.
    void noteArea(const QPainterPath &path, const QColor &color)
    {
        const auto box = path.boundingRect();
        Share around;
        const auto frame = box.toAlignedRect().adjusted(-1, -1, 1, 1);
        for (const auto &rect : visible(frame).subtracted(frame.adjusted(1, 1, -1, -1))) {
            for (int y = rect.top(); y <= rect.bottom(); ++y) {
                for (int x = rect.left(); x <= rect.right(); ++x)
                    ++around[canvas.pixel(x, y)];
            }
        }
        const auto centre = box.center().toPoint();
        if (!visible(box).contains(centre))
            return;
        Ink best{.kind = Ink::area, .size = std::max(box.width(), box.height()), .contrast = 0.0};
        std::vector<QColor> grounds{QColor(canvas.pixel(centre))};
        if (!around.empty())
            grounds.emplace_back(mostOf(around));
        for (const auto &ground : grounds) {
            const auto shown = blended(color, ground);
            if (const double apart = contrast(shown, ground); apart > best.contrast) {
                best.contrast = apart;
                best.color = shown;
                best.ground = ground;
            }
        }
        note(std::move(best), box);
    }

    void noteOutline(const QPainterPath &path, const QColor &color)
    {
        constexpr int looks = 200;
        std::vector<QColor> under;
        for (int i = 0; i < looks; ++i) {
            const auto point = path.pointAtPercent(static_cast<double>(i) / looks).toPoint();
            if (canvas.rect().contains(point) && seen().contains(point))
                under.emplace_back(canvas.pixel(point));
        }
        const auto box = path.boundingRect();
        if (!under.empty())
            noteWorst({.kind = Ink::outline, .size = std::max(box.width(), box.height())}, box, color, under);
    }

    void notePicture(const QRectF &place, const QImage &image)
    {
        const auto box = painter()->deviceTransform().mapRect(place);
        const auto share = solidColors(image);
        const auto under = grounds(box);
        const double size = std::max(place.width(), place.height());
        if (share.empty() || under.empty())
            return;
        if (isOneColor(share)) {
            noteWorst({.kind = Ink::symbol, .size = size}, box, QColor(mostOf(share)), under);
            return;
        }
        const auto lighter = [](const auto &a, const auto &b) {
            return luminance(QColor(a.first)) < luminance(QColor(b.first));
        };
        const auto [darkest, lightest] = std::minmax_element(share.begin(), share.end(), lighter);
        Ink ink{.kind = Ink::picture, .size = size, .color = darkest->first, .ground = lightest->first};
        ink.contrast = contrast(ink.color, ink.ground);
        note(std::move(ink), box);
    }

    QImage &canvas;
};

class Device : public QPaintDevice
{
public:
    explicit Device(const QWidget &window)
        : canvas(window.size(), QImage::Format_RGB32), dpi(window.logicalDpiX()), engine(canvas)
    {
        canvas.fill(window.palette().color(QPalette::Window));
        engine.window = &window;
    }

    QPaintEngine *paintEngine() const override { return &engine; }

    QImage canvas;

protected:
    int metric(PaintDeviceMetric which) const override
    {
        switch (which) {
        case PdmWidth:
            return canvas.width();
        case PdmHeight:
            return canvas.height();
        case PdmDepth:
            return 32;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return dpi;
        default:
            return QPaintDevice::metric(which);
        }
    }

private:
    int dpi;

public:
    mutable Engine engine;
};

/// Notes whose turn it is.
class Turns : public QObject
{
public:
    explicit Turns(Engine &engine) : engine(engine) { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            engine.current = qobject_cast<QWidget *>(watched);
        return false;
    }

private:
    Engine &engine;
};

} // namespace

double contrast(const QColor &one, const QColor &other)
{
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

Painting painting(QWidget &window)
{
    Device device(window);
    device.engine.current = &window;
    const Turns turns(device.engine);
    window.render(&device, {}, {}, QWidget::DrawChildren);
    return {std::move(device.engine.found), device.canvas};
}

} // namespace orvalen::test
