"""What the driver asks of the X server beside keys and mouse: asking a window to close, as a title bar does."""

import ctypes

from .desktop import Desktop

_CLIENT_MESSAGE = 33


class _ClientMessage(ctypes.Structure):
    _fields_ = [
        ("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
        ("display", ctypes.c_void_p), ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
        ("format", ctypes.c_int), ("data", ctypes.c_long * 5),
    ]


class _Event(ctypes.Union):
    _fields_ = [("message", _ClientMessage), ("padding", ctypes.c_long * 24)]


def ask_to_close(window: int) -> None:
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XInternAtom.restype = ctypes.c_ulong
    x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    x11.XSendEvent.argtypes = [
        ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long, ctypes.POINTER(_Event)]
    x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
    display = x11.XOpenDisplay(Desktop.shared().environment["DISPLAY"].encode())
    try:
        event = _Event()
        event.message.type = _CLIENT_MESSAGE
        event.message.window = window
        event.message.message_type = x11.XInternAtom(display, b"WM_PROTOCOLS", 0)
        event.message.format = 32
        event.message.data[0] = x11.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
        x11.XSendEvent(display, window, 0, 0, ctypes.byref(event))
    finally:
        x11.XCloseDisplay(display)  # flushes


def windows_of(pid: int, title: str = "") -> list[int]:
    """The visible windows of a process, by a pattern of their title."""
    desktop = Desktop.shared()
    try:
        found = desktop.run("xdotool", "search", "--all", "--onlyvisible", "--pid", str(pid), "--name", title)
    except Exception:  # xdotool fails when it finds nothing
        return []
    return [int(line) for line in found.split()]
