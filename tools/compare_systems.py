#!/usr/bin/env python3
"""Play the same sessions with the programs of two systems and compare what they write, byte by byte.

Usage: compare_systems.py BIN BIN_WINDOWS. Prints one line a file with the digests of both; exit code 1 if any differ.
Pictures are compared as BMP: packed formats depend on the version of their library.
"""
import hashlib
import pathlib
import subprocess
import sys
import tempfile

TOOLS = pathlib.Path(__file__).resolve().parent
RESULTS = ["vlm", "psd", "svg", "bmp"]


def sessions(work):
    """Makes the scripts; yields name, script and arguments."""
    page = work / "page.png"
    for name, maker in (("strokes", "make_stroke_sheet.py"), ("drawing", "make_drawing.py")):
        script = work / f"{name}.jsonl"
        subprocess.run([sys.executable, TOOLS / maker, script, page], check=True)
        yield name, script.read_text(encoding="utf-8"), page
    subprocess.run([sys.executable, TOOLS / "make_path_sheet.py", work / "paths.vlm"], check=True)
    yield "paths", '{"open":"paths.vlm"}\n', None
    subprocess.run([sys.executable, TOOLS / "make_vector_drawing.py", work / "vector.jsonl"], check=True)
    yield "vector", (work / "vector.jsonl").read_text(encoding="utf-8"), None


def play(program, work, name, text, page, ending):
    script, out = work / "線.jsonl", work / f"{name}.{ending}"
    script.write_text(text, encoding="utf-8")
    arguments = [script.name, "--out", out.name] + (["--desktop", "--in", page.name] if page else [])
    run = subprocess.run([*program, *arguments], cwd=work, capture_output=True, text=True)
    if run.returncode:
        return f"failed: {(run.stdout + run.stderr).strip().splitlines()[:1]}"
    return hashlib.sha256(out.read_bytes()).hexdigest()[:16]


def main(here, windows):
    different = 0
    with tempfile.TemporaryDirectory() as folder:
        work = pathlib.Path(folder)
        for name, text, page in sessions(work):
            for ending in RESULTS:
                one = play([here / "vellumcraft-session"], work, name, text, page, ending)
                two = play([TOOLS / "run_wine.sh", windows / "vellumcraft-session.exe"], work, name, text, page, ending)
                same = one == two and not one.startswith("failed")
                different += not same
                print(f"{name + '.' + ending:14} {one:18} {two:18} {'same' if same else 'DIFFERENT'}", flush=True)
    return 1 if different else 0


sys.exit(main(pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()))
