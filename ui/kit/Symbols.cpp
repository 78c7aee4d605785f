#include "ui/kit/Symbols.h"

#include <QFile>
#include <QIconEngine>
#include <QPaintDevice>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace orvalen::kit {

namespace {

QString pictureOf(const QString &symbol)
{
    return QStringLiteral(":/icons/%1.svg").arg(symbol);
}

/// `size` in device pixels.
QPixmap tinted(const QString &symbol, const QSize &size, const QColor &color)
{
    const auto key =
        QStringLiteral("orvalen/%1/%2x%3/%4").arg(symbol).arg(size.width()).arg(size.height()).arg(color.rgba(), 0, 16);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;

    pixmap = QPixmap(size);
    pixmap.fill(Qt::transparent);
    QSvgRenderer picture(pictureOf(symbol));
    picture.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&pixmap);
    picture.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), color);
    painter.end();
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
    bool isNull() override { return !QFile::exists(pictureOf(name)); }

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
