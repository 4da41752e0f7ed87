#!/usr/bin/python3
"""The handheld's language packs are modules that its loader takes, with the texts of their sources.

usage: test_handheld_packs.py FOLDER_OF_THE_PACKS"""
import glob
import os
import re
import sys
import unittest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..")
sys.path.insert(0, os.path.join(ROOT, "tools", "handheld"))
sys.path.insert(0, os.path.join(ROOT, "tools", "languages"))

from check_texts import read_texts  # noqa: E402
from pe_reader import PeFile  # noqa: E402
from resource_numbers import read_numbers  # noqa: E402

MACHINE_ARM = 0x01C0
SUBSYSTEM_WINDOWS_CE = 9
LIBRARY = 0x2000
MENU, STRING, VERSION = 4, 6, 16
NUMBERS = read_numbers()
MENUS = {number for name, number in NUMBERS.items() if name.startswith("IDR_")}

packs_folder = ""


def strings_of(pack):
    """{number: text} of a module's string blocks."""
    found = {}
    for resource in pack.resources:
        if resource.kind != STRING:
            continue
        at = 0
        for index in range(16):
            length = int.from_bytes(resource.content[at:at + 2], "little")
            if length:
                text = resource.content[at + 2:at + 2 + 2 * length].decode("utf-16-le")
                found[(resource.name - 1) * 16 + index] = text
            at += 2 + 2 * length
    return found


class LanguagePacks(unittest.TestCase):
    def each(self):
        scripts = sorted(glob.glob(os.path.join(ROOT, "res", "languages", "[0-9a-f]" * 4 + ".rc")))
        self.assertGreaterEqual(len(scripts), 7)
        for script in scripts:
            language = os.path.basename(script)[:4]
            path = os.path.join(packs_folder, f"vantor.exe.{language}.ui")
            yield script, int(language, 16), PeFile.read(path)

    def test_are_modules_of_a_handheld_with_nothing_but_resources(self):
        for _, _, pack in self.each():
            self.assertEqual(pack.machine, MACHINE_ARM)
            self.assertEqual(pack.subsystem, SUBSYSTEM_WINDOWS_CE)
            self.assertEqual(pack.subsystem_version, (4, 20))
            self.assertTrue(pack.characteristics & LIBRARY)
            self.assertEqual([section.name for section in pack.sections], [".rsrc"])
            self.assertEqual((pack.entry, pack.imports, pack.relocations), (0, [], []))
            self.assertEqual(pack.checksum, pack.actual_checksum)
            self.assertLess(len(pack.data), 16 * 1024)

    def test_hold_their_menus_and_one_version_block_in_their_language(self):
        for _, language, pack in self.each():
            self.assertEqual({resource.name for resource in pack.resources if resource.kind == MENU}, MENUS)
            self.assertEqual([resource.name for resource in pack.resources if resource.kind == VERSION], [1])
            self.assertEqual({resource.language for resource in pack.resources}, {language})
            version = next(resource.content for resource in pack.resources if resource.kind == VERSION)
            self.assertIn(f"{language:04X}04B0", version.decode("utf-16-le", "replace"))

    def test_hold_the_texts_of_their_sources_letter_by_letter(self):
        for script, _, pack in self.each():
            written = {NUMBERS[name]: text.replace("\\n", "\n") for name, text in read_texts(script).items()
                       if name in NUMBERS}
            self.assertEqual(strings_of(pack), written, script)
            self.assertFalse([text for text in written.values() if re.search(r"\\[^n]", text)])


if __name__ == "__main__":
    packs_folder = sys.argv.pop(1)
    unittest.main()
