"""Behaviour of all subcommands: usage errors, and `-` for standard input and output."""

import os

from command_line import DONE, EXAMPLES, FAILED, WRONG_USAGE, CommandTest, main, snapshot, switch

DEMO = EXAMPLES / "demo.fabscan.jsonl"
TWICE = "standard input: can be read only once; use a file instead of one -"


class Usage(CommandTest):
    def assert_refused(self, message, *arguments, **more):
        self.assert_fails(self.run_command(*arguments, **more), message, WRONG_USAGE)
        self.assertEqual(self.entries(), [])

    def test_an_option_before_the_subcommand(self):
        self.assert_refused("'--verison' was not expected; did you mean '--version'?", "--verison")
        self.assert_refused("'--json' was not expected; see 'fabscan show --help'",
                            "--json", "show", DEMO)

    def test_repeated_arguments_are_harmless_on_a_terminal(self):
        path = os.fsdecode(b"a\x9bb\xc2\x9bc\x1b\xe2\x80\xa8\xc3\xbc")
        self.assert_fails(self.run_command("show", path),
                          "a\\x9bb\\xc2\\x9bc\\x1b\\xe2\\x80\\xa8ü: cannot open: No such file or "
                          "directory")

    def test_every_unreadable_input_gives_the_same_error(self):
        for subcommand in ("show", "import"):
            output = ("--output", "out") if subcommand == "import" else ()
            for path, cause in (("none", "cannot open: No such file or directory"),
                                (self.folder, "cannot read: Is a directory")):
                self.assert_fails(self.run_command(subcommand, path, *output), f"{path}: {cause}")
        self.assert_fails(self.run_command("import", "-", "--output", "out", input="\x01no cache\n"),
                          "standard input: byte 0: not a discovery cache (as ibnetdiscover --cache "
                          "writes it)")

    def test_help_of_a_subcommand(self):
        for one, other in ((("help",), ("--help",)), (("help", "show"), ("show", "--help"))):
            run = self.run_command(*one)
            self.assertEqual((run.returncode, run.stdout),
                             (DONE, self.run_command(*other).stdout))
        self.assert_refused("unknown subcommand 'sho'; did you mean 'show'?", "help", "sho")

    def test_short_options(self):
        for short, long in ((("-o", "out"), ("--output", "out")),
                            (("-o", "out", "-v"), ("--output", "out", "--verbose"))):
            run, same = (self.run_command("merge", DEMO, DEMO, "--force", *words)
                         for words in (short, long))
            self.assertEqual((run.returncode, run.stdout), (DONE, same.stdout))
            self.assertEqual("fabscan: reading" in run.stderr, "-v" in short)

    def test_invalid_values(self):
        for message, *arguments in (
                ("--jobs: Value 0 not in range 1 to 1024; see 'fabscan verify --help'",
                 "verify", DEMO, "--jobs", "0"),
                ("--prefer: bsae not in {base,extra}; see 'fabscan merge --help'",
                 "merge", DEMO, DEMO, "--output", "out", "--prefer", "bsae"),
                ("--prefer: 1 not in {base,extra}; see 'fabscan merge --help'",
                 "merge", DEMO, DEMO, "--output", "out", "--prefer", "1"),
                ("--max-nodes: '5X' is not a number; it may end in K, M or G; see 'fabscan show "
                 "--help'", "show", DEMO, "--max-nodes", "5X")):
            self.assert_refused(message, *arguments)


class StandardStreams(CommandTest):
    def test_standard_input_is_read_once(self):
        for arguments in (("diff", "-", "-"),
                          ("merge", "-", "-", "--output", "-")):
            self.assert_fails(self.run_command(*arguments, input=snapshot(switch())), TWICE,
                              WRONG_USAGE)
        self.assert_fails(self.run_command("show", "-", "--guid-file", "-", input="1\n"), TWICE,
                          WRONG_USAGE)

    def test_guids_from_standard_input(self):
        run = self.run_command("show", DEMO, "--guid-file", "-", input="5a1e0c0000000200 # leaf\n")
        self.assertEqual(run.returncode, DONE, run.stderr)
        self.assertIn("leaf-01/U1", run.stdout)
        run = self.run_command("show", DEMO, "--guid-file", "-", input="\nx\n")
        self.assert_fails(run, "standard input:2: 'x' is not a valid GUID; expected 1 to 16 "
                               "hexadecimal digits, with or without 0x or colons", WRONG_USAGE)

    def test_messages_name_standard_streams(self):
        text = snapshot(switch())
        for subcommand in ("show", "check", "models"):
            run = self.run_command(subcommand, "-", input=text)
            self.assertIn("standard input: 1 node", run.stdout)
        run = self.run_command("diff", "-", DEMO, input=text)
        self.assertIn(": only in standard input\n", run.stdout)
        for command in (("anonymise", "-"), ("merge", "-", self.put("extra", text))):
            run = self.run_command(*command, "--output", "-", input=text)
            self.assertTrue(run.stderr.startswith("standard output: 1 node"), run.stderr)

    def test_a_missing_temporary_directory(self):
        none = str(self.folder / "none")
        dump = ("dump", DEMO, "--prefix", "P", "--output", "-")
        for command, advice in ((dump, ""), (("verify", DEMO), ", or use --keep")):
            run = self.run_command(*command, env={**os.environ, "TMPDIR": none})
            self.assert_fails(run, f"{none}: cannot create a temporary directory: No such file "
                                   f"or directory; set TMPDIR{advice}", FAILED)
        run = self.run_command(*dump, env={**os.environ, "TMPDIR": ""})
        self.assertEqual((run.returncode, run.stdout[:3]), (DONE, "/*\n"))


if __name__ == "__main__":
    main()
