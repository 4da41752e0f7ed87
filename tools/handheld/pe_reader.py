"""Reads a finished executable of Windows back: headers, sections, imports, relocations, resources.

Shares nothing with the tool that writes executables, so that both cannot be wrong in the same way."""
import struct
from dataclasses import dataclass

from tool_error import ToolError, read_bytes

DIRECTORY_IMPORTS = 1
DIRECTORY_RESOURCES = 2
DIRECTORY_RELOCATIONS = 5
RELOCATION_PADDING = 0
RELOCATION_WORD = 3


@dataclass(frozen=True)
class Section:
    name: str
    rva: int
    size: int
    file_offset: int
    file_size: int
    flags: int

    @property
    def is_code(self):
        return bool(self.flags & 0x20000000)

    @property
    def is_writable(self):
        return bool(self.flags & 0x80000000)

    def contains(self, rva, length=1):
        return self.rva <= rva and rva + length <= self.rva + self.size


@dataclass(frozen=True)
class Import:
    """`name` is None where the function is imported by `ordinal`. `slot` is the relative address of its slot."""
    library: str
    name: str | None
    ordinal: int | None
    slot: int


@dataclass(frozen=True)
class Resource:
    """`kind` and `name` are numbers or texts."""
    kind: int | str
    name: int | str
    language: int
    content: bytes


class PeFile:
    """One executable in memory. Throws ToolError if it is not a PE file or refers to bytes it does not have."""

    def __init__(self, data, path="The executable"):
        self.data = data
        self.path = path
        try:
            self._read_headers()
            self.imports = list(self._read_imports())
            self.relocations = list(self._read_relocations())
            self.resources = list(self._read_resources())
        except struct.error as error:
            raise ToolError(f"{path} is damaged or cut off ({error}).") from error

    @classmethod
    def read(cls, path):
        return cls(read_bytes(path), path)

    def _read_headers(self):
        if self.data[:2] != b"MZ":
            raise ToolError(f"{self.path} is not an executable: it does not begin with MZ.")
        header = struct.unpack_from("<I", self.data, 0x3C)[0]
        if self.data[header:header + 4] != b"PE\0\0":
            raise ToolError(f"{self.path} is not an executable: the PE header is missing.")
        self.machine, count = struct.unpack_from("<HH", self.data, header + 4)
        optional_size, self.characteristics = struct.unpack_from("<HH", self.data, header + 20)
        optional = header + 24
        magic = struct.unpack_from("<H", self.data, optional)[0]
        if magic != 0x10B:
            raise ToolError(f"{self.path} is not a 32-bit executable (magic {magic:#x}).")
        self.entry = struct.unpack_from("<I", self.data, optional + 16)[0]
        self.image_base = struct.unpack_from("<I", self.data, optional + 28)[0]
        self.subsystem_version = struct.unpack_from("<HH", self.data, optional + 48)
        self.image_size, self.header_size, self.checksum = struct.unpack_from("<III", self.data, optional + 56)
        self.subsystem = struct.unpack_from("<H", self.data, optional + 68)[0]
        self.stack_reserve = struct.unpack_from("<I", self.data, optional + 72)[0]
        directory_count = struct.unpack_from("<I", self.data, optional + 92)[0]
        self.directories = [struct.unpack_from("<II", self.data, optional + 96 + 8 * i) for i in range(directory_count)]
        self.actual_checksum = self._compute_checksum(optional + 64)
        self.sections = []
        for i in range(count):
            at = optional + optional_size + 40 * i
            name, size, rva, file_size, offset = struct.unpack_from("<8sIIII", self.data, at)
            flags = struct.unpack_from("<I", self.data, at + 36)[0]
            section = Section(name.rstrip(b"\0").decode("latin-1"), rva, size, offset, file_size, flags)
            if offset + file_size > len(self.data):
                raise ToolError(f"{self.path} is cut off: {section.name} ends behind the file's end.")
            self.sections.append(section)

    def _compute_checksum(self, field):
        total = 0
        padded = self.data + b"\0" * (len(self.data) % 2)
        for at in range(0, len(padded), 2):
            if not field <= at < field + 4:
                total += padded[at] | padded[at + 1] << 8
                total = (total & 0xFFFF) + (total >> 16)
        return total + len(self.data)

    def section_at(self, rva, length=1):
        """The section that holds these bytes, or None."""
        return next((section for section in self.sections if section.contains(rva, length)), None)

    def bytes_at(self, rva, length):
        """Bytes of the loaded image; what the file does not hold is zero."""
        section = self.section_at(rva, length)
        if section is None:
            raise ToolError(f"{self.path} refers to {length} bytes at {rva:#x}, which lie in no section.")
        offset = rva - section.rva
        stored = self.data[section.file_offset + offset:section.file_offset + min(section.file_size, offset + length)]
        return stored.ljust(length, b"\0")

    def _word(self, rva):
        return struct.unpack("<I", self.bytes_at(rva, 4))[0]

    def _half(self, rva):
        return struct.unpack("<H", self.bytes_at(rva, 2))[0]

    def _narrow_text(self, rva):
        text = bytearray()
        while (byte := self.bytes_at(rva + len(text), 1)[0]) != 0:
            text.append(byte)
        return text.decode("latin-1")

    def _directory(self, index):
        return self.directories[index] if index < len(self.directories) else (0, 0)

    def _read_imports(self):
        descriptor, _ = self._directory(DIRECTORY_IMPORTS)
        while descriptor and (name := self._word(descriptor + 12)):
            library = self._narrow_text(name)
            lookup = self._word(descriptor) or self._word(descriptor + 16)
            slot = self._word(descriptor + 16)
            while thunk := self._word(lookup):
                if thunk & 0x80000000:
                    yield Import(library, None, thunk & 0xFFFF, slot)
                else:
                    yield Import(library, self._narrow_text(thunk + 2), None, slot)
                lookup += 4
                slot += 4
            descriptor += 20

    def _read_relocations(self):
        at, size = self._directory(DIRECTORY_RELOCATIONS)
        end = at + size
        while at < end:
            page, length = self._word(at), self._word(at + 4)
            if length < 8 or length % 4 or at + length > end:
                raise ToolError(f"{self.path} has a relocation block of {length} bytes at {at:#x}, which cannot be.")
            for entry in range(at + 8, at + length, 2):
                word = self._half(entry)
                if word >> 12 == RELOCATION_WORD:
                    yield page + (word & 0xFFF)
                elif word >> 12 != RELOCATION_PADDING:
                    raise ToolError(f"{self.path} has a relocation of type {word >> 12}, which ARM does not know.")
            at += length

    def _read_resources(self):
        root, _ = self._directory(DIRECTORY_RESOURCES)
        if not root:
            return
        for kind, names in self._resource_entries(root, root):
            for name, languages in self._resource_entries(root, names):
                for language, leaf in self._resource_entries(root, languages):
                    yield Resource(kind, name, language, self.bytes_at(self._word(leaf), self._word(leaf + 4)))

    def _resource_entries(self, root, directory):
        named, numbered = self._half(directory + 12), self._half(directory + 14)
        for i in range(named + numbered):
            at = directory + 16 + 8 * i
            identifier, target = self._word(at), self._word(at + 4)
            if identifier & 0x80000000:
                text = root + (identifier & 0x7FFFFFFF)
                identifier = self.bytes_at(text + 2, 2 * self._half(text)).decode("utf-16-le")
            if (i < named) != isinstance(identifier, str):
                raise ToolError(f"{self.path} mixes names and numbers in a resource directory.")
            yield identifier, root + (target & 0x7FFFFFFF)
