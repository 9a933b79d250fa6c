"""Every command that writes files: a run that exits with an error, or is ended by a closed pipe, leaves
each earlier file as it was and adds none; a standard error that cannot be written changes nothing."""

import fcntl
import os
import re
import resource
import signal
import subprocess
import unittest

import command_line
from command_line import DONE, EXAMPLES, FAILED, INCOMPLETE, CommandTest, main
from outputs_test import ENDED_BY_SIGPIPE, FULL

DEMO = EXAMPLES / "demo.fabscan.jsonl"
ADAPTER = "0x5a1e0c0000000600"
CACHE = EXAMPLES.parent / "fuzz/corpus/cache_reader/two_switches_adapter_router.cache"

# Each writes into the directory out, and prints results.
COMMANDS = {
    "dump": ("dump", DEMO, "--prefix", "Old", "--output-dir", "out"),
    "dump --buildable": ("dump", DEMO, "--prefix", "Old", "--buildable", "--guid", ADAPTER,
                         "--output", "out/old.cpp"),
    "dump --one-per-model": ("dump", DEMO, "--prefix", "Old", "--one-per-model", "--output-dir",
                             "out"),
    "import": ("import", CACHE, "--output", "out/imported.jsonl"),
    "merge": ("merge", DEMO, DEMO, "--output", "out/merged.jsonl.zst"),
    "anonymise": ("anonymise", DEMO, "--key", "a key", "--output", "out/shared.jsonl"),
    "check --html": ("check", DEMO, "--html", "out/check.html"),
    "scaffold --prefix": ("scaffold", "--prefix", "Old", "--output-dir", "out"),
    "scaffold SNAPSHOT": ("scaffold", DEMO, "--prefix", "Old", "--output-dir", "out"),
}
ALL = {**COMMANDS, "export": ("export", DEMO, "--format", "ibnetdiscover", "--output",
                              "out/fabric.net")}
WITH_RESULTS = {**COMMANDS, "check --html --json": (*COMMANDS["check --html"], "--json")}


def files_below(folder):
    """The texts of all files, and the names of directories."""
    return {str(path.relative_to(folder)): path.read_bytes() if path.is_file() else None
            for path in folder.rglob("*")}


def comparable(files):
    """Without the memory address in a generated file."""
    return {name: text and b"\n".join(line for line in text.split(b"\n")
                                      if b"RedirectGID" not in line)
            for name, text in files.items()}


