#pragma once

#include <QColor>
#include <QRect>
#include <QString>

#include <functional>

class QPainter;

namespace orvalen::kit {

/// What is the same all along each edge of a rectangle, such as a frame or a shadow, and so can be drawn from a small
/// picture of it that is remembered: the corners as they are, what lies between them stretched. The middle is of one
/// colour, or stays empty.
struct StretchedPicture
{
    QString key;    ///< Tells it from every other one, its colours included.
    int corner = 0; ///< The side of a corner. The middle is what is this far from all edges.
    std::function<void(QPainter &painter, const QRect &place)> paint; ///< Draws all of it, as large as `place`.
    QColor middle = {};                                               ///< Invalid: empty.

    /// From the picture where every pixel of it is one of the device's, else as `paint` does, which may fill the
    /// middle.
    void draw(QPainter &painter, const QRect &place) const;
};

/// A filled rectangle with round corners, drawn so.
void paintRounded(QPainter &painter, const QRect &place, int radius, const QColor &fill);

} // namespace orvalen::kit
