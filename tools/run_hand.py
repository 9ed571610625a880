#!/usr/bin/env python3
"""Random user input in the real window: run_hand.py PROGRAMS FOLDER [STEPS [SEED]]

PROGRAMS is the folder of the built programs. In an X server without a screen the script draws, drags, types, opens menus
and dialogs, moves windows and panels; the session is recorded. At the end each document is saved, the program closed,
and the record played without a window: its documents must be the same bytes. Runs of some hundred steps, with the seeds
from SEED on. The files of a failed run stay in FOLDER: its record, its output and a picture of the screen. The exit
code is 1 when one has failed. Needs Xvfb, openbox, xdotool and import.
"""
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

RUN_STEPS = 250
PATIENCE = 60  # seconds for whatever is awaited
LATE = 10      # and for what may not happen at all
SCREEN = (1280, 900)
COLUMN = 240  # width of the panels at each side
MAIN_TITLE = "(^| - )Vellumcraft$"  # behind the name of the active document
LETTERS = "abcdefghijklmnopqrstuvwxyz123456789"
MENUS = {"l": "rvsdcm", "v": "iof", "w": "chva", "i": "m"}  # mnemonics of the menus and of their lines


class Failure(Exception):
    pass


class Screen:
    """A separate X server with a window manager."""

    def __enter__(self):
        out, into = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(into), "-screen", "0", "%dx%dx24" % SCREEN],
                                       pass_fds=[into], stderr=subprocess.DEVNULL)
        os.close(into)
        self.env = dict(os.environ, DISPLAY=":" + os.fdopen(out).readline().strip(), QT_QPA_PLATFORM="xcb")
        self.manager = subprocess.Popen(["openbox"], env=self.env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(1)
        return self

    def __exit__(self, *_):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()

    def shoot(self, path):
        subprocess.run(["import", "-window", "root", str(path)], env=self.env, check=False)


class Hand:
    """Pointer and keyboard. One xdotool call per gesture: its events are sent without delay."""

    def __init__(self, screen, chance, pause, folder):
        self.env, self.chance, self.pause, self.folder = screen.env, chance, pause, folder
        self.size = SCREEN
        self.documents = 0

    def do(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def key(self, *keys):
        self.do("key", "--delay", 5, *keys)

    def wait(self, seconds):
        time.sleep(seconds * self.pause)

    def wait_until(self, happened, least):
        """Waits at least `least` seconds, longer on a busy machine."""
        self.wait(least)
        end = time.monotonic() + LATE
        while not happened() and time.monotonic() < end:
            self.wait(0.2)

    def in_dialog(self):
        """True when a window other than the main one has the focus."""
        name = subprocess.run(["xdotool", "getactivewindow", "getwindowname"], env=self.env, capture_output=True, text=True).stdout
        return not re.search(MAIN_TITLE, name.strip())

    def drag(self, start=None, reach=60):
        x, y = start or self.anywhere()
        words = ["mousemove", x, y, "mousedown", 1]
        for _ in range(self.chance.randrange(3, 14)):
            x, y = x + self.chance.randrange(-reach, reach), y + self.chance.randrange(-reach, reach)
            words += ["mousemove", max(x, 0), max(y, 0)] + (["sleep", 0.01] if self.chance.random() < 0.2 else [])
        self.do(*words, "mouseup", 1)

    def anywhere(self):
        width, height = self.size
        return self.chance.randrange(COLUMN, width - COLUMN), self.chance.randrange(120, height - 80)

    def in_panels(self):
        width, height = self.size
        left = self.chance.choice([0, width - COLUMN])
        return left + self.chance.randrange(5, COLUMN - 10), self.chance.randrange(90, height - 60)

    def take_window(self, width, height):
        """Moves the main window to the screen's corner. Clicks beside it have no effect."""
        self.size = width, height
        self.do("search", "--onlyvisible", "--name", MAIN_TITLE, "windowactivate", "windowmove", 0, 0,
                "windowsize", width, height - 30)
        self.wait(0.2)

    # The possible actions.

    def move_view(self):
        self.do("keydown", "space")
        self.drag()
        self.do("keyup", "space")

    def use_panel(self):
        self.drag(self.in_panels(), 15)
        if self.chance.random() < 0.3:
            self.key("Escape")

    def type_in_panel(self):
        self.do("mousemove", *self.in_panels(), "click", "--repeat", 2, 1)
        self.key(*self.chance.choices("0123456789", k=2), "Return")
        self.key("Escape")

    def drag_row(self):
        """Drags a row of a list up or down, or sweeps over eyes; Escape may give it up."""
        x, y = self.in_panels()
        words = ["mousemove", x, y, "mousedown", 1]
        for _ in range(self.chance.randrange(2, 6)):
            y += self.chance.randrange(-60, 60)
            words += ["mousemove", x, y, "sleep", 0.02]
        self.do(*words, *(["key", "Escape"] if self.chance.random() < 0.2 else []), "mouseup", 1)

    def open_panel_menu(self):
        self.do("mousemove", *self.in_panels(), "click", 3)
        self.wait(0.12)
        self.key(*["Down"] * self.chance.randrange(1, 9), self.chance.choice(["Return", "Return", "Escape"]))
        self.key("Escape")

    def rename_row(self):
        self.do("mousemove", *self.in_panels(), "click", "--repeat", 2, "--delay", 60, 1)
        self.key(*self.chance.choices(LETTERS, k=3), self.chance.choice(["Return", "Escape"]))
        self.key("Escape")

    def move_panel(self):
        self.drag(self.chance.choice([(100, 160), (self.size[0] - 150, 92), (self.size[0] - 150, 398)]), 200)

    def choose_tool(self):
        self.do("mousemove", self.chance.choice([21, 55, 89]), 123, "click", 1)

    def open_menu(self):
        menu = self.chance.choice(list(MENUS))
        self.key("alt+" + menu)
        self.wait(0.12)
        self.key(self.chance.choice(MENUS[menu]))
        self.wait(0.08)
        if self.chance.random() < 0.5:
            self.key("Escape", "Escape")

    def turn_wheel(self):
        self.do("mousemove", *self.anywhere(), "click", "--repeat", self.chance.randrange(1, 4),
                self.chance.choice([4, 5]))

    def undo(self):
        self.key(self.chance.choice(["ctrl+z", "ctrl+z", "ctrl+y"]))

    def change_view(self):
        self.key(self.chance.choice(["ctrl+plus", "ctrl+minus", "Home", "ctrl+Up", "ctrl+Down", "ctrl+Left", "ctrl+Right"]))

    def resize(self):
        self.take_window(self.chance.randrange(900, SCREEN[0]), self.chance.randrange(600, SCREEN[1]))

    def open_dialog(self):
        self.key("alt+" + self.chance.choice("fh"))
        self.wait(0.12)
        self.key(self.chance.choice("pao"))
        self.wait(0.5)
        self.key(self.chance.choice(["Return", "Escape"]))
        self.key("Escape", "Escape")
        self.wait(0.2)

    def new_document(self):
        self.key("ctrl+n")
        self.wait(0.5)
        self.key("Return")
        self.wait(0.4)

    def close_document(self):
        if self.chance.random() < 0.8:
            self.save_document()
        self.key("ctrl+F4")
        self.wait(0.4)
        self.key("n")
        self.wait(0.2)
        self.new_document()

    def save_document(self):
        """True when there was one. Each gets a unique name."""
        path = self.folder / f"{self.documents}.vlm"
        self.key("ctrl+s")
        self.wait_until(self.in_dialog, 0.8)
        self.do("type", "--delay", 10, path)
        self.key("Return")
        self.wait_until(path.exists, 0.8)
        self.key("Escape", "Escape")
        self.documents += path.exists()
        return path.exists()

    def change_document(self):
        self.key("ctrl+Tab")

    def press_any(self):
        self.key(self.chance.choice(LETTERS))

    DEEDS = {drag: 12, move_view: 2, use_panel: 5, type_in_panel: 1, drag_row: 3, open_panel_menu: 1.5,
             rename_row: 1, move_panel: 0.3, choose_tool: 3, open_menu: 5, turn_wheel: 3, undo: 5, change_view: 2,
             resize: 1, open_dialog: 0.5, new_document: 0.4, close_document: 0.5, change_document: 0.7, press_any: 1}

    def act(self):
        self.chance.choices(list(self.DEEDS), list(self.DEEDS.values()))[0](self)


class Session:
    def __init__(self, programs, work, screen, seed):
        self.programs, self.work, self.screen = programs, work, screen
        shutil.rmtree(work, ignore_errors=True)
        for name in ("first", "run"):
            (work / name).mkdir(parents=True)
        (work / "run").chmod(0o700)
        slow = 3 if "asan" in programs.parts else 1
        self.hand = Hand(screen, random.Random(seed), slow, work)
        self.env = self.settings("settings")
        self.program = subprocess.Popen([programs / "vellumcraft", "--record", work / "record.jsonl"], cwd=work,
                                        env=self.env, stdout=open(work / "said.txt", "w"), stderr=subprocess.STDOUT)

    def settings(self, name):
        return dict(self.screen.env, XDG_CONFIG_HOME=str(self.work / name), XDG_DATA_HOME=str(self.work / name),
                    XDG_RUNTIME_DIR=str(self.work / "run"))

    def runs(self):
        return self.program.poll() is None

    def play(self, steps):
        subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--name", MAIN_TITLE], env=self.env,
                       timeout=PATIENCE, stdout=subprocess.DEVNULL)
        self.hand.wait(1)
        self.hand.take_window(*SCREEN)
        self.hand.new_document()
        for step in range(steps):
            self.hand.act()
            if not self.runs():
                raise Failure(f"the program ended at step {step}")

    def save_all(self):
        """Saves and closes each document."""
        self.hand.key("Escape", "Escape")
        self.hand.take_window(*SCREEN)
        while self.hand.save_document():
            self.hand.key("ctrl+F4")
            self.hand.wait(0.8)

    def close(self):
        self.hand.key("alt+f")
        self.hand.wait(0.3)
        self.hand.key("x")
        end = time.monotonic() + PATIENCE
        while self.runs() and time.monotonic() < end:
            self.hand.wait(0.6)
            self.hand.key("n")
        if self.runs():
            raise Failure("the program does not end")
        if self.program.returncode != 0:
            raise Failure(f"the program ended with {self.program.returncode}")

    def compare(self):
        """Moves the documents away, plays the record in their folder and compares the results."""
        names = sorted(path.name for path in self.work.glob("*.vlm"))
        for name in names:
            (self.work / name).rename(self.work / "first" / name)
        played = subprocess.run([self.programs / "vellumcraft-session", "record.jsonl"], cwd=self.work,
                                env=self.settings("settings of the play"), capture_output=True, text=True)
        if played.returncode != 0:
            raise Failure("the record does not play: " + played.stderr.strip())
        for name in names:
            again = self.work / name
            if not again.exists() or again.read_bytes() != (self.work / "first" / name).read_bytes():
                raise Failure(f"{name} differs after the record was played")
        return len(names)


def run(programs, folder, screen, seed, steps):
    work = folder / f"window-{seed}"
    session = Session(programs, work, screen, seed)
    try:
        session.play(steps)
        session.save_all()
        session.close()
        documents = session.compare()
    except Failure as failure:
        screen.shoot(work / "screen.png")
        session.program.kill()
        print(f"seed {seed}: {failure}", flush=True)
        return False
    print(f"seed {seed}: {steps} steps, {documents} documents the same", flush=True)
    shutil.rmtree(work)
    return True


def main():
    programs, folder = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    wanted = int(sys.argv[3]) if len(sys.argv) > 3 else 1000
    first = int(sys.argv[4]) if len(sys.argv) > 4 else 1
    failed = []
    with Screen() as screen:
        for seed in range(first, first + (wanted + RUN_STEPS - 1) // RUN_STEPS):
            if not run(programs, folder, screen, seed, RUN_STEPS):
                failed.append(seed)
    print(f"failed: {failed or 'none'}")
    sys.exit(1 if failed else 0)


main()
