#!/usr/bin/env python3
"""The pages agree with the sources: what they point at is there, and what is kept on purpose has its reason.

usage: test_documents.py"""
import os
import re
import unittest

ROOT = os.path.realpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", ".."))
REASONS = os.path.join("docs", "compatibility.md")
# Where the program's own code is.
ROOMS = ("app", "faults", "platform", "text", "ui", "views")
POINTER = re.compile(r"// Kept on purpose: docs/compatibility\.md#([\w-]+)$", re.MULTILINE)


def sources(*endings):
    """The paths of the repository's files whose names end so."""
    for folder, folders, files in os.walk(ROOT):
        folders[:] = sorted(name for name in folders if name != "build" and not name.startswith("."))
        yield from (os.path.relpath(os.path.join(folder, name), ROOT) for name in sorted(files) if name.endswith(endings))


def content(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read()


def texts_of_entries():
    """What each entry says."""
    found = re.findall(r"^### ([\w-]+)\n(.*?)(?=^##|\Z)", content(REASONS), re.MULTILINE | re.DOTALL)
    assert len(dict(found)) == len(found)
    return dict(found)


def entries():
    """The files that each entry names."""
    return {name: {os.path.normpath(os.path.join("docs", path)) for path in re.findall(r"\]\(([^)]+)\)", text)}
            for name, text in texts_of_entries().items()}


def pointers():
    """The files that point at each entry."""
    found = {}
    for path in sources(".cpp", ".h", ".rc"):
        for name in POINTER.findall(content(path)):
            found.setdefault(name, set()).add(path)
    return found


class DocumentsTest(unittest.TestCase):
    def test_what_is_kept_on_purpose_has_its_reason_and_its_places(self):
        self.maxDiff = None
        self.assertGreater(len(entries()), 10)
        self.assertEqual(entries(), pointers())

    def test_the_texts_and_menus_that_nothing_shows_are_those_of_the_pages(self):
        numbers = dict(re.findall(r"^#define (ID[SR]_\w+) (\d+)$", content(os.path.join("res", "resource.h")),
                                  re.MULTILINE))
        code = "\n".join(content(path) for path in sources(".cpp", ".h") if path.split(os.sep)[0] in ROOMS)
        unused = {int(number) for name, number in numbers.items() if not re.search(rf"\b{name}\b", code)}
        # The units of sizes are counted on from the first.
        unused -= set(range(int(numbers["IDS_KILOBYTES"]), int(numbers["IDS_TERABYTES"])))
        for entry, prefix in (("spare-texts", "IDS_"), ("spare-menus", "IDR_")):
            of_kind = {int(number) for name, number in numbers.items() if name.startswith(prefix)}
            named = {int(number) for number in re.findall(r"\b[1-9]\d\d\b", texts_of_entries()[entry])}
            self.assertEqual(named & of_kind - {int(numbers["IDS_CANNOT_CREATE_MAIN_WINDOW"])}, unused & of_kind, entry)
        menus = {int(number) for name, number in numbers.items() if name.startswith("IDR_")}
        self.assertEqual(set(range(500, 512)) - menus, {507, 508, 509, 510})

    def test_the_links_of_the_pages_lead_somewhere(self):
        pages = list(sources(".md"))
        self.assertIn("README.md", pages)
        for page in pages:
            links = re.findall(r"\]\(([^)#\s]+)[^)]*\)|<img src=\"([^\"]+)\"", content(page))
            for link in (markdown or image for markdown, image in links):
                if not link.startswith("http"):
                    place = os.path.join(ROOT, os.path.dirname(page), link)
                    self.assertTrue(os.path.exists(place), f"{page}: {link}")


if __name__ == "__main__":
    unittest.main()
