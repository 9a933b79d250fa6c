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
        self.assertIn('l          1  "The node is not a router"', run.stdout)
        self.assertEqual(lines[-3:], [
            "builds", "next: write a project that simulates these devices",
            f"  fabscan scaffold {DEMO} --prefix MyDev --guid {LEAF} --output-dir sim"])

    def test_functions_that_need_an_edit(self):
        run = self.check("--guid", SPINE)
        self.assertEqual(run.returncode, INCOMPLETE)
        lines = run.stdout.splitlines()
        self.assertEqual(lines[1], f"{SPINE}  SW     +++++++++++.+++++H+++H  spine-01/U1")
        self.assertEqual(lines[-3:], [
            "does not build: 2 in need of an edit",
            "next: write a project that builds",
            f"  fabscan scaffold {DEMO} --prefix MyDev --guid {SPINE} --output-dir sim"])
        self.assertRegex(run.stdout, r"H +1  the redirect GID is written as a memory address: "
                                     r"affects setVSReductionManagerClassPortInfo \(spine-01/U1\)")
        self.assertRegex(run.stdout, "H +1  the branches declare the same names")

    def test_error_lines(self):
        run = self.run_command("check", "-", input=snapshot(switch()))
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertRegex(run.stdout,
                         r'E  a +1  "Failed to get NodeInfo mad for the node"\n')
        self.assertRegex(run.stdout,
                         r"E +1  SMP_NodeInfo not collected: affects setNodeInfo \(S1\)\n")
        self.assertIn("\ndoes not build: ", run.stdout)

    def test_shared_classes(self):
        run = self.check("--guid", LEAF, "--guid", "0x5a1e0c0000000300")
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertRegex(run.stdout, r" 2  several nodes define the class SW; one file can contain "
                                     r"only one \(leaf-01/U1, leaf-02/U1\)\n")
        self.assertEqual(run.stdout.splitlines()[-5:], [
            "does not build: 1 class that several nodes define",
            "next: write a project that builds",
            f"  fabscan scaffold {DEMO} --prefix MyDev --guid {LEAF} --guid 0x5a1e0c0000000300 "
            "--output-dir sim",
            "next: write one file for each device model",
            f"  fabscan dump {DEMO} --guid {LEAF} --guid 0x5a1e0c0000000300 --prefix MyDev "
            "--one-per-model"])

    def test_agrees_with_dump(self):
        """The marks agree with the file that dump writes."""
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
        self.assertEqual(result["outsideSubFabric"], 0)  # of the selected nodes
        self.assertEqual(self.result()["outsideSubFabric"], 1)
        self.assertEqual(result["nodes"][0]["functions"][11],
                         {"name": "setRouterInfo", "mark": "comment", "code": "node-type",
                          "reason": "The node is not a router"})
        self.assertEqual(result["nodes"][0]["functions"][0],
                         {"name": "setNodeInfo", "mark": "block"})

    def test_agrees_with_a_compiler(self):
        """A node that builds compiles, a node that needs an edit does not."""
        for guid, builds in ((LEAF, True), (SPINE, False)):
            self.assertEqual(self.check("--guid", guid).returncode == DONE, builds)
            run = self.run_command("verify", DEMO, "--guid", guid)
            self.assertEqual(run.returncode == DONE, builds, run.stdout)

    def test_hostile_names_stay_in_their_cell(self):
        run = self.run_command("check", "-", input=snapshot(switch("a\x1b[31m\nb")))
        self.assertNotIn("\x1b", run.stdout)
        self.assertIn("a%1B[31m%0Ab", run.stdout)

    def test_missing_guids(self):
        for form in ((), ("--json",), ("--summary",), ("--html", "check.html", "--force")):
            self.assertEqual(self.check("--guid", LEAF, *form).returncode, DONE)
            run = self.check("--guid", "1", "--guid", LEAF, *form)
            self.assertEqual((run.returncode, run.stderr), (
                INCOMPLETE, "fabscan: warning: no node has the GUID 0x0000000000000001\n"))
        run = self.check("--guid", "1")
        self.assert_fails(run, f"{DEMO}: no node to check: no node has the GUID "
                               "0x0000000000000001; 'fabscan show' lists the nodes")
        run = self.run_command("check", "-", input=snapshot())
        self.assert_fails(run, "standard input: no node to check: none is in the sub-fabric; use a different "
                               "snapshot")

    def test_no_temporary_file_is_needed(self):
        run = self.check(env={**os.environ, "TMPDIR": str(self.folder / "none")})
        self.assertEqual((run.stdout, run.stderr), (self.check().stdout, ""))
        self.assertEqual(self.entries(), [])


