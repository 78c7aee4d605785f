"""The house rules of the lint see what they are there to see. (clang-format and clang-tidy have tests of their own.)"""
import pytest

import lint


@pytest.mark.parametrize('text, word', [
    ('a \n', 'space at the end'),
    ('a\t\n', 'space at the end'),
    ('a\r\n', 'line ends'),
    ('a', 'does not end'),
    ('a\n\n', 'empty lines'),
    ('<<<<<<< ours\n', 'merge'),
    ('=======\n', 'merge'),
    ('see /home/' + 'anna/notes\n', "somebody's home"),
    ('"/Users/' + 'anna"\n', "somebody's home"),
])
def test_a_broken_house_rule_is_named(text, word):
    found = list(lint.house_findings('file.h', text))
    assert any(finding.startswith('file.h') and word in finding for finding in found)


def test_an_ordinary_file_is_clean():
    assert list(lint.house_findings('file.h', '#pragma once\n\n/// $HOME/home/x, https://a.org/home/y\nint a;\n')) == []
