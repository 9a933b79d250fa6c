"""A fabric served by ibsim, and commands that run against it. Every wait has an end."""

import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

FABSCAN = os.environ["FABSCAN"]
FAKE_ANSWERS = os.environ["FABSCAN_FAKE_ANSWERS"]
# The output of another collector for a switch of `nets.two_switches()`.
EXTRA = pathlib.Path(__file__).resolve().parents[2] / "examples" / "extra.jsonl"
START_SECONDS = 60
RUN_SECONDS = 120

# A requested exit cleans up like an ordinary one.
signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))


def umad2sim():
    for folder in sorted(pathlib.Path("/usr/lib").glob("*/umad2sim")):
        return str(folder / "libumad2sim.so")
    raise RuntimeError("libumad2sim.so is missing; install ibsim-utils")


def tool(name):
    path = shutil.which(name, path=os.environ["PATH"] + ":/usr/sbin:/sbin")
    if path is None:
        raise RuntimeError(f"{name} is missing; install infiniband-diags and ibsim-utils")
    return path


class SimulatedFabric:
    """Starts ibsim with `net` in a separate directory; `host` is where commands run."""

    def __init__(self, net, host, limits=()):
        self.host = host
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="fabscan-live-"))
        self.socket = f"fabscan-{self.folder.name}"
        self.simulator = None
        self.console = None
        try:
            self._start(net, limits)
        except BaseException:
            self.close()
            raise

    def _start(self, net, limits):
        (self.folder / "fabric.net").write_text(net.text())
        self.console_path = self.folder / "console"
        os.mkfifo(self.console_path)
        # Kept open for writing, so that ibsim never reads the end of its console.
        self.console = os.open(self.console_path, os.O_RDWR)
        with open(self.folder / "ibsim.out", "wb") as out:
            self.simulator = subprocess.Popen(
                # If this process is killed, the simulator ends too.
                [tool("setpriv"), "--pdeathsig", "TERM", tool("ibsim"), "-s", *map(str, limits),
                 "fabric.net"], stdin=self.console, stdout=out, stderr=subprocess.STDOUT, cwd=self.folder,
                env={**os.environ, "IBSIM_SOCKNAME": self.socket})
        self._wait_for_output("Network simulator ready")

    def _wait_for_output(self, text):
        end = time.monotonic() + START_SECONDS
        while time.monotonic() < end:
            if text in (self.folder / "ibsim.out").read_text(errors="replace"):
                return
            if self.simulator.poll() is not None:
                break
            time.sleep(0.02)
        raise RuntimeError("ibsim: " + (self.folder / "ibsim.out").read_text(errors="replace"))

    def command(self, line):
        """Sends a console command to the simulator, and waits for its effect."""
        os.write(self.console, f"{line}\n".encode())
        time.sleep(0.3)

    def environment(self, **more):
        own = {"IBSIM_SOCKNAME": self.socket, "SIM_HOST": self.host, "SOURCE_DATE_EPOCH": "0",
               "LD_PRELOAD": f"{FAKE_ANSWERS}:{umad2sim()}"}
        return {**os.environ, **own, **{name: str(value) for name, value in more.items()}}

    def run(self, *arguments, seconds=RUN_SECONDS, stdout=None, **more):
        return subprocess.run([str(a) for a in arguments], cwd=self.folder, timeout=seconds,
                              env=self.environment(**more), text=True, stderr=subprocess.PIPE,
                              stdout=subprocess.PIPE if stdout is None else stdout,
                              stdin=subprocess.DEVNULL, errors="replace")

    def fabscan(self, *arguments, **more):
        return self.run(FABSCAN, *arguments, **more)

    def snapshot(self, name="fabric.jsonl"):
        return Snapshot(self.folder / name)

    def close(self):
        if self.simulator is not None:
            self.simulator.terminate()
            try:
                self.simulator.wait(10)
            except subprocess.TimeoutExpired:
                self.simulator.kill()
                self.simulator.wait()
        if self.console is not None:
            os.close(self.console)
        shutil.rmtree(self.folder, ignore_errors=True)


class Snapshot:
    def __init__(self, path):
        self.lines = pathlib.Path(path).read_text().splitlines()
        parsed = [json.loads(line) for line in self.lines]
        self.nodes = {int(node["guid"], 16): node for node in parsed[1:-1]}

    def node(self, node_id):
        """The node by its id in the net, such as S-5a1e0c0000200000."""
        return self.nodes[int(node_id[2:], 16)]

    def port(self, node_id, number):
        return next(p for p in self.node(node_id)["ports"] if p["num"] == number)


def number(value):
    return int(value, 16) if isinstance(value, str) else value


class LiveTestCase(unittest.TestCase):
    """A test with a simulated fabric, which is stopped afterwards."""

    def serve(self, net, host, limits=()):
        fabric = SimulatedFabric(net, host, limits)
        self.addCleanup(self._close, fabric)
        return fabric

    # Files that the simulator's client library creates in the current directory, and removes at a
    # normal exit.
    LEFTOVERS = ("sys-*", ".fabscan-*")

    def _close(self, fabric):
        leftovers = [path.name for name in self.LEFTOVERS for path in fabric.folder.glob(name)]
        fabric.close()
        self.assertEqual(leftovers, [])

    def discover(self, fabric, *arguments, expect=0, output="fabric.jsonl", **more):
        done = fabric.fabscan("discover", "--output", output, "--timeout-ms", "100",
                              "--retries", "1", *arguments, **more)
        self.assertEqual(done.returncode, expect, f"{done.stdout}{done.stderr}")
        return done
