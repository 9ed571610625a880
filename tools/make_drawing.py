#!/usr/bin/env python3
"""Write a session script that draws a bird on a branch in a hundred strokes, and the page that it is drawn on.

    make_drawing.py SCRIPT PAGE [brush|pen]

A session like that of a user: the pen enters, touches, presses, lifts and moves to the next stroke. The script uses
the tablet's input (packets in the window), with brush, eraser and pencil. With `brush` all strokes are hard ink of the
brush, with `pen` the same strokes are paths of the pen on a vector layer.
"""
import json
import math
import random
import sys

from make_stroke_sheet import blank_page

WIDTH, HEIGHT = 900, 700
BRUSH, ERASER, PENCIL, PEN = 2, 3, 8, 10
SECTION = {BRUSH: "RasterBrush", ERASER: "RasterEraser", PENCIL: "RasterPencil", PEN: "PathPen"}


def bezier(p, t):
    u = 1 - t
    w = (u * u * u, 3 * u * u * t, 3 * u * t * t, t * t * t)
    return tuple(sum(w[i] * p[i][k] for i in range(4)) for k in (0, 1))


class Drawing:
    def __init__(self, ink=None):
        """With `ink` that tool draws all strokes."""
        self.ink = ink
        self.lines = []
        self.strokes = 0
        self.hand = random.Random(4)
        self.at = (WIDTH / 2, HEIGHT / 2)

    def say(self, **verb):
        self.lines.append(json.dumps(verb, ensure_ascii=False))

    def tool(self, number, **settings):
        if self.ink:
            number = self.ink
            settings = {"CurveStrength": 4, "BlurLevel": 100, "BrushRadius": min(settings.get("BrushRadius", 6), 8)}
        for key, value in settings.items():
            self.say(set={"section": "BrushParam\\" + SECTION[number], "key": key, "value": value})
        # A tool reads its settings when it is selected again.
        self.say(tool=BRUSH if number != BRUSH else ERASER)
        self.say(tool=number)

    def packet(self, at, pressure, altitude):
        x, y = (round(8 * v) for v in at)
        self.say(packet={"x": x, "y": y, "pressure": round(1023 * pressure), "altitude": altitude})
        self.say(wait=5)
        self.at = at

    def stroke(self, curve, press, altitude=600):
        """Draws a Bezier curve; the pressure rises to `press` and falls again, with small random deviations."""
        length = sum(math.dist(bezier(curve, k / 16), bezier(curve, (k + 1) / 16)) for k in range(16))
        steps = max(8, int(length / 5))
        # The pen hovers to the stroke and comes down along it.
        start, ahead = bezier(curve, 0), bezier(curve, 1 / steps)
        before = [tuple(a - k * (b - a) for a, b in zip(start, ahead)) for k in (4, 3, 2, 1)]
        for k in range(1, 5):
            self.packet(tuple(a + (b - a) * k / 5 for a, b in zip(self.at, before[0])), 0, altitude)
        for way in before:
            self.packet(way, 0, altitude)
        for k in range(steps + 1):
            t = k / steps
            fault = tuple(self.hand.gauss(0, 0.25) for _ in (0, 1))
            point = tuple(a + b for a, b in zip(bezier(curve, t), fault))
            self.packet(point, press * (0.15 + 0.85 * math.sin(math.pi * min(1, 0.08 + 0.9 * t)) ** 0.7), altitude)
        for k in range(3):
            self.packet((self.at[0] + 2, self.at[1] + 1), 0, altitude)
        self.strokes += 1


def arc(cx, cy, rx, ry, a, b):
    """A quarter of an ellipse or less, from angle a to b in degrees."""
    a, b = math.radians(a), math.radians(b)
    k = 4 / 3 * math.tan((b - a) / 4)
    def at(t):
        return cx + rx * math.cos(t), cy + ry * math.sin(t)
    (x0, y0), (x3, y3) = at(a), at(b)
    return [(x0, y0), (x0 - k * rx * math.sin(a), y0 + k * ry * math.cos(a)),
            (x3 + k * rx * math.sin(b), y3 - k * ry * math.cos(b)), (x3, y3)]


