"""Snapshots compressed with zstd: every command can read them, and write them if it writes snapshots."""

from command_line import DONE, EXAMPLES, FAILED, INCOMPLETE, CommandTest, main, snapshot, switch

DEMO = EXAMPLES / "demo.fabscan.jsonl"
MAGIC = b"\x28\xb5\x2f\xfd"


class Compressed(CommandTest):
    def copy(self, source, to, *more):
        """Reads a snapshot and writes it again."""
        return self.run_command("merge", source, source, "--output", to, *more)

    def copied(self, source, to):
        run = self.copy(source, to)
        self.assertEqual(run.returncode, DONE, run.stderr)
        return (self.folder / to).read_bytes()

    def test_a_round_trip_gives_the_same_bytes(self):
        plain = self.copied(DEMO, "plain.jsonl")
        compressed = self.copied(DEMO, "fabric.jsonl.zst")
        self.assertEqual(compressed[:4], MAGIC)
        self.assertLess(len(compressed), len(plain) / 4)
        self.assertEqual(self.copied("fabric.jsonl.zst", "again.jsonl"), plain)
        self.assertEqual(self.copied("fabric.jsonl.zst", "again.zst"), compressed)

    def test_anonymise_writes_it_too(self):
        for name in ("a.jsonl", "a.jsonl.zst"):
            run = self.run_command("anonymise", DEMO, "--key", "k", "--output", name)
            self.assertEqual(run.returncode, DONE, run.stderr)
        self.assertEqual((self.folder / "a.jsonl.zst").read_bytes()[:4], MAGIC)
        self.assertEqual(self.run_command("diff", "a.jsonl", "a.jsonl.zst").returncode, DONE)

    def test_skippable_frames_are_read(self):
        """A parallel compressor begins its files with one, and puts one before each frame."""
        plain = self.copied(DEMO, "plain.jsonl")
        compressed = self.copied(DEMO, "fabric.zst")
        for number in range(16):
            skippable = bytes([0x50 + number]) + b"\x2a\x4d\x18\x04\0\0\0size"
            self.put("skippable.zst", skippable + skippable + compressed + skippable)
            self.assertEqual(self.copied("skippable.zst", f"again{number}.jsonl"), plain)
        self.put("skippable.zst", skippable[:-1])
        self.assert_fails(self.run_command("show", "skippable.zst"),
                          "skippable.zst:1: the compressed data ends too early; copy it again")
        self.put("other.zst", b"\x60" + skippable[1:] + compressed)
        self.assertIn("not a snapshot", self.run_command("show", "other.zst").stderr)

    def test_only_the_file_name_matters(self):
        for name in ("fabric.zst.jsonl", "fabric.jsonl.ZST", ".zst", "zst"):
            self.assertEqual(self.copied(DEMO, name)[:1], b"{", name)
        run = self.copy(DEMO, "-")
        self.assertEqual(run.stdout[:1], "{")

    def test_every_reader_accepts_a_file_and_standard_input(self):
        contents = [self.copied(DEMO, "plain"), self.copied(DEMO, "compressed.zst")]
        for command in (("check",), ("models",), ("show",), ("anonymise", "--key=k", "--output=-"),
                        ("diff", "plain")):
            by_name, piped = [], []
            for content in contents:
                path = self.put("fabric", content)
                by_name.append(self.run_command(*command, "fabric"))
                with open(path, "rb") as file:
                    piped.append(self.run_command(*command, "-", stdin=file))
            for plain, compressed in (by_name, piped):
                self.assertEqual(plain.stdout, compressed.stdout)
                self.assertEqual((plain.stderr, plain.returncode),
                                 (compressed.stderr, compressed.returncode))
                self.assertIn(plain.returncode, (DONE, INCOMPLETE))
        with open(self.folder / "compressed.zst", "rb") as file:
            run = self.run_command("dump", "-", "--prefix", "My", "--output-dir", ".", stdin=file)
        self.assertEqual(run.returncode, DONE, run.stderr)
        piped = (self.folder / "my_generated.cpp").read_text().splitlines()
        self.run_command("dump", DEMO, "--prefix", "My", "--output-dir", ".", "--force")
        plain = (self.folder / "my_generated.cpp").read_text().splitlines()
        addresses = [line for line in plain if "RedirectGID" in line]  # differ between runs
        self.assertTrue(addresses)
        self.assertEqual([line for line in piped if "RedirectGID" not in line],
                         [line for line in plain if "RedirectGID" not in line])

    def test_a_truncated_file_is_refused(self):
        self.put("small.jsonl", snapshot(switch()))
        whole = self.copied("small.jsonl", "small.zst")
        (self.folder / "small.zst").unlink()
        for size in range(4, len(whole)):
            self.put("cut.zst", whole[:size])
            run = self.copy("cut.zst", "out.jsonl")
            self.assert_one_error(run, r"cut\.zst:\d: the compressed data ends too early; copy it "
                                       "again")
            self.assertEqual(self.entries(), ["cut.zst", "small.jsonl"])

    def test_a_damaged_file_is_refused(self):
        plain = self.copied(self.put("small.jsonl", snapshot(switch())), "plain.jsonl")
        whole = self.copied("small.jsonl", "small.zst")
        refused = 0
        for at in range(len(whole)):
            for bit in range(8):
                changed = bytearray(whole)
                changed[at] ^= 1 << bit
                self.put("damaged.zst", bytes(changed))
                run = self.copy("damaged.zst", "out.jsonl", "--force")
                if run.returncode == DONE:  # a larger window, or an unused bit
                    self.assertEqual((self.folder / "out.jsonl").read_bytes(), plain)
                    continue
                self.assert_one_error(run, "damaged.zst")
                refused += 1
        self.assertGreater(refused, 8 * (len(whole) - 3))

    def assert_one_error(self, run, words):
        self.assertEqual(run.returncode, FAILED)
        self.assertRegex(run.stderr, rf"\Afabscan: error: {words}[^\n]*\n\Z")
        self.assertEqual(run.stdout, "")

    def test_a_failed_write_keeps_the_earlier_file(self):
        size = len(self.copied(DEMO, "whole.zst"))
        for limit in (0, 1, size // 2, size - 1):
            self.put("out.zst", "earlier")
            run = self.run_command("merge", DEMO, DEMO, "--output", "out.zst", "--force",
                                   file_limit=limit)
            self.assert_fails(run, "out.zst: cannot write: File too large; write elsewhere")
            self.assertEqual((self.folder / "out.zst").read_text(), "earlier")
            self.assertEqual(self.entries(), ["out.zst", "whole.zst"])


if __name__ == "__main__":
    main()
