"""Tests the commands ./run and ./test, the preparation of a machine, and the device, from outside."""

import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

REPOSITORY = pathlib.Path(__file__).resolve().parents[3]
PROGRAM_FOLDER = "drive_c/Program Files/Vantor"


# Names the programs that run in a device, from a shell.
LIST_PROGRAMS = (
    'for process in /proc/[0-9]*; do grep -qaz "^WINEPREFIX=DEVICE$" "$process/environ" 2>/dev/null && '
    "tr '\\0' ' ' <\"$process/cmdline\"; done; true"
)


def write_command(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text("#!/bin/bash\n" + text)
    path.chmod(0o755)


def processes_with(text):
    """The processes of this machine whose surroundings or command line hold the text."""
    found = []
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            content = (folder / "environ").read_bytes() + b"\0" + (folder / "cmdline").read_bytes()
        except OSError:
            continue
        if text.encode() in content and int(folder.name) != os.getpid():
            found.append(int(folder.name))
    return found


def copy_commands(repository):
    """Copies the commands; the template of the device is used as it is: the same tools would make the same, but slowly."""
    repository.mkdir()
    for name in ("run", "test", "package"):
        shutil.copy(REPOSITORY / name, repository)
    for name in (".ci", "tools/prepare", "tools/device"):
        shutil.copytree(REPOSITORY / name, repository / name)
    (repository / "tests/support").mkdir(parents=True)
    for name in ("with_devices", "last_words"):
        shutil.copy(REPOSITORY / "tests/support" / name, repository / "tests/support")
    build = repository / "build"
    build.mkdir()
    template = REPOSITORY / "build/device-template"
    if template.exists():
        (build / "device-template").symlink_to(template)


class CommandTest(unittest.TestCase):
    """Every test works on a copy of the commands in a folder with a blank in its path."""

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="vantor commands "))
        self.addCleanup(self.clean_up)
        self.repository = self.folder / "copy of it"
        copy_commands(self.repository)
        self.fakes = self.folder / "fakes"
        self.environment = {
            key: value
            for key, value in os.environ.items()
            if not key.startswith(("VANTOR_", "WINE")) and key not in ("DISPLAY", "WAYLAND_DISPLAY", "TZ")
        }
        self.environment["PATH"] = f"{self.fakes}:{os.environ['PATH']}"

    def clean_up(self):
        # Only a failed test leaves something running; what it left is known by its folder.
        for process in processes_with(str(self.folder)):
            try:
                os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                pass
        shutil.rmtree(self.folder, ignore_errors=True)

    def fake(self, name, text):
        write_command(self.fakes / name, text)

    def run_command(self, *words, **changes):
        environment = self.environment | changes
        return subprocess.run(
            words,
            cwd=self.folder,
            env=environment,
            text=True,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            timeout=120,
        )

    def assert_one_sentence(self, result, sentence):
        self.assertNotEqual(result.returncode, 0)
        self.assertIn(sentence, result.stderr)
        self.assertEqual(len(result.stderr.strip().splitlines()), 1, result.stderr)

    def assert_nothing_runs(self):
        deadline = time.monotonic() + 30
        while time.monotonic() < deadline and processes_with(str(self.folder)):
            time.sleep(0.05)
        self.assertEqual(processes_with(str(self.folder)), [])


