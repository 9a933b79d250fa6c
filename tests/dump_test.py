"""`fabscan dump` from end to end."""

import json
import os
import re
import resource
import signal
import subprocess
import time
import unittest

from command_line import (DONE, EXAMPLES, FAILED, INCOMPLETE, WRONG_USAGE, CommandTest, main,
                          snapshot, switch)

DEMO = EXAMPLES / "demo.fabscan.jsonl"
OUT = "mydev_generated.cpp"


def functions_of(text):
    return [line for line in text.splitlines() if line.startswith("void ")]


def without_addresses(text):
    """The redirect GID is a memory address, which differs between runs."""
    return re.sub("(RedirectGID = 0x0x)[0-9a-f]+", r"\1", text)


class Selection(CommandTest):
    def dump(self, *arguments, **more):
        return self.run_command("dump", DEMO, "--prefix", "MyDev", *arguments, **more)

    def text(self):
        return (self.folder / OUT).read_text()

    def test_all_nodes(self):
        run = self.dump()
        self.assertEqual(run.returncode, DONE)
        lines = [json.loads(line) for line in DEMO.read_text().splitlines()]
        nodes = sum("name" in line and line.get("inSubFabric", True) for line in lines)
        text = self.text()
        self.assertEqual(text.count("// Node Type: "), nodes)
        self.assertEqual(len(functions_of(text)), 22 * nodes)
        self.assertEqual(self.entries(), [OUT])

    def test_summary_counts_what_is_in_the_file(self):
        run = self.dump()
        bodies = self.text().split("() {\n")[1:]
        bodies = [body.split("\n}\n")[0] for body in bodies]
        error = sum("#error" in body for body in bodies)
        comment = sum(all(line.startswith("//") for line in body.splitlines()) for body in bodies)
        hand = sum("RedirectGID = 0x0x" in body or "WrenPushReductionCounters mad_buffer" in body
                   for body in bodies)
        self.assertEqual(hand, 2)
        block = len(bodies) - error - comment - hand
        self.assertGreater(block, 0)
        self.assertGreater(comment, 0)
        nodes = self.text().count("// Node Type: ")
        self.assertEqual(
            run.stdout,
            f"{OUT}\n"
            f"  nodes written            {nodes:8}\n"
            f"  outside the sub-fabric          1\n"
            f"  functions with a block   {block:8}\n"
            f"  skipped with a comment   {comment:8}\n"
            f"  stopped with #error      {error:8}\n"
            f"  in need of an edit       {hand:8}\n",
        )
        run = self.dump("--guid", "5a1e0c0000000500", "--force")
        self.assertNotIn("outside", run.stdout)

    def test_errors_are_counted(self):
        run = self.run_command("dump", "-", "--prefix", "P", input=snapshot(switch()))
        text = (self.folder / "p_generated.cpp").read_text()
        errors = sum(line.startswith("#error ") for line in text.splitlines())
        self.assertGreater(errors, 0)
        self.assertIn(f"  stopped with #error      {errors:8}\n", run.stdout)

    def test_guids_with_and_without_0x_and_from_a_file(self):
        guids = self.put("guids", "# the router\n\n5a1e0c0000000500 # by hand\n")
        run = self.dump("--guid", "0x5A1E0C0000000600", "--guid=5a1e0c0000000100",
                        "--guid-file", guids)
        self.assertEqual(run.returncode, DONE)
        heads = [line.split(", ")[1] for line in self.text().splitlines()
                 if line.startswith("// Node Type: ")]
        self.assertEqual(heads, ["Node GUID: 0x5a1e0c0000000600", "Node GUID: 0x5a1e0c0000000500",
                                 "Node GUID: 0x5a1e0c0000000100"])

    def test_a_selected_node_is_written_as_in_a_full_dump(self):
        self.dump()
        whole = self.text()
        self.dump("--force", "--guid", "5a1e0c0000000500")
        section = self.text().split("fabscan_fabric.h>\n")[1]
        self.assertGreater(len(section), 1000)
        self.assertIn(section, whole)

    def test_a_missing_guid_is_reported(self):
        run = self.dump("--guid", "1", "--guid", "5a1e0c0000000600")
        self.assertEqual(run.stderr,
                         "fabscan: warning: no node has the GUID 0x0000000000000001\n")
        self.assertEqual(run.returncode, DONE)
        self.assertEqual(self.text().count("// Node Type: "), 1)

    def test_a_node_outside_the_sub_fabric_is_reported(self):
        text = snapshot(switch(), switch("S2", "0x2", inSubFabric=False))
        run = self.run_command("dump", "-", "--prefix", "P", "--guid", "1", "--guid", "2",
                               input=text)
        self.assertEqual(run.stderr.splitlines()[0],
                         "fabscan: warning: the node 0x0000000000000002 (S2) is outside the "
                         "sub-fabric")
        self.assertEqual(run.returncode, DONE)

    def test_no_node_left(self):
        run = self.dump("--guid", "1")
        self.assert_fails(run, f"{DEMO}: no node to write: no node has the GUID "
                               "0x0000000000000001; 'fabscan show' lists the nodes")
        self.assertEqual(self.entries(), [])
        run = self.run_command("dump", "-", "--prefix", "P",
                               input=snapshot(switch(inSubFabric=False)))
        self.assert_fails(run, "standard input: no node to write: none is in the sub-fabric; use a different "
                               "snapshot")
        run = self.run_command("dump", "-", "--prefix", "P", input=snapshot())
        self.assertEqual(run.returncode, FAILED)
        self.assertEqual(self.entries(), [])

    def test_nodes_that_share_a_class(self):
        text = snapshot(switch("S1", "0x1"), switch("S2", "0x2"),
                        {"name": "H", "guid": "0x3", "type": "CA", "numPorts": 1})
        run = self.run_command("dump", "-", "--prefix", "P", input=text)
        self.assertEqual(
            run.stderr,
            "fabscan: warning: p_generated.cpp does not compile as written: 21 functions with "
            "#error, 1 class defined by more than one node; next: fabscan scaffold SNAPSHOT "
            "--prefix P --output-dir sim\n")

    def test_strict(self):
        run = self.dump("--strict")
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertEqual(
            run.stderr,
            "fabscan: error: mydev_generated.cpp does not compile as written: 2 functions that "
            "need edits, 2 classes defined by more than one node; next: fabscan scaffold "
            f"{DEMO} --prefix MyDev --output-dir sim\n")
        self.assertEqual(self.entries(), [OUT])
        run = self.dump("--strict", "--force", "--guid", "5a1e0c0000000600")
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        run = self.run_command("dump", "-", "--prefix", "P", "--strict", input=snapshot(switch()))
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertEqual(run.stdout.splitlines()[0], "p_generated.cpp")

    def test_strict_reports_a_selected_node_that_is_missing(self):
        adapter = ("--guid", "5a1e0c0000000600")
        guest = next(json.loads(line)["guid"] for line in DEMO.read_text().splitlines()
                     if "lab-guest" in line)
        for missing, warning in (
                (("--guid", "dead"), "no node has the GUID 0x000000000000dead"),
                (("--guid", guest), f"the node {guest} (lab-guest-01 HCA-1) is outside the "
                                    "sub-fabric")):
            for form in ((), ("--one-per-model",), ("--buildable",)):
                for strict, status in (((), DONE), (("--strict",), INCOMPLETE)):
                    run = self.dump("--force", *form, *strict, *adapter, *missing)
                    self.assertEqual((run.returncode, run.stderr),
                                     (status, f"fabscan: warning: {warning}\n"))
                    # The others are written.
                    self.assertEqual(len(self.entries()), 1)
                    (self.folder / self.entries()[0]).unlink()

    def test_the_same_input_gives_the_same_bytes(self):
        self.dump()
        first = self.text()
        self.dump("--force")
        self.assertEqual(without_addresses(self.text()), without_addresses(first))

    def test_warns_about_one_node_that_does_not_compile(self):
        run = self.dump("--guid", "5a1e0c0000000100")
        self.assertEqual(
            (run.returncode, run.stderr),
            (DONE, f"fabscan: warning: {OUT} does not compile as written: 2 functions that need "
                   f"edits; next: fabscan scaffold {DEMO} --prefix MyDev --guid "
                   "5a1e0c0000000100 --output-dir sim\n"))

    def test_a_device_cannot_write_source_or_to_the_terminal(self):
        name = "x\nvoid P::SW::stolen() {}\n\x1b[31m"
        run = self.run_command("dump", "-", "--prefix", "P",
                               input=snapshot(switch(name), switch("S2", "0x2")))
        text = (self.folder / "p_generated.cpp").read_text()
        self.assertNotIn("stolen", " ".join(functions_of(text)))
        self.assertNotIn("\x1b", text + run.stdout + run.stderr)


