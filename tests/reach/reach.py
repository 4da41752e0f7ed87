#!/usr/bin/python3
"""Tells what the end-to-end tests of both executables have reached: every command of every menu, every dialog,
every message, every system call. Prints what was covered and what was not, and ends with 1 if a command, a dialog
or a message was not reached on either executable. A run of only some of the suites is told of, not judged. The
report stands in report.txt as well."""
import argparse
import contextlib
import io
import os
import re
import sys
from collections import namedtuple

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
RESOURCES = os.path.join(ROOT, "res")
sys.path.insert(0, os.path.join(ROOT, "tools", "handheld"))
sys.path.insert(0, os.path.join(ROOT, "tools", "languages"))
from import_list import read_late_list  # noqa: E402
from pe_reader import PeFile  # noqa: E402
from resource_numbers import read_numbers  # noqa: E402

NUMBERS = read_numbers()
SLIDE_BAR = NUMBERS["IDR_SLIDE_BAR"]
MENUS = {
    description: NUMBERS[name] for description, name in {
        "Files": "IDR_FILES", "Applications": "IDR_APPLICATIONS", "Processes": "IDR_PROCESSES", "Dlls": "IDR_DLLS",
        "System Status": "IDR_SYSTEM_STATUS", "Files, rows marked": "IDR_FILES_MARKING", "slide bar": "IDR_SLIDE_BAR",
        "Open File": "IDR_OPEN_FILE", "page with Done and Cancel": "IDR_DONE_CANCEL",
        "page with Done": "IDR_DONE"}.items()}
# What shows that a dialog was open: its caption among the texts read, its menu, or its command.
DIALOGS = {
    description: (kind, NUMBERS[name]) for description, (kind, name) in {
        "Properties": ("text", "IDS_PROPERTIES"), "Process Information": ("text", "IDS_PROCESS_INFORMATION"),
        "Window Information": ("text", "IDS_WINDOW_INFORMATION"), "Settings": ("text", "IDS_SETTINGS"),
        "Language changed": ("text", "IDS_LANGUAGE_CHANGED"), "Open File": ("menu", "IDR_OPEN_FILE"),
        "About": ("command", "ID_ABOUT")}.items()}
CAPTIONS = {NUMBERS[name] for name in ("IDS_WARNING", "IDS_ERROR", "IDS_SETTINGS")}
# No place of the program shows IDS_CANNOT_CREATE_WINDOW.
MESSAGES = (NUMBERS["IDS_UNEXPECTED_ERROR"], NUMBERS["IDS_CANNOT_CREATE_MAIN_WINDOW"],
            *range(NUMBERS["IDS_ACTION_FAILED"], NUMBERS["IDS_ASK_CLOSE_APPLICATIONS"] + 1),
            NUMBERS["IDS_ASK_RESTART"])
# Messages whose words are no text of the resources.
OTHER_MESSAGES = {"Please, specify not empty filename": ("drawn", "Please, specify not empty filename"),
                  "can't copy ... skip this item?": ("drawn", "can't copy ")}
FIRST_LANGUAGE, LAST_LANGUAGE = NUMBERS["ID_FIRST_LANGUAGE"], NUMBERS["ID_LAST_LANGUAGE"]
# The commands that the platform's dialogs share.
COMMANDS = {**NUMBERS, "IDOK": 1, "IDCANCEL": 2}

Reached = namedtuple("Reached", "menus commands texts drawn calls")


def read_menus():
    """{menu: {command: label}} of the program's menus; the languages are one command."""
    with open(os.path.join(RESOURCES, "labels.rc"), encoding="utf-8") as file:
        labels = dict(re.findall(r'^#define (\w+) "(.*)"$', file.read(), re.MULTILINE))
    with open(os.path.join(RESOURCES, "menus.rc"), encoding="utf-8") as file:
        source = file.read()
    menus = {}
    for identifier, body in re.findall(r"^(IDR_\w+) MENU\n(.*?)^END$", source, re.MULTILINE | re.DOTALL):
        items = re.findall(r"MENUITEM (\w+), (\w+)", body)
        menus[NUMBERS[identifier]] = {COMMANDS[command]: labels[label] for label, command in items}
    return menus


