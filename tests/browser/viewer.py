"""The stream server, a capture command whose pictures are known, and a real browser that looks at them."""
import os
import select
import signal
import struct
import subprocess
import sys
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

sys.path.append(str(Path(__file__).resolve().parents[1] / 'support'))

from waiting import wait_for  # noqa: E402

ROOT = Path(__file__).resolve().parents[2]
PROGRAM = ROOT / 'build/release/libexec/orvalen/orvalen-stream-server'
PORT_FILE = Path('/tmp/orvalen_port.txt')
PICTURES = ROOT / 'build/pictures'  # of the page, for eyes


class Camera:
    """Takes no pictures of the screen but shows prepared ones, one after the other: the left and the right half in the
    display's colours, and a bar across both that is another grey each time."""
    COLORS = {1: ('red', 'blue'), 2: ('lime', 'yellow')}
    SIZE = (640, 400)
    STEPS = 12

    def __init__(self, folder):
        self.folder = folder
        for display, (left, right) in self.COLORS.items():
            for step in range(self.STEPS):
                self._draw('%d-%d.jpg' % (display, step), left, right, step)
        for step in range(self.STEPS):
            self._draw('later-%d.jpg' % step, 'magenta', 'cyan', step)
        (folder / 'screencapture').write_text('''#!/bin/sh
# screencapture -x -t jpg [-D n] FILE
cd %s || exit 1
display=1
while [ $# -gt 1 ]; do
    [ "$1" != -D ] || display=$2
    shift
done
[ ! -e broken ] || exit 1
[ -e "$display-0.jpg" ] || exit 1
step=$(cat "count-$display" 2>/dev/null || echo 0)
echo $(((step + 1) %% %d)) >"count-$display"
picture=$display
[ ! -e later ] || picture=later
cp "$picture-$step.jpg" "$1.part" && mv -f "$1.part" "$1"
''' % (folder, self.STEPS))
        (folder / 'screencapture').chmod(0o755)

    def _draw(self, name, left, right, step):
        width, height = self.SIZE
        grey = 'gray(%d)' % (20 + 20 * step)
        subprocess.run(['convert', '-size', '%dx%d' % self.SIZE, 'xc:' + left,
                        '-fill', right, '-draw', 'rectangle %d,0 %d,%d' % (width // 2, width, height),
                        '-fill', grey, '-draw', 'rectangle 0,%d %d,%d' % (height * 2 // 5, width, height * 3 // 5),
                        '-quality', '92', self.folder / name], check=True, timeout=60)

    def set(self, state, on=True):
        """'broken': every capture fails. 'later': display 1 looks different from before."""
        if on:
            (self.folder / state).touch()
        else:
            (self.folder / state).unlink(missing_ok=True)

    def reset(self):
        self.set('broken', False)
        self.set('later', False)


class Server:
    """with Server(folder, environment) as server: ... server.address"""

    def __init__(self, folder, environment):
        self.folder = folder
        self.environment = environment
        self.process = None

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.stop()

    def start(self):
        PORT_FILE.unlink(missing_ok=True)
        self.process = subprocess.Popen([PROGRAM], env=self.environment, stdin=subprocess.DEVNULL,
                                        stdout=open(self.folder / 'output', 'ab'), stderr=subprocess.STDOUT)
        wait_for(lambda: PORT_FILE.exists() and PORT_FILE.read_text(), what='the port file')
        self.address = 'http://127.0.0.1:%s' % PORT_FILE.read_text()

    def stop(self, number=signal.SIGTERM):
        if self.process.poll() is None:
            self.process.send_signal(number)
            try:
                self.process.wait(5)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()

    def said(self):
        return (self.folder / 'output').read_text()


class Screen:
    """An X server without a monitor, whose pixels are set where it keeps them."""

    def __init__(self, folder, width, height):
        self.width, self.height = width, height
        self.memory = folder / 'Xvfb_screen0'
        reading, writing = os.pipe()
        self.process = subprocess.Popen(['Xvfb', '-displayfd', str(writing), '-screen', '0', '%dx%dx24' % (width, height),
                                         '-fbdir', folder, '-nolisten', 'tcp', '-noreset'],
                                        pass_fds=[writing], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        os.close(writing)
        ready, _, _ = select.select([reading], [], [], 20)
        with os.fdopen(reading) as file:
            self.display = ':' + file.readline().strip() if ready else ''
        assert self.display, 'no X server'

    def paint(self, left, right):
        """The halves of the screen in these colours (red, green, blue)."""
        with open(self.memory, 'r+b') as file:
            header = struct.unpack('>25I', file.read(100))  # a window dump's: its size first, then what else it is like
            line_length, colors = header[12], header[19]
            half = self.width // 2
            line = bytes((*reversed(left), 0)) * half + bytes((*reversed(right), 0)) * (self.width - half)
            file.seek(header[0] + 12 * colors)
            file.write(line.ljust(line_length, b'\0') * self.height)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(10)


class Browser:
    """A browser without a window, and what the page in it looks like."""

    # What went wrong in the page without a line in the browser's own log.
    LISTEN = '''
        window.mishaps = [];
        addEventListener('error', event => { if (event.message) mishaps.push(event.message); });
        addEventListener('unhandledrejection', event => mishaps.push('unhandled: ' + event.reason));
    '''

    def __init__(self, folder):
        options = webdriver.ChromeOptions()
        options.binary_location = '/usr/bin/chromium'
        for argument in ('--headless=new', '--no-sandbox', '--disable-dev-shm-usage', '--disable-gpu', '--no-first-run',
                         '--disable-background-networking', '--user-data-dir=%s' % (folder / 'profile')):
            options.add_argument(argument)
        options.set_capability('goog:loggingPrefs', {'browser': 'ALL'})
        options.page_load_strategy = 'eager'  # a stream is never loaded to its end
        environment = {**os.environ, 'HOME': str(folder), 'XDG_RUNTIME_DIR': str(folder)}
        self.driver = webdriver.Chrome(options=options, service=Service('/usr/bin/chromedriver', env=environment))
        self.command('Page.addScriptToEvaluateOnNewDocument', source=self.LISTEN)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.driver.quit()

    def command(self, name, **parameters):
        return self.driver.execute_cdp_cmd(name, parameters)

    def open(self, address, width=1440, height=900, phone=False):
        """The page at a size: that of a phone's screen or of a desktop's window."""
        self.driver.get('about:blank')
        self.driver.get_log('browser')  # what was before is nobody's concern any more
        self.command('Emulation.setDeviceMetricsOverride', width=width, height=height, deviceScaleFactor=2 if phone else 1,
                     mobile=phone)
        self.command('Emulation.setTouchEmulationEnabled', enabled=phone)
        self.driver.get(address)

    def ask(self, expression):
        return self.driver.execute_script('return ' + expression)

    def click(self, text):
        """On the link or button of that text."""
        self.driver.find_element(By.XPATH, '//*[self::a or self::button][normalize-space()="%s"]' % text).click()

    def source(self):
        """The picture's address, as the page has set it."""
        return self.ask('document.getElementById("screen").getAttribute("src")')

    def has_picture(self):
        return self.ask('document.getElementById("screen").naturalWidth') > 0

    def colors(self, *places):
        """Those of the picture at places given as parts of its width and height; None while there is no picture."""
        return self.driver.execute_script('''
            const image = document.getElementById('screen');
            if (!image.naturalWidth)
                return null;
            const canvas = document.createElement('canvas');
            canvas.width = image.naturalWidth;
            canvas.height = image.naturalHeight;
            const context = canvas.getContext('2d');
            context.drawImage(image, 0, 0);
            return arguments[0].map(([x, y]) =>
                Array.from(context.getImageData(x * canvas.width, y * canvas.height, 1, 1).data.slice(0, 3)));
        ''', places)

    def wait_for_colors(self, left, right, seconds=10):
        """Until the picture's halves have these colours (red, green, blue)."""
        def near(seen, wanted):
            return all(abs(a - b) <= 12 for a, b in zip(seen, wanted))

        def shows():
            seen = self.colors((0.25, 0.1), (0.75, 0.9))
            return seen and near(seen[0], left) and near(seen[1], right)

        wait_for(shows, seconds, Later(lambda: '%s and %s, but: %s' % (left, right, self.colors((0.25, 0.1), (0.75, 0.9)))))

    def wait_for_motion(self, seconds=10):
        """Until the bar across the picture has had four different greys."""
        seen = set()

        def moves():
            colors = self.colors((0.5, 0.5))
            if colors:
                seen.add(colors[0][0] // 8)
            return len(seen) >= 4

        wait_for(moves, seconds, 'a picture that changes')

    def mishaps(self):
        """Whatever the browser complained of since the page was opened."""
        severe = [entry['message'] for entry in self.driver.get_log('browser') if entry['level'] == 'SEVERE']
        return severe + self.ask('window.mishaps')

    def screenshot(self, name):
        PICTURES.mkdir(parents=True, exist_ok=True)
        self.driver.save_screenshot(str(PICTURES / name))


class Later:
    """Computed when it is printed."""

    def __init__(self, function):
        self.function = function

    def __str__(self):
        return str(self.function())
