"""`fabscan verify` and `fabscan scaffold` from end to end.

Arguments: the command's path, then the compilers that every verification is done with.
"""

import json
import os
import re
import signal
import stat
import subprocess
import sys
import time
import unittest

import command_line
from command_line import DONE, EXAMPLES, FAILED, INCOMPLETE, WRONG_USAGE, CommandTest

DEMO = EXAMPLES / "demo.fabscan.jsonl"
PARTIAL = EXAMPLES / "partial.fabscan.jsonl"
ADAPTER = "0x5a1e0c0000000600"
REDUCTION_SWITCH = "0x5a1e0c0000000100"

COMPILERS = sys.argv[2:]
del sys.argv[2:]


def node_of(path, guid):
    for line in path.read_text().splitlines():
        node = json.loads(line)
        if node.get("guid") == guid:
            return node
    raise KeyError(guid)


class Verify(CommandTest):
    def test_the_example_agrees_with_every_compiler(self):
        models = set()
        for line in DEMO.read_text().splitlines():
            node = json.loads(line)
            if "guid" not in node or not node.get("inSubFabric", True):
                continue
            general = node["attributes"].get("VendorSpec_GeneralInfo", {}).get("FWInfo", {})
            info = node["attributes"]["SMP_NodeInfo"]
            models.add(json.dumps([node["type"], node.get("specialNode"), info["VendorID"],
                                   info["DeviceID"], info["revision"], general.get("PSID"),
                                   [general.get(name) for name in (
                                       "Major", "Minor", "SubMinor", "Extended_Major",
                                       "Extended_Minor", "Extended_SubMinor")]]))
        for compiler, standard in zip(COMPILERS, ("c++17", "c++20")):
            with self.subTest(compiler=compiler, standard=standard):
                run = self.run_command("verify", DEMO, "--compiler", compiler, "--std", standard)
                # The reduction switch does not compile without edits.
                self.assertEqual(run.returncode, INCOMPLETE, run.stdout + run.stderr)
                total = re.search(
                    r"^(\d+) nodes: (\d+) records, (\d+) fields, 0 differ$", run.stdout, re.M)
                self.assertIsNotNone(total, run.stdout)
                self.assertEqual(int(total[1]), len(models))
                self.assertGreater(int(total[3]), 1000)
                self.assertIn("with other lines that do not compile, verified with the edits "
                              "above: 1 node\n", run.stdout)
                self.assertNotIn("not verified", run.stdout)

    def test_a_node_agrees_with_the_other_standard_of_each_compiler(self):
        for compiler, standard in zip(COMPILERS, ("c++20", "c++17")):
            with self.subTest(compiler=compiler, standard=standard):
                run = self.run_command("verify", DEMO, "--guid", ADAPTER, "--compiler", compiler,
                                       "--std", standard)
                self.assertEqual((run.returncode, run.stderr), (DONE, ""))
                self.assertRegex(run.stdout, r"(?m)^1 node: \d+ records, \d+ fields, 0 differ$")

    def test_an_adapter_compiles_without_edits(self):
        run = self.run_command("verify", DEMO, "--guid", ADAPTER)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertIn("setNodeInfo                         2 records, 7 fields, 0 differ\n",
                      run.stdout)
        self.assertEqual(run.stdout.count("compute-001"), 1)

    def test_edits_are_listed(self):
        run = self.run_command("verify", DEMO, "--guid", REDUCTION_SWITCH)
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertIn("  edited: setVSReductionManagerClassPortInfo, redirect GID assigned as its "
                      "two words\n    mad_buffer.RedirectGID = 0x0x...;\n", run.stdout)
        self.assertIn("\n    SMP_TarnExtPortInfo_pack(&mad_buffer, ", run.stdout)
        self.assertIn("  edited: setWrenPushReductionCounters, braces put around each branch\n",
                      run.stdout)
        # The report contains no memory address.
        self.assertEqual(run.stdout,
                         self.run_command("verify", DEMO, "--guid", REDUCTION_SWITCH).stdout)

    def test_the_buildable_variants_are_accepted(self):
        for path in (DEMO, PARTIAL):
            run = self.run_command("verify", path, "--buildable")
            self.assertEqual((run.returncode, run.stderr), (DONE, ""))
            self.assertRegex(run.stdout, r"(?m)^\d+ nodes: \d+ records, \d+ fields, 0 differ$")

    def test_error_lines_are_listed(self):
        run = self.run_command("verify", PARTIAL)
        self.assert_incomplete(run)
        self.assertIn("  setPortInfo                         no values: #error \"Failed to dump "
                      "PortInfo MAD. Zero and a regular ports must be provided.\"\n", run.stdout)
        self.assertIn("with #error lines, verified without them: 2 nodes\n", run.stdout)

    def assert_incomplete(self, run):
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertRegex(run.stderr, r"^fabscan: error: [^\n]*\n$")

    def test_an_impossible_value_is_a_difference(self):
        node = node_of(DEMO, ADAPTER)
        for port in node["ports"]:
            if "SMP_PortInfo" in port.get("attributes", {}):
                port["attributes"]["SMP_PortInfo"]["MTUCap"] = 0x15
        run = self.run_command("verify", self.put("wide.jsonl", command_line.snapshot(node)))
        self.assert_incomplete(run)
        self.assertIn("nodePortsInfo[1].MTUCap is 0x5, should be 0x15, which its 4-bit "
                      "field cannot hold\n", run.stdout)
        self.assertRegex(run.stdout, r"\n1 node: \d+ records, \d+ fields, [1-9]\d* differ\n")

    def test_a_kept_directory_contains_the_compiled_files(self):
        run = self.run_command("verify", DEMO, "--guid", ADAPTER, "--keep", "kept")
        self.assertEqual(run.returncode, DONE, run.stderr)
        name = f"node{int(ADAPTER, 16):x}"
        self.assertEqual(self.entries(f"kept/devices/{name}"),
                         [f"{name}.h", f"{name}_generated.cpp", f"{name}_verified.cpp"])
        again = self.run_command("verify", DEMO, "--guid", ADAPTER, "--keep", "kept")
        self.assert_fails(again, "kept: is not empty; use a new or empty directory that you can "
                               "write to")

    def test_a_missing_compiler(self):
        run = self.run_command("verify", DEMO, "--compiler", "no-such-compiler")
        self.assert_fails(run, "no-such-compiler: cannot run the compiler: No such file or "
                               "directory; use a different compiler")

    def test_a_failing_compiler_shows_its_first_errors(self):
        compiler = self.put("compiler", "#!/bin/sh\necho 'x.cpp:1: error: no mood' >&2\nexit 1\n")
        compiler.chmod(compiler.stat().st_mode | stat.S_IXUSR)
        run = self.run_command("verify", DEMO, "--compiler", compiler)
        self.assertEqual(run.returncode, FAILED)
        self.assertEqual(run.stderr, "  x.cpp:1: error: no mood\n"
                                     f"fabscan: error: {compiler}: the compiler failed; fix "
                                     "the errors above, or use a different compiler\n")

    def test_an_unknown_guid(self):
        run = self.run_command("verify", DEMO, "--guid", "0x77")
        self.assert_fails(run, f"{DEMO}: no node to verify: no node has the GUID "
                               "0x0000000000000077; 'fabscan show' lists the nodes")

    def test_a_read_only_directory(self):
        self.folder.chmod(0o555)
        run = self.run_command("verify", DEMO, "--keep", "kept", as_nobody=True)
        self.assert_fails(run, "kept: cannot create the directory: Permission denied; use a "
                               "new or empty directory that you can write to")

    def test_a_missing_snapshot(self):
        run = self.run_command("verify", "none.jsonl")
        self.assertEqual(run.returncode, FAILED)
        self.assertRegex(run.stderr, r"^fabscan: error: none.jsonl: [^\n]*\n$")

    def test_the_temporary_directory_is_removed(self):
        temporary = self.folder / "temporary"
        temporary.mkdir()
        run = self.run_command("verify", DEMO, "--guid", ADAPTER,
                               env={**os.environ, "TMPDIR": str(temporary)})
        self.assertEqual(run.returncode, DONE)
        self.assertEqual(self.entries("temporary"), [])


