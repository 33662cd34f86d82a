#!/usr/bin/env python3
"""Mutation test of the library: one token of its sources is changed at a time, and some test has to notice.

usage: mutate.py [--build build/release] [--count 300 [--skip 0] | --all] [--seed 1] [--jobs 1] [--again RESULTS]
                 [--results FILE] [--minimum PERCENT] [--work DIRECTORY] [FOLDER...]
       mutate.py --check [FOLDER...]    only: does every line of explained.txt still describe one place?

BUILD is a finished Ninja build with its tests. Changed are comparisons, signs, bounds, constants and logic in FOLDER...
(src/ops src/sparse src/factor src/core). Only the translation units that see the change are compiled again, at -O1; the
library takes the place of the tests' one through LD_LIBRARY_PATH. A mutant is

  killed        a test program failed, crashed, or ran out of time or memory, or a call of the test "instructions" took 5 %
                more of them than with the unchanged library
  equivalent    the compiler made the same code of it
  not compiled  it is no valid program
  survived      every program passed; reasons of known ones are in explained.txt

The score is killed / (killed + survived): explained ones count against it. --again runs those that survived in an
earlier results file once more.
Everything happens on copies in a temporary folder, so that the sources may change meanwhile; --work names a folder
that is kept, and saves compiling the unchanged library when it is used again. --skip leaves out the first ones: a run
goes on where one with a smaller --count ended.
"""
import argparse
import concurrent.futures
import contextlib
import filecmp
import functools
import hashlib
import json
import os
import re
import resource
import shlex
import shutil
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

import mutants

# Rooms that tell nothing which the others do not tell sooner: whole examples, other libraries, large data.
LEFT_OUT = {"data", "gnss", "gnss_data", "lapack", "cxx20", "install", "layout", "harness"}
KERNELS = ["portable", "sse2", "avx2"]  # beside the widest, which runs by itself
WIDEST = "avx512.cpp" if " avx512f " in Path("/proc/cpuinfo").read_text() else "avx2.cpp"


def run(command, **more):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **more)


class Bench:
    """Copies of sources and test programs, and the unchanged library's objects."""

    def __init__(self, build, work):
        self.build, self.work = build, work
        cache = (build / "CMakeCache.txt").read_text()
        self.root = Path(re.search(r"^CMAKE_HOME_DIRECTORY:\w+=(.*)$", cache, re.M).group(1))
        same = all(self.same(self.root / folder, work / "plain" / folder) for folder in ("src", "include"))
        if not same:
            for folder in ("plain", "base"):
                shutil.rmtree(work / folder, ignore_errors=True)
            for folder in ("src", "include"):
                shutil.copytree(self.root / folder, work / "plain" / folder)
        self.units = {}  # source below the root -> command without output
        commands = json.loads(subprocess.run(["ninja", "-C", build, "-t", "compdb"], check=True, capture_output=True,
                                             text=True).stdout)
        for entry in commands:
            if "quorvel_objects.dir" not in entry.get("output", "") or not entry["file"].endswith(".cpp"):
                continue
            source = str(Path(entry["file"]).resolve().relative_to(self.root))
            self.units[source] = self.plain_command(entry["command"])
        self.sees = {}  # file below the root -> units that include it
        self.base = work / "base"
        self.base.mkdir(exist_ok=True)
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            done = list(pool.map(self.compile_base, self.units))
        for source, output, seen in done:
            if output is not None:
                sys.exit(f"{source} does not compile:\n{output}")
            for file in seen:
                self.sees.setdefault(file, []).append(source)
        self.copy_programs()

    @staticmethod
    def same(a, b):
        return b.exists() and run(["diff", "-rq", str(a), str(b)]).returncode == 0

    @staticmethod
    def plain_command(command):
        """Arguments without launcher, dependencies, optimisation, output and source."""
        words = shlex.split(command)
        words = words[next(k for k, w in enumerate(words) if "++" in os.path.basename(w)):]
        kept, skip = [], False
        for word in words:
            if skip:
                skip = False
            elif word in ("-MT", "-MF", "-o", "-c"):
                skip = True
            elif word == "-MD" or word.startswith(("-O", "-Werror", "-W", "-g")):
                pass
            else:
                kept.append(word)
        return kept + ["-O1", "-w"]

    def command(self, source, tree, output):
        words = [w.replace(str(self.root / "src"), str(tree / "src")).replace(str(self.root / "include"),
                 str(self.work / "plain/include")) for w in self.units[source]]
        return words + ["-o", str(output), "-c", str(tree / source)]

    def object_name(self, source):
        return source.replace("/", "_") + ".o"

    def compile_base(self, source):
        output = self.base / self.object_name(source)
        if not output.exists():
            done = run(self.command(source, self.work / "plain", output) + ["-MMD", "-MF", str(output) + ".d"])
            if done.returncode:
                return source, done.stdout, []
        words = Path(str(output) + ".d").read_text().replace("\\\n", " ").split()[1:]
        plain = str(self.work / "plain")
        return source, None, [os.path.relpath(w, plain) for w in words if w.startswith(plain)]

    def copy_programs(self):
        tests = self.build / "tests"
        self.rooms = []
        programs = self.work / "programs"
        shutil.rmtree(programs, ignore_errors=True)
        programs.mkdir()
        for program in sorted(tests.rglob("test_*")):
            if program.is_file() and os.access(program, os.X_OK):
                shutil.copy2(program, programs)
                self.rooms.append(program.name[5:])
        self.counter = None
        if (tests / "instructions/instructions").exists():
            shutil.copy2(tests / "instructions/instructions", programs / "instructions")
            self.counter = ["bash", str(self.root / "tests/instructions/count.sh"), str(programs / "instructions"),
                            str(self.work / "counts.txt")]
        # The internals are linked in, not loaded.
        self.internal = None
        objects = sorted((tests / "CMakeFiles/test_internal.dir").rglob("*.o"))
        if objects and "internal" in self.rooms:
            folder = self.work / "internal"
            folder.mkdir(exist_ok=True)
            for file in objects + [tests / "libquorvel_test_support.a", self.build / "lib/libgtest.a"]:
                shutil.copy2(file, folder)
            self.internal = [str(folder / o.name) for o in objects] + [str(folder / "libquorvel_test_support.a")]
            self.gtest = str(folder / "libgtest.a")


