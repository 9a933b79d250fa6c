"""`fabscan discover` with fabrics that answer incompletely, and usage errors."""

import signal
import subprocess
import time
import unittest

import nets
from simulated_fabric import FABSCAN, LiveTestCase

PARTLY = "fabscan: warning: the snapshot is incomplete: "


class IncompleteTest(LiveTestCase):
    def setUp(self):
        self.fabric = self.serve(nets.two_switches(), nets.HERE)

    def test_reports_a_node_whose_peer_is_silent(self):
        self.fabric.command(f'Error "{nets.THERE}" 100')
        done = self.discover(self.fabric, expect=3)
        self.assertEqual(done.stderr,
                         "fabscan: warning: spine (0x5a1e0c0000200100) lacks the linked peer "
                         f"(timed out) of port 3\n{PARTLY}1 of 4 nodes lack attributes\n")
        self.assertEqual(len(self.fabric.snapshot().nodes), 4)

    def test_reports_a_node_whose_peer_disappears(self):
        console = f'{self.fabric.console_path} Unlink "{nets.SPINE}"'
        done = self.discover(self.fabric, expect=3, FABSCAN_FAKE_CONSOLE=console)
        self.assertIn("leaf (0x5a1e0c0000200000) lacks the linked peer", done.stderr)
        self.assertIn(PARTLY, done.stderr)
        snapshot = self.fabric.snapshot()
        self.assertNotIn(0x5A1E0C0000200100, snapshot.nodes)
        self.assertIn(0x5A1E0C0000300000, snapshot.nodes)

    def test_reports_a_peer_that_answers_later(self):
        fabric = self.serve(nets.chain(3), "H-5a1e0c0000100000")
        done = self.discover(fabric, expect=3, FABSCAN_FAKE_HOPS="3",
                             FABSCAN_FAKE_RULES="11:*:once")
        self.assertEqual(done.stderr,
                         "fabscan: warning: switch 2 (0x5a1e0c0000200100) lacks the linked peer (it "
                         f"answers now: discover again) of port 2\n{PARTLY}1 of 3 nodes lack "
                         "attributes\n")

    def test_reports_a_peer_beyond_the_longest_route(self):
        fabric = self.serve(nets.chain(70), "H-5a1e0c0000100000")
        done = self.discover(fabric, expect=3)
        # A route has 63 hops: the 63rd switch is the last that can be reached.
        self.assertEqual(done.stderr,
                         "fabscan: warning: switch 63 (0x5a1e0c0000203e00) lacks the linked peer "
                         f"(too many hops away for a query) of port 2\n{PARTLY}1 of 64 nodes lack "
                         "attributes\n")

    def test_records_that_a_query_could_not_be_sent(self):
        done = self.discover(self.fabric, expect=3, FABSCAN_FAKE_OFFER="1",
                             FABSCAN_FAKE_RULES="33:1:unsent,33:*:answer")
        self.assertIn("leaf (0x5a1e0c0000200000) lacks PortInfoExtended (No buffer space available) "
                      "of port 1\n", done.stderr)
        self.assertEqual(self.fabric.snapshot().port(nets.LEAF, 1)["absent"],
                         {"SMP_PortInfoExtended": "No buffer space available"})

    def test_reads_the_rest_after_a_node_disappears(self):
        self.fabric.command(f'Unlink "{nets.SPINE}"')
        self.discover(self.fabric)
        self.assertEqual(sorted(self.fabric.snapshot().nodes),
                         [0x5A1E0C0000100000, 0x5A1E0C0000200000, 0x5A1E0C0000300000])

    def test_warns_when_the_local_port_has_no_link(self):
        self.fabric.command(f'Unlink "{nets.HERE}"')
        done = self.discover(self.fabric, expect=3)
        self.assertEqual(done.stderr, "fabscan: warning: only this host's adapter was found; does "
                                      "ibsim0 port 1 have a link?\n")
        self.assertEqual(len(self.fabric.snapshot().nodes), 1)

    def test_records_timeouts_and_refusals_as_absent(self):
        done = self.discover(self.fabric, expect=3,
                             FABSCAN_FAKE_RULES="12:*:silence,15:2:refuse")
        self.assertIn("23 of 30 attributes", done.stdout)  # without 2 SwitchInfo, 5 PortInfo
        self.assertIn("leaf (0x5a1e0c0000200000) lacks SwitchInfo (timed out); "
                      "PortInfo (status 0x000c) of port 2\n", done.stderr)
        snapshot = self.fabric.snapshot()
        self.assertEqual(snapshot.node(nets.LEAF)["absent"], {"SMP_SwitchInfo": "timed out"})
        self.assertEqual(snapshot.port(nets.LEAF, 2),
                         {"num": 2, "state": "UNKNOWN",
                          "absent": {"SMP_PortInfo": "status 0x000c"}})

    def test_names_a_node_by_its_guid_if_its_description_is_missing(self):
        done = self.discover(self.fabric, expect=3, FABSCAN_FAKE_RULES="10:*:silence")
        self.assertIn("[0x5a1e0c0000200000] (0x5a1e0c0000200000) lacks NodeDescription "
                      "(timed out)\n", done.stderr)

    def test_reads_port_info_extended_if_supported(self):
        done = self.discover(self.fabric, expect=3, FABSCAN_FAKE_OFFER="1",
                             FABSCAN_FAKE_RULES="33:1:answer,33:2:refuse,33:*:silence")
        self.assertIn("leaf (0x5a1e0c0000200000) lacks PortInfoExtended (not asked: two "
                      "consecutive queries of this node timed out) of ports 5, 6; PortInfoExtended (status 0x000c) "
                      "of port 2; PortInfoExtended (timed out) of ports 3, 4\n", done.stderr)
        snapshot = self.fabric.snapshot()
        self.assertNotIn("SMP_PortInfoExtended", snapshot.port(nets.LEAF, 0)["attributes"])
        # The answer's words of 16 bits are 0x0101, 0x0201 and so on, the low byte being the port.
        self.assertEqual(
            snapshot.port(nets.LEAF, 1)["attributes"]["SMP_PortInfoExtended"],
            {"CapMsk": 0x01010201, "FECModeActive": 0x0301, "FDRFECModeSupported": 0x0401,
             "FDRFECModeEnabled": 0x0501, "EDRFECModeSupported": 0x0601,
             "EDRFECModeEnabled": 0x0701, "HDRFECModeSupported": 0x0801,
             "HDRFECModeEnabled": 0x0901, "NDRFECModeSupported": 0x0A01,
             "NDRFECModeEnabled": 0x0B01, "PartitionTop": 0x0C01})
        self.assertEqual(snapshot.port(nets.LEAF, 2)["absent"],
                         {"SMP_PortInfoExtended": "status 0x000c"})
        self.assertEqual(snapshot.port(nets.LEAF, 3)["absent"],
                         {"SMP_PortInfoExtended": "timed out"})

    def test_does_not_request_unsupported_port_info_extended(self):
        self.discover(self.fabric, FABSCAN_FAKE_RULES="33:*:answer")
        self.assertFalse([line for line in self.fabric.snapshot().lines
                          if "SMP_PortInfoExtended" in line])

    def refused(self, *arguments, status=1, **more):
        done = self.fabric.fabscan("discover", *arguments, **more)
        self.assertEqual(done.returncode, status, done.stderr)
        self.assertEqual(done.stdout, "")
        self.assertEqual(done.stderr.count("\n"), 1)
        self.assertEqual(list(self.fabric.folder.glob("*.jsonl")), [])
        return done.stderr

    def test_lists_adapters_and_ports(self):
        self.assertEqual(self.refused("--output", "x.jsonl", "-C", "ibp1s0"),
                         "fabscan: error: no adapter 'ibp1s0' on this host; available: "
                         "ibsim0 port 1\n")
        self.assertEqual(self.refused("--output", "x.jsonl", "-C", "ibsim0", "-P", "7"),
                         "fabscan: error: no port 7 on ibsim0; available: "
                         "ibsim0 port 1\n")

    def test_reports_a_missing_adapter(self):
        self.assertIn("fabscan: error: no InfiniBand adapter on this host",
                      self.refused("--output", "x.jsonl", LD_PRELOAD=""))

    def test_reports_that_no_device_answers(self):
        message = self.refused("--output", "x.jsonl", "--timeout-ms", "50", "--retries", "1",
                               FABSCAN_FAKE_RULES="11:*:silence")
        self.assertEqual(message, "fabscan: error: ibsim0 port 1: the scan failed: Failed to resolve "
                                  "self; is the port up, and may this user send subnet management "
                                  "queries?\n")

    def test_refuses_invalid_numbers(self):
        self.refused("--output", "x.jsonl", "--timeout-ms", "0", status=2)
        self.refused("--output", "x.jsonl", "-P", "255", status=2)
        self.refused(status=2)

    def test_keeps_an_existing_output(self):
        output = self.fabric.folder / "fabric.jsonl"
        output.write_text("precious")
        done = self.fabric.fabscan("discover", "--output", "fabric.jsonl")
        self.assertEqual(done.returncode, 1)
        self.assertIn("fabric.jsonl", done.stderr)
        self.assertEqual(output.read_text(), "precious")


