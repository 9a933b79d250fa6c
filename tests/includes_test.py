"""Allowed includes between directories: dependencies have one direction, and includes name the directory."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent

# The product's directories. Tests next to the sources may include more.
MAY_INCLUDE = {
    "include": set(),
    "fabscan": {"include"},
    "records": {"include"},
    "model": {"include"},
    "fabrics": {"include", "records", "model"},
    "snapshot": {"include", "records", "model"},
    "discovery": {"include", "records", "model"},
    "simulator": {"include", "records", "fabscan", "model"},
    "cli": {"include", "records", "fabscan", "model", "snapshot", "fabrics", "discovery",
            "simulator"},
}
# Also compiled elsewhere, with other include directories: these use bare names for adjacent headers.
BARE = ("fabscan/", "simulator/core/", "simulator/devices/", "simulator/include/", "simulator/runner/")
TEST = re.compile(r"(_test|_must_not_compile)\.cpp$|/testing/")


def sources(directory):
    """The product's sources below a directory, as paths from the root."""
    for path in sorted((ROOT / directory).rglob("*")):
        if path.suffix in (".h", ".cpp") and not TEST.search(str(path)):
            yield path.relative_to(ROOT)


def included(path):
    return re.findall(r'^\s*#\s*include ["<]([^">]+)[">]', (ROOT / path).read_text(), flags=re.M)


def directory_of(header):
    """The top directory of an included project header; None for other headers."""
    if header.startswith("infiniband/") and (ROOT / "include" / header).exists():
        return "include"
    return header.split("/")[0] if (ROOT / header).exists() else None


class IncludesTest(unittest.TestCase):
    def test_dependencies_have_one_direction(self):
        seen = set()
        for directory, allowed in MAY_INCLUDE.items():
            for path in sources(directory):
                for header in included(path):
                    other = directory_of(header)
                    if other in (None, directory):
                        continue
                    seen.add((directory, other))
                    self.assertIn(other, allowed, f"{path} includes {header}")
        self.assertIn(("cli", "snapshot"), seen)  # the search is not empty

    def test_each_include_names_the_directory(self):
        names = {path.name for directory in MAY_INCLUDE for path in sources(directory)}
        for directory in MAY_INCLUDE:
            for path in sources(directory):
                if str(path).startswith(BARE):
                    continue
                for header in included(path):
                    if pathlib.PurePath(header).name in names:
                        self.assertIsNotNone(directory_of(header), f"{path} includes {header}")

    def test_the_generator_includes_only_the_facade(self):
        for path in sources("fabscan"):
            for header in included(path):
                if header.startswith("infiniband/"):
                    self.assertEqual(header, "infiniband/fabscan/fabscan.h", path.name)
                self.assertIsNone(re.match("fabscan/", header), path.name)


if __name__ == "__main__":
    unittest.main(verbosity=2)
