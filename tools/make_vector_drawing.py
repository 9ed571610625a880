#!/usr/bin/env python3
"""Writes a session script that draws a lily with the path tools alone: make_vector_drawing.py SCRIPT

A session like that of a user with a mouse: paths are drawn while Ctrl is held, joined by dragging an end onto another,
divided, and their widths are painted with the path width tool: bulges, plateaus, products, cuts.
"""
import json
import math
import sys

from make_drawing import bezier

WIDTH, HEIGHT = 900, 1000
PATH, WIDTH_TOOL = 6, 7
CTRL, DELETE = 17, 46
SHARP, ROUND, FLAT = 1, 2, 3
ONE, TWO, THREE, FOUR, MULTIPLY, ADD, ERASE, CUT = range(8)


class Drawing:
    def __init__(self):
        self.lines = []
        self.strokes = 0

    def say(self, **verb):
        self.lines.append(json.dumps(verb, ensure_ascii=False))

    def mouse(self, message, at):
        self.say(mouse={"message": message, "x": round(8 * at[0]), "y": round(8 * at[1])})

    def tool(self, number, section, **settings):
        for key, value in settings.items():
            self.say(set={"section": section, "key": key, "value": value})
        self.say(tool=2)  # a tool reads its settings when it is selected again
        self.say(tool=number)

    def pen(self, **settings):
        values = dict(DefaultWidth=12, DefaultBegin=SHARP, DefaultTerm=SHARP, OpenPath=1, WaveEnable=0)
        self.tool(PATH, "PathTool", **dict(values, **settings))

    def widths(self, kind, coef):
        self.tool(WIDTH_TOOL, "PathWidthTool", Type=kind, Coef=coef, Radius=160)

    def drag(self, *way):
        self.mouse("ldown", way[0])
        for a, b in zip(way, way[1:]):
            for k in (1, 2, 3):
                self.mouse("move", (a[0] + (b[0] - a[0]) * k / 3, a[1] + (b[1] - a[1]) * k / 3))
        self.mouse("lup", way[-1])

    def path(self, *anchors):
        """Draws a path; each anchor is (x, y) or (x, y, dx, dy) with the handle that is pulled out of it."""
        self.say(key={"down": CTRL})
        for x, y, *handle in anchors:
            self.drag((x, y), (x + handle[0], y + handle[1])) if handle else self.click((x, y))
        self.say(key={"up": CTRL})
        self.mouse("move", (5, 5))
        self.strokes += 1

    def click(self, at):
        self.mouse("ldown", at)
        self.mouse("lup", at)


def along(center, angle, length, side=0.0):
    """A point at a distance from the center, and beside that line."""
    c, s = math.cos(angle), math.sin(angle)
    return center[0] + length * c - side * s, center[1] + length * s + side * c


def petal(d, center, angle, length, breadth):
    tip = along(center, angle, length)
    for side in (-1, 1):
        start = along(center, angle, 26, 9 * side)
        middle = along(center, angle, length * 0.55, breadth * side)
        handle = along((0, 0), angle, length * 0.2, 0)
        d.path((*start, *along((0, 0), angle, 30, 26 * side)), (*middle, *handle),
               (*tip, *along((0, 0), angle, 18, -14 * side)))
    return tip


def veins(d, center, angle, length, breadth):
    for k in (-1, 0, 1):
        start = along(center, angle, 34, 5 * k)
        end = along(center, angle, length * (0.86 if k == 0 else 0.7), breadth * 0.45 * k)
        d.path((*start, *along((0, 0), angle, length * 0.2, breadth * 0.3 * k)),
               (*end, *along((0, 0), angle, 10, -3 * k)))


