#!/usr/bin/env python3
"""Plays random sessions: run_monkey.py PROGRAM FOLDER [LINES [SEED]]

LINES are split over runs of some thousand, with the seeds from SEED on, two runs at a time. Every fourth run also opens
a project with paths. A failed script stays in FOLDER with its output; the others are deleted. The exit code is 1 when one
has failed.
"""
import concurrent.futures
import os
import pathlib
import shutil
import subprocess
import sys
import time

TOOLS = pathlib.Path(__file__).resolve().parent
RUN_LINES = 5000
RUN_SECONDS = 900  # a run that takes longer hangs
PATHS_EVERY = 4


def run(program, work, more):
    try:
        with open(work / "said.txt", "w") as said:
            code = subprocess.run([program, "script.jsonl"], cwd=work, stdout=said, stderr=subprocess.STDOUT,
                                  timeout=RUN_SECONDS, env=dict(os.environ, **more)).returncode
    except subprocess.TimeoutExpired:
        code = "no end"
    return code, (work / "said.txt").read_text(errors="replace").strip().splitlines()


def play(program, folder, seed, lines):
    work = folder / str(seed)
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    project = []
    if seed % PATHS_EVERY == 0:
        subprocess.run([sys.executable, TOOLS / "make_path_sheet.py", work / "sheet.vlm"], check=True)
        project = ["sheet.vlm"]
    subprocess.run([sys.executable, TOOLS / "make_monkey_script.py", work / "script.jsonl", str(lines), str(seed),
                    *project], check=True)
    played = sum(1 for _ in open(work / "script.jsonl"))
    code, words = run(program, work, {})
    if code != 0 and any("LeakSanitizer has encountered a fatal error" in word for word in words):
        # The leak check itself failed, after the end of the session.
        code, words = run(program, work, {"ASAN_OPTIONS": "detect_leaks=0"})
    if code == 0:
        shutil.rmtree(work)
    return seed, played, code, words[0] if words else ""


def main():
    program, folder = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    wanted = int(sys.argv[3]) if len(sys.argv) > 3 else 50000
    first = int(sys.argv[4]) if len(sys.argv) > 4 else 1
    seeds = range(first, first + (wanted + RUN_LINES - 1) // RUN_LINES)
    os.environ["OMP_NUM_THREADS"] = "1"
    total, failed, start = 0, [], time.monotonic()
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        runs = [pool.submit(play, program, folder, seed, RUN_LINES) for seed in seeds]
        for run in concurrent.futures.as_completed(runs):
            seed, played, code, word = run.result()
            total += played
            if code != 0:
                failed.append(seed)
                print(f"seed {seed}: {code}: {word}", flush=True)
    seconds = time.monotonic() - start
    print(f"{total} lines, {total / seconds:.0f} a second, seeds {seeds[0]} to {seeds[-1]}, failed: {failed or 'none'}")
    sys.exit(1 if failed else 0)


main()
