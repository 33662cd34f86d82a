#!/usr/bin/env bash
# usage: called.sh NM FROM_WITHIN LIBRARY PROGRAM...
# Every function that the library exports is called by one of the test programs, or stands in the list FROM_WITHIN of
# those that only the library itself calls; what stands there is exported, and no test calls it.
set -euo pipefail
nm=$1 list=$2 library=$3
shift 3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# "address name" of the exported functions, names without their version node. Names of one address are one function: the
# two forms of a constructor, say.
exported() {
  "$nm" -D --defined-only "$@" "$library" | awk '$2 ~ /^[TW]$/ {sub(/@.*/, ""); print $1 " " substr($0, index($0, $3))}'
}
exported >"$work/names"
exported -C >"$work/signatures"
for program in "$@"; do "$nm" -D "$program"; done | awk '{sub(/@.*/, "", $NF); print $NF}' | sort -u >"$work/used"

# The signatures of the functions called, and of those not called.
awk -v called="$work/called" -v uncalled="$work/uncalled" '
  BEGIN {printf "" >called; printf "" >uncalled}
  FILENAME ~ /used$/ {used[$1]; next}
  FILENAME ~ /names$/ {if ($2 in used) reached[$1]; next}
  {to = $1 in reached ? called : uncalled; sub(/^[^ ]* /, ""); print >to}' "$work/used" "$work/names" "$work/signatures"
sort -u -o "$work/called" "$work/called"
# Of the three forms of a destructor one is enough.
sort -u "$work/uncalled" | comm -23 - "$work/called" >"$work/left"
mv "$work/left" "$work/uncalled"
sed -e 's/ *#.*//' -e '/^$/d' "$list" | sort -u >"$work/within"

status=0
say() { # TEXT: fails, with the lines of standard input, when there are any
  local lines
  lines=$(cat)
  [ -z "$lines" ] || { printf '%s:\n%s\n' "$1" "$lines"; status=1; }
}
say "exported, and no test calls it" < <(comm -23 "$work/uncalled" "$work/within")
say "listed as called from within only, but a test calls it" < <(comm -12 "$work/within" "$work/called")
say "listed as called from within only, but not exported" < <(comm -23 "$work/within" <(sort -u "$work/called" "$work/uncalled"))
echo "$(wc -l <"$work/called") signatures called by $# test programs, $(wc -l <"$work/within") from within only"
[ -s "$work/called" ] || status=1
exit $status
