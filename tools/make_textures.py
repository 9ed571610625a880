#!/usr/bin/env python3
"""Make the pencil's textures: textures/65500.png, 65501.png, 65502.png and textures/grain.bin under a folder.

usage: make_textures.py FOLDER

The papers are 512 by 512 and tile. Eight texels make a canvas pixel; graphite sticks where they are dark. They
are noise of three grades: fine, rough and rougher. The first is stored with a palette,
the others as 8-bit grey. The grain is 40 by 40 bytes, 255 where no graphite lies: a dark irregular speck.
"""
import itertools
import math
import pathlib
import random
import struct
import sys
import zlib

SIDE = 512
GRAIN = 40
LIGHT = 0.5  # how far papers are lighter than grey, in deviations of their noise
LIGHTEST = 220  # the hills take graphite too, or the highest ones stay white in dark shading and show the period
CONTRAST = 2.3  # how hard hills and hollows part


def blur_rows(plane, radius):
    """Box filter of 2 * radius + 1 values with wrapped rows; then rows become columns."""
    width = 2 * radius + 1
    out = []
    for row in plane:
        sums = list(itertools.accumulate(row[-radius:] + row + row[:radius], initial=0))
        out.append([(end - start) / width for start, end in zip(sums, sums[width:])])
    return [list(column) for column in zip(*out)]


def blur(plane, radius):
    """Three box filters in each direction, nearly a Gaussian; the plane tiles."""
    for _ in range(3):
        plane = blur_rows(blur_rows(plane, radius), radius)
    return plane


def combine(function, *planes):
    return [list(map(function, *rows)) for rows in zip(*planes)]


def normal(plane):
    """Normalizes the plane to mean 0 and deviation 1."""
    values = [v for row in plane for v in row]
    mean = sum(values) / len(values)
    deviation = math.sqrt(sum((v - mean) ** 2 for v in values) / len(values))
    return combine(lambda v: (v - mean) / deviation, plane)


def noise(rng, radius):
    """Tiling band-passed noise of mean 0 and deviation 1: features about as wide as the blur, and hardly
    any wider, which would make the repetition of the tile visible."""
    fine = blur([[rng.random() for _ in range(SIDE)] for _ in range(SIDE)], radius)
    return normal(combine(lambda v, wide: v - wide, fine, blur(fine, 2 * radius)))


def paper(seed, layers):
    """Sums weighted layers of noise, the coarsest first, and maps them to 0..LIGHTEST. Every area takes the same
    amount of graphite, with the same contrast."""
    rng = random.Random(seed)
    coarse = layers[0][0]
    height = normal(combine(lambda *v: sum(v), *(combine(lambda v, w=weight: v * w, noise(rng, radius))
                                                  for radius, weight in layers)))
    power = blur(combine(lambda v: v * v, height), coarse * 3 // 2)
    height = normal(combine(lambda v, p: v / math.sqrt(p), height, power))
    texels = combine(lambda v: LIGHTEST / (1 + math.exp(-CONTRAST * (v + LIGHT))), height)
    mean = sum(map(sum, texels)) / SIDE ** 2
    for _ in range(2):  # what is cut off at both ends tilts the level again
        level = blur(texels, 2 * coarse)
        texels = combine(lambda v, around: min(max(v - around + mean, 0), LIGHTEST), texels, level)
    return [bytes(map(int, row)) for row in texels]


def write_png(path, rows, palette):
    def chunk(tag, data):
        return struct.pack(">I", len(data)) + tag + data + struct.pack(">I", zlib.crc32(tag + data))

    kind = 3 if palette else 0
    greys = chunk(b"PLTE", b"".join(bytes((v, v, v)) for v in range(256))) if palette else b""
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", SIDE, SIDE, 8, kind, 0, 0, 0)) +
                     greys + chunk(b"IDAT", zlib.compress(b"".join(b"\0" + row for row in rows), 9)) +
                     chunk(b"IEND", b""))


def grain():
    """An irregular blob, darker inside, with a few specks: about a third of the bytes are dark."""
    rng = random.Random(5)
    waves = [(k, rng.uniform(-1, 1) * 2.6 / k ** 0.7, rng.uniform(0, 2 * math.pi)) for k in range(2, 9)]
    crumbs = [(rng.uniform(4, 36), rng.uniform(4, 36), rng.uniform(0.8, 2.2)) for _ in range(14)]
    centre = (GRAIN - 1) / 2
    out = bytearray()
    for y in range(GRAIN):
        for x in range(GRAIN):
            dx, dy = x - centre, y - centre
            angle = math.atan2(dy, dx)
            edge = 11.8 + sum(a * math.sin(k * angle + phase) for k, a, phase in waves)
            depth = edge - math.hypot(dx, dy)
            dark = min(max(depth / 3.0, 0), 1) * rng.uniform(0.72, 1)
            for cx, cy, size in crumbs:
                dark = max(dark, min(max(size - math.hypot(x - cx, y - cy), 0), 1) * 0.6)
            out.append(255 - int(dark * 255))
    return bytes(out)


def main():
    folder = pathlib.Path(sys.argv[1]) / "textures"
    folder.mkdir(parents=True, exist_ok=True)
    write_png(folder / "65500.png", paper(1, [(3, 1.0), (1, 0.6)]), True)
    write_png(folder / "65501.png", paper(2, [(5, 1.0), (2, 0.6)]), False)
    write_png(folder / "65502.png", paper(3, [(7, 1.0), (3, 0.7)]), False)
    (folder / "grain.bin").write_bytes(grain())


main()
