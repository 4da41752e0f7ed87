#!/usr/bin/env python3
"""Runs the parts of ./endure: endure.py FOLDER [MINUTES] [--fresh] [--modes ...] starts them side by side; in a started
device it is FOLDER --try ... | FOLDER --try-input ... | FOLDER --replay ... | FOLDER --actions.

A part does its work job by job until its time is over, keeps what it has found in FOLDER, and goes on from there.
"""

import os
import pathlib
import signal
import subprocess
import sys
import time

from monkey.monkey import Monkey
from part import BUILD, ROOT, Part

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
ROUNDS_ON_DESKTOP = [("once", 5, None), ("end-before", 1, None), ("same", 1, CHANGING + ["exit"]), ("two", 4, CHANGING),
                     ("eight", 4, CHANGING), ("all", 4, CHANGING)]


def is_end(mode):
    return mode.startswith("end-")


class Sweep(Part):
    """Every call of every action of the handheld executable fails, or is the program's last."""

    NAME = "sweep"
    TITLE = "action"
    ROUNDS = ROUNDS
    EXTRA_ACTIONS = ["start", "exit"]
    BUILT = ("handheld/vantor.exe", "emulator/vantor.exe.so", "desktop/tests/sweep.exe")
    # How a call is tried again.
    WHERE = ""

    def __init__(self, folder, modes=()):
        super().__init__(folder)
        self.modes = modes

    @staticmethod
    def command(*words):
        return [str(ROOT / "tools/device/in_device"), "--handheld", str(ROOT / "tests/devices/large.txt"),
                str(BUILD / "desktop/tests/sweep.exe"), *map(str, words)]

    def listed(self, what):
        return subprocess.run(self.command(what), stdout=subprocess.PIPE, text=True, check=True).stdout.split("\n")[:-1]

    def actions(self):
        return self.listed("actions") + self.EXTRA_ACTIONS

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
        for mode, kinds, wanted in self.ROUNDS:
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
            print(f"{self.NAME}: {action}, {mode}, kinds {kinds}, from call {first}", flush=True)
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

    def rows(self, head, verdicts, trials):
        counts = {}
        for action, mode, kinds, _, verdict, *_ in trials:
            row = counts.setdefault((action, mode, kinds), dict.fromkeys([name for name, _ in verdicts], 0))
            row[verdict] += 1
        out = [f"| {self.TITLE} | {head} | kinds | calls | " + " | ".join(title for _, title in verdicts) + " |",
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
                found.append(f'./endure --try "{action}" {mode} {kinds} {call}{self.WHERE}  # {function}: {what.strip()}')
        found += [fields[0] + " " + " ".join(fields[1:]) for fields in self.lines() if fields[0].startswith("! ")]
        return found

    def again(self, action, mode, kinds, calls):
        first, _, last = calls.partition("-")
        return subprocess.run(self.command("run", action, mode, kinds, first, last or first, 3600), check=False).returncode


class SweepOnDesktop(Sweep):
    """The same on the executable of a PC, with its calls on files."""

    NAME = "sweep_on_desktop"
    TITLE = "action, on a PC"
    ROUNDS = ROUNDS_ON_DESKTOP
    EXTRA_ACTIONS = ["exit"]
    BUILT = ("desktop/vantor.exe", "desktop/tests/sweep.exe", "desktop/tests/sweep_watch.dll")
    WHERE = " desktop"

    @staticmethod
    def command(*words):
        return [str(ROOT / "tools/device/in_device"), str(BUILD / "desktop/tests/sweep.exe"), *map(str, words)]


class Hostile(Part):
    """What comes from outside, spoilt, and given to the readers of it within this machine's own process."""

    NAME = "hostile"
    BUILT = ("hostile/hostile",)
    TITLE = "input"
    # So many of each kind are enough.
    WANTED = 1000000
    # How an input is tried again.
    WHERE = ""

    def __init__(self, folder):
        super().__init__(folder)
        self.kept = folder / self.NAME
        self.program = BUILD / self.BUILT[0]

    def command(self, *words):
        return [str(self.program), *map(str, words)]

    def run_command(self, name, first, count, seconds):
        return self.command("run", name, first, count, seconds, self.kept)

    def forget_others(self, fresh):
        super().forget_others(fresh)
        self.kept.mkdir(exist_ok=True)

    def counts(self):
        """Of each kind: the next seed, and how many were tried, accepted and wrong."""
        found = {}
        for mark, *fields in self.lines():
            if mark == "#":
                name, following, *numbers = fields
                before = found.get(name, (1, 0, 0, 0))
                found[name] = (int(following), *(old + int(new) for old, new in zip(before[1:], numbers)))
        return found

    def names(self):
        return subprocess.run(self.command("parts"), stdout=subprocess.PIPE, text=True, check=True).stdout.split()

    def run(self, until):
        names = self.names()
        for index, name in enumerate(names):
            following, tried, _, wrong = self.counts().get(name, (1, 0, 0, 0))
            seconds = int((until - time.time()) / (len(names) - index))
            if seconds <= 0 or tried >= self.WANTED or wrong:
                continue
            print(f"{self.NAME} {name}, from {following}", flush=True)
            process = subprocess.Popen(self.run_command(name, following, self.WANTED - tried, seconds), text=True,
                                       stdout=subprocess.PIPE, stdin=subprocess.DEVNULL, start_new_session=True)
            try:
                told = process.communicate(timeout=seconds + 120)[0]
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                told = f"WRONG\t{name}\t{following}\tthis one, or one behind it, does not come to an end\t\n"
            lines = [line for line in told.splitlines() if line.startswith(("WRONG\t", "#\t"))]
            if not any(line.startswith("#") for line in lines):
                # Where the program has ended there is one that was wrong.
                seed = int(lines[-1].split("\t")[2]) if lines else following
                lines = lines or [f"WRONG\t{name}\t{seed}\tit did not run\t"]
                lines.append(f"#\t{name}\t{seed + 1}\t{seed + 1 - following}\t0\t1")
            with self.results.open("a") as results:
                results.write("".join(line + "\n" for line in lines))

    def table(self):
        out = [f"| {self.TITLE} | tried | accepted | WRONG |", "|---|---|---|---|"]
        for name, (_, tried, accepted, wrong) in self.counts().items():
            out.append(f"| {name} | {tried} | {accepted} | {wrong or '·'} |")
        return "\n".join(out)

    def wrong(self):
        return [f'./endure --try-input {name} "{(file or [seed])[0] or seed}"{self.WHERE}  # {what} (seed {seed})'
                for mark, name, seed, what, *file in self.lines() if mark == "WRONG"]

    def again(self, name, file):
        return subprocess.run(self.command("try", name, file), check=False).returncode


class HostileOnDevice(Hostile):
    """The same through the system's own files, registry, clipboard and loader."""

    NAME = "hostile_on_device"
    TITLE = "input, on a device"
    BUILT = ("desktop/tests/hostile_input.exe", "desktop/vantor.exe")

    def command(self, *words):
        return [str(ROOT / "tools/device/in_device"), str(self.program), *map(str, words)]

    def run_command(self, name, first, count, seconds):
        return self.command("run", name, first, count, seconds)

    def again(self, name, seed):
        return subprocess.run(self.run_command(name, seed, 1, 600), check=False).returncode


class HostileOnHandheld(HostileOnDevice):
    """The handheld executable, started on what it finds."""

    NAME = "hostile_on_handheld"
    TITLE = "input, on a handheld"
    BUILT = ("desktop/tests/hostile_input.exe", "handheld/vantor.exe", "emulator/vantor.exe.so")
    WHERE = " handheld"

    def command(self, *words):
        return [str(ROOT / "tools/device/in_device"), "--handheld", str(ROOT / "tests/devices/large.txt"),
                str(self.program), *map(str, words)]

    def names(self):
        return ["starts"]


# What runs side by side: each lane has a device and a processor of its own, and its parts share its time. Others join
# them here.
LANES = {
    "handheld": lambda folder, modes: [HostileOnHandheld(folder), Sweep(folder, modes), Monkey(folder, "handheld")],
    "desktop": lambda folder, modes: [Hostile(folder), HostileOnDevice(folder), SweepOnDesktop(folder, modes),
                                      Monkey(folder, "desktop")],
}


def parts_of(lane, folder, modes):
    """Modes are the sweep's alone."""
    return [part for part in LANES[lane](folder, modes) if not modes or isinstance(part, Sweep)]


def run_lane(lane, folder, modes, until, fresh):
    parts = parts_of(lane, folder, modes)
    for index, part in enumerate(parts):
        part.forget_others(fresh)
        # Each part has its share of the time that is left.
        part.run(time.time() + (until - time.time()) / (len(parts) - index))


def run_side_by_side(folder, options, until):
    """Returns the lanes that did not come to their end."""
    processors = sorted(os.sched_getaffinity(0))
    lanes = {}
    try:
        for index, lane in enumerate(LANES):
            processor = processors[index % len(processors)]
            lanes[lane] = subprocess.Popen(["taskset", "--cpu-list", str(processor),
                                            str(ROOT / "tools/device/with_device"), "--device",
                                            str(folder / f"test-device-{lane}"), "--", sys.executable, "-B", __file__,
                                            str(folder), "--lane", lane, str(until), *options])
        return [lane for lane, process in lanes.items() if process.wait() != 0]
    finally:
        for process in lanes.values():
            process.terminate()
            process.wait()


def options_of(words):
    """Takes --modes and --fresh out of the words: the modes, and whether all begins anew."""
    modes = ()
    if "--modes" in words[:-1]:
        at = words.index("--modes")
        modes = tuple(words[at + 1].split(","))
        del words[at:at + 2]
    fresh = "--fresh" in words
    words[:] = [word for word in words if word != "--fresh"]
    return modes, fresh


def main(arguments):
    folder = pathlib.Path(arguments[0])
    words = arguments[1:]
    if words[:1] == ["--actions"]:
        print("\n".join(Sweep(folder).actions()))
        return 0
    if words[:1] == ["--try"] and len(words) == 5:
        return Sweep(folder).again(*words[1:])
    if words[:1] == ["--try"] and len(words) == 6 and words[5] == "desktop":
        return SweepOnDesktop(folder).again(*words[1:5])
    if words[:1] == ["--replay"] and len(words) == 3 and words[1] in LANES:
        return Monkey(folder, words[1]).again(words[2])
    if words[:1] == ["--try-input"] and len(words) == 4 and words[3] == "handheld":
        return HostileOnHandheld(folder).again(*words[1:3])
    if words[:1] == ["--try-input"] and len(words) == 3:
        # An input that was kept is a file, one on a device is known by its seed.
        return (HostileOnDevice if words[2].isdigit() else Hostile)(folder).again(*words[1:])
    modes, fresh = options_of(words)
    if not set(modes) <= {mode for mode, *_ in ROUNDS + ROUNDS_ON_DESKTOP}:
        print("see ./endure --help", file=sys.stderr)
        return 2
    if words[:1] == ["--lane"] and len(words) == 3:
        run_lane(words[1], folder, modes, int(words[2]), fresh)
        return 0
    if len(words) > 1 or not all(word.isdigit() for word in words):
        print("see ./endure --help", file=sys.stderr)
        return 2
    options = (["--modes", ",".join(modes)] if modes else []) + (["--fresh"] if fresh else [])
    until = int(time.time()) + 60 * int(words[0] if words else 60)
    wrong = [f"! {lane} did not come to its end" for lane in run_side_by_side(folder, options, until)]
    for lane in LANES:
        for part in parts_of(lane, folder, modes):
            print(part.table(), end="\n\n")
            wrong += part.wrong()
    (folder / "wrong.txt").write_text("".join(line + "\n" for line in wrong))
    print("\n".join(wrong) if wrong else "Nothing ended wrong.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
