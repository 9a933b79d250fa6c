"""coverage.py BUILD: lines and branches covered by the tests, by directory; fails below the limits.

Counted by the compiler in its syntax tree, so that a branch is a condition of the source taken or
not taken: exceptions and inlined library code do not count. Tests do not count either. All
instances of a template count as one.
"""

import collections
import json
import os
import pathlib
import subprocess
import sys

PROJECT = pathlib.Path(__file__).resolve().parent.parent
LIMITS = {"lines": 95.0, "branches": 90.0}
LIMITED = ("fabscan", "model", "snapshot", "discovery")
SHOWN = (*LIMITED, "records", "fabrics", "cli", "simulator")


def programs(build):
    for directory in ("bin", "tests"):
        for path in sorted((build / directory).iterdir()):
            if path.is_file() and path.read_bytes()[:4] == b"\x7fELF": yield path


def summaries(build):
    profile = build / "all.profdata"
    subprocess.run(["llvm-profdata", "merge", "-sparse", "-o", profile,
                    *sorted((build / "profiles").glob("*.profraw"))], check=True)
    first, *others = programs(build)
    objects = [word for path in others for word in ("-object", path)]
    exported = subprocess.run(["llvm-cov", "export", "-summary-only", "-instr-profile", profile,
                               first, *objects], check=True, capture_output=True, text=True)
    for file in json.loads(exported.stdout)["data"][0]["files"]:
        path = pathlib.Path(os.path.normpath(file["filename"]))
        if not path.is_relative_to(PROJECT): continue
        path = path.relative_to(PROJECT)
        if path.stem.endswith("_test") or "testing" in path.parts: continue
        yield path, file["summary"]


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    counts = collections.defaultdict(collections.Counter)
    files = []
    for path, summary in summaries(build):
        directory = path.parts[0]
        if directory == "include": directory = "model"    # model/ implements include/
        for what in LIMITS:
            counts[directory][what] += summary[what]["count"]
            counts[directory, "taken"][what] += summary[what]["covered"]
            missed = summary[what]["count"] - summary[what]["covered"]
            if missed: files.append((missed, what, path))

    under = False
    print("| directory | lines | branches |")
    print("|---|---|---|")
    for directory in SHOWN:
        shares = {}
        for what, limit in LIMITS.items():
            total = counts[directory][what]
            shares[what] = 100 * counts[directory, "taken"][what] / total if total else 0.0
            under |= directory in LIMITED and shares[what] < limit
        print(f"| `{directory}/` | {shares['lines']:.2f} % of {counts[directory]['lines']:,} "
              f"| {shares['branches']:.2f} % of {counts[directory]['branches']:,} |")
    print("\nfiles with the most uncovered code")
    for missed, what, path in sorted(files, key=lambda f: (-f[0], str(f[2])))[:15]:
        print(f"{missed:7} {what:<9} {path}")
    if under:
        print(f"\nunder the limit of {LIMITS['lines']} % of the lines or {LIMITS['branches']} % of "
              f"the branches in one of {', '.join(LIMITED)}")
    return 1 if under else 0


if __name__ == "__main__":
    sys.exit(main())
