#include "ui/kit/StretchedPicture.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvalen::kit {

namespace {

constexpr int between = 1; // the corners of the picture

QPixmap picture(const StretchedPicture &of, int scale)
{
    const auto key = QStringLiteral("orvalen/%1/%2/%3").arg(of.key).arg(of.corner).arg(scale);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    const QSize size(2 * of.corner + between, 2 * of.corner + between);
    pixmap = QPixmap(size * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    of.paint(painter, QRect({}, size));
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace

void StretchedPicture::draw(QPainter &painter, const QRect &place) const
{
    const double scale = painter.device()->devicePixelRatioF();
    const bool isOfPixels = painter.paintEngine()->type() == QPaintEngine::Raster && scale == std::floor(scale) &&
                            painter.transform().type() <= QTransform::TxTranslate;
    const bool isLargeEnough = std::min(place.width(), place.height()) >= 2 * corner + between;
    if (!isOfPixels || !isLargeEnough) {
        paint(painter, place);
        return;
    }
    const int whole = static_cast<int>(scale);
    const auto pixmap = picture(*this, whole);
    const auto part = [](int side, int rest, int index) {
        const int from = index == 0 ? 0 : index == 1 ? side : side + rest;
        return std::pair(from, index == 1 ? rest : side);
    };
    if (middle.isValid())
        painter.fillRect(place.adjusted(corner, corner, -corner, -corner), middle);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            if (row == 1 && column == 1)
                continue;
            const auto [x, width] = part(corner, place.width() - 2 * corner, column);
            const auto [y, height] = part(corner, place.height() - 2 * corner, row);
            const auto [fromX, fromWidth] = part(corner * whole, between * whole, column);
            const auto [fromY, fromHeight] = part(corner * whole, between * whole, row);
            painter.drawPixmap(QRect(place.left() + x, place.top() + y, width, height), pixmap,
                               QRect(fromX, fromY, fromWidth, fromHeight));
        }
    }
}

void paintRounded(QPainter &painter, const QRect &place, int radius, const QColor &fill)
{
    StretchedPicture{
        .key = QStringLiteral("rounded/%1/%2").arg(radius).arg(fill.rgba(), 0, 16),
        .corner = radius + 1,
        .paint =
            [&](QPainter &target, const QRect &whole) {
                target.setPen(Qt::NoPen);
                target.setBrush(fill);
                target.drawRoundedRect(whole, radius, radius);
            },
        .middle = fill,
    }
        .draw(painter, place);
}

} // namespace orvalen::kit
