"""Reads the list of functions that the handheld's libraries export.

One line each: library, function as the compiler calls it, and where it differs the exported
name or "#" and the ordinal. A "#" that stands alone opens a remark."""
import re
from dataclasses import dataclass

from tool_error import ToolError

NAME = re.compile(r"[A-Za-z_][A-Za-z0-9_]*\Z")


@dataclass(frozen=True)
class ImportEntry:
    """One function: `exported` is its name in the library, or None where `ordinal` says which it is."""
    library: str
    function: str
    exported: str | None
    ordinal: int | None


def parse_import_list(text, path="imports"):
    """The entries in the order of the lines. Throws ToolError with path and line number."""
    entries = []
    seen = {}
    for number, line in enumerate(text.splitlines(), 1):
        words = re.split(r"(?:^|\s)#(?:\s|$)", line, maxsplit=1)[0].split()
        if not words:
            continue
        where = f"{path}, line {number}"
        if len(words) not in (2, 3):
            raise ToolError(f"{where}: expected a library, a function and at most one exported name.")
        library, function = words[:2]
        for word in (library, function):
            if not NAME.match(word):
                raise ToolError(f"{where}: \"{word}\" is not a name.")
        if function in seen:
            raise ToolError(f"{where}: {function} stands already in line {seen[function]}.")
        seen[function] = number
        exported, ordinal = function, None
        if len(words) == 3:
            exported = words[2]
            if exported.startswith("#"):
                if not exported[1:].isdigit() or not 0 < int(exported[1:]) < 0x10000:
                    raise ToolError(f"{where}: \"{exported}\" is not an ordinal from #1 to #65535.")
                exported, ordinal = None, int(exported[1:])
            elif not NAME.match(exported):
                raise ToolError(f"{where}: \"{exported}\" is not a name.")
        entries.append(ImportEntry(library.lower(), function, exported, ordinal))
    return entries


def read_import_list(path):
    """parse_import_list of a file."""
    with open(path, encoding="utf-8") as file:
        return parse_import_list(file.read(), path)
