"""instructions.py VALGRIND COUNTED COMPILER [--update]: instructions against the kept figures.

Counts every WHAT that the program COUNTED lists. A count above the kept one by more than TOLERANCE
fails; one below it asks for the kept figure to be renewed. Counts of another compiler than the kept
figures' say nothing, and are not compared.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

KEPT = pathlib.Path(__file__).resolve().parent / "instructions.tsv"
COLUMNS = ("what", "instructions", "compiler")
TOLERANCE = 5  # percent
UPDATE = "./run instructions"
SKIPPED = 77  # to ctest

# The libraries choose code by the processor; what every current one has is chosen here.
BASELINE = {
    "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX,-AVX2,-AVX512F,-AVX512VL,-ERMS,-FSRM,-SSE4_2,-SSSE3,"
                      "-AVX_Fast_Unaligned_Load,-Fast_Unaligned_Copy",
    "SIMDJSON_FORCE_IMPLEMENTATION": "westmere",
    "LC_ALL": "C",
}


def count(valgrind, counted, what):
    with tempfile.TemporaryDirectory(prefix="fabscan-count-") as folder:
        subprocess.run([valgrind, "--quiet", "--tool=callgrind", "--collect-atstart=no",
                        "--callgrind-out-file=profile", counted, what],
                       check=True, cwd=folder, env={**os.environ, **BASELINE})
        profile = (pathlib.Path(folder) / "profile").read_text()
    return int(re.search(r"(?m)^(?:summary|totals): (\d+)$", profile).group(1))


def read_kept(path=KEPT):
    """What -> (instructions, compiler)."""
    lines = path.read_text().splitlines()[1:] if path.exists() else []
    rows = (line.split("\t") for line in lines)
    return {what: (int(instructions), compiler) for what, instructions, compiler in rows}


def compare(kept, counts, compiler):
    """Lines to print, and whether a count is too high, new or gone."""
    lines, failed = [], False
    for what in sorted(kept.keys() | counts.keys()):
        if what not in kept or what not in counts:
            where = "kept" if what not in kept else "counted"
            lines.append(f"{what}: not {where}; '{UPDATE}' renews the figures")
            failed = True
            continue
        instructions, kept_compiler = kept[what]
        change = 100 * counts[what] / instructions - 100
        line = (f"{what}: {counts[what]:,} instructions, kept {instructions:,} of {kept_compiler}, "
                f"{change:+.1f} %")
        if kept_compiler != compiler:
            line += f"; not compared, this is {compiler}"
        elif change > TOLERANCE:
            line += f"; above the {TOLERANCE} % allowed. If it must be so, '{UPDATE}' renews it"
            failed = True
        elif change < -TOLERANCE:
            line += f"; better, '{UPDATE}' keeps it so"
        lines.append(line)
    return lines, failed


def main():
    valgrind, counted, compiler = sys.argv[1:4]
    names = subprocess.run([counted], check=True, capture_output=True, text=True).stdout.split()
    counts = {what: count(valgrind, counted, what) for what in names}
    kept = read_kept()
    lines, failed = compare(kept, counts, compiler)
    print("\n".join(lines))
    if sys.argv[4:] == ["--update"]:
        rows = [COLUMNS] + [(what, str(counts[what]), compiler) for what in names]
        KEPT.write_text("".join("\t".join(row) + "\n" for row in rows))
        return 0
    if failed:
        return 1
    return 0 if any(of == compiler for _, of in kept.values()) else SKIPPED


if __name__ == "__main__":
    sys.exit(main())
