"""The window's main states that have a reference picture."""
import itertools
from dataclasses import dataclass, field
from typing import Optional

WARM, COLD = 40.4, 37.8  # °C; the target is 40.0


@dataclass(frozen=True)
class State:
    """What the window is to show; everything that is not named is as on a warm laptop that is left in peace."""
    tab: str = 'Dashboard'
    size: tuple = (1000, 680)
    bridge: float = WARM  # °C
    charger: bool = True
    shield: bool = True  # the switch
    warming: bool = False  # a warm-up under way; with its own temperatures
    streaming: bool = False
    phone: bool = False  # on the USB cable
    may_capture: bool = True
    reported: bool = False
    texts: tuple = field(default=(), compare=False)  # tell that it is reached


CLONE = dict(tab='Screen Clone', size=(1000, 920))
STATES = {
    'dashboard-standby': State(bridge=COLD, charger=False, shield=False, texts=('STANDBY',)),
    'dashboard-warming': State(warming=True, charger=False),
    'dashboard-protected': State(texts=('PROTECTED', 'AC Adapter')),
    'clone-stopped': State(**CLONE, texts=('NO APP NEEDED', 'Start Browser Cast')),
    'clone-running': State(**CLONE, streaming=True, texts=('ONLINE', 'QR code', 'Stop Stream')),
    'clone-usb': State(**CLONE, streaming=True, phone=True, texts=('CONNECTED', 'USB LINK ACTIVE')),
    'diagnostics': State(tab='Diagnostics', texts=('Service Shop Report',)),
    'diagnostics-reported': State(tab='Diagnostics', reported=True, texts=('Saved to Desktop & Opened in Safari!',)),
    'tools': State(tab='Power & Tools', texts=('Visit Portal ↗',)),
    'settings': State(tab='Settings', texts=('Target Bridge Temperature',)),
    'clone-forbidden': State(**CLONE, may_capture=False, texts=('Screen Recording Permission Required',)),
}


@dataclass(frozen=True)
class Picture:
    name: str
    state: State
    is_dark: bool


def of(name, state, is_dark):
    return Picture('%s-%s' % (name, 'dark' if is_dark else 'light'), state, is_dark)


def resized(state, size):
    return State(**{**vars(state), 'size': size})


PICTURES = [
    *(of(name, state, is_dark) for (name, state), is_dark in itertools.product(STATES.items(), (False, True))),
    of('narrow', resized(STATES['settings'], (815, 560)), False),
    of('wide', resized(STATES['dashboard-protected'], (1600, 680)), True),
]
