"""The monkey as a part of ./endure: plays with one of the executables, seed by seed."""

import os
import signal
import subprocess
import time

from part import ROOT, Part

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


class Monkey(Part):
    """Plays as one who knows nothing of the program."""

    def __init__(self, folder, kind):
        self.NAME = self.kind = kind
        self.BUILT = (*EXECUTABLES[kind], "desktop/tests/monkey.exe")
        self.folder = folder / "monkey"
        super().__init__(self.folder)

    def command(self, *words):
        return [str(ROOT / "tests/endurance/monkey/run"), self.kind, str(self.folder), *map(str, words)]

    def forget_others(self, fresh):
        self.folder.mkdir(parents=True, exist_ok=True)
        super().forget_others(fresh)

    def sums(self):
        """Seeds, rounds, events, starts, its own ends, milliseconds."""
        ends = [fields for fields in self.lines() if fields[0].startswith("# ")]
        return [len(ends), *(sum(int(fields[column]) for fields in ends) for column in range(1, 6))]

    def next_seed(self):
        seeds = [int(fields[0].lstrip("# ")) for fields in self.lines() if fields[0].lstrip("# ").isdigit()]
        return max(seeds, default=0) + 1

    def run(self, until):
        while (seconds := int(min(until - time.time(), SECONDS))) > 0:
            seed = self.next_seed()
            print(f"monkey, {self.kind}, seed {seed}", flush=True)
            self.play(seed, seconds)

    def play(self, seed, seconds):
        process = subprocess.Popen(self.command(seed, 1000000, EVENTS, seconds, SHRINKING), stdout=subprocess.PIPE,
                                   text=True, stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL,
                                   start_new_session=True)
        try:
            output, _ = process.communicate(timeout=seconds + SHRINKING + SPARE)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            output, _ = process.communicate()
        lines = [line for line in output.split("\n") if line.count("\t") >= 4]
        if not any(line.startswith("# ") for line in lines):
            lines.append(f"{seed}\t0\tmonkey\tit came to no end\t")
        with self.results.open("a") as results:
            results.writelines(f"{line.rstrip()}\n" for line in lines)

    def failures(self):
        return [fields for fields in self.lines() if not fields[0].startswith("#")]

    def table(self):
        seeds, rounds, events, starts, ends, milliseconds = self.sums()
        wrong = len(self.failures())
        pace = events * 1000 // max(milliseconds, 1)
        return ("| executable | seeds | rounds | events | starts | ended by itself | events a second | WRONG |\n"
                "|---|---|---|---|---|---|---|---|\n"
                f"| {self.kind} | {seeds} | {rounds} | {events} | {starts} | {ends} | {pace} | {wrong or '·'} |")

    def wrong(self):
        return [f"./endure --replay {self.kind} {script.split(' (')[0]}  # {what}"
                for _, _, _, what, script, *_ in (fields + [""] for fields in self.failures())]

    def again(self, path):
        return subprocess.run(self.command("--replay", path), check=False).returncode