class Causes(CommandTest):
    """Unknown support, missing records, and unsupported attributes."""

    NO_BITS = ["0x0"] * 4
    AR_ONLY = ["0x4", "0x0", "0x0", "0x0"]

    def result(self, *nodes):
        self.put("s.jsonl", snapshot(*nodes))
        return json.loads(self.run_command("check", "s.jsonl", "--json").stdout)

    def codes(self, node):
        [checked] = self.result(node)["nodes"]
        return {function.pop("name"): function for function in checked["functions"]}

    def test_an_uncollected_mask(self):
        functions = self.codes(switch())
        for name in ("setArInfo", "setPrivateLftInfo", "setExtendedNodeInfo", "setSMPCapability"):
            self.assertEqual((functions[name]["code"], functions[name]["mask"]),
                             ("mask-not-collected", "smpCapabilityMask"), name)
        self.assertEqual(functions["setGMPCapability"]["mask"], "gmpCapabilityMask")

    def test_a_mask_of_zeros(self):
        functions = self.codes(switch(smpCapabilityMask=self.NO_BITS))
        self.assertEqual(functions["setSMPCapability"], {"mark": "block"})
        self.assertEqual(functions["setArInfo"],
                         {"mark": "error", "code": "not-supported", "mask": "smpCapabilityMask",
                          "bits": [2], "reason": "The node does not support AR"})
        self.assertEqual(functions["setPrivateLftInfo"]["bits"], [0, 12])
        self.assertEqual(functions["setGMPCapability"]["code"], "mask-not-collected")

    def test_an_uncollected_record(self):
        functions = self.codes(switch(smpCapabilityMask=self.AR_ONLY,
                                      absent={"SMP_SwitchInfo": "timed out"}))
        self.assertEqual(functions["setArInfo"],
                         {"mark": "error", "code": "record-not-collected",
                          "record": "adaptive_routing_info",
                          "reason": "Failed to get VS ArInfo mad for the node"})
        self.assertEqual(functions["setPortInfo"]["code"], "record-not-collected")  # for port 0
        self.assertEqual(functions["setPortInfoExtended"]["code"], "no-active-port")

    def test_consequences_follow_their_cause(self):
        result = self.result(switch(), switch("S2", "0x2", absent={"SMP_SwitchInfo": "timed out"}))
        causes = {(cause["key"], cause.get("reason")): cause for cause in result["causes"]}
        mask = causes["smpCapabilityMask", None]
        self.assertEqual((mask["code"], mask["nodeCount"], mask["stopsBuild"]),
                         ("mask-not-collected", 2, True))
        self.assertEqual(mask["functions"][:4], ["setSMPCapability", "setArInfo",
                                                 "setPrivateLftInfo", "setEnhancedCongestionInfo"])
        self.assertIn("setExtendedNodeInfo", mask["functions"])
        late = causes["SMP_SwitchInfo", "timed out"]
        self.assertEqual((late["functions"], late["nodeCount"], late["record"], late["stopsBuild"]),
                         (["setSwitchInfo"], 1, "SMP_SwitchInfo", False))
        self.assertEqual(causes["SMP_SwitchInfo", None]["nodeCount"], 1)
        shared = causes["SW", None]
        self.assertEqual((shared["code"], shared["functions"], shared["nodeCount"]),
                         ("shared-class", [], 2))
        for node in result["nodes"]:
            for function in node["functions"]:
                self.assertEqual("code" in function, function["mark"] != "block", function)

        text = self.run_command("check", "s.jsonl").stdout
        self.assertRegex(text, r"E +2  smpCapabilityMask not collected: affects setSMPCapability, "
                               r"setArInfo, setPrivateLftInfo, setEnhancedCongestionInfo, .*"
                               r"\(S1, S2\)\n")
        self.assertRegex(text, r"\. +1  SMP_SwitchInfo absent \(timed out\): affects setSwitchInfo\n")
        self.put("zero.jsonl", snapshot(switch(smpCapabilityMask=self.NO_BITS)))
        self.assertIn("not supported by the device: smpCapabilityMask bits 0 "
                      "(IsPrivateLinearForwardingSupported) and 12 "
                      "(IsPortSLToPrivateLFTMapSupported) are clear: affects setPrivateLftInfo (S1)",
                      self.run_command("check", "zero.jsonl").stdout)
        self.assertRegex(text, r'E  k +2  "The node does not support AR"\n')

    def test_next(self):
        self.put("it's.jsonl", snapshot(switch()))
        lines = self.run_command("check", "it's.jsonl", "--summary").stdout.splitlines()
        self.assertEqual(lines[-4:], [
            "next: collect smpCapabilityMask, SMP_NodeInfo, SMP_PortInfo, gmpCapabilityMask, "
            "CC_EnhancedCongestionInfo (see docs/discovery.md), and add what you collected",
            "  fabscan merge 'it'\\''s.jsonl' extra.jsonl --output whole.jsonl",
            "next: write a project that builds, with one node of each device model",
            "  fabscan scaffold 'it'\\''s.jsonl' --prefix MyDev --output-dir sim"])
        text = self.run_command("check", "-", "--summary", input=snapshot(switch())).stdout
        self.assertIn("\nnext: collect smpCapabilityMask", text)
        self.assertIn("\n  fabscan merge SNAPSHOT extra.jsonl --output whole.jsonl\n", text)

    def test_summary(self):
        whole = self.run_command("check", DEMO).stdout
        run = self.run_command("check", DEMO, "--summary")
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertTrue(run.stdout.startswith("   nodes  cause\n"), run.stdout)
        self.assertTrue(whole.endswith("\n\n" + run.stdout))
        self.assertNotIn("the generated line says", run.stdout)
        summary = json.loads(self.run_command("check", DEMO, "--summary", "--json").stdout)
        result = json.loads(self.run_command("check", DEMO, "--json").stdout)
        self.assertEqual(len(result.pop("nodes")), 10)
        self.assertEqual(summary, result)

    def test_hostile_reasons(self):
        node = switch(absent={"SMP_SwitchInfo": "\x1b[31m\n\u202e"})
        text = self.run_command("check", "-", input=snapshot(node)).stdout
        self.assertIn("SMP_SwitchInfo absent (%1B[31m%0A%E2%80%AE): affects", text)

    def test_every_code_is_documented(self):
        root = EXAMPLES.parent
        codes = re.findall(r'return "([a-z]+(?:-[a-z]+)*)";',
                           (root / "cli" / "check" / "cause.cpp").read_text())
        documented = re.findall(r"^\| `([a-z-]+)` \| .* \| .* \|$",
                                (root / "docs" / "capabilities.md").read_text(), flags=re.M)
        self.assertGreater(len(codes), 5)
        self.assertEqual(documented, codes)


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

    def test_nothing_is_cut_without_a_terminal(self):
        name = "spine of the long name " * 5
        run = self.run_command("check", "-", input=snapshot(switch(name)))
        self.assertIn(name.strip(), run.stdout)


if __name__ == "__main__":
    main()
