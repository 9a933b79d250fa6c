"""Promises of the command for system failures: the documented exit status and message, an unchanged
earlier output, no partial output, no temporary file left behind.

    faults_test.py COMMAND LIBRARY

LIBRARY is the compiled fault_injection.cpp; it makes the Nth call of a type fail.
"""

import errno
import fcntl
import os
import pathlib
import re
import signal
import socket
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))

import command_line
from earlier_files_test import ADAPTER, ALL, DEMO, comparable, files_below
from command_line import DONE, EXAMPLES, FAILED, INCOMPLETE, WRONG_USAGE, CommandTest, main, snapshot, switch

PARTIAL = EXAMPLES / "partial.fabscan.jsonl"
OUT = "mydev_generated.cpp"
EARLIER = "earlier\n"
LIBRARY = str(pathlib.Path(sys.argv.pop(2)).resolve())

DUMP = ("dump", PARTIAL, "--prefix", "MyDev", "--force")


class FaultyCommand:
    """A command with LIBRARY, loaded once; each run is forked just before main."""

    def __init__(self, arguments, folder, **settings):
        self.control, its_control = socket.socketpair()
        self.control.settimeout(120)
        self.outputs, its_outputs = zip(*(os.pipe() for _ in range(2)))
        for output in self.outputs:
            os.set_blocking(output, False)
            fcntl.fcntl(output, fcntl.F_SETPIPE_SZ, 1 << 20)  # read only after a run
        environment = dict(os.environ, LD_PRELOAD=LIBRARY,
                           FAULT_CONTROL=str(its_control.fileno()), **settings)
        self.process = subprocess.Popen(
            [command_line._command, *map(str, arguments)], cwd=folder, env=environment,
            stdin=subprocess.DEVNULL, stdout=its_outputs[0], stderr=its_outputs[1],
            pass_fds=[its_control.fileno()])
        its_control.close()
        for output in its_outputs:
            os.close(output)

    def run(self, at):
        """Returns the run, and whether the fault occurred."""
        self.control.sendall(b"%d" % at)
        status, reached = self.control.recv(32).split()
        stdout, stderr = map(self.read, self.outputs)
        returncode = os.waitstatus_to_exitcode(int(status))
        return subprocess.CompletedProcess([], returncode, stdout, stderr), reached == b"1"

    @staticmethod
    def read(output):
        try:
            return os.read(output, 1 << 20).decode()
        except BlockingIOError:
            return ""

    def close(self):
        self.control.close()
        self.process.wait(120)
        for output in self.outputs:
            os.close(output)


class FaultTest(CommandTest):
    def setUp(self):
        super().setUp()
        (self.folder / "out").mkdir()
        self.faulty_commands = {}

    def faulty_run(self, command, call, at, kind, onwards=False):
        """Returns the run, or None if there is no such call any more."""
        settings = {"FAULT_CALL": call, "FAULT_KIND": str(kind)}
        if onwards:
            settings["FAULT_ONWARDS"] = "1"
        key = (*command, *settings.items())
        if key not in self.faulty_commands:
            self.faulty_commands[key] = FaultyCommand(command, self.folder, **settings)
            self.addCleanup(self.faulty_commands[key].close)
        run, reached = self.faulty_commands[key].run(at)
        run.fault = f"{call} {at} meets {kind}: {run.stderr}"
        return run if reached else None

    def run_with_fault(self, call, at, kind, onwards=False, command=None):
        """The same, with an earlier file."""
        if (self.folder / "out").is_dir():
            (self.folder / "out" / OUT).write_text(EARLIER)
        return self.faulty_run(command or self.command, call, at, kind, onwards)

    def every_call(self, call, kind, **more):
        """Every run in which a call of this type failed."""
        for at in range(1, 100_000):
            run = self.run_with_fault(call, at, kind, **more)
            if run is None:
                self.assertGreater(at, 1, f"{call} is never called")
                return
            yield run

    def assert_one_error(self, run, status=FAILED):
        self.assertEqual(run.returncode, status, run.fault)
        self.assertRegex(run.stderr, r"\Afabscan: error: [^\n]+\n\Z", run.fault)
        self.assertNotIn("unexpected", run.stderr, run.fault)