class Usage(CommandTest):
    def assert_refused(self, message, *arguments, **more):
        run = self.run_command("dump", DEMO, *arguments, **more)
        self.assert_fails(run, message, WRONG_USAGE)
        self.assertEqual([entry for entry in self.entries() if entry != "guids"], [])

    def test_help_has_an_example_and_goes_to_standard_output(self):
        run = self.run_command("dump", "--help")
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertIn("\nExample", run.stdout)

    def test_version(self):
        run = self.run_command("--version")
        self.assertRegex(run.stdout, r"^fabscan \d+\.\d+\.\d+\n$")
        self.assertEqual(run.returncode, DONE)

    def test_subcommands(self):
        self.assert_fails(self.run_command(),
                          "a subcommand is missing; 'fabscan --help' lists them", WRONG_USAGE)
        self.assert_fails(self.run_command("dmup", DEMO),
                          "unknown subcommand 'dmup'; did you mean 'dump'?", WRONG_USAGE)
        self.assert_fails(self.run_command("xyzzy"),
                          "unknown subcommand 'xyzzy'; 'fabscan --help' lists the subcommands",
                          WRONG_USAGE)

    def test_options(self):
        self.assert_refused("--prefix is required; see 'fabscan dump --help'")
        self.assert_refused("'--forse' was not expected; did you mean '--force'?",
                            "--prefix", "P", "--forse")
        self.assert_refused("'second' was not expected; see 'fabscan dump --help'",
                            "second", "--prefix", "P")
        run = self.run_command("dump", "--prefix", "P")
        self.assert_fails(run, "SNAPSHOT is required; see 'fabscan dump --help'", WRONG_USAGE)

    def test_a_snapshot_named_like_a_subcommand(self):
        self.put("dump", snapshot(switch()))
        self.assertEqual(self.run_command("dump", "dump", "--prefix", "P").returncode, DONE)

    def test_prefixes(self):
        for prefix, fault in (
                ("9dev", "begins with a digit"),
                ("class", "is a C++ keyword"),
                ("_Dev", "is reserved, because it begins with an underscore"),
                ("my__dev", "is reserved, because it contains two consecutive underscores"),
                ("../x", "contains characters other than ASCII letters, digits and underscores"),
        ):
            self.assert_refused(f"--prefix: '{prefix}' {fault}; it names a C++ class, such as MyDev",
                                f"--prefix={prefix}")

    def test_a_long_prefix(self):
        run = self.run_command("dump", DEMO, "--prefix", "a" * 300)
        self.assertEqual(run.returncode, FAILED)
        self.assertIn("File name too long", run.stderr)
        self.assertEqual(self.entries(), [])

    def test_malformed_guids(self):
        advice = "expected 1 to 16 hexadecimal digits, with or without 0x or colons"
        self.assert_refused(f"--guid: '12:34' is not a valid GUID; {advice}",
                            "--prefix", "P", "--guid", "12:34")
        guids = self.put("guids", "0x1\n\nspine 3\n")
        self.assert_refused(f"{guids}:3: 'spine 3' is not a valid GUID; {advice}",
                            "--prefix", "P", "--guid-file", guids)
        guids = self.put("guids", "# nothing\n")
        self.assert_refused(f"{guids}: contains no GUID; write one per line",
                            "--prefix", "P", "--guid-file", guids)


