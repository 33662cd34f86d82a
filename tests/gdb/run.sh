#!/usr/bin/env bash
# The printers in a real debugger session: run.sh GDB PROGRAM FOLDER_OF_THE_LIBRARY EXPECTED SCRIPT
# Every line of EXPECTED must be printed, in that order (gdb's own "$1 = " marks removed).
set -euo pipefail
gdb=$1 program=$2 library=$3 expected=$4 script=$5
printed=$("$gdb" -nx -batch -iex "add-auto-load-safe-path $library" -x "$script" "$program" 2>&1 |
  sed -E 's/^\$[0-9]+ = //; s/ *$//')
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
