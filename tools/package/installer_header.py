"""The control file of an installer cabinet for Windows CE: what is installed where, and how the start menu finds it.

All numbers are little-endian. The file begins with a header of 100 bytes; sections follow with strings, folders, files
and links, whose entries refer to one another by numbers."""
import struct

MAGIC = b"MSCE"
HEADER_SIZE = 100
PROCESSOR_STRONGARM = 2577
# The latest build, where the system looks for what the program can show: square and turned screens.
ANY_SCREEN = 0xE0000000

# The installer's own numbers of well-known folders.
FOLDER_PROGRAM_FILES = "%CE1%"
START_MENU_PROGRAMS = 11
LINK_TO_FILE = 1


def text(value):
    return value.encode("ascii") + b"\0"


def numbers(values):
    """A list of 16-bit numbers that ends with 0."""
    return struct.pack(f"<{len(values) + 1}H", *values, 0)


class InstallerHeader:
    """Installs files into one folder under Program Files and makes links in the start menu's programs."""

    def __init__(self, name, provider, minimum_version=(4, 20)):
        self.name = name
        self.provider = provider
        self.minimum_version = minimum_version
        self._strings = []
        self._files = []
        self._links = []
        self._folder = [self._string(FOLDER_PROGRAM_FILES), self._string(name)]

    def _string(self, value):
        if value not in self._strings:
            self._strings.append(value)
        return self._strings.index(value) + 1

    def add_file(self, name):
        """The file's number: its extension in the cabinet."""
        self._files.append(name)
        return len(self._files)

    def add_start_menu_link(self, name, file_number):
        self._links.append((self._string(name + ".lnk"), file_number))

    def encode(self):
        strings = b"".join(
            struct.pack("<HH", number, len(text(value))) + text(value)
            for number, value in enumerate(self._strings, 1)
        )
        folder = numbers(self._folder)
        folders = struct.pack("<HH", 1, len(folder)) + folder
        files = b"".join(
            struct.pack("<HHHIH", number, 1, number, 0, len(text(name))) + text(name)
            for number, name in enumerate(self._files, 1)
        )
        links = b""
        for number, (name, target) in enumerate(self._links, 1):
            path = numbers([name])
            links += struct.pack("<6H", number, 0, START_MENU_PROGRAMS, target, LINK_TO_FILE, len(path)) + path

        # Names first, then the sections; a section without entries has a place all the same.
        parts = [text(self.name), text(self.provider), b"", strings, folders, files, b"", b"", links]
        places = []
        at = HEADER_SIZE
        for part in parts:
            places.append(at)
            at += len(part)
        major, minor = self.minimum_version
        header = MAGIC + struct.pack("<11I", 0, at, 0, 1, PROCESSOR_STRONGARM, major, minor, 0, 0, 0,
                                      ANY_SCREEN)
        header += struct.pack("<6H", len(self._strings), 1, len(self._files), 0, 0, len(self._links))
        header += struct.pack("<6I", *places[3:])
        for place, part in zip(places[:3], parts[:3]):
            header += struct.pack("<HH", place, len(part))
        header += struct.pack("<HH", 0, 0)
        assert len(header) == HEADER_SIZE
        return header + b"".join(parts)