class BadInput(CommandTest):
    """For any bad input, there is one error line, and an earlier output is unchanged."""

    def setUp(self):
        super().setUp()
        self.put(OUT, "earlier\n")

    def assert_refused(self, source, message, **more):
        run = self.run_command("dump", source, "--prefix", "MyDev", "--force", **more)
        self.assertEqual(run.returncode, FAILED)
        self.assertEqual(run.stdout, "")
        self.assertEqual(run.stderr.count("\n"), 1, run.stderr)
        self.assertTrue(run.stderr.startswith("fabscan: error: "), run.stderr)
        self.assertIn(message, run.stderr)
        self.assertEqual((self.folder / OUT).read_text(), "earlier\n")
        self.assertEqual([entry for entry in self.entries() if entry.startswith(".")], [])

    def test_unreadable_files(self):
        self.assert_refused("missing", "missing: cannot open: No such file or directory")
        self.assert_refused("/", "Is a directory")
        secret = self.put("secret", snapshot(switch()))
        secret.chmod(0)
        self.folder.chmod(0o777)
        self.assert_refused(secret, "Permission denied", as_nobody=True)

    def test_malformed_snapshots(self):
        header = '{"fabscan_snapshot":1}\n'
        node = '{"name":"S1","guid":"0x1","type":"SW","numPorts":2}\n'
        end = '{"end":true,"nodes":1}\n'
        for number, text in enumerate((
                b"",
                b"not JSON\n",
                (header + node).encode(),  # truncated
                (header + node + '{"end":true,"nodes":2}\n').encode(),
                (header + header + node + end).encode(),
                (node + end).encode(),
                (header + node + node + end).encode(),
                (header + node.replace("numPorts", "ports_") + end).encode(),
                (header + node.replace(':2}', ':256}') + end).encode(),
                (header + node.replace('"SW"', '"SWITCH"') + end).encode(),
                (header + node.replace("S1", "S\xff") + end).encode("latin-1"),
                (header + node + end + node).encode(),
        )):
            with self.subTest(number=number):
                self.assert_refused(self.put("bad", text), "bad")

    def test_standard_input(self):
        self.assert_refused("-", "standard input", input="")

    def test_every_truncation_of_the_example(self):
        lines = DEMO.read_bytes().splitlines(keepends=True)
        for count in range(len(lines)):
            self.assert_refused(self.put("cut", b"".join(lines[:count])), "cut")


