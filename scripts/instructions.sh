#!/usr/bin/env bash
# usage: instructions.sh [--record] [--no-install]
#
# Counts the instructions of a fixed list of calls (tests/instructions/calls.cpp) in the release build and compares them
# with the stored counts, as the test "instructions" does. --record stores them: when a change that costs more is meant,
# or one that saves is to be kept.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

record=()
no_install=()
for argument in "$@"; do
  case $argument in
    --record) record=(--record) ;;
    --no-install) no_install=(--no-install) ;;
    *) echo "usage: instructions.sh [--record] [--no-install]" >&2; exit 2 ;;
  esac
done

scripts/setup.sh "${no_install[@]}" build test
quietly cmake --preset release -DQUORVEL_BUILD_TESTS=ON
build build/release instructions
bash tests/instructions/count.sh build/release/tests/instructions/instructions tests/instructions/counts.txt "${record[@]}"
