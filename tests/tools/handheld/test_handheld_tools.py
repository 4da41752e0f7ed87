"""Tests of the tools that make and check handheld executables, on small executables made for them."""
import dataclasses
import os
import struct
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
TOOLS = os.path.join(HERE, "..", "..", "..", "tools", "handheld")
sys.path.insert(0, TOOLS)

import check_executable  # noqa: E402
import compile_resources  # noqa: E402
import elf_to_pe  # noqa: E402
import make_imports  # noqa: E402
import resource_file  # noqa: E402
from elf_reader import ElfFile  # noqa: E402
from import_list import ImportEntry, LateEntry, parse_import_list, parse_late_list  # noqa: E402
from pe_reader import PeFile  # noqa: E402
from tool_error import ToolError  # noqa: E402

IMPORTS = """
coredll  First            # a remark
coredll  Second  Other    # another name
toolhelp Third   #188
late aygshell Fourth #12
coredll  Unused
"""

PROGRAM = """
extern "C" int First(int*);
extern "C" int Second();
extern "C" int Third();
int number = 5;
int* const constantAddress = &number;
int* variableAddress = &number;
int zeros[2000];
extern "C" int WinMainCRTStartup()
{
    zeros[0] = *variableAddress;
    return First(constantAddress) + Second() + Third() + zeros[0];
}
"""

RESOURCES = """
7 RCDATA { 1, 2, 3 }
ZEBRA CEUX { 1 }
APPLE CEUX { 2 }
STRINGTABLE BEGIN 20 "twenty" END
"""


def run(*command):
    result = subprocess.run(command, capture_output=True, text=True, check=False)
    if result.returncode:
        raise AssertionError(result.stderr)


class Workshop:
    """A folder in which small programs are compiled, linked twice and converted."""

    def __init__(self):
        self.folder = tempfile.TemporaryDirectory(prefix="handheld tools ")
        self.entries = parse_import_list(IMPORTS)

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)
        return self.path(name)

    def link(self, name, source, base, entries=None):
        """Compiles a source and links it at a base; gives back the ELF file's bytes."""
        entries = entries or self.entries
        with open(os.path.join(TOOLS, "executable.ld.in"), encoding="utf-8") as file:
            script = make_imports.linker_script(file.read(), entries, base)
        compiled = self.path(name + ".o")
        run("arm-none-eabi-g++", "-march=armv4t", "-marm", "-Os", "-fno-exceptions", "-ffunction-sections",
            "-fdata-sections", "-c", self.write(name + ".cpp", source), "-o", compiled)
        run("arm-none-eabi-g++", "-march=armv4t", "-marm", "-nostdlib", "-nostartfiles", "-Wl,--emit-relocs",
            "-Wl,--gc-sections", "-Wl,--no-warn-rwx-segments", "-Wl,-z,max-page-size=4096",
            "-Wl,-T," + self.write(name + ".ld", script), compiled,
            self.write(name + ".s", make_imports.thunk_assembly(entries)), "-o", self.path(name + ".elf"))
        with open(self.path(name + ".elf"), "rb") as file:
            return file.read()

    def compile_resources(self, name, script):
        run("x86_64-w64-mingw32-windres", "-O", "res", self.write(name + ".rc", script), self.path(name + ".res"))
        return resource_file.read_resources(self.path(name + ".res"))

    def close(self):
        self.folder.cleanup()


class ToolTest(unittest.TestCase):
    """Tests that share one linked program and its executable."""

    @classmethod
    def setUpClass(cls):
        cls.workshop = Workshop()
        cls.addClassCleanup(cls.workshop.close)
        cls.elf_data = cls.workshop.link("first", PROGRAM, 0x10000)
        cls.moved_data = cls.workshop.link("second", PROGRAM, 0x450000)
        cls.elf = ElfFile(cls.elf_data)
        cls.moved = ElfFile(cls.moved_data)
        cls.resources = cls.workshop.compile_resources("resources", RESOURCES)
        cls.image_data = elf_to_pe.convert(cls.elf, cls.moved, cls.workshop.entries, cls.resources)
        cls.image = PeFile(cls.image_data)

    def assert_error(self, sentence, function, *arguments):
        with self.assertRaisesRegex(ToolError, sentence):
            function(*arguments)


