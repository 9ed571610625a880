#!/usr/bin/env python3
"""Make vellumcraft-windows.zip of a build: module, programs, manual, licences and the page on installing.

Usage: make_zip.py BUILD CACHE. BUILD holds bin/ and share/; CACHE is the folder that build_libraries.sh was given. Programs
are stripped in a copy. Prints the sizes.
"""
import pathlib
import subprocess
import sys
import zipfile

HERE = pathlib.Path(__file__).resolve().parent
MODULES = ["vellumcraft.8bf", "vellumcraft.exe", "vellumcraft-filter.exe", "vellumcraft-session.exe"]
SOURCES = ["qt6-base", "qtsvg-opensource-src", "qt6-imageformats", "highway", "giflib"]
PACKAGES = ["libboost1.74-dev", "nlohmann-json3-dev", "libz-mingw-w64-dev", "mingw-w64-common", "g++-mingw-w64-x86-64-posix"]
FIRST_DATE = (1980, 1, 1, 0, 0, 0)  # of every entry, so that the same build gives the same file


def strip(build):
    folder = build / "stripped"
    folder.mkdir(exist_ok=True)
    for name in MODULES:
        subprocess.run(["x86_64-w64-mingw32-strip", "-o", folder / name, build / "bin" / name], check=True)
        yield name, folder / name


def files(build, cache):
    yield from strip(build)
    yield "install.html", HERE / "install.html"
    for path in sorted((build / "share").rglob("*")):
        if path.is_file():
            yield path.relative_to(build).as_posix(), path
    for name in SOURCES:
        yield f"licenses/{name}.txt", cache / "src" / name / "debian" / "copyright"
    for name in PACKAGES:
        yield f"licenses/{name}.txt", pathlib.Path("/usr/share/doc") / name / "copyright"
    for path in sorted(pathlib.Path("/usr/share/common-licenses").iterdir()):
        if path.name in ("LGPL-3", "GPL-3", "Apache-2.0"):
            yield f"licenses/{path.name}.txt", path


def main(build, cache):
    archive = build / "vellumcraft-windows.zip"
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as out:
        for name, path in files(build, cache):
            entry = zipfile.ZipInfo("vellumcraft-windows/" + name, FIRST_DATE)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            out.writestr(entry, path.read_bytes())
    for path in [build / "stripped" / name for name in MODULES] + [archive]:
        print(f"{path.stat().st_size / 1e6:6.1f} MB  {path.relative_to(build)}")


main(pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve())
