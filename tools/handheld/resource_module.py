#!/usr/bin/env python3
"""Makes a module of Windows CE that holds nothing but resources, as language packs are, out of compiled resources."""
import argparse

from elf_to_pe import CONSTANTS, DIRECTORY_RESOURCES, LIBRARY, PAGE, PeSection, write_image
from resource_file import build_resource_section, read_resources
from tool_error import ToolError, run

# Where the linkers of Windows put libraries. Nothing in the module depends on it.
IMAGE_BASE = 0x10000000


def build_module(resources):
    """The bytes of the module. `resources` is a tree of resource_file."""
    if not resources:
        raise ToolError("There are no resources to make a module of.")
    content = bytearray(build_resource_section(resources, PAGE))
    section = PeSection(".rsrc", PAGE, CONSTANTS, content, len(content))
    return write_image(IMAGE_BASE, 0, [section], {DIRECTORY_RESOURCES: (PAGE, len(content))}, 0, LIBRARY)


def main(arguments):
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("resources", help="compiled resources (.res)")
    parser.add_argument("module")
    options = parser.parse_args(arguments)
    image = build_module(read_resources(options.resources))
    with open(options.module, "wb") as file:
        file.write(image)


if __name__ == "__main__":
    run("resource_module", main)
