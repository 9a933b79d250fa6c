"""readme.py COMMAND CXX [--update]: what the README shows is what happens.

Each line after "$ " in a console block is run, in a folder of its own that has the examples; what
follows it, up to the next such line, is what it prints. Each cpp block compiles.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
README = ROOT / "README.md"


def transcript(block, command):
    with tempfile.TemporaryDirectory(prefix="fabscan-readme-") as folder:
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


def check_source(source, compiler):
    subprocess.run([compiler, "-std=c++17", "-Wall", "-Wextra", "-Werror", "-fsyntax-only", "-xc++",
                    f"-I{ROOT}/include", f"-I{ROOT}/fabscan", "-"], input=source, text=True,
                   check=True)


def main():
    command, compiler = sys.argv[1:3]
    text = README.read_text()
    for source in re.findall(r"```cpp\n(.*?)```", text, flags=re.S):
        check_source(source, compiler)
    fresh = re.sub(r"(```console\n)(.*?)(```)",
                   lambda found: found[1] + transcript(found[2], command) + found[3], text,
                   flags=re.S)
    if sys.argv[3:] == ["--update"]:
        README.write_text(fresh)
        return 0
    if fresh != text:
        print(fresh)
        print("README.md is stale; if the new text is right, './run golden' renews it")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
