#!/usr/bin/env bash
# usage: symbols.sh NM LIBRARY LIST
# Fails unless the library exports exactly the symbols of LIST (in Debian's form), each with the version node given there.
set -euo pipefail
export LC_ALL=C
nm=$1 library=$2 list=$3

exported=$("$nm" -D -C --defined-only "$library" | sed -E 's/^[0-9a-f]+ . //; s/@@/@/; s/^(QUORVEL_[0-9]+)$/\1@\1/' | sort -u)
listed=$(sed -nE 's/^ (\(c\+\+\))?"?([^"]*@QUORVEL_[0-9]+)"? [0-9.]+$/\2/p' "$list" | sort)
[ "$(wc -l <<<"$listed")" -eq "$(grep -c '^ ' "$list")" ] || { echo "$list: a line that is no symbol"; exit 1; }
[ -z "$(uniq -d <<<"$listed")" ] || { echo "$list: twice: $(uniq -d <<<"$listed")"; exit 1; }

if ! diff <(echo "$listed") <(echo "$exported"); then
  echo "< committed in $list, > exported. A new symbol gets a line with the version that brings it: docs/ABI.md."
  exit 1
fi
echo "$(wc -l <<<"$exported") symbols, as committed"
