#!/usr/bin/env bash
# usage: test.sh [--quick] [--no-install]
#
# Builds and runs the whole suite: GCC, sanitizers and Clang on this machine, then the cross build for
# 32-bit ARM under QEMU. The results of all builds, and of the library built at other levels of
# optimisation, must agree to the last bit (their digests are compared). --quick: GCC on this machine only.
# --no-install: name missing tools instead of installing them.
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
  scripts/setup.sh "${no_install[@]}" build test clang arm abi reference
fi

# Two runs in one tree would overwrite each other's programs and logs.
mkdir -p build
exec {lock}>build/test.lock
flock -n $lock || { echo "another test.sh is running in this tree" >&2; exit 1; }

# digests_of PRESET: the lines "digest ROOM HEX" that its test programs printed. Rooms that feed no results (some exist
# on the host only) have the digest 0 and are left out.
digests_of() { grep -v ' 0000000000000000$' "build/$1/digests"; }

# tests_digests PRESET ROOM: the lines "digest-of TEST HEX" of that room.
tests_digests() {
  QUORVEL_DIGEST_DETAIL=1 ctest --preset "$1" -V -R "^$2\$" | grep -o 'digest-of .*' | sort
}

for preset in "${presets[@]}"; do
  say "$preset: building"
  quietly cmake --preset "$preset" -DQUORVEL_WERROR=ON -DQUORVEL_BUILD_TESTS=ON
  build "build/$preset"
  say "$preset: testing"
  ctest --preset "$preset" -j "$(nproc)" | tee "build/$preset/ctest.out"
  grep '^digest ' "build/$preset/Testing/Temporary/LastTest.log" | sort >"build/$preset/digests"
done

say "digests of all results (${presets[0]})"
digests_of "${presets[0]}"
echo "digest of all rooms: $(digests_of "${presets[0]}" | sha256sum | cut -c1-16)"
reference=${presets[0]}
for preset in "${presets[@]:1}"; do
  rooms=$(comm -3 <(digests_of "$reference") <(digests_of "$preset") | awk '{print $2}' | sort -u)
  if [ -n "$rooms" ]; then
    echo "FAILED: results of $preset differ from those of $reference:"
    for room in $rooms; do
      echo "room $room (< $reference, > $preset)"
      diff <(tests_digests "$reference" "$room") <(tests_digests "$preset" "$room") || true
    done
    exit 1
  fi
  echo "$preset: the same"
done

# library_in FOLDER PRESET CMAKE_ARGUMENT...: builds the library otherwise, without tests.
library_in() {
  local folder=$1 preset=$2
  shift 2
  say "library in $folder: building"
  quietly cmake --preset "$preset" -B "$folder" -DQUORVEL_BUILD_TESTS=OFF -DQUORVEL_BUILD_EXAMPLES=OFF "$@"
  build "$folder" Quorvel
}

# same_results FOLDER PRESET: puts the library of that folder in the place of that preset's under the same test programs,
# and compares.
same_results() {
  local folder=$PWD/$1 preset=$2 room program line
  local run=(env) set= rooms=(laws unit accuracy sincos) running=()
  [ "$preset" != armhf ] || { run=(qemu-arm -L /usr/arm-linux-gnueabihf) set=-E; }
  say "library in $1: its results"
  run+=($set LD_LIBRARY_PATH="$folder")
  for room in "${rooms[@]}"; do
    program=$(find "build/$preset/tests" -name "test_$room" -type f)
    [[ $("${run[@]}" $set LD_TRACE_LOADED_OBJECTS=1 "$program") == *"$folder/libQuorvel"* ]] ||
      { echo "FAILED: test_$room does not take the library in $1"; exit 1; }
    "${run[@]}" "$program" --gtest_brief=1 >"$folder/$room.out" &
    running+=($!)
  done
  for room in "${rooms[@]}"; do
    wait "${running[0]}" || { cat "$folder/$room.out"; echo "FAILED: test_$room with the library in $1"; exit 1; }
    running=("${running[@]:1}")
    line=$(grep '^digest ' "$folder/$room.out")
    digests_of "$reference" | grep -qxF "$line" || { echo "FAILED: with the library in $1 results differ: $line"; exit 1; }
    echo "$line: the same"
  done
}

if [ $quick = no ]; then
  scripts/abi.sh "${no_install[@]}"
  same_results build/abi/amd64 release # which is built at -O0
  for level in O1 Os; do
    library_in "build/$level" release -DCMAKE_CXX_FLAGS_RELEASE="-$level"
    same_results "build/$level" release
  done
  library_in build/vfpv4 armhf -DCMAKE_CXX_FLAGS=-mfpu=vfpv4 # which has a fused multiply-add
  same_results build/vfpv4 armhf
fi

for preset in "${presets[@]}"; do
  say "$preset"
  sed -n '/tests passed/,$p' "build/$preset/ctest.out"
done
