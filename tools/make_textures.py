#!/usr/bin/env python3
"""Make the pencil's textures: textures/65500.png, 65501.png, 65502.png and textures/grain.bin under a folder.

usage: make_textures.py FOLDER

The papers are 512 by 512 and tile. Eight texels make a canvas pixel; graphite stays where they are dark. They
are noise of three coarsenesses: a fine tooth, a rough one and a rougher one. The first is stored with a palette,
the others as 8-bit grey. The grain is 40 by 40 bytes, 255 where no graphite lies: a dark irregular speck.
"""
import math
import pathlib
import random
import struct
import sys
import zlib

SIDE = 512
GRAIN = 40


def blur_rows(plane, radius):
    """A box of 2 * radius + 1 values around each, the rows being rings; then rows become columns."""
    width = 2 * radius + 1
    out = []
    for row in plane:
        total = sum(row[-radius:]) + sum(row[:radius + 1])
        line = []
        for x in range(SIDE):
            line.append(total / width)
            total += row[(x + radius + 1) % SIDE] - row[x - radius]
        out.append(line)
    return [list(column) for column in zip(*out)]


def noise(rng, radius):
    """Tiling noise with features about as wide as the blur, of mean 0 and deviation 1."""
    plane = [[rng.random() for _ in range(SIDE)] for _ in range(SIDE)]
    for _ in range(3):
        plane = blur_rows(blur_rows(plane, radius), radius)
    values = [v for row in plane for v in row]
    mean = sum(values) / len(values)
    deviation = math.sqrt(sum((v - mean) ** 2 for v in values) / len(values))
    return [[(v - mean) / deviation for v in row] for row in plane]


def paper(seed, layers, bias, contrast):
    """Sums weighted layers of noise and bends them to 0..255: `bias` lightens, `contrast` hardens the hollows."""
    rng = random.Random(seed)
    planes = [(weight, noise(rng, radius)) for radius, weight in layers]
    scale = math.sqrt(sum(weight ** 2 for weight, _ in planes))
    texels = []
    for y in range(SIDE):
        height = [sum(weight * plane[y][x] for weight, plane in planes) / scale for x in range(SIDE)]
        texels.append(bytes(int(255 / (1 + math.exp(-contrast * (h + bias)))) for h in height))
    return texels


def write_png(path, rows, palette):
    def chunk(tag, data):
        return struct.pack(">I", len(data)) + tag + data + struct.pack(">I", zlib.crc32(tag + data))

    kind = 3 if palette else 0
    greys = chunk(b"PLTE", b"".join(bytes((v, v, v)) for v in range(256))) if palette else b""
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", SIDE, SIDE, 8, kind, 0, 0, 0)) +
                     greys + chunk(b"IDAT", zlib.compress(b"".join(b"\0" + row for row in rows), 9)) +
                     chunk(b"IEND", b""))


def grain():
    """A lump whose edge wanders, darker inside, with a few crumbs: about a third of the bytes are dark."""
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
    write_png(folder / "65500.png", paper(1, [(2, 1.0), (1, 0.6)], 0.2, 1.5), True)
    write_png(folder / "65501.png", paper(2, [(5, 1.0), (2, 0.6)], 0.2, 1.45), False)
    write_png(folder / "65502.png", paper(3, [(9, 1.0), (4, 0.7), (2, 0.4)], 0.2, 1.5), False)
    (folder / "grain.bin").write_bytes(grain())


main()
