"""The list that says from which public document each imported function is known, and what is wrong with it."""


class DocumentList:
    """`pages` are {key: title}, `lines` {(library, name, whether it is looked up): (key, remark)}, `wrong` numbers of
    lines."""

    def __init__(self, text):
        self.pages, self.lines, self.wrong = {}, {}, []
        for number, line in enumerate(text.splitlines(), 1):
            if line and not line.startswith("#") and not self._read(line):
                self.wrong.append(number)

    def _read(self, line):
        """Whether the line has a form, and is the first with its key or name."""
        before, _, remark = line.partition(" # ")
        kind, *words = before.split()
        if kind == "page":
            if len(words) < 3 or not words[1].startswith("https://") or words[0] in self.pages:
                return False
            self.pages[words[0]] = " ".join(words[2:])
            return True
        words = words if kind == "late" else [kind, *words]
        if len(words) != 3 or (words[0], words[1], kind == "late") in self.lines:
            return False
        self.lines[words[0], words[1], kind == "late"] = (words[2], remark)
        return True


def complaints(documents, imports, late):
    """Sentences about functions without documents, and documents without functions, which are (library, name)s."""
    for number in documents.wrong:
        yield f"Line {number} is neither a page nor a function, or stands there twice."
    needed = {(*function, False) for function in imports} | {(*function, True) for function in late}
    for library, name, _ in sorted(needed - set(documents.lines)):
        yield f"{library} {name} has no document."
    for library, name, _ in sorted(set(documents.lines) - needed):
        yield f"{library} {name} has a document but is not used."
    for (library, name, _), (key, remark) in documents.lines.items():
        if key.removesuffix("?") not in documents.pages:
            yield f"{library} {name} names the page {key}, which is not listed."
        elif key.startswith("exports") and "no public page found" not in remark:
            yield f"{library} {name} has no page and does not say so."
    for key in sorted(set(documents.pages) - {key.removesuffix("?") for key, _ in documents.lines.values()}):
        yield f"The page {key} is that of no function."