class Worker:
    def __init__(self, bench, number):
        self.bench = bench
        self.tree = bench.work / f"w{number}"
        shutil.rmtree(self.tree, ignore_errors=True)
        shutil.copytree(bench.work / "plain/src", self.tree / "src")
        self.lib = self.tree / "lib"
        self.lib.mkdir()
        self.objects = self.tree / "objects"
        self.objects.mkdir()
        self.temporary = self.tree / "tmp"
        self.temporary.mkdir()

    def link(self, changed):
        """The library with these objects in place of the unchanged ones; None, or what the linker says."""
        files = [str(changed.get(s, self.bench.base / self.bench.object_name(s))) for s in self.bench.units]
        done = run(["c++", "-shared", "-Wl,-soname,libQuorvel.so.1", "-Wl,-Bsymbolic-functions", "-o",
                    str(self.lib / "libQuorvel.so.1")] + files)
        self.files = files
        (self.lib / "test_internal").unlink(missing_ok=True)
        return done.stdout if done.returncode else None

    def link_internal(self):
        run(["c++", "-rdynamic", "-o", str(self.lib / "test_internal")] + self.bench.internal + self.files +
            [self.bench.gtest, "-lpthread"], check=True)

    def test(self, room, limit, part="*", kernels=None, output=subprocess.DEVNULL):
        """Whether the tests of the room pass; `limit` in seconds of processor time."""
        if room == "internal" and not (self.lib / "test_internal").exists():
            self.link_internal()
        program = self.lib / "test_internal" if room == "internal" else self.bench.work / "programs" / f"test_{room}"

        def limits():
            resource.setrlimit(resource.RLIMIT_CPU, (int(limit + 1), int(limit + 2)))
            resource.setrlimit(resource.RLIMIT_AS, (3 << 30, 3 << 30))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            resource.setrlimit(resource.RLIMIT_FSIZE, (64 << 20, 64 << 20))

        # Reading or writing behind a block ends the program, as it does in the suite; new and freed memory is filled.
        environment = dict(os.environ, LD_LIBRARY_PATH=str(self.lib), TMPDIR=str(self.temporary), MALLOC_PERTURB_="85")
        if not room.startswith("gnss"):
            environment["QUORVEL_GUARDED_HEAP"] = "end"
        environment["QUORVEL_MISUSE_CALLS"] = "100000"
        environment.pop("QUORVEL_KERNELS", None)
        if kernels:
            environment["QUORVEL_KERNELS"] = kernels
        try:
            done = subprocess.run([program, "--gtest_fail_fast", "--gtest_catch_exceptions=1", "--gtest_filter=" + part],
                                  stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.DEVNULL,
                                  cwd=self.temporary, env=environment, preexec_fn=limits, timeout=30 * limit + 60)
        except subprocess.TimeoutExpired:
            return False
        return done.returncode == 0

    def counts(self, *more):
        """Whether the calls of the test "instructions" take no more than stored ("--record": stores what they take)."""
        if self.bench.counter is None:
            return True
        environment = dict(os.environ, LD_LIBRARY_PATH=str(self.lib), TMPDIR=str(self.temporary))
        try:
            return run(self.bench.counter + list(more), env=environment, timeout=600).returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def times(self, room):
        """Seconds of each test of the room, or None when it fails."""
        with tempfile.TemporaryFile("w+") as output:
            if not self.test(room, 300, output=output):
                return None
            output.seek(0)
            return {name: int(ms) / 1000 for name, ms in
                    re.findall(r"^\[       OK \] (\S+?),? .*?\((\d+) ms\)$", output.read(), re.M)}

    def judge(self, file, site, rooms):
        path = self.tree / file
        original = path.read_text()
        path.write_text(mutants.apply(original, site))
        try:
            units = self.bench.sees.get(file, [])
            # The instances of the kernels keep their code to themselves, and the programs run the widest: most mutants
            # die by that one already, and the others need not be compiled.
            instances = len(units) > 1 and all("/kernels/" in source for source in units)
            steps = [[u for u in units if u.endswith(WIDEST)], [u for u in units if not u.endswith(WIDEST)]]
            changed = {}
            for step in steps if instances else [units]:
                before = len(changed)
                trouble = self.compile(step, changed)
                if trouble is not None:
                    return trouble
                if len(changed) == before:
                    continue
                if self.link(changed) is not None:
                    return "not compiled", "linker"
                for name, room, limit, part in rooms if before == 0 else []:
                    if not self.test(room, limit, part):
                        return "killed", name
            if not changed:
                return "equivalent", ""
            if "/kernels/" in file:
                for kernels in KERNELS:
                    for room in ("laws", "internal", "unit", "accuracy"):
                        if not self.test(room, 60, kernels=kernels):
                            return "killed", f"{room} on {kernels}"
            return ("survived", "") if self.counts() else ("killed", "instructions")
        finally:
            path.write_text(original)

    def compile(self, sources, changed):
        """Compiles the sources, and adds the objects that are not as before to `changed`. None, or the verdict."""
        for source in sources:
            output = self.objects / self.bench.object_name(source)
            try:
                done = run(self.bench.command(source, self.tree, output), timeout=600)
            except subprocess.TimeoutExpired:
                return "not compiled", "compiler"
            if done.returncode:
                return "not compiled", ""
            if not filecmp.cmp(output, self.bench.base / self.bench.object_name(source), shallow=False):
                changed[source] = output
        return None


