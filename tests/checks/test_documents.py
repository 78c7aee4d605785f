"""The documents keep up with the tree."""
import re
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
DOCUMENTS = sorted([ROOT / 'README.md', *ROOT.glob('docs/*.md')])
FOLDERS = 'app|core|system|streaming|mirroring|report|ui|platform|assets|tests|bench|packaging|docs'


def broken_references(text, folder, root):
    """Links, and paths in backticks that start with one of our folders, that lead nowhere."""
    links = [folder / link for link in re.findall(r'\]\(([^)#:]+)(?:#[^)]*)?\)', text)]
    paths = [root / path for path in re.findall(r'`((?:%s)/[\w./]*)`' % FOLDERS, text)]
    # A pair of files may be named without its suffix.
    return [str(path) for path in links + paths if not path.exists() and not list(path.parent.glob(path.name + '.*'))]


@pytest.mark.parametrize('document', DOCUMENTS, ids=[path.name for path in DOCUMENTS])
def test_every_path_leads_somewhere(document):
    assert broken_references(document.read_text(), document.parent, ROOT) == []


def test_a_path_that_leads_nowhere_is_seen(tmp_path):
    (tmp_path / 'core').mkdir()
    (tmp_path / 'core/Clock.h').touch()
    text = '[a](docs/none.md) [b](https://a.org/none) `core/Clock` `core/Clock.h` `core/None.h` `a/b`'
    assert broken_references(text, tmp_path, tmp_path) == [str(tmp_path / 'docs/none.md'), str(tmp_path / 'core/None.h')]


@pytest.mark.parametrize('header', sorted(path.stem for path in ROOT.glob('platform/*.h') if path.stem != 'Platform'))
def test_the_guide_to_porting_names_every_interface(header):
    assert '| `%s` |' % header in (ROOT / 'docs/porting.md').read_text()
