#!/usr/bin/python3
"""Makes small changes to the product, one at a time, and tells which of them no test notices. See tests/mutate."""
import argparse
import functools
import glob
import hashlib
import json
import os
import queue
import re
import shutil
import subprocess
import sys
import threading
import time

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.realpath(os.path.join(HERE, "..", ".."))
BUILD = os.environ.get("VANTOR_BUILD_FOLDER", os.path.join(ROOT, "build"))
sys.path.insert(0, HERE)
import sites as places  # noqa: E402

WORK = os.path.join(BUILD, "mutants")
TREE = os.path.join(WORK, "tree")
ROOMS = ("app", "faults", "text", "ui", "views", "platform")
EXECUTABLES = ("platform_tests", "faults_tests", "text_tests", "ui_tests", "views_tests", "app_tests", "e2e_tests",
               "gallery_tests")
# Names the failed test, or the one that ran when the process ended.
FAILED = re.compile(r"\[  FAILED  \] ([\w/]+\.[\w/]+)|in the test ([\w/]+\.[\w/]+)")


def say(text):
    print(text, flush=True)


def run(*command, **options):
    return subprocess.run(command, check=True, text=True, capture_output=True, **options).stdout


@functools.cache
def lines_of(path):
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        return file.read().split("\n")


# The line of code, with the one before it where it says little by itself.
def line_of(site):
    lines = lines_of(site.path)
    line = lines[site.line - 1].strip()
    return line if len(line) > 20 else f"{lines[site.line - 2].strip()} {line}"


# None for what is no part of the desktop's executable.
def room_of(path):
    if path.startswith("platform/ce/"):
        return None
    return next((room for room in ROOMS if path.startswith(room + "/")), None)


# Where the libraries' headers are, in the compiler's words.
def compiler_folders():
    told = subprocess.run(["x86_64-w64-mingw32-g++-posix", "-E", "-v", "-x", "c++", "/dev/null"],
                          capture_output=True, text=True, check=True).stderr
    inside = told[told.index("#include <"):told.index("End of search")]
    return [os.path.realpath(line.strip()) for line in inside.splitlines()
            if "/c++" in line or line.rstrip().endswith("mingw32/include")]


def find_sites(root):
    digest = hashlib.sha256()
    for path in ["tests/mutants/sites.py", *run("git", "ls-files", *ROOMS, cwd=root).split()]:
        with open(os.path.join(root, path), "rb") as file:
            digest.update(path.encode() + file.read())
    kept = os.path.join(WORK, f"sites-{digest.hexdigest()[:16]}.json")
    if os.path.exists(kept):
        with open(kept, encoding="utf-8") as file:
            return [places.Site(*s[:4], tuple(places.Edit(*e) for e in s[4])) for s in json.load(file)]
    sources = [p for p in run("git", "ls-files", "*.cpp", cwd=root).split() if room_of(p)]
    arguments = ["-x", "c++", "-std=c++20", "--target=x86_64-w64-mingw32", "-nostdinc++", "-I" + root,
                 "-DUNICODE", "-D_UNICODE", "-DNOMINMAX", "-DWIN32_LEAN_AND_MEAN", "-DWINVER=0x0601",
                 "-D_WIN32_WINNT=0x0601", "-Wno-everything"]
    # The compiler's own headers are libclang's.
    own = sorted(glob.glob("/usr/lib/llvm-*/lib/clang/*/include"))[-1]
    arguments += ["-isystem" + folder for folder in [own, *compiler_folders()]]
    # Once for the named numbers, which may be used before their own file is read.
    finder = places.Finder(root)
    for path in sources:
        finder.read(path, arguments)
    for path in sources:
        finder.read(path, arguments)
    found = [site for site in finder.all() if room_of(site.path)]
    with open(kept, "w", encoding="utf-8") as file:
        json.dump(found, file)
    return found