class InterruptedTest(LiveTestCase):
    """Ctrl-C during a discovery. The program then ends without the simulator's clean-up of its
    directory."""

    LEFTOVERS = (".fabscan-*",)

    def interrupt(self, fabric, *arguments, after, **more):
        run = subprocess.Popen(
            [FABSCAN, "discover", "--output", "fabric.jsonl", *arguments], cwd=fabric.folder,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, stdin=subprocess.DEVNULL, text=True,
            env=fabric.environment(**more))
        try:
            time.sleep(after)
            run.send_signal(signal.SIGINT)
            out, err = run.communicate(timeout=30)
        finally:
            if run.poll() is None:
                run.kill()
                run.wait()
        return run.returncode, out, err

    def interrupt_waiting(self, *arguments):
        """While the scan waits for a device three hops away."""
        fabric = self.serve(nets.two_switches(), nets.HERE)
        return fabric, *self.interrupt(fabric, *arguments, after=1, FABSCAN_FAKE_HOPS="3",
                                       FABSCAN_FAKE_RULES="11:*:wait")

    def test_ends_at_any_time(self):
        fabric = self.serve(nets.fat_tree(), "H-5a1e0c0010000000",
                            ("-N", 4000, "-S", 600, "-P", 40000))
        for after in (0.05, 0.1, 0.2, 0.3, 0.4):
            with self.subTest(after=after):
                status, _, err = self.interrupt(fabric, "--force", after=after)
                # Until the handler is installed, Ctrl-C ends the program as usual; a discovery may also
                # end earlier. The simulator's client panics if its own call is interrupted.
                if "ibpanic: " in err and "Interrupted system call" in err:
                    self.assertEqual(status, 255, err)
                    continue
                self.assertIn(status, (0, 1, -signal.SIGINT), err)
                self.assertNotIn("libibnetdisc", err)

    def test_keeps_nothing(self):
        fabric, status, out, err = self.interrupt_waiting()
        self.assertEqual((status, out), (1, ""))
        self.assertEqual(err, "fabscan: error: interrupted; nothing was written "
                              "(use --keep-partial to keep what was read)\n")
        self.assertEqual(list(fabric.folder.glob("*.jsonl")), [])

    def test_keeps_partial_results_on_request(self):
        fabric, status, _, err = self.interrupt_waiting("--keep-partial")
        self.assertEqual(status, 3)
        self.assertIn("fabscan: warning: interrupted; the snapshot contains what was read so far\n",
                      err)
        self.assertIn(0x5A1E0C0000200000, fabric.snapshot().nodes)


if __name__ == "__main__":
    unittest.main()
