"""Another program with global keys: takes one and tells of its presses, as JSON lines.

    grabbing_child.py KEYSYM MODIFIERS              first "ready" or "refused", then "pressed" for each press
    grabbing_child.py KEYSYM MODIFIERS --watch      takes none: "taken" as soon as some other program has it
"""
import ctypes
import json
import sys
import time

KEY_PRESS = 2
ASYNCHRONOUS = 1


class Event(ctypes.Union):
    _fields_ = [('type', ctypes.c_int), ('room', ctypes.c_long * 24)]


def say(what):
    print(json.dumps(what), flush=True)


def main():
    x11 = ctypes.CDLL('libX11.so.6')
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XDefaultRootWindow.restype = ctypes.c_ulong
    x11.XStringToKeysym.restype = ctypes.c_ulong
    display = ctypes.c_void_p(x11.XOpenDisplay(None))
    refusals = []
    handler = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(lambda *_: refusals.append(True) or 0)
    x11.XSetErrorHandler(handler)
    symbol = ctypes.c_ulong(x11.XStringToKeysym(sys.argv[1].encode()))
    key, modifiers = x11.XKeysymToKeycode(display, symbol), int(sys.argv[2], 0)
    root = ctypes.c_ulong(x11.XDefaultRootWindow(display))

    def grab():
        x11.XGrabKey(display, key, modifiers, root, False, ASYNCHRONOUS, ASYNCHRONOUS)
        x11.XSync(display, False)

    if sys.argv[3:] == ['--watch']:
        while True:
            x11.XGrabServer(display)  # so that it is in nobody's way while we have it
            grab()
            if refusals:
                break
            x11.XUngrabKey(display, key, modifiers, root)
            x11.XUngrabServer(display)
            x11.XSync(display, False)
            time.sleep(0.05)
        say('taken')
        return
    grab()
    say('refused' if refusals else 'ready')
    event = Event()
    while True:
        x11.XNextEvent(display, ctypes.byref(event))
        if event.type == KEY_PRESS:
            say('pressed')


main()
