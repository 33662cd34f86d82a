#!/usr/bin/env bash
# usage: octave.sh PROGRAM OCTAVE
#
# Runs the example without files and lets Octave open its m-file: one row of eleven numbers per solved epoch, the same
# errors as in the CSV.
set -euo pipefail
program=$1
octave=$2

directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT
"$program" --quiet --out "$directory" >/dev/null
solved=$(grep -c ',solved,' "$directory/results.csv")
up=$(awk -F, '$4 == "solved" { last = $35 } END { print last }' "$directory/results.csv")

cd "$directory"
"$octave" --quiet --no-gui --eval "
  run('results.m');
  assert(size(results), [$solved, 11]);
  assert(all(isfinite(results(:))));
  assert(all(diff(results(:, 1)) > 0));
  assert(results(end, 7), $up, 1e-4);
  disp('ok');" | grep -x ok