class OneFileTest(FaultTest):
    """A dump of one small snapshot, which replaces an earlier file."""

    snapshot = PARTIAL

    def setUp(self):
        super().setUp()
        self.command = ("dump", self.snapshot, "--prefix", "MyDev", "--force",
                        "--output-dir", "out")
        run = self.run_command(*self.command)
        self.assertEqual(run.returncode, DONE, run.stderr)
        self.whole = self.output()
        self.results = run.stdout

    def output(self):
        """The text without the memory address in it."""
        lines = (self.folder / "out" / OUT).read_text().splitlines()
        return [line for line in lines if "RedirectGID" not in line]

    def assert_nothing_else(self):
        self.assertEqual(self.entries("out"), [OUT])

    def assert_failed(self, run, *words):
        self.assert_one_error(run)
        for word in words:
            self.assertIn(word, run.stderr, run.fault)
        # Output is flushed before the file is moved into place.
        self.assertIn(run.stdout, ("", self.results))
        self.assertEqual((self.folder / "out" / OUT).read_text(), EARLIER)
        self.assert_nothing_else()

    def assert_done(self, run):
        self.assertEqual(run.returncode, DONE, run.stderr)
        self.assertEqual(self.output(), self.whole)
        self.assert_nothing_else()


class Faults(OneFileTest):
    def test_a_write_fails(self):
        for number in (errno.ENOSPC, errno.EDQUOT, errno.EIO, errno.EFBIG):
            for run in self.every_call("write", number):
                self.assert_failed(run, f"out/{OUT}: cannot write")

    def test_an_incomplete_write(self):
        for run in self.every_call("write", "short"):
            self.assert_failed(run, f"out/{OUT}: cannot write")

    def test_a_file_cannot_be_synchronised(self):
        runs = list(self.every_call("fsync", errno.EIO))
        self.assertEqual(len(runs), 2)  # for the file, and for its directory
        self.assertEqual([run.returncode for run in runs], [FAILED, DONE])
        run = self.run_with_fault("fsync", 1, errno.EIO)
        self.assert_failed(run, f"out/{OUT}: cannot write: Input/output error; ")
        self.assert_done(self.run_with_fault("fsync", 2, errno.EINVAL))

    def test_a_file_cannot_be_moved(self):
        for run in self.every_call("rename", errno.EACCES):
            self.assert_failed(run, f"out/{OUT}: cannot replace: Permission denied; ")

    def test_the_file_cannot_be_created(self):
        run = self.run_with_fault("open", 1, errno.EROFS)
        self.assert_failed(run, "cannot create files in out: Read-only file system; ")
        for run in self.every_call("open", errno.EROFS):
            self.assert_failed(run, "Read-only file system")

    def test_a_read_fails(self):
        run = self.run_with_fault("read", 1, errno.EIO)
        self.assert_failed(run, f"{PARTIAL}", "cannot read: Input/output error")
        for run in self.every_call("read", errno.EIO):
            self.assert_failed(run, "cannot read")

    def test_the_directory_disappears(self):
        out = self.folder / "out"
        for call in ("read", "write", "fsync", "rename"):
            for at in range(1, 50):
                out.mkdir(exist_ok=True)
                run = self.run_with_fault(call, at, f"remove {out}")
                if run is None:
                    break
                with self.subTest(call=call, at=at):
                    if call == "fsync" and at == 2:  # the file was already in place
                        self.assertEqual(run.returncode, DONE)
                        continue
                    self.assert_one_error(run)
                    self.assertFalse(out.exists())
                    self.assertEqual(self.entries(), [])

    def test_a_signal_at_any_call(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            for call in ("read", "write", "fsync", "rename"):
                for run in self.every_call(call, f"signal {int(number)}"):
                    self.assert_nothing_else()
                    if run.returncode == -number:
                        self.assertEqual(self.output(), EARLIER.splitlines(), run.fault)
                    else:  # too late
                        self.assert_done(run)

    def test_a_kill_leaves_one_temporary_file(self):
        for call in ("read", "write", "fsync", "rename"):
            for run in self.every_call(call, f"signal {int(signal.SIGKILL)}"):
                self.assertEqual(run.returncode, -signal.SIGKILL)
                self.assertIn(self.output(), (EARLIER.splitlines(), self.whole))
                left = [entry for entry in self.entries("out") if entry != OUT]
                self.assertLessEqual(len(left), 1)
                for entry in left:
                    self.assertRegex(entry, r"^\.fabscan-\d+-\d+$")
                    subprocess.run(["rm", self.folder / "out" / entry], check=True)
        self.assert_done(self.run_command(*self.command))

    def test_two_runs_that_replace_the_same_file(self):
        for _ in range(5):
            runs = [subprocess.Popen([command_line._command, *map(str, self.command)],
                                     cwd=self.folder, stdout=subprocess.DEVNULL)
                    for _ in range(4)]
            self.assertEqual([run.wait(60) for run in runs], [DONE] * 4)
            self.assertEqual(self.output(), self.whole)
            self.assert_nothing_else()

    def test_a_full_file_system(self):
        disk = self.folder / "disk"
        disk.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=8k", "tmpfs", str(disk)],
                                 stderr=subprocess.DEVNULL)
        if mounted.returncode != 0:
            self.skipTest("mounting needs more rights than these")
        try:
            (disk / OUT).write_text(EARLIER)
            run = self.run_command(*DUMP, "--output-dir", "disk")
            self.assertEqual(run.returncode, FAILED)
            self.assertRegex(run.stderr, rf"^fabscan: error: disk/{OUT}: cannot write .*: No space "
                                         r"left on device; free some space, or write elsewhere\n$")
            self.assertEqual((disk / OUT).read_text(), EARLIER)
            self.assertEqual(self.entries("disk"), [OUT])
        finally:
            subprocess.run(["umount", str(disk)], check=True)


