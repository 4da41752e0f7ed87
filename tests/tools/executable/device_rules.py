"""What the loader and the processor of the oldest devices ask of an executable. Each rule tells sentences about what
breaks it. They are held against readings of tools of others."""
import re

from other_readers import NEW_DECODER, OLD_DECODER

CONDITIONS = ("", "eq", "ne", "cs", "cc", "mi", "pl", "vs", "vc", "hi", "ls", "ge", "lt", "gt", "le")
# ARM state of ARMv4 without what nobody needs here (coprocessors, the status register, system calls, swp). All else
# came later or is another processor's: blx, bkpt, clz, ldrd, strd, pld, smulbb, qadd (ARMv5), rev, uxtb, ldrex, umaal
# (ARMv6), movw, movt, bfi, mls, sdiv (ARMv6T2, ARMv7), the coprocessors' ldc, stc, cdp, mcr, mrc and all of VFP.
PLAIN = ("b bl cmp cmn tst teq push pop ldr ldrb ldrh ldrsb ldrsh str strb strh "
         "ldm ldmia ldmib ldmda ldmdb stm stmia stmib stmda stmdb").split()
WITH_FLAGS = ("mov mvn add sub rsb adc sbc rsc and orr eor bic lsl lsr asr ror rrx "
              "mul mla umull umlal smull smlal").split()
# A word that never will be an instruction stands where the compiler knows that nothing comes to; nop is mov r0, r0.
ARMV4 = {"udf": "udf", "nop": "nop"} | {
    name + flags + condition: name for names, forms in ((PLAIN, ("",)), (WITH_FLAGS, ("", "s")))
    for name in names for flags in forms for condition in CONDITIONS}
# What the unwinder of exceptions calls when a table restores registers of coprocessors. No table does.
COPROCESSOR_FUNCTION = re.compile(r"__gnu_Unwind_(Save|Restore)_(VFP|WMMX)\w*\Z")
BIT_INSTRUCTIONS = {"bic", "and", "tst", "teq", "orr", "eor", "lsl", "lsr", "asr", "ror", "mvn", "rsb"}
# What rounds to eight bytes and what it rounds: no place on the stack.
ROUNDERS = {"_ZN12_GLOBAL__N_14pool8allocateEj": "the size of a block of the exceptions' reserve"}

RIGHTS = {
    ".text": {"CODE", "EXECUTE", "READ"},
    ".rdata": {"INITIALIZED_DATA", "READ"},
    ".data": {"INITIALIZED_DATA", "READ", "WRITE"},
    ".idata": {"INITIALIZED_DATA", "READ", "WRITE"},
    ".rsrc": {"INITIALIZED_DATA", "READ"},
    ".reloc": {"INITIALIZED_DATA", "READ", "DISCARDABLE"},
}
ICONS = [(16, 16, 8), (16, 16, 32), (32, 32, 8), (32, 32, 32), (48, 48, 32), (64, 64, 32)]


def at(line):
    return f"{line.text} at {line.address:#x} in {line.function}"


def headers(subject):
    """Both readers find the headers that Windows CE reads, and the same."""
    values = subject.llvm.values
    for name, expected in {"Machine": "IMAGE_FILE_MACHINE_ARM (0x1C0)",
                           "Subsystem": "IMAGE_SUBSYSTEM_WINDOWS_CE_GUI (0x9)"}.items():
        if values.get(name) != expected:
            yield f"llvm-readobj finds {name} {values.get(name)}, not {expected}."
    marks = {"IMAGE_FILE_EXECUTABLE_IMAGE", "IMAGE_FILE_32BIT_MACHINE", "IMAGE_FILE_LINE_NUMS_STRIPPED",
             "IMAGE_FILE_LOCAL_SYMS_STRIPPED"}
    if subject.llvm.characteristics != marks:
        yield f"llvm-readobj finds the characteristics {', '.join(sorted(subject.llvm.characteristics))}."
    image = subject.image
    for name, value in {"AddressOfEntryPoint": image.entry, "ImageBase": image.image_base,
                        "SizeOfImage": image.image_size, "SizeOfHeaders": image.header_size,
                        "SizeOfStackReserve": image.stack_reserve}.items():
        if int(values[name], 0) != value:
            yield f"llvm-readobj finds {name} {values[name]}, pefile {value:#x}."


def sections(subject):
    """Each section is there, with the rights it needs and no others."""
    for name, address, size, rights in subject.llvm.sections:
        section = next((item for item in subject.image.sections if item.name == name), None)
        if section is None or (section.rva, section.size) != (address, size):
            yield f"llvm-readobj finds {name} at {address:#x}, pefile does not."
        if rights != RIGHTS.get(name):
            yield f"The section {name} has the rights {', '.join(sorted(rights))}."
    if [name for name, _, _, _ in subject.llvm.sections] != list(RIGHTS):
        yield f"The sections are not {', '.join(RIGHTS)}."


def imports(subject):
    """Everything is imported by its name, and both readers find the same."""
    found = [(item.library, item.name, item.ordinal or 0) for item in subject.image.imports]
    if found != subject.llvm.imports:
        yield "llvm-readobj and pefile do not find the same imports."
    for library, name, number in subject.llvm.imports:
        if name is None:
            yield f"{library} #{number} is imported by its number, which is another function on some devices."


