"""Shared by the end-to-end tests: a scratch directory, and runs of the built command in it.

A test file ends with `main()`, which takes the command's path as the first argument.
"""

import fcntl
import json
import os
import pathlib
import pty
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import unittest

EXAMPLES = pathlib.Path(__file__).resolve().parent.parent / "examples"
NOBODY = 65534

DONE, FAILED, WRONG_USAGE, INCOMPLETE = range(4)


_command = None


def switch(name="S1", guid="0x1", **more):
    """A node line of a snapshot without any record."""
    return {"name": name, "guid": guid, "type": "SW", "numPorts": 2, **more}


def snapshot(*nodes):
    """The text of a snapshot."""
    lines = [{"fabscan_snapshot": 2}, *nodes, {"end": True, "nodes": len(nodes)}]
    return "".join(json.dumps(line) + "\n" for line in lines)


class CommandTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="fabscan-test-"))
        self.addCleanup(self._remove_folder)

    def _remove_folder(self):
        self.folder.chmod(0o700)
        shutil.rmtree(self.folder)

    def put(self, name, text):
        path = self.folder / name
        path.write_bytes(text if isinstance(text, bytes) else text.encode())
        return path

    def entries(self, folder="."):
        return sorted(entry.name for entry in (self.folder / folder).iterdir())

    def run_command(self, *arguments, file_limit=None, as_nobody=False, command=None, **more):
        """Runs `fabscan ARGUMENTS` in the scratch directory; text in, text out."""

        def prepare():
            # Python ignores these signals for its children; restore the defaults.
            signal.signal(signal.SIGPIPE, signal.SIG_DFL)
            signal.signal(signal.SIGXFSZ, signal.SIG_DFL)
            if file_limit is not None:
                resource.setrlimit(resource.RLIMIT_FSIZE, (file_limit, file_limit))
            if as_nobody and os.geteuid() == 0:
                os.setgid(NOBODY)
                os.setuid(NOBODY)

        more.setdefault("stdout", subprocess.PIPE)
        if "input" not in more:
            more.setdefault("stdin", subprocess.DEVNULL)
        return subprocess.run(
            [command or _command, *map(str, arguments)],
            cwd=self.folder,
            stderr=subprocess.PIPE,
            preexec_fn=prepare,
            timeout=120,
            text=True,
            **more,
        )

    def on_terminal(self, *arguments, columns=80, **environment):
        """The output of the command on a terminal of this width."""
        ours, its = pty.openpty()
        fcntl.ioctl(its, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        variables = {**os.environ, "TERM": "xterm", **environment}
        if "NO_COLOR" not in environment:
            variables.pop("NO_COLOR", None)
        process = subprocess.Popen([_command, *map(str, arguments)], stdout=its,
                                   stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL,
                                   cwd=self.folder, env=variables)
        os.close(its)
        written = b""
        while True:
            try:
                part = os.read(ours, 65536)
            except OSError:
                break
            if not part:
                break
            written += part
        os.close(ours)
        process.wait(timeout=60)
        return written.decode().replace("\r\n", "\n")

    def assert_fails(self, run, message, status=FAILED):
        """Expects one line on standard error, no result, and the exit status."""
        self.assertEqual(run.stderr, f"fabscan: error: {message}\n")
        self.assertEqual(run.returncode, status)
        if run.stdout is not None:
            self.assertEqual(run.stdout, "")


def main():
    global _command
    _command = str(pathlib.Path(sys.argv.pop(1)).resolve())
    unittest.main(verbosity=2)
