#!/usr/bin/env python3
"""Mutation test of the library: one token of its sources is changed at a time, and some test has to notice.

usage: mutate.py [--build build/release] [--count 300 | --all] [--seed 1] [--jobs 1] [--again RESULTS] [--results FILE]
                 [--minimum PERCENT] [FOLDER...]

BUILD is a finished Ninja build with its tests. Changed are comparisons, signs, bounds, constants and logic in FOLDER...
(src/ops src/sparse src/factor src/core). Only the translation units that see the change are compiled again, at -O1; the
library takes the place of the tests' one through LD_LIBRARY_PATH. A mutant is

  killed        a test program failed, crashed, or ran out of time or memory
  equivalent    the compiler made the same code of it
  not compiled  it is no valid program
  survived      every program passed; reasons of known ones are in explained.txt

The score is killed / (killed + survived). --again runs those that survived in an earlier results file once more.
Everything happens on copies in a temporary folder, so that the sources may change meanwhile.
"""
import argparse
import concurrent.futures
import filecmp
import json
import os
import random
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

KERNELS = ["portable", "sse2", "avx2"]  # beside the widest, which runs by itself


def run(command, **more):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **more)


class Bench:
    """Copies of sources and test programs, and the unchanged library's objects."""

    def __init__(self, build, work):
        self.build, self.work = build, work
        cache = (build / "CMakeCache.txt").read_text()
        self.root = Path(re.search(r"^CMAKE_HOME_DIRECTORY:\w+=(.*)$", cache, re.M).group(1))
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
        self.base.mkdir()
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            done = list(pool.map(self.compile_base, self.units))
        for source, output, seen in done:
            if output is not None:
                sys.exit(f"{source} does not compile:\n{output}")
            for file in seen:
                self.sees.setdefault(file, []).append(source)
        self.copy_programs()

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
        programs.mkdir()
        for program in sorted(tests.rglob("test_*")):
            if program.is_file() and os.access(program, os.X_OK):
                shutil.copy2(program, programs)
                self.rooms.append(program.name[5:])
        # The internals are linked in, not loaded.
        self.internal = None
        objects = sorted((tests / "CMakeFiles/test_internal.dir").rglob("*.o"))
        if objects and "internal" in self.rooms:
            folder = self.work / "internal"
            folder.mkdir()
            for file in objects + [tests / "libquorvel_test_support.a", self.build / "lib/libgtest.a"]:
                shutil.copy2(file, folder)
            self.internal = [str(folder / o.name) for o in objects] + [str(folder / "libquorvel_test_support.a")]
            self.gtest = str(folder / "libgtest.a")


class Worker:
    def __init__(self, bench, number):
        self.bench = bench
        self.tree = bench.work / f"w{number}"
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
        if done.returncode:
            return done.stdout
        if self.bench.internal is not None:
            done = run(["c++", "-rdynamic", "-o", str(self.lib / "test_internal")] + self.bench.internal + files +
                       [self.bench.gtest, "-lpthread"])
            if done.returncode:
                return done.stdout
        return None

    def test(self, room, limit, kernels=None):
        """Whether the room passes; `limit` in seconds of processor time."""
        program = self.lib / "test_internal" if room == "internal" else self.bench.work / "programs" / f"test_{room}"

        def limits():
            resource.setrlimit(resource.RLIMIT_CPU, (int(limit + 1), int(limit + 2)))
            resource.setrlimit(resource.RLIMIT_AS, (3 << 30, 3 << 30))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            resource.setrlimit(resource.RLIMIT_FSIZE, (64 << 20, 64 << 20))

        # New and freed memory is filled, so that reading too far shows.
        environment = dict(os.environ, LD_LIBRARY_PATH=str(self.lib), TMPDIR=str(self.temporary), MALLOC_PERTURB_="85")
        environment.pop("QUORVEL_KERNELS", None)
        if kernels:
            environment["QUORVEL_KERNELS"] = kernels
        try:
            done = subprocess.run([program, "--gtest_brief=1", "--gtest_fail_fast", "--gtest_catch_exceptions=1"],
                                  stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                  cwd=self.temporary, env=environment, preexec_fn=limits, timeout=30 * limit + 60)
        except subprocess.TimeoutExpired:
            return False
        return done.returncode == 0

    def judge(self, file, site, rooms):
        path = self.tree / file
        original = path.read_text()
        path.write_text(mutants.apply(original, site))
        try:
            changed = {}
            for source in self.bench.sees.get(file, []):
                output = self.objects / self.bench.object_name(source)
                try:
                    done = run(self.bench.command(source, self.tree, output), timeout=300)
                except subprocess.TimeoutExpired:
                    return "not compiled", "compiler"
                if done.returncode:
                    return "not compiled", ""
                if not filecmp.cmp(output, self.bench.base / self.bench.object_name(source), shallow=False):
                    changed[source] = output
            if not changed:
                return "equivalent", ""
            if self.link(changed) is not None:
                return "not compiled", "linker"
            for room, limit in rooms:
                if not self.test(room, limit):
                    return "killed", room
            if "/kernels/" in file:
                for kernels in KERNELS:
                    for room, limit in rooms:
                        if room in ("laws", "accuracy") and not self.test(room, 4 * limit, kernels):
                            return "killed", f"{room} on {kernels}"
            return "survived", ""
        finally:
            path.write_text(original)


