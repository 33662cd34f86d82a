#!/usr/bin/env bash
# usage: refuse.sh <source> <compiler> <flags>...
# The source compiles without CASE, and fails to with each CASE == k that it mentions.
set -u
source=$1
shift
compile=("$@" -fsyntax-only -pedantic-errors -Werror=unused-result)
if ! "${compile[@]}" "$source"; then
  echo "$source does not compile as it is" >&2
  exit 1
fi
cases=$(grep -oE 'CASE == [0-9]+' "$source" | grep -oE '[0-9]+' | sort -n)
if [ -z "$cases" ] || [ -n "$(uniq -d <<<"$cases")" ]; then
  echo "$source: no cases, or one number twice" >&2
  exit 1
fi
status=0
for k in $cases; do
  if "${compile[@]}" "-DCASE=$k" "$source" 2>/dev/null; then
    echo "$source compiles with CASE $k:" >&2
    grep -A2 -E "CASE == $k\$" "$source" >&2
    status=1
  fi
done
exit $status