class OptionTest(CommandTest):
    def setUp(self):
        super().setUp()
        for name in ("dpkg-query", "cmake"):
            self.fake(name, f"touch '{self.folder}/started'; exit 1\n")

    def test_help_explains_and_does_nothing(self):
        for command, words in (
            ("run", ["--screen", "--handheld", "--device", "--fresh", "--tour", "--into"]),
            ("test", ["-R", "ctest"]),
            ("package", ["vantor.cab", "vantor.zip", "--into"]),
        ):
            result = self.run_command(self.repository / command, "--help")
            self.assertEqual(result.returncode, 0)
            for word in words:
                self.assertIn(word, result.stdout)
            self.assertFalse((self.folder / "started").exists())

    def test_package_refuses_what_it_does_not_know(self):
        for words, sentence in ((["--cab"], "unknown option --cab"), (["--into"], "--into needs a value")):
            self.assert_one_sentence(self.run_command(self.repository / "package", *words), sentence)
            self.assertFalse((self.folder / "started").exists())

    def test_run_refuses_what_it_does_not_know(self):
        for words, sentence in (
            (["--screne"], "unknown option --screne"),
            (["picture"], "unknown option picture"),
            (["--screen"], "--screen needs a value"),
            (["--screen", "large"], "a screen size looks like 480x640, not large"),
            (["--screen", "0x640"], "a screen size looks like 480x640, not 0x640"),
            (["--device"], "--device needs a value"),
            (["--device", "a.txt"], "--device describes a device for --handheld"),
            (["--handheld", "--screen", "480x640"], "--screen is not for --handheld"),
            (["--handheld", "--device", "no such.txt"], "there is no description"),
            (["--language"], "--language needs a value"),
            (["--language", "german"], "there is no language german"),
            (["--language", "0413"], "there is no language 0413"),
        ):
            self.assert_one_sentence(self.run_command(self.repository / "run", *words), sentence)
            self.assertFalse((self.folder / "started").exists())

    def test_build_server_checks_the_sources_and_runs_the_tests(self):
        self.fake("cmake", "exit 0\n")
        for name in ("tools/prepare/prepare", "tools/checks/form", "tools/checks/tidy"):
            write_command(self.repository / name, f'echo "{name}"\n')
        write_command(self.repository / "test", 'echo "the tests, $*"; exit 4\n')
        result = self.run_command(self.repository / ".ci/run", "-R", "x")
        steps = [line for line in result.stdout.splitlines() if not line.startswith("Checking")]
        expected = ["tools/prepare/prepare", "tools/checks/form", "tools/checks/tidy", "the tests, --parallel 1 -R x"]
        self.assertEqual((steps, result.returncode), (expected, 4))
        for name in ("tools/checks/form", "tools/checks/tidy"):
            write_command(self.repository / name, "exit 3\n")
            result = self.run_command(self.repository / ".ci/run")
            self.assertNotEqual(result.returncode, 0)
            self.assertNotIn("the tests", result.stdout)
            write_command(self.repository / name, "exit 0\n")


