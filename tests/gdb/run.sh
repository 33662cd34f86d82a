#!/usr/bin/env bash
# The printers in a real debugger session: run.sh GDB PROGRAM FOLDER_OF_THE_LIBRARY EXPECTED SCRIPT [EMULATOR...]
# Every line of EXPECTED must be printed, in that order (gdb's own "$1 = " and addresses of references removed). With an
# emulator (its last argument: the folder with the target's run time) the program runs there, and gdb talks to it.
set -euo pipefail
gdb=$1 program=$2 library=$3 expected=$4 script=$5
shift 5
start=(-ex "break Stop")
if [ $# -eq 0 ]; then
  start+=(-ex run)
else
  work=$(mktemp -d)
  "$1" -g "$work/socket" "${@:2}" "$program" &
  emulator=$!
  trap 'kill $emulator 2>/dev/null || true; rm -rf "$work"' EXIT
  for ((wait = 0; wait < 100; ++wait)); do
    [ ! -S "$work/socket" ] || break
    sleep 0.1
  done
  start=(-ex "set sysroot" -ex "set solib-search-path $library:${*: -1}/lib" -ex "target remote $work/socket" "${start[@]}"
    -ex continue)
fi
printed=$("$gdb" -nx -batch -iex "add-auto-load-safe-path $library" -iex "set debuginfod enabled off" \
  "${start[@]}" -x "$script" "$program" 2>&1 | sed -E 's/^\$[0-9]+ = //; s/^\([^)]*&\) @0x[0-9a-f]+: //; s/ *$//' || true)
at=1
while IFS= read -r line; do
  found=$(printf '%s\n' "$printed" | tail -n "+$at" | grep -nxF -- "$line" | head -n 1 | cut -d: -f1 || true)
  if [[ -z $found ]]; then
    printf 'missing, or out of order: %s\n--- the session printed\n%s\n' "$line" "$printed"
    exit 1
  fi
  at=$((at + found))
done <"$expected"
echo "all $(wc -l <"$expected") lines found"
