"""Reads the list of functions that the handheld's libraries export.

One line each: library, function as the compiler calls it, and where it differs the exported
name or "#" and the ordinal. A "#" that stands alone opens a remark. Functions that the program
looks up when it needs them begin with "late" and are no imports: library, name, "#" and the
ordinal, and "6+" where they are there since that version, all but the library where known."""
import re
from dataclasses import dataclass

from tool_error import ToolError

LATE = "late"
NAME = re.compile(r"[A-Za-z_][A-Za-z0-9_]*\Z")


@dataclass(frozen=True)
class ImportEntry:
    """One function: `exported` is its name in the library, or None where `ordinal` says which it is."""
    library: str
    function: str
    exported: str | None
    ordinal: int | None


@dataclass(frozen=True)
class LateEntry:
    """A function that is looked up: by its name, else by its ordinal; one of both may be None."""
    library: str
    name: str | None
    ordinal: int | None


def lines_of(text, path):
    """(where, number, words) of each line that says something."""
    for number, line in enumerate(text.splitlines(), 1):
        words = re.split(r"(?:^|\s)#(?:\s|$)", line, maxsplit=1)[0].split()
        if words:
            yield f"{path}, line {number}", number, words


def parse_ordinal(word, where):
    """The number behind the "#"."""
    if not word[1:].isdigit() or not 0 < int(word[1:]) < 0x10000:
        raise ToolError(f"{where}: \"{word}\" is not an ordinal from #1 to #65535.")
    return int(word[1:])


def parse_late_list(text, path="imports"):
    """The functions that are looked up, in the order of the lines. Throws ToolError with path and line number."""
    entries = []
    for where, _, words in lines_of(text, path):
        if words[0] != LATE:
            continue
        name = ordinal = None
        for word in words[2:]:
            if word.startswith("#") and ordinal is None:
                ordinal = parse_ordinal(word, where)
            elif NAME.match(word) and name is None:
                name = word
            elif not re.match(r"\d+\+\Z", word):
                raise ToolError(f"{where}: \"{word}\" is neither the name, nor the ordinal, nor a version.")
        if len(words) < 2 or not NAME.match(words[1]) or (name is None and ordinal is None):
            raise ToolError(f"{where}: expected a library, and a function's name or ordinal.")
        entries.append(LateEntry(words[1].lower(), name, ordinal))
    return entries


def parse_import_list(text, path="imports"):
    """The entries in the order of the lines. Throws ToolError with path and line number."""
    entries = []
    seen = {}
    for where, number, words in lines_of(text, path):
        if words[0] == LATE:
            continue
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
                exported, ordinal = None, parse_ordinal(exported, where)
            elif not NAME.match(exported):
                raise ToolError(f"{where}: \"{exported}\" is not a name.")
        entries.append(ImportEntry(library.lower(), function, exported, ordinal))
    return entries


def read_late_list(path):
    """parse_late_list of a file."""
    with open(path, encoding="utf-8") as file:
        return parse_late_list(file.read(), path)


def read_import_list(path):
    """parse_import_list of a file."""
    with open(path, encoding="utf-8") as file:
        return parse_import_list(file.read(), path)
