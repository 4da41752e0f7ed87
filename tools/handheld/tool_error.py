"""The one kind of error these tools report, and how a command line ends with it."""
import sys


class ToolError(Exception):
    """A mistake in an input. Its text is a whole sentence for the person who builds."""


def run(name, main):
    """Runs main(arguments); a ToolError or an unreadable file ends the process with one line and status 1."""
    try:
        sys.exit(main(sys.argv[1:]))
    except ToolError as error:
        sys.exit(f"{name}: {error}")
    except OSError as error:
        sys.exit(f"{name}: {error.filename}: {error.strerror}.")


def read_bytes(path):
    """The whole content of a file."""
    with open(path, "rb") as file:
        return file.read()
