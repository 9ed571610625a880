#!/usr/bin/env python3
"""Runs the benchmarks and prints one table of ratios to their peers: bench_table.py FOLDER [--json FILE] [OPTION...]

FOLDER holds the bench-* programs; OPTIONs go to each of them. The compared pairs are listed in bench/pairs.tsv. A
benchmark without a peer gets a separate line. With --json the table and all measurements are written.
"""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

PAIRS = pathlib.Path(__file__).resolve().parent.parent / "bench" / "pairs.tsv"
# Suffixes that the library appends to a name for the way of measuring.
MEASURED = re.compile(r"/(real_time|manual_time|process_time|iterations:\d+)$")
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def read_pairs():
    pairs = []
    for line in PAIRS.read_text().splitlines():
        if line and not line.startswith("#"):
            program, ours, peer, compared, goal = line.split("\t")
            pairs.append({"program": program, "ours": ours, "peer": peer, "compared": compared,
                          "goal": float(goal) if goal else None})
    return pairs


def plain_name(name):
    while MEASURED.search(name):
        name = MEASURED.sub("", name)
    return name


def run(program, options):
    """All results of one program by name, and the library's description of the machine."""
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        subprocess.run([program, f"--benchmark_out={out.name}", "--benchmark_out_format=json", *options], check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        report = json.load(open(out.name))
    results = {plain_name(b["name"]): b for b in report["benchmarks"] if b.get("run_type") != "aggregate"}
    return results, report["context"]


def cost(result, compared):
    """Nanoseconds, per item where items per second are compared: less is better."""
    if result is None or result.get("error_occurred"):
        return None
    if compared == "rate":
        return 1e9 / result["items_per_second"]
    if compared in ("time", "cpu"):
        return result["real_time" if compared == "time" else "cpu_time"] * NANOSECONDS[result["time_unit"]]
    return result[compared] * NANOSECONDS["ms"]


def human(nanoseconds):
    if nanoseconds is None:
        return "failed"
    for unit, factor in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= factor:
            return f"{nanoseconds / factor:.3g} {unit}"
    return f"{nanoseconds:.3g} ns"


def line_of(pair, results):
    compared, _, of_peer = pair["compared"].partition(" : ")
    ours = cost(results.get(pair["ours"]), compared)
    peer = cost(results.get(pair["peer"]), of_peer or compared)
    ratio = ours / peer if ours and peer else None
    goal, reached = pair["goal"], ratio if pair["peer"] else ours and ours / NANOSECONDS["ms"]
    met = None if goal is None or reached is None else reached <= goal
    return dict(pair, ours_ns=ours, peer_ns=peer, ratio=ratio, met=met)


def machine(folder, context):
    cpu, vectors = "unknown", []
    for line in open("/proc/cpuinfo"):
        if line.startswith("model name"):
            cpu = line.split(":", 1)[1].strip()
        if line.startswith("flags"):
            flags = set(line.split(":", 1)[1].split())
            vectors = [v for v in ("sse4_2", "avx2", "avx512f", "avx512_bf16") if v in flags]
    cache = {}
    for line in open(folder.parent / "CMakeCache.txt") if (folder.parent / "CMakeCache.txt").exists() else []:
        if "=" in line and not line.startswith(("#", "//")):
            key, value = line.strip().split("=", 1)
            cache[key.split(":")[0]] = value
    compiler = "unknown"
    if "CMAKE_CXX_COMPILER" in cache:
        compiler = subprocess.run([cache["CMAKE_CXX_COMPILER"], "--version"], capture_output=True,
                                  text=True).stdout.splitlines()[0]
    return {"cpu": cpu, "cores": os.cpu_count(), "vector set": vectors[-1] if vectors else "none", "compiler": compiler,
            "build": cache.get("CMAKE_BUILD_TYPE", "unknown"), "date": context.get("date", "")}


def show(rows):
    widths = [max(len(row[n]) for row in rows) for n in range(len(rows[0]))]
    for row in rows:
        cells = [cell.ljust(w) if n < 3 else cell.rjust(w) for n, (cell, w) in enumerate(zip(row, widths))]
        print("  ".join(cells).rstrip())


def main():
    arguments = sys.argv[1:]
    kept = None
    if "--json" in arguments:
        at = arguments.index("--json")
        kept = arguments[at + 1]
        del arguments[at:at + 2]
    folder, options = pathlib.Path(arguments[0]).resolve(), arguments[1:]
    pairs, lines, unknown, measured, context = read_pairs(), [], [], {}, {}
    rows = [["program", "ours", "peer", "ours", "peer", "ratio", "goal"]]
    for program in sorted(folder.glob("bench-*")):
        name = program.name.removeprefix("bench-")
        print(f"running {program.name}", file=sys.stderr)
        results, context = run(program, options)
        measured[name] = results
        own = [line_of(pair, results) for pair in pairs if pair["program"] == name]
        unknown += [f"{name}: {line[side]}" for line in own for side in ("ours", "peer")
                    if line[side] and line[side] not in results]
        own = [line for line in own if line["ours"] in results and (not line["peer"] or line["peer"] in results)]
        lines += own
        for line in own:
            unit = "" if line["peer"] else " ms"
            goal = "" if line["goal"] is None else f"{line['goal']:g}{unit} " + ("met" if line["met"] else "missed")
            rows.append([name, line["ours"], line["peer"], human(line["ours_ns"]),
                         human(line["peer_ns"]) if line["peer"] else "",
                         f"{line['ratio']:.2f}" if line["ratio"] else "", goal])
        paired = {line[side] for line in own for side in ("ours", "peer")}
        rows += [[name, other, "", human(cost(result, "time")), "", "", ""]
                 for other, result in results.items() if other not in paired]
    about = machine(folder, context)
    print(", ".join(f"{key}: {value}" for key, value in about.items()))
    print()
    show(rows)
    if kept:
        with open(kept, "w") as file:
            json.dump({"machine": about, "ratios": lines, "measured": measured}, file, indent=1)
    # A filter omits names; without one every name must be present.
    if unknown and not any(option.startswith("--benchmark_filter") for option in options):
        sys.exit("bench/pairs.tsv names what was not measured:\n  " + "\n  ".join(sorted(set(unknown))))


main()
