#include "ui/kit/Symbols.h"

#include <QIconEngine>
#include <QPaintDevice>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>

#include "assets/SymbolPicture.h"

namespace orvalen::kit {

namespace {

/// `size` in device pixels.
QPixmap tinted(const QString &symbol, const QSize &size, const QColor &color)
{
    const auto key =
        QStringLiteral("orvalen/%1/%2x%3/%4").arg(symbol).arg(size.width()).arg(size.height()).arg(color.rgba(), 0, 16);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;

    pixmap = QPixmap::fromImage(symbolPicture(symbol, size, color));
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

class SymbolEngine : public QIconEngine
{
public:
    SymbolEngine(QString name, const QColor &color) : name(std::move(name)), color(color) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const double scale = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rect, pixmap((QSizeF(rect.size()) * scale).toSize(), mode, state));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        auto shown = color;
        if (mode == QIcon::Disabled)
            shown.setAlphaF(0.45F * shown.alphaF());
        return tinted(name, size, shown);
    }

    QIconEngine *clone() const override { return new SymbolEngine(*this); }
    bool isNull() override { return !hasSymbolPicture(name); }

private:
    QString name;
    QColor color;
};

} // namespace

QIcon symbolIcon(const QString &name, const QColor &color)
{
    return QIcon(new SymbolEngine(name, color));
}

void paintSymbol(QPainter &painter, const QRectF &place, const QString &name, const QColor &color)
{
    SymbolEngine(name, color).paint(&painter, place.toRect(), QIcon::Normal, QIcon::Off);
}

} // namespace orvalen::kit
