#!/usr/bin/env python3
"""Make a program's manual page and its completion for bash from what it says with --help.

usage: make_help_files.py PROGRAM VERSION OUT   (writes OUT/man/NAME.1 and OUT/completions/NAME)

The help consists of a line "usage: NAME ARGUMENTS", paragraphs, and options: lines of "  --option ARGUMENT  text",
which further lines continue.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

OPTION = re.compile(r"  (--[a-z-]+)(?: ([A-Z]+))?  +(\S.*)")


def read_help(program):
    # A program reads and writes its user's settings.
    with tempfile.TemporaryDirectory() as home:
        done = subprocess.run([program, "--help"], env={**os.environ, "XDG_CONFIG_HOME": home}, check=True,
                              stdout=subprocess.PIPE, encoding="utf-8")
    usage, *blocks = done.stdout.strip().split("\n\n")
    name, arguments = re.fullmatch(r"usage: (\S+) (.+)", usage).groups()
    options, paragraphs = [], []
    for block in blocks:
        if not block.startswith("  --"):
            paragraphs.append(" ".join(block.split()))
            continue
        for line in block.splitlines():
            option = OPTION.fullmatch(line)
            if option:
                options.append(list(option.groups()))
            elif line.startswith("  --"):
                sys.exit(f"{name}: no option of the help's form: {line}")
            else:
                options[-1][2] += " " + line.strip()
    return name, arguments, paragraphs, options


def escape(text):
    text = text.replace("\\", r"\e").replace("-", r"\-")
    return r"\&" + text if text.startswith((".", "'")) else text


def make_page(version, name, arguments, paragraphs, options):
    summary = paragraphs[0].split(". ")[0].rstrip(".")
    lines = [f'.TH {name.upper()} 1 "" "Vellumcraft {version}" "User Commands"',
             ".SH NAME", escape(f"{name} - {summary[0].lower()}{summary[1:]}"),
             ".SH SYNOPSIS", rf".B {escape(name)}", escape(arguments), ".SH DESCRIPTION"]
    for paragraph in paragraphs:
        lines += [".PP", escape(paragraph)]
    lines.append(".SH OPTIONS")
    for option, argument, text in options:
        value = rf" \fI{argument}\fR" if argument else ""
        lines += [".TP", rf"\fB{escape(option)}\fR{value}", escape(text)]
    return "\n".join(lines) + "\n"


def make_completion(name, options):
    function = "_" + name.replace("-", "_")
    folders = "|".join(option for option, argument, _ in options if argument == "FOLDER")
    names = " ".join(option for option, _, _ in options)
    after = f"""    case $3 in
    {folders}) mapfile -t COMPREPLY < <(compgen -d -- "$2"); return ;;
    esac
""" if folders else ""
    return f"""# bash completion for {name}
{function}() {{
{after}    [[ $2 != -* ]] || mapfile -t COMPREPLY < <(compgen -W "{names}" -- "$2")
}}
complete -o default -F {function} {name}
"""


def main():
    program, version, out = sys.argv[1:]
    name, arguments, paragraphs, options = read_help(program)
    for folder, file, text in (("man", name + ".1", make_page(version, name, arguments, paragraphs, options)),
                               ("completions", name, make_completion(name, options))):
        path = pathlib.Path(out) / folder / file
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
