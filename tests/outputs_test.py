"""Destinations of results: closed pipes, full devices, streams, missing directories."""

import json
import os
import signal
import stat
import subprocess
import threading
import unicodedata

import command_line
from command_line import DONE, EXAMPLES, FAILED, WRONG_USAGE, CommandTest, main, snapshot, switch

DEMO = EXAMPLES / "demo.fabscan.jsonl"
PARTIAL = EXAMPLES / "partial.fabscan.jsonl"
ADAPTER = "0x5a1e0c0000000600"
ENDED_BY_SIGPIPE = -signal.SIGPIPE
FULL = "No space left on device; free some space, or write elsewhere"


class Outputs(CommandTest):
    def many(self, count=3000, **more):
        """A snapshot whose results do not fit into a pipe buffer."""
        nodes = [switch(f"S{i}", hex(i + 1), **more) for i in range(count)]
        return self.put("many.jsonl", snapshot(*nodes)).name

    def run_into_closed_pipe(self, *arguments, sigpipe=signal.SIG_DFL, stream="stdout"):
        """A run whose standard output, or error, is a pipe without a reader."""
        ours, its = os.pipe()
        os.close(ours)
        streams = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, stream: its}
        run = subprocess.run([command_line._command, *map(str, arguments)], cwd=self.folder,
                             preexec_fn=lambda: signal.signal(signal.SIGPIPE, sigpipe),
                             stdin=subprocess.DEVNULL, timeout=120, check=False, **streams)
        os.close(its)
        return run


class ClosedPipe(Outputs):
    def test_ends_silently(self):
        many = self.many()
        other = self.put("other.jsonl", snapshot(switch())).name
        for arguments in (["show", many], ["show", many, "--json"], ["show", many, "--values"],
                          ["check", DEMO], ["check", DEMO, "--json"], ["models", DEMO],
                          ["check", DEMO, "--html", "-"], ["diff", many, other],
                          ["diff", "--json", many, other], ["--help"], ["help", "show"],
                          ["merge", DEMO, DEMO, "--output", "-"],
                          ["anonymise", DEMO, "--output", "/dev/stdout"]):
            with self.subTest(arguments=arguments):
                run = self.run_into_closed_pipe(*arguments)
                self.assertEqual((run.returncode, run.stderr), (ENDED_BY_SIGPIPE, b""))

    def test_head_gets_its_lines(self):
        run = subprocess.run(f"'{command_line._command}' show '{self.many()}' | head -n 1; "
                             'echo "${PIPESTATUS[0]}"', shell=True, executable="/bin/bash",
                             preexec_fn=lambda: signal.signal(signal.SIGPIPE, signal.SIG_DFL),
                             cwd=self.folder, capture_output=True, text=True, timeout=120,
                             check=False)
        self.assertEqual(run.stdout, "many.jsonl: 3000 nodes (3000 SW), 0 ports\n141\n")
        self.assertEqual(run.stderr, "")

    def test_is_an_error_if_sigpipe_is_ignored(self):
        message = b"fabscan: error: standard output: cannot write: Broken pipe; write elsewhere\n"
        run = self.run_into_closed_pipe("show", self.many(), sigpipe=signal.SIG_IGN)
        self.assertEqual((run.returncode, run.stderr), (FAILED, message))
        run = self.run_into_closed_pipe("diff", DEMO, PARTIAL, sigpipe=signal.SIG_IGN)
        self.assertEqual((run.returncode, run.stderr), (WRONG_USAGE, message))

    def test_the_reader_of_a_named_pipe_ends(self):
        """The pipe is not standard output."""
        ours, its = os.pipe()
        os.close(ours)
        run = self.run_command("anonymise", DEMO, "--output", f"/dev/fd/{its}", pass_fds=[its])
        os.close(its)
        self.assertEqual((run.returncode, run.stdout, run.stderr), (ENDED_BY_SIGPIPE, "", ""))


class FailingWrites(Outputs):
    def test_the_cause_is_reported(self):
        for arguments in (["show", DEMO], ["show", self.many()], ["show", DEMO, "--json"],
                          ["check", DEMO], ["models", DEMO], ["--help"],
                          ["merge", DEMO, DEMO, "--output", "-"]):
            with self.subTest(arguments=arguments), open("/dev/full", "w") as full:
                self.assert_fails(self.run_command(*arguments, stdout=full),
                                  f"standard output: cannot write: {FULL}")

    def test_the_remedy_matches_the_cause(self):
        """Standard output is closed, or not open for writing."""
        with open("/dev/null") as unwritable:
            self.assert_fails(self.run_command("show", DEMO, stdout=unwritable),
                              "standard output: cannot write: Bad file descriptor; write elsewhere")
        run = subprocess.run(f"'{command_line._command}' show '{DEMO}' >&-", shell=True,
                             capture_output=True, text=True, timeout=60, check=False)
        self.assertEqual((run.returncode, run.stderr), (
            FAILED, "fabscan: error: standard output: cannot write: Bad file descriptor; "
                    "write elsewhere\n"))

    def test_an_output_on_a_full_device(self):
        self.assert_fails(self.run_command("merge", DEMO, DEMO, "--output", "/dev/full"),
                          f"/dev/full: cannot write: {FULL}")

    def test_messages_are_not_written_to_a_file_opened_as_standard_error(self):
        run = subprocess.run(f"'{command_line._command}' dump '{DEMO}' --prefix All --verbose 2>&-",
                             shell=True, cwd=self.folder, stdout=subprocess.PIPE, timeout=60,
                             check=False)
        self.assertEqual(run.returncode, DONE)
        self.assertNotIn("fabscan:", (self.folder / "all_generated.cpp").read_text())


