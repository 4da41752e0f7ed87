"""What tools of others find in the handheld executable: llvm-readobj, wrestool and icotool, and the ARM binutils."""
import os
import re
import subprocess
from dataclasses import dataclass

# The decoder of the devices' processor, and one that knows what came later.
OLD_DECODER, NEW_DECODER = "armv4t", "armv8-a"
# What the executable has unchanged from the unstripped file.
UNCHANGED = (".text", ".rodata", ".ARM.extab", ".ARM.exidx")


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


class LlvmReader:
    """The same file as llvm-readobj reads it."""

    def __init__(self, path):
        self.path = path
        headers = output("llvm-readobj", "--file-headers", path)
        self.values = dict(re.findall(r"^ +(\w+): (.*)$", headers, re.MULTILINE))
        self.characteristics = set(re.findall(r"\b(IMAGE_FILE_(?!MACHINE)\w+) \(", headers))
        self.sections = list(self._read_sections())
        self.imports = list(self._read_imports())
        self.relocations = [int(address, 16) for address in re.findall(
            r"Type: HIGHLOW\n +Address: (0x[0-9A-F]+)", output("llvm-readobj", "--coff-basereloc", path))]

    def _read_sections(self):
        """(name, address, size, rights) of each."""
        for block in output("llvm-readobj", "--sections", self.path).split("Section {")[1:]:
            values = dict(re.findall(r"^ +(\w+): (\S+)", block, re.MULTILINE))
            rights = frozenset(re.findall(r"IMAGE_SCN_(?:MEM|CNT)_(\w+)", block))
            yield values["Name"], int(values["VirtualAddress"], 16), int(values["VirtualSize"], 16), rights

    def _read_imports(self):
        """(library, name or None, number) of each; the number is that of a function imported by it."""
        for block in output("llvm-readobj", "--coff-imports", self.path).split("Import {")[1:]:
            library = re.search(r"Name: (\S+)", block)[1]
            for name, number in re.findall(r"Symbol: (\S*) ?\((\d+)\)", block):
                yield library, name or None, int(number)


def resources_of(path):
    """(type, name, size) of each resource, as wrestool lists them."""
    listed = re.findall(r"^--type=(\S+) --name=(\S+) .*size=(\d+)\]$", output("wrestool", "--list", path), re.MULTILINE)
    return sorted((kind, name, int(size)) for kind, name, size in listed)


def icons_of(path, group, folder):
    """(width, height, bits) of a group's pictures, as wrestool takes them out and icotool reads them."""
    taken = os.path.join(folder, "taken.ico")
    with open(taken, "wb") as file:
        subprocess.run(["wrestool", "--extract", "--type=14", f"--name={group}", path], check=True, stdout=file)
    listed = re.findall(r"--icon .*--width=(\d+) --height=(\d+) --bit-depth=(\d+)", output("icotool", "--list", taken))
    return sorted(tuple(int(number) for number in numbers) for numbers in listed)


@dataclass(frozen=True)
class Line:
    """One word of the code: an instruction, or data where `mnemonic` begins with a dot."""
    address: int
    word: int
    mnemonic: str
    operands: str
    function: str

    @property
    def is_data(self):
        return self.mnemonic.startswith(".")

    @property
    def text(self):
        return f"{self.mnemonic} {self.operands}".strip()

    @property
    def target(self):
        """Where a branch leads, or None."""
        found = re.match(r"bl?(?:eq|ne|cs|cc|mi|pl|vs|vc|hi|ls|ge|lt|gt|le)?\Z", self.mnemonic)
        return int(self.operands.split()[0], 16) if found else None


def disassembled(elf, decoder):
    """The lines of the code. What is data the unstripped file says, which marks each beginning of code and of data."""
    function = ""
    for text in output("arm-none-eabi-objdump", "--disassemble", "--section=.text", "--disassemble-zeroes",
                       f"--architecture={decoder}", elf).splitlines():
        if header := re.match(r"[0-9a-f]+ <(.*)>:$", text):
            function = header[1]
        elif line := re.match(r" +([0-9a-f]+):\t([0-9a-f]+) *\t(.*)$", text):
            words = re.split(r"\t?[@;]", line[3])[0].split("\t") if "UNDEFINED" not in line[3] else ["undefined"]
            yield Line(int(line[1], 16), int(line[2], 16), words[0].strip(),
                       words[1].strip() if len(words) > 1 else "", function)


def with_bytes_of(image, elf, made):
    """Makes a copy of the unstripped file that holds the executable's own bytes. Tells which sections differ."""
    data = bytearray(elf.data)
    different = []
    for section in elf.loaded_sections():
        if section.name in UNCHANGED:
            held = image.bytes_at(section.address - image.image_base, section.size)
            if held != elf.content(section):
                different.append(section.name)
            data[section.offset:section.offset + section.size] = held
    with open(made, "wb") as file:
        file.write(data)
    return different


def unwound_registers(elf):
    """The registers that the tables for exceptions restore, as readelf decodes them: {"r4", "D8", "wR10"...}."""
    return {register for group in re.findall(r"pop \{([^}]*)\}", output("arm-none-eabi-readelf", "--unwind", elf))
            for register in re.split(r"[,\s-]+", group)}


def thumb_symbols(elf):
    """The names of what is marked as Thumb code: beginnings of it, and functions at odd addresses."""
    for text in output("arm-none-eabi-readelf", "--symbols", "--wide", elf).splitlines():
        words = text.split()
        if len(words) == 8 and (words[7].startswith("$t") or words[3] == "FUNC" and int(words[1], 16) % 2):
            yield words[7]
