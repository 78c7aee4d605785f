"""Whether two pictures of a window show the same, though their text may be drawn a little differently.

They are compared in small squares of twelve pixels, about two letters, one every four pixels. In each

    strangeness = difference / (contrast + FAINTEST)

where the difference is how far apart both are on average, and the contrast is how much there is to see in the one that
shows more: the standard deviation of its pixels. So a faint word counts as much as a bold one, and on plain ground a small
change of colour is much. Of all shifts by up to REACH pixels that one counts under which the square differs least; and all
is blurred before, by about the width of a stroke, so that it does not matter how an outline falls on the pixels.

Where LIMIT comes from: the strangest square of a picture of the real window, if the same window is drawn

    with no more than 256 colours, as in the references      0.06
    without hints for small sizes                            0.07
    without hints, and for the red, green and blue dots
    of a screen, with colours at the edges of all letters    0.18

and if something is wrong with it:

    an N in a small word an M                                0.34
    a plain ground two levels of 255 darker                  0.40
    things moved by three pixels; by six                     0.46; 1.3
    a digit another one                                      0.56
    a small symbol another one; its colour another one       0.69; 0.77
    a word another one                                       0.9
    a card missing                                           1.9

What it cannot see: shifts by up to two pixels; colours of a plain ground that are one level of 255 off; a shadow that is
somewhat fainter; a missing hairline, such as the edge of a card: one line is 0.12 to 0.20, and if all cards have lost
their edges, the strangest corner is 0.24 to 0.27, seen in some pictures and not in others. What it cannot forgive: letters
without any grey at their edges, and hints that round the width of every letter, for then lines become longer by several
pixels and break elsewhere. Therefore fonts.conf says how the references, and what is compared with them, are drawn.
"""
from dataclasses import dataclass

import numpy

REACH = 2  # pixels
SIDE, STEP = 12, 4  # of the squares, pixels
FAINTEST = 5.0  # levels of 255: one level on plain ground stays below the limit, two exceed it
LIMIT = 0.25


@dataclass
class Fault:
    """A square that does not show the same in both pictures: its upper left corner, and how strange it is."""
    x: int
    y: int
    strangeness: float

    def __str__(self):
        return '%.2f at (%d, %d)' % (self.strangeness, self.x, self.y)


def faults(seen, reference):
    """The squares that do not show the same in both, the strangest one first. Arrays of height x width x 3 bytes."""
    if seen.shape != reference.shape:
        return [Fault(0, 0, numpy.inf)]
    if numpy.array_equal(seen, reference):
        return []
    strange = strangeness(seen, reference)
    order = numpy.argsort(-strange, axis=None)
    rows, columns = numpy.unravel_index(order, strange.shape)
    return [Fault(int(column) * STEP, int(row) * STEP, float(strange[row, column]))
            for row, column in zip(rows, columns) if strange[row, column] > LIMIT]


def strangeness(seen, reference):
    """That of every square, as an array of rows of squares."""
    a, b = (_softened(_filled_up(picture)) for picture in (seen, reference))
    contrast = numpy.maximum(_contrast(a), _contrast(b)) + FAINTEST
    strange = _difference(a, b) / contrast
    rows, columns = numpy.nonzero(strange > LIMIT)
    if not len(rows):
        return strange

    # Only where something differs is it worth trying all shifts.
    top, bottom, left, right = rows.min(), rows.max() + 1, columns.min(), columns.max() + 1
    part = slice(top * STEP, (bottom - 1) * STEP + SIDE), slice(left * STEP, (right - 1) * STEP + SIDE)
    best = strange[top:bottom, left:right]
    for dy in range(-REACH, REACH + 1):
        for dx in range(-REACH, REACH + 1):
            shifted = numpy.roll(b, (dy, dx), (0, 1))  # what comes round at the edge matches nothing or does no harm
            numpy.minimum(best, _difference(a[part], shifted[part]) / contrast[top:bottom, left:right], out=best)
    return strange


def _filled_up(picture):
    """Continued to the right and below, so that squares cover all of it."""
    height, width = picture.shape[:2]
    return numpy.pad(picture, ((0, -(height - SIDE) % STEP), (0, -(width - SIDE) % STEP), (0, 0)), mode='edge')


def _softened(picture):
    """Blurred with a binomial of five pixels."""
    soft = picture.astype(numpy.float32)
    for axis in (0, 1):
        padding = [(2, 2) if axis == other else (0, 0) for other in range(3)]
        wide = numpy.pad(soft, padding, mode='edge')
        length = soft.shape[axis]
        soft = sum(weight * wide.take(range(start, start + length), axis) for start, weight in enumerate((1, 4, 6, 4, 1))) / 16
    return soft


def _means(values):
    """The mean over each square."""
    total = numpy.zeros((values.shape[0] + 1, values.shape[1] + 1))
    values.cumsum(0, dtype=float).cumsum(1, out=total[1:, 1:])
    top = numpy.arange(0, values.shape[0] - SIDE + 1, STEP)[:, None]
    left = numpy.arange(0, values.shape[1] - SIDE + 1, STEP)[None, :]
    bottom, right = top + SIDE, left + SIDE
    return (total[bottom, right] - total[top, right] - total[bottom, left] + total[top, left]) / SIDE ** 2


def _difference(a, b):
    return _means(numpy.abs(a - b).mean(2))


def _contrast(picture):
    channels = [picture[:, :, channel].astype(float) for channel in range(3)]
    variances = [_means(channel ** 2) - _means(channel) ** 2 for channel in channels]
    return sum(numpy.sqrt(variance.clip(0)) for variance in variances) / 3
