"""Which folder may include headers of which: arrows run one way, and nothing knows cli/."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent

# The product's folders; tests beside the sources may know more.
KNOWS = {
    "include": set(),
    "fabscan": {"include"},
    "model": {"include"},
    "snapshot": {"include", "model"},
    "discovery": {"include", "model"},
    "simulator": {"include", "fabscan", "model"},
    "cli": {"include", "fabscan", "model", "snapshot", "discovery", "simulator"},
}
BESIDE = re.compile(r"(_test|_must_not_compile)\.cpp$|/testing/")


def headers():
    """The folders that have a header of each name."""
    found = {}
    for folder in KNOWS:
        for path in (ROOT / folder).rglob("*.h"):
            found.setdefault(path.name, set()).add(folder)
    return found


def included(path):
    return re.findall(r'^\s*#\s*include ["<]([^">]+)[">]', path.read_text(), flags=re.M)


class IncludesTest(unittest.TestCase):
    def test_arrows_run_one_way(self):
        known, seen = headers(), set()
        for folder, allowed in KNOWS.items():
            for path in sorted((ROOT / folder).rglob("*")):
                if path.suffix not in (".h", ".cpp") or BESIDE.search(str(path)):
                    continue
                for header in included(path):
                    owners = known.get(pathlib.PurePath(header).name, set())
                    if not owners or folder in owners:
                        continue
                    seen |= owners
                    self.assertTrue(owners & allowed, f"{path.relative_to(ROOT)} includes {header}")
        self.assertIn("snapshot", seen)  # they were looked at

    def test_the_generator_knows_the_facade_alone(self):
        for path in sorted((ROOT / "fabscan").glob("*")):
            if path.suffix not in (".h", ".cpp") or BESIDE.search(str(path)):
                continue
            for header in included(path):
                if header.startswith("infiniband/"):
                    self.assertEqual(header, "infiniband/fabscan/fabscan.h", path.name)


if __name__ == "__main__":
    unittest.main(verbosity=2)
