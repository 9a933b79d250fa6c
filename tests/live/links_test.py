"""Links: a discovery's are those of ibnetdiscover; an exported topology is served and discovered
again; a moved cable is the first line of `diff`."""

import re
import unittest

import nets
from simulated_fabric import LiveTestCase, tool

NODE = re.compile(r'(?:Switch|Ca|Rt)\t\d+ "(.-[0-9a-f]{16})"')
PORT = re.compile(r'\[(\d+)\](?:\([0-9a-f]+\) )?\t"(.-[0-9a-f]{16})"\[(\d+)\]')


class Text:
    """A net that is served as it is."""

    def __init__(self, text):
        self._text = text

    def text(self):
        return self._text


def printed_links(text):
    """{(node GUID, port): (node GUID, port)} of the text of ibnetdiscover."""
    links, node = {}, None
    for line in text.splitlines():
        if found := NODE.match(line):
            node = int(found[1][2:], 16)
        elif found := PORT.match(line):
            links[node, int(found[1])] = (int(found[2][2:], 16), int(found[3]))
    return links


def recorded_links(snapshot):
    return {(guid, port["num"]): (int(port["peer"]["guid"], 16), port["peer"]["port"])
            for guid, node in snapshot.nodes.items() for port in node["ports"] if "peer" in port}


class LinksTest(LiveTestCase):
    def nets(self):
        return [nets.two_switches(), nets.chain(5),
                nets.fat_tree(pods=2, leaves=3, spines=2, cores=2, adapters=42)]

    def test_they_are_those_of_ibnetdiscover(self):
        for net in self.nets():
            fabric = self.serve(net, "H-5a1e0c0010000000" if len(net.nodes) > 20 else nets.HERE)
            self.discover(fabric)
            printed = printed_links(fabric.run(tool("ibnetdiscover")).stdout)
            self.assertGreater(len(printed), 5)
            self.assertEqual(recorded_links(fabric.snapshot()), printed)

    def test_port_guids(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.discover(fabric)
        there = int(nets.THERE[2:], 16)
        self.assertEqual(fabric.snapshot().port(nets.THERE, 1)["portGuid"], f"{there + 1:#018x}")
        self.assertNotIn("portGuid", fabric.snapshot().port(nets.LEAF, 1))

    def test_an_exported_topology_is_served_and_discovered_again(self):
        for net in self.nets():
            host = "H-5a1e0c0010000000" if len(net.nodes) > 20 else nets.HERE
            fabric = self.serve(net, host)
            self.discover(fabric)
            run = fabric.fabscan("export", "fabric.jsonl", "--format", "ibnetdiscover")
            self.assertEqual((run.returncode, run.stderr), (0, ""))
            again = self.serve(Text(run.stdout), host)
            self.discover(again, output=fabric.folder / "again.jsonl")
            run = fabric.fabscan("diff", "fabric.jsonl", "again.jsonl",
                                 "--ignore", "LinkWidthEnabled")  # ibsim takes it from the text
            self.assertEqual((run.returncode, run.stdout), (0, ""))

    def test_the_text_differs_from_that_of_ibnetdiscover_only_in_order(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.discover(fabric)
        ours = fabric.fabscan("export", "fabric.jsonl", "--format", "ibnetdiscover").stdout
        theirs = fabric.run(tool("ibnetdiscover")).stdout
        blocks = [sorted(block for block in text.strip().split("\n\n")[1:]
                         if not block.startswith("#")) for text in (ours, theirs)]
        self.assertEqual(*blocks)

    def test_the_text_of_ibnetdiscover_is_imported(self):
        for net in self.nets():
            fabric = self.serve(net, "H-5a1e0c0010000000" if len(net.nodes) > 20 else nets.HERE)
            self.discover(fabric)
            text = fabric.run(tool("ibnetdiscover")).stdout
            (fabric.folder / "topology.txt").write_text(text)
            run = fabric.fabscan("import", "topology.txt", "--output", "imported.jsonl")
            self.assertEqual((run.returncode, run.stderr), (0, ""))
            imported = fabric.snapshot("imported.jsonl")
            self.assertEqual(recorded_links(imported), printed_links(text))
            for guid, node in fabric.snapshot().nodes.items():
                same = imported.nodes[guid]
                for key in ("name", "type", "numPorts", "description"):
                    self.assertEqual(same[key], node[key])
            # Written again, it is the same text.
            run = fabric.fabscan("export", "imported.jsonl", "--format", "ibnetdiscover")
            again = [sorted(line for line in each.splitlines() if line.startswith(("[", "S", "C", "R")))
                     for each in (run.stdout, text)]
            self.assertEqual(*again)

    def test_a_moved_cable_comes_first(self):
        net = nets.two_switches()
        before = self.serve(net, nets.HERE)
        self.discover(before)
        del net.links[nets.SPINE][3]
        net.link(nets.LEAF, 5, nets.THERE, 1)
        after = self.serve(net, nets.HERE)
        self.discover(after, output=before.folder / "after.jsonl")
        run = before.fabscan("diff", "fabric.jsonl", "after.jsonl")
        self.assertEqual(run.returncode, 1, run.stderr)
        self.assertEqual(run.stdout.splitlines()[0],
                         "link moved: there HCA-1[1] from spine[3] to leaf[5]")

    def test_the_names_are_read_by_other_tools(self):
        fabric = self.serve(nets.two_switches(), nets.HERE)
        self.discover(fabric)
        names = fabric.fabscan("export", "fabric.jsonl", "--format", "names").stdout
        (fabric.folder / "names").write_text(names.replace('"leaf"', '"other leaf"'))
        text = fabric.run(tool("ibnetdiscover"), "--node-name-map", "names").stdout
        self.assertIn('"S-5a1e0c0000200000"\t\t# "other leaf"', text)

    def test_the_root_guids_are_read_by_opensm(self):
        net = nets.fat_tree(pods=2, leaves=3, spines=2, cores=2, adapters=42)
        fabric = self.serve(net, "H-5a1e0c0010000000")
        self.discover(fabric)
        roots = fabric.fabscan("export", "fabric.jsonl", "--format", "guids").stdout
        self.assertEqual(roots, "0x5a1e0c0030000000\n0x5a1e0c0030000100\n")
        (fabric.folder / "roots").write_text(roots)
        done = fabric.run(tool("opensm"), "-o", "-R", "updn", "-a", "roots", "-f", "opensm.log")
        log = (fabric.folder / "opensm.log").read_text(errors="replace")
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("SUBNET UP", log)
        self.assertNotIn("updn_read_guid_file", log)
        self.assertNotIn("ERR AD", log)


if __name__ == "__main__":
    unittest.main(verbosity=2)
