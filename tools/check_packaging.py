#!/usr/bin/env python3
"""Check what an installed application needs by the desktop's own validators: ./dev test runs this.

usage: check_packaging.py   (needs desktop-file-utils, appstream, shared-mime-info and libxml2-utils)

Exit code 1 with what the validators say, or with one line per contradiction between the files.
"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(__file__).resolve().parent.parent
PACKAGING = ROOT / "packaging"
PNG_SIZE = slice(16, 24)


def run(*command):
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          encoding="utf-8")
    said = done.stdout.strip()
    return [] if done.returncode == 0 else [f"{command[0]}: {said or done.returncode}"]


def validate(name):
    desktop, metainfo, types = (PACKAGING / (name + end) for end in (".desktop", ".metainfo.xml", ".mime.xml"))
    faults = run("desktop-file-validate", desktop)
    faults += run("appstreamcli", "validate", "--no-net", metainfo)
    faults += run("xmllint", "--noout", metainfo, types)
    with tempfile.TemporaryDirectory() as folder:
        packages = pathlib.Path(folder) / "packages"
        packages.mkdir()
        shutil.copy(types, packages / (name + ".xml"))
        faults += run("update-mime-database", folder)
    return faults


def check_screenshots(component):
    """The addresses in the metainfo end as the paths of the pictures in the sources do."""
    for image in component.iter("image"):
        path = ROOT / re.sub(r"^https://[^/]+/", "", image.text)
        size = [int(image.get(side)) for side in ("width", "height")]
        if not path.is_file():
            yield f"metainfo: there is no {path.relative_to(ROOT)}"
        elif path.read_bytes()[PNG_SIZE] != b"".join(n.to_bytes(4, "big") for n in size):
            yield f"metainfo: {path.relative_to(ROOT)} is not {size[0]} by {size[1]}"


def check_thumbnailer(name):
    """No validator knows thumbnailers: their programs are those that are installed, their type is that of project files."""
    entry = dict(re.findall("^([A-Za-z]+)=(.*)$", (PACKAGING / (name + ".thumbnailer")).read_text(), re.M))
    programs = re.search(r"set\(PROGRAMS ([^)]+)\)", (PACKAGING / "CMakeLists.txt").read_text())[1].split()
    types = ElementTree.parse(PACKAGING / (name + ".mime.xml")).getroot().findall("{*}mime-type")
    program, *arguments = entry.get("Exec", "none").split()
    if program not in programs or entry.get("TryExec") != program:
        yield f"thumbnailer: {program}, {entry.get('TryExec')}: no installed program, or two"
    if not {"%s", "%i", "%o"} <= set(arguments):
        yield f"thumbnailer: the arguments {' '.join(arguments)} lack size, input or output"
    if entry.get("MimeType") != "".join(kind.get("type") + ";" for kind in types):
        yield f"thumbnailer: {entry.get('MimeType')} is not the type of project files"


def check_names(name, component):
    desktop = (PACKAGING / (name + ".desktop")).read_text(encoding="utf-8")
    ids = {"metainfo, id": component.findtext("id"),
           "metainfo, launchable": component.findtext("launchable").removesuffix(".desktop"),
           "desktop entry, Icon": re.search("^Icon=(.*)$", desktop, re.M)[1],
           "CMakeLists.txt, APPLICATION_ID": re.search(r"APPLICATION_ID (\S+)\)",
                                                       (PACKAGING / "CMakeLists.txt").read_text())[1]}
    yield from (f"{place}: {found} instead of {name}" for place, found in ids.items() if found != name)
    version = re.search(r"VERSION (\d[\d.]*) LANG", (ROOT / "CMakeLists.txt").read_text())[1]
    versions = {"metainfo": component.find("releases/release").get("version"),
                "debian/changelog": re.search(r"\((.+)-\d+\)", (PACKAGING / "debian/changelog").read_text())[1]}
    yield from (f"{place}: newest version {found} instead of {version}" for place, found in versions.items()
                if found != version)


def main():
    (desktop,) = PACKAGING.glob("*.desktop")
    component = ElementTree.parse(PACKAGING / (desktop.stem + ".metainfo.xml")).getroot()
    faults = [*validate(desktop.stem), *check_names(desktop.stem, component), *check_screenshots(component),
              *check_thumbnailer(desktop.stem)]
    print("\n".join(faults) if faults else "packaging: valid")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
