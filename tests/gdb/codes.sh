#!/usr/bin/env bash
# usage: codes.sh GDB PRINTERS PAGE
# The command `quorvel code` explains every code that PAGE (docs/CODES.md) lists: fixed ones, and every operation with the
# offset of unfitting sizes.
set -euo pipefail
gdb=$1 printers=$2 page=$3
expected=$(awk -F ' \\| ' '
  /^## / { section = $0 }
  !/^\| [0-9]/ { next }
  { number = substr($1, 3); meaning = $2; sub(/ \|$/, "", meaning) }
  section ~ /^## Offsets/ { offset[number] = meaning }
  section ~ /^## Operation/ { if (number in operation) meaning = operation[number] ", or " meaning; operation[number] = meaning }
  section ~ /^## Fixed/ { fixed[number] = meaning }
  END {
    for (k in operation) if (!(40000 + k in fixed)) print 40000 + k ": " operation[k] ": " offset[40000]
    for (k in fixed) print k ": " fixed[k]
  }' "$page" | sort -n)
[ "$(wc -l <<<"$expected")" -gt 60 ] || { echo "$page: too few codes found in it"; exit 1; }
commands=$(mktemp)
trap 'rm -f "$commands"' EXIT
sed -E 's/^([0-9]+):.*/quorvel code \1/' <<<"$expected" >"$commands"
said=$("$gdb" -nx -batch -x "$printers" -x "$commands" 2>&1)
diff <(echo "$expected") <(echo "$said") || { echo "< $page, > quorvel code"; exit 1; }
echo "$(wc -l <<<"$expected") codes explained"
