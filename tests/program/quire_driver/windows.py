"""What the driver asks of the X server beside keys and mouse: that a window close, as its title bar would
ask it, and that letters beyond the keyboard's own have a key."""

import ctypes
from collections.abc import Iterator
from contextlib import contextmanager

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


_x11 = ctypes.CDLL("libX11.so.6")
_x11.XOpenDisplay.restype = ctypes.c_void_p
_x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
_x11.XInternAtom.restype = ctypes.c_ulong
_x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
_x11.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long, ctypes.POINTER(_Event)]
_x11.XKeysymToKeycode.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
_x11.XKeysymToKeycode.restype = ctypes.c_ubyte
_x11.XKeycodeToKeysym.argtypes = [ctypes.c_void_p, ctypes.c_ubyte, ctypes.c_int]
_x11.XKeycodeToKeysym.restype = ctypes.c_ulong
_x11.XChangeKeyboardMapping.argtypes = [
    ctypes.c_void_p, ctypes.c_int, ctypes.c_int, ctypes.POINTER(ctypes.c_ulong), ctypes.c_int]


@contextmanager
def _display() -> Iterator[int]:
    display = _x11.XOpenDisplay(Desktop.shared().environment["DISPLAY"].encode())
    try:
        yield display
    finally:
        _x11.XCloseDisplay(display)  # flushes


def ask_to_close(window: int) -> None:
    with _display() as display:
        event = _Event()
        event.message.type = _CLIENT_MESSAGE
        event.message.window = window
        event.message.message_type = _x11.XInternAtom(display, b"WM_PROTOCOLS", 0)
        event.message.format = 32
        event.message.data[0] = _x11.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
        _x11.XSendEvent(display, window, 0, 0, ctypes.byref(event))


def _keysym(letter: str) -> int:
    return ord(letter) if ord(letter) < 0x100 else 0x01000000 + ord(letter)


def give_keys_to(text: str) -> bool:
    """Puts each letter of the text that no key has on a spare key, for good: a key that is borrowed
    for one stroke may have lost its letter before the program looks. True when a key was added."""
    taken: set[int] = set()  # the display remembers the keys as they were
    with _display() as display:
        for letter in sorted(set(text)):
            if _x11.XKeysymToKeycode(display, _keysym(letter)):
                continue
            spare = next(code for code in range(255, 8, -1)
                         if code not in taken and not _x11.XKeycodeToKeysym(display, code, 0))
            cases = (letter.lower(), letter.upper()) if len(letter.upper()) == len(letter.lower()) == 1 else (letter,) * 2
            symbols = (ctypes.c_ulong * 2)(*map(_keysym, cases))
            _x11.XChangeKeyboardMapping(display, spare, 2, symbols, 1)
            _x11.XFlush(ctypes.c_void_p(display))
            taken.add(spare)
    return bool(taken)


def windows_of(pid: int, title: str = "") -> list[int]:
    """The visible windows of a process, by a pattern of their title."""
    desktop = Desktop.shared()
    try:
        found = desktop.run("xdotool", "search", "--all", "--onlyvisible", "--pid", str(pid), "--name", title)
    except Exception:  # xdotool fails when it finds nothing
        return []
    return [int(line) for line in found.split()]
