"""The few X11 requests that the tests make themselves, through libX11."""

import ctypes
import ctypes.util
import itertools
import time

_x = ctypes.CDLL(ctypes.util.find_library("X11"))
_x.XOpenDisplay.restype = ctypes.c_void_p
_x.XDefaultRootWindow.restype = ctypes.c_ulong
_x.XInternAtom.restype = ctypes.c_ulong
_x.XCreateSimpleWindow.restype = ctypes.c_ulong

_ANY_TYPE = 0
_CLIENT_MESSAGE = 33


class _ClientMessage(ctypes.Structure):
    _fields_ = [
        ("type", ctypes.c_int),
        ("serial", ctypes.c_ulong),
        ("send_event", ctypes.c_int),
        ("display", ctypes.c_void_p),
        ("window", ctypes.c_ulong),
        ("message_type", ctypes.c_ulong),
        ("format", ctypes.c_int),
        ("data", ctypes.c_long * 5),
        ("pad", ctypes.c_long * 12),  # the size of the union of all events
    ]


class XClient:
    def __init__(self, name):
        self.display = ctypes.c_void_p(_x.XOpenDisplay(name.encode()))
        if not self.display:
            raise RuntimeError("no display " + name)
        self.root = ctypes.c_ulong(_x.XDefaultRootWindow(self.display))

    def close(self):
        _x.XCloseDisplay(self.display)

    def atom(self, name):
        return _x.XInternAtom(self.display, name.encode(), 0)

    def property(self, window, name):
        """First value of a 32-bit window property, or None."""
        kind, unit = ctypes.c_ulong(), ctypes.c_int()
        count, rest = ctypes.c_ulong(), ctypes.c_ulong()
        data = ctypes.POINTER(ctypes.c_long)()
        _x.XGetWindowProperty(
            self.display, ctypes.c_ulong(window), ctypes.c_ulong(self.atom(name)),
            ctypes.c_long(0), ctypes.c_long(1), 0, ctypes.c_ulong(_ANY_TYPE), ctypes.byref(kind),
            ctypes.byref(unit), ctypes.byref(count), ctypes.byref(rest), ctypes.byref(data))
        return data[0] if count.value and data else None

    def manager_probe(self):
        """A function that says whether a window manager takes care of a new window. One that is
        still starting may lose windows that appear too early: each call gives it another, and more
        time than the last."""
        seconds = itertools.count(1)

        def is_managed():
            probe = ctypes.c_ulong(_x.XCreateSimpleWindow(self.display, self.root, 0, 0, 9, 9, 0,
                                                          ctypes.c_ulong(0), ctypes.c_ulong(0)))
            _x.XMapWindow(self.display, probe)
            _x.XSync(self.display, 0)
            managed, end = False, time.monotonic() + next(seconds)
            while not managed and time.monotonic() < end:
                time.sleep(0.02)
                managed = self.property(probe.value, "WM_STATE") is not None
            _x.XDestroyWindow(self.display, probe)
            _x.XSync(self.display, 0)
            return managed

        return is_managed

    def ask_to_close(self, window):
        """What a window manager sends when the viewer closes the window."""
        message = _ClientMessage(type=_CLIENT_MESSAGE, window=window, format=32,
                                 message_type=self.atom("WM_PROTOCOLS"))
        message.data[0] = self.atom("WM_DELETE_WINDOW")
        _x.XSendEvent(self.display, ctypes.c_ulong(window), 0, ctypes.c_long(0),
                      ctypes.byref(message))
        _x.XSync(self.display, 0)

    def resize(self, window, width, height):
        _x.XResizeWindow(self.display, ctypes.c_ulong(window), ctypes.c_uint(width),
                         ctypes.c_uint(height))
        _x.XSync(self.display, 0)
