"""Outside platform/ nobody asks which system it is."""
from pathlib import Path

import pytest

import system_conditions

ROOT = Path(__file__).resolve().parents[2]


@pytest.mark.parametrize('line', [
    '#ifdef __linux__', '#if defined(__APPLE__)', '#ifndef _WIN32', '#if 1 && defined Q_OS_MACOS', '# if TARGET_OS_OSX',
    '#if __has_include(<unistd.h>)', '#elif defined(__unix__)',
])
def test_a_question_for_the_system_is_named(tmp_path, line):
    (tmp_path / 'core').mkdir()
    (tmp_path / 'core/AppState.cpp').write_text('int a;\n' + line + '\n#endif\n')
    found = list(system_conditions.offences(tmp_path))
    assert len(found) == 1
    assert found[0].startswith('core/AppState.cpp:2: ')


def test_adapters_may_ask_and_other_questions_are_free(tmp_path):
    for name, text in {'platform/posix/Clock.cpp': '#ifdef __APPLE__\n#endif\n', 'core/A.h': '#ifndef NDEBUG\n#endif\n'}.items():
        (tmp_path / name).parent.mkdir(parents=True)
        (tmp_path / name).write_text(text)
    assert list(system_conditions.offences(tmp_path)) == []


def test_our_own_tree_does_not_ask():
    assert list(system_conditions.offences(ROOT)) == []
