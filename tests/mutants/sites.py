"""Finds the places of the sources where a small change makes another program, and writes the changes in.

A change is written beside the original, which it replaces while it is the active one:

    if (width < limit)   becomes   if ((mutants::On(17) ? (width <= limit) : (width < limit)))

so that one build holds all of them. Needs libclang's Python module."""
import os
import re
from collections import namedtuple

from clang.cindex import CursorKind, Index, TokenKind, TranslationUnitLoadError

# Where the text from start to end of a file is replaced by text.
Edit = namedtuple("Edit", "path start end text")
# A change: what it is in words, where it stands, and what is to be written.
Site = namedtuple("Site", "path line kind words edits")

EXCHANGED = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&",
             "+": "-", "-": "+", "*": "/", "/": "*", "&": "|", "|": "&"}
EXCHANGED_ASSIGNMENT = {"+=": "-=", "-=": "+=", "|=": "&=", "&=": "|="}
KIND_OF = {"<": "boundary", "<=": "boundary", ">": "boundary", ">=": "boundary", "==": "comparison",
           "!=": "comparison", "&&": "condition", "||": "condition"}
FUNCTIONS = {CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR, CursorKind.DESTRUCTOR,
             CursorKind.CONVERSION_FUNCTION, CursorKind.FUNCTION_TEMPLATE}
CONTAINERS = {CursorKind.NAMESPACE, CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL, CursorKind.CLASS_TEMPLATE,
              CursorKind.CLASS_TEMPLATE_PARTIAL_SPECIALIZATION, CursorKind.LINKAGE_SPEC,
              CursorKind.UNEXPOSED_DECL}
# What stands in these is never run, or has to be known to the compiler.
SKIPPED = {CursorKind.CXX_UNARY_EXPR, CursorKind.STATIC_ASSERT, CursorKind.TYPE_REF, CursorKind.TEMPLATE_REF,
           CursorKind.ENUM_DECL}
NUMBER = re.compile(r"^(0[xX][0-9a-fA-F]+|\d+)([uUlL]*)$")


class Source:
    def __init__(self, path):
        with open(path, "rb") as file:
            self.bytes = file.read()

    def text(self, start, end):
        return self.bytes[start:end].decode("utf-8")


