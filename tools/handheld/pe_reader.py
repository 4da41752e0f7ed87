"""What a finished executable of Windows holds, as pefile reads it: headers, sections, imports, relocations, resources.

pefile is somebody else's (Debian's python3-pefile), so that a mistake of the tool that writes executables is not made
again by the one that reads them."""
from dataclasses import dataclass

import pefile

from tool_error import ToolError, read_bytes

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
    """One executable in memory. `warnings` are pefile's sentences about what is odd in it. Throws ToolError if it is
    not a PE file or ends before its sections do."""

    def __init__(self, data, path="The executable"):
        self.data = data
        self.path = path
        try:
            self._file = pefile.PE(data=data)
        except pefile.PEFormatError as error:
            raise ToolError(f"{path} is no executable: {error}.") from error
        self._read_headers()
        self._image = self._file.get_memory_mapped_image().ljust(self.image_size, b"\0")
        self.imports = list(self._read_imports())
        self.relocations = list(self._read_relocations())
        self.resources = list(self._read_resources())
        # What bytes a file is mostly made of is no fault: small programs are mostly filled up with zeros.
        self.warnings = [text for text in self._file.get_warnings() if not text.startswith("Byte 0x")]

    @classmethod
    def read(cls, path):
        return cls(read_bytes(path), path)

    def _read_headers(self):
        header, optional = self._file.FILE_HEADER, self._file.OPTIONAL_HEADER
        self.machine, self.characteristics = header.Machine, header.Characteristics
        self.entry, self.image_base = optional.AddressOfEntryPoint, optional.ImageBase
        self.subsystem = optional.Subsystem
        self.subsystem_version = (optional.MajorSubsystemVersion, optional.MinorSubsystemVersion)
        self.image_size, self.header_size = optional.SizeOfImage, optional.SizeOfHeaders
        self.stack_reserve = optional.SizeOfStackReserve
        self.checksum, self.actual_checksum = optional.CheckSum, self._file.generate_checksum()
        self.directories = [(entry.VirtualAddress, entry.Size) for entry in optional.DATA_DIRECTORY]
        self.sections = [
            Section(entry.Name.rstrip(b"\0").decode("latin-1"), entry.VirtualAddress, entry.Misc_VirtualSize,
                    entry.PointerToRawData, entry.SizeOfRawData, entry.Characteristics)
            for entry in self._file.sections]
        if len(self.sections) < header.NumberOfSections:
            raise ToolError(f"{self.path} is cut off: it ends before its headers do.")
        for section in self.sections:
            if section.file_offset + section.file_size > len(self.data):
                raise ToolError(f"{self.path} is cut off: {section.name} ends behind the file's end.")

    def section_at(self, rva, length=1):
        """The section that holds these bytes, or None."""
        return next((section for section in self.sections if section.contains(rva, length)), None)

    def bytes_at(self, rva, length):
        """Bytes of the loaded image; what the file does not hold is zero."""
        if self.section_at(rva, length) is None:
            raise ToolError(f"{self.path} refers to {length} bytes at {rva:#x}, which lie in no section.")
        return self._image[rva:rva + length].ljust(length, b"\0")

    def _read_imports(self):
        for library in getattr(self._file, "DIRECTORY_ENTRY_IMPORT", []):
            for entry in library.imports:
                name = None if entry.import_by_ordinal else entry.name.decode("latin-1")
                ordinal = entry.ordinal if entry.import_by_ordinal else None
                yield Import(library.dll.decode("latin-1"), name, ordinal, entry.address - self.image_base)

    def _read_relocations(self):
        blocks = getattr(self._file, "DIRECTORY_ENTRY_BASERELOC", [])
        self.relocation_blocks = [block.struct.SizeOfBlock for block in blocks]
        for block in blocks:
            for entry in block.entries:
                if entry.type == RELOCATION_WORD:
                    yield entry.rva
                elif entry.type != RELOCATION_PADDING:
                    raise ToolError(f"{self.path} has a relocation of type {entry.type}, which ARM does not know.")

    def _read_resources(self):
        root = getattr(self._file, "DIRECTORY_ENTRY_RESOURCE", None)
        for kind in root.entries if root else []:
            for name in kind.directory.entries:
                for language in name.directory.entries:
                    place = language.data.struct
                    yield Resource(self._identifier(kind), self._identifier(name), language.id,
                                   self.bytes_at(place.OffsetToData, place.Size))

    @staticmethod
    def _identifier(entry):
        return entry.id if entry.name is None else str(entry.name)