class Compressed(FaultTest):
    """The same for reading and for writing compressed snapshots."""

    def setUp(self):
        super().setUp()
        run = self.run_command("merge", PARTIAL, PARTIAL, "--output", "whole.zst")
        self.assertEqual(run.returncode, DONE, run.stderr)
        self.whole = (self.folder / "whole.zst").read_bytes()
        self.command = ("merge", "whole.zst", "whole.zst", "--output", "out/new.zst", "--force")
        self.new = self.folder / "out" / "new.zst"

    def run_with_fault(self, *arguments, **more):
        self.new.write_text(EARLIER)
        run = super().run_with_fault(*arguments, **more)
        (self.folder / "out" / OUT).unlink()
        return run

    def assert_failed(self, run, message):
        self.assert_one_error(run)
        self.assertEqual(run.stderr, f"fabscan: error: {message}\n", run.fault)
        self.assertEqual(self.new.read_text(), EARLIER, run.fault)
        self.assertEqual(self.entries("out"), [self.new.name], run.fault)

    def test_a_write_fails(self):
        for number, cause in ((errno.ENOSPC, "No space left on device"),
                              (errno.EDQUOT, "Disk quota exceeded"),
                              (errno.EIO, "Input/output error"), (errno.EFBIG, "File too large")):
            space = "free some space, or " * (number in (errno.ENOSPC, errno.EDQUOT))
            for run in self.every_call("write", number):
                self.assert_failed(run, f"out/new.zst: cannot write: {cause}; {space}write "
                                        "elsewhere")

    def test_an_incomplete_write(self):
        for run in self.every_call("write", "short"):
            self.assert_failed(run, "out/new.zst: cannot write: No space left on device; free some "
                                    "space, or write elsewhere")

    def test_a_compressed_file_cannot_be_moved(self):
        self.assert_failed(self.run_with_fault("fsync", 1, errno.EIO),
                           "out/new.zst: cannot write: Input/output error; write elsewhere")
        self.assert_failed(self.run_with_fault("rename", 1, errno.EACCES),
                           "out/new.zst: cannot replace: Permission denied; write elsewhere")

    def test_a_read_fails(self):
        for run in self.every_call("read", errno.EIO):
            self.assertRegex(run.stderr, r"\Afabscan: error: whole\.zst(:\d+)?: cannot read: "
                                         r"Input/output error\n\Z", run.fault)
            self.assert_failed(run, run.stderr.removeprefix("fabscan: error: ").rstrip("\n"))

    def test_a_signal_at_any_call(self):
        for call in ("read", "write", "fsync", "rename"):
            for run in self.every_call(call, f"signal {int(signal.SIGTERM)}"):
                self.assertEqual(self.entries("out"), [self.new.name], run.fault)
                expected = {-signal.SIGTERM: EARLIER.encode(), DONE: self.whole}
                self.assertEqual(self.new.read_bytes(), expected[run.returncode], run.fault)

    def test_one_allocation_fails(self):
        for run in self.every_call("malloc", errno.ENOMEM):
            self.assertEqual(self.entries("out"), [self.new.name], run.fault)
            if run.returncode == DONE:
                self.assertEqual(self.new.read_bytes(), self.whole, run.fault)
                continue
            self.assert_one_error(run)
            self.assertIn("memory", run.stderr, run.fault)
            self.assertEqual(self.new.read_bytes(), EARLIER.encode(), run.fault)