class Streams(Outputs):
    """Outputs other than files are written directly, without --force."""

    def setUp(self):
        super().setUp()
        self.assertEqual(
            self.run_command("merge", DEMO, DEMO, "--output", "whole.jsonl").returncode, DONE)
        self.whole = (self.folder / "whole.jsonl").read_text()

    def test_other_names_of_standard_output(self):
        for name in ("-", "/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"):
            with self.subTest(name=name):
                run = self.run_command("merge", DEMO, DEMO, "--output", name)
                self.assertEqual((run.returncode, run.stdout), (DONE, self.whole))
                self.assertIn("standard output: 11 nodes", run.stderr)
        with open(self.folder / "redirected", "w") as file:
            run = self.run_command("merge", DEMO, DEMO, "--output", "/dev/stdout", stdout=file)
        self.assertEqual(run.returncode, DONE)
        self.assertEqual((self.folder / "redirected").read_text(), self.whole)

    def test_a_page_goes_to_a_stream(self):
        check = ("check", DEMO, "--guid", ADAPTER, "--html")
        self.run_command(*check, "page.html")
        run = self.run_command(*check, "/dev/stdout")
        self.assertEqual(run.stdout, (self.folder / "page.html").read_text())
        self.assertEqual(self.run_command(*check, "/dev/null").stderr, "")

    def test_devices(self):
        for name in ("/dev/null", "/dev/stderr"):
            run = self.run_command("merge", DEMO, DEMO, "--output", name)
            self.assertEqual(run.returncode, DONE, run.stderr)
            self.assertEqual(run.stderr, "" if name == "/dev/null" else self.whole)

    def test_process_substitution(self):
        run = subprocess.run(
            f"'{command_line._command}' merge '{DEMO}' '{DEMO}' --output >(cat > copy); wait $!",
            shell=True, executable="/bin/bash", cwd=self.folder, capture_output=True, text=True,
            timeout=60, check=False)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertEqual((self.folder / "copy").read_text(), self.whole)

    def test_a_named_pipe(self):
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        read = []
        reader = threading.Thread(target=lambda: read.append(pipe.read_text()))
        reader.start()
        run = self.run_command("merge", DEMO, DEMO, "--output", "pipe")
        reader.join(timeout=60)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertEqual(read, [self.whole])
        self.assertTrue(stat.S_ISFIFO(pipe.stat().st_mode))

    def test_generated_source_goes_to_a_named_pipe(self):
        dump = ("dump", DEMO, "--prefix", "Piped", "--guid", ADAPTER)
        self.run_command(*dump, "--output-dir", self.folder)
        expected = (self.folder / "piped_generated.cpp").read_text()
        (self.folder / "sub").mkdir()
        os.mkfifo(self.folder / "sub/piped_generated.cpp")
        read = []
        reader = threading.Thread(
            target=lambda: read.append((self.folder / "sub/piped_generated.cpp").read_text()))
        reader.start()
        run = self.run_command(*dump, "--output-dir", "sub")
        reader.join(timeout=60)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertEqual(read, [expected])

    def test_a_missing_file_descriptor(self):
        self.assert_fails(self.run_command("merge", DEMO, DEMO, "--output", "/dev/fd/99"),
                          "/dev/fd/99: cannot write: Bad file descriptor; write elsewhere")

    def test_an_existing_file_is_still_kept(self):
        self.put("out.jsonl", "earlier\n")
        for name in ("out.jsonl", "./out.jsonl"):
            self.assert_fails(self.run_command("merge", DEMO, DEMO, "--output", name),
                              f"{name}: exists; --force replaces it")

    def test_directories(self):
        (self.folder / "sub").mkdir()
        for name in ("sub", "sub/", ".", "sub/.."):
            self.assert_fails(self.run_command("merge", DEMO, DEMO, "--output", name),
                              f"{name}: is a directory; specify a file in it")
        self.put("file", "")
        self.assert_fails(self.run_command("merge", DEMO, DEMO, "--output", "file/out.jsonl"),
                          "file: is not a directory; use another path")
        run = self.run_command("merge", DEMO, DEMO, "--output", "new/deep/out.jsonl")
        self.assertEqual(run.returncode, DONE, run.stderr)
        self.assertEqual(self.entries("new/deep"), ["out.jsonl"])

    def test_a_file_keeps_its_permissions(self):
        path = self.put("out.jsonl", "earlier\n")
        for mode in (0o600, 0o640, 0o444):
            path.chmod(mode)
            run = self.run_command("merge", DEMO, DEMO, "-o", "out.jsonl", "--force")
            self.assertEqual(run.returncode, DONE, run.stderr)
            self.assertEqual(stat.S_IMODE(path.stat().st_mode), mode)
            self.assertEqual(path.read_text(), self.whole)


