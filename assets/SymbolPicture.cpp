#include "assets/SymbolPicture.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace orvalen {

namespace {

QString fileOf(const QString &symbol)
{
    return QStringLiteral(":/icons/%1.svg").arg(symbol);
}

} // namespace

bool hasSymbolPicture(const QString &symbol)
{
    return QFile::exists(fileOf(symbol));
}

QImage symbolPicture(const QString &symbol, const QSize &size, const QColor &color)
{
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    if (!hasSymbolPicture(symbol))
        return picture;
    QSvgRenderer svg(fileOf(symbol));
    svg.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&picture);
    svg.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), color);
    return picture;
}

} // namespace orvalen
