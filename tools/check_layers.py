#!/usr/bin/env python3
"""Check every include of the project against the table in ARCHITECTURE.md.

A family may include: itself, every family of a lower level, and those of its own level that the table's
third column names. Rooms above core include what their row names, with the rooms in it. core/ includes no Qt and no OS
header.
Exit code 1 with one line per violation.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
STANDARD = re.compile(r"^(boost/|hwy/|omp\.h$|[a-z_]+$)")
GENERATED = {"TestPaths.h"}  # made by the build
ROW = re.compile(r"^\|\s*`([^`]+)`\s*\|\s*(\d+)\s*\|\s*([^|]*)\|")


def read_table():
    table = {}
    for line in (ROOT / "ARCHITECTURE.md").read_text(encoding="utf-8").splitlines():
        row = ROW.match(line)
        if row:
            table[row[1]] = (int(row[2]), set(re.findall(r"`([^`]+)`", row[3])))
    return table


def room_of(path, table):
    parts = pathlib.PurePosixPath(path).parts
    for depth in (2, 1):
        name = "/".join(parts[:depth])
        if name in table and len(parts) > depth:
            return name
    return None


def allowed(room, other, table):
    if room == other or other in table[room][1]:
        return True
    if room.startswith("core/") and other.startswith("core/"):
        return table[other][0] < table[room][0]
    return other.split("/")[0] in table[room][1]


def main():
    table = read_table()
    breaches = []
    rooms = sorted({name.split("/")[0] for name in table})
    for top in rooms:
        for path in sorted((ROOT / top).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            name = path.relative_to(ROOT).as_posix()
            room = room_of(name, table)
            if room is None:
                breaches.append(f"{name}: its folder has no row in ARCHITECTURE.md")
                continue
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                include = re.match(r'\s*#\s*include\s*([<"])([^>"]+)[>"]', line)
                if not include:
                    continue
                target = include[2]
                other = room_of(target, table)
                if other is not None:
                    if not allowed(room, other, table):
                        breaches.append(f"{name}:{number}: {room} may not include {other}")
                elif target in GENERATED:
                    continue
                elif include[1] == '"' and not (path.parent / target).exists() and not target.startswith("moc_"):
                    breaches.append(f"{name}:{number}: {target} is in no room of the table")
                elif room.startswith("core/") and include[1] == "<" and not STANDARD.match(target):
                    breaches.append(f"{name}:{number}: core may not include <{target}>")
    print("\n".join(breaches) if breaches else f"layers: {len(table)} rooms, 0 breaches")
    return 1 if breaches else 0


sys.exit(main())
