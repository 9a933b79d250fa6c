"""`fabscan check` from end to end."""

import json
import os
import re

from command_line import (DONE, EXAMPLES, FAILED, INCOMPLETE, WRONG_USAGE, CommandTest, main,
                          snapshot, switch)

DEMO = EXAMPLES / "demo.fabscan.jsonl"
HOST = "0x5a1e0c0000000600"
LEAF = "0x5a1e0c0000000200"
SPINE = "0x5a1e0c0000000100"
PARTIAL = EXAMPLES / "partial.fabscan.jsonl"


class Check(CommandTest):
    def check(self, *arguments, **more):
        return self.run_command("check", DEMO, *arguments, **more)

    def result(self, *arguments, **more):
        return json.loads(self.check(*arguments, "--json", **more).stdout)

    def test_a_node_that_builds(self):
        run = self.check("--guid", LEAF)
        self.assertEqual((run.returncode, run.stderr), (DONE, ""))
        lines = run.stdout.splitlines()
        self.assertEqual(lines[0], "GUID                class  abcdefghijklmnopqrstuv  node")
        self.assertEqual(lines[1], f"{LEAF}  SW     +++++++++++.+++++.....  leaf-01/U1")
        self.assertIn("l          1  The node is not a router", run.stdout)
        self.assertEqual(lines[-1], "builds")

    def test_what_needs_a_hand(self):
        run = self.check("--guid", SPINE)
        self.assertEqual(run.returncode, INCOMPLETE)
        lines = run.stdout.splitlines()
        self.assertEqual(lines[1], f"{SPINE}  SW     +++++++++++.+++++H+++H  spine-01/U1")
        self.assertEqual(lines[-1], "does not build: 2 to finish by hand")
        self.assertRegex(run.stdout, "H  r +1  an address stands in place of the redirect GID")
        self.assertRegex(run.stdout, "H  v +1  a record that is not declared is packed")

    def test_error_lines(self):
        run = self.run_command("check", "-", input=snapshot(switch()))
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertRegex(run.stdout,
                         r"E  a +1  Failed to get NodeInfo mad for the node \(S1\)\n")
        self.assertIn("\ndoes not build: ", run.stdout)

    def test_shared_classes(self):
        run = self.check("--guid", LEAF, "--guid", "0x5a1e0c0000000300")
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertIn("2 nodes define the class SW: leaf-01/U1, leaf-02/U1\n", run.stdout)
        self.assertEqual(run.stdout.splitlines()[-1],
                         "does not build: 1 class that several nodes define")

    def test_agrees_with_dump(self):
        """The marks are those of the file that dump writes."""
        result = self.result()
        self.run_command("dump", DEMO, "--prefix", "P")
        text = (self.folder / "p_generated.cpp").read_text()
        bodies = re.findall(r"void P::(\w+)::(\w+)\(\) \{\n(.*?)\n\}\n", text, re.DOTALL)
        self.assertEqual(len(bodies), 22 * result["totals"]["nodes"])
        place = 0
        for node in result["nodes"]:
            for function in node["functions"]:
                class_word, name, body = bodies[place]
                place += 1
                self.assertEqual((node["class"], function["name"]), (class_word, name))
                if "#error" in body:
                    mark = "error"
                elif all(line.startswith("//") for line in body.splitlines()):
                    mark = "comment"
                elif "0x0x" in body or name == "setWrenPushReductionCounters":
                    mark = "hand"
                else:
                    mark = "block"
                self.assertEqual(function["mark"], mark, function)

    def test_json(self):
        result = self.result("--guid", SPINE, "--guid", LEAF)
        self.assertEqual(
            {key: result[key] for key in ("builds", "totals", "sharedClasses")},
            {"builds": False,
             "totals": {"nodes": 2, "error": 0, "hand": 2, "comment": 7, "block": 35},
             "sharedClasses": [{"class": "SW", "guids": [LEAF, SPINE]}]})
        self.assertEqual(result["outsideSubFabric"], 0)  # of those that were chosen
        self.assertEqual(self.result()["outsideSubFabric"], 1)
        self.assertEqual(result["nodes"][0]["functions"][11],
                         {"name": "setRouterInfo", "mark": "comment",
                          "reason": "The node is not a router"})
        self.assertEqual(result["nodes"][0]["functions"][0],
                         {"name": "setNodeInfo", "mark": "block"})

    def test_what_a_compiler_says(self):
        """A node that builds does, one that needs a hand does not."""
        for guid, builds in ((LEAF, True), (SPINE, False)):
            self.assertEqual(self.check("--guid", guid).returncode == DONE, builds)
            run = self.run_command("verify", DEMO, "--guid", guid)
            self.assertEqual(run.returncode == DONE, builds, run.stdout)

    def test_hostile_names_stay_in_their_cell(self):
        run = self.run_command("check", "-", input=snapshot(switch("a\x1b[31m\nb")))
        self.assertNotIn("\x1b", run.stdout)
        self.assertIn("a%1B[31m%0Ab", run.stdout)

    def test_missing_guids(self):
        run = self.check("--guid", "1", "--guid", LEAF)
        self.assertEqual(run.returncode, DONE)
        self.assertEqual(run.stderr,
                         "fabscan: warning: no node has the GUID 0x0000000000000001\n")
        run = self.check("--guid", "1")
        self.assert_fails(run, f"{DEMO}: no node to check: no node has the GUID "
                               "0x0000000000000001; 'fabscan show' lists the nodes")
        run = self.run_command("check", "-", input=snapshot())
        self.assert_fails(run, "standard input: no node to check: none is in the sub-fabric; choose another "
                               "snapshot")

    def test_nothing_is_left_behind(self):
        folder = self.folder / "tmp"
        folder.mkdir()
        self.check(env={**os.environ, "TMPDIR": str(folder)})
        self.assertEqual(self.entries("tmp"), [])

    def test_a_temporary_folder_that_is_not_there(self):
        run = self.check(env={**os.environ, "TMPDIR": str(self.folder / "none")})
        self.assertEqual(run.returncode, FAILED)
        self.assertRegex(run.stderr, "cannot make a temporary folder: .*; set TMPDIR\n$")


class OnATerminal(CommandTest):
    def test_colour(self):
        self.assertIn("\x1b[32m+\x1b[0m", self.on_terminal("check", DEMO))
        self.assertNotIn("\x1b", self.on_terminal("check", DEMO, NO_COLOR="1"))
        self.assertNotIn("\x1b", self.on_terminal("check", DEMO, TERM="dumb"))
        self.assertIn("\x1b[32m", self.on_terminal("check", DEMO, NO_COLOR=""))

    def test_the_width_is_respected(self):
        long = snapshot(switch("spine of the long name " * 5, "0x1"))
        path = self.put("long.jsonl", long)
        for columns in (70, 80, 100):
            text = self.on_terminal("check", path.name, columns=columns, NO_COLOR="1")
            matrix = text.splitlines()[1]
            self.assertEqual(len(matrix), columns)
            self.assertTrue(matrix.endswith("\u2026"), matrix)
            for line in text.split("\n\n", 1)[1].splitlines():
                self.assertLessEqual(len(line), columns)

    def test_elsewhere_nothing_is_cut(self):
        name = "spine of the long name " * 5
        run = self.run_command("check", "-", input=snapshot(switch(name)))
        self.assertIn(name.strip(), run.stdout)


if __name__ == "__main__":
    main()
