#!/usr/bin/env python3
"""Draws the program's icon, an open book that is brought down onto a tray, and writes it as an .ico file of several sizes.

    make_icon.py FILE.ico
"""
import math
import struct
import sys
import zlib

SIZES = [16, 20, 24, 32, 40, 48, 64, 96, 256]
LINES = 8  # scan lines per pixel row; across a row coverage is exact


def rounded(left, top, right, bottom, radius):
    points = []
    for x, y, start in ((right - radius, top + radius, -90), (right - radius, bottom - radius, 0),
                        (left + radius, bottom - radius, 90), (left + radius, top + radius, 180)):
        for step in range(9):
            angle = math.radians(start + step * 11.25)
            points.append((x + radius * math.cos(angle), y + radius * math.sin(angle)))
    return points


def page(side):
    """One leaf of the book; side -1 is the left one, 1 the right one. Units are 1/64 of the icon."""
    outer, inner = 32 + side * 21, 32 + side * 1.5
    top = [(inner + (outer - inner) * t, 20 - 4.5 * math.sin(math.pi * (1 - 0.55 * t)))
           for t in [i / 12 for i in range(13)]]
    bottom = [(x, y + 27) for x, y in reversed(top)]
    return top + bottom


ARROW = [(28, 25), (36, 25), (36, 37), (43, 37), (32, 49), (21, 37), (28, 37)]

# Shapes from back to front, each with its colour at the top and at the bottom.
SHAPES = [
    (rounded(1, 1, 63, 63, 13), (64, 156, 232), (24, 98, 182)),
    (page(-1), (255, 255, 255), (232, 240, 249)),
    (page(1), (247, 251, 255), (221, 233, 246)),
    (rounded(10, 51, 54, 55.5, 2.2), (255, 255, 255), (255, 255, 255)),
    (ARROW, (255, 183, 46), (246, 146, 20)),
]


def coverage(polygon, size):
    """For each pixel, how much of it the polygon covers, 0 to 1."""
    scale = size / 64
    points = [(x * scale, y * scale) for x, y in polygon]
    edges = list(zip(points, points[1:] + points[:1]))
    cover = [[0.0] * size for _ in range(size)]
    for line in range(size * LINES):
        y = (line + 0.5) / LINES
        crossings = sorted(x1 + (y - y1) * (x2 - x1) / (y2 - y1)
                           for (x1, y1), (x2, y2) in edges if (y1 <= y) != (y2 <= y))
        row = cover[line // LINES]
        for start, end in zip(crossings[::2], crossings[1::2]):
            for x in range(max(0, int(start)), min(size - 1, int(end)) + 1):
                row[x] += max(0.0, min(end, x + 1) - max(start, x)) / LINES
    return cover


def draw(size):
    """Rows of [red, green, blue, alpha], 0 to 1 each."""
    image = [[[0.0, 0.0, 0.0, 0.0] for _ in range(size)] for _ in range(size)]
    for polygon, top, bottom in SHAPES:
        cover = coverage(polygon, size)
        for y in range(size):
            part = y / max(1, size - 1)
            colour = [(a + (b - a) * part) / 255 for a, b in zip(top, bottom)]
            for x in range(size):
                share = min(1.0, cover[y][x])
                if share > 0:
                    pixel = image[y][x]
                    alpha = share + pixel[3] * (1 - share)
                    for c in range(3):
                        pixel[c] = (colour[c] * share + pixel[c] * pixel[3] * (1 - share)) / alpha
                    pixel[3] = alpha
    return image


def as_bytes(pixel, order):
    return bytes(round(255 * pixel[c]) for c in order)


def bitmap(image):
    size = len(image)
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0)
    pixels = b"".join(as_bytes(pixel, (2, 1, 0, 3)) for row in reversed(image) for pixel in row)
    mask_line = (size + 31) // 32 * 4
    return header + pixels + b"\0" * (mask_line * size)


def png(image):
    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))

    size = len(image)
    rows = b"".join(b"\0" + b"".join(as_bytes(pixel, (0, 1, 2, 3)) for pixel in row) for row in image)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def main(path):
    pictures = [(png if size == 256 else bitmap)(draw(size)) for size in SIZES]
    icon = struct.pack("<HHH", 0, 1, len(SIZES))
    offset = 6 + 16 * len(SIZES)
    for size, picture in zip(SIZES, pictures):
        icon += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(picture), offset)
        offset += len(picture)
    with open(path, "wb") as file:
        file.write(icon + b"".join(pictures))


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(sys.argv[1])
