#!/usr/bin/env python3
"""Write a session script that draws a sheet of strokes, and the blank page that it is drawn on.

    make_stroke_sheet.py SCRIPT PAGE

One row per parameter: size, hardness, opacity, pressure, taper, wobble, spray, pencil grade, tilt, paper.
"""
import json
import math
import struct
import sys
import zlib

WIDTH, HEIGHT = 1200, 1220
LEFT, TOP, ROW = 40, 60, 105
POINTS = 70


def blank_page(width=WIDTH, height=HEIGHT):
    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    row = b"\0" + b"\xff" * (3 * width)
    return (
        b"\x89PNG\r\n\x1a\n"
        + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
        + chunk(b"IDAT", zlib.compress(row * height, 9))
        + chunk(b"IEND", b"")
    )


class Sheet:
    def __init__(self):
        self.lines = []

    def say(self, **verb):
        self.lines.append(json.dumps(verb, ensure_ascii=False))

    def tool(self, number, **settings):
        section = {2: "RasterBrush", 8: "RasterPencil"}[number]
        for key, value in settings.items():
            self.say(set={"section": "BrushParam\\" + section, "key": key, "value": value})
        self.say(tool=number)

    def stroke(self, x, y, width, pressure, altitude=90, hover=4):
        """Draws a wave of two arcs whose pressure rises and falls, with the pen's approach and exit."""
        def point(n, press):
            t = n / POINTS
            self.say(
                pen={
                    "x": round((x + width * t) * 8),
                    "y": round((y - 22 * math.sin(2 * math.pi * t)) * 8),
                    "pressure": round(1024 * press),
                    "altitude": altitude,
                }
            )

        for n in range(-hover, 0):
            point(n, 0)
        for n in range(POINTS + 1):
            point(n, max(0.02, pressure(n / POINTS)))
        for n in range(POINTS + 1, POINTS + 8):
            point(n, 0)

    def row(self, number, y, columns, pressure=lambda t: math.sin(math.pi * t), altitudes=None):
        width = (WIDTH - 2 * LEFT) / len(columns)
        for n, settings in enumerate(columns):
            self.tool(number, **settings)
            altitude = altitudes[n] if altitudes else 90
            self.stroke(LEFT + n * width + 10, y, width - 40, pressure, altitude)


def draw():
    brush = dict(BrushRadius=12, BlurLevel=75, BrushAlpha=255, PressRadius=1, PressAlpha=0, CurveStrength=4,
                 StrokeIn=1, StrokeOut=1, SlowScale=1, WaveEnable=0, Spray=0, WaveDistMin=0, WaveDistMax=0, BrushColor=0)
    pencil = dict(BrushRadius=16, SlowScale=1, BlurLevel=50, BrushAlpha=255, PressRadius=0, PressAlpha=1, CurveStrength=4,
                  PencilHardness=1, PaperRoughness=3, PencilTexture=0, AltitParam=0, AntiSplit=0, BrushColor=0x332B2B)
    sheet = Sheet()
    rows = [
        (2, [dict(brush, BrushRadius=r) for r in (1, 2, 4, 8, 16, 32, 64)], {}),
        (2, [dict(brush, BrushRadius=24, BlurLevel=b) for b in (0, 25, 50, 75, 100)], {}),
        (2, [dict(brush, BrushRadius=24, BrushAlpha=a, BrushColor=0xA04020) for a in (40, 90, 150, 255)], {}),
        (2, [dict(brush, BrushRadius=24, PressAlpha=1, PressRadius=r, BrushColor=0x2030C0) for r in (0, 1)], {}),
        (2, [dict(brush, BrushRadius=20, StrokeIn=i, StrokeOut=i) for i in (0, 1, 2)],
         dict(pressure=lambda t: 0.9)),
        (2, [dict(brush, BrushRadius=10, WaveEnable=1, WaveSmooth=4, WaveDistMin=w, WaveDistMax=w)
             for w in (1, 2, 4, 8)], {}),
        (2, [dict(brush, BrushRadius=16, Spray=s) for s in (0, 20, 60, 150)], {}),
        (8, [dict(pencil, PencilHardness=h) for h in range(5)], {}),
        (8, [dict(pencil, PaperRoughness=r) for r in (0, 2, 4, 7)], {}),
        (8, [dict(pencil, PencilTexture=t, BrushRadius=24) for t in range(4)], {}),
        (8, [dict(pencil, AltitParam=4, BrushRadius=20)] * 3, dict(altitudes=(80, 55, 30))),
    ]
    for n, (number, columns, more) in enumerate(rows):
        sheet.row(number, TOP + n * ROW, columns, **more)
    sheet.say(wait=20)
    return sheet.lines


def main():
    script, page = sys.argv[1:]
    with open(script, "w", encoding="utf-8") as file:
        file.write("\n".join(draw()) + "\n")
    with open(page, "wb") as file:
        file.write(blank_page())


if __name__ == "__main__":
    main()