class HostileTexts(Outputs):
    """Texts of snapshots and of the command line, on standard output and standard error."""

    HOSTILE = "\x1b]0;t\a\r\n\x7f\u009b\u202e\u034f\u3164\u2028\U000e0041'\\"
    NAME = os.fsencode("a" + HOSTILE) + b"\xff"

    def snapshot(self, name, guid="0x1"):
        hostile = switch(name + self.HOSTILE, guid, alternativeName=self.HOSTILE,
                         absent={"SMP_NodeInfo": self.HOSTILE + name},
                         ports=[{"num": 1, "state": "UNKNOWN",
                                 "absent": {"SMP_PortInfo": self.HOSTILE + name}}])
        lines = [{"fabscan_snapshot": 1, "source": self.HOSTILE, "created": self.HOSTILE}, hostile,
                 {"end": True, "nodes": 1}]
        return "".join(json.dumps(line) + "\n" for line in lines)

    def run_in_bytes(self, *arguments):
        return subprocess.run([os.fsencode(command_line._command), *map(os.fsencode, arguments)],
                              cwd=self.folder, capture_output=True, timeout=120, check=False)

    def assert_harmless(self, output):
        text = output.decode()  # well-formed
        for character in text.replace("\n", ""):
            self.assertNotIn(unicodedata.category(character), ("Cc", "Cf", "Zl", "Zp"), text)
            self.assertNotIn(character, "\u034f\u3164", text)
        for after in ("\\x7f", "%7F", "\\177"):  # after a line end of the hostile text
            self.assertNotIn("\n" + after, text)

    def test_no_command_prints_them_raw(self):
        first, second, cache = (self.NAME + ending for ending in (b".", b".2", b".cache"))
        (self.folder / os.fsdecode(first)).write_text(self.snapshot("one"))
        (self.folder / os.fsdecode(second)).write_text(self.snapshot("two"))
        for command in (("show", first), ("show", first, "--guid", "1"), ("show", first, "--values"),
                        ("show", first, "--summary"), ("models", first), ("check", first),
                        ("check", first, "--summary"), ("diff", first, second),
                        ("check", first, "--html", self.NAME + b".html"),
                        ("check", first, "--name", self.NAME + b"*"),
                        ("dump", first, "--prefix", "P", "--output-dir", self.NAME),
                        ("dump", first, "--prefix", "P", "--output", self.NAME + b".cpp"),
                        ("dump", first, "--prefix", "P", "--one-per-model", "--buildable",
                         "--output-dir", self.NAME),
                        ("scaffold", "--prefix", "P", "--output-dir", self.NAME),
                        ("scaffold", first, "--prefix", "P", "--output-dir", self.NAME + b"s"),
                        ("merge", first, first, "--output", self.NAME + b".merged"),
                        ("merge", first, second, "--output", "-x"),
                        ("anonymise", first, "--output", self.NAME + b".shared"),
                        ("anonymise", first, "--key-file", self.NAME, "--output", "x"),
                        ("import", first, "--output", "x"), ("show", self.NAME + b"none"),
                        ("show", first, "--guid-file", self.NAME + b"none"),
                        ("show", first, "--guid", self.NAME), ("show", first, "--name", self.NAME),
                        ("verify", first, "--keep", first), ("verify", first, "--compiler", first),
                        (self.NAME,), ("show", b"--" + self.NAME)):
            with self.subTest(command=command):
                run = self.run_in_bytes(*command, "--verbose")
                self.assertNotIn(run.returncode, (-6, -11))
                self.assertNotEqual(run.stdout + run.stderr, b"")
                self.assert_harmless(run.stdout)
                self.assert_harmless(run.stderr)

    def test_the_next_command_can_be_run(self):
        path = self.NAME + b"."
        (self.folder / os.fsdecode(path)).write_text(self.snapshot("one"))
        text = self.run_in_bytes("models", path).stdout.decode()
        line = next(line for line in text.splitlines() if "--one-per-model" in line)
        run = subprocess.run(line.replace("fabscan", f"'{command_line._command}'", 1), shell=True,
                             executable="/bin/bash", cwd=self.folder, capture_output=True,
                             timeout=60, check=False)
        self.assertEqual(run.returncode, DONE, run.stderr)


class Versions(Outputs):
    def test_every_result_begins_with_its_version(self):
        for arguments in (["show", DEMO], ["check", DEMO], ["models", DEMO],
                          ["diff", DEMO, PARTIAL]):
            with self.subTest(arguments=arguments):
                run = self.run_command(*arguments, "--json")
                self.assertTrue(run.stdout.startswith('{"fabscan_report":1,'), run.stdout[:40])
                self.assertEqual(json.loads(run.stdout)["fabscan_report"], 1)


if __name__ == "__main__":
    main()
