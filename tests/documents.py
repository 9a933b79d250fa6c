"""documents.py COMMAND CXX [--update]: transcripts and sources in the documents are correct.

Each line after "$ " in a console block is run, in a folder of its own that has the examples; what
follows it, up to the next such line, is what it prints. Each cpp block compiles, beside the header
that `fabscan scaffold --prefix MyDev` writes. docs/commands.md has the help of every subcommand.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

from document_blocks import DOCUMENTS, ROOT, SOURCE, TRANSCRIPT, blocks

REFERENCE = ROOT / "docs" / "commands.md"
CHANGES = ROOT / "CHANGELOG.md"
INCLUDES = [".", "include", "fabscan", "simulator/include", "simulator/devices/example"]


def transcript(block, command):
    with tempfile.TemporaryDirectory(prefix="fabscan-documents-") as folder:
        os.symlink(ROOT / "examples", pathlib.Path(folder) / "examples")
        bin_folder = str(pathlib.Path(command).resolve().parent)
        environment = {**os.environ, "PATH": bin_folder + ":" + os.environ["PATH"]}
        shown = ""
        for line in block.splitlines():
            if not line.startswith("$ "):
                continue
            run = subprocess.run(["bash", "-c", line[2:]], cwd=folder, env=environment, text=True,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=True)
            shown += line + "\n" + re.sub(r"[ ]+$", "", run.stdout, flags=re.M)
        return shown


def check_source(source, command, compiler):
    with tempfile.TemporaryDirectory(prefix="fabscan-documents-") as folder:
        subprocess.run([command, "scaffold", "--prefix", "MyDev", "--output-dir", folder],
                       check=True, stdout=subprocess.DEVNULL)
        subprocess.run([compiler, "-std=c++17", "-Wall", "-Wextra", "-Werror", "-fsyntax-only",
                        "-xc++", *(f"-I{ROOT / include}" for include in INCLUDES), f"-I{folder}",
                        "-"], input=source, text=True, check=True)


def check_reference(command):
    """Every subcommand in the help text has a section in the reference."""
    text = subprocess.run([command, "--help"], check=True, text=True,
                          stdout=subprocess.PIPE).stdout
    names = re.findall(r"^  ([a-z]+) ", text.split("Subcommands:\n")[1], flags=re.M)
    reference = REFERENCE.read_text()
    missing = [name for name in names
               if f"## {name}\n\n```console\n$ fabscan {name} --help\n" not in reference]
    if not names or missing:
        sys.exit(f"{REFERENCE}: no section for {', '.join(missing) or 'any subcommand'}")


def check_version(command):
    """The newest release in the list of changes is the version of the command."""
    shown = subprocess.run([command, "--version"], check=True, text=True,
                           stdout=subprocess.PIPE).stdout.split()
    newest = re.search(r"^## (\S+) - \d{4}-\d\d-\d\d$", CHANGES.read_text(), flags=re.M)
    if newest is None or shown != ["fabscan", newest[1]]:
        sys.exit(f"{CHANGES}: the newest release is not {' '.join(shown)}")


def main():
    command, compiler = sys.argv[1:3]
    update = sys.argv[3:] == ["--update"]
    check_reference(command)
    check_version(command)
    stale = False
    for document in DOCUMENTS:
        text = document.read_text()
        for source in blocks(text, SOURCE):
            check_source(source, command, compiler)
        fresh = re.sub(rf"(```{TRANSCRIPT}\n)(.*?)(```)",
                       lambda found: found[1] + transcript(found[2], command) + found[3], text,
                       flags=re.S)
        if fresh == text:
            continue
        if update:
            document.write_text(fresh)
            print(document)
            continue
        stale = True
        print(fresh)
        print(f"{document} is stale; if the new text is correct, './run golden' updates it")
    return 1 if stale else 0


if __name__ == "__main__":
    sys.exit(main())
