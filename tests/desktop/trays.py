"""The two kinds of tray that a Linux desktop has: a panel that asks over the session bus, and one that embeds windows."""
import json
import re
import subprocess

from privatedesktop import Child, Later, end, wait_for

PANEL_SIZE = 32
PANEL = '''panels=panel1
[panel1]
plugins=statusnotifier
position=Bottom
panelSize=%d
background-color=%s
opacity=100
[statusnotifier]
type=statusnotifier
alignment=Right
'''


class Tray:
    """Both kinds are started and ended by a test, and looked at and clicked as a person does: on the screen."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.process = None

    def end(self):
        end(self.process)
        wait_for(lambda: not self.window(), what='the tray to go')

    def window(self):
        """Id of the tray's window; None while it is not on the screen."""
        return next(iter(self.desktop.output(
            ['xdotool', 'search', '--onlyvisible', '--class', '^%s$' % self.name]).split()), None)

    def place(self):
        """Left, top, width and height of the tray's window."""
        text = self.desktop.output(['xwininfo', '-id', self.window()])
        return [int(re.search(r'%s: +(-?\d+)' % what, text).group(1))
                for what in ('Absolute upper-left X', 'Absolute upper-left Y', 'Width', 'Height')]

    def icon(self):
        """What differs from the tray's ground, as (left, top, rows of truth values); None while there is nothing."""
        if not self.window():
            return None
        left, top, width, height = self.place()
        rgb = subprocess.run(['import', '-silent', '-window', 'root', '-crop', '%dx%d+%d+%d' % (width, height, left, top),
                              '-depth', '8', 'rgb:-'], env=self.desktop.environment, capture_output=True, timeout=20).stdout
        if len(rgb) != 3 * width * height:  # it has just gone
            return None
        edge = 3  # a tray may have a frame
        ground = rgb[3 * (edge * width + edge):][:3]
        inked = [[sum(abs(a - b) for a, b in zip(rgb[3 * (y * width + x):], ground)) > 200 for x in range(width)]
                 for y in range(height)]
        points = [(x, y) for y in range(edge, height - edge) for x in range(edge, width - edge) if inked[y][x]]
        if not points:
            return None
        columns, rows = zip(*points)
        box = min(columns), min(rows), max(columns), max(rows)
        return left + box[0], top + box[1], [row[box[0]:box[2] + 1] for row in inked[box[1]:box[3] + 1]]

    def has_icon(self):
        icon = self.icon()
        return bool(icon) and len(icon[2]) > 8

    def wait_for_icon(self):
        wait_for(self.has_icon, 20, 'an icon in the tray')

    def symbol(self):
        return symbol_of(self.icon()[2]) if self.has_icon() else None

    def click(self):
        left, top, rows = self.icon()
        self.desktop.output(['xdotool', 'mousemove', str(left + len(rows[0]) // 2), str(top + len(rows) // 2), 'click', '1'])


class Panel(Tray):
    """Shows StatusNotifierItems."""

    name = 'lxqt-panel'

    def __init__(self, desktop, background='#000000'):
        super().__init__(desktop)
        file = desktop.folder / 'home/.config/lxqt/panel.conf'
        file.parent.mkdir(parents=True)
        file.write_text(PANEL % (PANEL_SIZE, background))
        self.bus = Child(desktop, 'tray_child.py', stdin=subprocess.PIPE)

    def start(self):
        self.process = self.desktop.start_service(self.name, ['env', 'XDG_CURRENT_DESKTOP=LXQt', 'lxqt-panel'])
        wait_for(lambda: self.ask('has_host') and self.window(), 20, 'the panel')

    def ask(self, question):
        """An answer of the status item's; None where there is none."""
        self.bus.process.stdin.write(json.dumps(question).encode() + b'\n')
        self.bus.process.stdin.flush()
        return self.bus.read(30)


class EmbeddingTray(Tray):
    """X11's own: the icon is a little window of the program's."""

    name = 'trayer'

    def start(self):
        self.process = self.desktop.start_service(
            self.name, ['trayer', '--edge', 'bottom', '--align', 'right', '--widthtype', 'request', '--height', '28',
                        '--SetDockType', 'true'])
        # Its window is on the screen from the first icon on.
        wait_for(lambda: '"trayer"' in self.desktop.output(['xwininfo', '-root', '-tree']), 20, 'the tray')

    def end(self):
        end(self.process)


def symbol_of(rows):
    """Shields are broad at their shoulders, flames are not. `rows`: of truth values, without margins."""
    shoulders = rows[len(rows) // 5]
    extent = [x for x, inked in enumerate(shoulders) if inked]
    return 'shield' if extent and extent[-1] - extent[0] + 1 > 0.4 * len(rows) else 'flame'
