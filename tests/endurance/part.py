"""What the parts of ./endure have in common."""

import hashlib
import os
import pathlib

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = pathlib.Path(os.environ.get("VANTOR_BUILD_FOLDER", ROOT / "build"))


class Part:
    """Keeps what it has found in a file of lines with tabs, as long as it is about the same program."""

    # Names the files that it keeps.
    NAME = ""
    # What was built and is attacked, or attacks.
    BUILT = ()

    def __init__(self, folder):
        self.results = folder / f"{self.NAME}.tsv"
        self.key = folder / f"{self.NAME}.key"

    def identity(self):
        digest = hashlib.sha256()
        for name in self.BUILT:
            digest.update((BUILD / name).read_bytes())
        return digest.hexdigest()

    def forget_others(self, fresh):
        """Begins anew with another program, or when that is wanted."""
        identity = self.identity()
        if fresh or not self.key.exists() or self.key.read_text() != identity:
            self.results.unlink(missing_ok=True)
            self.key.write_text(identity)

    def lines(self):
        if not self.results.exists():
            return []
        return [line.split("\t") for line in self.results.read_text().split("\n") if line]
