#!/usr/bin/env python3
"""usage: list_calls.py NM LIBRARY
       list_calls.py --check NM LIBRARY PROGRAM

Writes the files calls_*.inc beside this script: one row per exported function of the library, from its symbols, with the
types of its parameters. Symbols in apart.txt (with the reason behind them) get no row: their arguments need thought, or
nobody can call them.
--check fails unless the calls that PROGRAM lists, and the file's uncallable ones, are the exported symbols.
"""
import os
import re
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent

CLASSES = ("RegularMatrix SymmetricMatrix UpperTriangularMatrix LowerTriangularMatrix DiagonalMatrix RegularSparseMatrix "
           "SymmetricSparseMatrix SparseMatrix TriMatrix SquareMatrix SingleArrayMatrix Matrix").split()


# Their arguments have preconditions that no type tells: they are called in calls_by_hand.cpp.
BY_HAND = re.compile(r"char const\*|SparseElement\*|proxy|\(\*\)|int\*|int const\*|CopyMat<")
FILES = 4


def symbols(nm, library):
    lines = subprocess.run([nm, "-D", "-C", "--defined-only", library], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    kinds_and_names = [line.split(None, 2)[1:] for line in lines]
    kinds_and_names = [(kind, name.split("@")[0]) for kind, name in kinds_and_names]  # without the version node
    found = {name for kind, name in kinds_and_names if kind == "T"}
    found |= {name for kind, name in kinds_and_names if kind == "W" and name.startswith("void SparseMatrix::CopyMat<")}
    return {s for s in found if "(" in s}


def apart():
    """symbol -> reason; a reason that begins with "never:" names what no program can call."""
    result = {}
    for line in open(HERE / "apart.txt"):
        if line.strip() and not line.startswith("#"):
            symbol, reason = line.rstrip("\n").split("  -- ")
            result[symbol.strip()] = reason
    return result


def row(symbol):
    owner, name, parameters, const = re.fullmatch(
        r"(?:(%s|std)::)?(operator\(\)|operator[^(]+|\w+)\((.*)\)( const)?" % "|".join(CLASSES), symbol).groups()
    parameters = parameters.replace("_IO_FILE*", "std::FILE*")
    tail, none = (f", {parameters}", "") if parameters else ("", "0")
    if owner in (None, "std"):
        return f'CALL{none}("{symbol}", {"std::" if owner else ""}{name}{tail})'
    if name == owner:
        return f'MAKE{none}("{symbol}", {owner}{tail})'
    # The object is an argument like the others.
    return f'MEMBER("{symbol}", {name}, {owner}{" const" if const else ""}&{tail})'


def main():
    if sys.argv[1] == "--check":
        nm, library, program = sys.argv[2:]
        exported = symbols(nm, library)
        output = subprocess.run([program, "--gtest_filter=Calls.List"], check=True, capture_output=True, text=True,
                                env=dict(os.environ, QUORVEL_LIST_CALLS="1")).stdout
        called = {line[5:] for line in output.splitlines() if line.startswith("call ")}
        never = {s for s, reason in apart().items() if reason.startswith("never:")}
        for symbol in sorted(exported - called - never):
            print("exported, but not called:", symbol)
        for symbol in sorted((called | never) - exported):
            print("not exported:", symbol)
        for symbol in sorted(called & never):
            print("called, and listed as never called:", symbol)
        print(f"{len(exported)} exported, {len(called)} called, {len(never)} that no program can call")
        return 0 if called | never == exported and not called & never and len(called) > 900 else 1
    nm, library = sys.argv[1:]
    without = apart()
    rows = [row(symbol) for symbol in sorted(symbols(nm, library)) if symbol not in without and not BY_HAND.search(symbol)]
    for part in range(FILES):
        with open(HERE / f"calls_{part}.inc", "w") as file:
            file.write("// Exported functions and their parameters, written by list_calls.py. Data only.\n")
            file.writelines(line + "\n" for line in rows[part::FILES])
    return 0


if __name__ == "__main__":
    sys.exit(main())
