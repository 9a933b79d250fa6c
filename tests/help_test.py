"""The help text on terminals of any width."""

import re

from command_line import CommandTest, main


class HelpTest(CommandTest):
    def pages(self, columns):
        page = self.on_terminal("--help", columns=columns)
        names = re.findall(r"^  ([a-z]+)\b", page.split("Subcommands:")[1], re.M)
        self.assertGreater(len(names), 9)
        return [page, *(self.on_terminal(name, "--help", columns=columns) for name in names)]

    def test_descriptions_fit(self):
        for columns in (100, 80, 40):
            for page in self.pages(columns):
                described = re.split(r"^Options:\n", page, flags=re.M)[1]
                self.assertIn("Print this help message and exit\n", described)
                for line in described.splitlines():
                    # Commands to copy, and the table of exit statuses, are not wrapped.
                    if not re.match(r"  (fabscan|ibnetdiscover|\d) ", line):
                        self.assertLessEqual(len(line), columns, line)

    def test_options_are_shown_as_typed(self):
        page = self.run_command("dump", "--help").stdout
        self.assertIn("\nUsage: fabscan dump [OPTIONS] SNAPSHOT\n", page)
        self.assertRegex(page, r"\n  SNAPSHOT {10,}The saved fabric")
        self.assertRegex(page, r"\n  --prefix NAME \(required\) ")
        self.assertNotIn("TEXT", page)
        self.assertNotIn("\n\n\n", page)

    def test_lists_the_exit_statuses(self):
        page = self.run_command("--help").stdout
        self.assertEqual(re.findall(r"^  (\d)  [A-Z]", page, re.M), ["0", "1", "2", "3"])


if __name__ == "__main__":
    main()
