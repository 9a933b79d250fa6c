"""The limits for snapshots, which options of every reading subcommand can change, and the time that an
input takes."""

import json
import os
import subprocess

import command_line
from command_line import DONE, FAILED, WRONG_USAGE, CommandTest, main, snapshot, switch

READERS = (("check", "s"), ("models", "s"), ("show", "s"), ("dump", "s", "--prefix", "P"),
           ("dump", "s", "--prefix", "P", "--one-per-model"), ("verify", "s"), ("diff", "s", "s"),
           ("merge", "s", "s", "--output", "out"), ("anonymise", "s", "--output", "out"))
LINE = "the line is longer than 100 bytes; raise max-line-bytes if it is meant to be"
NODES = "more than 1 nodes; raise max-nodes if that is meant"


def failure_of(command):
    return 2 if command[0] == "diff" else FAILED  # 1 means that snapshots differ


class Limits(CommandTest):
    def test_a_longer_line_is_refused_by_every_reader(self):
        self.put("s", snapshot(switch(name="n" * 100)))
        for command in READERS:
            run = self.run_command(*command, "--max-line-bytes", 100)
            self.assert_fails(run, f"s:2: {LINE}", failure_of(command))
        self.assertEqual(self.entries(), ["s"])

    def test_more_nodes_are_refused_by_every_reader(self):
        self.put("s", snapshot(switch("a", "0x1"), switch("b", "0x2")))
        for command in READERS:
            run = self.run_command(*command, "--max-nodes", 1)
            self.assert_fails(run, f"s:3: {NODES}", failure_of(command))
        self.assertEqual(self.entries(), ["s"])
        self.assertEqual(self.run_command("show", "s", "--max-nodes", 2).returncode, DONE)

    def test_depth_in_an_unselected_node(self):
        deep = "[" * 5_000_000 + "]" * 5_000_000
        identity = json.dumps(switch("b", "0x2"))[1:-1]
        for line in (f'{{{identity},"absent":{deep}}}', f'{{"absent":{deep},{identity}}}'):
            self.put("s", "\n".join(['{"fabscan_snapshot":1}', json.dumps(switch("a", "0x1")), line,
                                     '{"end":true,"nodes":2}']))
            run = self.run_command("show", "s", "--guid", "0x1")
            self.assertEqual((run.returncode, run.stderr), (DONE, ""))
            self.assert_fails(self.run_command("show", "s", "--guid", "0x2"),
                              "s:3: absent: must be an object, {...}, not a list")

    def test_a_line_above_the_usual_limit(self):
        self.put("s", '{"fabscan_snapshot":1,"source":"' + "x" * (64 << 20) + '"}\n'
                      '{"end":true,"nodes":0}\n')
        run = self.run_command("diff", "s", "s")
        self.assert_fails(run, "s:1: the line is longer than 67108864 bytes; raise max-line-bytes "
                               "if it is meant to be", failure_of(("diff",)))
        self.assertEqual(self.run_command("diff", "s", "s", "--max-line-bytes", "65M").returncode,
                         DONE)

    def test_sizes_with_a_unit(self):
        self.put("s", snapshot(switch(name="n" * 1000)))
        self.assertEqual(self.run_command("show", "s", "--max-line-bytes", "1K").returncode, FAILED)
        self.assertEqual(self.run_command("show", "s", "--max-line-bytes", "2K").returncode, DONE)

    def test_invalid_limits(self):
        self.put("s", snapshot(switch()))
        for option, value in (("--max-line-bytes", "0"), ("--max-line-bytes", "4G"),
                              ("--max-line-bytes", "much"), ("--max-line-bytes", "-1"),
                              ("--max-nodes", "0"), ("--max-nodes", "16000001")):
            run = self.run_command("show", "s", f"{option}={value}")
            self.assertEqual(run.returncode, WRONG_USAGE, run.stderr)
            self.assertRegex(run.stderr, rf"\Afabscan: error: {option}: [^\n]+\n\Z")
            self.assertEqual(run.stdout, "")


class Growth(CommandTest):
    """Four times the input takes about four times as long, whatever it contains."""

    COMMANDS = (("show", "f"), ("show", "f", "--guid", "1"), ("show", "f", "--summary"),
                ("models", "f"), ("check", "f"), ("check", "f", "--summary"), ("diff", "f", "one"),
                ("check", "f", "--html", "-"), ("dump", "f", "--prefix", "P", "--output", "-"),
                ("dump", "f", "--prefix", "P", "--one-per-model", "--buildable", "--output-dir",
                 "dump", "--force"),
                ("merge", "f", "f", "--output", "-"), ("anonymise", "f", "--output", "-"))

    def put_lines(self, name, header, nodes):
        lines = [{"fabscan_snapshot": 1, **header}, *nodes, {"end": True, "nodes": len(nodes)}]
        self.put(name, "".join(json.dumps(line) + "\n" for line in lines))

    def processor_time(self, command):
        before = os.times()
        run = subprocess.run([command_line._command, *command], cwd=self.folder, timeout=120,
                             stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL, check=False)
        after = os.times()
        self.assertIn(run.returncode, (0, 1, 3), command)
        return (after.children_user + after.children_system - before.children_user -
                before.children_system)

    def check_growth(self, make):
        """`make(n)` gives the header and the nodes of an input whose size is n."""
        self.put_lines("one", {}, [switch()])
        for command in self.COMMANDS:
            seconds = []
            for factor in (1, 2, 4):
                self.put_lines("f", *make(factor))
                seconds.append(self.processor_time(command))
            floor = max(seconds[0], 0.05)
            self.assertLess(seconds[1], 4 * floor, (command, seconds))
            self.assertLess(seconds[2], 8 * floor, (command, seconds))

    @staticmethod
    def words(factor):
        return "ab " * (20_000 * factor)

    def test_a_long_header(self):
        self.check_growth(lambda n: ({"source": self.words(n), "created": self.words(n)},
                                     [switch()]))

    def test_long_names(self):
        self.check_growth(lambda n: ({}, [
            switch(self.words(n), "0x1"), switch(self.words(n) + "x", "0x2", inSubFabric=False)]))

    def test_a_long_reason(self):
        self.check_growth(lambda n: ({}, [switch(absent={"SMP_NodeInfo": self.words(n)})]))

    def test_many_names(self):
        self.check_growth(lambda n: ({}, [switch(f"n {i}", hex(i + 1)) for i in range(400 * n)]))

    def test_many_nodes_outside_the_sub_fabric(self):
        self.check_growth(lambda n: ({}, [
            switch(f"n{i}", hex(i + 1), inSubFabric=i == 0) for i in range(400 * n)]))

    def test_many_reasons(self):
        self.check_growth(lambda n: ({}, [
            switch(f"n{i}", hex(i + 1), absent={"SMP_NodeInfo": f"why {i}"},
                   ports=[{"num": 1, "state": "DOWN", "absent": {"SMP_PortInfo": f"w {i}"}}])
            for i in range(400 * n)]))


if __name__ == "__main__":
    main()