# A seeded choice, each room by its share but none with less than a twentieth. A site that was chosen stays chosen while
# others come and go.
def choose(sites, count, seed, only):
    seen = {}
    ranked = []
    for site in sites:
        if not re.search(only, site.path):
            continue
        name = f"{seed}|{site.path}|{line_of(site)}|{site.words}"
        seen[name] = seen.get(name, 0) + 1
        ranked.append((hashlib.sha256(f"{name}|{seen[name]}".encode()).digest(), site))
    ranked.sort(key=lambda entry: entry[0])
    chosen = []
    for room in ROOMS:
        found = [site for _, site in ranked if room_of(site.path) == room]
        chosen += places.without_overlap(found)[:max(count // 20, round(count * len(found) / len(ranked)))]
    return places.without_overlap(chosen)


def write(path, data):
    if os.path.exists(path):
        with open(path, "rb") as file:
            if file.read() == data:
                return
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(data)


# Brings the copy of the project up to date, with the changes written in.
def lay_out(sites, numbers):
    woven = places.weave(ROOT, sites, numbers)
    listed = run("git", "ls-files", "-co", "--exclude-standard", "-z", cwd=ROOT).split("\0")
    wanted = set()
    for path in filter(None, listed):
        source = os.path.join(ROOT, path)
        if os.path.isdir(source) or not os.path.exists(source):
            continue
        with open(source, "rb") as file:
            data = file.read()
        if path == "CMakeLists.txt":
            data = data.replace(b"-Wextra -Wconversion -Werror", b"-w -Wno-narrowing")
        elif path == "tests/support/test_main.cpp":
            with open(os.path.join(HERE, "listener.cpp"), "rb") as file:
                data += file.read()
        data = woven.get(path, data)
        write(os.path.join(TREE, path), data)
        if os.access(source, os.X_OK):
            os.chmod(os.path.join(TREE, path), 0o755)
        wanted.add(path)
    with open(os.path.join(HERE, "active.cpp"), "rb") as file:
        write(os.path.join(TREE, "platform/desktop/active_change.cpp"), file.read())
    wanted.add("platform/desktop/active_change.cpp")
    for folder, folders, files in os.walk(TREE):
        if folder == TREE:
            folders[:] = [f for f in folders if f != "build"]
        for name in files:
            if os.path.relpath(os.path.join(folder, name), TREE) not in wanted:
                os.remove(os.path.join(folder, name))


# Builds the tests; leaves out the changes that the compiler refuses. Returns those that are in.
def build(sites):
    numbers = list(range(1, len(sites) + 1))
    while True:
        lay_out(sites, numbers)
        with open(os.path.join(WORK, "build.log"), "w", encoding="utf-8") as log:
            subprocess.run(["cmake", "--preset", "desktop"], cwd=TREE, check=True, stdout=log, stderr=log)
        built = subprocess.run(["cmake", "--build", "--preset", "desktop", "--", "-k", "0", *EXECUTABLES, "vantor"],
                               cwd=TREE, text=True, capture_output=True)
        with open(os.path.join(WORK, "build.log"), "a", encoding="utf-8") as log:
            log.write(built.stdout + built.stderr)
        if built.returncode == 0:
            return dict(zip(numbers, sites))
        wrong = set(re.findall(r"^(?:\S*/mutants/tree/|(?:\.\./)*)([\w/]+\.(?:cpp|h)):(\d+):\d+: error",
                               built.stdout + built.stderr, re.M))
        lines = {(path, int(line)) for path, line in wrong}
        refused = set()
        for number, site in zip(numbers, sites):
            for edit in site.edits:
                with open(os.path.join(ROOT, edit.path), "rb") as file:
                    data = file.read()
                first = data[:edit.start].count(b"\n") + 1
                last = first + data[edit.start:edit.end].count(b"\n")
                if any(path == edit.path and first <= line <= last for path, line in lines):
                    refused.add(number)
        if not refused:
            say(built.stdout[-4000:])
            sys.exit("mutate: the changed program could not be built")
        say(f"{len(refused)} changes are none for the compiler and are left out")
        kept = [(n, s) for n, s in zip(numbers, sites) if n not in refused]
        numbers, sites = [n for n, _ in kept], [s for _, s in kept]


class Device:
    """A device with a screen, in surroundings in which nothing but the copy's build folder can be written."""

    def __init__(self, number):
        self.folder = os.path.join(TREE, "build", f"test-device-{number}")
        self.process = None

    def start(self):
        build_folder = os.path.join(TREE, "build")
        if not os.path.isdir(self.folder):
            subprocess.run([os.path.join(TREE, "tools/device/make_device"), "--fresh", "--device", self.folder,
                            "--screen", "480x640"], check=True, stdout=subprocess.DEVNULL)
        self.process = subprocess.Popen(
            ["bwrap", "--ro-bind", "/", "/", "--dev", "/dev", "--proc", "/proc", "--tmpfs", "/tmp", "--bind",
             build_folder, build_folder, "--bind", WORK, WORK, "--unshare-pid", "--unshare-net", "--die-with-parent",
             os.path.join(TREE, "tools/device/with_device"), "--device", self.folder, "--screen", "480x640", "--",
             "bash", "-c", 'while read -r line; do eval "$line" </dev/null; echo "@done $?"; done'],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
            cwd=TREE)

    def stop(self):
        if self.process:
            self.process.kill()
            self.process.wait()
            self.process = None

    # Runs tests of an executable; returns the exit code (124 when they took too long) and what was printed.
    def tests(self, executable, names, variables, seconds):
        for attempt in range(3):
            if self.process is None:
                self.start()
            settings = " ".join(f"{name}='{value}'" for name, value in variables.items())
            command = f"env {settings} timeout -k 3 {seconds} tools/device/in_device " \
                      f"build/desktop/tests/{executable}.exe --gtest_brief=1 --gtest_fail_fast " \
                      f"--gtest_filter='{':'.join(names)}'\n"
            lines = []
            try:
                self.process.stdin.write(command)
                self.process.stdin.flush()
                for line in self.process.stdout:
                    if line.startswith("@done "):
                        code = int(line.split()[1])
                        if code in (124, 137):
                            self.stop()
                        return code, "".join(lines)
                    lines.append(line)
            except BrokenPipeError:
                pass
            self.stop()
        raise RuntimeError("the device did not start: " + "".join(lines))


# All tests of ctest as (executable, name), with the filters that choose what they run.
def list_suites():
    suites = {}
    told = json.loads(run("ctest", "--test-dir", os.path.join(TREE, "build/desktop"), "--show-only=json-v1"))
    for test in told["tests"]:
        executable, _, suite = test["name"].partition(".")
        command = test.get("command", [])
        if executable in EXECUTABLES and suite and not any(part.endswith("on_screen") for part in command):
            chosen = next(part for part in command if part.startswith("--gtest_filter="))
            suites[(executable, suite)] = chosen.partition("=")[2].split(":")
    return suites


def in_parallel(devices, jobs, work):
    pending = queue.Queue()
    for job in jobs:
        pending.put(job)
    failures = []

    def worker(device):
        try:
            while not failures:
                work(device, pending.get_nowait())
        except queue.Empty:
            pass
        except BaseException as error:  # told by the thread that waits
            failures.append(error)
        finally:
            device.stop()

    threads = [threading.Thread(target=worker, args=(device,)) for device in devices]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    if failures:
        raise failures[0]


# Runs everything once without a change. Returns for each of ctest's tests those in it: their time and the changes they
# come by.
def look(devices, suites):
    # Drive z: of a device for tests is the project's folder.
    folder = os.path.join(TREE, "build", "hits")
    covered = {}

    def one(device, suite):
        executable, name = suite
        own = os.path.join(folder, executable, name)
        shutil.rmtree(own, ignore_errors=True)
        os.makedirs(own)
        code, text = device.tests(executable, suites[suite],
                                  {"VANTOR_MUTANT_FOLDER": "Z:\\" + os.path.relpath(own, TREE).replace("/", "\\")}, 300)
        if code != 0:
            say(f"{executable}.{name} fails without a change ({code}) and is left out:\n{text[-1500:]}")
            return
        tests = {}
        for file in os.listdir(own):
            with open(os.path.join(own, file), "rb") as hits:
                data = hits.read()
            tests[file.replace("~", "/")] = (int.from_bytes(data[-4:], "little"),
                                             {i for i, hit in enumerate(data[:-4]) if hit})
        covered[suite] = tests

    in_parallel(devices, suites, one)
    return covered


# Tries one change. Returns the test that noticed it, or None, and how much of what covers it was run.
def attempt(device, number, covered, cap):
    candidates = []
    for (executable, suite), tests in covered.items():
        reached = {name: ms for name, (ms, hits) in tests.items() if number in hits}
        if reached:
            breadth = len(set().union(*(hits for _, hits in tests.values())))
            candidates.append((sum(reached.values()) * breadth, executable, suite, reached))
    candidates.sort(key=lambda c: c[0])
    total = sum(len(c[3]) for c in candidates)
    spent = ran = 0
    for _, executable, suite, reached in candidates:
        seconds = sum(reached.values()) / 1000
        if spent and spent + seconds > cap:
            continue
        spent += seconds + 1
        ran += len(reached)
        code, text = device.tests(executable, list(reached), {"VANTOR_MUTANT": number}, int(seconds * 4 + 30))
        if code == 0:
            continue
        found = FAILED.search(text)
        test = (found.group(1) or found.group(2)) if found else next(iter(reached))
        # What fails without the change as well says nothing about it.
        again = device.tests(executable, [test], {}, int(seconds * 4 + 30))[0]
        if again == 0:
            return f"{executable}: {test}" + (" (ran out of time)" if code in (124, 137) else ""), ran, total
        say(f"{executable} {test} fails without a change as well ({again})")
    return None, ran, total


# Reasons why a change makes the same program: path | line of code | change | reason.
def read_known():
    known = {}
    with open(os.path.join(HERE, "known.txt"), encoding="utf-8") as file:
        for line in file:
            if line.strip() and not line.startswith("#"):
                path, rest = line.strip().split(" | ", 1)
                # Code may have the sign itself.
                rest, reason = rest.rsplit(" | ", 1)
                code, words = rest.rsplit(" | ", 1)
                known[(path, code, words)] = reason
    return known


def report(sites, results, out):
    known = read_known()
    rows = []
    counts = {room: [0, 0, 0] for room in ROOMS}
    for number, site in sorted(sites.items()):
        result = results.get(str(number))
        if result is None:
            continue
        count = counts[room_of(site.path)]
        count[0] += 1
        if result["by"]:
            count[1] += 1
            continue
        reason = known.get((site.path, line_of(site), site.words))
        count[2] += reason is not None
        ran = f"{result['ran']} of {result['of']} tests that come by it were run"
        rows.append(f"{number:4} {site.path}:{site.line}: {site.words}\n     {line_of(site)}\n     "
                    f"{reason and 'the same program: ' + reason or ran}")
    lines = rows + [f"{'room':18}{'changes':>9}{'noticed':>9}{'the same':>9}{'missed':>8}{'noticed of the rest':>21}"]
    total = [sum(c[i] for c in counts.values()) for i in range(3)]
    for room, (tried, noticed, same) in [*counts.items(), ("all", total)]:
        share = f"{100 * noticed / (tried - same):.1f} %" if tried > same else "-"
        lines.append(f"{room:18}{tried:9}{noticed:9}{same:9}{tried - noticed - same:8}{share:>21}")
    text = "\n".join(lines) + "\n"
    print(text, file=out, end="")
    return total


def main():
    parser = argparse.ArgumentParser(prog="tests/mutate")
    parser.add_argument("--count", type=int, default=330)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only", default="")
    parser.add_argument("--cap", type=int, default=120)
    parser.add_argument("--devices", type=int, default=2)
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--report", action="store_true")
    parser.add_argument("--suites", default="")
    options = parser.parse_args()
    os.makedirs(WORK, exist_ok=True)

    start = time.time()
    chosen = choose(find_sites(ROOT), options.count, options.seed, options.only)
    say(f"{len(chosen)} changes chosen after {time.time() - start:.0f} s")
    # Results stay true as long as the changes do.
    stored = os.path.join(WORK, f"results-{options.seed}-{options.count}.json")
    keys = {(s.path, line_of(s), s.words, s.edits[0].start): s for s in chosen}
    results_by_key = {}
    if os.path.exists(stored):
        with open(stored, encoding="utf-8") as file:
            results_by_key = {tuple(k): v for k, v in json.load(file)}
    if options.again:
        results_by_key = {k: v for k, v in results_by_key.items() if v["by"]}
    key_of = {id(site): key for key, site in keys.items()}

    sites = dict(enumerate(chosen, 1))
    if not options.report:
        sites = build(chosen)
        say(f"built with {len(sites)} changes after {time.time() - start:.0f} s")
        devices = [Device(i) for i in range(options.devices)]
        suites = list_suites()
        covered = look(devices, {name: filters for name, filters in suites.items()
                                 if re.search(options.suites, ".".join(name))})
        say(f"looked at {len(covered)} suites after {time.time() - start:.0f} s")
        lock = threading.Lock()
        pending = [n for n, s in sites.items() if key_of[id(s)] not in results_by_key]

        def one(device, number):
            by, ran, total = attempt(device, number, covered, options.cap)
            with lock:
                site = sites[number]
                results_by_key[key_of[id(site)]] = {"by": by, "ran": ran, "of": total}
                say(f"{len(results_by_key)}/{len(sites)} {site.path}:{site.line} {site.words}: {by or 'MISSED'}")
                with open(stored + ".new", "w", encoding="utf-8") as file:
                    json.dump([[list(k), v] for k, v in results_by_key.items()], file)
                os.replace(stored + ".new", stored)

        in_parallel(devices, pending, one)
    results = {str(n): results_by_key.get(key_of[id(s)]) for n, s in sites.items()}
    with open(os.path.join(WORK, "report.txt"), "w", encoding="utf-8") as file:
        report(sites, results, file)
    tried, noticed, same = report(sites, results, sys.stdout)
    return 0 if noticed * 10 >= (tried - same) * 9 else 1


if __name__ == "__main__":
    sys.exit(main())
