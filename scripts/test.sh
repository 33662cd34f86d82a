#!/usr/bin/env bash
# usage: test.sh [--quick] [--no-install]
#
# Builds and runs the whole suite: GCC, sanitizers and Clang on this machine, then the cross build for
# 32-bit ARM under QEMU. The results of all builds must agree to the last bit (their digests are
# compared). --quick: GCC on this machine only. --no-install: name missing tools instead of
# installing them.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

quick=no
no_install=()
for argument in "$@"; do
  case $argument in
    --quick) quick=yes ;;
    --no-install) no_install=(--no-install) ;;
    *) echo "usage: test.sh [--quick] [--no-install]" >&2; exit 2 ;;
  esac
done

if [ $quick = yes ]; then
  presets=(release)
  scripts/setup.sh "${no_install[@]}" build test
else
  presets=(release sanitize clang armhf)
  scripts/setup.sh "${no_install[@]}" build test clang arm reference
fi

log_of() { echo "build/$1/Testing/Temporary/LastTest.log"; }
digests_of() { grep '^digest ' "$(log_of "$1")" | sort; }

for preset in "${presets[@]}"; do
  say "$preset: building"
  quietly cmake --preset "$preset" -DQUORVEL_WERROR=ON -DQUORVEL_BUILD_TESTS=ON
  build "build/$preset"
  say "$preset: testing"
  ctest --preset "$preset" -j "$(nproc)" | tee "build/$preset/ctest.out"
done

say "digests of all results (${presets[0]})"
digests_of "${presets[0]}"
for preset in "${presets[@]:1}"; do
  if ! difference=$(diff <(digests_of "${presets[0]}") <(digests_of "$preset")); then
    echo "FAILED: results of $preset differ from those of ${presets[0]}:"
    echo "$difference"
    echo "QUORVEL_DIGEST_DETAIL=1 in the environment of a test program prints one digest per test."
    exit 1
  fi
  echo "$preset: the same"
done

for preset in "${presets[@]}"; do
  say "$preset"
  sed -n '/tests passed/,$p' "build/$preset/ctest.out"
done
