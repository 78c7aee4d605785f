"""Finding and reading the C++ sources of a tree, for the checks beside this file."""
import os
import re

SUFFIXES = ('.h', '.hpp', '.cpp', '.cc', '.c', '.mm', '.m', '.inc')
NOT_OURS = {'build', '.git', '__pycache__'}


def source_files(root):
    """Paths of all C, C++ and Objective-C++ files below root, relative to it, with '/' as separator, sorted."""
    found = []
    for folder, folders, files in os.walk(root):
        folders[:] = [name for name in folders if name not in NOT_OURS]
        found += [os.path.join(folder, name) for name in files if name.endswith(SUFFIXES)]
    return sorted(os.path.relpath(path, root).replace(os.sep, '/') for path in found)


TOKEN = re.compile(r'''
    R"(?P<tag>[^\s()\\]{0,16})\(.*?\)(?P=tag)"  # raw string
  | "(?:\\.|[^"\\\n])*"                         # string, or the name in an #include
  | '(?:\\.|[^'\\\n])*'                         # character
  | //(?:\\\n|[^\n])*                           # comments
  | /\*.*?\*/
''', re.VERBOSE | re.DOTALL)


def without_comments(text):
    """The text with comments blanked and raw strings emptied; every line keeps its number."""
    def blanked(match):
        token = match.group()
        if token[0] in '"\'' and '\n' not in token:
            return token
        return ' ' + '\n' * token.count('\n')
    # A digit separator is no character literal.
    return TOKEN.sub(blanked, re.sub(r"(?<=[0-9a-fA-F])'(?=[0-9a-fA-F])", '_', text))


def directives(path):
    """The preprocessor lines of a file as (line number, directive, rest), continuation lines joined, comments gone."""
    with open(path, encoding='utf-8') as file:
        lines = without_comments(file.read()).split('\n')
    number = 0
    while number < len(lines):
        first, line = number, lines[number]
        while line.endswith('\\') and number + 1 < len(lines):
            number += 1
            line = line[:-1] + ' ' + lines[number]
        number += 1
        match = re.match(r'\s*(?:#|%:|\?\?=)\s*(\w+)\s*(.*?)\s*$', line, re.DOTALL)
        if match:
            yield first + 1, match.group(1), match.group(2)
