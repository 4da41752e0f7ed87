#!/usr/bin/env python3
"""Runs the parts of ./endure in a started device: endure.py FOLDER [MINUTES] [--fresh] [--modes ...] | FOLDER --try ... | --actions.

A part does its work job by job until its time is over, keeps what it has found in FOLDER, and goes on from there.
"""

import hashlib
import os
import pathlib
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
BUILD = pathlib.Path(os.environ.get("VANTOR_BUILD_FOLDER", ROOT / "build"))

# What becomes of a failure, as the sweep names it, and as the table does.
VERDICTS = [("same", "as if nothing failed"), ("told", "told"), ("less", "silent, less"), ("ended", "ended, told"),
            ("aborted", "ended, untold"), ("WRONG", "WRONG")]
# And of an end.
ENDS = [("before", "as before"), ("after", "as after"), ("between", "each as one of both"), ("aside", "some set aside"),
        ("WRONG", "WRONG")]
BAD = ("WRONG", "aborted")

# What is tried: modes with kinds of calls, the likely ones first, each with the actions that it is worth for.
CHANGING = ["new folder", "rename", "delete file", "delete folder", "delete marked", "paste file", "paste folder",
            "move file", "move folder", "overwrite", "move over", "merge", "move merging", "shortcut"]
SHOWING = ["menu", "languages", "refresh", "processes", "applications", "properties", "drag", "turn", "start"]
ROUNDS = [("once", 5, None), ("end-amid", 1, None), ("end-before", 1, None), ("once", 2, SHOWING),
          ("same", 1, CHANGING + ["start", "exit"]), ("two", 4, CHANGING), ("eight", 4, CHANGING + SHOWING),
          ("all", 4, CHANGING + SHOWING), ("end-after", 1, None)]


def is_end(mode):
    return mode.startswith("end-")


