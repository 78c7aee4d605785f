#include "ui/QuenmarkLogo.h"

#include <QImageReader>
#include <QPainter>

#include "ui/kit/Accessibility.h"
#include "ui/kit/Builders.h"

namespace orvalen {

namespace {

class Picture : public QWidget
{
public:
    Picture(QImage image, int side) : image(std::move(image))
    {
        setFixedSize(side, side);
        kit::hideFromReaders(*this);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        const double scale = devicePixelRatioF();
        const auto pixels = image.size().scaled(size() * scale, Qt::KeepAspectRatio);
        if (scaled.size() != pixels)
            scaled = image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QRectF place(QPointF(), QSizeF(pixels) / scale);
        place.moveCenter(QRectF(rect()).center());
        painter.drawImage(place, scaled);
    }

private:
    QImage image;
    QImage scaled; // to the pixels that it takes up
};

} // namespace

std::optional<QImage> firstPicture(const QStringList &files)
{
    for (const auto &file : files) {
        QImageReader reader(file, "png");
        reader.setAutoDetectImageFormat(false); // else Qt loads a library for every other format to ask it
        if (QImage image = reader.read(); !image.isNull())
            return image;
    }
    return std::nullopt;
}

std::optional<QImage> loadQuenmarkLogo()
{
    return firstPicture(quenmarkLogoFiles());
}

QStringList quenmarkLogoFiles()
{
    return {":/quenmark-logo.png", "assets/quenmark-logo.png"};
}

QWidget *logoView(const std::optional<QImage> &logo, int side)
{
    if (logo)
        return new Picture(*logo, side);
    return kit::tile("shield.lefthalf.filled", side * 5 / 7, {.side = side, .radius = side / 4, .tint = 35})
        .color(kit::accent::blue);
}

} // namespace orvalen