def draw(d):
    d.say(answer={"dialog": "CNewDialog", "width": WIDTH, "height": HEIGHT, "color": True})
    d.say(command=57600)
    d.say(command=12901)  # a vector layer
    d.say(view={"width": WIDTH, "height": HEIGHT})
    d.pen()
    flower = (430, 330)
    petals = [(-90 + 60 * k, 250 if k % 2 == 0 else 225, 78 if k % 2 == 0 else 54) for k in range(6)]
    d.pen(DefaultWidth=14)
    for angle, length, breadth in petals:
        petal(d, flower, math.radians(angle), length, breadth)
    d.pen(DefaultWidth=6)
    for angle, length, breadth in petals:
        veins(d, flower, math.radians(angle), length, breadth)
    # Filaments with round ends, and their anthers as shapes.
    d.pen(DefaultWidth=10, DefaultTerm=ROUND)
    tips = []
    for k in range(6):
        angle = math.radians(-62 + 60 * k)
        tip = along(flower, angle, 104, 14)
        d.path((*along(flower, angle, 12), *along((0, 0), angle, 24, -16)), (*tip, *along((0, 0), angle, 12, 18)))
        tips.append((tip, angle + 0.9))
    d.pen(OpenPath=0)
    for tip, angle in tips:
        d.path((*along(tip, angle, -15), *along((0, 0), angle, 0, -8)), (*along(tip, angle, 15), *along((0, 0), angle, 0, 8)))
    # The stem, and leaves with a rib.
    d.pen(DefaultWidth=16, DefaultBegin=SHARP, DefaultTerm=FLAT, WaveEnable=1)
    stems = [((422, 392), (426, 472), (450, 550), (436, 640), (422, 730), (400, 940), (380, 980)),
             ((461, 452), (465, 500), (474, 550), (462, 640), (450, 730), (432, 944), (412, 984))]
    for a, b, _, c, e, _, f in stems:
        d.path((*a, b[0] - a[0], b[1] - a[1]), (*c, e[0] - c[0], e[1] - c[1]), (*f, -20, 40))
    # A bud on a stalk of its own.
    d.pen(DefaultWidth=12)
    d.path((408, 900, -20, -40), (290, 838, -50, -22))
    for side in (-1, 1):
        d.path((290, 838, -34 + 12 * side, -22 - 16 * side), (206, 790, -20, -10))
    leaves = [((452, 640), (700, 520), 70), ((434, 712), (150, 596), 74), ((430, 850), (690, 800), 60)]
    for base, tip, breadth in leaves:
        angle = math.atan2(tip[1] - base[1], tip[0] - base[0])
        length = math.dist(base, tip)
        for side in (-1, 1):
            d.path((*base, *along((0, 0), angle, 60, breadth * 0.6 * side)),
                   (*along(base, angle, length * 0.5, breadth * side), *along((0, 0), angle, 60)), tip)
        d.pen(DefaultWidth=5)
        for k in (-0.5, 0, 0.5):
            d.path((*along(base, angle, 14, 6 * k), *along((0, 0), angle, length * 0.3, breadth * 0.4 * k)),
                   along(base, angle, length * (0.9 if k == 0 else 0.75), breadth * 0.5 * k))
        d.pen(DefaultWidth=12)
    # One end is dragged onto another: the two outlines of a petal become one stroke.
    for angle, length, _ in petals[:3]:
        tip = along(flower, math.radians(angle), length)
        d.click(along(flower, math.radians(angle), 26, 9))
        d.drag(tip, along(tip, math.radians(angle), 14), tip)
    # Cuts first, while no handles lie on the lines: the stem passes behind the petal, one leaf and its own sheath.
    d.widths(CUT, 10)
    for stem, end in zip(stems, (0.62, 0.36)):
        d.drag(*(bezier(stem[:4], end * k / 6 + 0.06 * (1 - k / 6)) for k in range(7)))
    d.drag(*(bezier(stems[0][3:], 0.1 + 0.05 * k) for k in range(4)))
    # Swelling petals and leaves, a stem that thickens downward.
    d.widths(THREE, 22)
    for angle, length, breadth in petals:
        for side in (-1, 1):
            d.drag(*(along(flower, math.radians(angle), length * f, breadth * side * w)
                     for f, w in ((0.3, 0.72), (0.55, 1.0), (0.82, 0.66))))
    d.widths(FOUR, 18)
    for base, tip, breadth in leaves:
        angle, length = math.atan2(tip[1] - base[1], tip[0] - base[0]), math.dist(base, tip)
        d.drag(*(along(base, angle, length * f, breadth * w) for f, w in ((0.25, 0.75), (0.5, 1.0), (0.75, 0.6))))
    d.widths(ADD, 12)
    d.drag(*(bezier(stems[0][3:], 0.5 + 0.1 * k) for k in range(5)))
    d.widths(MULTIPLY, 18)
    d.drag(*(bezier(stems[1][3:], 0.5 + 0.1 * k) for k in range(5)))


def main():
    drawing = Drawing()
    draw(drawing)
    with open(sys.argv[1], "w", encoding="utf-8") as f:
        f.write("\n".join(drawing.lines) + "\n")
    print(f"{drawing.strokes} strokes")


if __name__ == "__main__":
    main()