class Sweep:
    """Every call of every action fails, or is the program's last."""

    def __init__(self, folder, modes=()):
        self.modes = modes
        self.results = folder / "sweep.tsv"
        self.key = folder / "sweep.key"

    @staticmethod
    def command(*words):
        return [str(ROOT / "tools/device/in_device"), "--handheld", str(ROOT / "tests/devices/large.txt"),
                str(BUILD / "desktop/tests/sweep.exe"), *map(str, words)]

    def listed(self, what):
        return subprocess.run(self.command(what), stdout=subprocess.PIPE, text=True, check=True).stdout.split("\n")[:-1]

    def actions(self):
        return self.listed("actions") + ["start", "exit"]

    @staticmethod
    def identity():
        """Another program has other calls."""
        digest = hashlib.sha256()
        for name in ("handheld/vantor.exe", "emulator/vantor.exe.so", "desktop/tests/sweep.exe"):
            digest.update((BUILD / name).read_bytes())
        return digest.hexdigest()

    def forget_others(self, fresh):
        identity = self.identity()
        if fresh or not self.key.exists() or self.key.read_text() != identity:
            self.results.unlink(missing_ok=True)
            self.key.write_text(identity)

    def lines(self):
        if not self.results.exists():
            return []
        return [line.split("\t") for line in self.results.read_text().split("\n") if line]

    def trials(self):
        """Action, mode, kinds, call, verdict, function, what, callers."""
        found = {}
        for fields in self.lines():
            if len(fields) == 8 and not fields[0].startswith(("#", "!")):
                found[tuple(fields[:4])] = fields
        return list(found.values())

    def jobs(self, actions, ended):
        """What is left, with the number of the first call of each."""
        through = set()
        last = {}
        for fields in self.lines():
            if fields[0].startswith("# ") and fields[-1] == "through":
                through.add((fields[0][2:], fields[1], fields[2]))
        for fields in self.trials():
            last[tuple(fields[:3])] = int(fields[3])
        for mode, kinds, wanted in ROUNDS:
            if self.modes and mode not in self.modes:
                continue
            for action in ended if is_end(mode) else actions:
                job = (action, mode, str(kinds))
                if (wanted is None or action in wanted) and job not in through:
                    yield job, last.get(job, 0) + 1

    def run(self, until):
        for (action, mode, kinds), first in self.jobs(self.actions(), self.listed("ends")):
            seconds = int(until - time.time())
            if seconds <= 0:
                return
            print(f"{action}, {mode}, kinds {kinds}, from call {first}", flush=True)
            known = len(self.lines())
            with self.results.open("a") as results:
                # A driver that hangs is ended with all that it has started.
                process = subprocess.Popen(self.command("run", action, mode, kinds, first, 100000, seconds),
                                           stdout=results, stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL,
                                           start_new_session=True)
                try:
                    process.wait(seconds + 180)
                except subprocess.TimeoutExpired:
                    os.killpg(process.pid, signal.SIGKILL)
                    results.write(f"! {action}\tthe driver hangs\n")
            # One that does not go well without failures is not begun again.
            heads = [fields[0] for fields in self.lines()[known:]]
            if any(head.startswith("! ") for head in heads) and not any(head.startswith("# ") for head in heads):
                with self.results.open("a") as results:
                    results.write(f"# {action}\t{mode}\t{kinds}\t0\tthrough\n")

    def table(self):
        failing = self.rows("fails", VERDICTS, [trial for trial in self.trials() if not is_end(trial[1])])
        ending = self.rows("ends", ENDS, [trial for trial in self.trials() if is_end(trial[1])])
        return failing + "\n\n" + ending

    @staticmethod
    def rows(head, verdicts, trials):
        counts = {}
        for action, mode, kinds, _, verdict, *_ in trials:
            row = counts.setdefault((action, mode, kinds), dict.fromkeys([name for name, _ in verdicts], 0))
            row[verdict] += 1
        out = [f"| action | {head} | kinds | calls | " + " | ".join(title for _, title in verdicts) + " |",
               "|---" * (4 + len(verdicts)) + "|"]
        sums = dict.fromkeys([name for name, _ in verdicts], 0)
        for (action, mode, kinds), row in counts.items():
            cells = [str(row[name] or "·") for name, _ in verdicts]
            out.append(f"| {action} | {mode} | {kinds} | {sum(row.values())} | " + " | ".join(cells) + " |")
            for name in sums:
                sums[name] += row[name]
        cells = [str(sums[name] or "·") for name, _ in verdicts]
        out.append(f"| all | | | {sum(sums.values())} | " + " | ".join(cells) + " |")
        return "\n".join(out)

    def wrong(self):
        found = []
        for action, mode, kinds, call, verdict, function, what, at in self.trials():
            if verdict in BAD:
                found.append(f'./endure --try "{action}" {mode} {kinds} {call}  # {function}: {what.strip()}')
        found += [fields[0] + " " + " ".join(fields[1:]) for fields in self.lines() if fields[0].startswith("! ")]
        return found

    def again(self, action, mode, kinds, calls):
        first, _, last = calls.partition("-")
        return subprocess.run(self.command("run", action, mode, kinds, first, last or first, 3600), check=False).returncode


# Others join them here.
PARTS = [Sweep]


def main(arguments):
    folder = pathlib.Path(arguments[0])
    words = arguments[1:]
    modes = ()
    if "--modes" in words[:-1]:
        at = words.index("--modes")
        modes = tuple(words[at + 1].split(","))
        del words[at:at + 2]
    if not set(modes) <= {mode for mode, *_ in ROUNDS}:
        print("see ./endure --help", file=sys.stderr)
        return 2
    parts = [part(folder, modes) for part in PARTS]
    if words[:1] == ["--actions"]:
        print("\n".join(parts[0].actions()))
        return 0
    if words[:1] == ["--try"] and len(words) == 5:
        return parts[0].again(*words[1:])
    fresh = "--fresh" in words
    numbers = [word for word in words if word != "--fresh"]
    if len(numbers) > 1 or not all(word.isdigit() for word in numbers):
        print("see ./endure --help", file=sys.stderr)
        return 2
    until = time.time() + 60 * int(numbers[0] if numbers else 60)
    wrong = []
    for index, part in enumerate(parts):
        part.forget_others(fresh)
        # Each part has its share of the time that is left.
        part.run(time.time() + (until - time.time()) / (len(parts) - index))
        print(part.table())
        wrong += part.wrong()
    (folder / "wrong.txt").write_text("".join(line + "\n" for line in wrong))
    print("\n".join(wrong) if wrong else "Nothing ended wrong.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
