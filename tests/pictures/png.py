"""Pictures as arrays of height x width x 3 bytes, and as PNG files."""
import subprocess

import numpy


def from_ppm(ppm):
    kind, width, height, depth = ppm.split(maxsplit=4)[:4]
    assert (kind, depth) == (b'P6', b'255'), ppm[:20]
    size = int(width) * int(height) * 3
    return numpy.frombuffer(ppm[-size:], numpy.uint8).reshape(int(height), int(width), 3)


def read(file):
    return from_ppm(subprocess.run(['convert', file, '-depth', '8', 'ppm:-'], stdout=subprocess.PIPE, check=True,
                                   timeout=60).stdout)


def reduced(picture, exact=128, others=128):
    """The same in few colours: the most frequent ones stay as they are, those between them become the nearest of some."""
    numbers = picture.astype(numpy.uint32) @ numpy.array([65536, 256, 1], numpy.uint32)
    found, where, counts = numpy.unique(numbers, return_inverse=True, return_counts=True)
    if len(found) <= exact + others:
        return picture
    colours = numpy.stack([found >> 16, found >> 8 & 255, found & 255], 1).astype(numpy.int32)
    chosen = list(numpy.argsort(-counts, kind='stable')[:exact])
    nearest = numpy.zeros(len(colours), int)
    distance = numpy.full(len(colours), numpy.iinfo(numpy.int32).max)
    for place in range(exact + others):
        if place >= exact:
            chosen.append(distance.argmax())  # what is worst off so far
        to_this = ((colours - colours[chosen[place]]) ** 2).sum(1)
        nearest[to_this < distance] = chosen[place]
        distance = numpy.minimum(distance, to_this)
    return colours[nearest][where].reshape(picture.shape).astype(numpy.uint8)


def write(picture, file):
    """As a small file, in no more than 256 colours."""
    height, width, _ = picture.shape
    ppm = b'P6 %d %d 255\n' % (width, height) + reduced(picture).tobytes()
    # The grounds are plain: no prediction of pixels, which is filter 1 here, packs them best.
    options = ['-strip', '-define', 'png:compression-level=9', '-define', 'png:compression-filter=1',
               '-define', 'png:compression-strategy=0']
    subprocess.run(['convert', 'ppm:-', *options, 'png8:%s' % file], check=True, input=ppm, timeout=60)