def explained_reasons():
    """(file, text of the line, change) -> reason."""
    reasons = {}
    path = Path(__file__).with_name("explained.txt")
    for line in path.read_text().splitlines() if path.exists() else []:
        if line.strip() and not line.startswith("#"):
            file, text, change, reason = (part.strip() for part in line.split(" | ", 3))
            reasons[file, text, change] = reason
    return reasons


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--build", type=Path, default=Path("build/release"))
    parser.add_argument("--count", type=int, default=300)
    parser.add_argument("--all", action="store_true")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--again", type=Path)
    parser.add_argument("--results", type=Path)
    parser.add_argument("--minimum", type=float, default=0.0)
    parser.add_argument("folders", nargs="*")
    options = parser.parse_args()
    folders = options.folders or ["src/ops", "src/sparse", "src/factor", "src/core"]

    with tempfile.TemporaryDirectory(prefix="mutants.") as name:
        bench = Bench(options.build.resolve(), Path(name))
        plain = bench.work / "plain"
        everything = []
        for folder in folders:
            for path in sorted((plain / folder).rglob("*")) if (plain / folder).is_dir() else [plain / folder]:
                if path.suffix in (".cpp", ".h", ".inc"):
                    file = str(path.relative_to(plain))
                    everything += [(file, site) for site in mutants.sites(path.read_text())]
        chosen = list(everything)
        if options.again:
            wanted = {tuple(line.split("\t")[1:3]) for line in options.again.read_text().splitlines()
                      if line.startswith("survived\t")}
            chosen = [m for m in everything if (place(m, plain)[0], place(m, plain)[2]) in wanted]
        elif not options.all:
            # Chosen by a shuffle: a larger count takes the same ones and more.
            random.Random(options.seed).shuffle(chosen)
            chosen = chosen[:options.count]
        print(f"{len(chosen)} of {len(everything)} mutants", flush=True)

        workers = [Worker(bench, number) for number in range(options.jobs)]
        trouble = workers[0].link({})
        if trouble is not None:
            sys.exit("the unchanged library does not link:\n" + trouble)
        for worker in workers[1:]:
            worker.link({})
        timed = []
        for room in bench.rooms:
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            if not workers[0].test(room, 300):
                print(f"room {room} fails with the unchanged library at -O1, and is left out", flush=True)
                continue
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            seconds = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
            timed.append((seconds, room))
        rooms = [(room, 3 * seconds + 3) for seconds, room in sorted(timed)]
        print("rooms: " + ", ".join(f"{room} {seconds:.1f} s" for seconds, room in sorted(timed)), flush=True)

        reasons = explained_reasons()
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
            verdict, by = worker.judge(mutant[0], mutant[1], rooms)
            where, text, change = place(mutant, plain)
            reason = reasons.get((mutant[0], text, change))
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
    print(", ".join(f"{number} {verdict}" for verdict, number in counts.items()) +
          f"; {known} of the survivors are explained")
    print(f"mutation score {score:.1f} % ({counts['killed']} of {judged})")
    return 0 if score >= options.minimum else 1


def place(mutant, plain, cache={}):
    """FILE:LINE:COLUMN, the text of the line, and the change."""
    file, (number, column, length, new, _) = mutant
    if file not in cache:
        cache[file] = (plain / file).read_text().split("\n")
    line = cache[file][number]
    return f"{file}:{number + 1}:{column + 1}", line.strip(), f'"{line[column:column + length]}" -> "{new}"'


if __name__ == "__main__":
    sys.exit(main())