class ImportListTest(ToolTest):
    def test_reads_names_other_names_and_ordinals(self):
        self.assertEqual(self.workshop.entries, [
            ImportEntry("coredll", "First", "First", None), ImportEntry("coredll", "Second", "Other", None),
            ImportEntry("toolhelp", "Third", None, 188), ImportEntry("coredll", "Unused", "Unused", None)])

    def test_refuses_what_it_does_not_understand(self):
        for text, sentence in (("coredll", "line 1: expected a library"), ("coredll A B C", "at most one"),
                               ("coredll A\ncoredll A", "line 2: A stands already in line 1"),
                               ("coredll A #0", "not an ordinal"), ("coredll A #65536", "not an ordinal"),
                               ("coredll A #x", "not an ordinal"), ("core-dll A", "not a name"),
                               ("coredll A?", "not a name"), ("coredll A B?", "not a name")):
            self.assert_error(sentence, parse_import_list, text)

    def test_reads_what_is_looked_up_apart_from_the_imports(self):
        self.assertEqual(parse_late_list(IMPORTS), [LateEntry("aygshell", "Fourth", 12)])
        self.assertEqual(parse_late_list("late a #7  # a remark\nlate b Name 6+"),
                         [LateEntry("a", None, 7), LateEntry("b", "Name", None)])
        for text, sentence in (("late", "expected a library"), ("late a", "expected a library"),
                               ("late a 6+", "expected a library"), ("late a B C", "\"C\" is neither"),
                               ("late a #0", "not an ordinal"), ("late a #1 #2", "\"#2\" is neither")):
            self.assert_error(sentence, parse_late_list, text)

    def test_the_products_list_is_well_formed_and_names_only_known_libraries(self):
        with open(os.path.join(HERE, "../../../platform/ce/imports.txt"), encoding="utf-8") as file:
            text = file.read()
        entries = parse_import_list(text)
        self.assertGreater(len(entries), 100)
        self.assertLessEqual({entry.library for entry in entries}, check_executable.LIBRARIES)
        late = parse_late_list(text)
        self.assertTrue({"aygshell", "note_prj"} <= {entry.library for entry in late})
        self.assertFalse({entry.name for entry in late} & {entry.function for entry in entries})

    def test_a_template_without_marks_is_refused(self):
        self.assert_error("does not contain @IMAGE_BASE@", make_imports.linker_script, "", self.workshop.entries, 0)


