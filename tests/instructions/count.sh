#!/usr/bin/env bash
# usage: count.sh PROGRAM STORED [--record]
#
# Counts the instructions of every call of the program under callgrind and compares them with the stored counts: more
# than 5 % above them is a failure, with the list of what changed. --record stores the counts instead.
set -euo pipefail
export LC_ALL=C
program=$1
stored=$2
record=${3-}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# The C library's copying functions are those for SSE2 too, whatever the processor.
GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX_Fast_Unaligned_Load,-AVX2,-AVX,-AVX512F,-AVX512VL,-AVX512BW,-ERMS,-FSRM \
  valgrind --quiet --tool=callgrind --collect-atstart=no --callgrind-out-file="$folder/out" "$program"

# One dump per call: its name stands in "desc: Trigger: Client Request: NAME", its count in "totals: COUNT".
counts=$folder/counts
for dump in $(find "$folder" -name 'out.*' | sort -t. -k2n); do
  awk '/^desc: Trigger: Client Request: / { sub(/^desc: Trigger: Client Request: /, ""); name = $0 }
       /^(totals|summary):/ { count = $2 }
       END { if (name != "") print count "\t" name }' "$dump"
done | sort -k2 >"$counts"
[ -s "$counts" ] || { echo "no counts: callgrind wrote none"; exit 1; }
if awk -F '\t' '!($1 > 0)' "$counts" | grep .; then echo "calls without instructions"; exit 1; fi

if [ "$record" = --record ]; then
  { echo "# Instructions per call (tests/instructions/calls.cpp); scripts/instructions.sh --record writes this file."
    cat "$counts"; } >"$stored"
  echo "recorded $(wc -l <"$counts") calls in $stored"
  exit 0
fi

awk -F '\t' '
  FNR == NR { if ($0 !~ /^#/) stored[$2] = $1; next }
  {
    seen[$2] = 1
    if (!($2 in stored)) { printf "%s: %d instructions, not recorded\n", $2, $1; bad = 1; next }
    change = 100 * ($1 / stored[$2] - 1)
    if (change > 5) { printf "WORSE  %-42s %8d -> %8d  %+.1f %%\n", $2, stored[$2], $1, change; bad = 1 }
    else if (change < -5) { printf "better %-42s %8d -> %8d  %+.1f %%\n", $2, stored[$2], $1, change }
  }
  END {
    for (name in stored) if (!(name in seen)) { print name ": recorded, but not counted any more"; bad = 1 }
    if (bad) print "When this is meant to be: scripts/instructions.sh --record"
    exit bad
  }' "$stored" "$counts"
echo "$(wc -l <"$counts") calls counted"
