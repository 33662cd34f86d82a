#!/usr/bin/env bash
# usage: overloads.sh NM LIBRARY HEADER_FOLDER NAME...
# Fails unless the library exports as many functions of each name as the headers declare.
set -euo pipefail
nm=$1 library=$2 headers=$3
shift 3
symbols=$("$nm" -D -C --defined-only "$library")
status=0
for name in "$@"; do
  declared=$(cat "$headers"/quorvel/*.h | grep -cE "^(\[\[nodiscard\]\] )?QUORVEL_API [A-Za-z]+&? ${name//\*/\\*}\(" || true)
  exported=$(grep -cE " T ${name//\*/\\*}\(" <<<"$symbols" || true)
  if [ "$declared" -eq 0 ] || [ "$declared" -ne "$exported" ]; then
    echo "$name: $declared declared, $exported exported"
    status=1
  fi
done
exit $status
