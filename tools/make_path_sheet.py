#!/usr/bin/env python3
"""Makes a project file with every kind of vector stroke: make_path_sheet.py FILE

From the top: ends, widths, corners, loops and bends, cuts, waves, hands, filled shapes, dots. The format is that of
docs/project-file.md; all random numbers are seeded.
"""
import math
import random
import struct
import sys

WIDTH, HEIGHT = 1200, 1560
SHARP, ROUND, FLAT = 1, 2, 3
ONE = 0x10000


def chunk(tag, version, payload):
    return tag.encode() + struct.pack(">II", version, len(payload)) + payload


def ints(*values):
    return struct.pack(">%di" % len(values), *(v - (1 << 32) if v >= 1 << 31 else v for v in values))


def units(p):
    return round(p[0] * 8), round(p[1] * 8)


def anchor(at, back=None, fore=None):
    payload = ints(*units(at))
    for handle in (back, fore):
        # -1 means no handle, so a handle's coordinate of -1 is changed.
        moved = tuple(0 if n == -1 else n for n in units(handle)) if handle else (0, 0)
        payload += ints(*(moved if moved != (0, 0) else (-1, -1)))
    return chunk("PCPA", 0, payload)


def points(anchors):
    return chunk("PSTM", 0, ints(len(anchors)) + b"".join(anchor(*a) for a in anchors))


def term(end):
    kind, values = end[0], end[1:]
    if kind == SHARP:
        return chunk("POTS", 0, b"")
    if kind == ROUND:
        return chunk("POTR", 0, ints(round(values[0] * ONE) if values else ONE))
    left, right, angle = values if values else (1, 1, 90)
    return chunk("POTF", 0, ints(round(left * ONE), round(right * ONE), angle))


def stroke(anchors, width=4.0, begin=(SHARP,), end=(SHARP,), widths=(), cuts=(), wave=None):
    """anchors: (position, back, fore); width: half-width in pixels; widths: (t, left, right); cuts: (t, angle)."""
    payload = ints(round(width * 8), len(widths), len(cuts), begin[0], end[0])
    step, strength = wave if wave else (4, 0.5)
    payload += bytes([1 if wave else 0]) + ints(round(step * 8), round(strength * 8))
    payload += points(anchors)
    for t, left, right in widths:
        payload += chunk("PCPW", 0, ints(round(t * ONE), round(left * ONE), round(right * ONE)))
    for t, angle in cuts:
        payload += chunk("PCPT", 0, ints(round(t * ONE), angle))
    return chunk("POOP", 1, payload + term(begin) + term(end))


def shape(anchors):
    return chunk("POCP", 0, points(anchors))


def smooth(positions, closed=False):
    """Anchors through positions with handles parallel to the neighbours' chord, as in a fitted line."""
    n = len(positions)
    anchors = []
    for i, p in enumerate(positions):
        before = positions[(i - 1) % n] if closed or i > 0 else p
        behind = positions[(i + 1) % n] if closed or i + 1 < n else p
        direction = (behind[0] - before[0], behind[1] - before[1])
        length = math.hypot(*direction) or 1
        def handle(other, sign):
            reach = math.hypot(other[0] - p[0], other[1] - p[1]) / 3
            return (sign * direction[0] / length * reach, sign * direction[1] / length * reach)
        anchors.append((p, handle(before, -1), handle(behind, 1)))
    return anchors


def corner(positions):
    return [(p, None, None) for p in positions]


def line(x, y, length):
    return [((x, y), None, (length / 3, 0)), ((x + length, y), (-length / 3, 0), None)]


def arch(x, y, w, h):
    return [((x, y), None, (w * 0.1, -h * 1.3)), ((x + w, y), (-w * 0.1, -h * 1.3), None)]


