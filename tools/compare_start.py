#!/usr/bin/env python3
"""Compare start and idle memory of vellumcraft with those of other drawing programs, in one run on one virtual screen.

usage: compare_start.py PROGRAM [RUNS]   (PROGRAM: path of vellumcraft; needs xvfb, openbox and xdotool; measures
                                          mypaint and gimp if they are installed)

Prints for each program the time to its first window wider than 600 pixels, its resident and its proportional memory
five seconds later: the medians, after one run that fills the caches.
"""
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

IDLE_SECONDS = 5
DEADLINE_SECONDS = 60
WIDE = 600


def run(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, encoding="utf-8").stdout


def shows_window():
    for window in run("xdotool", "search", "--onlyvisible", "--name", ".").split():
        shape = dict(line.split("=") for line in run("xdotool", "getwindowgeometry", "--shell", window).split())
        if int(shape.get("WIDTH", 0)) > WIDE:
            return True
    return False


def memory(pid, field):
    for line in pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
        if line.startswith(field + ":"):
            return int(line.split()[1]) / 1024
    return 0


def children(pid):
    found = [pid]
    for parent in found:
        found += [int(child) for child in
                  pathlib.Path(f"/proc/{parent}/task/{parent}/children").read_text().split()]
    return found


def measure(command):
    started = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                               start_new_session=True)
    try:
        while not shows_window():
            if time.monotonic() > started + DEADLINE_SECONDS:
                sys.exit(f"{command[0]}: no window after {DEADLINE_SECONDS} seconds")
            time.sleep(0.005)
        shown = time.monotonic() - started
        time.sleep(IDLE_SECONDS)
        pids = children(process.pid)
        return shown * 1000, sum(memory(p, "Rss") for p in pids), sum(memory(p, "Pss") for p in pids)
    finally:
        os.killpg(process.pid, 9)
        process.wait()
        while shows_window():
            time.sleep(0.05)


def main():
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 5
    page = str(pathlib.Path(__file__).resolve().parent.parent / "resources/samples/sample.png")
    commands = [[sys.argv[1], page], ["mypaint", page], ["gimp", "-s", page]]
    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o700)
        for name in ("XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "XDG_DATA_HOME", "XDG_CACHE_HOME"):
            os.environ[name] = folder
        display = subprocess.Popen(["Xvfb", "-displayfd", "1", "-screen", "0", "1366x768x24"], stdout=subprocess.PIPE,
                                   stderr=subprocess.DEVNULL, encoding="utf-8")
        os.environ["DISPLAY"] = ":" + display.stdout.readline().strip()
        manager = subprocess.Popen(["openbox"], stderr=subprocess.DEVNULL)
        time.sleep(1)
        try:
            print(f"{'program':<14}{'first window':>14}{'resident':>12}{'proportional':>14}")
            for command in commands:
                if not shutil.which(command[0]):
                    continue
                measure(command)
                middle = [statistics.median(column) for column in zip(*(measure(command) for _ in range(runs)))]
                print(f"{pathlib.Path(command[0]).name:<14}{middle[0]:>11.0f} ms{middle[1]:>8.0f} MiB"
                      f"{middle[2]:>10.0f} MiB", flush=True)
        finally:
            manager.kill()
            display.kill()


if __name__ == "__main__":
    main()
