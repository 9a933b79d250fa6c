"""Every record and function is declared in all required places. A failure names the record or
function, and the files that lack it."""

import pathlib
import re
import shutil
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Files that name each record of the store.
RECORDS = {
    "include/infiniband/fabscan/fabscan_types.h": r"RecordList<(\w+[^>.]*)>;",
    "examples/demo.fabscan.jsonl": r'"(\w+)":[{\[]',
    "tests/other_headers/infiniband/fabscan/fabscan_tessel_extended_info.h": r"Found<(\w+)>\(",
    "simulator/core/attributes.h": r"^  [A-Z_]+\( *(\w+),",
}
# Records that the simulator lacks: one is written block by block, the other is only queried.
NOT_SIMULATED = {"VendorSpec_GeneralInfo", "WrenReductionConfigureMLIDMonitors"}

GENERATOR = "fabscan/generated_functions.h"
# Files that name each generated function.
FUNCTIONS = {
    GENERATOR: r'^    \{"(set\w+)", +&',
    "simulator/core/attributes.h": r"^  [A-Z_]+\( *\w+, *\w+, *(set\w+)\)",
    "simulator/verification/node_rules.cpp simulator/verification/port_rules.cpp":
        r'^    \{"(set\w+)", \w+\}',
}

EMITTED = r"FABSCAN_FIELD\((\w+), *(\w+)"
NEEDED = [f"records/{kind}_records.h" for kind in ("architecture", "vendor", "reduction")]


def emitted_fields(text):
    """(record, field) of each field that an emitter writes; of a nested one, the outermost."""
    return set(re.findall(EMITTED, text))


def needed_fields(text):
    """(record, field) of each field that a snapshot must have, because it is dumped."""
    tables = re.findall(r"^[A-Z]+\((\w+)\) = \{(.*?)^\};", text, flags=re.S | re.M)
    return {(record, field) for record, rows in tables
            for field in re.findall(r"DUMPED\((\w+)", rows)}


def names(root, files, pattern):
    text = "".join((root / file).read_text() for file in files.split())
    return {name for match in re.findall(pattern, text, flags=re.M)
            for name in re.findall(r"\w+", match)}


def lacking(root, places, optional=frozenset()):
    """What the first place has and another lacks, with the files of the other."""
    first, *others = places.items()
    known = names(root, *first)
    assert len(known) > 10, first
    return {(name, files) for files, pattern in others
            for name in known - names(root, files, pattern)
            if not (name in optional and files.startswith("simulator/"))}


class AttributesTest(unittest.TestCase):
    def test_records(self):
        self.assertEqual(lacking(ROOT, RECORDS, NOT_SIMULATED), set())

    def test_functions(self):
        self.assertEqual(lacking(ROOT, FUNCTIONS), set())

    def test_dumped_fields_are_required_in_a_snapshot(self):
        emitted = emitted_fields("".join(path.read_text()
                                         for path in (ROOT / "fabscan").glob("*_emitters.cpp")))
        needed = needed_fields("".join((ROOT / file).read_text() for file in NEEDED))
        self.assertGreater(len(emitted), 100)
        self.assertEqual(emitted - needed, set(), "say DUMPED in records/*_records.h")
        self.assertIn(("SMP_NodeInfo", "revision"), emitted & needed)
        self.assertNotIn(("SMP_NodeInfo", "NodeGUID"), needed)

    def test_detects_an_incomplete_addition(self):
        for places, old, new, name in (
            (RECORDS, ">;", ", Power>;", "Power"),
            (FUNCTIONS, '    {"setNodeInfo", ', '    {"setPower", &x},\n    {"setNodeInfo", ',
             "setPower"),
        ):
            with self.subTest(name), tempfile.TemporaryDirectory() as folder:
                root = pathlib.Path(folder)
                for file in " ".join(places).split():
                    (root / file).parent.mkdir(parents=True, exist_ok=True)
                    shutil.copy(ROOT / file, root / file)
                first = root / next(iter(places))
                self.assertIn(old, first.read_text())
                first.write_text(first.read_text().replace(old, new, 1))
                found = lacking(root, places, NOT_SIMULATED)
                self.assertEqual(found - lacking(ROOT, places, NOT_SIMULATED),
                                 {(name, files) for files in list(places)[1:]})


if __name__ == "__main__":
    unittest.main(verbosity=2)
