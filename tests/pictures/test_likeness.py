"""What the measure of likeness overlooks and what it sees, on pictures of a card that are drawn for that."""
import dataclasses
import subprocess
from dataclasses import dataclass

import numpy
import pytest

import likeness
import png

FONTS = '/usr/share/fonts/opentype/inter/Inter-%s.otf'
INK, GRAY, BLUE, PURPLE = '#1C1C1E', '#565A62', '#0050C8', '#6E2BA8'
LABEL_PLACE, ICON_PLACE = (56, 38), (20, 24)


@dataclass(frozen=True)
class Card:
    """A card with an icon, a label and a value, as the dashboard has them."""
    label: str = 'Gate Driver T-CON'
    value: str = '40.4°C'
    label_color: str = GRAY
    icon_color: str = BLUE
    ground: str = '#FFFFFF'
    edge: str = ''  # a colour
    across: float = 0.0  # pixels, of the texts
    whole_across: int = 0  # of all
    has_icon: bool = True

    def drawn(self):
        across = self.whole_across
        words = []
        for text, weight, size, color, x, y in ((self.label, 'Regular', 11, self.label_color, *LABEL_PLACE),
                                                (self.value, 'SemiBold', 15, INK, 56, 56)):
            words += ['-font', FONTS % weight, '-pointsize', str(size), '-fill', color,
                      '-annotate', '+%g+%d' % (x + self.across + across, y), text]
        icon = ['-fill', self.icon_color, '-draw', 'path "M %d,%d h 14 v 9 h -5 v 3 h -4 v -3 h -5 z"' %
                (ICON_PLACE[0] + 5 + across, ICON_PLACE[1] + 6)] if self.has_icon else []
        edge = ['-stroke', self.edge] if self.edge else []
        card = 'roundrectangle %d,10 %d,72 10,10' % (10 + across, 270 + across)
        return png.from_ppm(subprocess.run(
            ['convert', '-size', '291x91', 'xc:#F4F5F7', '-fill', self.ground, *edge, '-draw', card, '-stroke', 'none',
             *icon, *words, '-depth', '8', 'ppm:-'], check=True, stdout=subprocess.PIPE, timeout=60).stdout)


def altered(**changes):
    return dataclasses.replace(Card(), **changes).drawn()


@pytest.fixture(scope='module')
def reference():
    return Card().drawn()


@pytest.mark.parametrize('changes', [{}, {'across': 1}, {'across': 2}, {'whole_across': 1}, {'whole_across': 2}], ids=str)
def test_it_overlooks_small_shifts(reference, changes):
    assert likeness.faults(altered(**changes), reference) == []


def test_it_overlooks_one_level_of_plain_ground(reference):
    assert likeness.faults(altered(ground='#FEFEFE'), reference) == []


def test_it_overlooks_the_faint_edge_of_a_card(reference):
    assert numpy.abs(altered(edge='#EBEBEB').astype(int) - reference).max() > 8
    assert likeness.faults(altered(edge='#EBEBEB'), reference) == []


def test_it_overlooks_that_a_reference_has_few_colours(reference):
    assert len(numpy.unique(reference.reshape(-1, 3), axis=0)) > 32
    assert likeness.faults(png.reduced(reference, 16, 16), reference) == []


def test_it_says_where(reference):
    worst = likeness.faults(altered(has_icon=False), reference)[0]
    assert abs(worst.x + likeness.SIDE / 2 - (ICON_PLACE[0] + 12)) <= likeness.SIDE
    assert abs(worst.y + likeness.SIDE / 2 - (ICON_PLACE[1] + 12)) <= likeness.SIDE


@pytest.mark.parametrize('place', [(0, 0), (0, -1), (-1, 0), (-1, -1)])
def test_it_looks_into_every_corner(reference, place):
    spoilt = reference.copy()
    row, column = ((0, 3) if index == 0 else (-3, None) for index in place)
    spoilt[slice(*row), slice(*column)] = 0
    assert likeness.faults(spoilt, reference)


def test_it_takes_no_other_size(reference):
    assert likeness.faults(reference[:-1], reference)


@pytest.mark.parametrize('changes', [
    {'label': ''}, {'value': ''}, {'has_icon': False}, {'ground': '#F4F5F7'},
    {'label': 'Gate Drover T-CON'}, {'label': 'Gate Driver T-COM'}, {'value': '40.5°C'}, {'value': '40.4°F'},
    {'label_color': BLUE}, {'label_color': '#8A8E96'}, {'icon_color': PURPLE}, {'icon_color': '#3070D8'}, {'ground': '#FDFDFD'},
    {'edge': '#C6C6C8'}, {'across': 4}, {'across': 6}, {'whole_across': 4}, {'whole_across': 6},
], ids=str)
def test_it_sees_what_is_wrong(reference, changes):
    assert likeness.faults(altered(**changes), reference)