class PrepareTest(CommandTest):
    def setUp(self):
        super().setUp()
        self.record = self.folder / "record"
        self.record.touch()
        (self.repository / "tools/prepare/packages.txt").write_text(
            "# all\nalpha  run  first\nbeta   run,test  second\ngamma  package  third\n"
        )
        self.fake("dpkg-query", "echo installed alpha\necho not-installed beta\necho installed gamma\nexit 1\n")
        self.fake("id", "echo 0\n")
        self.fake("df", "echo Avail; echo 90000\n")
        self.fake("apt-cache", "echo '  Candidate: 1.0'\n")
        self.fake(
            "apt-get",
            f'echo "$DEBIAN_FRONTEND $*" >>"{self.record}"\n'
            "[[ $* != *--assume-no* ]] || printf '%s\\n' '0 upgraded, 7 newly installed, 0 to remove' "
            "'Need to get 266 MB of archives.' 'After this operation, 1502 MB of additional disk space will be used.'\n",
        )
        self.fake("sudo", f'echo sudo >>"{self.record}"; exec "$@"\n')

    def prepare(self, *commands, **changes):
        return self.run_command(self.repository / "tools/prepare/prepare", *commands, **changes)

    def test_installs_only_what_is_missing(self):
        self.assertEqual(self.prepare().returncode, 0)
        lines = self.record.read_text().splitlines()
        self.assertEqual(len(lines), 3)
        self.assertTrue(lines[0].endswith(" update"))
        self.assertTrue(lines[1].endswith(" --assume-no --no-install-recommends install beta"))
        self.assertTrue(lines[2].startswith("noninteractive "))
        self.assertTrue(lines[2].endswith(" --yes --no-install-recommends install beta"))

    def test_installs_only_what_the_command_needs(self):
        self.fake("dpkg-query", "exit 1\n")
        for commands, packages in (
            (["run"], "alpha beta"),
            (["test"], "beta"),
            (["run", "package"], "alpha beta gamma"),
            ([], "alpha beta gamma"),
        ):
            self.record.write_text("")
            self.assertEqual(self.prepare(*commands).returncode, 0)
            self.assertTrue(self.record.read_text().endswith(f" install {packages}\n"), commands)

    def test_says_what_it_installs_and_how_large_that_is(self):
        self.assertEqual(
            self.prepare().stdout,
            "Installing beta\nWith what they need these are 7 packages: 266 MB to download, 1502 MB on the disk\n",
        )

    def test_knows_the_commands_by_their_names(self):
        self.assert_one_sentence(self.prepare("walk"), "no package is listed for: walk")

    def test_leaves_a_complete_machine_alone(self):
        self.fake("dpkg-query", "echo installed alpha\necho installed beta\necho installed gamma\n")
        result = self.prepare()
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        self.assertEqual(self.record.read_text(), "")

    def test_uses_sudo_only_when_not_root(self):
        self.fake("id", "echo 1000\n")
        self.assertEqual(self.prepare().returncode, 0)
        self.assertEqual(self.record.read_text().count("sudo"), 2)

    def path_without(self, *names):
        """A search path with everything the system has but the commands named."""
        tools = self.folder / "tools only"
        tools.mkdir()
        for source in ("/usr/bin", "/bin", "/usr/sbin", "/sbin"):
            for entry in os.scandir(source):
                link = tools / entry.name
                if entry.name not in names and not link.is_symlink():
                    link.symlink_to(entry.path)
        return f"{self.fakes}:{tools}"

    def test_needs_root_or_sudo(self):
        self.fake("id", "echo 1000\n")
        (self.fakes / "sudo").unlink()
        self.assert_one_sentence(self.prepare(PATH=self.path_without("sudo")), "needs root or sudo: beta")
        self.assertEqual(self.record.read_text(), "")

    def test_needs_a_system_with_apt(self):
        (self.fakes / "apt-get").unlink()
        self.assert_one_sentence(self.prepare(PATH=self.path_without("apt-get")), "needs Debian 12")

    def test_needs_disk_space(self):
        self.fake("df", "echo Avail; echo 300\n")
        self.assert_one_sentence(self.prepare(), "1977 MB of disk space in /usr, but only 300 MB")
        self.assertNotIn("--yes", self.record.read_text())

    def test_names_a_package_that_cannot_be_found(self):
        self.fake("apt-cache", "echo '  Candidate: (none)'\n")
        self.assert_one_sentence(self.prepare(), "the package beta cannot be found")
        self.assertNotIn("install", self.record.read_text())

    def test_tells_when_the_installation_fails(self):
        self.fake("apt-get", '[[ $* != *--yes* ]]\n')
        self.assert_one_sentence(self.prepare(), "could not be installed: beta")

    def test_every_package_is_listed_with_its_reason(self):
        lines = (REPOSITORY / "tools/prepare/packages.txt").read_text().splitlines()
        packages = [line.split(None, 2) for line in lines if line.strip() and not line.startswith("#")]
        self.assertIn("wine64", [words[0] for words in packages])
        self.assertEqual([words for words in packages if len(words) < 3], [])
        named = {command for words in packages for command in words[1].split(",")}
        self.assertEqual(named, {"run", "tour", "handheld", "package", "test"})


