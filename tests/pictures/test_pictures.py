"""What the window looks like, in its main states. `renew` takes the references anew."""
import re

import numpy
import pytest

import likeness
import png
import private_machine
from states import PICTURES
from window import HERE, REFERENCES, ROOT, Window

pytestmark = private_machine.needed

FAILED = ROOT / 'build/pictures'  # what was seen instead
RED = (255, 0, 0)


def keep(picture, seen, faults):
    """Puts what was seen into a file, a red dot at every fault."""
    marked = seen.copy()
    for fault in faults:
        y, x = fault.y + likeness.SIDE // 2, fault.x + likeness.SIDE // 2
        marked[y - 1:y + 2, x - 1:x + 2] = RED
    FAILED.mkdir(parents=True, exist_ok=True)
    for name, content in ((picture.name, seen), (picture.name + '-marked', marked)):
        png.write(content, FAILED / (name + '.png'))
    return FAILED / (picture.name + '.png')


def looks_alike(window, picture):
    """Whether it comes to look like its reference; else what it looks like in the end, and where it differs."""
    reference = png.read(REFERENCES / (picture.name + '.png'))
    for _ in range(3):
        window.show(picture)
        for seen in window.shots(picture):
            faults = likeness.faults(seen, reference)
            if not faults:
                return None
        if window.is_at(picture):  # else it went on meanwhile
            break
    return seen, faults


@pytest.mark.parametrize('picture', PICTURES, ids=lambda picture: picture.name)
def test_the_window_looks_as_ever(window, picture):
    wrong = looks_alike(window, picture)
    if wrong:
        seen, faults = wrong
        pytest.fail('%s: %d squares of it are strange: %s' % (keep(picture, seen, faults), len(faults),
                                                                  ', '.join(map(str, faults[:5]))), pytrace=False)


def test_every_reference_is_of_a_picture_that_is_taken():
    assert {file.stem for file in REFERENCES.glob('*.png')} == {picture.name for picture in PICTURES}


@pytest.fixture
def other_window(tmp_path):
    """The program once more, on a desktop whose fonts are drawn in another way: without hints, for the dots of a screen."""
    fonts = (HERE / 'fonts.conf').read_text()
    for usual, other in (('hintslight', 'hintnone'), ('<const>none</const>', '<const>rgb</const>')):
        assert fonts.count(usual) == 1
        fonts = fonts.replace(usual, other)
    (tmp_path / 'fonts.conf').write_text(fonts)
    with Window(tmp_path / 'fonts.conf') as other:
        yield other


def test_it_is_no_matter_how_fonts_are_drawn(other_window):
    picture = next(picture for picture in PICTURES if picture.name == 'clone-stopped-light')
    reference = png.read(REFERENCES / (picture.name + '.png'))
    other_window.show(picture)
    *_, seen = other_window.shots(picture)
    assert numpy.abs(seen.astype(int) - reference).max() > 40, 'drawn in no other way'
    assert likeness.faults(seen, reference) == []


def test_what_the_readme_shows_is_compared_here():
    shown = re.findall(r'!\[[^]]*\]\(([^)]*)\)', (ROOT / 'README.md').read_text())
    assert len(shown) == 4
    assert {(ROOT / path).parent for path in shown} == {REFERENCES}
