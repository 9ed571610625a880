#!/usr/bin/env python3
"""Make the plug-in property lists from their readable table.

usage: make_pipl.py [--check] [FOLDER]   (FOLDER holds pipl.tsv and receives pipl32.bin and pipl64.bin;
                                          default: resources/ of this project)

With --check nothing is written; exit code 1 when a stored file differs from the table.
"""
import pathlib
import struct
import sys

VENDOR = "8BIM"


def code(text):
    """A four-character code: the big-endian number of its characters, stored little-endian."""
    if len(text) != 4:
        raise ValueError(f"not a four-character code: {text!r}")
    return text.encode("ascii")[::-1]


def pascal(text):
    return bytes([len(text)]) + text.encode("ascii")


KINDS = {
    "code": code,
    "number": lambda text: b"".join(struct.pack("<I", int(word, 0)) for word in text.split()),
    "pascal": pascal,
    "text": lambda text: text.encode("ascii") + b"\0",
    "bytes": bytes.fromhex,
}


def read_table(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if not line or line.startswith("#"):
            continue
        key, length, kind, value = line.split("\t")
        data = KINDS[kind](value)
        if len(data) > int(length) or (kind not in ("pascal", "text") and len(data) != int(length)):
            raise ValueError(f"{path.name}:{number}: {len(data)} bytes do not make a value of {length}")
        yield key.split("/"), data.ljust(int(length), b"\0")


def make(table, width):
    """The resource for code of `width` bits. Nothing after the 10-byte header is aligned in the file."""
    out = struct.pack("<hii", 1, 0, len(table))
    for keys, data in table:
        key = keys[-1] if width == 64 else keys[0]
        out += code(VENDOR) + code(key) + struct.pack("<ii", 0, len(data)) + data + bytes(-len(data) % 4)
    return out


def main():
    arguments = sys.argv[1:]
    check = "--check" in arguments
    folders = [a for a in arguments if a != "--check"]
    folder = pathlib.Path(folders[0] if folders else pathlib.Path(__file__).resolve().parent.parent / "resources")
    table = list(read_table(folder / "pipl.tsv"))
    differs = False
    for width in (32, 64):
        path = folder / f"pipl{width}.bin"
        data = make(table, width)
        if check and (not path.exists() or path.read_bytes() != data):
            print(f"{path.name} is not what pipl.tsv gives: run tools/make_pipl.py")
            differs = True
        elif not check:
            path.write_bytes(data)
    return 1 if differs else 0


sys.exit(main())