class Buildable(CommandTest):
    def dump(self, source, *arguments, **more):
        return self.run_command("dump", source, "--prefix", "P", "--output-dir", "out", *arguments,
                                **more)

    def texts(self):
        """Pairs of lines of the exact file and the buildable file."""
        text = (self.folder / "out" / "p_generated.cpp").read_text()
        return text.splitlines()

    def test_error_lines_become_comments_and_are_listed(self):
        path = self.put("f.jsonl", snapshot(switch()))
        self.dump(path)
        exact = self.texts()
        run = self.dump(path, "--buildable", "--force")
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        expected = ["// " + line if line.startswith("#error") else line for line in exact]
        self.assertEqual(self.texts(), expected)
        listed = run.stdout.split("Edited so that it compiles:\n")[1].splitlines()
        self.assertEqual(len(listed) - 1, sum(line.startswith("#error") for line in exact))
        self.assertIn("      1  setArInfo                           #error line turned into a comment: "
                      "\"The node does not support AR\"", listed)

    def test_edits_of_the_reduction_switch(self):
        self.dump(DEMO, "--guid", "5a1e0c0000000100")
        exact = self.texts()
        run = self.dump(DEMO, "--guid", "5a1e0c0000000100", "--buildable", "--force")
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        edited = self.texts()
        self.assertEqual(len(edited), len(exact))
        gid = next(line for line in edited if "RedirectGID" in line)
        node = next(line for line in map(json.loads, DEMO.read_text().splitlines())
                    if line.get("guid") == "0x5a1e0c0000000100")
        words = node["attributes"]["IB_ClassPortInfo"]["RedirectGID"]
        self.assertEqual(gid, "    " + " ".join(f"mad_buffer.RedirectGID[{i}] = {int(str(word), 0):#x};"
                                                for i, word in enumerate(words)))
        self.assertIn("Edited so that it compiles:\n"
                      "  times  function                            edit\n"
                      "      1  setVSReductionManagerClassPortInfo  redirect GID assigned as its two "
                      "words\n", run.stdout)

    def test_it_compiles(self):
        for source in (DEMO, self.put("f.jsonl", snapshot(switch()))):
            arguments = ["--guid", "5a1e0c0000000100"] if source == DEMO else []
            self.dump(source, *arguments, "--buildable", "--force")
            self.run_command("scaffold", "--prefix", "P", "--output-dir", "out", "--force")
            include = EXAMPLES.parent
            subprocess.run(
                ["c++", "-std=c++17", "-fsyntax-only", "-I", include, "-I", include / "include", "-I",
                 include / "simulator/include", "-I", include / "simulator/devices/example",
                 "p_generated.cpp"], cwd=self.folder / "out", check=True, timeout=120)

    def test_a_file_that_cannot_be_made_buildable_is_refused(self):
        text = snapshot(switch("S1", "0x1"), switch("S2", "0x2"))
        run = self.dump("-", "--buildable", input=text)
        self.assert_fails(run, "--buildable: S1 and S2 both define the class P::SW, and a file can "
                               "define it only once; add --one-per-model, or select one node of "
                               "each class")
        self.assertEqual(self.entries(), [])

    def test_one_per_model(self):
        run = self.dump(DEMO, "--buildable", "--one-per-model", "--strict")
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        self.assertIn("Edited so that it compiles:\n", run.stdout)
        for name in self.entries("out"):
            text = (self.folder / "out" / name).read_text()
            self.assertNotRegex(text, r"(?m)^#error|RedirectGID = 0x0x")


