#!/usr/bin/env python3
"""Compares the texts of a language pack's source with the program's own: every text must be there with the same
inserts, and nothing else. Says what is wrong and ends with 1, or says nothing. Needs no compiler."""
import argparse
import os
import re
import sys
from collections import Counter

from resource_numbers import read_numbers

RESOURCES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "res")
LABEL = re.compile(r'^#define ((?:LABEL|KEY)_\w+) "((?:[^"\\]|\\.|"")*)"', re.MULTILINE)
TEXT = re.compile(r'^\s*(IDS_\w+|\d+),? "((?:[^"\\]|\\.|"")*)"', re.MULTILINE)
INSERT = re.compile(r"%(?:([1-9])(!(?:[^!]*)!)?|.)", re.DOTALL)


def read_texts(*paths):
    """The texts of resource scripts: {name of a label or string: text}. A text twice is a ValueError."""
    names = {str(number): name for name, number in read_numbers().items() if name.startswith("IDS_")}
    found = {}
    for path in paths:
        with open(path, encoding="utf-8") as file:
            source = file.read()
        for pattern in (LABEL, TEXT):
            for name, text in pattern.findall(source):
                # A script that was made from a pack has numbers.
                name = names.get(name, name)
                if name in found:
                    raise ValueError(f"{path} has {name} twice.")
                found[name] = text
    return found


def inserts(text):
    """How often each insert stands in a text, with its type."""
    return Counter((number, kind) for number, kind in INSERT.findall(text) if number)


def differences(translated, original):
    """What keeps `translated` from standing in for `original`, a sentence each."""
    for name in original:
        if name not in translated:
            yield f"{name} is missing; the program says: {original[name]}"
        elif not translated[name].strip():
            yield f"{name} is empty."
        elif inserts(translated[name]) != inserts(original[name]):
            yield f"{name} needs the inserts of: {original[name]}"
    for name in translated:
        if name not in original:
            yield f"{name} is no text of the program."


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("script", nargs="+", help="a pack's source, such as res/languages/0407.rc")
    options = parser.parse_args(arguments)
    try:
        original = read_texts(*(os.path.join(RESOURCES, name) for name in ("strings.rc", "labels.rc")))
        wrong = [f"{script}: {sentence}" for script in options.script
                 for sentence in differences(read_texts(script), original)]
    except (OSError, ValueError) as error:
        wrong = [str(error)]
    for sentence in wrong:
        print(sentence, file=sys.stderr)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
