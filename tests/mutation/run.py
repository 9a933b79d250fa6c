"""run.py BUILD [--kind KIND]... [--sample N] [--seed S] [--jobs N] [--resume] [FILE...]

Makes small faults in the sources of fabscan/, one at a time, and looks which test finds each. Fails
when one survives that survivors.txt does not list with a reason, and, after a whole run of a file,
when one is listed that does not survive. BUILD/mutation.tsv tells of each as it goes; --resume
leaves out those found before in files that have not changed since.
"""

import argparse
import collections
import concurrent.futures
import hashlib
import pathlib
import queue
import random
import sys
import threading
import time

import mutants
import suite

SURVIVORS = pathlib.Path(__file__).with_name("survivors.txt")


def listed_survivors():
    """Name -> reason. A reason is the comment above; it applies up to the next empty line."""
    listed, reason = {}, []
    after_entry = False
    for number, line in enumerate(SURVIVORS.read_text().splitlines(), 1):
        if line.startswith("#"):
            if after_entry: reason = []
            reason.append(line[1:].strip())
            after_entry = False
        elif not line.strip():
            reason, after_entry = [], False
        else:
            if not reason: sys.exit(f"{SURVIVORS.name}:{number}: no reason stands above it")
            listed[line.strip()] = " ".join(reason)
            after_entry = True
    return listed


def named(name, text):
    """The mutants of a file with distinct names."""
    counts = collections.Counter()
    for mutant in mutants.mutants(text):
        key = f"{name} | {mutant.name(text)}"
        counts[key] += 1
        yield (key if counts[key] == 1 else f"{key} (again {counts[key]})"), mutant


class Order:
    """For each file, runs the test that found most first."""

    def __init__(self, tests):
        self.tests, self.found, self.lock = tests, collections.Counter(), threading.Lock()

    def of(self, name):
        stem = name.rsplit(".", 1)[0]
        tests = [t for t in self.tests if t != suite.LICENCE or stem == "file_frame"]
        with self.lock:
            return sorted(tests, key=lambda t: (-self.found[name, t], not t.startswith(stem),
                                                t in (suite.GOLDEN, suite.LICENCE)))

    def count(self, name, test):
        with self.lock: self.found[name, test] += 1


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build")
    parser.add_argument("files", nargs="*")
    parser.add_argument("--kind", action="append", help="only this kind of fault; repeatable")
    parser.add_argument("--sample", type=int, help="so many of each file, chosen by the seed")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--resume", action="store_true")
    arguments = parser.parse_intermixed_args()

    build = suite.Build(arguments.build)
    names = [pathlib.Path(f).name for f in arguments.files] or sorted(
        p.name for p in suite.FABSCAN.glob("*.[ch]*")
        if p.suffix in (".cpp", ".h") and not p.stem.endswith("_test"))
    listed = listed_survivors()
    log = build.folder / "mutation.tsv"
    before = {}
    if arguments.resume and log.exists():
        for line in log.read_text().splitlines():
            key, outcome, _, digest = line.split("\t")
            if outcome: before[key, digest] = outcome

    order = Order([*build.tests, suite.GOLDEN, suite.LICENCE])
    work, results = [], collections.defaultdict(dict)
    for name in names:
        text = (suite.FABSCAN / name).read_text()
        digest = hashlib.sha256(text.encode()).hexdigest()[:12]
        of_file = [item for item in named(name, text)
                   if not arguments.kind or item[1].kind in arguments.kind]
        if arguments.sample is not None and len(of_file) > arguments.sample:
            of_file = random.Random(arguments.seed).sample(of_file, arguments.sample)
        for key, mutant in of_file:
            outcome = before.get((key, digest))
            if outcome: results[name][key] = outcome
            else: work.append((name, text, digest, key, mutant))

    # Likely survivors come first: the tests repeat texts and table rows word for word.
    work.sort(key=lambda item: item[4].kind == "literal" and '"' in item[4].text or
              item[4].place.startswith("k"))

    workers = queue.Queue()
    for number in range(arguments.jobs):
        worker = suite.Worker(build, number)
        failing = [t for t in order.tests if number == 0 and not worker.passes(t)]
        if failing: sys.exit(f"these fail without a fault: {' '.join(failing)}")
        workers.put(worker)

    lock, done, begun = threading.Lock(), 0, time.monotonic()
    out = log.open("a" if arguments.resume else "w")

    def run(item):
        nonlocal done
        name, text, digest, key, mutant = item
        worker = workers.get()
        since = time.monotonic()
        try:
            outcome = worker.test(name, mutant.applied(text), order.of(name))
        finally:
            workers.put(worker)
        if outcome: order.count(name, outcome)
        with lock:
            results[name][key] = outcome
            out.write(f"{key}\t{outcome}\t{time.monotonic() - since:.2f}\t{digest}\n")
            out.flush()
            done += 1
            if not outcome and key not in listed:
                print(f"survives: {suite.FABSCAN.name}/{name}:{mutant.line(text)}\n  {key}",
                      flush=True)
            if done % 100 == 0:
                rest = (time.monotonic() - begun) / done * (len(work) - done)
                print(f"{done} of {len(work)}, about {rest / 60:.0f} minutes more", flush=True)

    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        for _ in pool.map(run, work): pass
    sys.exit(report(results, listed, whole=arguments.sample is None and not arguments.kind))


def report(results, listed, whole):
    unlisted, stale = 0, []
    print(f"\n{'file':<34} {'mutants':>7} {'compiler':>8} {'tests':>6} {'listed':>6} {'unlisted':>8}")
    totals = collections.Counter()
    for name, outcomes in sorted(results.items()):
        row = collections.Counter()
        for key, outcome in outcomes.items():
            kind = {"": "listed" if key in listed else "unlisted", "compiler": "compiler"}.get(
                outcome, "tests")
            row[kind] += 1
        print(f"{name:<34} {len(outcomes):7} {row['compiler']:8} {row['tests']:6} "
              f"{row['listed']:6} {row['unlisted']:8}")
        totals.update(row)
        if whole:
            stale += [key for key in listed
                      if key.split(" | ")[0] == name and outcomes.get(key, "gone") != ""]
    print(f"{'all':<34} {sum(totals.values()):7} {totals['compiler']:8} {totals['tests']:6} "
          f"{totals['listed']:6} {totals['unlisted']:8}")
    for key in stale: print(f"{SURVIVORS.name} lists what does not survive: {key}")
    return 1 if totals["unlisted"] or stale else 0


if __name__ == "__main__":
    main()
