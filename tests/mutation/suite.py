"""The tests of the generator, arranged so that one changed source is tested in about a second.

Of a changed source one object is compiled: the generator becomes a shared library, which is linked
anew, and the programs stay as they are. Of a changed header everything is compiled that includes it,
but one test program after another: of each, only the parts that are linked into it.
"""

import json
import pathlib
import re
import resource
import shlex
import shutil
import subprocess
import threading

PROJECT = pathlib.Path(__file__).resolve().parents[2]
FABSCAN = PROJECT / "fabscan"
ARCHIVE = "fabscan/libfabscan_generator.a"
LIBRARY = "libmutated.so"
QUESTIONS = "questions_test"    # has its own objects, built with other headers
GOLDEN = "golden_files_test"    # in examples/
LICENCE = "licence_text_test"
INCLUDED = ("infiniband/fabscan/fabscan.h", "algorithm", "charconv", "fstream")
INCLUDED_BY_TESTS = ("gmock/gmock.h", "gtest/gtest.h", *INCLUDED)
CPU_SECONDS = 8    # per process; no test takes a second
WALL_SECONDS = 900    # on a busy machine the same takes much longer
MEMORY = 4 << 30
LINKER = "-fuse-ld=gold"    # three times as fast as the default
NOT_INLINED = ("-Dalways_inline=unused", "-Dflatten=unused")    # inlining takes longer


def limited():
    resource.setrlimit(resource.RLIMIT_CPU, (CPU_SECONDS, CPU_SECONDS))
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def runs(command, folder, environment=None):
    try:
        return subprocess.run(command, cwd=folder, env=environment, preexec_fn=limited,
                              stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=WALL_SECONDS).returncode == 0
    except subprocess.TimeoutExpired:
        return False


