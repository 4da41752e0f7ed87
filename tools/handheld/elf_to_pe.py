#!/usr/bin/env python3
"""Turns a linked ARM ELF file into an executable of Windows CE.

The ELF file must be linked with executable.ld.in and --emit-relocs. A second link of the same objects at
another base proves the relocations: the words that differ must be exactly the relocated ones."""
import argparse
import struct
from dataclasses import dataclass

from elf_reader import ABSOLUTE, UNDEFINED, ElfFile
from import_list import read_import_list
from make_imports import SLOT_PREFIX
from resource_file import align, build_resource_section, read_resources
from tool_error import ToolError, run

PAGE = 0x1000
FILE_UNIT = 0x200
MACHINE_ARM = 0x01C0
SUBSYSTEM_WINDOWS_CE = 9
VERSION = (4, 20)
# Executable, 32 bit, little endian, line numbers and local symbols stripped.
CHARACTERISTICS = 0x010E
# The further mark of a library.
LIBRARY = 0x2000
DATA_DIRECTORIES = 16
OPTIONAL_HEADER = 96 + 8 * DATA_DIRECTORIES
DOS_HEADER = 0x80
CHECKSUM_AT = DOS_HEADER + 24 + 64
DIRECTORY_IMPORTS, DIRECTORY_RESOURCES, DIRECTORY_RELOCATIONS, DIRECTORY_SLOTS = 1, 2, 5, 12
IMPORT_DESCRIPTOR = 20
ORDINAL = 0x80000000
RELOCATION_HIGHLOW = 3

CODE = 0x60000020
CONSTANTS = 0x40000040
VARIABLES = 0xC0000040
DISCARDABLE = 0x42000040

# Where each section of the ELF file goes.
PLACES = {
    ".text": (".text", CODE),
    ".rodata": (".rdata", CONSTANTS),
    ".ARM.extab": (".rdata", CONSTANTS),
    ".ARM.exidx": (".rdata", CONSTANTS),
    ".data": (".data", VARIABLES),
    ".bss": (".data", VARIABLES),
    ".imports": (".idata", VARIABLES),
}

# Relocation types of ARM: words that hold an address, and those that hold a distance and move with the image.
ADDRESS_TYPES = {2: "ABS32", 38: "TARGET1", 55: "ABS32_NOI"}
DISTANCE_TYPES = {0: "NONE", 1: "PC24", 3: "REL32", 28: "CALL", 29: "JUMP24", 40: "V4BX", 41: "TARGET2", 42: "PREL31"}
BASE_SYMBOL = "__image_base__"


@dataclass
class PeSection:
    """A section of the executable: `rva` relative to the image base, `size` in memory."""
    name: str
    rva: int
    flags: int
    content: bytearray
    size: int = 0

    @property
    def end(self):
        return self.rva + max(self.size, len(self.content))


