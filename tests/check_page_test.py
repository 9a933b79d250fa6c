"""`fabscan check --html`: the page, in a browser.

    check_page_test.py COMMAND [FOLDER]

FOLDER, where given, is for screenshots.
"""

import json
import pathlib
import re
import sys
import unittest

from browser import Browser
from command_line import (DONE, EXAMPLES, FAILED, INCOMPLETE, WRONG_USAGE, CommandTest, main,
                          snapshot, switch)

DEMO = EXAMPLES / "demo.fabscan.jsonl"
SPINE = "0x5a1e0c0000000100"
SCREENSHOTS = pathlib.Path(sys.argv.pop(2)) if len(sys.argv) > 2 else None

CONTRAST = """(() => {
  const parts = (colour) => colour.match(/[\\d.]+/g).map(Number);
  const light = (colour) => {
    const [r, g, b] = parts(colour).map((part) => {
      const of1 = part / 255;
      return of1 <= 0.04045 ? of1 / 12.92 : ((of1 + 0.055) / 1.055) ** 2.4;
    });
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const back = (element) => {
    const colour = getComputedStyle(element).backgroundColor;
    return parts(colour)[3] === 0 ? back(element.parentElement) : colour;
  };
  const element = document.querySelector(arguments[0]);
  const [one, other] = [light(getComputedStyle(element).color), light(back(element))];
  return (Math.max(one, other) + 0.05) / (Math.min(one, other) + 0.05);
})()"""


class Files(CommandTest):
    """Tests that need no browser."""

    def test_printed_totals(self):
        run = self.run_command("check", DEMO, "--html", "page.html")
        self.assertEqual((run.returncode, run.stderr), (INCOMPLETE, ""))
        self.assertEqual(
            run.stdout,
            "page.html\n"
            f"{DEMO}: 10 nodes, 220 functions: 114 with a block, 104 skipped, 0 with #error, 2 in "
            "need of an edit\n"
            "skipped (outside the sub-fabric): 1 node\n"
            "does not build: 2 in need of an edit, 2 classes that several nodes define\n"
            "next: write a project that builds, with one node of each device model\n"
            f"  fabscan scaffold {DEMO} --prefix MyDev --output-dir sim\n"
            "next: write one file for each device model, in a form that compiles\n"
            f"  fabscan dump {DEMO} --prefix MyDev --one-per-model --buildable\n")
        self.assertEqual(self.entries(), ["page.html"])

    def test_standard_output(self):
        run = self.run_command("check", DEMO, "--html", "-")
        self.assertTrue(run.stdout.startswith("<!doctype html>\n"))
        self.assertTrue(run.stdout.endswith("</html>\n"))
        self.assertEqual(self.entries(), [])

    def test_together_with_json(self):
        run = self.run_command("check", DEMO, "--html", "page.html", "--json")
        self.assertEqual(json.loads(run.stdout)["totals"]["nodes"], 10)
        self.assertEqual(self.entries(), ["page.html"])

    def test_an_earlier_page_is_kept_unless_forced(self):
        self.put("page.html", "earlier\n")
        self.assert_fails(self.run_command("check", DEMO, "--html", "page.html"),
                          "page.html: exists; --force replaces it")
        run = self.run_command("check", "none", "--html", "page.html", "--force")
        self.assertEqual(run.returncode, FAILED)
        self.assertEqual((self.folder / "page.html").read_text(), "earlier\n")
        run = self.run_command("check", DEMO, "--html", "page.html", "--force")
        self.assertEqual(run.returncode, INCOMPLETE)
        self.assertGreater((self.folder / "page.html").stat().st_size, 10_000)
        self.assertEqual(self.entries(), ["page.html"])

    def test_wrong_usage(self):
        self.assert_fails(self.run_command("check", DEMO, "--html", "-", "--json"),
                          "--html - and --json both write to standard output; specify a file for --html",
                          WRONG_USAGE)


