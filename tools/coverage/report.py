#!/usr/bin/env python3
"""Which lines and branches of a folder ran, out of the counts that an instrumented build left behind.

usage: report.py ROOT FOLDER OBJECT_FOLDER

Prints the lines and branches of ROOT/FOLDER that never ran, then "lines: ..." and "branches: ..."; fails when there are
any. A line or branch counts as reached when some instance of a template, or some set of kernels, reached it. Branches
that an exception takes out of a call are left out. A line that says why in a comment "// never: reason" is left out, with
its branches; "// never all ways: reason" leaves out its branches only. The comment may also stand by itself in the line
before. Where everything ran it is an error.
"""
import collections
import json
import re
import subprocess
import sys
import tempfile
from pathlib import Path

MARK = re.compile(r"// never( all ways)?: .{8,}")


def documents(object_folder):
    """What gcov says about each object file."""
    for counts in sorted(Path(object_folder).rglob("*.gcda")):
        with tempfile.TemporaryDirectory() as folder:
            out = subprocess.run(["gcov", "--json-format", "--stdout", "--branch-probabilities", str(counts.resolve())],
                                 cwd=folder, check=True, capture_output=True, text=True).stdout
        for line in filter(None, out.splitlines()):
            yield json.loads(line)


def main():
    root, folder, object_folder = sys.argv[1:]
    root = Path(root).resolve()
    top = root / folder
    lines = collections.defaultdict(int)  # (file, line): count
    branches = {}                         # (file, line, number of branches): counts
    for document in documents(object_folder):
        for file in document["files"]:
            path = Path(document["current_working_directory"], file["file"]).resolve()
            if top not in path.parents:
                continue
            name = str(path.relative_to(root))
            for line in file["lines"]:
                at = line["line_number"]
                lines[name, at] += line["count"]
                ways = [b["count"] for b in line["branches"] if not b["throw"]]
                if len(ways) > 1:
                    key = name, at, len(ways)
                    branches[key] = [a + b for a, b in zip(branches.get(key, [0] * len(ways)), ways)]
    if not lines:
        sys.exit(f"no counts of {folder} in {object_folder}")

    text = {name: (root / name).read_text().splitlines() for name in {name for name, _ in lines}}
    marks = {}  # (file, line): whether only the branches are left out
    for name, content in text.items():
        for at, source in enumerate(content, 1):
            if mark := MARK.search(source):
                alone = source.lstrip().startswith("//")
                marks[name, at + alone] = mark.group(1) is not None

    missing, stale = [], set(marks)
    done = left_out = 0
    for (name, at), count in sorted(lines.items()):
        if count == 0 and marks.get((name, at)) is False:
            left_out += 1
            stale.discard((name, at))
        elif count == 0:
            missing.append((name, at, "never runs"))
        else:
            done += 1
    line_figure = done, done + len(missing), left_out
    dead = {(name, at) for name, at, _ in missing}

    lost = done = left_out = 0
    for (name, at, _), ways in sorted(branches.items()):
        done += sum(count > 0 for count in ways)
        never = sum(count == 0 for count in ways)
        if never and (name, at) in marks:
            left_out += never
            stale.discard((name, at))
        elif never:
            lost += never
            if (name, at) not in dead:
                missing.append((name, at, f"{never} of {len(ways)} branches are never taken"))
    for name, at, what in sorted(missing):
        print(f"{name}:{at}: {what}: {text[name][at - 1].strip()}")
    for name, at in sorted(stale):
        print(f"{name}:{at}: says that something never runs, but everything does")

    for what, (reached, all_of_them, out) in (("lines", line_figure), ("branches", (done, done + lost, left_out))):
        # Rounded down: 100 % means all of them.
        print(f"{what}: {int(10000 * reached / all_of_them) / 100:.2f} % ({reached} of {all_of_them}; {out} impossible ones "
              "left out)")
    return 1 if missing or stale else 0


if __name__ == "__main__":
    sys.exit(main())
