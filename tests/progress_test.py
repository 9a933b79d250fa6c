"""Progress on a terminal, silence elsewhere, and the options --quiet and --verbose."""

import errno
import fcntl
import os
import pty
import re
import signal
import struct
import subprocess
import termios
import threading
import time

import command_line
from command_line import DONE, EXAMPLES, FAILED, CommandTest, main, snapshot, switch

DEMO = EXAMPLES / "demo.fabscan.jsonl"
ERASE = "\r\x1b[K"


class OnATerminal(CommandTest):
    """Standard error is a terminal; standard output is a pipe."""

    def setUp(self):
        super().setUp()
        self.pipe = self.folder / "slow.jsonl"
        os.mkfifo(self.pipe)

    def feed(self, seconds):
        """Writes a snapshot into the pipe, slowly."""
        text = snapshot(*(switch(f"S{i}", hex(i + 1)) for i in range(2000))).encode()
        parts = max(2, int(seconds / 0.1))
        with open(self.pipe, "wb", buffering=0) as pipe:
            for part in range(parts):
                try:
                    pipe.write(text[part * len(text) // parts:(part + 1) * len(text) // parts])
                except BrokenPipeError:
                    return
                time.sleep(seconds / parts)

    def run_slowly(self, *arguments, seconds=2.5, columns=80, number=None, **environment):
        """Runs while the pipe is fed; returns the exit status and the terminal output.
        `number` is a signal to send after the first output."""
        ours, its = pty.openpty()
        fcntl.ioctl(its, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        process = subprocess.Popen(
            [command_line._command, *map(str, arguments)], stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL, stderr=its, cwd=self.folder,
            env={**os.environ, "TERM": "xterm", **environment})
        os.close(its)
        feeder = threading.Thread(target=self.feed, args=(seconds,))
        feeder.start()
        seen = b""
        while True:
            try:
                part = os.read(ours, 65536)
            except OSError as error:
                self.assertEqual(error.errno, errno.EIO)
                break
            seen += part
            if number is not None and seen:
                process.send_signal(number)
                number = None
        os.close(ours)
        feeder.join()
        return process.wait(60), seen.decode()

    def assert_no_residue(self, seen):
        """The text after the last erased line consists of complete lines."""
        rest = seen.rsplit(ERASE, 1)[1]
        self.assertTrue(rest == "" or rest.endswith("\n"), rest)
        return rest

    def test_a_slow_read(self):
        status, seen = self.run_slowly("models", self.pipe.name)
        self.assertEqual(status, DONE)
        shown = seen.split(ERASE)[1:-1]
        self.assertGreater(len(shown), 3)
        for line in shown:
            self.assertRegex(line, r"^reading slow\.jsonl: [\d.]+ kB, [\d.]+ kB/s$")
        self.assertEqual(self.assert_no_residue(seen), "")

    def test_nothing_in_the_first_second(self):
        status, seen = self.run_slowly("models", self.pipe.name, seconds=0.3)
        self.assertEqual((status, seen), (DONE, ""))

    def test_the_width_is_respected(self):
        status, seen = self.run_slowly("models", self.pipe.name, columns=20)
        self.assertEqual(status, DONE)
        self.assertGreater(seen.count(ERASE), 3)
        self.assertEqual(max(len(line) for line in seen.split(ERASE)), 19)

    def test_an_error_replaces_the_progress(self):
        status, seen = self.run_slowly("check", self.pipe.name, "--guid", "ffff")
        self.assertEqual(status, FAILED)
        self.assertRegex(self.assert_no_residue(seen).replace("\r\n", "\n"),
                         r"\Afabscan: error: [^\n]*\n\Z")

    def test_a_signal_leaves_no_residue(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            status, seen = self.run_slowly("models", self.pipe.name, number=number)
            self.assertEqual(status, -number)
            self.assertEqual(self.assert_no_residue(seen), "")

    def test_quiet(self):
        status, seen = self.run_slowly("models", self.pipe.name, "--quiet", seconds=1.5)
        self.assertEqual((status, seen), (DONE, ""))

    def test_a_terminal_that_cannot_erase(self):
        status, seen = self.run_slowly("models", self.pipe.name, seconds=1.5, TERM="dumb")
        self.assertEqual((status, seen), (DONE, ""))

    def test_verbose_leaves_the_steps(self):
        status, seen = self.run_slowly("anonymise", self.pipe.name, "--output", "out.jsonl",
                                       "--verbose", seconds=1.5)
        self.assertEqual(status, DONE)
        self.assert_no_residue(seen)
        told = [part for part in seen.replace("\r\n", "\n").split(ERASE)
                if part.startswith("fabscan: ")]
        self.assertRegex("".join(told),
                         r"\Afabscan: reading slow\.jsonl: [\d.]+ kB in 1\.\d s\n"
                         r"fabscan: nodes anonymised: 2000 in 0\.\d s\n"
                         r"fabscan: nodes written: 2000 in 0\.\d s\n"
                         r"fabscan: syncing out\.jsonl to disk in 0\.\d s\n\Z")


class Elsewhere(CommandTest):
    def test_nothing_on_a_pipe(self):
        read, write = os.pipe()
        process = subprocess.Popen([command_line._command, "models", "-"], stdin=read,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        os.close(read)
        for part in snapshot(switch()).split("\n"):
            os.write(write, (part + "\n").encode() if part else b"")
            time.sleep(0.4)
        os.close(write)
        output, errors = process.communicate(timeout=60)
        self.assertEqual((process.returncode, errors), (DONE, b""))
        self.assertIn(b"1 node, 1 device model", output)

    def test_verbose_on_a_pipe(self):
        run = self.run_command("check", DEMO, "--verbose")
        self.assertRegex(run.stderr, r"\Afabscan: reading .*: [\d.]+ kB in 0\.\d s\n"
                                     r"fabscan: nodes generated: 10 in 0\.\d s\n\Z")

    def test_every_subcommand_has_both(self):
        help_text = self.run_command("--help").stdout
        names = re.findall(r"^  ([a-z]+) ", help_text.split("Subcommands:")[1], re.M)
        self.assertGreater(len(names), 9)
        for name in names:
            text = self.run_command(name, "--help").stdout
            self.assertRegex(text, r"\n  --quiet +Show no progress, not even on a terminal\n", name)
            self.assertIn("\n  -v,--verbose ", text, name)
            self.assertRegex(text, r"\nExamples?: ?", name)
            self.assertRegex(text, rf"\n  fabscan {name} .*\n\Z", name)


if __name__ == "__main__":
    main()
