"""Covers for those to whom only their shape and colour matter."""

import struct
import zlib


def picture(width: int = 300, height: int = 300, colour: tuple[int, int, int] = (180, 70, 50)) -> bytes:
    """A PNG that is all of one colour."""
    def chunk(kind: bytes, data: bytes) -> bytes:
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = (b"\0" + bytes(colour) * width) * height
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)) \
        + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")
