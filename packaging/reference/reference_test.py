"""reference_test.py COMMAND FOLDER: the manual pages and completions in FOLDER, in the hands of the
programs that read them."""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

COMMAND = pathlib.Path(sys.argv.pop(1)).resolve()
FOLDER = pathlib.Path(sys.argv.pop(1)).resolve()


def run(*words, **more):
    return subprocess.run(words, text=True, capture_output=True, check=True, timeout=60, **more)


def subcommands():
    listed = run(COMMAND, "--help").stdout.split("Subcommands:\n")[1]
    return re.findall(r"^  ([a-z]+) ", listed, flags=re.M)


def options(subcommand):
    return re.findall(r"^  (?:-\w,)?(--[a-z-]+)", run(COMMAND, subcommand, "--help").stdout,
                      flags=re.M)


class ManualPages(unittest.TestCase):
    def shown(self, page):
        shown = run("groff", "-man", "-Tutf8", "-ww", "-rLL=100n", "-P-c", "-P-b", "-P-u",
                    FOLDER / "man1" / page)
        self.assertEqual(shown.stderr, "")
        return shown.stdout

    def test_one_for_the_command_and_each_subcommand(self):
        wanted = {"fabscan.1"} | {f"fabscan-{name}.1" for name in subcommands()}
        self.assertEqual({path.name for path in (FOLDER / "man1").iterdir()}, wanted)
        self.assertGreater(len(wanted), 11)

    def test_names_every_subcommand(self):
        page = self.shown("fabscan.1")
        for name in subcommands():
            self.assertRegex(page, rf"(?m)^ +{name}\b")

    def test_tells_every_option_and_the_example(self):
        for name in subcommands():
            page = self.shown(f"fabscan-{name}.1")
            for option in options(name):
                self.assertIn(option, page, name)
            self.assertIn(f"  fabscan {name} ", page)


class Completions(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        (self.folder / "fabric one.jsonl").touch()
        (self.folder / "fabrics").mkdir()

    def bash(self, *words):
        script = f"""source '{FOLDER}/completions/fabscan'
            COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)); _fabscan; printf '%s\\n' "${{COMPREPLY[@]}}\""""
        listed = run("bash", "-c", script, "bash", *words, cwd=self.folder).stdout
        return [line for line in listed.split("\n") if line]

    def fish(self, *words):
        home = dict(os.environ, HOME=str(self.folder), XDG_CONFIG_HOME=str(self.folder / "config"))
        script = (f"source '{FOLDER}/completions/fabscan.fish'; "
                  f"complete -C '{' '.join(words)}'")
        shown = run("fish", "--no-config", "-c", script, cwd=self.folder, env=home).stdout
        return [line.split("\t")[0] for line in shown.splitlines()]

    def zsh(self, text):
        """What a zsh at a terminal lists after these words and a tab."""
        script = f"""
            zmodload zsh/zpty
            zpty shell 'TERM=dumb PS1= zsh -f'
            say() {{ zpty -w shell "$1" }}
            say 'stty rows 100 columns 400; fpath=({FOLDER}/completions $fpath); autoload -Uz compinit'
            say 'compinit -u -D; zstyle ":completion:*" list-prompt ""; setopt nolistbeep autolist'
            say 'LISTMAX=10000; cd {self.folder}; echo rea""dy'
            zpty -r -m shell REPLY '*ready*'
            zpty -n -w shell '{text}'$'\\t'
            sleep 2
            zpty -w shell $'\\C-u'
            say 'echo fini""shed'
            zpty -r -m shell REPLY '*finished*'
            print -r -- "$REPLY"
        """
        return run("zsh", "-f", "-c", script, cwd=self.folder).stdout

    def test_bash(self):
        self.assertEqual(self.bash("fabscan", "du"), ["dump"])
        self.assertEqual(self.bash("fabscan", ""), subcommands() + ["--help", "--version"])
        for name in subcommands():
            self.assertLessEqual(set(options(name)), set(self.bash("fabscan", name, "-")), name)
        self.assertEqual(self.bash("fabscan", "dump", "--for"), ["--force"])
        self.assertEqual(set(self.bash("fabscan", "show", "fab")), {"fabric one.jsonl", "fabrics"})
        self.assertEqual(self.bash("fabscan", "dump", "--output-dir", "fab"), ["fabrics"])
        self.assertEqual(self.bash("fabscan", "dump", "--prefix", "fab"), [])

    def test_fish(self):
        self.assertEqual(self.fish("fabscan du"), ["dump"])
        self.assertEqual(self.fish("fabscan dump --for"), ["--force"])
        for name in subcommands():
            self.assertLessEqual(set(options(name)), set(self.fish(f"fabscan {name} --")), name)
        self.assertEqual(self.fish("fabscan dump --output-dir fab"), ["fabrics/"])

    def test_zsh(self):
        listed = self.zsh("fabscan ")
        for name in subcommands():
            self.assertRegex(listed, rf"\b{name}\b +--")
        listed = self.zsh("fabscan dump --")
        for option in options("dump"):
            self.assertIn(option, listed)
        self.assertIn("show fabric", self.zsh("fabscan show fab"))  # as far as both names go


if __name__ == "__main__":
    unittest.main(verbosity=2)
