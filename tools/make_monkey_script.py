#!/usr/bin/env python3
"""Writes a random session script: make_monkey_script.py FILE LINES SEED [PROJECT]

Random strokes, commands, layers, views, panels and keys on small canvases; between them undo and redo,
and saving and reopening of documents, each of which must restore the same document. Every line is valid after any other:
commands use `try`, and lines that need a document have one. PROJECT is opened from time to time.
The same SEED gives the same script.
"""
import json
import random
import sys

NEW, UNDO, REDO = 57600, 57643, 57644
NEW_RASTER, NEW_VIEW, MERGE, RASTERIZE = 12900, 12800, 12905, 12906
LAYER_COMMANDS = [12900, 12901, 12902, 12903, 12903, 12904, 12904, 12905, 12905, 12906, 13100, 13101, 13102]
VIEW_COMMANDS = [12808] + list(range(12810, 12815)) + list(range(12816, 12822))
PANELS = [12803, 12804, 12805, 12809, 12815]
TOOLS = [2, 3, 4, 5, 6, 7, 8, 9]
SECTIONS = ["RasterBrush", "RasterEraser", "RasterPencil"]
# Settings of the tools, and their possible values.
PARAMS = {"BrushRadius": [1, 2, 5, 12], "BrushAlpha": [1, 90, 255], "BlurLevel": [0, 30, 100], "Spray": [0, 0, 80],
          "WaveEnable": [0, 1], "WaveDistMin": [0, 9], "WaveDistMax": [0, 9, 40], "WaveSmooth": [1, 6],
          "CurveStrength": [0, 3, 12], "PressAlpha": [0, 1], "PressRadius": [0, 1], "AntiSplit": [0, 1],
          "StrokeIn": [0, 1, 2], "StrokeOut": [0, 1, 2], "PencilHardness": [0, 2, 4], "PaperRoughness": [0, 7],
          "PencilTexture": [0, 3], "BrushColor": [0, 255, 0xFFFFFF, 0x123456]}
KEYS = [ord("X"), 18, 16, 27, 32, 46, 114, 115, 36, 9]  # no key that opens a dialog
CANVASES = [(40, 30), (130, 90), (97, 200), (1, 1)]
DOCUMENT_LINES = 700  # about how long one document is worked on


