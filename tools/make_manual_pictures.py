#!/usr/bin/env python3
"""Makes the pictures of the manual by its session scripts: make_manual_pictures.py BIN [NAME...]

Each script in docs/manual/scripts plays over docs/examples/drawing.png in the real window, off screen. Its picture is the
screenshot that it takes, else the drawing that it leaves, cut to what a first line "# crop WIDTHxHEIGHT+X+Y" says. lily.png is
the drawing of tools/make_vector_drawing.py. BIN is the folder of the programs.
"""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

MANUAL = pathlib.Path(__file__).resolve().parent.parent / "docs" / "manual"
EXAMPLES = MANUAL.parent / "examples"
SCREEN = {"screens": [{"name": "manual", "x": 0, "y": 0, "width": 1180, "height": 800, "logicalDpi": 96, "dpr": 1}]}


def keep(picture, name, *options):
    """Writes a picture, a part of it in a few colours, without what differs from run to run."""
    few = ["+dither", "-colors", "64", "-define", "png:format=png8"] if options else []
    subprocess.run(["convert", picture, "-background", "white", "-flatten", *options, *few, "-strip",
                    "-define", "png:exclude-chunks=all", MANUAL / "pictures" / (name + ".png")], check=True)


def play(programs, script):
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        (work / "screen.json").write_text(json.dumps(SCREEN))
        surroundings = dict(os.environ, XDG_CONFIG_HOME=folder, XDG_RUNTIME_DIR=folder,
                            QT_QPA_PLATFORM=f"offscreen:configfile={work / 'screen.json'}",
                            QT_LOGGING_RULES="*.warning=false")
        subprocess.run([programs / "vellumcraft-filter", EXAMPLES / "drawing.png", work / "result.png", "--script", script,
                        "--windows"], cwd=work, env=surroundings, check=True)
        crop = re.match(r"# crop (\S+)\n", script.read_text(encoding="utf-8"))
        picture = work / "screenshot.png"
        keep(picture if picture.exists() else work / "result.png", script.stem,
             *(["-crop", crop[1], "+repage"] if crop else []))


def main():
    programs, names = pathlib.Path(sys.argv[1]).resolve(), sys.argv[2:]
    for script in sorted((MANUAL / "scripts").glob("*.jsonl")):
        if not names or script.stem in names:
            play(programs, script)
            print(script.stem)
    if not names:
        keep(EXAMPLES / "vector-drawing.png", "lily", "-resize", "60%")


if __name__ == "__main__":
    main()