class EarlierFiles(CommandTest):
    def setUp(self):
        super().setUp()
        self.out = self.folder / "out"

    def run_with(self, arguments, stdout=subprocess.PIPE, stderr=subprocess.PIPE, close=(),
                 open_files=None):
        def prepare():
            signal.signal(signal.SIGPIPE, signal.SIG_DFL)
            for number in close:
                os.close(number)
            if open_files is not None:
                resource.setrlimit(resource.RLIMIT_NOFILE, (open_files, open_files))
        return subprocess.run([command_line._command, *map(str, arguments)], cwd=self.folder,
                              stdin=subprocess.DEVNULL, stdout=stdout, stderr=stderr,
                              preexec_fn=prepare, timeout=120, check=False)

    def empty(self):
        if self.out.exists():
            subprocess.run(["rm", "-r", self.out], check=True)

    def written_by(self, arguments):
        """The files of a run into an absent directory."""
        self.empty()
        run = self.run_with(arguments)
        self.assertIn(run.returncode, (DONE, INCOMPLETE), run.stderr)
        files = files_below(self.out)
        self.assertGreater(len(files), 0)
        return files

    def begin(self, files, forced):
        """Earlier files if they may be replaced; else an absent directory. Returns all there is."""
        self.empty()
        if forced:
            for name, text in files.items():
                path = self.out / name
                if text is not None:
                    path.parent.mkdir(parents=True, exist_ok=True)
                    path.write_text(f"earlier {name}\n")
        return files_below(self.folder)

    def for_each(self, commands, check):
        """Calls check(arguments, files, before), without and with --force."""
        for name, arguments in commands.items():
            files = self.written_by(arguments)
            for forced in ((), ("--force",)):
                with self.subTest(command=name, forced=forced):
                    check((*arguments, *forced), files, self.begin(files, forced))

    def assert_one_error(self, run, message):
        self.assertEqual((run.returncode, run.stderr.decode()),
                         (FAILED, f"fabscan: error: {message}\n"))

    def assert_last_error(self, run, message):
        """Warnings may precede it."""
        lines = run.stderr.decode().splitlines()
        self.assertEqual((run.returncode, lines[-1]), (FAILED, f"fabscan: error: {message}"))
        for line in lines[:-1]:
            self.assertRegex(line, "^fabscan: warning: ")

    def test_standard_output_is_a_full_device(self):
        def check(arguments, _, before):
            with open("/dev/full", "wb") as full:
                run = self.run_with(arguments, stdout=full)
            self.assert_last_error(run, f"standard output: cannot write: {FULL}")
            self.assertEqual(files_below(self.folder), before)
        self.for_each(WITH_RESULTS, check)

    def test_standard_output_is_closed(self):
        def check(arguments, _, before):
            run = self.run_with(arguments, close=[1])
            self.assert_last_error(run, "standard output: cannot write: Bad file descriptor; write "
                                        "elsewhere")
            self.assertEqual(files_below(self.folder), before)
        self.for_each(COMMANDS, check)

    def test_standard_output_is_a_closed_pipe(self):
        def check(arguments, _, before):
            ours, its = os.pipe()
            os.close(ours)
            run = self.run_with(arguments, stdout=its)
            os.close(its)
            self.assertEqual(run.returncode, ENDED_BY_SIGPIPE, run.stderr)
            self.assertNotIn(b"error", run.stderr)
            self.assertEqual(files_below(self.folder), before)
        self.for_each(WITH_RESULTS, check)

    def assert_usual(self, run, usual, files):
        self.assertEqual((run.returncode, run.stdout), (usual.returncode, usual.stdout))
        self.assertEqual(comparable(files_below(self.out)), comparable(files))

    def test_standard_error_cannot_be_written(self):
        """Messages are lost; status, results and files are the same."""
        def check(arguments, files, _):
            usual = self.run_with(arguments)
            ours, closed = os.pipe()
            os.close(ours)
            with open("/dev/full", "wb") as full:
                for more in ({"stderr": full}, {"stderr": closed}, {"close": [2]}):
                    self.begin(files, "--force" in arguments)
                    run = self.run_with((*arguments, "--verbose"), **more)
                    self.assert_usual(run, usual, files)
            os.close(closed)
        self.for_each(ALL, check)

    def test_standard_error_takes_some_bytes(self):
        """A pipe with little room that does not block."""
        def check(arguments, files, _):
            usual = self.run_with(arguments)
            for room in (40, 160, 200):
                self.begin(files, "--force" in arguments)
                ours, its = os.pipe()
                os.set_blocking(its, False)
                os.write(its, b"x" * (fcntl.fcntl(its, fcntl.F_GETPIPE_SZ) - room))
                run = self.run_with((*arguments, "--verbose"), stderr=its)
                os.close(ours)
                os.close(its)
                self.assert_usual(run, usual, files)
        self.for_each(ALL, check)

    def test_neither_can_be_written(self):
        def check(arguments, _, before):
            with open("/dev/full", "wb") as full:
                run = self.run_with((*arguments, "--verbose"), stdout=full, stderr=full)
            self.assertEqual(run.returncode, FAILED)
            self.assertEqual(files_below(self.folder), before)
        self.for_each(COMMANDS, check)

    @unittest.skipIf(os.environ.get("FABSCAN_SANITIZE"), "sanitizers open files too")
    def test_few_files_may_be_open(self):
        """Either the command fails, or it does all that it usually does."""
        def check(arguments, files, _):
            for limit in (4, 5, 6):  # with fewer, no library can be loaded
                before = self.begin(files, "--force" in arguments)
                run = self.run_with(arguments, open_files=limit)
                if run.returncode == FAILED:
                    self.assertEqual(files_below(self.folder), before, run.stderr)
                else:
                    self.assertIn(run.returncode, (DONE, INCOMPLETE), run.stderr)
                    self.assertEqual(comparable(files_below(self.out)), comparable(files))
        self.for_each(ALL, check)

    def test_one_file_exists(self):
        for name, arguments in ALL.items():
            files = self.written_by(arguments)
            for path, text in files.items():
                if text is None:
                    continue
                self.begin({path: text}, forced=True)
                before = files_below(self.folder)
                with self.subTest(command=name, file=path):
                    self.assert_one_error(self.run_with(arguments),
                                          f"out/{path}: exists; --force replaces it")
                    self.assertEqual(files_below(self.folder), before)

    def test_one_file_has_become_a_directory(self):
        for name, arguments in ALL.items():
            files = self.written_by(arguments)
            last = [path for path, text in files.items() if text is not None][-1]
            self.begin(files, forced=True)
            (self.out / last).unlink()
            (self.out / last).mkdir()
            before = files_below(self.folder)
            with self.subTest(command=name):
                self.assert_one_error(self.run_with((*arguments, "--force")),
                                      f"out/{last}: is a directory; specify a file in it")
                self.assertEqual(files_below(self.folder), before)

    def test_a_file_keeps_its_permissions(self):
        for name, arguments in ALL.items():
            files = self.written_by(arguments)
            for mode in (0o600, 0o400, 0o666):
                with self.subTest(command=name, mode=oct(mode)):
                    self.begin(files, forced=True)
                    paths = [path for path in self.out.rglob("*") if path.is_file()]
                    for path in paths:
                        path.chmod(mode)
                    self.run_with((*arguments, "--force"))
                    self.assertEqual(comparable(files_below(self.out)), comparable(files))
                    self.assertEqual({path.stat().st_mode & 0o777 for path in paths}, {mode})

    def test_the_files_in_place_are_named(self):
        """In a sticky directory, a user cannot replace the files of others."""
        if os.geteuid() != 0:
            self.skipTest("needs root to create the file of another user")
        for name in ("dump --one-per-model", "scaffold --prefix", "scaffold SNAPSHOT"):
            with self.subTest(command=name):
                files = self.written_by(COMMANDS[name])
                self.begin(files, forced=True)
                self.folder.chmod(0o777)
                names = [path for path, text in files.items() if text is not None]
                for path in self.out.rglob("*"):
                    os.chown(path, command_line.NOBODY, command_line.NOBODY)
                    if path.is_dir():
                        path.chmod(0o777)
                stuck = self.out / ("CMakeLists.txt" if "CMakeLists.txt" in names else names[0])
                self.out.chmod(0o1777)
                os.chown(stuck, 0, 0)
                stuck.chmod(0o666)
                before = files_below(self.out)
                run = self.run_command(*COMMANDS[name], "--force", as_nobody=True)
                self.assertEqual(run.returncode, FAILED)
                after = files_below(self.out)
                self.assertEqual(after.keys(), before.keys())
                changed = sorted(f"out/{path}" for path in before if before[path] != after[path])
                told = re.search(r"(\d+) of (\d+) files are in place(?:: (.*))?\n\Z", run.stderr)
                self.assertIsNotNone(told, run.stderr)
                self.assertEqual(int(told[2]), len(names))
                self.assertEqual(sorted(told[3].split(", ") if told[3] else []), changed)
                self.assertEqual(int(told[1]), len(changed))


if __name__ == "__main__":
    main()
