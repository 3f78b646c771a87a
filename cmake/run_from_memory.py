#!/usr/bin/env python3
"""Marks a Windows program to run from memory when it lies on a disc or a share: run_from_memory.py PROGRAM.EXE

Windows then reads the whole file at its start, so that the disc may be taken out while the program runs. The linker has
no option for these two bits of the file header.
"""
import pathlib
import struct
import sys

REMOVABLE_RUN_FROM_SWAP = 0x0400
NET_RUN_FROM_SWAP = 0x0800


def checksum(image):
    """The header's checksum of a file whose checksum field is zero: 16-bit words with carry, plus the length."""
    padded = bytes(image) + b"\0" * (len(image) % 2)
    total = sum(struct.unpack(f"<{len(padded) // 2}H", padded))
    while total > 0xFFFF:
        total = (total & 0xFFFF) + (total >> 16)
    return total + len(image)


def mark(image):
    header = struct.unpack_from("<I", image, 0x3C)[0]
    if image[:2] != b"MZ" or image[header:header + 4] != b"PE\0\0":
        raise ValueError("not a Windows program")
    characteristics = header + 4 + 18
    bits = struct.unpack_from("<H", image, characteristics)[0]
    struct.pack_into("<H", image, characteristics, bits | REMOVABLE_RUN_FROM_SWAP | NET_RUN_FROM_SWAP)
    checksum_field = header + 4 + 20 + 64
    struct.pack_into("<I", image, checksum_field, 0)
    struct.pack_into("<I", image, checksum_field, checksum(image))


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    program = pathlib.Path(sys.argv[1])
    content = bytearray(program.read_bytes())
    mark(content)
    program.write_bytes(content)
