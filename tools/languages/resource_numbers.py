"""The numbers of the program's resources, as res/resource.h names them."""
import os
import re

HEADER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "res", "resource.h")


def read_numbers(path=HEADER):
    """{name: number} of every resource."""
    with open(path, encoding="utf-8") as file:
        return {name: int(number) for name, number in re.findall(r"^#define (\w+) (\d+)$", file.read(), re.MULTILINE)}
