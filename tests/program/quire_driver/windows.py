"""What the driver asks of the X server beside keys and mouse: that a window close, as its title bar would
ask it, what a window tells its desktop, and that letters beyond the keyboard's own have a key."""

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
_x11.XGetWindowProperty.argtypes = [
    ctypes.c_void_p, ctypes.c_ulong, ctypes.c_ulong, ctypes.c_long, ctypes.c_long, ctypes.c_int, ctypes.c_ulong,
    ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(ctypes.c_int), ctypes.POINTER(ctypes.c_ulong),
    ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(ctypes.c_void_p)]
_x11.XFree.argtypes = [ctypes.c_void_p]
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


def _property(window: int, name: str) -> list[int]:
    """The numbers, or the bytes, that a window has under that name; none when it has nothing there."""
    kind, width, count, left, data = (
        ctypes.c_ulong(), ctypes.c_int(), ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_void_p())
    with _display() as display:
        _x11.XGetWindowProperty(
            display, window, _x11.XInternAtom(display, name.encode(), 0), 0, 1 << 20, 0, 0, ctypes.byref(kind),
            ctypes.byref(width), ctypes.byref(count), ctypes.byref(left), ctypes.byref(data))
        item = {8: ctypes.c_ubyte, 16: ctypes.c_ushort, 32: ctypes.c_ulong}.get(width.value)
        found = list((item * count.value).from_address(data.value)) if item and data.value else []
        _x11.XFree(data)
    return found


def icons_of(window: int) -> list[tuple[int, int, list[int]]]:
    """The icons that a window shows its desktop: width, height, and the pixels row by row as 0xAARRGGBB."""
    numbers, icons = _property(window, "_NET_WM_ICON"), []
    while numbers:
        width, height = numbers[:2]
        icons.append((width, height, [pixel & 0xffffffff for pixel in numbers[2:2 + width * height]]))
        numbers = numbers[2 + width * height:]
    return icons


def class_of(window: int) -> list[str]:
    """By which a desktop finds a window's menu entry: the name of the instance, and that of the class."""
    return bytes(_property(window, "WM_CLASS")).decode().split("\0")[:2]


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
