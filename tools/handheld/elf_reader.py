"""Reads a linked 32-bit ARM ELF file: sections, symbols, and the relocations the linker kept."""
import struct
from dataclasses import dataclass

from tool_error import ToolError, read_bytes

MACHINE_ARM = 40
SECTION_SYMBOLS = 2
SECTION_RELOCATIONS_WITH_ADDEND = 4
SECTION_NO_BITS = 8
SECTION_RELOCATIONS = 9
FLAG_ALLOCATED = 2
UNDEFINED = 0
ABSOLUTE = 0xFFF1


@dataclass(frozen=True)
class Section:
    index: int
    name: str
    kind: int
    flags: int
    address: int
    offset: int
    size: int
    link: int
    info: int

    @property
    def is_loaded(self):
        return bool(self.flags & FLAG_ALLOCATED) and self.size > 0

    @property
    def has_content(self):
        return self.kind != SECTION_NO_BITS


@dataclass(frozen=True)
class Symbol:
    name: str
    value: int
    section: int


@dataclass(frozen=True)
class Relocation:
    """`section` is the section whose bytes are meant, `address` the linked address of the word."""
    section: Section
    address: int
    kind: int
    symbol: Symbol


class ElfFile:
    """One ELF file in memory. Throws ToolError if it is not a little-endian 32-bit ARM file or is cut off."""

    def __init__(self, data, path="The ELF file"):
        self.data = data
        self.path = path
        if data[:7] != b"\x7fELF\x01\x01\x01":
            raise ToolError(f"{path} is not a 32-bit little-endian ELF file.")
        try:
            self._read()
        except (struct.error, IndexError, ValueError) as error:
            raise ToolError(f"{path} is damaged or cut off ({error}).") from error

    @classmethod
    def read(cls, path):
        return cls(read_bytes(path), path)

    def _read(self):
        machine = struct.unpack_from("<H", self.data, 18)[0]
        if machine != MACHINE_ARM:
            raise ToolError(f"{self.path} is for machine {machine}, not for ARM ({MACHINE_ARM}).")
        self.entry, _, table = struct.unpack_from("<III", self.data, 24)
        count, names = struct.unpack_from("<HH", self.data, 48)
        headers = [struct.unpack_from("<10I", self.data, table + 40 * i) for i in range(count)]
        self.sections = []
        for i, (name, kind, flags, address, offset, size, link, info, _, _) in enumerate(headers):
            if kind != SECTION_NO_BITS and offset + size > len(self.data):
                raise ToolError(f"{self.path} is damaged or cut off (section {i} ends behind the file's end).")
            self.sections.append(Section(i, self._text(headers[names][4] + name), kind, flags, address, offset, size,
                                         link, info))
        self.symbols = []
        for section in self.sections:
            if section.kind == SECTION_SYMBOLS:
                strings = self.sections[section.link].offset
                for at in range(section.offset, section.offset + section.size, 16):
                    name, value, _, _, _, index = struct.unpack_from("<IIIBBH", self.data, at)
                    self.symbols.append(Symbol(self._text(strings + name), value, index))
        self._by_name = {symbol.name: symbol for symbol in self.symbols if symbol.name}

    def _text(self, at):
        return self.data[at:self.data.index(b"\0", at)].decode()

    def symbol(self, name):
        """The symbol of that name, or ToolError."""
        if name not in self._by_name:
            raise ToolError(f"{self.path} has no symbol {name}; was it linked with the handheld's linker script?")
        return self._by_name[name]

    def loaded_sections(self):
        """The sections that stand in memory, by address."""
        return sorted((section for section in self.sections if section.is_loaded), key=lambda s: s.address)

    def content(self, section):
        """The bytes of a section; zeros where the file holds none."""
        if not section.has_content:
            return bytes(section.size)
        return self.data[section.offset:section.offset + section.size]

    def section_at(self, address):
        """The loaded section with this address, or None."""
        for section in self.sections:
            if section.is_loaded and section.address <= address < section.address + section.size:
                return section
        return None

    def relocations(self):
        """The relocations of all loaded sections (kept by the linker's option --emit-relocs)."""
        found = []
        for table in self.sections:
            if table.kind not in (SECTION_RELOCATIONS, SECTION_RELOCATIONS_WITH_ADDEND):
                continue
            section = self.sections[table.info]
            if not section.flags & FLAG_ALLOCATED:
                continue
            if table.kind == SECTION_RELOCATIONS_WITH_ADDEND:
                raise ToolError(f"{self.path}: {table.name} holds relocations with addends, which ARM does not use.")
            for at in range(table.offset, table.offset + table.size, 8):
                address, info = struct.unpack_from("<II", self.data, at)
                found.append(Relocation(section, address, info & 0xFF, self.symbols[info >> 8]))
        return found