def make_stand_in(test_class):
    """Compiles the program that stands in for vantor.exe, for all tests of a class."""
    test_class.common = pathlib.Path(tempfile.mkdtemp(prefix="vantor stand-in "))
    test_class.addClassCleanup(shutil.rmtree, test_class.common, ignore_errors=True)
    test_class.program = test_class.common / "stand in.exe"
    source = pathlib.Path(__file__).parent / "stand_in.cpp"
    compiler = "x86_64-w64-mingw32-g++-posix"
    subprocess.run(
        [compiler, "-std=c++20", "-municode", "-static", source, "-o", test_class.program, "-lgdi32"], check=True
    )


class ProgramTest(unittest.TestCase):
    """What a program meets in a device. One running device serves all of these tests."""

    @classmethod
    def setUpClass(cls):
        make_stand_in(cls)
        cls.repository = cls.common / "copy of it"
        copy_commands(cls.repository)
        cls.product = cls.repository / "build/desktop/vantor.exe"
        cls.product.parent.mkdir()
        cls.device = cls.repository / "build/test-device"
        tools = cls.repository / "tools/device"
        subprocess.run([tools / "make_device", "--device", cls.device], check=True, stdout=subprocess.DEVNULL)
        holder = subprocess.Popen(
            [tools / "with_device", "--device", cls.device, "bash", "-c", 'echo "$DISPLAY"; exec sleep 600'],
            stdout=subprocess.PIPE,
            text=True,
        )
        cls.addClassCleanup(holder.stdout.close)
        cls.addClassCleanup(holder.wait)
        cls.addClassCleanup(holder.terminate)
        # Where the tester's own builds go is no matter of the copy.
        own = {key: value for key, value in os.environ.items() if key != "VANTOR_BUILD_FOLDER"}
        cls.environment = own | {"DISPLAY": holder.stdout.readline().strip(), "VANTOR_DEVICE": str(cls.device)}

    def in_device(self, *words):
        return subprocess.run(
            [self.repository / "tools/device/in_device", *words],
            env=self.environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            timeout=20,
        )

    def test_exit_codes_pass_through(self):
        for code in (0, 1, 42):
            self.assertEqual(self.in_device(self.program, "exit", str(code)).returncode, code)

    def test_a_crash_ends_at_once(self):
        # The low byte of STATUS_ACCESS_VIOLATION.
        self.assertEqual(self.in_device(self.program, "crash").returncode, 5)

    def test_output_and_errors_arrive_apart(self):
        result = self.in_device(self.program, "speak")
        self.assertEqual(result.stdout.splitlines(), ["to output"])
        self.assertEqual(result.stderr.splitlines(), ["to errors"])

    def test_a_program_sees_the_device(self):
        shutil.copy(self.program, self.product)
        result = self.in_device(self.product, "a word", 'with "quotes"')
        lines = result.stdout.splitlines()
        self.assertEqual(lines[0], "folder C:\\")
        self.assertEqual(lines[1], r"program Z:\build\desktop\vantor.exe")
        self.assertEqual(lines[2], r"product C:\Program Files\Vantor\vantor.exe there")
        self.assertEqual(lines[3], "drives %x" % (1 << 2 | 1 << 25))
        self.assertEqual(lines[4:6], ["date 3/9/2026", "time 2:05 PM"])
        self.assertEqual(lines[6:], ["word a word", 'word with "quotes"'])

    def test_a_newer_product_replaces_the_installed_one(self):
        for content in (b"old", b"new"):
            time.sleep(0.02)
            self.product.write_bytes(content)
            self.assertEqual(self.in_device(self.program, "exit", "0").returncode, 0)
            self.assertEqual((self.device / PROGRAM_FOLDER / "vantor.exe").read_bytes(), content)

    def test_the_language_packs_stand_beside_the_installed_product(self):
        pack = self.product.with_name("vantor.exe.0407.ui")
        self.product.write_bytes(b"product")
        for content in (b"alt", b"neu"):
            time.sleep(0.02)
            pack.write_bytes(content)
            self.assertEqual(self.in_device(self.program, "exit", "0").returncode, 0)
            self.assertEqual((self.device / PROGRAM_FOLDER / pack.name).read_bytes(), content)
        pack.unlink()