def read_texts():
    """{identifier: text} of the program's string table."""
    with open(os.path.join(RESOURCES, "strings.rc"), encoding="utf-8") as file:
        return {NUMBERS[name]: text for name, text in re.findall(r'^ +(IDS_\w+) "(.*)"$', file.read(), re.MULTILINE)}


class Recorder:
    """Takes what happened in the order in which it happened."""

    def __init__(self, menus):
        self.resources = menus
        self.loaded = []
        self.reached = Reached(set(), set(), set(), set(), set())

    def menu(self, identifier):
        if identifier in self.loaded:
            self.loaded.remove(identifier)
        self.loaded.append(identifier)
        self.reached.menus.add(identifier)

    def command(self, identifier, from_slide_bar):
        if from_slide_bar:
            self.reached.commands.add((SLIDE_BAR, identifier))
            return
        if FIRST_LANGUAGE <= identifier <= LAST_LANGUAGE:
            identifier = FIRST_LANGUAGE
        # The menu that was loaded last is the one on the screen, unless it lacks the command.
        for menu in reversed(self.loaded):
            if menu != SLIDE_BAR and identifier in self.resources.get(menu, ()):
                self.reached.commands.add((menu, identifier))
                return


def read_handheld(path, recorder):
    """What the emulator has noted."""
    # Drawn texts may have line ends of other kinds within.
    with open(path, encoding="utf-8", errors="replace", newline="\n") as file:
        for line in file:
            kind, _, what = line.rstrip("\n").partition(" ")
            if kind == "menu":
                recorder.menu(int(what))
            elif kind == "command":
                identifier, _, sender = what.partition(" ")
                recorder.command(int(identifier), sender == "kx::SlideBar")
            elif kind == "text":
                recorder.reached.texts.add(int(what))
            elif kind == "drawn":
                recorder.reached.drawn.add(what)
            elif kind == "call":
                recorder.reached.calls.add(what)


def read_desktop(path, first, end, recorder):
    """What Wine has noted of the calls that come from the program's addresses."""
    call = re.compile(r"[0-9a-f]{4}:Call ([\w.]+)\.(\w+)\((.*)\) ret=([0-9a-f]+)$")
    created = re.compile(r"[0-9a-f]{4}:Ret +user32\.CreateWindowExW\(\) retval=([0-9a-f]+) ")
    opens_slide_bar = False
    slide_bars = set()
    with open(path, encoding="utf-8", errors="replace") as file:
        for line in file:
            if opens_slide_bar and (window := created.match(line)):
                slide_bars.add(int(window[1], 16))
                opens_slide_bar = False
            found = call.match(line)
            if not found or not first <= int(found[4], 16) < end:
                continue
            name, arguments = found[2], found[3].split(",")
            recorder.reached.calls.add(name)
            if name == "LoadMenuW":
                recorder.menu(int(arguments[1], 16))
            elif name == "LoadStringW":
                recorder.reached.texts.add(int(arguments[1], 16))
            elif name in ("DrawTextW", "MessageBoxW"):
                recorder.reached.drawn.update(re.findall(r'L"(.*)"', found[3]))
            elif name == "SendMessageW" and int(arguments[1], 16) == 0x111:
                recorder.command(int(arguments[2], 16) & 0xFFFF, int(arguments[3], 16) in slide_bars)
            elif name == "CreateWindowExW":
                opens_slide_bar = 'L"kx::SlideBar"' in arguments[1]


def suites_in(folder):
    names = os.listdir(folder) if os.path.isdir(folder) else []
    return {name.removesuffix(".log") for name in names if name.endswith(".log")}


