#!/usr/bin/env bash
# usage: valgrind.sh [--no-install] [--kernels SET] [ROOM...]
#
# Runs the test programs of the release build (scripts/test.sh --quick makes it) under Valgrind: all of them, or those
# named. A room fails by an error that Valgrind finds, by a leak, by a test, or by results other than the machine's own.
# Prints what each took. Valgrind has no AVX-512, so the kernels are avx2 unless told otherwise.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

no_install=()
export kernels=avx2
rooms=()
while [ $# -gt 0 ]; do
  case $1 in
    --no-install) no_install=(--no-install) ;;
    --kernels) kernels=$2; shift ;;
    -*) sed -n 's/^# \(usage: .*\)/\1/p' "$0" >&2; exit 2 ;;
    *) rooms+=("$1") ;;
  esac
  shift
done
scripts/setup.sh "${no_install[@]}" memory

export folder=build/release
export logs=$folder/valgrind
costs=$folder/Testing/Temporary/CTestCostData.txt # "ROOM RUNS SECONDS": the long ones begin
if [ ${#rooms[@]} -eq 0 ] && [ -d "$folder/tests" ]; then
  mapfile -t rooms < <(find "$folder/tests" -name 'test_*' -type f -perm -u+x -printf '%f\n' | sed 's/^test_//' |
    while read -r room; do echo "$(awk -v r="$room" '$1 == r {print $3}' "$costs" 2>/dev/null) $room"; done |
    sort -rn | awk '{print $NF}')
fi
[ ${#rooms[@]} -gt 0 ] || { echo "no test programs in $folder: run scripts/test.sh --quick first" >&2; exit 1; }
rm -rf "$logs"
mkdir -p "$logs"

# Tests that read and write where nobody may, to see that this ends a program.
export on_purpose='*EndsAProgramThatGoesOneByteTooFar*'

# check ROOM: prints its line of the table. Each process has a log of its own: those of tests that end a process on
# purpose leave blocks alive there, but must be free of errors all the same.
check() {
  local room=$1 program verdict=silent before=${EPOCHREALTIME/./}
  local errors='Invalid|[Uu]ninitialised|Mismatched|overlap|Argument|Illegal|Jump|points to un'
  program=$(find "$folder/tests" -name "test_$room" -type f -perm -u+x)
  # The test programs count and fail allocations in an operator new of their own, which Valgrind must leave in its place.
  QUORVEL_KERNELS=$kernels QUORVEL_MISUSE_CALLS=${QUORVEL_MISUSE_CALLS-100000} \
    valgrind -q --error-exitcode=9 --leak-check=full --soname-synonyms=somalloc=nouserintercepts --log-file="$logs/$room.%p" \
    "$program" --gtest_brief=1 --gtest_filter="-$on_purpose" >"$logs/$room.out" 2>&1 &
  local main=$!
  wait $main || verdict="FAILED (exit code $?)"
  if [ ! -e "$logs/$room.$main" ] || [ -s "$logs/$room.$main" ] || grep -qE "$errors" "$logs/$room".[0-9]*; then
    [[ $verdict == FAILED* ]] || verdict="FAILED (see $logs/$room.*)"
  fi
  local line
  line=$(grep '^digest ' "$logs/$room.out") || line="no digest"
  if [ "$verdict" = silent ] && ! grep -qxF "$line" "$folder/digests"; then
    verdict="FAILED (other results: $line)"
  fi
  printf '%-14s %6.1f s  %s\n' "$room" "$(((${EPOCHREALTIME/./} - before) / 100000))e-1" "$verdict"
}
export -f check

say "Valgrind $(valgrind --version | sed 's/valgrind-//'), kernels $kernels"
printf '%s\n' "${rooms[@]}" | xargs -P "$(nproc)" -I{} bash -c 'check {}' | tee "$logs/table"
if grep -q FAILED "$logs/table" || [ "$(wc -l <"$logs/table")" -ne ${#rooms[@]} ]; then
  echo "FAILED: Valgrind's findings are in $logs"
  exit 1
fi
echo "${#rooms[@]} rooms, no finding"
