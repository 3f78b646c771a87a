#!/usr/bin/env python3
"""Turns a virtual screen into PNG files.

    screenshots.py FRAMEBUFFER FILE.png      one picture of the whole screen
    screenshots.py FRAMEBUFFER FOLDER        answers requests until it is ended

A program on that screen asks by making FOLDER/NAME.request; when FOLDER/NAME.png is there, the request is gone. The
request may hold "left top width height" for a part of the screen. FRAMEBUFFER is the file that Xvfb keeps in its -fbdir.
"""
import pathlib
import struct
import sys
import time
import zlib


def read_screen(path):
    """Width, height and rows of RGB bytes. The file is an XWD dump: 25 words of header, colours, then pixels."""
    data = pathlib.Path(path).read_bytes()
    header = struct.unpack(">25I", data[:100])
    size, width, height, line, colours = header[0], header[4], header[5], header[12], header[19]
    start = size + colours * 12
    rows = []
    for y in range(height):
        pixels = data[start + y * line:start + y * line + width * 4]
        row = bytearray(width * 3)
        row[0::3], row[1::3], row[2::3] = pixels[2::4], pixels[1::4], pixels[0::4]
        rows.append(bytes(row))
    return width, height, rows


def cut(screen, area):
    width, height, rows = screen
    left, top = max(0, area[0]), max(0, area[1])
    right, bottom = min(width, area[0] + area[2]), min(height, area[1] + area[3])
    return right - left, bottom - top, [row[left * 3:right * 3] for row in rows[top:bottom]]


def write_png(path, screen):
    width, height, rows = screen

    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))

    png = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
    png += chunk(b"IDAT", zlib.compress(b"".join(b"\0" + row for row in rows), 9)) + chunk(b"IEND", b"")
    unfinished = path.with_suffix(".part")
    unfinished.write_bytes(png)
    unfinished.replace(path)


def answer(framebuffer, request):
    screen = read_screen(framebuffer)
    words = request.read_text().split()
    if len(words) == 4:
        screen = cut(screen, [int(word) for word in words])
    write_png(request.with_suffix(".png"), screen)
    request.unlink()


def main(framebuffer, target):
    if target.suffix == ".png":
        write_png(target, read_screen(framebuffer))
        return
    target.mkdir(parents=True, exist_ok=True)
    while True:
        for request in target.glob("*.request"):
            answer(framebuffer, request)
        time.sleep(0.02)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], pathlib.Path(sys.argv[2]))
