#!/usr/bin/env python3
"""Makes what people install from finished builds: vantor.cab for handhelds, vantor.zip for desktop Windows.

usage: make_packages.py BUILD_FOLDER INTO"""
import glob
import os
import shutil
import subprocess
import sys
import tempfile
import zipfile

from installer_header import InstallerHeader

PROGRAM = "vantor.exe"
NAME = "Vantor"
PROVIDER = "Kelmor"
NOTICES = "third-party-notices.txt"
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")


def files_of(build):
    """The program and its language packs."""
    found = [os.path.join(build, PROGRAM)] + sorted(glob.glob(os.path.join(build, PROGRAM + ".*.ui")))
    missing = [path for path in found if not os.path.isfile(path)]
    if missing or len(found) < 2:
        sys.exit(f"make_packages: {build} holds no finished build")
    return found


def notices_in(folder):
    """What the linked libraries ask every copy of the program to carry, with the line ends of Windows' own readers."""
    with open(os.path.join(ROOT, "docs", NOTICES), encoding="ascii") as source:
        text = source.read()
    made = os.path.join(folder, NOTICES)
    with open(made, "w", encoding="ascii", newline="\r\n") as file:
        file.write(text)
    return made


def short_name(path, number):
    """A name of eight characters with the file's number, as the installer wants them."""
    letters = "".join(letter for letter in os.path.basename(path) if letter.isalnum())[:8]
    return f"{letters:0>8}.{number:03}"


def make_cabinet(files, cabinet):
    header = InstallerHeader(NAME, PROVIDER)
    with tempfile.TemporaryDirectory() as folder:
        members = [short_name(NAME, 0)]
        for path in files:
            number = header.add_file(os.path.basename(path))
            members.append(short_name(path, number))
            shutil.copyfile(path, os.path.join(folder, members[-1]))
            if os.path.basename(path) == PROGRAM:
                header.add_start_menu_link(NAME, number)
        with open(os.path.join(folder, members[0]), "wb") as file:
            file.write(header.encode())
        # The installer reads the cabinet from its beginning: the control file, then the files from the last number on.
        members[1:] = reversed(members[1:])
        made = os.path.join(folder, "made.cab")
        # Handhelds before Windows Mobile 5 cannot unpack what is compressed.
        subprocess.run(["gcab", "--create", "--nopath", made, *members], cwd=folder, check=True)
        shutil.move(made, cabinet)


def make_zip(files, archive, extra):
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as made:
        for path in files:
            made.write(path, os.path.join(NAME, os.path.basename(path)))
        for path in extra:
            made.write(path, os.path.join(NAME, os.path.basename(path)))


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__.split("\n\n")[1])
    build, into = sys.argv[1:]
    os.makedirs(into, exist_ok=True)
    with tempfile.TemporaryDirectory() as folder:
        notices = notices_in(folder)
        make_cabinet(files_of(os.path.join(build, "handheld")) + [notices], os.path.join(into, "vantor.cab"))
        make_zip(files_of(os.path.join(build, "desktop")) + [notices], os.path.join(into, "vantor.zip"),
                 [os.path.join(ROOT, "docs", "translating.md")])
    for name in ("vantor.cab", "vantor.zip"):
        print(f"  {name}: {os.path.getsize(os.path.join(into, name)):,} bytes")


if __name__ == "__main__":
    main()
