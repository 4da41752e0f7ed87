"""Reads the resource compiler's .res file and builds the resource section of an executable."""
import struct

from tool_error import ToolError, read_bytes

DIRECTORY_HEADER = 16
DIRECTORY_ENTRY = 8
DATA_ENTRY = 16
SUBDIRECTORY = 0x80000000


def align(value, unit):
    """The next multiple of unit."""
    return (value + unit - 1) // unit * unit


def _read_identifier(data, at):
    """A type or name: an integer behind 0xFFFF, or text up to a zero. Returns it and the offset behind it."""
    if struct.unpack_from("<H", data, at)[0] == 0xFFFF:
        return struct.unpack_from("<H", data, at + 2)[0], at + 4
    end = at
    while struct.unpack_from("<H", data, end)[0]:
        end += 2
    return data[at:end].decode("utf-16-le"), end + 2


def parse_resources(data, path="The resource file"):
    """The resources as {type: {name: {language: bytes}}}. Throws ToolError for a damaged file or a resource twice."""
    tree = {}
    at = 0
    try:
        while at < len(data):
            size, header = struct.unpack_from("<II", data, at)
            kind, position = _read_identifier(data, at + 8)
            name, position = _read_identifier(data, position)
            language = struct.unpack_from("<H", data, align(position, 4) + 6)[0]
            start = at + header
            if header < 32 or start + size > len(data):
                raise ToolError(f"{path} is damaged or cut off at offset {at}.")
            if kind != 0:
                languages = tree.setdefault(kind, {}).setdefault(name, {})
                if language in languages:
                    raise ToolError(f"{path} holds the resource {kind}:{name} twice in language {language:#06x}.")
                languages[language] = data[start:start + size]
            at = align(start + size, 4)
    except (struct.error, UnicodeDecodeError) as error:
        raise ToolError(f"{path} is damaged or cut off at offset {at}.") from error
    return tree


def read_resources(path):
    """parse_resources of a file."""
    return parse_resources(read_bytes(path), path)


def _sorted_keys(directory):
    """The loader searches by halves: names before numbers, each ascending."""
    return sorted(directory, key=lambda key: (0, key.upper(), 0) if isinstance(key, str) else (1, "", key))


class _SectionBuilder:
    """Lays the section out as directories, data entries, names, data."""

    def __init__(self, tree, rva):
        self.rva = rva
        leaves = sum(len(languages) for names in tree.values() for languages in names.values())
        self.directories = bytearray(self._directory_size(tree))
        self.entries_at = len(self.directories)
        self.texts_at = self.entries_at + DATA_ENTRY * leaves
        self.texts = bytearray()
        self.leaves = []
        self.next_directory = 0
        self._directory(tree)

    def _directory_size(self, directory):
        own = DIRECTORY_HEADER + DIRECTORY_ENTRY * len(directory)
        return own + sum(self._directory_size(child) for child in directory.values() if isinstance(child, dict))

    def _text(self, text):
        at = self.texts_at + len(self.texts)
        self.texts += struct.pack("<H", len(text)) + text.encode("utf-16-le")
        return SUBDIRECTORY | at

    def _directory(self, directory):
        keys = _sorted_keys(directory)
        at = self.next_directory
        self.next_directory += DIRECTORY_HEADER + DIRECTORY_ENTRY * len(keys)
        named = sum(isinstance(key, str) for key in keys)
        struct.pack_into("<IIHHHH", self.directories, at, 0, 0, 0, 0, named, len(keys) - named)
        for i, key in enumerate(keys):
            child = directory[key]
            identifier = self._text(key) if isinstance(key, str) else key
            if isinstance(child, dict):
                target = SUBDIRECTORY | self._directory(child)
            else:
                target = self.entries_at + DATA_ENTRY * len(self.leaves)
                self.leaves.append(child)
            struct.pack_into("<II", self.directories, at + DIRECTORY_HEADER + DIRECTORY_ENTRY * i, identifier, target)
        return at

    def build(self):
        data_at = align(self.texts_at + len(self.texts), 8)
        entries = bytearray()
        data = bytearray()
        for leaf in self.leaves:
            entries += struct.pack("<IIII", self.rva + data_at + len(data), len(leaf), 0, 0)
            data += leaf.ljust(align(len(leaf), 8), b"\0")
        head = self.directories + entries + self.texts
        return bytes(head.ljust(data_at, b"\0") + data)


def build_resource_section(tree, rva):
    """The bytes of the resource section that will stand at rva."""
    return _SectionBuilder(tree, rva).build()
