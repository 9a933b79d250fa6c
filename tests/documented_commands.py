"""documented_commands.py BUILD: the commands in the documents work.

Commands are in sh blocks, between backticks, and in the examples of --help. fabscan and related
commands run with what BUILD installs, in a directory that contains the files they name; a live fabric
is simulated. Tasks of `./run` are run by `.ci/run` or `./run nightly`, or are listed here.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import document_blocks
from document_blocks import DOCUMENTS, ROOT

BUILD = pathlib.Path(sys.argv.pop(1)).resolve()
EXAMPLE = ROOT / "examples" / "demo.fabscan.jsonl"

# Tasks that neither `.ci/run` nor `./run nightly` runs, with the reason.
BY_HAND = {
    "bench": "measures; needs an idle machine and minutes",
    "bench-whole": "measures; needs an idle machine and minutes",
    "coverage": "reads the counts of sanitize",
    "demo-live": "the test live_demo runs the same script",
    "format": "changes the sources; check-format checks them",
    "install": "install_test does the same with the tested build",
    "instructions": "updates the counts that the test 'instructions' compares",
}

# Exit statuses other than 0: the nodes of the bundled snapshot share classes, and two days differ.
STATUSES = {
    "fabscan check fabric.jsonl": 3,
    "fabscan check fabric.jsonl --html check.html": 3,
    "fabscan check fabric.jsonl --summary": 3,
    "fabscan diff before.jsonl after.jsonl": 1,
    "fabscan diff yesterday.jsonl today.jsonl --ignore state --ignore SMP_PortInfo.LID": 1,
}

FIRST_WORDS = ("fabscan", "ibnetdiscover", "pkg-config", "fabscan-make-fabric")


def run_tasks(text):
    """Tasks that a script calls directly, from another task, or in a bare root."""
    calls = re.findall(r"(?:^|\s)\./run ([a-z][a-z-]*)", text)
    calls += re.findall(r"\bbare [a-z]+ ([a-z][a-z-]*)$", text, flags=re.M)
    return {*calls, *(name.replace("_", "-") for name in re.findall(r"\btask_([a-z_]+)", text))}


def tasks():
    """Every task of ./run, with the tasks it calls."""
    bodies = re.findall(r"^task_([a-z_]+)\(\) \{(.*?)^\}", (ROOT / "run").read_text(),
                        flags=re.S | re.M)
    return {name.replace("_", "-"): run_tasks(body) for name, body in bodies}


def tasks_that_are_run():
    known, reached = tasks(), set()
    waiting = {"nightly", *run_tasks((ROOT / ".ci" / "run").read_text())}
    while waiting:
        task = waiting.pop()
        if task not in reached:
            reached.add(task)
            waiting |= known[task]
    return reached


class Tasks(unittest.TestCase):
    def test_each_exists_and_is_run_or_listed(self):
        known, reached = tasks(), tasks_that_are_run()
        self.assertGreater(len(known), 15)
        named = {}
        for document in DOCUMENTS:
            for task in re.findall(r"\./run ([a-z][a-z-]*)", document.read_text()):
                named.setdefault(task, document.name)
        self.assertIn("demo", named)
        for task, document in named.items():
            self.assertIn(task, known, f"{document} names it")
            self.assertTrue(task in reached or task in BY_HAND,
                            f"{document} names ./run {task}, which nothing runs")

    def test_the_list_is_current(self):
        for task in BY_HAND:
            self.assertIn(task, tasks())
            self.assertNotIn(task, tasks_that_are_run())


class Commands(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = pathlib.Path(tempfile.mkdtemp(prefix="fabscan-documented-"))
        cls.addClassCleanup(shutil.rmtree, cls.scratch)
        prefix = cls.scratch / "prefix"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)
        pkg_config = ":".join(map(str, prefix.glob("**/pkgconfig")))
        cls.environment = {**os.environ, "PATH": f"{prefix}/bin:{BUILD}/bin:{os.environ['PATH']}",
                           "CMAKE_PREFIX_PATH": str(prefix), "PKG_CONFIG_PATH": pkg_config}
        cls.environment.pop("DESTDIR", None)
        cls.make_files()

    @classmethod
    def make_files(cls):
        """Creates one of each file that commands read."""
        files = cls.files = cls.scratch / "files"
        files.mkdir()
        fabric = EXAMPLE.read_text()
        changed = fabric.replace('"state":"ACTIVE"', '"state":"DOWN"', 1)
        changed = changed.replace('"LinkWidthEnabled":19', '"LinkWidthEnabled":3', 1)
        assert changed != fabric
        for name in ("fabric", "extra", "vendor", "before", "yesterday"):
            (files / f"{name}.jsonl").write_text(fabric)
        for name in ("after", "today"):
            (files / f"{name}.jsonl").write_text(changed)
        partial = EXAMPLE.with_name("partial.fabscan.jsonl")
        for name, kind, source in (("fabric.txt", "ibnetdiscover", partial), ("plan.csv", "csv", EXAMPLE)):
            subprocess.run([BUILD / "bin" / "fabscan", "export", source, "--format", kind, "--output",
                            files / name], check=True)
        (files / "examples").symlink_to(EXAMPLE.parent)
        (files / "our.key").write_text("a secret key for repeatable replacements\n")
        for folder in ("devices/mydev", "DIR"):
            (files / folder).mkdir(parents=True)
        cls.bash("fabscan-make-fabric --cache --switches 4 --adapters 8 --output fabric.cache", files)

    @classmethod
    def bash(cls, commands, folder, fabric=None):
        environment = {**(fabric or {}), **cls.environment}
        return subprocess.run(["bash", "-euc", commands], cwd=folder, env=environment, text=True,
                              stdin=subprocess.DEVNULL, capture_output=True, errors="replace",
                              timeout=300)

    def check(self, commands, where):
        """Runs the commands in a copy of the files, without the output files."""
        with tempfile.TemporaryDirectory(dir=self.scratch) as folder:
            shutil.copytree(self.files, folder, dirs_exist_ok=True)
            for option in re.findall(r"--(?:output|html|cache) ([\w.]+)", commands):
                (pathlib.Path(folder) / option).unlink(missing_ok=True)
            with self.subTest(commands, where=where):
                if re.search(r"\b(discover|ibnetdiscover)\b", commands):
                    done = self.run_live(commands, folder)
                else:
                    done = self.bash(commands, folder)
                self.assertEqual(done.returncode, STATUSES.get(commands, 0), f"{commands}\n{done.stdout}{done.stderr}")

    def run_live(self, commands, folder):
        live = self.live_fabric()
        if live is None:
            self.skipTest("built without discovery")
        return self.bash(commands.replace("ibp1s0", "ibsim0"), folder, fabric=live.environment())

    @classmethod
    def live_fabric(cls):
        if not hasattr(cls, "_live"):
            if "FABSCAN_FAKE_ANSWERS" not in os.environ:
                return None
            sys.path.insert(0, str(ROOT / "tests" / "live"))
            import nets
            import simulated_fabric
            cls._live = simulated_fabric.SimulatedFabric(nets.two_switches(), nets.HERE)
            cls.addClassCleanup(cls._live.close)
        return cls._live

    def test_blocks(self):
        found = 0
        for document in DOCUMENTS:
            document_blocks.assert_known_blocks(document)
            for block in document_blocks.blocks(document.read_text(), document_blocks.COMMANDS):
                found += 1
                own = [line for line in block.splitlines() if not line.startswith("./run ")]
                if own:
                    self.check("\n".join(own), document.name)
        self.assertGreater(found, 2)

    def test_inline(self):
        found = set()
        for document in DOCUMENTS:
            for code in document_blocks.inline(document.read_text()):
                if code.split()[0] in FIRST_WORDS and len(code.split()) > 1 and code not in found:
                    found.add(code)
                    self.check_inline(code, document.name)
        self.assertGreater(len(found), 15)

    def check_inline(self, code, where):
        words = code.split()
        if len(words) == 2 and not words[1].startswith("-"):  # a name only: fabscan dump
            code += " --help"
        elif words == ["ibnetdiscover", "--cache"]:
            return
        for subcommand in self.subcommands() if "SUBCOMMAND" in words else [""]:
            self.check(code.replace("SUBCOMMAND", subcommand), where)

    def subcommands(self):
        listed = self.bash("fabscan --help", self.files).stdout.split("Subcommands:\n")[1]
        return re.findall(r"^  ([a-z]+) ", listed, flags=re.M)

    def test_examples_of_help(self):
        found = self.subcommands()
        self.assertGreater(len(found), 10)
        for subcommand in found:
            shown = self.bash(f"fabscan {subcommand} --help", self.files).stdout
            examples = re.findall(r"^  ([a-z]+ .*)$", re.split(r"^Examples?:", shown, flags=re.M)[1],
                                  flags=re.M)
            self.assertTrue(any(line.startswith(f"fabscan {subcommand} ") for line in examples))
            made = [line for line in examples if not line.startswith("fabscan ")]
            for line in examples:
                if line not in made:
                    self.check("\n".join([*made, line]), f"fabscan {subcommand} --help")


if __name__ == "__main__":
    unittest.main(verbosity=2)
