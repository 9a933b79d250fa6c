"""hardening_test.py COMMAND: the built command uses the hardening features of the compiler and the
linker."""

import re
import subprocess
import sys
import unittest

COMMAND = sys.argv.pop(1)


def readelf(*options):
    return subprocess.run(["readelf", "-W", *options, COMMAND], check=True, capture_output=True,
                          text=True).stdout


class Hardening(unittest.TestCase):
    def test_is_position_independent(self):
        self.assertRegex(readelf("-h"), r"Type: +DYN ")
        self.assertRegex(readelf("-d"), r"\(FLAGS_1\) .*\bPIE\b")
        self.assertNotIn("TEXTREL", readelf("-d"))

    def test_relocations_are_read_only(self):
        self.assertIn("GNU_RELRO", readelf("-l"))
        self.assertRegex(readelf("-d"), r"\(FLAGS\) .*\bBIND_NOW\b")

    def test_stack_and_data_are_not_executable(self):
        flags = re.findall(r"GNU_STACK(?: +0x\w+){5} +([RWE]+)", readelf("-l"))
        self.assertEqual(flags, ["RW"])
        for line in re.findall(r"LOAD .*", readelf("-l")):
            self.assertNotRegex(line, r" RWE ", "a segment that is written and run")

    def test_stack_frames_and_buffers_are_checked(self):
        symbols = set(re.findall(r"\b(__\w+_chk\w*)@", readelf("--dyn-syms")))
        self.assertIn("__stack_chk_fail", symbols)
        self.assertTrue(symbols - {"__stack_chk_fail"}, "no call that -D_FORTIFY_SOURCE checks")

    def test_libraries_come_only_from_system_directories(self):
        self.assertNotRegex(readelf("-d"), r"R(UN)?PATH")


if __name__ == "__main__":
    unittest.main()
