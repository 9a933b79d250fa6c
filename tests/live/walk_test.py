"""docs/simulator.md from the installation on: its commands, as they are written, make simulated
devices of a live fabric in an empty directory. Only `./run install` is replaced, by what it ends in."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import nets
from simulated_fabric import LiveTestCase

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests"))
import document_blocks  # noqa: E402

BUILD = os.environ["FABSCAN_BUILD"]
SECTION = "## From a fabric to devices that build\n"


def documented_commands():
    text = (ROOT / "docs" / "simulator.md").read_text().split(SECTION)[1].split("\n## ")[0]
    return "".join(document_blocks.blocks(text, document_blocks.COMMANDS))


class WalkTest(LiveTestCase):
    def test_every_step_works_as_it_is_written(self):
        commands = documented_commands()
        for step in ("./run install", "discover", "models", "scaffold", "cmake", "verify"):
            self.assertIn(step, commands)
        fabric = self.serve(nets.two_switches(), nets.HERE)
        preload = " ".join(f"{name}='{fabric.environment()[name]}'"
                           for name in ("IBSIM_SOCKNAME", "SIM_HOST", "LD_PRELOAD"))
        commands = commands.replace("./run install", f"cmake --install '{BUILD}' --prefix")
        commands = commands.replace("fabscan discover", f"env {preload} fabscan discover")
        with tempfile.TemporaryDirectory(prefix="fabscan-walk-") as home:
            empty = pathlib.Path(home) / "empty"
            empty.mkdir()
            done = subprocess.run(
                ["bash", "-euxo", "pipefail", "-c", commands], cwd=empty, timeout=500, text=True,
                env={**os.environ, "HOME": home}, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT)
            self.assertEqual(done.returncode, 0, done.stdout)
            self.assertNotIn("warning:", done.stdout)
            self.assertRegex(done.stdout, r"(?m)^\d+ nodes: \d+ records, \d+ fields, 0 differ$")
            devices = [entry.name for entry in (empty / "sim" / "devices").iterdir()]
            self.assertEqual(len(devices), 3)  # a switch, an adapter, a router


if __name__ == "__main__":
    unittest.main(verbosity=2)