class DeviceTest(CommandTest):
    @classmethod
    def setUpClass(cls):
        make_stand_in(cls)

    def setUp(self):
        super().setUp()
        self.build = self.repository / "build"
        self.device = self.build / "test-device"
        self.make_device("--device", self.device)

    def make_device(self, *words):
        result = self.run_command(self.repository / "tools/device/make_device", *words)
        self.assertEqual(result.returncode, 0, result.stderr)

    def with_device(self, *words, **changes):
        return self.run_command(self.repository / "tools/device/with_device", *words, **changes)

    def in_device(self, *words):
        return self.with_device(self.repository / "tools/device/in_device", *words)

    def test_a_program_that_starts_the_system_does_not_hold_the_pipes(self):
        # A reader that waits for the services ends only after them.
        script = (
            "WINEPREFIX=$VANTOR_DEVICE /usr/lib/wine/wineserver64 -k; "
            '"$0" "$1" speak 2>&1 | cat; ' + LIST_PROGRAMS.replace("DEVICE", "$VANTOR_DEVICE")
        )
        result = self.with_device("bash", "-c", script, self.repository / "tools/device/in_device", self.program)
        self.assertEqual(sorted(result.stdout.split("\n")[:2]), ["to errors", "to output"])
        self.assertIn("services.exe", result.stdout)

    def test_screens_decide_the_resolution(self):
        for screen, resolution in (("240x320", 96), ("800x480", 192)):
            self.make_device("--device", self.device, "--screen", screen)
            result = self.with_device("--screen", screen, self.repository / "tools/device/in_device", self.program, "window")
            self.assertIn(f"window 1, screen {screen}, {resolution} dots per inch", result.stdout)

    def test_the_memory_of_its_programs_lies_where_it_always_does(self):
        result = self.with_device("cat", "/proc/self/personality")
        self.assertTrue(int(result.stdout, 16) & 0x40000, result.stdout)

    def test_says_what_is_missing(self):
        command = self.repository / "tools/device/in_device"
        self.assert_one_sentence(self.run_command(command, self.program), "there is no display")
        self.assert_one_sentence(self.run_command(command), "no program given")
        self.assert_one_sentence(self.run_command(command, "--window"), "unknown option --window")
        self.assert_one_sentence(self.run_command(command, "./no.exe", DISPLAY=":0"), "there is no program ./no.exe")
        self.assert_one_sentence(
            self.run_command(command, "--device", "nowhere", self.program, DISPLAY=":0"), "no device in nowhere"
        )

    def test_a_device_is_kept_and_a_fresh_one_is_new(self):
        note = self.device / "drive_c/Temp/note.txt"
        note.touch()
        self.make_device("--device", self.device)
        self.assertTrue(note.exists())
        self.make_device("--device", self.device, "--fresh")
        self.assertFalse(note.exists())

    def test_a_template_alone_makes_no_device(self):
        template = self.build / "device-template"
        self.assertEqual(len(os.listdir(template)), 1)
        self.make_device("--device", self.build / "another", "--template")
        self.assertEqual(len(os.listdir(template)), 1)
        self.assertFalse((self.build / "another").exists())

    def test_a_fresh_device_is_as_the_first_one(self):
        def described():
            entries = {}
            for path in self.device.rglob("*"):
                about = path.lstat()
                marks = {name: os.getxattr(path, name, follow_symlinks=False)
                         for name in os.listxattr(path, follow_symlinks=False)}
                content = (
                    os.readlink(path) if path.is_symlink() else path.read_bytes() if path.is_file() else None
                )
                # The resolution is written into the registry.
                written = None if path.suffix == ".reg" else about.st_mtime_ns
                entries[str(path)] = (about.st_mode, written, marks, content)
            # It tells when the device was made.
            del entries[str(self.device / ".template")]
            del entries[str(self.device / "dosdevices")]
            del entries[str(self.device / "dosdevices/z:")]
            return entries

        self.make_device("--device", self.device, "--fresh")
        before = described()
        documents = self.device / "drive_c/My Documents"
        entries = sorted(entry for entry in documents.rglob("*") if entry.is_file())
        self.assertGreater(len(entries), 5)
        kept = entries[2].stat()
        entries[0].unlink()
        entries[1].write_text("other")
        # The same size, the same date.
        entries[2].write_bytes(bytes(kept.st_size))
        os.utime(entries[2], ns=(kept.st_atime_ns, kept.st_mtime_ns))
        entries[3].rename(documents / "renamed")
        entries[4].chmod(0o444)
        (self.device / "drive_c/New/Inside").mkdir(parents=True)
        (self.device / "drive_c/New/Inside/file").touch()
        shutil.rmtree(documents / "My Pictures")
        os.utime(self.device / "drive_c/windows/Fonts", (1, 1))
        (self.device / "drive_c/Temp").chmod(0o700)
        # Marked, and written into after that.
        os.setxattr(self.device / "drive_c/Program Files", "user.DOSATTRIB", b"0x2")
        (self.device / "drive_c/Program Files/new.txt").touch()
        self.in_device(self.program)
        self.make_device("--device", self.device, "--fresh")
        after = described()
        self.assertEqual([path for path in before.keys() | after.keys() if before.get(path) != after.get(path)], [])

    def test_a_device_leads_nowhere(self):
        # Wine makes links when it starts.
        result = self.with_device("find", self.device, "-type", "l", "-printf", "%P %l\n")
        self.assertEqual(
            sorted(result.stdout.splitlines()), ["dosdevices/c: ../drive_c", f"dosdevices/z: {self.repository}"]
        )

    def test_only_a_device_for_tests_has_a_second_drive(self):
        self.make_device("--device", self.build / "device")
        self.assertEqual(os.listdir(self.build / "device/dosdevices").count("z:"), 0)
        self.assertEqual((self.device / "dosdevices/z:").resolve(), self.repository.resolve())

    def test_two_screens_stand_side_by_side(self):
        script = 'echo "$DISPLAY"; exec "$0/tools/device/with_device" --device "$0/build/other" -- printenv DISPLAY'
        self.make_device("--device", self.build / "other")
        result = self.with_device("bash", "-c", script, self.repository)
        outer, inner = result.stdout.split()
        self.assertNotEqual(outer, inner)

    def test_nothing_is_left_running(self):
        script = '"$0" "$1" stay & read -r; exit 3'
        command = subprocess.Popen(
            [self.repository / "tools/device/with_device", "bash", "-c", script, self.repository / "tools/device/in_device", self.program],
            env=self.environment,
            stdin=subprocess.PIPE,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        )
        self.wait_until_runs(b"stand in.exe")
        command.communicate(b"\n", timeout=60)
        self.assertEqual(command.returncode, 3)
        self.assert_nothing_runs()

    def runs(self, name):
        """Whether a program of this name runs for the device; commands that are to start it name it as well, but later."""
        for process in processes_with(str(self.folder)):
            try:
                if name in pathlib.Path(f"/proc/{process}/cmdline").read_bytes().split(b"\0")[0]:
                    return True
            except OSError:
                pass
        return False

    def wait_until_runs(self, name):
        deadline = time.monotonic() + 60
        while time.monotonic() < deadline and not self.runs(name):
            time.sleep(0.01)
        self.assertTrue(self.runs(name), name)

    def test_an_interruption_leaves_nothing_running(self):
        # It may come while the screen, the device or its desktop starts, or once the program runs.
        for number, code, last in (
            (signal.SIGINT, 130, b"Xvfb"),
            (signal.SIGTERM, 143, b"Xvfb"),
            (signal.SIGINT, 130, b"wineserver"),
            (signal.SIGTERM, 143, b"explorer.exe"),
            (signal.SIGINT, 130, b"stand in.exe"),
            (signal.SIGTERM, 143, b"stand in.exe"),
        ):
            command = subprocess.Popen(
                [self.repository / "tools/device/with_device", self.repository / "tools/device/in_device", self.program, "stay"],
                env=self.environment,
                preexec_fn=lambda: signal.signal(signal.SIGINT, signal.default_int_handler),
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
                start_new_session=True,
            )
            self.wait_until_runs(last)
            os.killpg(command.pid, number)
            self.assertEqual(command.wait(timeout=60), code, last)
            self.assert_nothing_runs()

    def test_a_screen_that_does_not_start_is_told(self):
        self.fake("Xvfb", "exit 1\n")
        self.assert_one_sentence(self.with_device("true"), "the screen (Xvfb) did not start")


