"""lint.py BUILD JOBS FILE...: clang-tidy over the files, by the compile commands of BUILD.

Skips files that were clean before, unless their text, an included header, the compile command or a
check has changed.
"""

import concurrent.futures
import hashlib
import json
import pathlib
import shlex
import subprocess
import sys

PROJECT = pathlib.Path(__file__).resolve().parent.parent


def digest(command):
    """Digest of everything that clang-tidy reads, including comments, which may contain NOLINT."""
    preprocessed = subprocess.run(command[:command.index("-o")] + ["-E", "-C", command[-1]],
                                  capture_output=True, check=False)
    seen = hashlib.sha256((PROJECT / ".clang-tidy").read_bytes())
    seen.update(" ".join(command).encode())
    seen.update(preprocessed.stdout)
    return seen.hexdigest()


def main():
    build, jobs = pathlib.Path(sys.argv[1]), int(sys.argv[2])
    clean = build / "clean"
    clean.mkdir(exist_ok=True)
    commands = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        if pathlib.Path(words[0]).name == "ccache": words = words[1:]
        commands.setdefault(entry["file"], words)

    def command_of(path):
        """For a file that is not compiled here, the command of another file in its directory: the
        one that includes from most directories."""
        if path in commands: return commands[path]
        directory = pathlib.Path(path).relative_to(PROJECT).parts[0]
        neighbours = sorted(p for p in commands if p.startswith(f"{PROJECT}/{directory}/"))
        neighbour = max(neighbours, key=lambda p: sum(w.startswith("-I") for w in commands[p]))
        return [*commands[neighbour][:-1], path]

    def check(name):
        path = str(PROJECT / name)
        mark = clean / digest(command_of(path))
        if mark.exists(): return name, "", False
        words = command_of(path)
        flags = words[1:words.index("-MD") if "-MD" in words else words.index("-o")]
        tidy = subprocess.run(["clang-tidy", "--quiet", path, "--", *flags], capture_output=True,
                              text=True, check=False)
        if tidy.returncode == 0:
            mark.touch()
            return name, "", True
        return name, tidy.stdout or tidy.stderr, True

    failed = looked = 0
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        for name, fault, anew in pool.map(check, sys.argv[3:]):
            looked += anew
            if fault:
                failed += 1
                print(f"{name}:\n{fault}", flush=True)
    print(f"{len(sys.argv) - 3} files, {looked} checked, {failed} with findings")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
