"""The limits for snapshots, which options of every reading subcommand can change."""

import json

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


if __name__ == "__main__":
    main()
