#!/usr/bin/env python3
"""Compiles a resource script and writes down every header and picture it takes in, so that a change rebuilds it."""
import argparse
import os
import re
import subprocess

from tool_error import ToolError, run

LINE_MARK = re.compile(r'^# \d+ "((?:[^"\\]|\\.)*)"', re.MULTILINE)
TEXT = re.compile(r'"((?:[^"\\\n]|\\.)*)"')


def included_headers(preprocessed):
    """The files that the preprocessor names, without its own pseudo files."""
    names = {match.group(1).replace('\\"', '"').replace("\\\\", "\\") for match in LINE_MARK.finditer(preprocessed)}
    return sorted(name for name in names if os.path.isfile(name))


def included_files(preprocessed, folders):
    """The files that the script names as content: its quoted texts that are files in one of the folders."""
    found = set()
    for line in preprocessed.splitlines():
        if line.startswith("#"):
            continue
        for match in TEXT.finditer(line):
            name = match.group(1).replace("\\\\", "/")
            for folder in folders:
                path = os.path.join(folder, name)
                if name and os.path.isfile(path):
                    found.add(path)
                    break
    return sorted(found)


def depfile_text(target, dependencies):
    """A rule in the form of make."""
    def quoted(path):
        return path.replace("\\", "\\\\").replace(" ", "\\ ").replace("#", "\\#").replace("$", "$$")
    return " \\\n  ".join([quoted(target) + ":"] + [quoted(path) for path in dependencies]) + "\n"


def run_program(command):
    """The output of a program. Throws ToolError with what it complained about."""
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode:
        raise ToolError(f"{os.path.basename(command[0])} failed:\n{result.stderr.strip()}")
    return result.stdout


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("script")
    parser.add_argument("output")
    parser.add_argument("--windres", default="x86_64-w64-mingw32-windres")
    parser.add_argument("--include", action="append", default=[], metavar="FOLDER")
    parser.add_argument("--define", action="append", default=[], metavar="NAME[=VALUE]")
    parser.add_argument("--depfile")
    options = parser.parse_args(arguments)
    flags = [word for folder in options.include for word in ("-I", folder)]
    flags += [word for definition in options.define for word in ("-D", definition)]
    # The code page of the script's own texts; Windows CE itself reads only wide ones.
    run_program([options.windres, "-O", "res", "-c", "65001", *flags, options.script, options.output])
    if options.depfile:
        compiler = re.sub(r"windres$", "gcc", options.windres)
        preprocessed = run_program([compiler, "-E", "-xc", "-DRC_INVOKED", *flags, options.script])
        dependencies = included_headers(preprocessed)
        dependencies += included_files(preprocessed, [*options.include, os.path.dirname(options.script) or "."])
        with open(options.depfile, "w", encoding="utf-8") as file:
            file.write(depfile_text(options.output, dict.fromkeys(dependencies)))


if __name__ == "__main__":
    run("compile_resources", main)