class Monkey:
    def __init__(self, lines, seed, project):
        self.random = random.Random(seed)
        self.wanted = lines
        self.lines = []
        self.project = project
        self.size = (1, 1)
        self.left = 0  # lines until the next document

    def say(self, verb, value):
        if verb in ("pen", "mouse", "packet", "pointer"):
            value = dict(value, idle=True)  # nothing need take it
        self.lines.append(json.dumps({verb: value}, ensure_ascii=False, separators=(",", ":")))

    def chance(self, n):
        return self.random.randrange(n) == 0

    def position(self):
        w, h = self.size
        return {"x": self.random.randint(-80, w * 8 + 80), "y": self.random.randint(-80, h * 8 + 80)}

    def settle(self):
        """Ends strokes and drags, and releases keys."""
        self.say("proximity", "leave")
        self.say("mouse", {"message": "rdown", "x": 0, "y": 0})
        self.say("keys", [])
        self.say("key", {"up": 32})
        self.say("key", {"up": 18})

    def new(self):
        self.size = self.random.choice(CANVASES)
        self.say("answer", {"dialog": "CNewDialog", "width": self.size[0], "height": self.size[1],
                            "color": self.chance(2)})
        self.say("try", NEW)
        self.view_size()
        self.left = self.random.randint(DOCUMENT_LINES // 2, DOCUMENT_LINES * 2)

    def view_size(self):
        self.say("view", {"width": self.random.choice([60, 160]), "height": self.random.choice([50, 120])})

    def stroke(self):
        if self.chance(3):
            self.say("wait", 1100)  # the mouse is heard again
            held = self.random.choice([None, None, 16, 17, 17, 18])  # Shift, Control, Alt
            if held:
                self.say("key", {"down": held})
            for _ in range(self.random.randint(1, 4 if held else 1)):
                self.say("mouse", dict(self.position(), message="ldown"))
                for _ in range(self.random.randint(0, 6)):
                    self.say("mouse", self.position())
                self.say("mouse", dict(self.position(), message=self.random.choice(["lup", "lup", "lup", "rdown"])))
            if held:
                self.say("key", {"up": held})
            return
        at, step = self.position(), self.random.choice([10, 60, 300])
        for _ in range(self.random.randint(1, 10)):
            at = {k: v + self.random.randint(-step, step) for k, v in at.items()}
            pen = dict(at, pressure=self.random.choice([0, 1, 300, 700, 1024]))
            if self.chance(4):
                pen.update(altitude=self.random.randint(0, 90), low=self.chance(2))
            self.say("pen", pen)
        if not self.chance(5):
            self.say("proximity", "leave")

    def window_input(self):
        kind = self.random.randrange(4)
        at = {"x": self.random.randint(-20, 200), "y": self.random.randint(-20, 150)}
        if kind == 0:
            for _ in range(self.random.randint(1, 6)):
                self.say("packet", {"x": at["x"] * 8, "y": at["y"] * 8, "pressure": self.random.choice([0, 500, 1023]),
                                    "eraser": self.chance(6)})
                at = {k: v + self.random.randint(-9, 9) for k, v in at.items()}
            self.say("proximity", self.random.choice(["leave", "enter", "eraser"]))
        elif kind == 1:
            self.say("wait", 1100)
            for message, left in [("move", False), ("ldown", True), ("move", True), ("lup", False)]:
                self.say("pointer", dict(at, message=message, left=left))
                at = {k: v + self.random.randint(-30, 30) for k, v in at.items()}
        elif kind == 2:
            self.say("pointer", {"message": self.random.choice(["leave", "lost"])})
        else:
            self.say("wheel", self.random.choice([120, -120]))

    def layer(self):
        change = {"opacity": lambda: self.random.randrange(256), "name": lambda: self.random.choice(["線", "a", "紙 2"]),
                  "visible": lambda: not self.chance(3)}
        self.ensure_layer()
        self.say("layer", {k: make() for k, make in change.items() if self.chance(2)} or {"opacity": 255})

    def ensure_layer(self):
        self.settle()
        self.say("try", NEW_RASTER)
        if self.chance(2):
            self.say("try", MERGE)

    def parameter(self):
        for _ in range(self.random.randint(1, 3)):
            key = self.random.choice(list(PARAMS))
            self.say("set", {"section": "BrushParam\\" + self.random.choice(SECTIONS), "key": key,
                             "value": self.random.choice(PARAMS[key])})
        self.say("tool", self.random.choice(TOOLS))

    def key(self):
        key = self.random.choice(KEYS)
        self.say("key", {"down": key})
        if self.chance(3):
            self.stroke()
        self.say("key", {"up": key})

    def panel(self):
        panel = self.random.choice(PANELS)
        self.say("try", panel)
        if self.chance(2):
            self.say("tool", self.random.choice(TOOLS))
            self.say("try", panel)

    def walk(self):
        """A new action clears the redo list, so as many redos as undos restore the document."""
        self.settle()
        self.say("try", NEW_RASTER)
        self.say("mark", "walk")
        steps = self.random.choice([1, 2, 5, 40])
        for command in [UNDO] * steps + [REDO] * steps:
            self.say("try", command)
        self.say("expect", {"mark": "walk"})

    def save(self):
        self.settle()
        self.say("mark", "saved")
        self.say("save", "page.vlm")
        self.say("open", "page.vlm")
        self.say("expect", {"mark": "saved", "modified": False})
        if self.chance(2):
            self.say("try", NEW_VIEW)
            self.say("close", "frame")
        self.say("close", "frame")
        self.say("expect", {"mark": "saved"})
        if self.chance(4):
            self.say("export", self.random.choice(["page.png", "page.psd", "page.gif", "page.jpg", "page.bmp"]))

    def visit_project(self):
        """Draws and rasterizes paths, and restores them by undo."""
        self.settle()
        self.say("open", self.project)
        self.view_size()
        self.say("layer", {"select": [0], "opacity": self.random.choice([90, 255])})
        self.say("mark", "paths")
        self.say("try", RASTERIZE)
        self.stroke()
        self.settle()
        for _ in range(12):
            self.say("try", UNDO)
        self.say("try", self.random.choice(VIEW_COMMANDS))
        self.say("save", "paths.vlm")
        self.say("close", "frame")

    def play(self):
        deeds = [(30, self.stroke), (8, lambda: self.say("try", self.random.choice(LAYER_COMMANDS))),
                 (8, lambda: self.say("try", self.random.choice([UNDO, UNDO, REDO]))),
                 (4, lambda: self.say("try", self.random.choice(VIEW_COMMANDS))), (4, self.parameter),
                 (4, self.window_input), (3, self.layer), (2, self.key), (2, self.panel), (2, self.walk), (1, self.save),
                 (2, lambda: self.say("wait", self.random.choice([1, 50, 600, 5000]))), (1, self.view_size)]
        weights, deeds = zip(*deeds)
        self.new()
        if self.project:
            self.visit_project()
        while len(self.lines) < self.wanted:
            before = len(self.lines)
            self.random.choices(deeds, weights)[0]()
            self.left -= len(self.lines) - before
            if self.left < 0:
                # The last action modifies the document, so that closing it shows a prompt.
                self.settle()
                self.say("try", NEW_RASTER)
                self.say("answer", {"box": "no"})
                self.say("close", "frame")
                self.new()


def main():
    project = sys.argv[4] if len(sys.argv) > 4 else None
    monkey = Monkey(int(sys.argv[2]), int(sys.argv[3]), project)
    monkey.play()
    with open(sys.argv[1], "w", encoding="utf-8") as file:
        file.write("\n".join(monkey.lines) + "\n")


main()
