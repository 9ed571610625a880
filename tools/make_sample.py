#!/usr/bin/env python3
"""Draw resources/samples/sample.png: an inked branch with leaves and a bird, on white paper.

The picture is made of strokes with a width profile, as a pen would leave them, so that a session shows
a realistic picture.
"""
import math
import pathlib
import random
import struct
import zlib

WIDTH, HEIGHT = 1200, 900
OUT = pathlib.Path(__file__).resolve().parent.parent / "resources" / "samples" / "sample.png"

ink = [bytearray(WIDTH) for _ in range(HEIGHT)]
tint = [bytearray(WIDTH) for _ in range(HEIGHT)]


def dab(plane, x, y, radius):
    for v in range(max(0, int(y - radius - 1)), min(HEIGHT, int(y + radius + 2))):
        row = plane[v]
        for u in range(max(0, int(x - radius - 1)), min(WIDTH, int(x + radius + 2))):
            cover = radius - math.hypot(u - x, v - y) + 0.5
            if cover > 0:
                row[u] = max(row[u], min(255, int(cover * 255)))


def bezier(p, t):
    s = 1 - t
    w = (s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t)
    return sum(a * b[0] for a, b in zip(w, p)), sum(a * b[1] for a, b in zip(w, p))


def stroke(points, width, taper=(0.1, 0.6), plane=ink):
    steps = 40 + int(sum(math.dist(a, b) for a, b in zip(points, points[1:])) * 1.6)
    for i in range(steps + 1):
        t = i / steps
        grow = min(1, t / taper[0]) if taper[0] else 1
        fade = min(1, (1 - t) / taper[1]) if taper[1] else 1
        radius = width / 2 * math.sqrt(grow * fade)
        if radius > 0.15:
            dab(plane, *bezier(points, t), max(0.4, radius))


def turned(points, origin, angle, scale):
    c, s = math.cos(angle) * scale, math.sin(angle) * scale
    return [(origin[0] + x * c - y * s, origin[1] + x * s + y * c) for x, y in points]


def leaf(origin, angle, size, rng):
    bend = rng.uniform(-0.25, 0.25)
    outline = [(0, 0), (0.25, -0.42 + bend), (0.7, -0.30 + bend), (1, bend * 0.5)]
    under = [(0, 0), (0.3, 0.36 + bend), (0.75, 0.22 + bend), (1, bend * 0.5)]
    for t in range(0, 100):
        top, low = bezier(outline, t / 100), bezier(under, t / 100)
        stroke(turned([top, top, low, low], origin, angle, size), 3, (0, 0), tint)
    stroke(turned(outline, origin, angle, size), 4.5, (0.15, 0.5))
    stroke(turned(under, origin, angle, size), 6.5, (0.1, 0.7))
    stroke(turned([(0, 0), (0.3, bend * 0.2), (0.6, bend * 0.5), (0.93, bend * 0.5)], origin, angle, size), 3, (0, 0.9))
    for k in range(2, 7):
        x = k / 8
        for side in (-1, 1):
            vein = [(x, bend * 0.35), (x + 0.06, side * 0.08 + bend * 0.4), (x + 0.1, side * 0.15 + bend * 0.5),
                    (x + 0.13, side * 0.19 * (1.1 - x) + bend * 0.55)]
            stroke(turned(vein, origin, angle, size), 1.7, (0, 0.9))


def bird(x, y):
    def at(points):
        return turned(points, (x, y), 0, 1)
    stroke(at([(-150, 10), (-90, -110), (20, -150), (70, -110)]), 7, (0.15, 0.2))
    stroke(at([(70, -110), (110, -80), (100, -20), (60, 20)]), 6, (0.1, 0.3))
    stroke(at([(60, 20), (10, 75), (-80, 70), (-160, 40)]), 9, (0.15, 0.5))
    stroke(at([(-150, 10), (-230, 50), (-290, 75), (-330, 78)]), 7, (0.1, 0.5))
    stroke(at([(-160, 40), (-220, 75), (-270, 92), (-320, 96)]), 5, (0.1, 0.6))
    stroke(at([(104, -70), (130, -62), (145, -55), (150, -50)]), 5, (0.0, 0.5))
    stroke(at([(150, -50), (135, -45), (120, -42), (104, -44)]), 4, (0.2, 0.3))
    for k in range(6):
        stroke(at([(-20 - k * 18, -60 + k * 16), (-70 - k * 16, -50 + k * 17), (-110 - k * 15, -10 + k * 10),
                   (-150 - k * 14, 30 + k * 6)]), 4.5 - k * 0.4, (0.1, 0.8))
    for k in range(9):
        stroke(at([(60 - k * 14, 5 + k * 3), (54 - k * 14, 14 + k * 3), (46 - k * 14, 20 + k * 3),
                   (38 - k * 14, 22 + k * 3)]), 2.2, (0.1, 0.7))
    dab(ink, x + 62, y - 88, 7.5)
    for dx in (-30, -2):
        stroke(at([(dx, 62), (dx - 2, 80), (dx + 4, 100), (dx + 8, 116)]), 4.5, (0, 0.2))


def main():
    rng = random.Random(7)
    stroke([(-20, 640), (300, 560), (700, 600), (1230, 420)], 20, (0, 0.9))
    stroke([(-20, 662), (300, 585), (700, 612), (1230, 424)], 6, (0, 0.9))
    stroke([(420, 585), (520, 500), (560, 380), (640, 300)], 9, (0.05, 0.9))
    stroke([(735, 556), (850, 640), (960, 690), (1080, 720)], 8, (0.05, 0.9))
    for x in range(20, 700, 37):
        y = 640 - x * 0.08 + rng.uniform(-6, 8)
        stroke([(x, y), (x + 12, y - 4), (x + 22, y - 5), (x + 34, y - 4)], 2, (0.2, 0.7))
    for origin, angle, size in [((640, 300), -1.0, 190), ((575, 380), -0.1, 170), ((510, 480), 0.5, 120),
                                ((1080, 720), 0.3, 160), ((960, 688), 1.3, 150), ((900, 660), -0.4, 130),
                                ((980, 500), -1.1, 150), ((1090, 465), 0.5, 120), ((120, 615), 1.2, 170)]:
        leaf(origin, angle, size, rng)
    bird(330, 462)
    rows = bytearray()
    for ink_row, tint_row in zip(ink, tint):
        rows.append(0)
        for u in range(WIDTH):
            paper = [255 - tint_row[u] * c // 255 for c in (58, 28, 74)]
            rows += bytes(p + (k - p) * ink_row[u] // 255 for p, k in zip(paper, (28, 26, 40)))
    def chunk(tag, data):
        return struct.pack(">I", len(data)) + tag + data + struct.pack(">I", zlib.crc32(tag + data))
    OUT.parent.mkdir(parents=True, exist_ok=True)
    OUT.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", WIDTH, HEIGHT, 8, 2, 0, 0, 0)) +
                    chunk(b"IDAT", zlib.compress(bytes(rows), 9)) + chunk(b"IEND", b""))


main()