def mutants_of(root, folders):
    """(file, site) of every mutant of the sources in these folders."""
    everything = []
    for folder in folders:
        for path in sorted((root / folder).rglob("*")) if (root / folder).is_dir() else [root / folder]:
            if path.suffix in (".cpp", ".h", ".inc"):
                everything += [(str(path.relative_to(root)), site) for site in mutants.sites(path.read_text())]
    return everything


def explained_reasons(everything, plain):
    """(file, site) -> reason. One line of explained.txt speaks of one site: one that speaks of none, or of several, ends
    the run."""
    named = {}
    for mutant in everything:
        _, text, change = place(mutant, plain)
        named.setdefault((mutant[0], text, change), []).append(mutant)
    files = {mutant[0] for mutant in everything}
    reasons, wrong = {}, []
    for line in Path(__file__).with_name("explained.txt").read_text().splitlines():
        if not line.strip() or line.startswith("#"):
            continue
        file, text, change, reason = (part.strip() for part in line.split(" | ", 3))
        change, _, number = change.partition(" #")
        if file not in files and (plain / file).exists():
            continue  # of a folder that is left alone
        same = named.get((file, text, change), [])
        if not (0 < int(number) <= len(same) if number else len(same) == 1):
            wrong.append(f"explained.txt: {len(same)} places are described by {line}")
        else:
            reasons[same[int(number or 1) - 1]] = reason
    if wrong:
        sys.exit("\n".join(wrong))
    return reasons


