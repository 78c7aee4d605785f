#include "ui/kit/QRCodeView.h"

#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "ui/kit/Accessibility.h"

namespace orvalen::kit {

namespace {

constexpr int padding = 8;
constexpr int radius = 8;

} // namespace

// The modules' size is what all runs of equal pixels are multiples of.
QImage modulesOf(const QRCodeImage &code)
{
    const auto side = static_cast<std::size_t>(std::max(0, code.side));
    if (side == 0 || code.pixels.size() != side * side)
        return {};
    std::size_t unit = side;
    for (std::size_t row = 0; row < side; ++row) {
        for (std::size_t x = 1; x < side; ++x) {
            if (code.pixels[row * side + x] != code.pixels[row * side + x - 1])
                unit = std::gcd(unit, x);
        }
    }
    const int count = static_cast<int>(side / unit);
    QImage modules(count, count, QImage::Format_Grayscale8);
    for (int y = 0; y < count; ++y) {
        for (int x = 0; x < count; ++x)
            modules.scanLine(y)[x] =
                code.pixels[static_cast<std::size_t>(y) * unit * side + static_cast<std::size_t>(x) * unit];
    }
    return modules;
}

QRCodeView::QRCodeView(int codeSize, QWidget *parent) : QWidget(parent), codeSize(codeSize)
{
    installAccessibility();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(tr("QR code"));
}

void QRCodeView::setCode(const std::optional<QRCodeImage> &code)
{
    auto given = code ? modulesOf(*code) : QImage();
    if (given == modules)
        return;
    modules = std::move(given);
    update();
}

Shadow QRCodeView::shadow() const
{
    return {.offset = 1, .blur = 4, .radius = radius, .shade = {qRgba(0, 0, 0, 26), qRgba(0, 0, 0, 26)}};
}

QSize QRCodeView::sizeHint() const
{
    return {codeSize + 2 * padding, codeSize + 2 * padding};
}

void QRCodeView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(rect(), radius, radius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QColor::fromRgba(neutral::edge.light)); // its border on a white card
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
    if (modules.isNull())
        return;

    // In the pixels of the screen. The code has a white margin of its own, which may lie in our padding.
    const auto toDevice = painter.deviceTransform();
    const auto square = toDevice.mapRect(QRectF(rect()));
    const double scale = square.width() / width();
    const int count = modules.width();
    const int most = static_cast<int>(square.width()) / count;
    const int pixels = std::min(most, static_cast<int>(std::lround(codeSize * scale / count)));
    if (pixels < 1)
        return;
    const int side = pixels * count;
    const QRectF place(std::floor(square.center().x() - side / 2.0), std::floor(square.center().y() - side / 2.0), side,
                       side);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.drawImage(toDevice.inverted().mapRect(place), modules.scaled(side, side));
}

} // namespace orvalen::kit
