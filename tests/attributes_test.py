"""Every record and function is declared in all required places. A failure names the record or
function, and the files that lack it."""

import pathlib
import re
import shutil
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent

STORE = "include/infiniband/fabscan/fabscan_tessel_extended_info.h"
# Files that name each record of the store.
RECORDS = {
    STORE: r"SlotTable<((?!Record>)\w+)>",
    "snapshot/record_fields.h": r"(?:MakeKind|TableOf)<(\w+?)(?:, \w+)?>",
    "examples/demo.fabscan.jsonl": r'"(\w+)":[{\[]',
    "tests/other_headers/infiniband/fabscan/fabscan_tessel_extended_info.h": r"Found<(\w+)>\(",
    "simulator/include/infiniband/fabscan/fabscan_fabric.h": r"^FABSCAN_RECORD\((\w+)\)",
}
# Records that the simulator lacks: one is written block by block, the other is only queried.
NOT_SIMULATED = {"VendorSpec_GeneralInfo", "WrenReductionConfigureMLIDMonitors"}

GENERATOR = "fabscan/generated_functions.h"
# Files that name each generated function.
FUNCTIONS = {
    GENERATOR: r'^    \{"(set\w+)", +&',
    "simulator/core/device.h": r"setter\((set\w+)\)",
    "simulator/verification/node_rules.cpp simulator/verification/port_rules.cpp":
        r'^    \{"(set\w+)", \w+\}',
    "fuzz/generated_structure.cpp": r'^    "(set\w+)",',
}
# Members of the simulated node, and those that are compared.
STORAGES = {
    "simulator/core/node.h": r"^  (?:std::vector<)?Packed<\w+>>? (\w+[a-zA-Z0-9]);",
    "simulator/runner/storages.cpp": r"^  STORAGE\((\w+)\)",
}


EMITTED = r"FABSCAN_FIELD\((\w+), *(\w+)"
NEEDED = "snapshot/node_record_fields.h", "snapshot/port_record_fields.h"


def emitted_fields(text):
    """(record, field) of each field that an emitter writes; of a nested one, the outermost."""
    return set(re.findall(EMITTED, text))


def needed_fields(text):
    """(record, field) of each field that a snapshot must have, because it is dumped."""
    tables = re.findall(r"struct FieldsOf<(\w+)> \{(.*?)^\};", text, flags=re.S | re.M)
    return {(record, field) for record, rows in tables
            for field in re.findall(r"DUMPED\(\s*[^,]+, *(\w+)\)", rows)}


def names(root, files, pattern):
    text = "".join((root / file).read_text() for file in files.split())
    return set(re.findall(pattern, text, flags=re.M))


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

    def test_storages(self):
        self.assertEqual(lacking(ROOT, STORAGES), set())

    def test_dumped_fields_are_required_in_a_snapshot(self):
        emitted = emitted_fields("".join(path.read_text()
                                         for path in (ROOT / "fabscan").glob("*_emitters.cpp")))
        needed = needed_fields("".join((ROOT / file).read_text() for file in NEEDED))
        self.assertGreater(len(emitted), 100)
        self.assertEqual(emitted - needed, set(), "say DUMPED in snapshot/*_record_fields.h")
        self.assertIn(("SMP_NodeInfo", "revision"), emitted & needed)
        self.assertNotIn(("SMP_NodeInfo", "NodeGUID"), needed)

    def test_detects_an_incomplete_addition(self):
        for places, old, new, name in (
            (RECORDS, "SlotTable<WrenReductionInfo>", "SlotTable<WrenReductionInfo>, SlotTable<Power>",
             "Power"),
            (FUNCTIONS, '    {"setNodeInfo", ', '    {"setPower", &x},\n    {"setNodeInfo", ',
             "setPower"),
            (STORAGES, "  Packed<SMP_NodeInfo> nodeInfo;",
             "  Packed<SMP_NodeInfo> nodeInfo;\n  Packed<Power> power;", "power"),
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