class Page(CommandTest):
    @classmethod
    def setUpClass(cls):
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)

    def show(self, *arguments, stops_open=False, **more):
        """Writes the page and opens it."""
        run = self.run_command("check", *arguments, "--html", "page.html", "--force", **more)
        self.assertIn(run.returncode, (DONE, INCOMPLETE), run.stderr)
        self.browser.prefer("light")
        self.browser.open(self.folder / "page.html")
        if not stops_open:
            self.browser.run("document.getElementById('stops').open = false")

    def tearDown(self):
        console, addresses = self.browser.logs()
        self.assertEqual(console, [])
        page = f"file://{self.folder}/page.html"
        self.assertEqual([address for address in addresses if not address.startswith("data:")],
                         [page] * addresses.count(page))

    def picture(self, name):
        if SCREENSHOTS is not None:
            self.browser.screenshot(SCREENSHOTS / f"{name}.png")

    def text_of(self, selector):
        return self.browser.run("document.querySelector(arguments[0]).textContent", selector)

    def shown_nodes(self):
        return self.browser.run(
            "[...document.querySelectorAll('#body .label')].map((label) => label.textContent)")

    def focused(self):
        return self.browser.run("[document.activeElement.dataset.row, "
                                "document.activeElement.dataset.column].map(Number)")

    def is_open(self):
        return self.browser.run("document.querySelector('dialog').open")

    def test_the_matrix_is_that_of_check(self):
        self.show(DEMO)
        self.picture("demo")
        result = json.loads(self.run_command("check", DEMO, "--json").stdout)
        signs = {"error": "E", "hand": "H", "comment": ".", "block": "+"}
        expected = [[node["name"], node["guid"], node["class"],
                     "".join(signs[function["mark"]] for function in node["functions"])]
                    for node in result["nodes"]]
        self.assertEqual(self.browser.run("""[...document.querySelectorAll('#body .row')].map(
            (row) => [...['label', 'guid', 'class'].map(
                (name) => row.querySelector('.' + name).textContent),
                [...row.querySelectorAll('.cell')].map((cell) => cell.textContent).join('')])"""),
                         expected)
        self.assertEqual(
            self.browser.run("[...document.querySelectorAll('.head .function')].map("
                             "(head) => head.getAttribute('aria-label'))"),
            [function["name"] for function in result["nodes"][0]["functions"]])
        self.assertEqual(self.text_of("#verdict"), "does not build: 2 in need of an edit, 2 classes "
                                                   "that several nodes define")
        self.assertEqual(
            self.browser.run("[...document.querySelectorAll('.total strong')].map("
                             "(count) => count.textContent)"),
            [str(result["totals"][word]) for word in signs])

    def test_every_text_is_that_of_dump(self):
        self.show(DEMO)
        self.run_command("dump", DEMO, "--prefix", "P")
        text = (self.folder / "p_generated.cpp").read_text()
        bodies = re.findall(r"\(\) \{\n(.*?\n)\}\n", text, re.DOTALL)
        texts = self.browser.run(
            "data.nodes.flatMap((node) => data.functions.map((_, place) => textOf(node, place)))")
        self.assertEqual(len(texts), 220)
        address = re.compile("0x0x[0-9a-f]+")
        for shown, written in zip(texts, bodies, strict=True):
            self.assertEqual(address.sub("", shown), address.sub("", written))

    def test_filters(self):
        self.show(DEMO)
        everything = self.shown_nodes()
        self.assertEqual(len(everything), 10)
        self.browser.type_into("#node", "LEAF")
        self.assertEqual(self.shown_nodes(), ["leaf-01/U1", "leaf-02/U1"])
        self.assertEqual(self.text_of("#shown"), "2 of 10 nodes")
        self.browser.type_into("#node", "0a00")
        self.assertEqual(self.shown_nodes(), ["spine-01 Aggregation Node"])
        self.browser.type_into("#node", "nothing of the kind")
        self.assertEqual(self.shown_nodes(), [])
        self.browser.click("#everything")
        self.browser.wait_for("document.querySelectorAll('#body .row').length === 10")
        self.assertEqual(self.shown_nodes(), everything)

        self.browser.choose("#class", "RTR")
        self.assertEqual(self.shown_nodes(), ["router-01"])
        self.browser.click("#everything")
        self.browser.choose("#mark", "hand")
        self.assertEqual(self.shown_nodes(), ["spine-01/U1"])
        self.browser.choose("#function", "11")
        self.assertEqual(self.shown_nodes(), [])
        self.browser.choose("#mark", "block")
        self.assertEqual(self.shown_nodes(), ["router-01"])
        self.assertEqual(self.browser.run("document.querySelectorAll('.cell').length"), 1)

    def test_build_failures_link_to_their_functions(self):
        self.show(DEMO, stops_open=True)
        self.picture("stops")
        parts = self.browser.run(
            "[...document.querySelectorAll('#reasons > li')].map((item) => "
            "['why', 'many', 'remedy', 'affected'].map("
            "(name) => item.querySelector('.' + name).textContent))")
        self.assertEqual(parts[0], [
            "the redirect GID is written as a memory address", "1 node", "fabscan dump --buildable makes these edits.",
            "VSReductionManagerClassPortInfo"])
        self.assertEqual(parts[2:], [
            [f"several nodes define the class {word}; one file can contain only one",
             f"{count} nodes", "Select one node of each class with --guid, or use fabscan dump "
             "--one-per-model.", ""] for word, count in (("SW", 4), ("HCA", 3))])
        self.browser.click("#reasons .reason")
        self.assertEqual(self.shown_nodes(), ["spine-01/U1"])
        self.assertEqual(self.browser.run("document.querySelectorAll('.cell').length"), 1)
        self.browser.click("#reasons li:last-child .reason")
        self.assertEqual(len(self.shown_nodes()), 3)
        self.browser.click(".total:not(:disabled)")
        self.assertEqual(self.browser.run("document.querySelectorAll('.cell').length"), 22)

    def test_a_cause_quotes_the_generator(self):
        node = switch(absent={"SMP_NodeInfo": "<b>timed out</b>"})
        self.addCleanup(self.browser.resize, 1400)
        for width in (1280, 400):
            self.browser.resize(width)
            self.show("-", stops_open=True, input=snapshot(node))
            self.picture(f"causes-{width}")
            self.assertTrue(self.browser.run("document.getElementById('stops').open"))
        causes = self.browser.run(
            "[...document.querySelectorAll('#reasons > li')].map((item) => "
            "[item.querySelector('.why').textContent, item.querySelector('.remedy').textContent, "
            "[...item.querySelectorAll('.affected li')].map((entry) => entry.textContent)])")
        self.assertEqual(causes[0][:2],
                         ["smpCapabilityMask not collected",
                          "Collect smpCapabilityMask and add it with fabscan merge."])
        self.assertIn("ArInfo The node does not support AR", causes[0][2])
        self.assertIn(["SMP_NodeInfo absent (<b>timed out</b>)",
                       "Collect SMP_NodeInfo and add it with fabscan merge.",
                       ["NodeInfo Failed to get NodeInfo mad for the node"]], causes)
        self.assertNotEqual(
            self.browser.run("getComputedStyle(document.querySelector('q'), '::before').content"),
            "none")
        self.browser.choose("#cause", self.browser.run(
            "String(data.causes.findIndex((cause) => cause.text.startsWith('smpCap')))"))
        self.assertIn("setArInfo", self.browser.run(
            "[...document.querySelectorAll('.head .function')].map("
            "(head) => head.getAttribute('aria-label'))"))
        self.browser.click(".cell.error")
        self.assertIn("smpCapabilityMask not collected", self.text_of("#dialog-mark"))
        self.browser.press("Escape")

    def test_a_click_opens_the_text(self):
        self.show(DEMO, "--guid", SPINE)
        self.browser.click("[data-column='17']")
        self.assertTrue(self.is_open())
        self.picture("text")
        self.assertEqual(self.text_of("#dialog-title"), "SW::setVSReductionManagerClassPortInfo")
        self.assertEqual(self.text_of("#dialog-node"), f"spine-01/U1  {SPINE}")
        self.assertIn("the redirect GID is written", self.text_of("#dialog-mark"))
        self.assertIn("RedirectGID = 0x0x", self.text_of("#text"))
        self.browser.click("[data-column='1'][data-row='0'][type]")
        self.assertEqual(self.text_of("#dialog-title"), "SW::setWrenReductionPortInfo")
        self.browser.click("#close")
        self.assertFalse(self.is_open())

    def test_keyboard_only(self):
        self.show(DEMO)
        self.browser.run("document.getElementById('everything').focus()")
        self.browser.press("Tab")
        self.assertEqual(self.focused(), [0, 0])
        self.browser.press("ArrowDown", "ArrowDown", "ArrowRight", "ArrowUp")
        self.assertEqual(self.focused(), [1, 1])
        self.browser.press("End")
        self.assertEqual(self.focused(), [1, 21])
        self.browser.press("ArrowRight")
        self.assertEqual(self.focused(), [1, 21])
        self.browser.press("End", holding=["Control"])
        self.assertEqual(self.focused(), [9, 21])
        self.browser.press("Home", holding=["Control"])
        self.assertEqual(self.focused(), [0, 0])
        self.browser.press("ArrowRight")
        self.assertNotEqual(
            self.browser.run("getComputedStyle(document.activeElement).outlineStyle"), "none")
        self.browser.press("Enter")
        self.assertTrue(self.is_open())
        self.assertEqual(self.text_of("#dialog-title"), "HCA::setPortInfo")
        self.assertTrue(self.browser.run("document.activeElement.closest('dialog') !== null"))
        self.browser.press("Escape")
        self.assertFalse(self.is_open())
        self.assertEqual(self.focused(), [0, 1])
        self.browser.press(" ")
        self.assertTrue(self.is_open())
        self.browser.press("Escape")
        self.assertEqual(self.browser.run("document.querySelectorAll(\"[tabindex='0'].cell\")"
                                          ".length"), 1)

    def test_roles(self):
        self.show(DEMO)
        counts = self.browser.run(
            "['grid', 'row', 'columnheader', 'rowheader', 'gridcell'].map("
            "(role) => document.querySelectorAll(`[role=${role}]`).length)")
        self.assertEqual(counts, [1, 11, 23, 10, 220])
        self.assertEqual(
            self.browser.run("['aria-rowcount', 'aria-colcount'].map("
                             "(name) => document.getElementById('grid').getAttribute(name))"),
            ["11", "23"])
        self.assertEqual(
            self.browser.run("document.querySelector('.cell.hand').getAttribute('aria-label')"
                             ".split(';')[0]"),
            "setVSReductionManagerClassPortInfo: hand, the redirect GID is written as a memory "
            "address")
        self.assertEqual(self.browser.run("[...document.querySelectorAll('input, select')].filter("
                                          "(field) => field.labels.length !== 1).length"), 0)

    def test_light_and_dark(self):
        text = snapshot(switch(), *[json.loads(line) for line in
                                    DEMO.read_text().splitlines()[1:-1]])
        self.show("-", input=text)
        pages = []
        for scheme in ("light", "dark"):
            self.browser.prefer(scheme)
            self.picture(scheme)
            pages.append(self.browser.run("getComputedStyle(document.body).backgroundColor"))
            for selector in (".cell.error", ".cell.hand", ".cell.comment", ".cell.block", ".guid",
                             ".class", "#verdict", "#shown", "#usage", ".label"):
                self.assertGreaterEqual(self.browser.run(CONTRAST, selector), 4.5,
                                        f"{scheme}: {selector}")
        self.assertNotEqual(*pages)

    def test_windows_wide_and_narrow(self):
        self.addCleanup(self.browser.resize, 1400)

        def hidden(selector):
            return self.browser.run("document.querySelector(arguments[0]).scrollWidth - "
                                    "document.querySelector(arguments[0]).clientWidth", selector)

        for width in (1280, 400):
            self.browser.resize(width)
            self.show(DEMO)
            self.picture(str(width))
            self.assertEqual(hidden("html"), 0, width)
        self.browser.resize(1280)
        self.assertEqual(hidden("#scroller"), 0)

    def test_hostile_text_stays_text(self):
        evil = ("</script><script>document.title='taken'</script><!-- <img src=x "
                "onerror=\"document.title='taken'\">&lt;\u2028\u2029${1}")
        self.show("-", input=snapshot(switch(evil), switch("b\x01\x02\udc80", "0x2")
                                      ).replace("\\udc80", "\\ufffd"))
        self.assertEqual(self.text_of("title"), "standard input: fabscan check")
        self.assertEqual(self.browser.run("document.images.length"), 0)
        self.assertEqual(self.browser.run("document.scripts.length"), 2)
        shown = self.shown_nodes()
        self.assertEqual(len(shown), 2)
        self.assertIn("</script><script>document.title='taken'</script><!-- <img src=x", shown[0])
        self.browser.click(".cell.error")
        self.assertIn("node=</script><script>", self.text_of("#text"))
        self.assertEqual(self.browser.run("document.images.length"), 0)
        self.browser.press("Escape")

    def test_the_policy_forbids_external_content(self):
        self.show(DEMO)
        self.assertEqual(self.browser.run("""(() => {
            const script = document.createElement('script');
            script.textContent = "document.title = 'taken'";
            document.body.append(script);
            return document.title; })()"""), f"{DEMO}: fabscan check")
        console, _ = self.browser.logs()
        self.assertEqual(len(console), 1)
        self.assertIn("Content Security Policy", console[0])

    def test_two_thousand_nodes(self):
        lines = [json.loads(line) for line in DEMO.read_text().splitlines()[1:-1]]
        lines = [line for line in lines if line.get("inSubFabric", True)]
        for port in (port for line in lines for port in line["ports"]):
            port.pop("peer", None)  # of which there is only one
        nodes = [{**lines[number % 10], "name": f"node-{number:04}", "guid": hex(0x1000 + number)}
                 for number in range(2000)]
        self.show(self.put("large.jsonl", snapshot(*nodes)).name)
        self.picture("large")
        size = (self.folder / "page.html").stat().st_size
        self.assertLess(size, 1_000_000)
        milliseconds = self.browser.run(
            "performance.getEntriesByType('navigation')[0].domContentLoadedEventEnd")
        self.assertLess(milliseconds, 5000)
        self.assertEqual(self.text_of("#shown"), "2,000 nodes")
        self.assertLess(self.browser.run("document.querySelectorAll('#body .row').length"), 80)

        self.browser.click("[data-row='0'][data-column='0']")
        self.browser.press("Escape")
        self.browser.press("End", holding=["Control"])
        self.assertEqual(self.focused(), [1999, 21])
        self.assertIn("node-1999", self.shown_nodes())
        self.assertTrue(self.browser.run("""(() => {
            const cell = document.activeElement.getBoundingClientRect();
            const seen = document.getElementById('scroller').getBoundingClientRect();
            return cell.top >= seen.top && cell.bottom <= seen.bottom; })()"""))
        self.browser.press("PageUp")
        self.assertLess(self.focused()[0], 1999)
        # The focused cell remains in the page while others are scrolled into view.
        focused = self.focused()
        self.browser.run("document.getElementById('scroller').scrollTop = 0")
        self.browser.wait_for("document.querySelector('#body .label') !== null && "
                              "[...document.querySelectorAll('#body .label')].some("
                              "(label) => label.textContent === 'node-0000')")
        self.assertEqual(self.focused(), focused)
        self.browser.press("ArrowUp")
        self.assertEqual(self.focused(), [focused[0] - 1, 21])
        self.browser.type_into("#node", "node-1234")
        self.assertEqual(self.shown_nodes(), ["node-1234"])
        print(f"2,000 nodes: {size} bytes, ready after {milliseconds:.0f} ms", file=sys.stderr)


if __name__ == "__main__":
    main()
