#!/usr/bin/env python3
"""Writes what the linker needs to call the functions of imports.txt: the call thunks and the linker scripts."""
import argparse

from import_list import read_import_list
from tool_error import ToolError, run

SLOT_PREFIX = "__imp_"

# Each thunk and each slot has a section of its own, so that the linker drops the functions nobody calls.
THUNK = """
\t.section .text.import.{function},"ax",%progbits
\t.align 2
\t.global {function}
\t.type {function}, %function
{function}:
\t.fnstart
\t.cantunwind
\tldr ip, 1f
\tldr ip, [ip]
\tbx ip
1:\t.word {slot}
\t.fnend
\t.size {function}, . - {function}

\t.section .import.{library}.{function},"aw",%progbits
\t.align 2
\t.global {slot}
\t.type {slot}, %object
{slot}:
\t.word 0
\t.size {slot}, 4
"""

# The null word that ends a library's run of slots.
RUN_END = """
\t.section .import_end.{library},"aw",%progbits
\t.align 2
\t.word 0
"""


def libraries_of(entries):
    """The libraries in the order of their first entry."""
    return list(dict.fromkeys(entry.library for entry in entries))


def thunk_assembly(entries):
    """The assembler source of all thunks and slots."""
    parts = ["\t.syntax unified\n\t.arch armv4t\n\t.arm\n"]
    for entry in entries:
        parts.append(THUNK.format(function=entry.function, library=entry.library, slot=SLOT_PREFIX + entry.function))
    parts += [RUN_END.format(library=library) for library in libraries_of(entries)]
    return "".join(parts)


def linker_script(template, entries, image_base):
    """The linker script for one image base. The slots of a library stand together and end with a null word."""
    for mark in ("@IMAGE_BASE@", "@IMPORT_SLOTS@"):
        if mark not in template:
            raise ToolError(f"The linker script's template does not contain {mark}.")
    slots = "\n".join(f"    *(SORT_BY_NAME(.import.{library}.*))\n    KEEP(*(.import_end.{library}))"
                      for library in libraries_of(entries))
    return template.replace("@IMAGE_BASE@", f"{image_base:#010x}").replace("@IMPORT_SLOTS@", slots)


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--imports", required=True)
    parser.add_argument("--template", required=True, help="template of the linker script")
    parser.add_argument("--assembly", required=True, help="assembler file to write")
    parser.add_argument("--script", nargs=2, action="append", default=[], metavar=("BASE", "FILE"),
                        help="linker script to write for this image base")
    options = parser.parse_args(arguments)
    entries = read_import_list(options.imports)
    with open(options.template, encoding="utf-8") as file:
        template = file.read()
    outputs = {options.assembly: thunk_assembly(entries)}
    for base, path in options.script:
        outputs[path] = linker_script(template, entries, int(base, 0))
    for path, text in outputs.items():
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)


if __name__ == "__main__":
    run("make_imports", main)