class Signals(CommandTest):
    """A signal ends the command within a second, whatever it waits for."""

    def setUp(self):
        super().setUp()
        self.temporary = self.folder / "temporary"
        self.temporary.mkdir()
        self.started = self.folder / "started"

    def compiler(self, script):
        path = self.put("compiler", f"#!/bin/sh\n{script}\n")
        path.chmod(0o755)
        return path

    def assert_ends(self, *arguments, started=None):
        """`started` appears when the command has begun to wait."""
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            with self.subTest(arguments=arguments, signal=number):
                process = subprocess.Popen(
                    [command_line._command, "verify", *map(str, arguments)], cwd=self.folder,
                    stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                    env={**os.environ, "TMPDIR": str(self.temporary)})
                end = time.monotonic() + 60
                while not started() and time.monotonic() < end:
                    time.sleep(0.01)
                self.assertTrue(started())
                process.send_signal(number)
                self.assertEqual(process.wait(1), -number)
                for stream in (process.stdin, process.stdout, process.stderr):
                    stream.close()
                self.assertEqual(self.entries("temporary"), [])
                self.started.unlink(missing_ok=True)

    def test_while_it_waits_for_its_snapshot(self):
        os.mkfifo(self.folder / "fifo")
        for name in ("fifo", "-"):
            self.assert_ends(name, started=lambda: self.entries("temporary") != [])

    def test_while_the_compiler_hangs(self):
        for script in ("sleep 100", "sleep 100 & sleep 100",
                       "trap '' INT TERM HUP; while :; do sleep 0.1; done"):
            compiler = self.compiler(f": > '{self.started}'; {script}")
            self.assert_ends(DEMO, "--compiler", compiler, started=self.started.exists)

    def test_while_the_compiler_writes(self):
        compiler = self.compiler(f": > '{self.started}'; cd \"$TMPDIR\"/*; "
                                 "while :; do i=$((i+1)); : > file$i; done")
        self.assert_ends(DEMO, "--compiler", compiler, started=self.started.exists)


