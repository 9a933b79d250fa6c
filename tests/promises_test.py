"""Every test that SECURITY.md and docs/reliability.md name exists: a promise without a test, or
with a renamed test, fails here."""

import pathlib
import re
import subprocess
import unittest

PROJECT = pathlib.Path(__file__).resolve().parent.parent
PAGES = ("SECURITY.md", "docs/reliability.md")


def named(page):
    """Names in backquotes that look like a test or a file of this repository."""
    for word in re.findall(r"`([^`\n]+)`", (PROJECT / page).read_text()):
        if re.fullmatch(r"[A-Z]\w*\.[A-Z]\w*", word): yield "gtest", word
        elif re.fullmatch(r"test_\w+", word): yield "python", word
        elif re.fullmatch(r"[\w-]+(/[\w.-]+)+\.(py|cpp|h|sh|txt|tsv)", word): yield "file", word


class Promises(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        files = subprocess.run(["git", "ls-files"], cwd=PROJECT, capture_output=True, text=True,
                               check=False).stdout.splitlines()
        if not files:
            files = [str(p.relative_to(PROJECT)) for p in PROJECT.rglob("*_test.*")]
        cls.tests = set()
        for name in files:
            path = PROJECT / name
            if "_test." not in path.name or not path.is_file(): continue
            text = path.read_text(errors="replace")
            cls.tests.update(f"{suite}.{test}" for suite, test in
                             re.findall(r"\bTEST(?:_F|_P)?\((\w+),\s*(\w+)\)", text))
            cls.tests.update(re.findall(r"def (test_\w+)\(", text))

    def test_every_named_test_exists(self):
        for page in PAGES:
            for kind, name in named(page):
                with self.subTest(page=page, name=name):
                    there = (PROJECT / name).exists() if kind == "file" else name in self.tests
                    self.assertTrue(there, f"{page} names {name}, which does not exist")

    def test_promises_name_tests(self):
        for page in PAGES:
            with self.subTest(page=page):
                names = [name for _, name in named(page)]
                self.assertGreater(len(names), 20)


if __name__ == "__main__":
    unittest.main()
