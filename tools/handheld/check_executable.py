#!/usr/bin/python3
"""Reads a finished handheld executable back and says what would keep it from running on the device.

Ends with status 1 and one sentence for each thing that is wrong."""
import argparse
import os
import re
import sys

from import_list import read_import_list
from pe_reader import PeFile
from tool_error import ToolError, run

MACHINE_ARM = 0x01C0
SUBSYSTEM_WINDOWS_CE = 9
SUBSYSTEM_VERSION = (4, 20)
# Those that every device has. What stands in others is looked up, since the system loads no program of which a library
# or one function is missing.
LIBRARIES = {"coredll", "toolhelp", "ole32", "oleaut32", "commctrl"}
DIRECTORY_RELOCATIONS = 5
FRAME_LIMIT = 2048
FILE_BUDGET = 400 * 1024
CODE_BUDGET = 300 * 1024
BUDGETED_SECTIONS = (".text", ".rdata", ".data", ".idata", ".reloc")

RESOURCE_KINDS = {"CURSOR": 1, "BITMAP": 2, "ICON": 3, "MENU": 4, "DIALOG": 5, "STRING": 6, "FONTDIR": 7, "FONT": 8,
                  "ACCELERATOR": 9, "RCDATA": 10, "MESSAGETABLE": 11, "GROUP_CURSOR": 12, "GROUP_ICON": 14,
                  "VERSION": 16, "HTML": 23}
STRING_TABLE = RESOURCE_KINDS["STRING"]
STRINGS_PER_BLOCK = 16


def check_headers(image):
    """Sentences about what the system reads first."""
    for warning in image.warnings:
        yield f"pefile says: {warning}"
    if image.machine != MACHINE_ARM:
        yield f"The machine is {image.machine:#06x}, not ARM ({MACHINE_ARM:#06x})."
    if image.subsystem != SUBSYSTEM_WINDOWS_CE:
        yield f"The subsystem is {image.subsystem}, not Windows CE ({SUBSYSTEM_WINDOWS_CE})."
    if image.subsystem_version != SUBSYSTEM_VERSION:
        major, minor = image.subsystem_version
        yield f"The subsystem's version is {major}.{minor:02}, not {SUBSYSTEM_VERSION[0]}.{SUBSYSTEM_VERSION[1]:02}."
    entry = image.section_at(image.entry)
    if entry is None or not entry.is_code:
        yield f"The entry point {image.entry:#x} does not lie in code."
    if image.checksum != image.actual_checksum:
        yield f"The checksum is {image.checksum:#x} but should be {image.actual_checksum:#x}."
    previous_end = 0
    for section in image.sections:
        if section.rva % 0x1000 or section.rva < previous_end:
            yield f"The section {section.name} at {section.rva:#x} overlaps another or does not begin a page."
        if section.is_code and section.is_writable:
            yield f"The section {section.name} is code and writable."
        previous_end = section.rva + section.size
    if previous_end > image.image_size:
        yield f"The image's size {image.image_size:#x} ends before the last section."


def check_imports(image, entries):
    """Sentences about functions that the device does not have, or has under another name or number."""
    names = {(entry.library, entry.exported) for entry in entries if entry.ordinal is None}
    ordinals = {(entry.library, entry.ordinal) for entry in entries if entry.ordinal is not None}
    if not image.imports:
        yield "Nothing is imported."
    for library in sorted({item.library for item in image.imports}):
        if library.lower().removesuffix(".dll") not in LIBRARIES:
            yield f"The library {library} is imported, which is not among {', '.join(sorted(LIBRARIES))}."
    for item in image.imports:
        library = item.library.lower().removesuffix(".dll")
        if item.ordinal is not None and (library, item.ordinal) not in ordinals:
            yield f"{item.library} #{item.ordinal} is imported by its number, which the list of imports does not say."
        if item.ordinal is None and (library, item.name) not in names:
            yield f"{item.library} {item.name} is imported by its name, which the list of imports does not say."


def check_relocations(image):
    """Sentences about relocations that are missing or point astray."""
    if not image.relocations:
        yield "There are no relocations, so the image could only stand at its own base."
    _, table = image.directories[DIRECTORY_RELOCATIONS]
    if sum(image.relocation_blocks) != table or any(size % 4 for size in image.relocation_blocks):
        yield f"The relocation blocks take {sum(image.relocation_blocks)} of the {table} bytes of their table."
    for rva in image.relocations:
        section = image.section_at(rva, 4)
        if section is None:
            yield f"The relocation at {rva:#x} lies in no section."
        elif section.name == ".reloc":
            yield f"The relocation at {rva:#x} lies in the relocations themselves."
        else:
            value = int.from_bytes(image.bytes_at(rva, 4), "little")
            if not image.image_base <= value <= image.image_base + image.image_size:
                yield f"The relocated word at {rva:#x} is {value:#x}, which is no address in the image."