class OnePerModel(FaultTest):
    """Each file is complete: the earlier one or the new one."""

    def setUp(self):
        super().setUp()
        self.command = (*DUMP, "--one-per-model", "--output-dir", "out")
        self.assertEqual(self.run_command(*self.command).returncode, DONE)
        self.files = self.entries("out")
        self.assertEqual(len(self.files), 2)
        self.first = self.folder / "out" / self.files[0]

    def run_with_fault(self, *arguments, **more):
        for name in self.files:
            (self.folder / "out" / name).unlink(missing_ok=True)
        self.first.write_text(EARLIER)  # the other one is missing
        run = super().run_with_fault(*arguments, **more)
        (self.folder / "out" / OUT).unlink()
        return run

    def files_in_place(self, run):
        """How many of the two files are new. Expects no other file and no partial file."""
        entries = self.entries("out")
        self.assertIn(entries, (self.files[:1], self.files), run.fault)
        new = [name for name in entries if self.is_whole(name)]
        if self.first.name not in new:
            self.assertEqual((self.first.read_text(), entries), (EARLIER, self.files[:1]), run.fault)
        return len(new)

    def is_whole(self, name):
        return (self.folder / "out" / name).read_text().endswith("\n}\n")

    def test_a_file_cannot_be_moved(self):
        runs = list(self.every_call("rename", errno.EACCES))
        self.assertEqual(len(runs), 2)
        for moved in (0, 1):
            run = self.run_with_fault("rename", moved + 1, errno.EACCES)
            self.assert_one_error(run)
            self.assertIn(f"Permission denied; write elsewhere; {moved} of 2 files are in place",
                          run.stderr)
            self.assertEqual(self.files_in_place(run), moved)

    def test_a_file_system_that_cannot_move_without_replacing(self):
        for name in self.files:
            (self.folder / "out" / name).unlink()
        command = [word for word in self.command if word != "--force"]
        run = self.faulty_run(tuple(command), "rename", 1, errno.EINVAL)
        self.assertEqual(run.returncode, DONE, run.stderr)
        self.assertEqual(self.files_in_place(run), 2)

    def test_any_other_call_fails(self):
        for call in ("read", "write", "fsync", "open"):
            for run in self.every_call(call, errno.EIO):
                self.assertEqual(self.files_in_place(run), 2 if run.returncode == DONE else 0,
                                 run.fault)

    def test_a_signal_at_any_call(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            for call in ("read", "write", "fsync", "rename"):
                for run in self.every_call(call, f"signal {int(number)}"):
                    expected = {-number: 0, DONE: 2}
                    self.assertEqual(self.files_in_place(run), expected[run.returncode], run.fault)


class EveryCommand(FaultTest):
    """Each command that writes, with a fault in each of its calls: a run that fails or is ended
    leaves what was there; any other writes all files."""

    commands = {
        name: tuple({DEMO: PARTIAL, ADAPTER: "0x5a1e0c0000000100"}.get(word, word)
                    for word in command)
        for name, command in ALL.items()}

    def files(self, command):
        """The files of an undisturbed run, and its exit status."""
        self.begin({})
        run = self.run_command(*command)
        self.assertIn(run.returncode, (DONE, INCOMPLETE), run.stderr)
        return run.returncode, files_below(self.folder / "out")

    def begin(self, files):
        """The directory has earlier files with these names; without any, it is absent."""
        subprocess.run(["rm", "-rf", self.folder / "out"], check=True)
        for name, text in files.items():
            path = self.folder / "out" / name
            if text is not None:
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(EARLIER)
        return files_below(self.folder)

    def every_run(self, calls, kind):
        """Every run of each command in which such a call meets the fault."""
        for name, command in self.commands.items():
            status, files = self.files(command)
            for arguments, earlier in ((command, {}), ((*command, "--force"), files)):
                for call in calls:
                    for at in range(1, 10_000):
                        before = self.begin(earlier)
                        run = self.faulty_run(arguments, call, at, kind)
                        if run is None:
                            break
                        run.fault = f"{name}: {run.fault}"
                        yield run, status, before, files

    def assert_whole(self, files):
        self.assertEqual(comparable(files_below(self.folder / "out")), comparable(files))

    def test_a_call_fails(self):
        for call, number in (("write", errno.ENOSPC), ("open", errno.EROFS), ("read", errno.EIO),
                             ("fsync", errno.EIO), ("thread", errno.EAGAIN)):
            for run, status, before, files in self.every_run([call], number):
                if run.returncode == FAILED:
                    self.assertEqual(files_below(self.folder), before, run.fault)
                else:
                    self.assertEqual(run.returncode, status, run.fault)
                    self.assert_whole(files)

    def test_a_file_cannot_be_moved(self):
        for run, _, before, files in self.every_run(["rename"], errno.EACCES):
            self.assertEqual(run.returncode, FAILED, run.fault)
            after = files_below(self.folder)
            changed = sorted(name for name, text in after.items()
                             if text is not None and before.get(name) != text)
            told = re.search(r" files are in place(?:: (.*))?\n\Z", run.stderr)
            self.assertEqual(sorted(told[1].split(", ") if told and told[1] else []), changed)
            for name in changed:
                self.assertEqual(comparable(after)[name],
                                 comparable(files)[name.removeprefix("out/")], run.fault)

    def test_a_signal_at_any_call(self):
        """Either it ends the command, or it is too late: the files are in place."""
        for run, status, before, files in self.every_run(
                ("open", "read", "write", "fsync", "rename"), f"signal {int(signal.SIGTERM)}"):
            if run.returncode == -signal.SIGTERM:
                self.assertEqual(files_below(self.folder), before, run.fault)
            else:
                self.assertEqual(run.returncode, status, run.fault)
                self.assert_whole(files)

    def test_a_kill_at_any_call(self):
        """Each file is the earlier one or complete; temporary files and new directories may stay."""
        for run, _, before, files in self.every_run(
                ("open", "read", "write", "fsync", "rename"), f"signal {int(signal.SIGKILL)}"):
            self.assertEqual(run.returncode, -signal.SIGKILL, run.fault)
            after = comparable(files_below(self.folder))
            for name, text in before.items():
                if text is not None:
                    self.assertIn(after.get(name), (text, comparable(files)[name[4:]]), run.fault)
            for name in set(after) - set(before):
                if re.fullmatch(r"(.*/)?\.fabscan-\d+-\d+", name):
                    continue
                self.assertIn(name, ["out", *(f"out/{file}" for file in files)], run.fault)
                if name != "out":
                    self.assertEqual(after[name], comparable(files)[name[4:]], run.fault)


class Threads(FaultTest):
    """A thread that cannot be started is done without."""

    def test_verify_runs_on_fewer_threads(self):
        nodes = [dict(switch(f"S{i}", f"0x{i}")) for i in range(1, 4)]
        self.put("three", snapshot(*nodes))
        (self.folder / "temporary").mkdir()
        guids = [word for i in range(1, 4) for word in ("--guid", f"0x{i}")]
        self.command = ("verify", "three", *guids, "--jobs", "3")
        expected = self.run_command(*self.command)
        self.assertEqual(expected.returncode, INCOMPLETE, expected.stderr)
        settings = {"FAULT_CALL": "thread", "FAULT_KIND": str(errno.EAGAIN),
                    "TMPDIR": str(self.folder / "temporary")}
        for onwards in ({}, {"FAULT_ONWARDS": "1"}):
            faulty = FaultyCommand(self.command, self.folder, **settings, **onwards)
            self.addCleanup(faulty.close)
            # One for signals, and two besides the first.
            for at, reached in ((1, True), (2, True), (3, True), (4, False)):
                run, was_reached = faulty.run(at)
                self.assertEqual(was_reached, reached, at)
                self.assertEqual((run.returncode, run.stdout, run.stderr),
                                 (expected.returncode, expected.stdout, expected.stderr))
                self.assertEqual(self.entries("temporary"), [])


class OutOfMemory(OneFileTest):
    """One allocation fails, or it and all later ones, for every allocation of a small run. Allocations
    before main are skipped: the loader and the libraries end the program when those fail."""

    def setUp(self):
        self.snapshot = "small"
        super().setUp()

    def run_command(self, *arguments, **more):
        self.put("small", snapshot(switch()))
        return super().run_command(*arguments, **more)

    def every_allocation(self, done=DONE, failure=FAILED, **more):
        """Every run with the fault; if the command fails, it reports that memory ran out."""
        failed = 0
        for run in self.every_call("malloc", errno.ENOMEM, **more):
            if run.returncode != done:
                failed += 1
                self.assert_one_error(run, failure)
                self.assertIn("memory", run.stderr, run.fault)
            yield run
        self.assertGreater(failed, 500)

    def check_dump(self, **more):
        for run in self.every_allocation(**more):
            expected = self.whole if run.returncode == DONE else EARLIER.splitlines()
            self.assertEqual(self.output(), expected, run.fault)
            self.assert_nothing_else()

    def test_one_allocation_fails(self):
        self.check_dump()

    def test_all_later_allocations_fail(self):
        self.check_dump(onwards=True)

    def check_command(self, *command, **statuses):
        for run in self.every_allocation(command=command, **statuses):
            self.assertEqual(set(self.entries()) - {"new", "out", "small"}, set(),
                             run.fault)

    def test_one_allocation_of_another_command_fails(self):
        self.check_command("show", "small")
        self.check_command("check", "small", done=INCOMPLETE)
        self.check_command("diff", "small", "small", failure=WRONG_USAGE)

    def test_one_allocation_of_a_page_or_of_several_files_fails(self):
        for path, *command in (
                ("page", "check", "small", "--html", "page", "--force"),
                ("p_sw_0000_generated.cpp", "dump", "small", "--prefix", "P", "--one-per-model",
                 "--force")):
            output = self.folder / path
            allowed = {"new", "out", "small", path}
            output.write_text(EARLIER)
            for run in self.every_allocation(command=command,
                                             done=INCOMPLETE if path == "page" else DONE):
                self.assertEqual(set(self.entries()) - allowed, set(), run.fault)
                text = output.read_text()
                self.assertEqual(text == EARLIER, run.returncode == FAILED, run.fault)
                self.assertTrue(text == EARLIER or text.endswith(("</html>\n", "}\n")), run.fault)
                output.write_text(EARLIER)
            output.unlink()

    def check_files_by_model(self, earlier, **more):
        """Two files, some of which existed: each is whole, the earlier one or the new one."""
        two = {"type": "SW", "numPorts": 2}, {"type": "CA", "numPorts": 1}
        nodes = [{"name": f"N{i}", "guid": f"0x{i + 1}", **of} for i, of in enumerate(two)]
        self.put("two", snapshot(*nodes))
        command = ("dump", "two", "--prefix", "MyDevice", "--one-per-model", "--force",
                   "--output-dir", "files")
        folder = self.folder / "files"
        folder.mkdir()
        self.assertEqual(self.run_command(*command).returncode, DONE)
        files = self.entries("files")
        self.assertEqual(files, ["mydevice_hca_0000_generated.cpp",
                                 "mydevice_sw_0000_generated.cpp"])
        def begin():
            for name in files:
                (folder / name).unlink(missing_ok=True)
            for name in earlier:
                (folder / name).write_text(EARLIER)

        seen = set()
        begin()
        for run in self.every_allocation(command=command, **more):
            texts = {name: (folder / name).read_text() for name in self.entries("files")}
            whole = [name for name, text in texts.items() if text.endswith("}\n")]
            as_before = texts == {name: EARLIER for name in earlier}
            for name in set(texts) - set(whole):
                self.assertEqual((name in earlier, texts[name]), (True, EARLIER), run.fault)
            if run.returncode == DONE:
                self.assertEqual(whole, files, run.fault)
            else:
                self.assertTrue(as_before, run.fault)
            seen.add((run.returncode, as_before))
            begin()
        self.assertIn((FAILED, True), seen)

    def test_one_allocation_of_a_new_and_an_existing_file_fails(self):
        self.check_files_by_model(earlier=["mydevice_hca_0000_generated.cpp"])

    def test_all_later_allocations_of_two_files_fail(self):
        self.check_files_by_model(earlier=["mydevice_sw_0000_generated.cpp"], onwards=True)

    def test_one_allocation_of_anonymise_fails(self):
        command = ("anonymise", "small", "--key", "a secret key", "--output", "new", "--force")
        self.assertEqual(self.run_command(*command).returncode, DONE)
        new = self.folder / "new"
        whole = new.read_text()
        new.write_text(EARLIER)
        for run in self.every_allocation(command=command):
            self.assertEqual(set(self.entries()) - {"new", "out", "small"}, set(),
                             run.fault)
            self.assertEqual(new.read_text(), whole if run.returncode == DONE else EARLIER,
                             run.fault)
            new.write_text(EARLIER)


if __name__ == "__main__":
    main()
