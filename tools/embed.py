#!/usr/bin/env python3
"""Write a C++ source that holds resource files as byte arrays.

usage: embed.py OUT ROOTS FILE...   (each FILE is named in the program by its path under its root; ROOTS are
folders separated by commas)
"""
import pathlib
import sys


def name_of(path, roots):
    return next(path.relative_to(root).as_posix() for root in roots if path.is_relative_to(root))


def main():
    out, roots, files = pathlib.Path(sys.argv[1]), sys.argv[2].split(","), sorted(sys.argv[3:])
    lines = ['#include "core/Base/Resource.h"', "#include <algorithm>", "#include <iterator>", "", "namespace {", ""]
    table = []
    for i, name in enumerate(files):
        data = pathlib.Path(name).read_bytes()
        lines.append(f"const unsigned char g_aData{i}[] = {{")
        for at in range(0, len(data), 20):
            lines.append("    " + "".join(f"{b}," for b in data[at:at + 20]))
        lines.append("    0};")
        table.append(f'    {{"{name_of(pathlib.Path(name), roots)}", g_aData{i}, {len(data)}}},')
    lines += ["", "struct TEntry {", "    std::string_view strName;", "    const unsigned char* pData;",
              "    size_t nSize;", "};", "", "const TEntry g_aEntries[] = {"] + table
    lines += ["};", "", "} // namespace", "",
              "std::string_view FindResource(std::string_view strName) {",
              "    auto it = std::find_if(std::begin(g_aEntries), std::end(g_aEntries),",
              "                           [&](const TEntry& e) { return e.strName == strName; });",
              "    if (it == std::end(g_aEntries)) return {};",
              "    return {reinterpret_cast<const char*>(it->pData), it->nSize};", "}", ""]
    out.write_text("\n".join(lines), encoding="utf-8")


main()
