#!/usr/bin/env python3
"""Compares the pen's paths with the brush's pixels, and with tracing these pixels: compare_ink.py BIN FOLDER

BIN holds vellumcraft-session. Draws the same hundred strokes by brush and by pen, and traces the brush's picture by
potrace (if it is there), as it is and enlarged eight times. Prints for each the points that it takes and how far its
picture is from the brush's: the largest difference of a pixel, how many pixels differ by more than the tolerance of
0.35 px explains, and the mean of the pixels that have ink in one of them. FOLDER keeps pictures and files.
"""
import json
import pathlib
import re
import shutil
import subprocess
import sys

TOOLS = pathlib.Path(__file__).resolve().parent
TOLERANCE = 255 * 35 // 100 + 8


def run(*command):
    subprocess.run([str(part) for part in command], check=True, stdout=subprocess.DEVNULL)


def draw(binaries, folder, ink):
    """The picture of the drawing in grey, by brush or pen; the pen's document is kept too."""
    script, page = folder / f"{ink}.jsonl", folder / "page.png"
    run(sys.executable, TOOLS / "make_drawing.py", script, page, ink)
    if ink == "pen":
        # A document of the session's own can be saved; the host's picture cannot.
        lines = script.read_text().splitlines()
        lines.insert(0, json.dumps({"open": str(page)}))
        lines.append(json.dumps({"save": str(folder / "pen.vlm")}))
        script.write_text("\n".join(lines) + "\n")
        run(binaries / "vellumcraft-session", script, "--out", folder / "pen.png")
    else:
        run(binaries / "vellumcraft-session", script, "--in", page, "--out", folder / "brush.png")
    return grey(folder / f"{ink}.png")


def grey(picture):
    return subprocess.run(["convert", picture, "-background", "white", "-flatten", "-depth", "8", "gray:-"], check=True,
                          stdout=subprocess.PIPE).stdout


def compare(ours, theirs):
    differences = [abs(a - b) for a, b in zip(ours, theirs)]
    inked = sum(min(a, b) < 255 for a, b in zip(ours, theirs))
    return max(differences), sum(d > TOLERANCE for d in differences), sum(differences) / inked


def trace(folder, enlarged):
    """Traces the brush's picture; its curves' points and its own picture."""
    name = folder / f"traced{enlarged}"
    run("convert", folder / "brush.png", "-resize", f"{100 * enlarged}%", "-threshold", "50%", f"{name}.pbm")
    run("potrace", "-s", f"{name}.pbm", "-o", f"{name}.svg")
    width, height = subprocess.run(["identify", "-format", "%w %h", folder / "brush.png"], check=True,
                                   stdout=subprocess.PIPE, text=True).stdout.split()
    run("rsvg-convert", "-w", width, "-h", height, "-b", "white", f"{name}.svg", "-o", f"{name}.png")
    return count_points(f"{name}.svg"), grey(f"{name}.png")


def count_points(svg):
    """The ends of the lines and curves in an SVG file's paths."""
    points = 0
    for path in re.findall(r' d="([^"]*)"', pathlib.Path(svg).read_text()):
        for letter, numbers in re.findall(r"([MmLlCcHhVv])([^A-Za-z]*)", path):
            step = {"c": 6, "h": 1, "v": 1}.get(letter.lower(), 2)
            points += len(re.findall(r"-?[0-9.]+", numbers)) // step
    return points


def main():
    binaries, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    brush, pen = draw(binaries, folder, "brush"), draw(binaries, folder, "pen")
    document = (folder / "pen.vlm").read_bytes()
    strokes, anchors, widths = (document.count(tag) for tag in (b"POOP", b"PCPA", b"PCPW"))
    print(f"{'':22}{'points':>8}{'marks':>8}{'worst':>8}{'beyond':>8}{'mean':>8}")

    def row(name, points, marks, differences):
        worst, beyond, mean = differences
        print(f"{name:22}{points:8}{marks:8}{worst:8}{beyond:8}{mean:8.2f}")

    row(f"pen, {strokes} strokes", anchors, widths, compare(brush, pen))
    if shutil.which("potrace"):
        for enlarged in (1, 8):
            points, picture = trace(folder, enlarged)
            row(f"potrace, {enlarged} times", points, 0, compare(brush, picture))
    run("convert", folder / "brush.png", folder / "pen.png", "-compose", "difference", "-composite", "-negate",
        folder / "difference.png")


if __name__ == "__main__":
    main()