def rows():
    paths = []
    # Ends: sharp, round of several reach, flat at several angles, on a line and on an arch.
    ends = [(SHARP,), (ROUND,), (ROUND, 0.4), (ROUND, 2.0), (FLAT,), (FLAT, 1, 1, 60), (FLAT, 1, 1, 120),
            (FLAT, 1.6, 1.6, 90), (FLAT, 0.3, 0.3, 90)]
    for i, end in enumerate(ends):
        x = 30 + 130 * i
        paths.append(stroke(line(x, 40, 90), 9, end, end))
        paths.append(stroke(arch(x, 120, 90, 45), 7, end, end))
    # Widths: bulge, taper, one side only, two marks in a segment, down to nothing, comb, thick to thin in a bend.
    y = 170
    profiles = [
        [(0.5, 2.5, 2.5)], [(0, 3, 3), (1, 0.2, 0.2)], [(0.5, 3, 0.2)], [(0.4, 0.4, 0.4), (0.5, 3, 3), (0.6, 0.4, 0.4)],
        [(0.2, 2, 2), (0.5, 0, 0), (0.8, 2, 2)], [(t / 10, 0.5 + 2 * (t % 2), 0.5 + 2 * (t % 2)) for t in range(1, 10)],
        [(0.2, 0.3, 3), (0.8, 3, 0.3)], [(0.49, 0.3, 0.3), (0.51, 3, 3)],
    ]
    for i, widths in enumerate(profiles):
        x = 30 + 146 * i
        paths.append(stroke(line(x, y, 120), 4, (ROUND,), (ROUND,), widths))
        paths.append(stroke(arch(x, y + 75, 120, 40), 4, (SHARP,), (SHARP,), widths))
        s_curve = [((x, y + 110), None, (60, -40)), ((x + 60, y + 115), (-15, -25), (15, 25)),
                   ((x + 120, y + 120), (-60, 40), None)]
        paths.append(stroke(s_curve, 4, (SHARP,), (SHARP,), [(2 * t, l, r) for t, l, r in widths]))
    # Corners: from blunt to a needle, thin and thick.
    y = 330
    for i, angle in enumerate((150, 120, 90, 60, 40, 25, 12)):
        for j, width in enumerate((3, 8)):
            x, top = 90 + 160 * i, y + 95 * j
            half = math.radians(angle / 2)
            leg = 70
            paths.append(stroke(corner([(x - math.sin(half) * leg, top + math.cos(half) * leg), (x, top),
                                        (x + math.sin(half) * leg, top + math.cos(half) * leg)]), width,
                                (FLAT,), (FLAT,), [(1, 1, 1)]))
    zigzag = [(30 + 20 * k, 525 + (k % 2) * 28) for k in range(28)]
    paths.append(stroke(corner(zigzag), 3, (ROUND,), (ROUND,)))
    staircase = [(620 + 20 * ((k + 1) // 2), 588 - 6 * (k // 2)) for k in range(30)]
    paths.append(stroke(corner(staircase), 2.5, (FLAT,), (FLAT,)))
    mixed = [((950, 560), None, (20, -60)), ((1010, 530), (-40, 0), (0, 40)), ((1060, 560), (-10, 20), (30, -50)),
             ((1150, 530), (-20, 30), None)]
    paths.append(stroke(mixed, 6, (SHARP,), (ROUND,)))
    # Loops and tight bends.
    y = 660
    for i, width in enumerate((2, 5, 9, 14)):
        x = 40 + 290 * i
        loop = [((x, y), None, (70, 0)), ((x + 110, y - 20), (25, 40), (-25, -40)), ((x + 70, y - 20), (-5, -50), (5, 50)),
                ((x + 200, y), (-70, 20), None)]
        paths.append(stroke(loop, width, (SHARP,), (SHARP,), [(0.5, 0.6, 0.6), (1.5, 1.3, 1.3), (2.5, 0.6, 0.6)]))
    for i, radius in enumerate((30, 18, 10, 6, 3)):
        x, top = 60 + 230 * i, 720
        k = radius * 4 / 3
        hairpin = [((x, top), None, (30, 0)), ((x + 110, top), (-40, 0), (k, 0)),
                   ((x + 110, top + 2 * radius), (k, 0), (-40, 0)), ((x, top + 2 * radius), (30, 0), None)]
        paths.append(stroke(hairpin, 7, (FLAT,), (FLAT,)))
    spiral = [(1120 + (3 + 1.1 * k) * math.cos(k * 0.7), 830 + (3 + 1.1 * k) * math.sin(k * 0.7)) for k in range(42)]
    paths.append(stroke(smooth(spiral), 3, (SHARP,), (SHARP,), [(20, 1.8, 1.8)]))
    # Cuts: a gap, several, slanted, at a bend, an odd one.
    y = 830
    cuts = [[(0.4, 90), (0.6, 90)], [(0.2, 90), (0.3, 90), (0.6, 90), (0.7, 90)], [(0.4, 60), (0.6, 60)],
            [(0.4, 45), (0.6, 135)], [(0.7, 90)]]
    for i, c in enumerate(cuts):
        x = 30 + 200 * i
        paths.append(stroke(line(x, y, 170), 8, (ROUND,), (ROUND,), (), c))
        paths.append(stroke(arch(x, y + 80, 170, 40), 6, (SHARP,), (SHARP,), [(0.5, 1.6, 1.6)], c))
    # Waves: none, then wider and denser.
    y = 960
    waves = [None, (16, 1), (8, 1), (4, 1), (4, 2.5), (2, 1)]
    for i, wave in enumerate(waves):
        x = 30 + 195 * i
        paths.append(stroke(line(x, y, 165), 5, (ROUND,), (ROUND,), (), (), wave))
        paths.append(stroke(arch(x, y + 65, 165, 30), 4, (SHARP,), (SHARP,), [(0.5, 1.5, 1.5)], (), wave))
        paths.append(stroke(line(x, y + 85, 165), 1.2, (SHARP,), (SHARP,), (), (), wave))
    # Hand-drawn lines, as fitted to noisy pen traces.
    hand = random.Random(7)
    for k in range(9):
        x, top = 30 + 130 * k, 1140
        steps = 5 + k
        at = [(x + 100 * s / steps + hand.gauss(0, 2 + k), top + 60 * math.sin(s / steps * 6 + k) + hand.gauss(0, 3))
              for s in range(steps + 1)]
        pressure = [(t + 0.5, 0.5 + hand.random(), 0.5 + hand.random()) for t in range(1, steps - 1)]
        paths.append(stroke(smooth(at), 3 + k % 3 * 1.5, (SHARP,), (SHARP,), pressure))
    for k in range(40):
        x, top = 30 + 12 * k, 1250
        paths.append(stroke([((x, top + hand.gauss(0, 3)), None, (8, 30)),
                             ((x + 30 + hand.gauss(0, 2), top + 80 + hand.gauss(0, 6)), (-2, -25), None)], 1.8,
                            (ROUND,), (SHARP,), [(0.25, 1, 1)]))
    hair = random.Random(11)
    for k in range(26):
        a = [(560 + 8 * k, 1250 + hair.gauss(0, 2))]
        for s in range(1, 5):
            a.append((a[0][0] + 14 * math.sin(s + k * 0.2) + hair.gauss(0, 1), a[0][1] + 24 * s))
        paths.append(stroke(smooth(a), 1.6, (SHARP,), (SHARP,), [(1.2, 1.6, 1.6)]))
    eye = [((830, 1300), None, (25, -55)), ((910, 1262), (-40, 0), (40, 0)), ((980, 1305), (-15, -35), None)]
    paths.append(stroke(eye, 4, (SHARP,), (SHARP,), [(0.5, 0.5, 1.2), (1, 0.7, 2.2), (1.6, 0.4, 1.0)]))
    iris = [(905 + 22 * math.cos(math.radians(a)), 1300 + 26 * math.sin(math.radians(a))) for a in range(0, 360, 60)]
    paths.append(stroke(smooth(iris + iris[:1]), 1.5, (SHARP,), (SHARP,), [(2, 1.8, 0.6)]))
    # Filled shapes: a blob, a star whose middle winds twice, a ring drawn against itself, a hairline wedge.
    y = 1420
    paths.append(shape(smooth([(60, y), (120, y - 40), (200, y), (180, y + 60), (90, y + 50)], True)))
    star = [(320 + 60 * math.sin(k * 4 * math.pi / 5), y + 10 - 60 * math.cos(k * 4 * math.pi / 5)) for k in range(5)]
    paths.append(shape(corner(star)))
    outer = [(500 + 60 * math.cos(a * math.pi / 4), y + 10 + 60 * math.sin(a * math.pi / 4)) for a in range(8)]
    inner = [(500 + 30 * math.cos(-a * math.pi / 4), y + 10 + 30 * math.sin(-a * math.pi / 4)) for a in range(8)]
    paths.append(shape(smooth(outer + outer[:1]) + smooth(inner + inner[:1])))
    paths.append(shape(corner([(600, y - 40), (760, y - 38), (600, y - 36)])))
    for k in range(9):
        size = 0.5 + k
        paths.append(shape(smooth([(620 + 22 * k, y), (620 + 22 * k + size, y + size), (620 + 22 * k, y + 2 * size),
                                   (620 + 22 * k - size, y + size)], True)))
    # Strokes hardly longer than wide, and strokes of a single point.
    for k in range(10):
        paths.append(stroke(line(620 + 30 * k, y + 50, 1 + 2 * k), 5, (ROUND,), (ROUND,)))
        paths.append(stroke(line(620 + 30 * k, y + 80, 1 + 2 * k), 5, (SHARP,), (SHARP,)))
    paths.append(stroke([((960, y), None, None)], 6, (ROUND,), (ROUND,)))
    return paths


def base(name, children=()):
    units16 = name.encode("utf-16-be")
    return chunk("LAYB", 1, ints(len(children), len(units16) // 2) + units16 + b"\1\xff" + ints(0) +
                 b"".join(children))


def paper():
    """A raster layer of white tiles."""
    side = 96
    columns, lines = -(-WIDTH // side), -(-HEIGHT // side)
    sizes = ints(WIDTH, HEIGHT, side, side)
    tiles = b""
    for index in range(columns * lines):
        corner = ints(index % columns * side, index // columns * side)
        tiles += ints(index) + chunk("RABC", 0, ints(side, side) + corner + b"\xff" * (4 * side * side))
    blocks = chunk("RASB", 0, sizes + ints(columns * lines) + tiles)
    return chunk("LAYR", 0, base("paper") + chunk("RASC", 0, sizes + blocks))


def main():
    paths = rows()
    vector = chunk("LAYV", 0, ints(len(paths), 0x00201008) + base("strokes") + b"".join(paths))
    meta = chunk("META", 1, ints(WIDTH, HEIGHT) + b"\1\1")
    with open(sys.argv[1], "wb") as file:
        file.write(chunk("VLM1", 0, meta + chunk("CPSB", 0, base("paths", [paper(), vector]))))


main()
