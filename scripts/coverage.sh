#!/usr/bin/env bash
# usage: coverage.sh [--no-install]
#
# Which lines and branches of src/ the test programs reach: the programs of the release build (scripts/test.sh --quick
# makes them) run with an instrumented library in place of their own, two of them once per set of kernels. Their
# results must be those of the release build. Names what was not reached, and fails when there is any that the sources do
# not declare impossible.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

no_install=()
for argument in "$@"; do
  case $argument in
    --no-install) no_install=(--no-install) ;;
    *) sed -n 's/^# \(usage: .*\)/\1/p' "$0" >&2; exit 2 ;;
  esac
done
scripts/setup.sh "${no_install[@]}" build test coverage

folder=$PWD/build/coverage
say "coverage: building"
quietly cmake --preset coverage -DQUORVEL_BUILD_TESTS=ON -DQUORVEL_BUILD_EXAMPLES=OFF
build "$folder" Quorvel
build "$folder" test_internal # takes the library in whole
find "$folder" -name '*.gcda' -delete

# run ROOM [KERNELS]
run() {
  local program lines
  program=$(find build/release/tests -name "test_$1" -type f -perm -u+x)
  if [ "$1" = internal ]; then
    program=$folder/tests/test_internal
  elif [[ $(LD_LIBRARY_PATH=$folder ldd "$program") != *"$folder/libQuorvel"* ]]; then
    echo "FAILED: test_$1 does not take the instrumented library"
    return 1
  fi
  if ! lines=$(env LD_LIBRARY_PATH="$folder" ${2:+QUORVEL_KERNELS="$2"} "$program" --gtest_brief=1 2>&1); then
    if [[ $lines == *'no such kernels on this processor'* ]]; then echo "$1, $2 kernels: not on this processor"; return 0; fi
    echo "$lines"
    echo "FAILED: $1${2:+, $2 kernels}"
    return 1
  fi
  if ! grep -qxF "$(grep '^digest ' <<<"$lines")" build/release/digests; then
    echo "FAILED: $1${2:+, $2 kernels}: other results than without instrumentation"
    return 1
  fi
}

say "coverage: running the test programs"
for program in $(find build/release/tests -name 'test_*' -type f -perm -u+x | sort); do run "${program##*/test_}"; done
for kernels in portable sse2 avx2 avx512; do
  for room in laws unit; do run $room $kernels; done
done

LD_LIBRARY_PATH=$folder build/release/examples/readme >/dev/null # a program that leaves the choice of kernels to the library

say "coverage of src/"
python3 tools/coverage/report.py . src "$folder"