def was_reached(reached, sign):
    kind, what = sign
    if kind == "command":
        return any(command == what for _, command in reached.commands)
    if kind == "drawn":
        return any(text.startswith(what) for text in reached.drawn)
    return what in {"text": reached.texts, "menu": reached.menus, "call": reached.calls}[kind]


def print_part(title, names):
    """Names: [(name, whether it was reached)]. True when all were."""
    missing = [name for name, done in names if not done]
    print(f"  {title}: {len(names) - len(missing)} of {len(names)}")
    print("    covered: " + ("; ".join(name for name, done in names if done) or "nothing"))
    if missing:
        print("    NOT COVERED: " + "; ".join(missing))
    return not missing


def judge(executable, reached, menus, texts, imports):
    """Prints everything about one executable. True when nothing is missing that must be reached."""
    print(f"{executable}")
    complete = True
    for name, menu in MENUS.items():
        complete &= print_part(f"commands of {name}", [
            ("Language" if command == FIRST_LANGUAGE else label, (menu, command) in reached.commands)
            for command, label in menus[menu].items()])
    complete &= print_part("dialogs", [(name, was_reached(reached, sign)) for name, sign in DIALOGS.items()])
    messages = [(f"{identifier} {texts[identifier].split('%n')[0]}", identifier in reached.texts)
                for identifier in MESSAGES if identifier in texts and identifier not in CAPTIONS]
    messages += [(name, was_reached(reached, sign)) for name, sign in OTHER_MESSAGES.items()]
    complete &= print_part("messages", messages)
    print_part("texts", [(f"{identifier} {text}", identifier in reached.texts) for identifier, text in texts.items()])
    print_part("system calls", [(name, name in reached.calls) for name in sorted(imports)])
    return complete


def report(arguments):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", help="where the suites have left what they reached")
    parser.add_argument("--handheld", required=True, help="the handheld executable")
    parser.add_argument("--suites", nargs="+", required=True, help="every suite of the end-to-end tests")
    options = parser.parse_args(arguments)
    menus, texts = read_menus(), read_texts()
    partial = False
    complete = True
    with open(os.path.join(options.folder, "addresses.txt"), encoding="utf-8") as file:
        first, size = (int(word, 16) for word in file.read().split())
    with open(os.path.join(options.folder, "calls.txt"), encoding="utf-8") as file:
        desktop_imports = {line.split(".")[1].strip() for line in file}
    handheld_imports = set()
    for entry in PeFile.read(options.handheld).imports:
        library = entry.library.lower().removesuffix(".dll")
        name = entry.name or f"#{entry.ordinal}"
        handheld_imports.add(name if library == "coredll" and entry.name else
                             library + ("!" + name if entry.name else name))
    # Those that are looked up are called by the first key that the device knows.
    for entry in read_late_list(os.path.join(ROOT, "platform", "ce", "imports.txt")):
        name = entry.name or f"#{entry.ordinal}"
        handheld_imports.add(name if entry.library == "coredll" else
                             entry.library + ("!" + name if entry.name else name))
    for executable, imports in (("desktop", desktop_imports), ("handheld", handheld_imports)):
        folder = os.path.join(options.folder, executable)
        missing = set(options.suites) - suites_in(folder)
        partial |= bool(missing)
        recorder = Recorder(menus)
        for suite in sorted(suites_in(folder)):
            path = os.path.join(folder, suite + ".log")
            if executable == "handheld":
                read_handheld(path, recorder)
            else:
                read_desktop(path, first, first + size, recorder)
        if suites_in(folder):
            complete &= judge(f"The {executable} executable", recorder.reached, menus, texts, imports)
    if partial:
        print("Not all suites have run, so what is not covered is no fault.")
    return 0 if partial or complete else 1


def main(arguments):
    report_text = io.StringIO()
    with contextlib.redirect_stdout(report_text):
        result = report(arguments)
    print(report_text.getvalue(), end="")
    with open(os.path.join(arguments[0], "report.txt"), "w", encoding="utf-8") as file:
        file.write(report_text.getvalue())
    return result


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