class Finder:
    def __init__(self, root):
        self.root = os.path.realpath(root)
        self.sources = {}
        self.sites = {}
        self.constants = {}

    def source(self, path):
        if path not in self.sources:
            self.sources[path] = Source(os.path.join(self.root, path))
        return self.sources[path]

    def path_of(self, cursor):
        file = cursor.location.file
        if file is None:
            return None
        path = os.path.relpath(os.path.realpath(file.name), self.root)
        return None if path.startswith("..") or path.startswith("build") else path

    def read(self, path, arguments):
        unit = Index.create().parse(os.path.join(self.root, path), args=arguments)
        fatal = [d for d in unit.diagnostics if d.severity >= 3]
        if fatal:
            raise TranslationUnitLoadError(f"{path}: {fatal[0].spelling} at {fatal[0].location}")
        for child in unit.cursor.get_children():
            self.declaration(child)

    # Walks declarations down to the functions that belong to the project.
    def declaration(self, cursor):
        path = self.path_of(cursor)
        if path is None:
            return
        if cursor.kind in CONTAINERS:
            for child in cursor.get_children():
                self.declaration(child)
        elif cursor.kind in FUNCTIONS:
            self.function(cursor, path)
        elif cursor.kind == CursorKind.FIELD_DECL:
            for child in cursor.get_children():
                if child.kind.is_expression():
                    self.walk(child, path, cursor)
        elif cursor.kind == CursorKind.VAR_DECL:
            self.constant(cursor, path)

    # A named number: where a function uses it, another number can stand.
    def constant(self, cursor, path):
        children = [c for c in cursor.get_children() if c.kind.is_expression()]
        if not children:
            return
        text = self.source(path).text(cursor.extent.start.offset, cursor.extent.end.offset)
        literal = self.source(path).text(children[-1].extent.start.offset, children[-1].extent.end.offset)
        if "constexpr" in text and NUMBER.match(literal):
            self.constants.setdefault(cursor.get_usr(), (path, cursor.location.line, cursor.spelling, literal, set()))

    def function(self, cursor, path):
        body = [c for c in cursor.get_children() if c.kind == CursorKind.COMPOUND_STMT]
        if not body:
            return
        head = self.source(path).text(cursor.extent.start.offset, body[0].extent.start.offset)
        if re.search(r"\b(constexpr|consteval)\b", head):
            return
        for child in cursor.get_children():
            if child.kind == CursorKind.PARM_DECL:
                for value in child.get_children():
                    if value.kind.is_expression():
                        self.walk(value, path, child)
            elif child.kind.is_expression() or child.kind == CursorKind.COMPOUND_STMT:
                self.walk(child, path, cursor)

    def add(self, path, cursor, kind, words, *edits):
        if any(c in e.text for e in edits for c in ("//", "#", "__LINE__")):
            return
        flat = [Edit(e.path, e.start, e.end, " ".join(e.text.split("\n"))) for e in edits]
        key = (path, edits[0].start, edits[0].end, words)
        self.sites.setdefault(key, Site(path, cursor.extent.start.line, kind, words, tuple(flat)))

    def walk(self, cursor, path, parent):
        if cursor.kind in SKIPPED or cursor.location.file is None or self.path_of(cursor) != path:
            return
        source = self.source(path)
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        text = source.text(start, end)
        children = list(cursor.get_children())
        kind = cursor.kind

        if kind == CursorKind.CASE_STMT:
            for child in children[1:]:
                self.statement(child, path, cursor)
            return
        if kind == CursorKind.VAR_DECL and "constexpr" in text:
            return
        if kind in (CursorKind.BINARY_OPERATOR, CursorKind.COMPOUND_ASSIGNMENT_OPERATOR) and len(children) == 2:
            self.binary(cursor, path, children[0], children[1])
        elif kind == CursorKind.CALL_EXPR and cursor.spelling.startswith("operator") and len(children) == 3:
            self.binary(cursor, path, children[0], children[2])
        elif kind == CursorKind.UNARY_OPERATOR and text.startswith("!") and children:
            self.add(path, cursor, "condition", f"{text}: without !",
                     Edit(path, start, end, f"(mutants::On(@) ? !{text} : {text})"))
        elif kind == CursorKind.CXX_BOOL_LITERAL_EXPR and text in ("true", "false"):
            other = "false" if text == "true" else "true"
            self.add(path, cursor, "default", f"{text}: {other}",
                     Edit(path, start, end, f"(mutants::On(@) ? {other} : {text})"))
        elif kind == CursorKind.INTEGER_LITERAL and NUMBER.match(text):
            # Half of them become larger by one, half smaller, always the same ones.
            larger = text[0] == "0" or (start + cursor.extent.start.line) % 2 == 0
            sign = "+" if larger else "-"
            self.add(path, cursor, "constant", f"{text}: {text} {sign} 1",
                     Edit(path, start, end, f"(mutants::On(@) ? {text} {sign} 1 : {text})"))
        elif kind == CursorKind.IF_STMT and children and children[0].kind.is_expression() and \
                not re.match(r"if\s+constexpr", text):
            self.negate(children[0], path)
        elif kind in (CursorKind.WHILE_STMT, CursorKind.CONDITIONAL_OPERATOR) and children and \
                children[0].kind.is_expression():
            self.negate(children[0], path)
        elif kind == CursorKind.DECL_REF_EXPR and cursor.referenced is not None:
            entry = self.constants.get(cursor.referenced.get_usr())
            if entry and re.fullmatch(r"[\w:]+", text):
                entry[4].add(Edit(path, start, end, text))

        for child in children:
            if kind == CursorKind.COMPOUND_STMT:
                self.statement(child, path, cursor)
            else:
                self.walk(child, path, cursor)

    # A statement of a block: without it, and what stands in it.
    def statement(self, cursor, path, parent):
        inner = cursor
        while inner.kind == CursorKind.UNEXPOSED_EXPR and len(list(inner.get_children())) == 1:
            inner = next(inner.get_children())
        source = self.source(path)
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        text = source.text(start, end)
        assignment = inner.kind == CursorKind.BINARY_OPERATOR or \
            inner.kind == CursorKind.COMPOUND_ASSIGNMENT_OPERATOR
        if (inner.kind == CursorKind.CALL_EXPR or assignment) and source.bytes[end:end + 1] == b";" and \
                "(void)" not in text:
            words = text if len(text) < 60 else text[:57] + "..."
            self.add(path, cursor, "assignment" if assignment else "call",
                     " ".join(words.split()) + ": removed",
                     Edit(path, start, end + 1, f"if (!mutants::On(@)) {{ {text}; }}"))
        self.walk(cursor, path, parent)

    def negate(self, condition, path):
        start, end = condition.extent.start.offset, condition.extent.end.offset
        text = self.source(path).text(start, end)
        self.add(path, condition, "branch", f"{' '.join(text.split())}: negated",
                 Edit(path, start, end, f"(mutants::On(@) != static_cast<bool>({text}))"))

    def binary(self, cursor, path, left, right):
        source = self.source(path)
        start, end = cursor.extent.start.offset, cursor.extent.end.offset
        between = source.text(left.extent.end.offset, right.extent.start.offset)
        # Parentheses around an operand belong to it.
        operator = between.strip().strip("()").strip()
        other = EXCHANGED.get(operator) or EXCHANGED_ASSIGNMENT.get(operator)
        if other is None:
            return
        at = left.extent.end.offset + between.index(operator)
        text = source.text(start, end)
        changed = source.text(start, at) + other + source.text(at + len(operator), end)
        self.add(path, cursor, KIND_OF.get(operator, "arithmetic"),
                 f"{' '.join(text.split())[:70]}: {operator} becomes {other}",
                 Edit(path, start, end, f"(mutants::On(@) ? ({changed}) : ({text}))"))

    # Every site, in an order of its own.
    def all(self):
        sites = dict(self.sites)
        for path, line, name, literal, uses in self.constants.values():
            if uses:
                edits = [Edit(u.path, u.start, u.end, f"(mutants::On(@) ? {u.text} + 1 : {u.text})")
                         for u in sorted(uses)]
                sites[(path, -1, line, name)] = Site(path, line, "constant", f"{name} = {literal}: larger by one",
                                                     tuple(edits))
        return [sites[key] for key in sorted(sites, key=str)]


# The sites that can be written in together, in the order given.
def without_overlap(sites):
    taken = {}
    chosen = []
    for site in sites:
        if all(e.end <= s or e.start >= t for e in site.edits for s, t in taken.get(e.path, ())):
            chosen.append(site)
            for edit in site.edits:
                taken.setdefault(edit.path, []).append((edit.start, edit.end))
    return chosen


# The text of each changed file, with numbers[i] for sites[i].
def weave(root, sites, numbers):
    by_path = {}
    for site, number in zip(sites, numbers):
        for edit in site.edits:
            by_path.setdefault(edit.path, []).append(edit._replace(text=edit.text.replace("@", str(number))))
    woven = {}
    for path, edits in by_path.items():
        with open(os.path.join(root, path), "rb") as file:
            data = file.read()
        for edit in sorted(edits, key=lambda e: e.start, reverse=True):
            # As many lines as before, so that the compiler's words name the right ones.
            lines = data[edit.start:edit.end].count(b"\n")
            data = data[:edit.start] + edit.text.encode() + b"\n" * lines + data[edit.end:]
        woven[path] = b"namespace mutants { bool On(unsigned) noexcept; }\n#line 1\n" + data
    return woven