class Build:
    """The unchanged build, whose commands are repeated for changed sources."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder).resolve()
        entries = json.loads((self.folder / "compile_commands.json").read_text())
        self.compilations = {}
        for entry in entries:
            command = shlex.split(entry["command"])
            # With ccache every mutant would be stored.
            if pathlib.Path(command[0]).name == "ccache": command = command[1:]
            command[1:1] = NOT_INLINED
            self.compilations[command[command.index("-o") + 1]] = (entry["file"], command)
        self.sources = sorted(p.name for p in FABSCAN.glob("*.cpp") if not p.stem.endswith("_test"))
        self.tests = sorted(p.stem for p in FABSCAN.glob("*_test.cpp"))
        self.lock, self.linked = threading.Lock(), set()
        self.precompiled = {
            True: self.precompile("fabscan_generator", self.sources[0], INCLUDED),
            False: self.precompile(self.tests[0], f"{self.tests[0]}.cpp", INCLUDED_BY_TESTS)}
        self.linking = {name: self._link_command(name) for name in [*self.tests, GOLDEN]}
        self.parts = {name: self._parts(name) for name in self.linking if name != QUESTIONS}

    def precompile(self, target, source, includes):
        """Precompiled common headers: they take half the time of a mutant."""
        header = self.folder / "precompiled" / f"{target}.h"
        header.parent.mkdir(exist_ok=True)
        header.write_text("".join(f"#include <{name}>\n" for name in includes))
        _, command = self.compilations[self.object_of(target, source)]
        command = command[:command.index("-o")] + ["-x", "c++-header", "-o", f"{header}.gch", header]
        if not runs(command, self.folder): raise RuntimeError("the headers do not compile")
        return ["-include", str(header)]

    def _link_command(self, target):
        lines = subprocess.run(["ninja", "-C", self.folder, "-t", "commands", target], check=True,
                               capture_output=True, text=True).stdout.splitlines()
        return [*shlex.split(lines[-1].removeprefix(": && ").removesuffix(" && :")), LINKER]

    def _parts(self, target):
        """The sources whose objects are in a program."""
        traced = subprocess.run([*self.linking[target], "-fuse-ld=bfd", "-Wl,--trace", "-Wl,--trace"],
                                cwd=self.folder, check=True, capture_output=True, text=True).stdout
        archived = re.findall(re.escape(ARCHIVE) + r"[(:)]+([\w.]+)\.o\b", traced)
        return {*archived, f"{target}.cpp"}

    def object_of(self, target, source):
        return f"fabscan/CMakeFiles/{target}.dir/{source}.o"

    def includers(self, header):
        """The sources and tests of fabscan/ that include a header."""
        pattern = re.compile(r'#include [<"](?:testing/)?([\w.]+)[">]')
        included = {p.name: set(pattern.findall(p.read_text())) for p in
                    [*FABSCAN.glob("*.h"), *FABSCAN.glob("*.cpp"), *FABSCAN.glob("testing/*.h")]}
        seen, rest = set(), [header]
        while rest:
            name = rest.pop()
            for other, names in included.items():
                if name in names and other not in seen:
                    seen.add(other)
                    rest.append(other)
        return sorted(n for n in seen if n.endswith(".cpp"))


class Worker:
    """A worker directory with the sources, the library and links to everything else."""

    def __init__(self, build, number):
        self.build = build
        self.folder = build.folder / f"worker-{number}"
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        shutil.copytree(FABSCAN, self.folder / "fabscan")
        (self.folder / "include").symlink_to(PROJECT / "include")
        (self.folder / "programs").mkdir()
        self.library = self.folder / LIBRARY
        self.environment = {"LD_LIBRARY_PATH": str(self.folder), "PATH": "/usr/bin:/bin"}
        self.objects = {s: str(build.folder / build.object_of("fabscan_generator", s))
                        for s in build.sources}
        if not self.link_library({}): raise RuntimeError("the library cannot be linked")
        for target in [*build.tests, GOLDEN]: self._link_unchanged(target)

    def _link_unchanged(self, target):
        """Programs find the library by name only, so they are linked once for all workers."""
        kept = self.build.folder / "unchanged" / target
        with self.build.lock:
            if target not in self.build.linked:
                if not self.link_program(target, {}, self.library): raise RuntimeError(f"cannot link {target}")
                kept.parent.mkdir(exist_ok=True)
                shutil.copy(self.folder / "programs" / target, kept)
                self.build.linked.add(target)
        shutil.copy(kept, self.folder / "programs" / target)

    def compile(self, target, source):
        """The object of a source in the worker's directory; None if it does not compile."""
        output = self.folder / f"{target}-{source}.o"
        _, command = self.build.compilations[self.build.object_of(target, source)]
        own = {str(FABSCAN / source): str(self.folder / "fabscan" / source),
               f"-I{FABSCAN}": f"-I{self.folder}/fabscan"}
        command = [own.get(word, word) for word in command]
        command[command.index("-o") + 1] = str(output)
        if target != QUESTIONS: command += self.build.precompiled[target == "fabscan_generator"]
        return str(output) if runs(command, self.build.folder) else None

    def link_library(self, changed):
        objects = [changed.get(source, path) for source, path in self.objects.items()]
        return runs(["g++", "-shared", LINKER, "-Wl,-Bsymbolic-functions", f"-Wl,-soname,{LIBRARY}",
                     "-o", self.library, *objects],
                    self.build.folder)

    def link_program(self, target, changed, generator):
        """`changed`: objects by the name of their source; `generator`: the origin of the others."""
        command = list(self.build.linking[target])
        command[command.index("-o") + 1] = str(self.folder / "programs" / target)
        for i, word in enumerate(command):
            name = word.rsplit("/", 1)[-1].removesuffix(".o")
            if word.endswith(".o") and name in changed: command[i] = changed[name]
        if ARCHIVE in command:
            at = command.index(ARCHIVE)
            command[at:at + 1] = [*(changed[s] for s in changed if s in self.objects), generator]
        return runs(command, self.build.folder)

    # ---------- Tests ----------

    def passes(self, test):
        if test == LICENCE:
            return runs([FABSCAN / "licence_text_test.sh", "g++", self.folder], self.folder,
                        self.environment)
        return runs([self.folder / "programs" / test], self.folder, self.environment)

    def test(self, name, text, order):
        """What detects a changed source: "compiler", the name of a test, or ""."""
        path = self.folder / "fabscan" / name
        original = path.read_text()
        path.write_text(text)
        try:
            return self._test_header(name, order) if name.endswith(".h") else \
                self._test_source(name, order)
        finally:
            path.write_text(original)

    def _first_failing(self, tests):
        return next((test for test in tests if not self.passes(test)), "")

    def _test_source(self, name, order):
        compiled = self.compile("fabscan_generator", name)
        if compiled is None or not self.link_library({name: compiled}): return "compiler"
        found = self._first_failing(t for t in order if t != QUESTIONS)
        return found or self._test_questions([name])

    def _test_header(self, name, order):
        includers = set(self.build.includers(name))
        objects, linked = {}, []

        def seen_by(test):
            return self.build.parts[test] & includers

        def fails(test):
            """The name of a test that fails; "compiler" if it cannot be built."""
            for source in seen_by(test) - set(objects):
                target = "fabscan_generator" if source in self.build.sources else test
                objects[source] = self.compile(target, source)
            if None in objects.values(): return "compiler"
            linked.append(test)
            changed = {source: objects[source] for source in seen_by(test)}
            if not self.link_program(test, changed, ARCHIVE): return "compiler"
            return "" if self.passes(test) else test

        try:
            tests = [t for t in order if t not in (QUESTIONS, LICENCE) and seen_by(t)]
            tests.sort(key=lambda t: len(seen_by(t)))    # quick builds first
            found = next(filter(None, map(fails, tests)), "")
            return found or self._test_questions(includers & set(self.build.sources))
        finally:
            for program in linked: self._link_unchanged(program)

    def _test_questions(self, sources):
        objects = {}
        for source in sources:
            objects[source] = self.compile(QUESTIONS, source)
            if objects[source] is None: return "compiler"
        try:
            if not self.link_program(QUESTIONS, objects, ARCHIVE): return "compiler"
            return "" if self.passes(QUESTIONS) else QUESTIONS
        finally:
            self._link_unchanged(QUESTIONS)
