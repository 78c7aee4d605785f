"""Tells of every press of a key that the X server knows of, repetitions too, whoever gets it: the key, as JSON lines.

    recording_child.py      first "ready"
"""
import ctypes
import json

ALL_CLIENTS = 3
FROM_SERVER, START_OF_DATA = 0, 4
KEY_PRESS = 2


class Range(ctypes.Structure):
    _fields_ = [('others', ctypes.c_uint8 * 18), ('device_events', ctypes.c_uint8 * 2), ('more', ctypes.c_uint8 * 12)]


class Data(ctypes.Structure):
    _fields_ = [('base', ctypes.c_ulong), ('time', ctypes.c_ulong), ('sequence', ctypes.c_ulong),
                ('category', ctypes.c_int), ('swapped', ctypes.c_int), ('data', ctypes.POINTER(ctypes.c_uint8)),
                ('length', ctypes.c_ulong)]


def say(what):
    print(json.dumps(what), flush=True)


def main():
    x11, record = ctypes.CDLL('libX11.so.6'), ctypes.CDLL('libXtst.so.6')
    x11.XOpenDisplay.restype = ctypes.c_void_p
    record.XRecordAllocRange.restype = ctypes.POINTER(Range)
    record.XRecordCreateContext.restype = ctypes.c_ulong

    @ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.POINTER(Data))
    def tell(_, data):
        event = data.contents
        if event.category == START_OF_DATA:
            say('ready')
        elif event.category == FROM_SERVER and event.length and event.data[0] == KEY_PRESS:
            say(event.data[1])
        record.XRecordFreeData(data)

    control, channel = (ctypes.c_void_p(x11.XOpenDisplay(None)) for _ in range(2))
    what = record.XRecordAllocRange()
    what.contents.device_events[:] = KEY_PRESS, KEY_PRESS
    context = ctypes.c_ulong(record.XRecordCreateContext(control, 0, ctypes.byref(ctypes.c_ulong(ALL_CLIENTS)), 1,
                                                         ctypes.byref(what), 1))
    x11.XSync(control, False)
    record.XRecordEnableContext(channel, context, tell, None)


main()