def parse_expected_resource(text):
    """(kind, name) of TYPE:ID. Throws ToolError."""
    kind, separator, name = text.partition(":")
    if not separator or not kind or not name:
        raise ToolError(f"\"{text}\" is not of the form TYPE:ID.")
    kind = RESOURCE_KINDS.get(kind.upper(), int(kind) if kind.isdigit() else kind.upper())
    return kind, int(name) if name.isdigit() else name.upper()


def read_expected_resources(path):
    """The TYPE:ID lines of a file, without empty lines and those that begin with #."""
    with open(path, encoding="utf-8") as file:
        lines = (line.strip() for line in file)
        return [line for line in lines if line and not line.startswith("#")]


def has_text(block, index):
    """Whether the text with this index in a block of a string table is there and not empty."""
    at = 0
    for _ in range(index):
        at += 2 + 2 * int.from_bytes(block[at:at + 2], "little")
    return int.from_bytes(block[at:at + 2], "little") > 0


def check_resources(image, expected):
    """Sentences about resources that are missing or empty. STRING:ID is a single text, not a block of them."""
    present = {}
    for resource in image.resources:
        kind = resource.kind.upper() if isinstance(resource.kind, str) else resource.kind
        name = resource.name.upper() if isinstance(resource.name, str) else resource.name
        present.setdefault((kind, name), []).append(resource.content)
    for text in expected:
        kind, name = parse_expected_resource(text)
        if kind == STRING_TABLE:
            blocks = present.get((kind, name // STRINGS_PER_BLOCK + 1), [])
            if not any(has_text(block, name % STRINGS_PER_BLOCK) for block in blocks):
                yield f"The text {text} is missing."
        elif (kind, name) not in present:
            yield f"The resource {text} is missing."
        elif not all(present[kind, name]):
            yield f"The resource {text} is empty."


def check_stack_usage(folder):
    """Sentences about frames that do not fit a small stack, from the compiler's .su files below a folder."""
    count = 0
    for parent, _, files in os.walk(folder):
        for file in sorted(files):
            if not file.endswith(".su"):
                continue
            with open(os.path.join(parent, file), encoding="utf-8", errors="replace") as lines:
                for line in lines:
                    place, size, kind = line.rstrip("\n").rsplit("\t", 2)
                    count += 1
                    if int(size) >= FRAME_LIMIT:
                        yield f"The frame of {place} takes {size} bytes; the limit is {FRAME_LIMIT}."
                    elif kind == "dynamic":
                        yield f"The frame of {place} has no fixed size."
    if count == 0:
        yield f"There are no frames in {folder}: it holds no .su files."


def budgeted_size(image):
    """Bytes of code and tables in the file."""
    return sum(section.file_size for section in image.sections if section.name in BUDGETED_SECTIONS)


def check_size(image):
    """Sentences about budgets that are exceeded."""
    size, code = len(image.data), budgeted_size(image)
    if size > FILE_BUDGET:
        yield f"The file takes {size:,} bytes; the budget is {FILE_BUDGET:,}."
    if code > CODE_BUDGET:
        yield f"Code and tables take {code:,} bytes; the budget is {CODE_BUDGET:,}."


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("executable")
    default_imports = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../platform/ce/imports.txt")
    parser.add_argument("--imports", default=default_imports, help="the list of imports")
    parser.add_argument("--expect-resource", action="append", default=[], metavar="TYPE:ID",
                        help="BITMAP:5, CEUX:HI_RES_AWARE, STRING:100 (one text) and so on")
    parser.add_argument("--expect-resources", metavar="FILE", help="a file with one TYPE:ID in each line")
    parser.add_argument("--stack-usage", metavar="FOLDER", help="the build folder with the compiler's .su files")
    options = parser.parse_args(arguments)
    expected = list(options.expect_resource)
    if options.expect_resources:
        expected += read_expected_resources(options.expect_resources)
    image = PeFile.read(options.executable)
    complaints = [*check_headers(image), *check_imports(image, read_import_list(options.imports)),
                  *check_relocations(image), *check_resources(image, expected), *check_size(image)]
    if options.stack_usage:
        complaints += check_stack_usage(options.stack_usage)
    print(f"{os.path.basename(options.executable)}: {len(image.data):,} of {FILE_BUDGET:,} bytes, "
          f"code and tables {budgeted_size(image):,} of {CODE_BUDGET:,}")
    for complaint in complaints:
        print(f"{options.executable}: {complaint}", file=sys.stderr)
    return 1 if complaints else 0


if __name__ == "__main__":
    run("check_executable", main)
