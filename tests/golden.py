"""golden.py COMMAND [--update]: the generated files of the bundled snapshots equal those in golden/.

What differs between machines and days is written as a word: the host's name, the year, and the
address that stands for a redirect GID.
"""

import difflib
import pathlib
import re
import subprocess
import sys
import tempfile

TESTS = pathlib.Path(__file__).resolve().parent
EXAMPLES = TESTS.parent / "examples"
GOLDEN = TESTS / "golden"

VARIABLE = [
    (r"(?m)^(// Host Name: ).*$", r"\1HOST"),
    (r"(Copyright \(c\) 2024-)\d{4}", r"\1YEAR"),
    (r"(RedirectGID = 0x0x)[0-9a-f]+;", r"\1ADDRESS;"),
]


def generate(command, snapshot):
    with tempfile.TemporaryDirectory(prefix="fabscan-golden-") as folder:
        subprocess.run([command, "dump", snapshot, "--prefix", "MyDev", "--output-dir", folder],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        text = (pathlib.Path(folder) / "mydev_generated.cpp").read_text()
    for pattern, word in VARIABLE:
        text = re.sub(pattern, word, text)
    return text


def main():
    command = sys.argv[1]
    update = sys.argv[2:] == ["--update"]
    stale = False
    for snapshot in sorted(EXAMPLES.glob("*.fabscan.jsonl")):
        golden = GOLDEN / snapshot.name.replace(".fabscan.jsonl", "_generated.cpp.golden")
        text = generate(command, snapshot)
        if update:
            golden.write_text(text)
            print(golden)
            continue
        expected = golden.read_text() if golden.exists() else ""
        if text == expected:
            continue
        stale = True
        sys.stdout.writelines(list(difflib.unified_diff(
            expected.splitlines(True), text.splitlines(True), str(golden), "generated now"))[:60])
        print(f"{golden} is stale; if the new text is right, './run golden' renews it")
    return 1 if stale else 0


if __name__ == "__main__":
    sys.exit(main())