class Scaffold(CommandTest):
    def test_writes_the_header_and_the_build_file(self):
        run = self.run_command("scaffold", "--prefix", "MyDev")
        self.assertEqual((run.returncode, run.stdout, run.stderr),
                         (DONE, "mydev.h\nCMakeLists.txt\n", ""))
        header = (self.folder / "mydev.h").read_text()
        self.assertIn("namespace MyDev {", header)
        self.assertNotRegex(header.lower(), "example")
        for kind in ("SW", "RTR", "HCA", "AN", "Unknown"):
            self.assertIn(f"SIMULATOR_DEVICE({kind});", header)
        self.assertNotRegex((self.folder / "CMakeLists.txt").read_text().lower(), "example")

    def test_existing_files_are_kept_unless_forced(self):
        self.put("CMakeLists.txt", "mine\n")
        run = self.run_command("scaffold", "--prefix", "MyDev")
        self.assert_fails(run, "CMakeLists.txt: exists; --force replaces it")
        self.assertEqual(self.entries(), ["CMakeLists.txt"])
        self.assertEqual((self.folder / "CMakeLists.txt").read_text(), "mine\n")
        run = self.run_command("scaffold", "--prefix", "MyDev", "--force")
        self.assertEqual(run.returncode, DONE)
        self.assertIn("mydev_generated.cpp", (self.folder / "CMakeLists.txt").read_text())

    def test_an_invalid_prefix(self):
        run = self.run_command("scaffold", "--prefix", "class")
        self.assert_fails(run, "--prefix: 'class' is a C++ keyword; it names a C++ class, such as "
                               "MyDev", WRONG_USAGE)

    def test_a_selection_requires_a_snapshot(self):
        run = self.run_command("scaffold", "--prefix", "MyDev", "--guid", ADAPTER)
        self.assert_fails(run, "a SNAPSHOT is required to select nodes", WRONG_USAGE)


if __name__ == "__main__":
    command_line.main()
