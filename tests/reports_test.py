"""The output of --json, docs/reports.schema.json and docs/json.md agree."""

import copy
import json
import re

import jsonschema

from command_line import DONE, EXAMPLES, FAILED, INCOMPLETE, CommandTest, main

DEMO = EXAMPLES / "demo.fabscan.jsonl"
PARTIAL = EXAMPLES / "partial.fabscan.jsonl"
DOCS = EXAMPLES.parent / "docs"
SCHEMA = json.loads((DOCS / "reports.schema.json").read_text())
REPORTS = {
    "show": [("show", DEMO), ("show", PARTIAL)],
    "check": [("check", DEMO), ("check", PARTIAL)],
    "models": [("models", DEMO), ("models", PARTIAL)],
    "cabling": [("check", DEMO, "--expect", "moved.jsonl"), ("check", DEMO, "--expect", DEMO)],
    "diff": [("diff", DEMO, PARTIAL), ("diff", DEMO, "moved.jsonl"), ("diff", DEMO, DEMO), ("diff", DEMO, "changed.jsonl")],
}


def validator(name):
    return jsonschema.Draft202012Validator({"$ref": f"#/$defs/{name}", "$defs": SCHEMA["$defs"]})


class Reports(CommandTest):
    def setUp(self):
        super().setUp()
        self.put("changed.jsonl", DEMO.read_text().replace('"state":"ACTIVE"', '"state":"DOWN"', 3)
                 .replace('"numPorts":1,', '"numPorts":2,', 1)
                 .replace('"VendorID":5905932', '"VendorID":5905933', 1))

        # Two crossed cables, and a link that is faster there.
        ends = [('{"guid":"0x5a1e0c0000000600","port":1}', '{"guid":"0x5a1e0c0000000700","port":2}'),
                ('{"guid":"0x5a1e0c0000000200","port":3}', '{"guid":"0x5a1e0c0000000300","port":1}')]
        text = DEMO.read_text()
        for one, other in ends:
            text = text.replace(one, "?").replace(other, one).replace("?", other)
        self.put("moved.jsonl", text.replace('"LinkSpeedExtActive":4', '"LinkSpeedExtActive":8'))

    def report(self, *arguments):
        run = self.run_command(*arguments, "--json")
        self.assertIn(run.returncode, (DONE, FAILED, INCOMPLETE), run.stderr)
        return json.loads(run.stdout)

    def test_the_schema_is_valid(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)

    def test_reports_are_valid(self):
        for name, runs in REPORTS.items():
            for arguments in runs:
                with self.subTest(arguments=arguments):
                    validator(name).validate(self.report(*arguments))

    def test_each_report_matches_only_its_own_schema(self):
        for name, runs in REPORTS.items():
            report = self.report(*runs[0])
            for other in REPORTS:
                with self.subTest(report=name, other=other):
                    self.assertEqual(validator(other).is_valid(report), name == other)

    def test_invalid_reports_are_refused(self):
        """Each report without a required key, with an unknown key, and with a wrong value."""
        for name, runs in REPORTS.items():
            report = self.report(*runs[0])
            for wrong in self.wrong_versions(report, SCHEMA["$defs"][name]["required"]):
                with self.subTest(report=name):
                    self.assertFalse(validator(name).is_valid(wrong))

    def wrong_versions(self, report, required):
        for key in required:
            wrong = copy.deepcopy(report)
            del wrong[key]
            yield wrong
        yield {**report, "unknown": 1}
        yield {**report, "fabscan_report": 2}
        lists = [key for key, value in report.items() if isinstance(value, list) and value]
        named = next((key for key in lists if "name" in report[key][0]), lists[0])
        for change in ({"guid": "0x1"}, {"guid": 17}, {"name": None}, {"unknown": 1}):
            wrong = copy.deepcopy(report)
            entry = wrong[named][0]
            (entry if "name" in entry else entry["end"]).update(change)
            yield wrong

    def test_every_key_is_documented(self):
        text = (DOCS / "json.md").read_text()
        documented = set(re.findall(r"`(\w+)`", text))
        for name, definition in SCHEMA["$defs"].items():
            missing = set(definition.get("properties", {})) - documented
            self.assertEqual(missing, set(), name)


if __name__ == "__main__":
    main()
