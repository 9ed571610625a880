#!/usr/bin/env python3
"""Compares exported SVG files with our own pictures: exports each drawing (a session script or a project file) as
PNG and as SVG, has the SVG drawn by two renderers, and prints PSNR in decibels, the largest error and its place, and
how many pixels differ by more than 64 levels, all on white.

Needs rsvg-convert (librsvg2-bin), inkscape and convert (imagemagick)."""

import argparse
import math
import pathlib
import subprocess
import sys
import tempfile

RENDERERS = {
    "librsvg": lambda svg, png: ["rsvg-convert", "--unlimited", "-b", "white", "-o", png, svg],
    "inkscape": lambda svg, png: ["inkscape", svg, "-o", png, "-b", "white", "-y", "1", "-d", "96"],
}
FAR = 64


def export(session, drawing, out, folder):
    if drawing.suffix == ".vlm":
        script = folder / "none.jsonl"
        script.write_text("")
        command = [script, "--desktop", "--in", drawing]
    else:
        command = [drawing]
    subprocess.run([session, *command, "--out", out], check=True)


def read_picture(path):
    """Width and the RGB bytes on white."""
    size = subprocess.run(["identify", "-format", "%w", path], check=True, capture_output=True).stdout
    flat = ["convert", path, "-background", "white", "-alpha", "remove", "-depth", "8", "rgb:-"]
    return int(size), subprocess.run(flat, check=True, capture_output=True).stdout


def compare(ours, theirs):
    (width, before), (other, after) = ours, theirs
    if width != other or len(before) != len(after):
        raise SystemExit("the renderer's picture has another size")
    errors = [abs(a - b) for a, b in zip(before, after)]
    squares = sum(error * error for error in errors) / len(errors)
    psnr = 10 * math.log10(255 * 255 / squares) if squares else math.inf
    worst = max(errors)
    place = errors.index(worst) // 3
    far = sum(error > FAR for error in errors[::3])
    return "%6.2f dB  largest error %3d at %d, %d  over %d: %d" % (psnr, worst, place % width, place // width, FAR, far)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("drawings", nargs="+", type=pathlib.Path, help="session scripts or project files")
    parser.add_argument("--session", default="build/release/bin/vellumcraft-session")
    parser.add_argument("--keep", type=pathlib.Path, help="a folder for the pictures")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        folder = arguments.keep or pathlib.Path(name)
        folder.mkdir(exist_ok=True)
        for drawing in arguments.drawings:
            ours, svg = folder / f"{drawing.stem}.png", folder / f"{drawing.stem}.svg"
            for out in (ours, svg):
                export(arguments.session, drawing, out, folder)
            picture = read_picture(ours)
            for renderer, command in RENDERERS.items():
                png = folder / f"{drawing.stem}-{renderer}.png"
                subprocess.run(command(svg, png), check=True, capture_output=True)
                print("%-20s %-9s %s" % (drawing.stem, renderer, compare(picture, read_picture(png))))


if __name__ == "__main__":
    sys.exit(main())
