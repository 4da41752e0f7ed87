#!/usr/bin/env python3
"""The packages hold what was built, as tools of others read them, and the installer is told the right places.

usage: test_package.py BUILD_FOLDER"""
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..")
LANGUAGES = ("0407", "040c", "0410", "0411", "0415", "0419", "0c0a")
BUILT = ["vantor.exe"] + [f"vantor.exe.{language}.ui" for language in LANGUAGES]
NOTICES = "third-party-notices.txt"
NAMES = BUILT + [NOTICES]

build_folder = ""


def content(*path):
    with open(os.path.join(*path), "rb") as file:
        return file.read()


def notices():
    """The notices as a package holds them: Windows' own readers want both characters at a line's end."""
    return content(ROOT, "docs", NOTICES).replace(b"\n", b"\r\n")


def expected(system, name):
    return notices() if name == NOTICES else content(build_folder, system, name)


def archives_linked(system):
    """The names of the archives that the linker took anything from, without the program's own."""
    with open(os.path.join(build_folder, system, "vantor.map"), encoding="utf-8") as file:
        links = file.read().split("\nDiscarded input sections")[0]
    return set(re.findall(r"(\w[\w+.-]*)\.a\(", links)) - {"libprogram"}


class ControlFile:
    """The cabinet's control file, read field by field."""

    def __init__(self, data):
        self.data = data
        self.magic, self.length, self.processor = data[:4], self.word(8), self.word(20)
        self.minimum = (self.word(24), self.word(28))
        self.screens = self.word(44)
        self.unsupported = self.half(94)
        self.name, self.provider = self.named(84), self.named(88)
        counts = [self.half(48 + 2 * index) for index in range(6)]
        offsets = [self.word(60 + 4 * index) for index in range(6)]
        self.registry = counts[3:5]
        self.strings = self.read_strings(offsets[0], counts[0])
        self.folders = self.read_folders(offsets[1], counts[1])
        self.files = self.read_files(offsets[2], counts[2])
        self.links = self.read_links(offsets[5], counts[5])

    def half(self, at):
        return struct.unpack_from("<H", self.data, at)[0]

    def word(self, at):
        return struct.unpack_from("<I", self.data, at)[0]

    def ascii(self, at, size):
        raw = self.data[at:at + size]
        assert raw[-1:] == b"\0" and b"\0" not in raw[:-1], raw
        return raw[:-1].decode("ascii")

    def named(self, at):
        return self.ascii(self.half(at), self.half(at + 2))

    def path(self, at, size):
        numbers = struct.unpack_from(f"<{size // 2}H", self.data, at)
        assert numbers[-1] == 0
        return "\\".join(self.strings[number] for number in numbers[:-1])

    def read_strings(self, at, count):
        found = {}
        for _ in range(count):
            size = self.half(at + 2)
            found[self.half(at)] = self.ascii(at + 4, size)
            at += 4 + size
        return found

    def read_folders(self, at, count):
        found = {}
        for _ in range(count):
            size = self.half(at + 2)
            found[self.half(at)] = self.path(at + 4, size)
            at += 4 + size
        return found

    def read_files(self, at, count):
        found = {}
        for _ in range(count):
            size = self.half(at + 10)
            found[self.half(at)] = (self.folders[self.half(at + 2)], self.ascii(at + 12, size))
            at += 12 + size
        return found

    def read_links(self, at, count):
        found = []
        for _ in range(count):
            size = self.half(at + 10)
            found.append((self.half(at + 4), self.half(at + 6), self.half(at + 8), self.path(at + 12, size)))
            at += 12 + size
        return found


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.into = os.path.join(cls.folder.name, "made")
        subprocess.run(
            [sys.executable, os.path.join(ROOT, "tools", "package", "make_packages.py"), build_folder, cls.into],
            check=True, stdout=subprocess.DEVNULL)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def unpack_cabinet(self):
        into = tempfile.mkdtemp(dir=self.folder.name)
        subprocess.run(["cabextract", "--quiet", "--directory", into, os.path.join(self.into, "vantor.cab")], check=True)
        return into

    def control_file(self, folder):
        names = [name for name in os.listdir(folder) if name.endswith(".000")]
        self.assertEqual(len(names), 1)
        return ControlFile(content(folder, names[0]))

    def test_the_cabinet_holds_the_handhelds_files_byte_for_byte(self):
        folder = self.unpack_cabinet()
        control = self.control_file(folder)
        self.assertEqual([name for _, name in control.files.values()], NAMES)
        self.assertEqual(len(os.listdir(folder)), len(NAMES) + 1)
        for number, (place, name) in control.files.items():
            self.assertEqual(place, "%CE1%\\Vantor")
            members = [member for member in os.listdir(folder) if member.endswith(f".{number:03}")]
            self.assertEqual(len(members), 1)
            self.assertRegex(members[0], r"^[0-9A-Za-z]{8}\.\d{3}$")
            self.assertEqual(content(folder, members[0]), expected("handheld", name), name)

    def test_the_installer_is_told_program_maker_processor_and_system(self):
        control = self.control_file(self.unpack_cabinet())
        self.assertEqual(control.magic, b"MSCE")
        self.assertEqual(control.length, len(control.data))
        self.assertEqual((control.name, control.provider), ("Vantor", "Kelmor"))
        self.assertEqual(control.processor, 2577)
        self.assertEqual(control.minimum, (4, 20))
        self.assertEqual(control.unsupported, 0)

    def test_the_installer_has_nothing_that_the_program_writes_so_that_an_update_loses_nothing(self):
        control = self.control_file(self.unpack_cabinet())
        self.assertEqual(control.registry, [0, 0])
        self.assertEqual({place for place, _ in control.files.values()}, {"%CE1%\\Vantor"})
        self.assertFalse([name for _, name in control.files.values() if name.endswith(".xml")])

    def test_the_installer_knows_that_the_program_fits_every_screen(self):
        self.assertEqual(self.control_file(self.unpack_cabinet()).screens, 0xE0000000)

    def test_the_control_file_comes_first_and_the_files_from_the_last_on(self):
        listed = subprocess.run(["cabextract", "--list", "--quiet", os.path.join(self.into, "vantor.cab")], check=True,
                                stdout=subprocess.PIPE, text=True).stdout
        numbers = re.findall(r"\.(\d{3})$", listed, re.MULTILINE)
        count = len(NAMES)
        self.assertEqual([int(number) for number in numbers], [0] + list(range(count, 0, -1)))

    def test_the_start_menu_gets_a_link_to_the_program(self):
        control = self.control_file(self.unpack_cabinet())
        # 11 is the folder of the start menu's programs, 1 a link to a file.
        self.assertEqual(control.links, [(11, 1, 1, "Vantor.lnk")])
        self.assertEqual(control.files[1][1], "vantor.exe")

    def test_the_cabinet_has_no_faults_and_one_that_is_cut_off_has(self):
        cabinet = os.path.join(self.into, "vantor.cab")
        short = os.path.join(self.folder.name, "short.cab")
        with open(short, "wb") as file:
            file.write(content(cabinet)[:-100_000])
        for path, good in ((cabinet, True), (short, False)):
            tested = subprocess.run(["cabextract", "--test", path], capture_output=True, text=True)
            self.assertEqual(tested.returncode == 0 and "All done, no errors." in tested.stdout, good, tested.stdout)

    def test_the_cabinet_is_not_compressed(self):
        size = os.path.getsize(os.path.join(self.into, "vantor.cab"))
        self.assertGreater(size, sum(len(expected("handheld", name)) for name in NAMES))

    def test_the_zip_holds_the_desktops_files(self):
        archive = os.path.join(self.into, "vantor.zip")
        subprocess.run(["unzip", "-tqq", archive], check=True)
        for name in NAMES:
            unpacked = subprocess.run(["unzip", "-p", archive, f"Vantor/{name}"], check=True, stdout=subprocess.PIPE)
            self.assertEqual(unpacked.stdout, expected("desktop", name), name)

    def test_the_notices_name_every_library_that_is_linked_in(self):
        named = set(re.findall(r"\blib[\w+]+", content(ROOT, "docs", NOTICES).decode("ascii")))
        for system in ("handheld", "desktop"):
            linked = archives_linked(system)
            self.assertIn("libstdc++", linked)
            self.assertEqual(linked - named, set(), system)

    def test_without_a_build_there_is_a_sentence_and_no_package(self):
        empty = tempfile.mkdtemp(dir=self.folder.name)
        into = os.path.join(empty, "made")
        result = subprocess.run(
            [sys.executable, os.path.join(ROOT, "tools", "package", "make_packages.py"), empty, into],
            stderr=subprocess.PIPE, text=True)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("holds no finished build", result.stderr)
        self.assertEqual(os.listdir(into), [])


if __name__ == "__main__":
    build_folder = os.path.abspath(sys.argv.pop())
    unittest.main()
