#!/usr/bin/env python3
"""Rotates a drawing by twelve steps of 30 degrees, by the transform tool and by GIMP's samplers, and prints
how close each result is to the drawing: PSNR in decibels and the largest error, inside the circle that no
rotation cuts off."""

import argparse
import json
import math
import pathlib
import random
import struct
import subprocess
import sys
import tempfile
import zlib

SIDE = 400
SAMPLERS = ["none", "linear", "cubic", "nohalo", "lohalo"]  # in the order of GIMP's numbers


def draw_lines(seed):
    """Lines and circles of 1 to 5 pixels, softened, as grey rows."""
    rng = random.Random(seed)
    middle = SIDE / 2

    def on_disc(reach):
        angle, radius = rng.random() * 2 * math.pi, rng.random() * reach
        return middle + radius * math.cos(angle), middle + radius * math.sin(angle)

    lines = [(on_disc(150), on_disc(150), rng.choice([0.6, 1, 1.5, 2.5])) for _ in range(40)]
    circles = [(on_disc(70), rng.uniform(5, 80), rng.choice([0.6, 1, 1.6])) for _ in range(14)]
    rows = []
    for y in range(SIDE):
        row = bytearray()
        for x in range(SIDE):
            px, py, ink = x + 0.5, y + 0.5, 0.0
            for (ax, ay), (bx, by), half in lines:
                dx, dy = bx - ax, by - ay
                part = max(0, min(1, ((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy)))
                ink = max(ink, half + 0.5 - math.hypot(px - ax - part * dx, py - ay - part * dy))
            for (cx, cy), radius, half in circles:
                ink = max(ink, half + 0.5 - abs(math.hypot(px - cx, py - cy) - radius))
            row.append(round(255 * (1 - max(0, min(1, ink)))))
        rows.append(row)
    return rows


def write_png(path, rows):
    """Writes grey rows as an opaque RGBA picture."""

    def chunk(tag, data):
        return struct.pack(">I", len(data)) + tag + data + struct.pack(">I", zlib.crc32(tag + data))

    raw = b"".join(b"\0" + b"".join(bytes((g, g, g, 255)) for g in row) for row in rows)
    header = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 6, 0, 0, 0)
    data = chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw)) + chunk(b"IEND", b"")
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + data)


def read_png(path):
    """The first channel of an 8-bit picture, as rows."""
    data, at, packed = path.read_bytes(), 8, b""
    while at < len(data):
        (size,) = struct.unpack(">I", data[at : at + 4])
        tag, body = data[at + 4 : at + 8], data[at + 8 : at + 8 + size]
        at += 12 + size
        if tag == b"IHDR":
            width, height, _, kind = struct.unpack(">IIBB", body[:10])
        elif tag == b"IDAT":
            packed += body
    step = {0: 1, 2: 3, 4: 2, 6: 4}[kind]
    raw, length, rows = zlib.decompress(packed), width * step, []
    last = bytearray(length)
    for y in range(height):
        kind, row = raw[y * (length + 1)], bytearray(raw[y * (length + 1) + 1 : (y + 1) * (length + 1)])
        for i in range(length):
            left = row[i - step] if i >= step else 0
            corner = last[i - step] if i >= step else 0
            guess = left + last[i] - corner
            near = min((left, last[i], corner), key=lambda value: abs(guess - value))
            row[i] = (row[i] + (0, left, last[i], (left + last[i]) // 2, near)[kind]) & 255
        rows.append(row[::step])
        last = row
    return rows


def compare(before, after):
    """PSNR and largest error."""
    errors = [
        before[y][x] - after[y][x]
        for y in range(SIDE)
        for x in range(SIDE)
        if math.hypot(x + 0.5 - SIDE / 2, y + 0.5 - SIDE / 2) < SIDE * 0.43
    ]
    squares = sum(error * error for error in errors) / len(errors)
    return 10 * math.log10(255 * 255 / squares) if squares else math.inf, max(map(abs, errors))


def rotate_by_tool(session, picture, folder):
    # From the right lower corner, in eighths of a pixel; with Shift the angle is exact.
    middle, corner = SIDE * 4, SIDE * 8
    reach = (corner - middle) * math.sqrt(2)
    end = [round(middle + reach * f(math.radians(75))) for f in (math.cos, math.sin)]
    steps = [{"open": str(picture)}, {"tool": 9}, {"keys": [16]}]
    for _ in range(12):
        for message, x, y in (("ldown", corner, corner), ("move", *end), ("lup", *end)):
            steps.append({"mouse": {"message": message, "x": x, "y": y}})
        steps.append({"panel": {"id": "panel-tool-option", "control": 1330, "value": 1}})
    script, result = folder / "rotate.jsonl", folder / "tool.png"
    head = {"set": {"section": "RasterTransform", "key": "Mode", "value": 2}}
    script.write_text("\n".join(map(json.dumps, [head, *steps])))
    subprocess.run([session, script, "--out", result], check=True)
    return read_png(result)


def rotate_by_gimp(sampler, picture, folder):
    result = folder / f"gimp{sampler}.png"
    batch = f"""(let* ((image (car (gimp-file-load RUN-NONINTERACTIVE "{picture}" "")))
                       (layer (car (gimp-image-get-active-layer image))) (n 0))
      (gimp-context-set-interpolation {sampler}) (gimp-context-set-transform-resize 1)
      (while (< n 12)
        (set! layer (car (gimp-item-transform-rotate layer (/ (* 4 (atan 1)) 6) FALSE {SIDE / 2} {SIDE / 2})))
        (set! n (+ n 1)))
      (file-png-save-defaults RUN-NONINTERACTIVE image layer "{result}" ""))"""
    subprocess.run(["gimp", "-i", "-d", "-f", "-b", batch, "-b", "(gimp-quit 0)"], capture_output=True, check=True)
    return read_png(result)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--session", default="build/release/bin/vellumcraft-session")
    parser.add_argument("--seed", type=int, default=3)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        before, picture = draw_lines(arguments.seed), folder / "drawing.png"
        write_png(picture, before)
        results = {"transform tool": rotate_by_tool(arguments.session, picture, folder)}
        for number, sampler in enumerate(SAMPLERS):
            results["GIMP " + sampler] = rotate_by_gimp(number, picture, folder)
    for label, after in results.items():
        print("%-16s %6.2f dB  largest error %3d" % (label, *compare(before, after)))


if __name__ == "__main__":
    sys.exit(main())