def main():
    parser = argparse.ArgumentParser(usage=__doc__.replace("%", "%%"))
    parser.add_argument("--build", type=Path, default=Path("build/release"))
    parser.add_argument("--count", type=int, default=300)
    parser.add_argument("--skip", type=int, default=0)
    parser.add_argument("--all", action="store_true")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--again", type=Path)
    parser.add_argument("--results", type=Path)
    parser.add_argument("--work", type=Path)
    parser.add_argument("--minimum", type=float, default=0.0)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("folders", nargs="*")
    options = parser.parse_args()
    folders = options.folders or ["src/ops", "src/sparse", "src/factor", "src/core"]
    if options.check:
        root = Path(__file__).resolve().parents[2]
        reasons = explained_reasons(mutants_of(root, folders), root)
        print(f"{len(reasons)} places are described")
        return 0

    with contextlib.ExitStack() as stack:
        name = options.work or stack.enter_context(tempfile.TemporaryDirectory(prefix="mutants."))
        Path(name).mkdir(parents=True, exist_ok=True)
        bench = Bench(options.build.resolve(), Path(name).resolve())
        plain = bench.work / "plain"
        everything = mutants_of(plain, folders)
        reasons = explained_reasons(everything, plain)
        chosen = list(everything)
        if options.again:
            wanted = {tuple(line.split("\t")[1:3]) for line in options.again.read_text().splitlines()
                      if line.startswith("survived\t")}
            chosen = [m for m in everything if (place(m, plain)[0], place(m, plain)[2]) in wanted]
        elif not options.all:
            # At random, but each by itself: a larger count takes the same ones and more, and so does a later version of
            # the sources, but for what changed in them.
            chosen.sort(key=lambda mutant: lot(mutant, plain, options.seed))
            chosen = chosen[options.skip:options.count]
        print(f"{len(chosen)} of {len(everything)} mutants", flush=True)

        workers = [Worker(bench, number) for number in range(options.jobs)]
        trouble = workers[0].link({})
        if trouble is not None:
            sys.exit("the unchanged library does not link:\n" + trouble)
        if not (workers[0].counts("--record") and workers[0].counts()):
            sys.exit("the instructions of the unchanged library cannot be counted")
        # Each room in two parts: all its quick tests, and its slow ones. What kills most in the least time comes first.
        parts = {}
        for room in sorted(set(bench.rooms) - LEFT_OUT):
            times = workers[0].times(room)
            if times is None:
                print(f"room {room} fails with the unchanged library at -O1, and is left out", flush=True)
                continue
            slow = {name: t for name, t in times.items() if t >= 0.05 and len(times) > 1}
            names = ":".join(sorted(slow))
            parts[room, "quick"] = [f"-{names}", sum(times.values()) - sum(slow.values()) + 0.02, 2.0]
            if slow:
                parts[room, "slow"] = [names, sum(slow.values()) + 0.02, 1.0]
        print("parts: " + ", ".join(f"{room} ({which}) {part[1]:.1f} s" for (room, which), part in parts.items()),
              flush=True)

        counts = {"killed": 0, "survived": 0, "equivalent": 0, "not compiled": 0}
        known = 0
        lock = threading.Lock()
        free = list(workers)
        results = open(options.results, "w") if options.results else None

        def one(mutant):
            nonlocal known
            with lock:
                worker = free.pop()
            started = time.time()
            order = sorted(parts, key=lambda p: parts[p][1] / parts[p][2])
            rooms = [(" ".join(p), p[0], 3 * parts[p][1] + 3, parts[p][0]) for p in order]
            verdict, by = worker.judge(mutant[0], mutant[1], rooms)
            if verdict == "killed":
                for part in parts:
                    if by == " ".join(part):
                        parts[part][2] += 1.0
            where, text, change = place(mutant, plain)
            reason = reasons.get(mutant)
            with lock:
                free.append(worker)
                counts[verdict] += 1
                if verdict == "survived" and reason:
                    known += 1
                print(f"{verdict:12} {where}: {change}  {by}{reason if verdict == 'survived' and reason else ''}"
                      f" ({time.time() - started:.0f} s)" + (f"\n             {text}" if verdict == "survived" else ""),
                      flush=True)
                if results:
                    results.write(f"{verdict}\t{where}\t{change}\t{by}\t{text}\n")
                    results.flush()

        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            for done in [pool.submit(one, mutant) for mutant in chosen]:
                done.result()

    judged = counts["killed"] + counts["survived"]
    score = 100.0 * counts["killed"] / judged if judged else 0.0
    print(", ".join(f"{number} {verdict}" for verdict, number in counts.items()))
    print(f"mutation score {score:.1f} % ({counts['killed']} of {judged}); "
          f"{known} of the {counts['survived']} that survive cannot change a result, for the reasons listed")
    return 0 if score >= options.minimum else 1


@functools.lru_cache(maxsize=None)
def lines(path):
    return path.read_text().split("\n")


def place(mutant, plain):
    """FILE:LINE:COLUMN, the text of the line, and the change."""
    file, (number, column, length, new, _) = mutant
    line = lines(plain / file)[number]
    return f"{file}:{number + 1}:{column + 1}", line.strip(), f'"{line[column:column + length]}" -> "{new}"'


def lot(mutant, plain, seed):
    """What decides whether a mutant is among those that are tried."""
    file, (number, column, *_) = mutant
    _, text, change = place(mutant, plain)
    indented = lines(plain / file)[number].index(text)
    return hashlib.sha256(f"{seed} {file} {text} {column - indented} {change}".encode()).digest()


if __name__ == "__main__":
    sys.exit(main())