class WholeCommandTest(DeviceTest):
    """./run and ./test from end to end, with a stand-in for the compiler's part."""

    def setUp(self):
        super().setUp()
        self.environment["VANTOR_TEST_DEVICES"] = "2"
        write_command(self.repository / "tools/prepare/prepare", 'echo "prepared $*"\n')
        self.fake(
            "cmake",
            '[[ $1 != --build ]] || { echo "built $3"; [[ ! -e broken || $3 != "$(cat broken)" ]] || exit 1; }\n'
            f"mkdir -p build/desktop; cp -u '{self.program}' build/desktop/vantor.exe\n",
        )
        self.fake(
            "ctest",
            'echo "screens $VANTOR_DISPLAY_0 and $VANTOR_DISPLAY_1"\n'
            'echo "devices ${VANTOR_DEVICE_0##*/} and ${VANTOR_DEVICE_1##*/}"; echo "ctest $*"; exit 8\n',
        )
        # The steps of the real tour belong to the real program.
        write_command(
            self.repository / "tools/device/tour",
            'screen=$1 into=$2; shift 2; echo "$screen $*" >"$into/visited_$screen.txt"\n',
        )
        write_command(self.repository / "tools/device/film", 'echo filmed >"$2/filmed_$1.txt"\n')

    def test_test_builds_both_and_keeps_the_result(self):
        result = self.run_command(self.repository / "test", "-R", "some name")
        self.assertEqual(result.returncode, 8, result.stderr)
        self.assertIn("prepared", result.stdout)
        self.assertIn("built desktop", result.stdout)
        self.assertIn("built handheld", result.stdout)
        screens, devices, ctest = result.stdout.splitlines()[-3:]
        first, second = re.fullmatch(r"screens (:\d+) and (:\d+)", screens).groups()
        self.assertNotEqual(first, second)
        self.assertEqual(devices, "devices test-device-0 and test-device-1")
        table = self.build / "devices.json"
        self.assertEqual(
            ctest,
            f"ctest --test-dir build/desktop --resource-spec-file {table} --parallel 3 --output-on-failure -R some name",
        )
        (listed,) = json.loads(table.read_text())["local"]
        self.assertEqual(listed["devices"], [{"id": "0", "slots": 1}, {"id": "1", "slots": 1}])
        self.assert_nothing_runs()

    def test_test_ends_its_tests_when_it_is_ended(self):
        self.fake("ctest", "exec sleep 4321\n")
        command = subprocess.Popen(
            [self.repository / "test"],
            env=self.environment,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            start_new_session=True,
        )
        deadline = time.monotonic() + 60
        while not processes_with("sleep\x004321") and time.monotonic() < deadline:
            time.sleep(0.05)
        self.assertTrue(processes_with("sleep\x004321"))
        os.kill(command.pid, signal.SIGTERM)
        self.assertEqual(command.wait(timeout=20), 143)
        self.assertFalse(processes_with("sleep\x004321"))
        self.assert_nothing_runs()

    def test_test_tells_what_was_reached_before_the_summary(self):
        self.fake(
            "ctest",
            "mkdir -p build/desktop/reach; echo 'the report' >build/desktop/reach/report.txt\n"
            "echo a test; echo '100% tests passed'; echo the time\n",
        )
        result = self.run_command(self.repository / "test")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(
            result.stdout.splitlines()[-4:], ["a test", "the report", "100% tests passed", "the time"]
        )

    def test_test_ends_with_what_failed_tests_have_said(self):
        log = "build/desktop/Testing/Temporary/LastTest.log"
        self.fake(
            "ctest",
            f"mkdir -p {os.path.dirname(log)}; cat >{log} <<'LOG'\n"
            "1/2 Test: good\nOutput:\n-----\nall is well\n<end of output>\nTest Passed.\n"
            "2/2 Test: bad\nOutput:\n-----\n[ RUN      ] One.Two\nit was red\n\n<end of output>\nTest Failed.\n"
            "LOG\necho '50% tests passed'; exit 8\n",
        )
        result = self.run_command(self.repository / "test")
        self.assertEqual(result.returncode, 8, result.stderr)
        self.assertEqual(
            result.stdout.splitlines()[-4:], ["50% tests passed", "", "What bad has said:", "  it was red"]
        )

    def test_test_stops_when_a_build_fails(self):
        for preset in ("desktop", "handheld"):
            (self.repository / "broken").write_text(preset)
            result = self.run_command(self.repository / "test")
            self.assert_one_sentence(result, f"the {preset} build failed")
            self.assertNotIn("ctest", result.stdout)

    def test_building_needs_disk_space(self):
        self.fake("df", "echo Avail; echo 200\n")
        for command in ("run", "test"):
            result = self.run_command(self.repository / command)
            self.assert_one_sentence(result, "building needs 1500 MB of disk space, but only 200 MB")

    def test_run_takes_the_tour_without_a_display(self):
        result = self.run_command(self.repository / "run", "--into", "here we go", "--", "a word")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("There is no display", result.stdout)
        for screen in ("240x320", "480x640", "800x480"):
            text = (self.folder / f"here we go/visited_{screen}.txt").read_text()
            self.assertEqual(text, f"{screen} 0409 a word\n")
            self.assertEqual((self.folder / f"here we go/filmed_{screen}.txt").exists(), screen == "480x640")
        self.assertIn("prepared run tour\n", result.stdout)
        self.assert_nothing_runs()

    def test_run_takes_the_tour_when_the_display_cannot_be_opened(self):
        result = self.run_command(self.repository / "run", "--screen", "320x240", DISPLAY=":54321")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("The display :54321 cannot be opened", result.stdout)
        self.assertIn("prepared run\n", result.stdout)
        self.assertIn("prepared tour\n", result.stdout)
        self.assertEqual(os.listdir(self.build / "tour"), ["visited_320x240.txt"])

    def test_run_opens_a_window_and_leaves_nothing_running(self):
        script = '"$0/run" --screen 240x320 -- window; echo "code $?"; ' + LIST_PROGRAMS.replace("DEVICE", "$0/build/device")
        result = self.with_device("--screen", "1024x768", "bash", "-c", script, self.repository)
        self.assertIn("window 1, screen 240x320, 96 dots per inch", result.stdout)
        self.assertIn("prepared run\n", result.stdout)
        self.assertEqual(result.stdout.splitlines()[-1], "code 0")
        # A new device begins where there is something to see.
        self.assertIn(r'"path"="\\My Documents"', (self.build / "device/system.reg").read_text())
        self.assert_nothing_runs()


# The cases of the device are tested once, in their own class.
for name in [name for name in dir(DeviceTest) if name.startswith("test_")]:
    setattr(WholeCommandTest, name, None)


if __name__ == "__main__":
    unittest.main()
