"""What the gate says of counts: it must fail where they grew, and only there."""

import pathlib
import tempfile
import unittest

import instructions

OLD = "GNU 12.2.0"


class Compare(unittest.TestCase):
    def outcome(self, counts, kept=100_000, compiler=OLD):
        lines, failed = instructions.compare({"read": (kept, OLD)}, counts, compiler)
        self.assertEqual(len(lines), len(counts) or 1)
        return lines[-1], failed

    def test_growth_within_the_tolerance_passes(self):
        self.assertEqual(self.outcome({"read": 105_000}),
                         ("read: 105,000 instructions, kept 100,000 of GNU 12.2.0, +5.0 %", False))

    def test_growth_beyond_it_fails_and_names_the_command(self):
        line, failed = self.outcome({"read": 105_100})
        self.assertTrue(failed)
        self.assertIn("+5.1 %; above the 5 % allowed. If it must be so, './run instructions'", line)

    def test_what_shrank_passes_and_asks_to_be_kept(self):
        line, failed = self.outcome({"read": 94_000})
        self.assertFalse(failed)
        self.assertIn("-6.0 %; better, './run instructions' keeps it so", line)
        self.assertNotIn("better", self.outcome({"read": 95_100})[0])

    def test_another_compiler_is_not_compared(self):
        line, failed = self.outcome({"read": 200_000}, compiler="GNU 13.1.0")
        self.assertFalse(failed)
        self.assertIn("not compared, this is GNU 13.1.0", line)

    def test_what_is_new_or_gone_fails(self):
        line, failed = self.outcome({"read": 100_000, "write": 1})
        self.assertTrue(failed)
        self.assertIn("write: not kept; './run instructions'", line)
        line, failed = self.outcome({})
        self.assertTrue(failed)
        self.assertIn("read: not counted", line)


class Kept(unittest.TestCase):
    def test_the_kept_figures_are_read(self):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder) / "kept.tsv"
            self.assertEqual(instructions.read_kept(path), {})
            path.write_text("what\tinstructions\tcompiler\nread\t7\tGNU 12.2.0\n")
            self.assertEqual(instructions.read_kept(path), {"read": (7, OLD)})


if __name__ == "__main__":
    unittest.main()
