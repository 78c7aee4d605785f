"""Whether two pictures of a window show the same, though their text may be drawn a little differently.

The pictures are compared window by window: 24 x 16 pixels, about four letters, one every eight pixels. In each

    strangeness = difference / (contrast + FAINTEST)

where `difference` is how far apart the two are on average, and `contrast` is how much there is to see in the one that
shows more: the standard deviation of its pixels. So a faint word counts as much as a bold one, and on plain ground a
small change of colour is much. Of all shifts by up to REACH pixels that one counts under which the window differs least;
and all is blurred before, by about the width of a stroke, so that it does not matter how an outline falls on the pixels.

Where the numbers come from. The dashboard and the clone tab, light, drawn in another way than in their reference:

    without hinting                                          0.01
    with subpixels in a screen's order, R G B                0.10
    with heavier stems (FreeType's stem darkening)           STEM
    everything one or two pixels elsewhere                   0.00

and with something wrong:

    a fifth of the contrast of a small text lost             LIGHT
    one digit of a small text another one                    DIGIT
    a word for another one of its length                     0.34
    a label, icon or card missing, or moved by six pixels    0.5 and more
    a card two levels of 255 darker                          0.4

LIMIT lies between. What it does not see: shifts by up to two pixels, a colour of plain ground that is one level off, and
a hairline or a shadow that is a little fainter. What it does not forgive is full hinting: that rounds the width of every
letter, and a line of text becomes longer by some pixels. The tests say how fonts are to be drawn (fonts.conf).
"""
from dataclasses import dataclass

import numpy

REACH = 2  # pixels
SIDE, STEP = 12, 4  # of a window, pixels
FAINTEST = 5.0  # levels of 255: one level on plain ground stays below the limit, two exceed it
LIMIT = 0.25


@dataclass
class Fault:
    """A place where two pictures do not show the same: the rectangle of the strangest window there, and how strange it is."""
    x: int
    y: int
    strangeness: float

    def __str__(self):
        return '%.2f at (%d, %d)' % (self.strangeness, self.x, self.y)


def faults(seen, reference):
    """The windows that do not show the same in both, the strangest one first. Arrays of height x width x 3 bytes."""
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
    """That of every window, as an array of rows of windows."""
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
    """Continued to the right and below, so that windows cover all of it."""
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
    """The mean over each window."""
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