def relocations(subject):
    """What moves with the image are whole words of data, and those that lead into code lead to ARM code."""
    if subject.llvm.relocations != subject.image.relocations:
        yield "llvm-readobj and pefile do not find the same relocations."
    code = subject.image.sections[0]
    lines = {line.address - subject.image.image_base: line for line in subject.lines(NEW_DECODER)}
    for rva in subject.llvm.relocations:
        if rva % 4:
            yield f"The relocated word at {rva:#x} does not stand on a multiple of four."
        elif rva in lines and not lines[rva].is_data:
            yield f"The instruction {at(lines[rva])} would be changed by a relocation."
        else:
            target = int.from_bytes(subject.image.bytes_at(rva, 4), "little") - subject.image.image_base
            if code.contains(target) and target % 4:
                yield f"The word at {rva:#x} leads to {target:#x}, which would be Thumb code."


def icons(subject):
    """The program's icon has every size and depth that some system asks for."""
    if subject.icons != ICONS:
        yield f"icotool finds the icons {subject.icons}, not {ICONS}."


def resources(subject):
    """wrestool finds the resources that pefile finds. Names that are no numbers it prints wrongly; sizes count then."""
    found = sorted((str(item.kind), item.name if isinstance(item.name, int) else "", len(item.content))
                   for item in subject.image.resources)
    theirs = sorted((kind.strip("'"), int(name) if name.isdigit() else "", size)
                    for kind, name, size in subject.resources)
    if found != theirs:
        yield f"wrestool and pefile differ about {sorted(set(found) ^ set(theirs))}."


def same_code(subject):
    """The unstripped file, which tells code from data, is the executable's."""
    for name in subject.different:
        yield f"The executable's {name} is not that of the unstripped file."


def thumb(subject):
    """All code is ARM code."""
    for name in subject.thumb:
        yield f"{name} is Thumb code."


def architecture(subject):
    """Every instruction is one of ARMv4, which a later processor reads in the same way."""
    for old, new in zip(subject.lines(OLD_DECODER), subject.lines(NEW_DECODER)):
        if new.is_data or COPROCESSOR_FUNCTION.match(new.function):
            continue
        if new.mnemonic.startswith("bx"):
            continue
        if old.text != new.text or new.mnemonic not in ARMV4:
            yield f"{at(new)} is no instruction of ARMv4."
        elif re.match(r"(mul|mla|[us]mull|[us]mlal)", new.mnemonic):
            registers = re.split(r", *", new.operands)
            long = new.mnemonic.startswith(("u", "s"))
            results, factor = (registers[:2], registers[2]) if long else (registers[:1], registers[1])
            if factor in results or len(set(results)) < len(results):
                yield f"{at(new)} multiplies into its own factor, which ARMv4 leaves open."


def branches(subject):
    """A branch to a register by bx, which the first of these processors lack, is taken for Thumb callers only."""
    lines = list(subject.lines(NEW_DECODER))
    for place, line in enumerate(lines):
        if line.mnemonic.startswith("bx"):
            register = line.operands
            before = [item.text for item in lines[max(0, place - 2):place]]
            if line.mnemonic != "bx" or before != [f"tst {register}, #1", f"moveq pc, {register}"]:
                yield f"{at(line)} is not behind a test for Thumb."


def coprocessors(subject):
    """No table for exceptions restores registers of a coprocessor, so that nobody calls the functions that would."""
    for register in sorted(subject.unwound):
        if not re.match(r"r\d+\Z", register):
            yield f"A table for exceptions restores {register}, the register of a coprocessor."


def stack(subject):
    """No function expects more of the stack than a multiple of four, as the system leaves it where it calls one.

    The stack pointer changes only by fixed multiples of four, by pushing and popping, and where the unwinder restores
    all registers; nothing looks at its low bits or clears any. What rounds an address up to eight bytes, as for an
    argument of 64 bits among unnamed ones, is not there; instructions that ask for eight bytes are none of ARMv4."""
    for line in subject.lines(NEW_DECODER):
        if line.is_data or COPROCESSOR_FUNCTION.match(line.function):
            continue
        operands = re.split(r", *", line.operands)
        name = ARMV4.get(line.mnemonic)
        if name in BIT_INSTRUCTIONS and "sp" in operands:
            yield f"{at(line)} looks at the bits of the stack pointer."
        elif name in ("add", "sub", "mov") and operands[0] == "sp":
            step = operands[2] if len(operands) == 3 else operands[-1]
            if operands[1:2] != ["sp"] or not re.match(r"#\d+\Z", step) or int(step[1:]) % 4:
                yield f"{at(line)} moves the stack pointer by something else than a multiple of four."
        elif name in ("ldr", "mul", "adc", "sbc") and operands[0] == "sp":
            yield f"{at(line)} sets the stack pointer."
        elif name == "bic" and operands[-1] == "#7" and not line.function.startswith(tuple(ROUNDERS)):
            yield f"{at(line)} rounds to eight bytes."


def data_in_code(subject):
    """Where the unstripped file says that data begins among the code, no instruction runs on or branches into it."""
    lines = list(subject.lines(NEW_DECODER))
    code = {line.address for line in lines if not line.is_data}
    section = subject.image.sections[0]
    if lines[0].address - subject.image.image_base != section.rva or 4 * len(lines) != section.size:
        yield "The lines of the code are not the whole section."
    for line, following in zip(lines, lines[1:]):
        # Behind a call of a function that never returns, and behind a word that stops, data may begin as well.
        if following.is_data and not line.is_data and line.mnemonic not in ("b", "bl", "udf") and not (
                line.mnemonic in ("ldr", "mov", "pop", "ldm") and "pc" in re.split(r"[{}, ]+", line.operands)[:-1]):
            yield f"{at(line)} runs on into data."
        if not line.is_data and line.target is not None and line.target not in code:
            yield f"{at(line)} branches to what is no code."


RULES = (headers, sections, imports, relocations, icons, resources, same_code, thumb, architecture, branches,
         coprocessors, stack, data_in_code)
