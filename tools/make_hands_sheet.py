#!/usr/bin/env python3
"""Draws twelve rough hands by brush and by pen and shows them at four times: make_hands_sheet.py BIN PICTURE

BIN holds vellumcraft-session. Each panel shows a part of a hand's line: the brush's pixels in blue, the outline of the
pen's path over them in red, its anchors as dots. Prints the anchors and width marks of each.
"""
import json
import math
import pathlib
import random
import struct
import subprocess
import sys
import tempfile

from make_stroke_sheet import blank_page

WIDTH, HEIGHT, ZOOM = 420, 300, 4
PANEL = (190, 120)  # canvas pixels
TURN = 2 * math.pi


def zigzag(d):
    return abs(d - math.floor(d) - 0.5) * 2


# Name, samples, brush size, tremor in pixels, samples of the pressure's rise, movement, corner of the panel.
HANDS = (
    ("jitter", 240, 6, 0.35, 12, lambda s: (40 + 260 * s, 120 + 40 * math.sin(s * TURN * 1.3), 0.6), (35, 80)),
    ("slow", 900, 8, 0.1, 60, lambda s: (40 + 120 * s, 80 + 30 * math.sin(s * TURN), 0.5 + 0.3 * s), (20, 30)),
    ("fast", 34, 12, 0.1, 8, lambda s: (20 + 380 * s, 240 - 190 * s * s, 0.9 - 0.3 * s), (220, 40)),
    ("hatching", 420, 4, 0.15, 6,
     lambda s: (40 + 160 * s + 26 * zigzag(s * 14), 60 + 70 * zigzag(s * 14), 0.7), (60, 40)),
    ("letters", 360, 3, 0.08, 6,
     lambda s: (40 + 90 * s + 4 * math.sin(s * TURN * 12), 60 + 5 * math.sin(s * TURN * 9 + 1),
                0.6 + 0.3 * math.sin(s * TURN * 9)), (20, 10)),
    ("circles", 500, 6, 0.15, 14,
     lambda s: (120 + (50 + 3 * math.sin(s * 7)) * math.cos(s * TURN * 3),
                120 + (46 + 4 * math.cos(s * 5)) * math.sin(s * TURN * 3), 0.7), (40, 65)),
    ("spiral", 460, 10, 0.1, 20,
     lambda s: (140 + 90 * s * math.cos(s * TURN * 4), 140 + 90 * s * math.sin(s * TURN * 4), 0.3 + 0.6 * s), (60, 80)),
    ("zigzag", 160, 14, 0.05, 10, lambda s: (40 + 220 * s, 60 + 80 * zigzag(s * 4), 0.8), (80, 40)),
    ("swell", 300, 24, 0.1, 50,
     lambda s: (40 + 260 * s, 120 + 50 * math.sin(s * TURN), 0.5 - 0.45 * math.cos(s * TURN * 2)), (40, 90)),
    ("tap", 9, 16, 0.1, 4, lambda s: (95, 60, 0.9), (0, 0)),
    ("retrace", 300, 9, 0.12, 12,
     lambda s: (40 + 150 * zigzag(s * 1.5 + 0.5), 70 + 30 * math.sin(3 * zigzag(s * 1.5 + 0.5)), 0.75), (20, 30)),
    ("tremor", 2000, 5, 0.25, 30,
     lambda s: (20 + 380 * s, 150 + 60 * math.sin(s * TURN * 3) + 1.2 * math.sin(s * TURN * 70), 0.55), (100, 90)),
)


def script_of(hand, tool, page, save):
    name, samples, size, tremor, ramp, place, _ = hand
    section = "PathPen" if tool == 10 else "RasterBrush"
    lines = [{"set": {"section": "Tablet", "key": "MouseCoord", "value": 0}}]
    for key, value in (("BrushRadius", size), ("BlurLevel", 100), ("CurveStrength", 4)):
        lines.append({"set": {"section": "BrushParam\\" + section, "key": key, "value": value}})
    lines.append({"open": str(page)})
    lines.append({"command": "layer-new-vector" if tool == 10 else "layer-new-raster"})
    lines += [{"tool": 3}, {"tool": tool}]
    shake = random.Random(1)
    x, y, _ = place(0)
    lines += [{"pen": {"x": round(8 * x), "y": round(8 * y), "pressure": 0}}]
    for n in range(samples):
        s = n / (samples - 1)
        x, y, press = place(s)
        press *= min(1, (n + 1) / ramp, (samples - n) / ramp)
        x, y = x + shake.uniform(-tremor, tremor), y + shake.uniform(-tremor, tremor)
        lines.append({"pen": {"x": round(8 * x), "y": round(8 * y), "pressure": max(10, round(1023 * press))}})
    for n in range(1, 20):
        lines.append({"pen": {"x": round(8 * x) + n, "y": round(8 * y), "pressure": 0}})
    lines.append({"save": str(save)} if tool == 10 else {"wait": 1000})
    return "\n".join(json.dumps(line) for line in lines) + "\n"


def run(*command):
    subprocess.run([str(part) for part in command], check=True, stdout=subprocess.DEVNULL)


def panel(binaries, folder, hand):
    """One hand's panel; its anchors and marks."""
    page, document = folder / "page.png", folder / "pen.vlm"
    page.write_bytes(blank_page(WIDTH, HEIGHT))
    script = folder / "hand.jsonl"
    for tool, out in ((2, folder / "brush.png"), (10, folder / "pen.svg")):
        script.write_text(script_of(hand, tool, page, document))
        if tool == 10:
            script.write_text(script.read_text() + json.dumps({"export": str(out)}) + "\n")
            out = folder / "pen.png"
        run(binaries / "vellumcraft-session", script, "--out", out)
    data = document.read_bytes()
    anchors, at = [], data.find(b"PCPA")
    while at >= 0:
        anchors.append(tuple(v / 8 for v in struct.unpack(">ii", data[at + 12:at + 20])))
        at = data.find(b"PCPA", at + 4)
    left, top = hand[6]
    outline = (folder / "pen.svg").read_text().replace("<path ", '<path style="fill:none;stroke:#d00000;stroke-width:0.3" ')
    (folder / "outline.svg").write_text(outline)
    run("rsvg-convert", "-z", ZOOM, folder / "outline.svg", "-o", folder / "outline.png")
    dots = " ".join(f"circle {ZOOM * x:.1f},{ZOOM * y:.1f} {ZOOM * x + 3:.1f},{ZOOM * y:.1f}" for x, y in anchors)
    run("convert", folder / "brush.png", "+level-colors", "#8fc0ff,white", "-scale", f"{100 * ZOOM}%",
        folder / "outline.png", "-compose", "multiply", "-composite", "-compose", "over", "-fill", "#00a000", "-draw", dots,
        "-crop", f"{PANEL[0] * ZOOM}x{PANEL[1] * ZOOM}+{left * ZOOM}+{top * ZOOM}", "+repage",
        "-fill", "black", "-pointsize", "20", "-draw", f"text 8,22 '{hand[0]}: {len(anchors)}'",
        folder / f"{hand[0]}.png")
    return len(anchors), data.count(b"PCPW")


def main():
    binaries = pathlib.Path(sys.argv[1])
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        for hand in HANDS:
            anchors, widths = panel(binaries, folder, hand)
            print(f"{hand[0]:10}{anchors:5} anchors{widths:5} marks")
        run("montage", *(folder / f"{hand[0]}.png" for hand in HANDS), "-tile", "2x", "-geometry", "+4+4",
            "+dither", "-colors", "24", f"png8:{sys.argv[2]}")


if __name__ == "__main__":
    main()
