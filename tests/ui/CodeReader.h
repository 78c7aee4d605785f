#pragma once

#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QTemporaryDir>
#include <QWidget>

namespace orvalen::test {

[[nodiscard]] inline bool hasCodeReader()
{
    return !QStandardPaths::findExecutable("zbarimg").isEmpty();
}

/// What a reader of QR codes makes of a picture; empty if it finds none.
[[nodiscard]] inline QString readBack(const QImage &picture)
{
    const QTemporaryDir folder;
    const auto file = folder.filePath("code.png");
    QProcess reader;
    if (!picture.save(file))
        return "not saved";
    reader.start("zbarimg", {"--quiet", "--raw", "--nodbus", "-Sdisable", "-Sqrcode.enable", file});
    reader.waitForFinished();
    return QString::fromUtf8(reader.readAllStandardOutput()).trimmed();
}

/// The pixels that a screen of that scale would get of a widget, `shift` logical pixels away from its corner.
[[nodiscard]] inline QImage drawn(QWidget &widget, double scale, QPoint shift = {})
{
    QImage picture((QSizeF(widget.size() + QSize(shift.x(), shift.y())) * scale).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(widget.palette().color(QPalette::Window));
    widget.render(&picture, shift);
    return picture;
}

} // namespace orvalen::test