class ElfReaderTest(ToolTest):
    def test_refuses_other_files(self):
        self.assert_error("not a 32-bit little-endian ELF file", ElfFile, b"MZ" + bytes(100))
        other = bytearray(self.elf_data)
        struct.pack_into("<H", other, 18, 3)
        self.assert_error("for machine 3, not for ARM", ElfFile, bytes(other))

    def test_a_file_cut_off_is_damaged(self):
        for size in (20, 60, len(self.elf_data) // 2, len(self.elf_data) - 1):
            self.assert_error("damaged or cut off", ElfFile, self.elf_data[:size])

    def test_a_missing_symbol_is_told(self):
        self.assert_error("has no symbol nothing", self.elf.symbol, "nothing")


class RelocationTest(ToolTest):
    def setUp(self):
        self.relocations = elf_to_pe.find_relocations(self.elf)

    def test_the_two_links_agree_with_the_relocations(self):
        elf_to_pe.check_against_second_link(self.elf, self.moved, self.relocations)
        number = self.elf.symbol("number").value
        words = {struct.unpack_from("<I", self.elf.content(self.elf.section_at(address)),
                                    address - self.elf.section_at(address).address)[0] for address in self.relocations}
        self.assertIn(number, words)

    def test_a_forgotten_relocation_is_found(self):
        for address in self.relocations:
            self.assert_error(f"{address:#x} in .* moved with the image but has no relocation",
                              elf_to_pe.check_against_second_link, self.elf, self.moved, self.relocations - {address})

    def test_a_relocation_too_many_is_found(self):
        start = self.elf.symbol("WinMainCRTStartup").value
        self.assert_error(f"{start:#x} has a relocation but did not move", elf_to_pe.check_against_second_link,
                          self.elf, self.moved, self.relocations | {start})

    def test_a_link_at_the_same_base_proves_nothing(self):
        self.assert_error("same base", elf_to_pe.check_against_second_link, self.elf, self.elf, self.relocations)

    def test_a_link_of_another_program_is_found(self):
        longer = ElfFile(self.workshop.link("longer", PROGRAM.replace("+ zeros[0]", "+ zeros[0] * zeros[1]"), 0x450000))
        self.assert_error("differ in more than their base", elf_to_pe.check_against_second_link, self.elf, longer,
                          self.relocations)

    def test_a_type_that_cannot_be_relocated_is_told(self):
        data = bytearray(self.elf_data)
        table = next(s for s in self.elf.sections if s.name == ".rel.text")
        for at in range(table.offset, table.offset + table.size, 8):
            if data[at + 4] == 2:
                data[at + 4] = 43
        self.assert_error("relocation type 43", elf_to_pe.find_relocations, ElfFile(bytes(data)))

    def test_a_veneer_is_told(self):
        program = PROGRAM.replace("int number", 'extern "C" { int far_veneer = 3; }\nint number')
        program = program.replace("return First", "return far_veneer + First")
        elf = ElfFile(self.workshop.link("veneer", program, 0x10000))
        self.assert_error("veneer far_veneer", elf_to_pe.find_relocations, elf)

    def test_blocks_hold_a_page_each_and_are_padded(self):
        self.assertEqual(elf_to_pe.relocation_table([0x1004, 0x1008, 0x3FFC]),
                         struct.pack("<IIHHIIHH", 0x1000, 12, 0x3004, 0x3008, 0x3000, 12, 0x3FFC, 0))


class ConversionTest(ToolTest):
    def test_the_headers_are_those_of_windows_ce(self):
        self.assertEqual((self.image.machine, self.image.subsystem, self.image.subsystem_version),
                         (0x1C0, 9, (4, 20)))
        self.assertEqual(self.image.image_base, 0x10000)
        self.assertEqual(self.image.stack_reserve, 0x20000)
        self.assertEqual(self.image.entry + 0x10000, self.elf.symbol("WinMainCRTStartup").value)
        self.assertEqual([section.name for section in self.image.sections],
                         [".text", ".rdata", ".data", ".idata", ".rsrc", ".reloc"])

    def test_only_called_functions_are_imported_each_in_its_way(self):
        self.assertEqual([(item.library, item.name, item.ordinal) for item in self.image.imports],
                         [("coredll.dll", "First", None), ("coredll.dll", "Other", None), ("toolhelp.dll", None, 188)])
        slots = {item.name: item.slot + 0x10000 for item in self.image.imports}
        self.assertEqual(slots["First"], self.elf.symbol("__imp_First").value)
        self.assertEqual(slots["Other"], self.elf.symbol("__imp_Second").value)

    def test_code_and_data_stand_where_they_were_linked(self):
        for section in self.elf.loaded_sections():
            if section.has_content and section.name != ".imports":
                self.assertEqual(self.image.bytes_at(section.address - 0x10000, section.size),
                                 self.elf.content(section))
        zeros = self.elf.symbol("zeros").value - 0x10000
        self.assertEqual(self.image.bytes_at(zeros, 8000), bytes(8000))
        self.assertLess(self.image.section_at(zeros).file_size, 8000)

    def test_the_relocations_arrive(self):
        self.assertEqual({rva + 0x10000 for rva in self.image.relocations}, elf_to_pe.find_relocations(self.elf))

    def test_the_resources_arrive_in_the_order_the_system_searches(self):
        self.assertEqual([(item.kind, item.name) for item in self.image.resources],
                         [("CEUX", "APPLE"), ("CEUX", "ZEBRA"), (6, 2), (10, 7)])
        contents = {item.name: item.content for item in self.image.resources}
        self.assertEqual(contents[7], struct.pack("<3H", 1, 2, 3))
        self.assertIn("twenty".encode("utf-16-le"), contents[2])

    def test_an_image_without_resources_has_no_section_for_them(self):
        image = PeFile(elf_to_pe.convert(self.elf, self.moved, self.workshop.entries, None))
        self.assertEqual(image.resources, [])
        self.assertNotIn(".rsrc", [section.name for section in image.sections])

    def test_a_slot_without_a_line_is_told(self):
        self.assert_error("__imp_Second has no line", elf_to_pe.convert, self.elf, self.moved,
                          self.workshop.entries[:1], None)

    def test_a_section_without_a_place_is_told(self):
        elf = ElfFile(self.elf_data.replace(b".ARM.exidx\0", b".odd.exidx\0").replace(b".rodata\0", b".odddat\0"))
        self.assert_error("section .odd", elf_to_pe.collect_sections, elf, 0x10000)

    def test_the_command_line_ends_with_one_sentence(self):
        broken = self.workshop.write("broken.elf", "nothing")
        result = subprocess.run([sys.executable, os.path.join(TOOLS, "elf_to_pe.py"), broken, broken + ".exe",
                                 "--second-link", broken, "--imports", self.workshop.write("imports.txt", IMPORTS)],
                                capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stderr, r"\Aelf_to_pe: .*broken.elf is not a 32-bit little-endian ELF file\.\n\Z")
        self.assertFalse(os.path.exists(broken + ".exe"))


class ResourceFileTest(ToolTest):
    def entry(self, kind, name, content, language=0x409):
        head = b"".join(struct.pack("<HH", 0xFFFF, value) for value in (kind, name))
        header = 8 + len(head) + 16
        return struct.pack("<II", len(content), header) + head + struct.pack("<IHHII", 0, 0, language, 0, 0) + \
            content.ljust((len(content) + 3) // 4 * 4, b"\0")

    def test_languages_stand_side_by_side(self):
        data = self.entry(10, 1, b"one") + self.entry(10, 1, b"eins", 0x407)
        self.assertEqual(resource_file.parse_resources(data), {10: {1: {0x409: b"one", 0x407: b"eins"}}})

    def test_the_same_resource_twice_is_refused(self):
        self.assert_error("10:1 twice in language 0x0409", resource_file.parse_resources,
                          self.entry(10, 1, b"one") + self.entry(10, 1, b"two"))

    def test_a_file_cut_off_is_damaged(self):
        data = self.entry(10, 1, b"12345678")
        for size in (4, 12, len(data) - 1):
            self.assert_error("damaged or cut off at offset 0", resource_file.parse_resources, data[:size])


class ResourceCompilerTest(ToolTest):
    def compile(self, script):
        return compile_resources.main([self.workshop.write("a b.rc", script), self.workshop.path("a b.res"),
                                       "--include", self.workshop.folder.name, "--depfile",
                                       self.workshop.path("a b.d")])

    def test_headers_and_pictures_are_dependencies(self):
        self.workshop.write("own.h", "#define NUMBER 3\n")
        self.workshop.write("a picture.bin", "content")
        self.compile('#include "own.h"\nNUMBER RCDATA "a picture.bin"\nSTRINGTABLE BEGIN 1 "own.txt" END\n')
        self.assertEqual(resource_file.read_resources(self.workshop.path("a b.res"))[10][3], {0x409: b"content"})
        with open(self.workshop.path("a b.d"), encoding="utf-8") as file:
            rule = file.read()
        escaped = self.workshop.folder.name.replace(" ", "\\ ")
        self.assertTrue(rule.startswith(escaped + "/a\\ b.res:"))
        for name in ("own.h", "a\\ picture.bin", "a\\ b.rc"):
            self.assertIn(f"{escaped}/{name}", rule)
        self.assertNotIn("own.txt", rule)

    def test_a_missing_picture_is_told(self):
        self.assert_error("(?s)windres failed.*missing.bin", self.compile, '1 RCDATA "missing.bin"\n')


class CheckTest(ToolTest):
    def complaints(self, data=None):
        image = PeFile(data or self.image_data)
        entries = self.workshop.entries
        return [*check_executable.check_headers(image), *check_executable.check_imports(image, entries),
                *check_executable.check_relocations(image)]

    def patched(self, at, layout, value):
        data = bytearray(self.image_data)
        struct.pack_into(layout, data, at, value)
        return bytes(data)

    def file_offset(self, rva):
        section = self.image.section_at(rva)
        return rva - section.rva + section.file_offset

    def test_a_good_executable_has_no_complaints(self):
        self.assertEqual(self.complaints(), [])
        self.assertEqual(list(check_executable.check_size(self.image)), [])

    def test_wrong_headers_are_told(self):
        header = 0x80
        for at, layout, value, sentence in ((header + 4, "<H", 0x1C4, "The machine is 0x01c4"),
                                            (header + 24 + 68, "<H", 2, "The subsystem is 2"),
                                            (header + 24 + 50, "<H", 0, "The subsystem's version is 4.00"),
                                            (header + 24 + 16, "<I", 0x2000, "entry point 0x2000"),
                                            (header + 24 + 56, "<I", 0x1000, "The image's size 0x1000"),
                                            (header + 24 + 64, "<I", 1, "The checksum is 0x1 "),
                                            (header + 24 + 224 + 36, "<I", 0xE0000020, "code and writable")):
            image = PeFile(self.patched(at, layout, value))
            self.assertIn(sentence, " ".join(check_executable.check_headers(image)))

    def test_sections_that_overlap_are_told(self):
        image = PeFile(self.image_data)
        image.sections[1] = dataclasses.replace(image.sections[1], rva=image.sections[0].rva)
        self.assertIn("The section .rdata at 0x1000 overlaps another",
                      " ".join(check_executable.check_headers(image)))

    def test_foreign_libraries_and_functions_are_told(self):
        foreign = self.image_data.replace(b"coredll.dll\0", b"kernell.dll\0")
        self.assertTrue(any("The library kernell.dll is imported" in text for text in self.complaints(foreign)))
        renamed = self.image_data.replace(b"\0First\0", b"\0Fxrst\0")
        self.assertIn("coredll.dll Fxrst is imported by its name, which the list of imports does not say.",
                      self.complaints(renamed))

    def test_a_library_that_not_every_device_has_is_told(self):
        shell = self.image_data.replace(b"toolhelp.dll\0", b"aygshell.dll\0")
        self.assertTrue(any("The library aygshell.dll is imported" in text for text in self.complaints(shell)))

    def test_an_ordinal_that_the_list_does_not_say_is_told(self):
        image = bytearray(self.image_data)
        at = image.index(struct.pack("<I", 0x80000000 | 188))
        while at >= 0:
            struct.pack_into("<I", image, at, 0x80000000 | 189)
            at = image.find(struct.pack("<I", 0x80000000 | 188))
        self.assertIn("toolhelp.dll #189 is imported by its number, which the list of imports does not say.",
                      self.complaints(bytes(image)))

    def test_relocations_that_are_missing_or_astray_are_told(self):
        directory = 0x80 + 24 + 96 + 8 * 5
        none = bytearray(self.image_data)
        struct.pack_into("<II", none, directory, 0, 0)
        self.assertIn("There are no relocations", " ".join(self.complaints(bytes(none))))
        block = self.file_offset(self.image.directories[5][0])
        self.assertIn("lies in no section", " ".join(self.complaints(self.patched(block, "<I", 0x1F00))))
        self.assertIn("is no address in the image",
                      " ".join(self.complaints(self.patched(block + 8, "<H", 0x3000))))
        second = struct.unpack_from("<H", self.image_data, block + 10)[0]
        self.assertIn("pefile says: Overlapping offsets", " ".join(self.complaints(self.patched(block + 8, "<H", second))))
        with self.assertRaisesRegex(ToolError, "relocation of type 5"):
            PeFile(self.patched(block + 8, "<H", 0x5000))
        self.assertIn("The relocation blocks take", " ".join(self.complaints(self.patched(block + 4, "<I", 6))))

    def test_resources_are_looked_for_by_type_and_name(self):
        present = ["RCDATA:7", "10:7", "ceux:apple", "CEUX:ZEBRA", "STRING:20"]
        self.assertEqual(list(check_executable.check_resources(self.image, present)), [])
        for text in ("RCDATA:8", "CEUX:PEAR", "BITMAP:7"):
            self.assertEqual(list(check_executable.check_resources(self.image, [text])),
                             [f"The resource {text} is missing."])
        for text in ("STRING:19", "STRING:21", "STRING:2000"):
            self.assertEqual(list(check_executable.check_resources(self.image, [text])),
                             [f"The text {text} is missing."])
        self.assert_error("not of the form TYPE:ID", check_executable.parse_expected_resource, "RCDATA")

    def test_large_and_unbounded_frames_are_told(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.assertRegex(" ".join(check_executable.check_stack_usage(folder.name)), "no .su files")
        os.mkdir(os.path.join(folder.name, "deep"))
        with open(os.path.join(folder.name, "deep", "a.cpp.su"), "w", encoding="utf-8") as file:
            file.write("a.cpp:1:1:int small(int, char)\t2047\tstatic\na.cpp:2:1:void large()\t2048\tstatic\n"
                       "a.cpp:3:1:void unbounded()\t16\tdynamic\na.cpp:4:1:void bounded()\t32\tdynamic,bounded\n")
        self.assertEqual(list(check_executable.check_stack_usage(folder.name)), [
            "The frame of a.cpp:2:1:void large() takes 2048 bytes; the limit is 2048.",
            "The frame of a.cpp:3:1:void unbounded() has no fixed size."])

    def test_the_budgets_count_the_file_and_its_code(self):
        program = PROGRAM.replace("int number", "extern const char table[307200] = {1};\nint number")
        program = program.replace("+ zeros[0]", "+ table[zeros[0]]")
        images = [ElfFile(self.workshop.link("large", program, base)) for base in (0x10000, 0x450000)]
        code = PeFile(elf_to_pe.convert(*images, self.workshop.entries, None))
        self.assertRegex(" ".join(check_executable.check_size(code)),
                         r"\ACode and tables take 3[01]\d,\d+ bytes; the budget is 307,200\.\Z")
        whole = PeFile(elf_to_pe.convert(self.elf, self.moved, self.workshop.entries, {10: {1: {0: bytes(410_000)}}}))
        self.assertRegex(" ".join(check_executable.check_size(whole)),
                         r"\AThe file takes 41\d,\d+ bytes; the budget is 409,600\.\Z")

    def test_a_file_cut_off_is_told(self):
        for size in (1, 0x60, 0x90, 0x120, len(self.image_data) - 0x200):
            with self.assertRaises(ToolError):
                PeFile(self.image_data[:size])

    def test_the_command_line_fails_with_every_complaint(self):
        executable = self.workshop.path("checked.exe")
        with open(executable, "wb") as file:
            file.write(self.image_data)
        expected = self.workshop.write("expected.txt", "# comment\n\nRCDATA:7\nRCDATA:99\n")
        command = [sys.executable, os.path.join(TOOLS, "check_executable.py"), executable, "--imports",
                   self.workshop.write("imports.txt", IMPORTS)]
        good = subprocess.run([*command, "--expect-resource", "RCDATA:7"], capture_output=True, text=True, check=False)
        self.assertEqual((good.returncode, good.stderr), (0, ""))
        self.assertIn(f"checked.exe: {len(self.image_data):,} of 409,600 bytes, code and tables", good.stdout)
        bad = subprocess.run([*command, "--expect-resources", expected, "--stack-usage", os.path.dirname(expected)],
                             capture_output=True, text=True, check=False)
        self.assertEqual(bad.returncode, 1)
        self.assertIn("The resource RCDATA:99 is missing.", bad.stderr)
        self.assertIn("no .su files", bad.stderr)


if __name__ == "__main__":
    unittest.main()
