"""Answers questions about the controls on the screen, one line of JSON each, through the accessibility bus."""
import json
import sys

import gi

gi.require_version('Atspi', '2.0')
from gi.repository import Atspi, GLib  # noqa: E402

Atspi.set_timeout(30000, 30000)  # a press that took long would count as none, and be done twice


def showing(parent):
    """Every object below `parent` that shows."""
    for index in range(parent.get_child_count()):
        child = parent.get_child_at_index(index)
        if child is None:
            continue
        if child.get_state_set().contains(Atspi.StateType.SHOWING):
            yield child
        yield from showing(child)


def everything():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None:
            application.clear_cache()
            yield from showing(application)


def text_of(control):
    text = control.get_text_iface()
    return Atspi.Text.get_text(text, 0, Atspi.Text.get_character_count(text)) if text else ''


def names():
    return [[control.get_role_name(), control.get_name(), text_of(control)] for control in everything()]


STATES = {state: getattr(Atspi.StateType, state.upper().replace(' ', '_')) for state in (
    'focusable', 'focused', 'checkable', 'checked', 'selectable', 'selected', 'enabled', 'sensitive', 'pressed',
    'editable', 'read only')}


def value_of(control):
    value = control.get_value_iface()
    return value and [Atspi.Value.get_current_value(value), Atspi.Value.get_minimum_value(value),
                      Atspi.Value.get_maximum_value(value), Atspi.Value.get_minimum_increment(value)]


def groups_of(control):
    """The names of the groups and windows around it, the outermost first."""
    names = []
    around = control.get_parent()
    while around is not None and around.get_role() != Atspi.Role.APPLICATION:
        if around.get_role() != Atspi.Role.FILLER and around.get_name():
            names.insert(0, around.get_name())
        around = around.get_parent()
    return names


def described():
    """Everything that shows but what only holds others, in reading order."""
    found = []
    for control in everything():
        if control.get_role() == Atspi.Role.FILLER and control.get_child_count() > 0:
            continue
        states = control.get_state_set()
        place = Atspi.Component.get_extents(control.get_component_iface(), Atspi.CoordType.SCREEN)
        found.append({
            'role': control.get_role_name(),
            'name': control.get_name(),
            'description': control.get_description(),
            'states': [name for name, state in STATES.items() if states.contains(state)],
            'value': value_of(control),
            'text': text_of(control),
            'groups': groups_of(control),
            'place': [place.x, place.y, place.width, place.height],
        })
    return found


def set_value(name, value):
    for control in everything():
        slider = control.get_value_iface()
        if control.get_name() == name and slider:
            return Atspi.Value.set_current_value(slider, value)
    return False


def press(name, about):
    for control in everything():
        action = control.get_action_iface()
        if control.get_name() == name and action and Atspi.Action.get_n_actions(action) > 0 and \
                about in (None, control.get_description()):
            return Atspi.Action.do_action(action, 0)
    return False


def place(role, name):
    for control in everything():
        if control.get_name() == name and control.get_role_name() == role:
            extents = Atspi.Component.get_extents(control.get_component_iface(), Atspi.CoordType.SCREEN)
            return [extents.x, extents.y, extents.width, extents.height]
    return None


def description(name):
    for control in everything():
        if control.get_name() == name:
            return control.get_description()
    return None


def checked(name):
    for control in everything():
        if control.get_name() == name and control.get_role() == Atspi.Role.CHECK_BOX:
            return control.get_state_set().contains(Atspi.StateType.CHECKED)
    return None


for line in sys.stdin:
    question = json.loads(line)
    verb, name = question['verb'], question.get('name')
    try:
        answer = {'answer': {'names': names, 'press': lambda: press(name, question.get('about')),
                             'checked': lambda: checked(name), 'description': lambda: description(name),
                             'described': described, 'place': lambda: place(question['role'], name),
                             'set': lambda: set_value(name, question['value'])}[verb]()}
    except GLib.Error:  # a control vanished while we looked: look again
        answer = {'answer': {'names': [], 'press': False, 'checked': None, 'description': None, 'described': [],
                             'place': None, 'set': False}[verb]}
    print(json.dumps(answer), flush=True)