def draw(d):
    d.tool(BRUSH, BrushRadius=6, BlurLevel=75, CurveStrength=4)
    # The branch: two sides and its bark.
    d.stroke([(60, 560), (260, 500), (480, 560), (840, 470)], 0.9)
    d.stroke([(60, 600), (260, 545), (480, 600), (840, 490)], 1.0)
    for k in range(8):
        x = 110 + 85 * k
        y = 572 - 7 * k + 14 * math.sin(k)
        d.stroke([(x, y), (x + 20, y - 6), (x + 40, y + 2), (x + 60, y - 8)], 0.35)
    # Body, back and head.
    d.stroke([(300, 250), (240, 380), (330, 520), (470, 510)], 0.9)
    d.stroke([(470, 510), (560, 500), (600, 430), (680, 400)], 0.8)
    d.stroke([(345, 205), (430, 220), (520, 330), (640, 380)], 0.9)
    d.stroke(arc(330, 230, 62, 58, 180, 262), 0.9)
    d.stroke(arc(330, 230, 62, 58, 262, 335), 0.8)
    d.stroke(arc(330, 230, 62, 58, 180, 118), 0.6)
    # Beak and eye.
    d.stroke([(272, 215), (250, 218), (225, 226), (206, 240)], 0.7)
    d.stroke([(206, 240), (228, 244), (252, 246), (274, 244)], 0.7)
    d.stroke([(206, 240), (228, 236), (248, 234), (270, 231)], 0.4)
    d.stroke(arc(316, 214, 13, 13, 200, 380), 0.5)
    d.stroke(arc(316, 214, 13, 13, 20, 200), 0.5)
    d.tool(BRUSH, BrushRadius=14)
    d.stroke([(312, 212), (316, 209), (320, 212), (318, 216)], 0.9)
    # Wing and its feathers.
    d.tool(BRUSH, BrushRadius=6)
    d.stroke([(380, 270), (350, 360), (430, 450), (600, 455)], 0.9)
    d.stroke([(380, 270), (470, 290), (540, 380), (600, 455)], 0.7)
    for row, count, x, y, size in ((0, 5, 400, 312, 34), (1, 6, 404, 350, 38), (2, 6, 430, 390, 42)):
        for k in range(count):
            cx, cy = x + k * size * 0.62, y + k * (11 - 2 * row)
            d.stroke(arc(cx, cy, size * 0.42, size * 0.5, 150, 20), 0.5)
    for k in range(6):
        d.stroke([(470 + 18 * k, 420 + 4 * k), (510 + 18 * k, 440 + 3 * k), (560 + 16 * k, 452), (590 + 14 * k, 448 - 2 * k)], 0.45)
    # Tail and legs.
    for k in range(5):
        d.stroke([(610 + 6 * k, 392 + 9 * k), (680, 392 + 9 * k), (740, 380 + 12 * k), (800 + 4 * k, 352 + 18 * k)], 0.8)
    for x in (400, 455):
        d.stroke([(x, 505), (x + 2, 520), (x - 2, 532), (x, 545)], 0.9)
        for toe in (-22, -6, 14):
            d.stroke([(x, 543), (x + toe / 2, 540), (x + toe, 546), (x + toe * 1.3, 556)], 0.6)
    # Leaves.
    for x, y, turn in ((180, 520, -60), (700, 480, -80), (770, 470, -35), (120, 575, 70), (640, 545, 60)):
        tip = (x + 75 * math.cos(math.radians(turn)), y + 75 * math.sin(math.radians(turn)))
        for side in (-1, 1):
            bow = [(x + 40 * math.cos(math.radians(turn + side * 45)), y + 40 * math.sin(math.radians(turn + side * 45))),
                   (tip[0] - 30 * math.cos(math.radians(turn + side * -25)), tip[1] - 30 * math.sin(math.radians(turn + side * -25)))]
            d.stroke([(x, y), bow[0], bow[1], tip], 0.7)
        d.stroke([(x, y), (x + (tip[0] - x) * 0.3, y + (tip[1] - y) * 0.3), (x + (tip[0] - x) * 0.6, y + (tip[1] - y) * 0.6),
                  (x + (tip[0] - x) * 0.85, y + (tip[1] - y) * 0.85)], 0.3)
    # The highlight in the eye.
    d.tool(ERASER, BrushRadius=5)
    d.stroke([(319, 208), (321, 208), (322, 210), (321, 212)], 0.8)
    # Pencil shading, up to a hundred strokes: the breast, then under the branch.
    d.tool(PENCIL, BrushRadius=12, PaperRoughness=3, PencilHardness=1)
    shade = 0
    while d.strokes < 100:
        if shade < 18:
            x, y = 303 + 9 * shade, 350 + 150 * math.sin(shade / 18 * 1.3) - 40
            d.stroke([(x, y), (x + 4, y + 18), (x + 12, y + 34), (x + 24, y + 46)], 0.6, 450)
        else:
            x = 90 + 45 * (shade - 18)
            y = 592 - 0.085 * x
            d.stroke([(x, y), (x + 14, y - 3), (x + 28, y - 5), (x + 42, y - 6)], 0.5, 350)
        shade += 1


def main():
    ink = {"brush": BRUSH, "pen": PEN}.get(sys.argv[3]) if len(sys.argv) > 3 else None
    d = Drawing(ink)
    d.say(view={"width": WIDTH, "height": HEIGHT})
    d.say(set={"section": "Tablet", "key": "MouseCoord", "value": 0})
    if ink == PEN:
        d.say(command="layer-new-vector")
    d.say(proximity="enter")
    draw(d)
    d.say(proximity="leave")
    d.say(wait=1000)
    with open(sys.argv[1], "w", encoding="utf-8") as file:
        file.write("\n".join(d.lines) + "\n")
    with open(sys.argv[2], "wb") as file:
        file.write(blank_page(WIDTH, HEIGHT))


if __name__ == "__main__":
    main()
