"""Another program with global keys: takes one and tells of its presses, as JSON lines.

    grabbing_child.py KEYSYM MODIFIERS      first "ready" or "refused", then "pressed" for each press
"""
import ctypes
import json
import sys

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
    x11.XGrabKey(display, x11.XKeysymToKeycode(display, symbol), int(sys.argv[2], 0),
                 ctypes.c_ulong(x11.XDefaultRootWindow(display)), False, ASYNCHRONOUS, ASYNCHRONOUS)
    x11.XSync(display, False)
    say('refused' if refusals else 'ready')
    event = Event()
    while True:
        x11.XNextEvent(display, ctypes.byref(event))
        if event.type == KEY_PRESS:
            say('pressed')


main()
