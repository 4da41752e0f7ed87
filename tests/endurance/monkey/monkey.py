"""The monkey as a part of ./endure: plays with both executables in turn, seed by seed."""

import hashlib
import os
import pathlib
import signal
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent.parent
BUILD = pathlib.Path(os.environ.get("VANTOR_BUILD_FOLDER", ROOT / "build"))

EXECUTABLES = {
    "desktop": ["desktop/vantor.exe"],
    "handheld": ["handheld/vantor.exe", "emulator/vantor.exe.so"],
}
EVENTS = 300
# So long plays one seed, and so long is a failure shortened.
SECONDS = 240
SHRINKING = 300
# A monkey that hangs is ended with all that it has started.
SPARE = 900


class Monkey:
    """Plays as one who knows nothing of the program."""

    def __init__(self, folder):
        self.folder = folder / "monkey"
        self.results = self.folder / "monkey.tsv"
        self.key = self.folder / "monkey.key"

    @staticmethod
    def command(kind, folder, *words):
        return [str(ROOT / "tests/endurance/monkey/run"), kind, str(folder), *map(str, words)]

    @staticmethod
    def identity():
        """Another program is played with anew."""
        digest = hashlib.sha256()
        for name in sorted({name for names in EXECUTABLES.values() for name in names} | {"desktop/tests/monkey.exe"}):
            digest.update((BUILD / name).read_bytes())
        return digest.hexdigest()

    def forget_others(self, fresh):
        self.folder.mkdir(parents=True, exist_ok=True)
        identity = self.identity()
        if fresh or not self.key.exists() or self.key.read_text() != identity:
            self.results.unlink(missing_ok=True)
            self.key.write_text(identity)

    def lines(self):
        if not self.results.exists():
            return []
        return [line.split("\t") for line in self.results.read_text().split("\n") if line]

    def sums(self):
        """Of each executable: seeds, rounds, events, starts, its own ends, milliseconds."""
        sums = {kind: [0] * 6 for kind in EXECUTABLES}
        for kind, *fields in self.lines():
            if fields[0].startswith("# "):
                numbers = [1, *map(int, fields[1:6])]
                sums[kind] = [one + other for one, other in zip(sums[kind], numbers)]
        return sums

    def next_seed(self):
        seeds = [int(fields[1].lstrip("# ")) for fields in self.lines() if fields[1].lstrip("# ").isdigit()]
        return max(seeds, default=0) + 1

    def run(self, until):
        while time.time() < until:
            for kind in EXECUTABLES:
                seconds = int(min(until - time.time(), SECONDS))
                if seconds <= 0:
                    return
                seed = self.next_seed()
                print(f"monkey, {kind}, seed {seed}", flush=True)
                self.play(kind, seed, seconds)

    def play(self, kind, seed, seconds):
        words = (seed, 1000000, EVENTS, seconds, SHRINKING)
        process = subprocess.Popen(self.command(kind, self.folder, *words), stdout=subprocess.PIPE, text=True,
                                   stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL, start_new_session=True)
        try:
            output, _ = process.communicate(timeout=seconds + SHRINKING + SPARE)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            output, _ = process.communicate()
        lines = [line for line in output.split("\n") if line.count("\t") >= 4]
        if not any(line.startswith("# ") for line in lines):
            lines.append(f"{seed}\t0\tmonkey\tit came to no end\t{kind}")
        with self.results.open("a") as results:
            results.writelines(f"{kind}\t{line.rstrip()}\n" for line in lines)

    def failures(self):
        return [fields for fields in self.lines() if not fields[1].startswith("#")]

    def table(self):
        out = ["| executable | seeds | rounds | events | starts | ended by itself | events a second | WRONG |",
               "|---|---|---|---|---|---|---|---|"]
        for kind, (seeds, rounds, events, starts, ends, milliseconds) in self.sums().items():
            wrong = sum(fields[0] == kind for fields in self.failures())
            pace = events * 1000 // max(milliseconds, 1)
            out.append(f"| {kind} | {seeds} | {rounds} | {events} | {starts} | {ends} | {pace} | {wrong or '·'} |")
        return "\n".join(out)

    def wrong(self):
        return [f"./endure --replay {kind} {script.split(' (')[0]}  # {what}"
                for kind, _, _, _, what, script, *_ in (fields + [""] for fields in self.failures())]

    def again(self, kind, path):
        return subprocess.run(self.command(kind, self.folder, "--replay", path), check=False).returncode