class Output(CommandTest):
    def dump(self, *arguments, **more):
        return self.run_command("dump", DEMO, "--prefix", "MyDev", *arguments, **more)

    def test_an_existing_file_is_kept_unless_forced(self):
        self.put(OUT, "earlier\n")
        self.assert_fails(self.dump(), f"{OUT}: exists; --force replaces it")
        self.assertEqual((self.folder / OUT).read_text(), "earlier\n")
        self.assertEqual(self.dump("--force").returncode, DONE)
        self.assertGreater((self.folder / OUT).stat().st_size, 100_000)
        self.assertEqual(self.entries(), [OUT])

    def test_an_existing_file_is_refused_before_the_input_is_read(self):
        self.put(OUT, "earlier\n")
        run = self.run_command("dump", "missing", "--prefix", "MyDev")
        self.assert_fails(run, f"{OUT}: exists; --force replaces it")

    def test_output_dir(self):
        (self.folder / "sub").mkdir()
        run = self.dump("--output-dir", "sub")
        self.assertEqual(run.stdout.splitlines()[0], f"sub/{OUT}")
        self.assertEqual(self.entries("sub"), [OUT])
        self.assertEqual(self.entries(), ["sub"])

    def test_a_missing_directory_is_created(self):
        run = self.dump("--output-dir", "a/b//c/")
        self.assertEqual(run.returncode, DONE, run.stderr)
        self.assertEqual(self.entries("a/b/c"), [OUT])
        self.put("file", "")
        self.assert_fails(self.dump("--output-dir", "file/below"),
                          "file: is not a directory; use another path")

    def test_a_failed_run_leaves_no_new_directory(self):
        for source in ("missing", self.put("bad", "not JSON\n")):
            run = self.run_command("dump", source, "--prefix", "P", "--output-dir", "a/b")
            self.assertEqual(run.returncode, FAILED)
            self.assertNotIn("a", self.entries())

    def test_standard_output(self):
        self.dump("--guid", "5a1e0c0000000600")
        run = self.dump("--guid", "5a1e0c0000000600", "--output", "-")
        self.assertEqual(run.returncode, DONE)
        self.assertEqual(run.stdout, (self.folder / OUT).read_text())
        self.assertTrue(run.stderr.startswith("standard output\n  nodes written "), run.stderr)
        self.assertEqual(self.entries(), [OUT])

    def test_a_custom_file_name(self):
        self.dump("--guid", "5a1e0c0000000600")
        run = self.dump("--guid", "5a1e0c0000000600", "--output", "devices.cpp")
        self.assertEqual(run.stdout.splitlines()[0], "devices.cpp")
        self.assertEqual((self.folder / "devices.cpp").read_text(),
                         (self.folder / OUT).read_text())
        self.assertEqual(self.entries(), ["devices.cpp", OUT])
        for other in (("--one-per-model",), ("--output-dir", "a")):
            self.assert_fails(self.dump("--output", "b.cpp", *other),
                              f"--output names one file; omit {other[0]}", WRONG_USAGE)

    def test_a_read_only_directory(self):
        source = self.put("in", DEMO.read_bytes())
        self.folder.chmod(0o555)
        run = self.run_command("dump", source, "--prefix", "P", as_nobody=True)
        self.assert_fails(
            run, "cannot create files in the current directory: Permission denied; use another "
                 "directory")

    def test_a_full_disk(self):
        self.put(OUT, "earlier\n")
        size = 130_000
        for limit in (0, 1, 4096, 50_000, size // 2):
            run = self.dump("--force", file_limit=limit)
            self.assert_fails(run, f"{OUT}: cannot write (Simulator generated code): "
                                   "File too large; free some space, or write elsewhere")
            self.assertEqual((self.folder / OUT).read_text(), "earlier\n")
            self.assertEqual(self.entries(), [OUT])

    def test_no_space_for_the_last_byte(self):
        self.dump()
        size = (self.folder / OUT).stat().st_size
        self.assertEqual(self.dump("--force", file_limit=size - 1).returncode, FAILED)
        self.assertEqual(self.dump("--force", file_limit=size).returncode, DONE)

    def test_results_that_cannot_be_written(self):
        with open("/dev/full", "w") as full:
            run = self.dump("--guid", "5a1e0c0000000600", stdout=full)
        self.assert_fails(run, "standard output: cannot write: No space left on device; free some "
                               "space, or write elsewhere")
        self.assertEqual(self.entries(), [])

    @unittest.skipIf(os.environ.get("FABSCAN_SANITIZE"), "sanitizers take all address space")
    def test_out_of_memory(self):
        import command_line
        run = subprocess.run(
            [command_line._command, "dump", "-", "--prefix", "P"],
            input="x" * 60_000_000, text=True, cwd=self.folder, stderr=subprocess.PIPE,
            stdout=subprocess.PIPE, timeout=120,
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (50_000_000, 50_000_000)))
        self.assert_fails(run, "out of memory; choose fewer nodes with --guid, or use a larger "
                               "machine")
        self.assertEqual(self.entries(), [])

    def test_signals_leave_nothing_behind(self):
        import command_line
        self.put(OUT, "earlier\n")
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
            run = subprocess.Popen(
                [command_line._command, "dump", "-", "--prefix", "MyDev", "--force"],
                stdin=subprocess.PIPE, cwd=self.folder)
            deadline = time.monotonic() + 60
            while len(self.entries()) < 2 and time.monotonic() < deadline:
                time.sleep(0.01)
            self.assertEqual(len(self.entries()), 2)
            run.send_signal(number)
            self.assertEqual(run.wait(60), -number)
            run.stdin.close()
            self.assertEqual(self.entries(), [OUT])
            self.assertEqual((self.folder / OUT).read_text(), "earlier\n")

    def test_a_link_to_another_file(self):
        self.put("real.cpp", "earlier\n")
        (self.folder / "p_generated.cpp").symlink_to("real.cpp")
        run = self.run_command("dump", DEMO, "--prefix", "P", "--force")
        self.assertEqual(run.returncode, DONE, run.stderr)
        self.assertIn("void P::SW::", (self.folder / "real.cpp").read_text())
        self.assertEqual(self.entries(), ["p_generated.cpp", "real.cpp"])

    def test_two_runs_on_one_output(self):
        import command_line
        runs = [subprocess.Popen(
            [command_line._command, "dump", DEMO, "--prefix", "MyDev"], cwd=self.folder,
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) for _ in range(4)]
        self.assertEqual(sorted(run.wait(60) for run in runs), [DONE, FAILED, FAILED, FAILED])
        self.assertEqual(self.entries(), [OUT])


if __name__ == "__main__":
    main()
