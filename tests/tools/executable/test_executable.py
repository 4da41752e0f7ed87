#!/usr/bin/python3
"""The handheld executable is what the oldest devices load and run, as tools of others read it.

Each rule is also held against copies that break it, so that one which cannot fail is noticed.

usage: test_executable.py FOLDER_OF_THE_HANDHELD_BUILD"""
import os
import struct
import subprocess
import sys
import tempfile
import unittest
from functools import cached_property

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, "..", "..", "..")
sys.path.insert(0, os.path.join(ROOT, "tools", "handheld"))

import device_rules  # noqa: E402
import other_readers  # noqa: E402
from elf_reader import ElfFile  # noqa: E402
from import_documents import DocumentList, complaints  # noqa: E402
from import_list import read_late_list  # noqa: E402
from pe_reader import PeFile  # noqa: E402
from tool_error import read_bytes  # noqa: E402

build_folder = ""

# What came after ARMv4, is a coprocessor's, or has no place in a program.
LATER = {
    "blx r3": 0xE12FFF33, "blx": 0xFAFFFFEE, "bkpt": 0xE1200070, "clz": 0xE16F0F11, "ldrd": 0xE1C200D0,
    "strd": 0xE1C200F0, "pld": 0xF5D0F000, "movw": 0xE3000001, "movt": 0xE3400001, "ldrex": 0xE1910F9F,
    "strex": 0xE1820F91, "ldrexb": 0xE1D10F9F, "rev": 0xE6BF0F31, "uxtb": 0xE6EF0071, "smulbb": 0xE1600281,
    "qadd": 0xE1020051, "umaal": 0xE0410392, "mls": 0xE0603291, "bfi": 0xE7C30091, "sdiv": 0xE710F211,
    "vadd": 0xEE300A81, "vldr": 0xED900B00, "mcr": 0xEE070F15, "ldrht": 0xE0F100B0, "dmb": 0xF57FF05F,
    "cpsid": 0xF10C0080, "svc": 0xEF000000, "mrs": 0xE10F0000, "swp": 0xE1020091,
    "mul r0, r0, r1": 0xE0000190, "umull r0, r0, r1, r2": 0xE0800291, "umull r0, r1, r0, r2": 0xE0810290,
}
STACK = {
    "bic sp, sp, #7": 0xE3CDD007, "and r3, sp, #4": 0xE20D3004, "tst sp, #7": 0xE31D0007, "bics r3, r3, #7": 0xE3D33007,
    "sub sp, sp, r3": 0xE04DD003, "sub sp, sp, #6": 0xE24DD006, "mov sp, r3": 0xE1A0D003, "add sp, r3, #8": 0xE283D008,
    "lsls r3, sp, #29": 0xE1B03E8D, "ldr sp, [r3]": 0xE593D000,
}


class Subject:
    """One executable, with the unstripped file that was linked for it."""

    def __init__(self, folder, data, elf):
        self.folder, self.elf = folder, elf
        self.path = os.path.join(folder, "subject.exe")
        with open(self.path, "wb") as file:
            file.write(data)
        self.image = PeFile(data, self.path)
        self._lines = {}

    @cached_property
    def llvm(self):
        return other_readers.LlvmReader(self.path)

    @cached_property
    def resources(self):
        return other_readers.resources_of(self.path)

    @cached_property
    def icons(self):
        return other_readers.icons_of(self.path, 100, self.folder)

    @cached_property
    def _filled(self):
        made = os.path.join(self.folder, "filled.elf")
        return made, other_readers.with_bytes_of(self.image, self.elf, made)

    @property
    def different(self):
        return self._filled[1]

    @cached_property
    def unwound(self):
        return other_readers.unwound_registers(self._filled[0])

    @cached_property
    def thumb(self):
        return list(other_readers.thumb_symbols(self._filled[0]))

    def lines(self, decoder):
        if decoder not in self._lines:
            self._lines[decoder] = list(other_readers.disassembled(self._filled[0], decoder))
        return self._lines[decoder]


class ExecutableTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.data = read_bytes(os.path.join(build_folder, "vantor.exe"))
        cls.elf = ElfFile.read(os.path.join(build_folder, "handheld", "vantor_link.elf"))
        cls.good = cls.subject(cls.data)
        cls.tried = set()

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    @classmethod
    def subject(cls, data):
        return Subject(tempfile.mkdtemp(dir=cls.folder.name), bytes(data), cls.elf)

    def offset(self, rva):
        section = self.good.image.section_at(rva)
        return rva - section.rva + section.file_offset

    def spoilt(self, *changes):
        """A copy in which (offset, layout, value)s are written."""
        data = bytearray(self.data)
        for place, layout, value in changes:
            struct.pack_into(layout, data, place, value)
        return self.subject(data)

    def assert_told(self, rule, subject, *sentences):
        self.tried.add(rule)
        told = list(rule(subject))
        for sentence in sentences:
            self.assertTrue(any(sentence in text for text in told), f"{sentence} is not among {told[:5]}")

    def assert_told_at(self, places, rule, subject):
        self.assert_told(rule, subject, *(f" at {address:#x} in " for address in places.values()))

    def plain_instructions(self, count):
        """Instructions that neither lead elsewhere nor stand before data, by their addresses in the executable."""
        lines = self.good.lines(other_readers.NEW_DECODER)
        found = [line for line, following in zip(lines, lines[1:])
                 if line.mnemonic == "mov" and line.operands.startswith("r") and not following.is_data]
        return found[10:10 + count]

    def words(self, named):
        """({name: address}, changes) that write each word over an instruction of its own."""
        places = {name: line.address for name, line in zip(named, self.plain_instructions(len(named)))}
        base = self.good.image.image_base
        return places, [(self.offset(places[name] - base), "<I", word) for name, word in named.items()]

    def test_keeps_every_rule(self):
        for rule in device_rules.RULES:
            self.assertEqual(list(rule(self.good)), [], rule.__doc__)

    def test_is_an_arm_executable_of_windows_ce(self):
        header = 0x80
        for place, layout, value, sentence in (
                (header + 4, "<H", 0x1C4, "finds Machine IMAGE_FILE_MACHINE_ARMNT"),
                (header + 24 + 68, "<H", 2, "finds Subsystem IMAGE_SUBSYSTEM_WINDOWS_GUI"),
                (header + 22, "<H", 0x10F, "IMAGE_FILE_RELOCS_STRIPPED")):
            self.assert_told(device_rules.headers, self.spoilt((place, layout, value)), sentence)
        both = self.spoilt((header + 24 + 16, "<I", 0x1298))
        both.llvm = self.good.llvm
        self.assert_told(device_rules.headers, both, "finds AddressOfEntryPoint")

    def test_has_no_rights_too_many(self):
        rights = 0x80 + 24 + 224 + 36
        self.assert_told(device_rules.sections, self.spoilt((rights, "<I", 0xE0000020)),
                         "The section .text has the rights")
        self.assert_told(device_rules.sections, self.spoilt((rights + 40, "<I", 0xC0000040)),
                         "The section .rdata has the rights")
        self.assert_told(device_rules.sections, self.spoilt((0x80 + 24 + 224 + 1, "<B", 0x78)), "The sections are not")
        other = self.spoilt((rights - 28, "<I", 0x100))
        other.llvm = self.good.llvm
        self.assert_told(device_rules.sections, other, "llvm-readobj finds .text at 0x1000, pefile does not")

    def test_imports_by_name_alone(self):
        slot = self.good.image.imports[3].slot
        table = self.good.image.directories[1][0]
        lookup = int.from_bytes(self.good.image.bytes_at(table, 4), "little") + 12
        by_number = self.spoilt(*((self.offset(place), "<I", 0x80000000 | 188) for place in (slot, lookup)))
        self.assert_told(device_rules.imports, by_number, "coredll.dll #188 is imported by its number")
        renamed = self.subject(self.data.replace(b"\0BitBlt\0", b"\0BitBlu\0"))
        renamed.llvm = self.good.llvm
        self.assert_told(device_rules.imports, renamed, "do not find the same imports")

    def test_can_be_moved_and_stays_arm_code(self):
        image = self.good.image
        word = next(rva for rva in image.relocations if image.sections[0].contains(
            int.from_bytes(image.bytes_at(rva, 4), "little") - image.image_base))
        self.assert_told(device_rules.relocations, self.spoilt((self.offset(word), "<B", 0x01)), "would be Thumb code")
        block = self.offset(image.directories[5][0])
        first = struct.unpack_from("<H", self.data, block + 8)[0]
        code = self.plain_instructions(1)[0].address - image.image_base
        page = code // 0x1000 * 0x1000
        self.assert_told(device_rules.relocations, self.spoilt((block + 8, "<H", first + 2)), "a multiple of four")
        within = self.spoilt((block, "<I", page), (block + 8, "<H", 0x3000 | code - page))
        self.assert_told(device_rules.relocations, within, "would be changed by a relocation")
        other = self.spoilt((block + 8, "<H", first + 4))
        other.llvm = self.good.llvm
        self.assert_told(device_rules.relocations, other, "do not find the same relocations")

    def test_has_its_icons_and_resources(self):
        group = next(item.content for item in self.good.image.resources if item.kind == 14)
        smaller = self.data.replace(group, group[:4] + struct.pack("<H", 5) + group[6:])
        self.assert_told(device_rules.icons, self.subject(smaller), "icotool finds the icons")
        other = self.subject(smaller)
        other.resources = self.good.resources[1:]
        self.assert_told(device_rules.resources, other, "wrestool and pefile differ")

    def test_is_the_file_whose_code_is_known(self):
        _, changes = self.words({"mov r0, r0": 0xE1A00000})
        self.assert_told(device_rules.same_code, self.spoilt(*changes), "The executable's .text is not")

    def test_has_no_thumb_code(self):
        made = os.path.join(self.folder.name, "thumb")
        with open(made + ".s", "w", encoding="ascii") as file:
            file.write(".syntax unified\n.thumb\n.thumb_func\n.type both, %function\nboth: bx lr\n")
        subprocess.run(["arm-none-eabi-as", made + ".s", "-o", made + ".o"], check=True)
        subprocess.run(["arm-none-eabi-ld", "-e", "0", made + ".o", "-o", made + ".elf"], check=True)
        subject = self.subject(self.data)
        subject.thumb = list(other_readers.thumb_symbols(made + ".elf"))
        self.assert_told(device_rules.thumb, subject, "$t is Thumb code.", "both is Thumb code.")

    def test_has_no_instruction_that_came_after_armv4(self):
        places, changes = self.words(LATER)
        self.assert_told_at(places, device_rules.architecture, self.spoilt(*changes))

    def test_branches_to_registers_only_for_thumb_callers(self):
        places, changes = self.words({"bx lr": 0xE12FFF1E, "bx r3": 0xE12FFF13})
        self.assert_told_at(places, device_rules.branches, self.spoilt(*changes))

    def test_restores_no_registers_of_a_coprocessor(self):
        place = next(section for section in self.elf.loaded_sections() if section.name == ".ARM.exidx")
        table = place.address - self.good.image.image_base
        entry = next(rva for rva in range(table + 4, table + place.size, 8)
                     if self.good.image.bytes_at(rva, 4)[1:] == b"\xb0\xa8\x80")
        # The same entry with "pop d8" for "pop r4".
        self.assert_told(device_rules.coprocessors, self.spoilt((self.offset(entry) + 2, "<B", 0xB8)), "restores D8")

    def test_expects_no_more_of_the_stack_than_a_multiple_of_four(self):
        places, changes = self.words(STACK)
        self.assert_told_at(places, device_rules.stack, self.spoilt(*changes))

    def test_keeps_data_and_code_apart(self):
        lines = self.good.lines(other_readers.NEW_DECODER)
        base = self.good.image.image_base
        last, data = next((line, following) for line, following in zip(lines, lines[1:])
                          if line.mnemonic == "b" and following.is_data)
        away = self.plain_instructions(1)[0].address
        distance = (data.address - away - 8 >> 2) & 0xFFFFFF
        subject = self.spoilt((self.offset(last.address - base), "<I", 0xE1A00000),
                              (self.offset(away - base), "<I", 0xEA000000 | distance))
        self.assert_told(device_rules.data_in_code, subject,
                         f" at {last.address:#x} in {last.function} runs on into data", f" at {away:#x} in ")
        shorter = self.subject(self.data)
        shorter._lines = {other_readers.NEW_DECODER: lines[1:]}
        self.assert_told(device_rules.data_in_code, shorter, "are not the whole section")

    def test_z_every_rule_was_seen_to_be_broken(self):
        self.assertEqual({rule.__name__ for rule in device_rules.RULES}, {rule.__name__ for rule in self.tried})


class ImportDocumentsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = os.path.join(ROOT, "platform", "ce")
        with open(os.path.join(folder, "documents.txt"), encoding="utf-8") as file:
            cls.text = file.read()
        image = PeFile.read(os.path.join(build_folder, "vantor.exe"))
        cls.imports = {(item.library.removesuffix(".dll"), item.name) for item in image.imports}
        cls.late = {(item.library, item.name) for item in read_late_list(os.path.join(folder, "imports.txt"))}

    def told(self, old, new):
        self.assertIn(old, self.text)
        return list(complaints(DocumentList(self.text.replace(old, new, 1)), self.imports, self.late))

    def test_say_for_every_function_where_it_is_known_from(self):
        self.assertGreater(len(self.imports), 150)
        self.assertEqual(list(complaints(DocumentList(self.text), self.imports, self.late)), [])

    def test_are_missed_where_they_are_missing_and_told_where_nobody_needs_them(self):
        line = next(line for line in self.text.splitlines() if line.startswith("coredll   BitBlt "))
        self.assertEqual(self.told(line + "\n", ""), ["coredll BitBlt has no document."])
        self.assertEqual(self.told(line, line.replace("BitBlt", "BitBlu")),
                         ["coredll BitBlt has no document.", "coredll BitBlu has a document but is not used."])
        self.assertEqual(self.told("late aygshell  SHFullScreen ", "late aygshell  SHHalfScreen "),
                         ["aygshell SHFullScreen has no document.",
                          "aygshell SHHalfScreen has a document but is not used."])

    def test_are_pages_that_are_listed_once_and_used(self):
        self.assertEqual(self.told("Beep                 beep", "Beep                 boop"),
                         ["coredll MessageBeep names the page boop, which is not listed.",
                          "The page beep is that of no function."])
        self.assertEqual(self.told("exports  # no public page found; TlsAlloc", "exports  # TlsAlloc"),
                         ["coredll TlsCall has no page and does not say so."])
        for line in ("page beep https://example.org/ Another", "page new file:///new New", "coredll MessageBeep beep",
                     "coredll New", "page"):
            wrong = self.told("page  automation ", f"{line}\npage  automation ")
            self.assertRegex(wrong[0], r"Line \d+ is neither a page nor a function, or stands there twice\.")


if __name__ == "__main__":
    build_folder = os.path.abspath(sys.argv.pop())
    unittest.main()