def collect_sections(elf, base):
    """The ELF file's sections grouped into the executable's, by address."""
    sections = {}
    for source in elf.loaded_sections():
        if source.name not in PLACES:
            raise ToolError(f"{elf.path} holds a section {source.name}, which has no place in the executable.")
        name, flags = PLACES[source.name]
        rva = source.address - base
        if name not in sections:
            sections[name] = PeSection(name, rva // PAGE * PAGE, flags, bytearray())
        section = sections[name]
        if source.has_content:
            section.content.extend(bytes(rva - section.rva - len(section.content)))
            section.content.extend(elf.content(source))
        section.size = max(section.size, rva - section.rva + source.size)
    return sorted(sections.values(), key=lambda section: section.rva)


def find_relocations(elf):
    """The addresses of all words that hold an address. Throws ToolError for a kind that cannot be relocated."""
    for symbol in elf.symbols:
        if symbol.name.endswith(("_veneer", "_from_arm", "_from_thumb")):
            raise ToolError(f"The linker made a veneer {symbol.name}, whose address word has no relocation.")
    found = set()
    for relocation in elf.relocations():
        symbol, kind, address = relocation.symbol, relocation.kind, relocation.address
        if kind in DISTANCE_TYPES:
            continue
        if kind not in ADDRESS_TYPES:
            raise ToolError(f"The relocation type {kind} at {address:#x} ({symbol.name}) does not fit an executable.")
        if symbol.section == UNDEFINED:
            continue
        if symbol.section == ABSOLUTE and symbol.name != BASE_SYMBOL:
            continue
        section = relocation.section
        if not section.address <= address <= section.address + section.size - 4:
            raise ToolError(f"A relocation points to {address:#x}, which lies outside its section {section.name}.")
        found.add(address)
    return found


def check_against_second_link(first, second, relocations):
    """Compares the two links word by word and throws ToolError at the first word that contradicts the relocations."""
    distance = second.symbol(BASE_SYMBOL).value - first.symbol(BASE_SYMBOL).value
    if distance == 0:
        raise ToolError("Both links have the same base, so they prove nothing.")
    ours, theirs = first.loaded_sections(), second.loaded_sections()
    if [(s.name, s.address + distance, s.size) for s in ours] != [(s.name, s.address, s.size) for s in theirs]:
        raise ToolError("The two links differ in more than their base; were they made from the same objects?")
    for here, there in zip(ours, theirs):
        if not here.has_content:
            continue
        one, two = first.content(here), second.content(there)
        words = len(one) // 4
        if one[words * 4:] != two[words * 4:]:
            raise ToolError(f"The two links differ behind the last whole word of {here.name}.")
        pairs = zip(struct.unpack_from(f"<{words}I", one), struct.unpack_from(f"<{words}I", two))
        for i, (a, b) in enumerate(pairs):
            address = here.address + 4 * i
            listed = address in relocations
            if listed and (b - a) & 0xFFFFFFFF != distance & 0xFFFFFFFF:
                raise ToolError(f"The word at {address:#x} has a relocation but did not move with the image.")
            if not listed and a != b:
                raise ToolError(f"The word at {address:#x} in {here.name} moved with the image but has no relocation.")
    for address in relocations:
        if address % 4:
            raise ToolError(f"The relocated word at {address:#x} does not stand on a multiple of four.")


def find_imports(elf, entries):
    """The import slots that are in use, by library: [(library, address of its first slot, [entries in slot order])]."""
    by_slot = {SLOT_PREFIX + entry.function: entry for entry in entries}
    used = {}
    slots = next((s.index for s in elf.loaded_sections() if s.name == ".imports"), None)
    for symbol in elf.symbols:
        if symbol.section == slots and symbol.name.startswith(SLOT_PREFIX):
            if symbol.name not in by_slot:
                raise ToolError(f"The import slot {symbol.name} has no line in the list of imports.")
            entry = by_slot[symbol.name]
            used.setdefault(entry.library, {})[symbol.value] = entry
    found = []
    for library, placed in used.items():
        addresses = sorted(placed)
        if addresses != list(range(addresses[0], addresses[0] + 4 * len(addresses), 4)):
            raise ToolError(f"The import slots of {library} do not stand together.")
        found.append((library, addresses[0], [placed[address] for address in addresses]))
    return sorted(found, key=lambda item: item[1])


def append_import_tables(section, base, imports):
    """Writes descriptors, lookup tables and names behind the slots. Returns the directory (rva, size)."""
    content = section.content
    descriptors_at = align(len(content), 4)
    lookup_at = descriptors_at + IMPORT_DESCRIPTOR * (len(imports) + 1)
    names_at = lookup_at + sum(4 * (len(entries) + 1) for _, _, entries in imports)
    lookup = bytearray()
    names = bytearray()

    def add_name(data):
        at = names_at + len(names)
        names.extend(data + (b"\0" if len(data) % 2 == 0 else b"\0\0"))
        if len(names) % 2:
            names.extend(b"\0")
        return section.rva + at

    descriptors = bytearray()
    for library, first_slot, entries in imports:
        thunks = []
        for entry in entries:
            if entry.ordinal is not None:
                thunks.append(ORDINAL | entry.ordinal)
            else:
                thunks.append(add_name(b"\0\0" + entry.exported.encode()))
        library_name = add_name(library.encode() + b".dll")
        table_rva = section.rva + lookup_at + len(lookup)
        lookup += struct.pack(f"<{len(thunks) + 1}I", *thunks, 0)
        descriptors += struct.pack("<IIIII", table_rva, 0, 0, library_name, first_slot - base)
        # Until the loader has bound them, the slots hold the same words as the lookup table.
        at = first_slot - base - section.rva
        content[at:at + 4 * len(thunks)] = struct.pack(f"<{len(thunks)}I", *thunks)
    descriptors += bytes(IMPORT_DESCRIPTOR)
    content.extend(bytes(descriptors_at - len(content)) + descriptors + lookup + names)
    section.size = len(content)
    return section.rva + descriptors_at, len(descriptors)


def relocation_table(rvas):
    """The base relocation blocks, one for each page, each a multiple of four bytes."""
    pages = {}
    for rva in sorted(rvas):
        pages.setdefault(rva // PAGE * PAGE, []).append(rva % PAGE)
    table = bytearray()
    for page, offsets in pages.items():
        words = [RELOCATION_HIGHLOW << 12 | offset for offset in offsets]
        if len(words) % 2:
            words.append(0)
        table += struct.pack(f"<II{len(words)}H", page, 8 + 2 * len(words), *words)
    return table


def image_checksum(data):
    """The checksum of an executable whose checksum field is still zero."""
    total = sum(struct.unpack(f"<{(len(data) + 1) // 2}H", data.ljust(align(len(data), 2), b"\0")))
    while total >> 16:
        total = (total & 0xFFFF) + (total >> 16)
    return total + len(data)


def write_image(base, entry_rva, sections, directories, stack_reserve, marks=0):
    """The bytes of the executable. `directories` is {index: (rva, size)}; `marks` are further characteristics."""
    header_size = align(DOS_HEADER + 24 + OPTIONAL_HEADER + 40 * len(sections), FILE_UNIT)
    headers = bytearray()
    body = bytearray()
    code_size = data_size = 0
    for section in sections:
        raw = align(len(section.content), FILE_UNIT)
        offset = header_size + len(body) if raw else 0
        size = max(section.size, len(section.content))
        headers += struct.pack("<8sIIIIIIHHI", section.name.encode(), size, section.rva, raw, offset, 0, 0, 0, 0,
                               section.flags)
        body += bytes(section.content).ljust(raw, b"\0")
        if section.flags == CODE:
            code_size += raw
        else:
            data_size += raw
    starts = {section.name: section.rva for section in sections}
    dos = bytearray(DOS_HEADER)
    struct.pack_into("<13H", dos, 0, 0x5A4D, 0x90, 3, 0, 4, 0, 0xFFFF, 0, 0xB8, 0, 0, 0, 0x40)
    struct.pack_into("<I", dos, 0x3C, DOS_HEADER)
    file_header = struct.pack("<4sHHIIIHH", b"PE\0\0", MACHINE_ARM, len(sections), 0, 0, 0, OPTIONAL_HEADER,
                              CHARACTERISTICS | marks)
    optional = struct.pack("<HBBIIIIII", 0x10B, 2, 40, code_size, data_size, 0, entry_rva, starts.get(".text", 0),
                           starts.get(".rdata", 0))
    optional += struct.pack("<IIIHHHHHHI", base, PAGE, FILE_UNIT, *VERSION, 0, 0, *VERSION, 0)
    optional += struct.pack("<IIIHHIIIIII", align(sections[-1].end, PAGE), header_size, 0, SUBSYSTEM_WINDOWS_CE, 0,
                            stack_reserve, PAGE, 0x100000, PAGE, 0, DATA_DIRECTORIES)
    for index in range(DATA_DIRECTORIES):
        optional += struct.pack("<II", *directories.get(index, (0, 0)))
    image = bytearray(bytes(dos) + file_header + optional + headers).ljust(header_size, b"\0") + body
    struct.pack_into("<I", image, CHECKSUM_AT, image_checksum(image))
    return bytes(image)


def convert(elf, second, import_entries, resources, stack_reserve=0x20000):
    """The bytes of the executable. `second` is the other link, `resources` a tree of resource_file or None."""
    base = elf.symbol(BASE_SYMBOL).value
    relocations = find_relocations(elf)
    check_against_second_link(elf, second, relocations)
    sections = collect_sections(elf, base)
    if not sections or sections[0].name != ".text":
        raise ToolError(f"{elf.path} holds no code.")
    directories = {}
    imports = find_imports(elf, import_entries)
    if imports:
        slots = next(section for section in sections if section.name == ".idata")
        slots_end = slots.rva + len(slots.content)
        directories[DIRECTORY_IMPORTS] = append_import_tables(slots, base, imports)
        directories[DIRECTORY_SLOTS] = (slots.rva, slots_end - slots.rva)

    def add_section(name, flags, build):
        rva = align(sections[-1].end, PAGE)
        content = bytearray(build(rva))
        sections.append(PeSection(name, rva, flags, content, len(content)))
        return rva, len(content)

    if resources:
        directories[DIRECTORY_RESOURCES] = add_section(
            ".rsrc", CONSTANTS, lambda rva: build_resource_section(resources, rva))
    directories[DIRECTORY_RELOCATIONS] = add_section(
        ".reloc", DISCARDABLE, lambda rva: relocation_table(address - base for address in relocations))
    return write_image(base, elf.entry - base, sections, directories, stack_reserve)


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("elf")
    parser.add_argument("executable")
    parser.add_argument("--second-link", required=True, help="the same objects linked at another base")
    parser.add_argument("--imports", required=True, help="the list of imports the thunks were made from")
    parser.add_argument("--resources", help="compiled resources (.res)")
    parser.add_argument("--stack", type=lambda text: int(text, 0), default=0x20000,
                        help="bytes to reserve for the first thread's stack")
    options = parser.parse_args(arguments)
    resources = read_resources(options.resources) if options.resources else None
    image = convert(ElfFile.read(options.elf), ElfFile.read(options.second_link), read_import_list(options.imports),
                    resources, options.stack)
    with open(options.executable, "wb") as file:
        file.write(image)


if __name__ == "__main__":
    run("elf_to_pe", main)
