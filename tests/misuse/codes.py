#!/usr/bin/env python3
"""usage: codes.py CODES_H HEADER_FOLDER PROGRAM...

Compares the codes that the test programs saw the library throw with the catalogue, both ways: every one is an operation
code plus an offset or a fixed code, every operation and every fixed code is thrown, and so is every full number that the
headers name.
"""
import os
import re
import subprocess
import sys
from pathlib import Path

# What tests throw at the error scheme itself, by M_abort, TestNULL, abort_set and the checks that take any code.
PRETENDED = {*range(0, 130), 1000}


def main():
    codes_h, headers, *programs = sys.argv[1:]
    groups = {"offset": {}, "code": {}, "fixed": {}}
    space = None
    for line in Path(codes_h).read_text().splitlines():
        if match := re.match(r"namespace quorvel::detail::(\w+) {", line):
            space = groups.get(match.group(1))
        elif match := re.match(r"inline constexpr int (\w+) = (\d+);", line):
            space[match.group(1)] = int(match.group(2))
    offsets, operations, fixed = (set(group.values()) for group in groups.values())
    sums = {offset + code: code for offset in offsets for code in operations}

    thrown = set()
    environment = dict(os.environ, QUORVEL_LIST_CODES="1", QUORVEL_MISUSE_CALLS="200000")
    for program in programs:
        done = subprocess.run([program, "--gtest_brief=1"], env=environment, capture_output=True, text=True)
        lines = [line for line in done.stdout.splitlines() if line.startswith("codes ")]
        if done.returncode or len(lines) != 1:
            print(f"{program} fails, or lists no codes")
            return 1
        thrown |= {int(word) for word in lines[0].split()[2:]}

    documented = set()
    for header in Path(headers).glob("*.h"):
        for line in header.read_text().splitlines():
            comment = line.partition("//")[2]
            documented |= {int(n) for n in re.findall(r"(?<![\d.])\d{5}(?![\d.]*\d)", comment)}
    documented &= set(sums) | fixed
    documented.discard(10000)  # the offset itself

    pretended = {code + offset for code in PRETENDED for offset in offsets | {0}}
    status = 0
    for what, numbers in (
            ("thrown, but not in the catalogue", thrown - set(sums) - fixed - pretended),
            ("thrown, but in no header", thrown - documented - pretended - {10680}),
            ("in a header, but never thrown", documented - thrown),
            ("in the catalogue, but never thrown", fixed - thrown),
            ("operations that never throw", operations - {sums[n] for n in thrown if n in sums})):
        if numbers:
            status = 1
            print(f"{what}: {sorted(numbers)}")
    print(f"{len(operations)} operation codes and {len(fixed)} fixed codes, {len(documented)} numbers in the headers, "
          f"{len(thrown & (set(sums) | fixed))} thrown")
    return status


if __name__ == "__main__":
    sys.exit(main())
