"""Which port of this host `fabscan discover` uses, and its messages if there is none to use.

The ports are made up. None but the simulator's own can be opened: whichever is chosen is named in
the refusal.
"""

import errno
import unittest

import nets
from simulated_fabric import LiveTestCase

DOWN, INIT, ARMED, ACTIVE = 1, 2, 3, 4


def ports(*rows):
    return ",".join(f"{adapter}:{number}:{state}:{layer}" for adapter, number, state, layer in rows)


class LocalPortTest(LiveTestCase):
    def setUp(self):
        self.fabric = self.serve(nets.two_switches(), nets.HERE)

    def refusal(self, *arguments, **more):
        done = self.fabric.fabscan("discover", "--output", "x.jsonl", *arguments, **more)
        self.assertEqual((done.returncode, done.stdout), (1, ""), done.stderr)
        self.assertEqual(list(self.fabric.folder.glob("*.jsonl")), [])
        self.assertTrue(done.stderr.startswith("fabscan: error: "), done.stderr)
        self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
        return done.stderr.removeprefix("fabscan: error: ").rstrip("\n")

    def chosen(self, there, *arguments):
        message = self.refusal(*arguments, FABSCAN_FAKE_PORTS=there, FABSCAN_FAKE_FORBID=errno.EPERM)
        port, found, _ = message.partition(": cannot open: ")
        self.assertTrue(found, message)
        return port

    def test_active_ports_are_preferred_to_ports_that_are_up(self):
        there = ports(("a0", 1, ACTIVE, "Ethernet"), ("a1", 1, DOWN, "InfiniBand"),
                      ("a1", 2, INIT, "InfiniBand"), ("a2", 1, ACTIVE, "InfiniBand"),
                      ("a3", 1, ACTIVE, "InfiniBand"))
        self.assertEqual(self.chosen(there), "a2 port 1")

    def test_ports_that_are_up_are_preferred_to_ports_that_are_down(self):
        there = ports(("a0", 1, ACTIVE, "Ethernet"), ("a1", 1, DOWN, "InfiniBand"),
                      ("a1", 2, INIT, "InfiniBand"), ("a2", 1, ARMED, "InfiniBand"))
        self.assertEqual(self.chosen(there), "a1 port 2")

    def test_a_port_that_is_down_is_used_if_there_is_no_other(self):
        there = ports(("a0", 1, DOWN, "InfiniBand"), ("a0", 2, DOWN, "InfiniBand"))
        self.assertEqual(self.chosen(there), "a0 port 1")
        there = ports(("a0", 1, ACTIVE, "Ethernet"), ("a0", 2, DOWN, "InfiniBand"))
        self.assertEqual(self.chosen(there), "a0 port 2")

    def test_the_given_port_is_preferred_to_a_better_one(self):
        there = ports(("a0", 1, ACTIVE, "InfiniBand"), ("a0", 2, DOWN, "InfiniBand"),
                      ("a1", 2, INIT, "InfiniBand"))
        self.assertEqual(self.chosen(there, "-C", "a0", "-P", "2"), "a0 port 2")
        self.assertEqual(self.chosen(there, "-C", "a1"), "a1 port 2")
        self.assertEqual(self.chosen(there, "-P", "2"), "a1 port 2")

    def test_a_missing_port(self):
        there = ports(("a0", 1, ACTIVE, "InfiniBand"), ("a1", 2, INIT, "InfiniBand"))
        self.assertEqual(self.refusal("-P", "3", FABSCAN_FAKE_PORTS=there),
                         "no port 3 on any adapter; available: a0 port 1, a1 port 2")
        self.assertEqual(self.refusal("-C", "a0", "-P", "2", FABSCAN_FAKE_PORTS=there),
                         "no port 2 on a0; available: a0 port 1")

    def test_refuses_ethernet_ports(self):
        there = ports(("a0", 1, ACTIVE, "Ethernet"), ("a1", 1, DOWN, "Ethernet"))
        self.assertEqual(self.refusal(FABSCAN_FAKE_PORTS=there),
                         "a0 port 1: its link layer is Ethernet, not InfiniBand; available: "
                         "a0 port 1, a1 port 1")
        there = ports(("a0", 1, ACTIVE, "InfiniBand"), ("a1", 1, ACTIVE, "Ethernet"))
        self.assertEqual(self.refusal("-C", "a1", FABSCAN_FAKE_PORTS=there),
                         "a1 port 1: its link layer is Ethernet, not InfiniBand; available: "
                         "a0 port 1, a1 port 1")

    def test_an_adapter_that_disappears_is_skipped(self):
        gone = ports(("a0", 0, 0, "InfiniBand"), ("a1", 1, INIT, "InfiniBand"))
        self.assertEqual(self.chosen(gone), "a1 port 1")
        self.assertEqual(self.refusal("-C", "a0", FABSCAN_FAKE_PORTS=gone),
                         "no adapter 'a0' on this host; available: a1 port 1")

    def test_no_adapter_and_no_library(self):
        none = ("no InfiniBand adapter on this host; are the adapter's driver and ib_umad loaded?")
        self.assertEqual(self.refusal(FABSCAN_FAKE_PORTS=ports(("a0", 0, 0, "InfiniBand"))), none)
        self.assertEqual(self.refusal(FABSCAN_FAKE_NO_UMAD="1"), none)

    def test_why_a_port_cannot_be_opened(self):
        permission = "run as root, or as a user who may access the umad devices in /dev/infiniband"
        module = "is the module ib_umad loaded?"
        for error, message in ((errno.EACCES, f"Permission denied; {permission}"),
                               (errno.EPERM, f"Operation not permitted; {permission}"),
                               (errno.ENXIO, f"No such device or address; {module}"),
                               (0, f"Input/output error; {module}")):  # the library's own result
            with self.subTest(error=error):
                self.assertEqual(self.refusal(FABSCAN_FAKE_FORBID=error),
                                 f"ibsim0 port 1: cannot open: {message}")

    def test_a_port_that_is_refused_after_the_scan(self):
        # Opened once to check, and twice by the scan.
        self.assertEqual(self.refusal(FABSCAN_FAKE_FORBID=errno.EMFILE, FABSCAN_FAKE_OPENS=3),
                         "ibsim0 port 1: cannot register for subnet management: Too many open files")


if __name__ == "__main__":
    unittest.main()
