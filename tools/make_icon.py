#!/usr/bin/env python3
"""make_icon.py SVG ICO [RSVG_CONVERT]: an icon file for Windows in the sizes that its desktop shows."""

import struct
import subprocess
import sys

SIZES = (16, 20, 24, 32, 40, 48, 64, 128, 256)


def main(svg, ico, tool="rsvg-convert"):
    pictures = [subprocess.run([tool, "-w", str(size), "-h", str(size), svg], check=True, stdout=subprocess.PIPE).stdout
                for size in SIZES]
    at = 6 + 16 * len(SIZES)
    entries = b""
    for size, png in zip(SIZES, pictures):
        # A side of 256 is written as 0; 1 plane of 32 bits.
        entries += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(png), at)
        at += len(png)
    with open(ico, "wb") as file:
        file.write(struct.pack("<HHH", 0, 1, len(SIZES)) + entries + b"".join(pictures))


main(*sys.argv[1:])
