#include "platform/qt/StatusIcon.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QIconEngine>
#include <QList>
#include <QMap>
#include <QPainter>
#include <QPixmap>
#include <QRect>
#include <QSize>

#include <algorithm>
#include <cmath>
#include <utility>

#include "assets/SymbolPicture.h"

namespace orvalen {

namespace {

constexpr QRgb light = 0xffffffff;
constexpr QRgb dark = 0xff1c1c1e;
constexpr double edgeOpacity = 0.4;
constexpr double numberHeight = 0.47; // of the icon's
constexpr double symbolHeight = 0.56; // the number stands before its lower end

QImage transparent(int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

/// The shape, one pixel larger on every side.
QImage widened(const QImage &shape)
{
    QImage wide = transparent(shape.width());
    QPainter painter(&wide);
    for (const int x : {-1, 0, 1})
        for (const int y : {-1, 0, 1})
            painter.drawImage(x, y, shape);
    return wide;
}

QImage tinted(QImage shape, const QColor &color)
{
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), color);
    return shape;
}

QFont boldFont(int pixels)
{
    QFont font;
    font.setWeight(QFont::Bold);
    font.setKerning(false);
    font.setPixelSize(pixels);
    return font;
}

/// As large as height and width allow.
QFont numberFont(const QString &number, double height, double width)
{
    constexpr int sample = 100; // fonts are scaled all but evenly
    const auto ink = QFontMetricsF(boldFont(sample)).tightBoundingRect(number);
    const double scale = std::min((height + 0.25) / ink.height(), width / ink.width());
    int pixels = std::max(1, static_cast<int>(std::ceil(sample * scale)));
    const auto isTooLarge = [&] {
        const auto real = QFontMetricsF(boldFont(pixels)).tightBoundingRect(number);
        return real.height() > height + 0.25 || real.width() > width;
    };
    while (pixels > 1 && isTooLarge())
        --pixels;
    return boldFont(pixels);
}

QImage numberShape(const QString &number, int size)
{
    QImage shape = transparent(size);
    const double room = size - 2.0; // within the edge
    const QFont font = numberFont(number, std::round(numberHeight * size), room);
    const QFontMetricsF metrics(font);
    const QRectF ink = metrics.tightBoundingRect(number);
    const double overshoot = metrics.tightBoundingRect(QStringLiteral("0")).bottom();
    QPainter painter(&shape);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QPointF(std::round((size - ink.width()) / 2 - ink.left()), size - 1 - std::round(overshoot)),
                     number);
    return shape;
}

/// The first row with anything in it.
int firstRow(const QImage &shape)
{
    for (int y = 0; y < shape.height(); ++y)
        for (int x = 0; x < shape.width(); ++x)
            if (qAlpha(shape.pixel(x, y)) != 0)
                return y;
    return shape.height();
}

QImage symbolShape(const QString &symbol, const QRect &place, int size)
{
    QImage shape = transparent(size);
    QPainter painter(&shape);
    painter.drawImage(place.topLeft(), symbolPicture(symbol, place.size(), Qt::black));
    return shape;
}

} // namespace

QImage paintStatusIcon(const StatusLook &look, int size)
{
    QImage shape;
    if (look.number.isEmpty()) {
        shape = symbolShape(look.symbol, QRect(1, 1, size - 2, size - 2), size);
    } else {
        const auto number = numberShape(look.number, size);
        const int top = firstRow(number) - 1;
        shape =
            symbolShape(look.symbol, QRect(1, 1, size - 2, static_cast<int>(std::round(symbolHeight * size))), size);
        QPainter painter(&shape);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(0, top, number, 0, top);
    }

    QColor edge = look.onDark ? dark : light;
    edge.setAlphaF(edgeOpacity);
    QImage icon = tinted(widened(shape), edge);
    QPainter painter(&icon);
    painter.drawImage(0, 0, tinted(shape, look.onDark ? light : dark));
    return icon;
}

namespace {

class StatusIconEngine : public QIconEngine
{
public:
    explicit StatusIconEngine(StatusLook look) : look(std::move(look)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const double scale = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, pixmap((QSizeF(rect.size()) * scale).toSize(), mode, state));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        const int side = std::min(size.width(), size.height());
        auto &painted = pixmaps[side];
        if (painted.isNull())
            painted = QPixmap::fromImage(paintStatusIcon(look, side));
        return painted;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const int size : statusIconSizes)
            sizes.append(QSize(size, size));
        return sizes;
    }

    QIconEngine *clone() const override { return new StatusIconEngine(*this); }
    bool isNull() override { return false; }

private:
    StatusLook look;
    QMap<int, QPixmap> pixmaps;
};

} // namespace

QIcon statusIcon(const StatusLook &look)
{
    return QIcon(new StatusIconEngine(look));
}

} // namespace orvalen
