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
    "diff": [("diff", DEMO, PARTIAL), ("diff", DEMO, DEMO), ("diff", DEMO, "changed.jsonl")],
}


def validator(name):
    return jsonschema.Draft202012Validator({"$ref": f"#/$defs/{name}", "$defs": SCHEMA["$defs"]})


class Reports(CommandTest):
    def setUp(self):
        super().setUp()
        self.put("changed.jsonl", DEMO.read_text().replace('"state":"ACTIVE"', '"state":"DOWN"', 3)
                 .replace('"numPorts":1,', '"numPorts":2,', 1)
                 .replace('"VendorID":5905932', '"VendorID":5905933', 1))

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
        [entries] = [value for value in report.values()
                     if isinstance(value, list) and value and "name" in value[0]]
        for change in ({"guid": "0x1"}, {"guid": 17}, {"name": None}, {"unknown": 1}):
            wrong = copy.deepcopy(report)
            key = next(key for key, value in report.items() if value is entries)
            wrong[key][0].update(change)
            yield wrong

    def test_every_key_is_documented(self):
        text = (DOCS / "json.md").read_text()
        documented = set(re.findall(r"`(\w+)`", text))
        for name, definition in SCHEMA["$defs"].items():
            missing = set(definition.get("properties", {})) - documented
            self.assertEqual(missing, set(), name)


if __name__ == "__main__":
    main()
