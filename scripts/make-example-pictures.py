#!/usr/bin/env python3
"""Draws the small pictures of examples/ (run once by a maintainer; the PNGs are committed)."""
import struct
import zlib

FONT = {  # 5 x 7 capitals, one string per row
    'R': ["1111.", "1...1", "1...1", "1111.", "1.1..", "1..1.", "1...1"],
    'A': [".111.", "1...1", "1...1", "11111", "1...1", "1...1", "1...1"],
    'S': [".1111", "1....", "1....", ".111.", "....1", "....1", "1111."],
    'T': ["11111", "..1..", "..1..", "..1..", "..1..", "..1..", "..1.."],
    'E': ["11111", "1....", "1....", "1111.", "1....", "1....", "11111"],
    'M': ["1...1", "11.11", "1.1.1", "1.1.1", "1...1", "1...1", "1...1"],
    'I': [".111.", "..1..", "..1..", "..1..", "..1..", "..1..", ".111."],
    'L': ["1....", "1....", "1....", "1....", "1....", "1....", "11111"],
}


def write_png(path, w, h, rows):
    raw = b"".join(b"\x00" + bytes(v for px in row for v in px) for row in rows)

    def chunk(kind, data):
        c = kind + data
        return struct.pack(">I", len(data)) + c + struct.pack(">I", zlib.crc32(c) & 0xFFFFFFFF)

    png = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", w, h, 8, 2, 0, 0, 0))
    png += chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b"")
    with open(path, "wb") as f:
        f.write(png)


def logo():
    w, h = 128, 64
    px = [[(255, 255, 255)] * w for _ in range(h)]
    black = (0, 0, 0)
    for x in range(w):
        px[0][x] = px[h - 1][x] = black
    for y in range(h):
        px[y][0] = px[y][w - 1] = black
    # A filled disc on the left.
    for y in range(h):
        for x in range(w):
            if (x - 20) ** 2 + (y - 32) ** 2 <= 14 ** 2:
                px[y][x] = black
    # The name, scaled by 1, beside it.
    x0, y0 = 42, 28
    for i, ch in enumerate("RASTERMILL"):
        for r, line in enumerate(FONT[ch]):
            for c, bit in enumerate(line):
                if bit == "1":
                    px[y0 + r][x0 + i * 8 + c] = black
    write_png("examples/logo.png", w, h, px)


if __name__ == "__main__":
    logo()
