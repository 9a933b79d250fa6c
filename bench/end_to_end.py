"""end_to_end.py BIN [FOLDER]: makes a fabric of 10,000 switches of 64 ports and 90,000 adapters,
dumps it, and prints what each step took. Needs 15 GB in FOLDER, which is the working folder unless
given; what was made there is removed.
"""

import os
import pathlib
import sys
import tempfile
import time

FABRIC = ["--switches", "10000", "--ports", "64", "--adapters", "90000"]


def run(command, log):
    """Seconds, peak memory in bytes and exit status."""
    begin = time.monotonic()
    child = os.posix_spawn(command[0], [str(word) for word in command], os.environ, file_actions=[
        (os.POSIX_SPAWN_OPEN, 1, log, os.O_WRONLY | os.O_CREAT | os.O_APPEND, 0o600),
        (os.POSIX_SPAWN_DUP2, 1, 2)])
    _, status, usage = os.wait4(child, 0)
    return time.monotonic() - begin, usage.ru_maxrss * 1024, os.waitstatus_to_exitcode(status)


def main():
    programs = pathlib.Path(sys.argv[1]).resolve()
    parent = sys.argv[2] if len(sys.argv) > 2 else "."
    with tempfile.TemporaryDirectory(prefix="fabscan-whole-", dir=parent) as name:
        folder = pathlib.Path(name)
        snapshot = folder / "fabric.jsonl"
        steps = [
            ("making the snapshot", snapshot,
             [programs / "fabscan-make-fabric", *FABRIC, "--output", snapshot]),
            ("dumping it whole", folder / "whole_generated.cpp",
             [programs / "fabscan", "dump", snapshot, "--prefix", "Whole",
              "--output-dir", folder]),
        ]
        print("| 10,000 switches of 64 ports, 90,000 adapters | s | GB written | peak memory, GB |")
        print("|---|---|---|---|")
        for what, made, command in steps:
            log = str(folder / "log")
            seconds, memory, status = run(command, log)
            if status != 0:
                sys.exit(f"end_to_end.py: {what} failed with {status}: "
                         + pathlib.Path(log).read_text()[-500:])
            print(f"| {what} | {seconds:.0f} | {made.stat().st_size / 1e9:.1f} | "
                  f"{memory / 1e9:.1f} |", flush=True)


if __name__ == "__main__":
    main()
