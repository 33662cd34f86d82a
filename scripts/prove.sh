#!/usr/bin/env bash
# usage: prove.sh [--short|--long] [--docs] [--no-install]
#
# Everything that shows the library to be right, in one table: what holds, the figure that was measured, how it was
# obtained, and the verdict (docs/RELIABILITY.md explains the rows). --short, the default, is for every change: under
# 25 minutes on two processors. --long is for releases: it adds coverage, Valgrind, fuzzing, mutation, the long runs
# and the packages. Fails when a row does; the table and the output of each step are left in build/prove. --docs also
# writes the table to docs/RELIABILITY.md.
#
# QUORVEL_FUZZ_SECONDS (of processor time for each fuzz target) and QUORVEL_MUTANTS: others than 600 in the long form.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

fuzz_seconds=${QUORVEL_FUZZ_SECONDS-600}
mutants=${QUORVEL_MUTANTS-600}
long=no
docs=no
no_install=()
for argument in "$@"; do
  case $argument in
    --short) long=no ;;
    --long) long=yes ;;
    --docs) docs=yes ;;
    --no-install) no_install=(--no-install) ;;
    *) sed -n 's/^# \(usage: .*\)/\1/p' "$0" >&2; exit 2 ;;
  esac
done

logs=build/prove
rm -rf "$logs"
mkdir -p "$logs"
table=$logs/table.md
printf '| what holds | figure | how | verdict |\n|---|---|---|---|\n' >"$table"

# row WHAT FIGURE HOW: pass, unless the last step failed or gave no figure.
row() {
  local verdict=$verdict
  [ -n "$2" ] || verdict=FAILED
  echo "| $1 | ${2:-none} | $3 | $verdict |" | tee -a "$table"
}

# step NAME COMMAND...: runs it with its output in $logs/NAME; $verdict tells how it went.
step() {
  local name=$1 before=$SECONDS
  shift
  say "$name: $*"
  verdict=pass
  "$@" >"$logs/$name" 2>&1 || { verdict=FAILED; tail -n 30 "$logs/$name"; }
  echo "$verdict after $((SECONDS - before)) s"
}

# first FILE EXPRESSION: the first line of the file that the sed substitution fits, substituted; nothing when there is none.
first() { [ ! -e "$1" ] || sed -nE "s/$2/p" "$1" | head -n 1; }

# --- The suite ----------------------------------------------------------------------------------------------------------

rm -f build/{release,sanitize,clang,armhf}/{ctest.out,digests}
step suite scripts/test.sh "${no_install[@]}"
suite=$verdict
for preset in release clang sanitize armhf; do
  case $preset in
    release) what="The suite passes with GCC" ;;
    clang) what="It passes with Clang" ;;
    sanitize) what="No finding of the address, leak and undefined-behaviour sanitizers" ;;
    armhf) what="It passes on 32-bit ARM, under QEMU" ;;
  esac
  row "$what" "$(first build/$preset/ctest.out '.*100% tests passed, 0 tests failed out of ([0-9]+).*/\1 test programs')" \
    "\`scripts/test.sh\`, preset $preset"
done

builds=$(grep -c ': the same$' "$logs/suite" || true)
row "One digest of all results: compilers, -O0 to -O3 and -Os, kernels, x86-64, ARM vfpv3-d16 and vfpv4" \
  "$(first "$logs/suite" 'digest of all rooms: (.*)/\1')${builds:+, $builds comparisons}" "\`scripts/test.sh\`"
row "Results with sines: the same bits from the same sines; the C library's are within 1 ulp" \
  "$(first build/armhf/digests 'digest sincos (.*)/\1')" "room \`sincos\`, host and ARM"

verdict=$suite
row "The interface is the committed one: symbols, layouts, virtual slots, on x86-64 and ARM" \
  "$(sed -n 's/^as committed: //p' "$logs/suite" | paste -sd ';')" "\`scripts/abi.sh\` (abidiff)"

step called ctest --preset release -R '^abi.every_function_is_called$' -V
row "Every exported function is called by a test" "$(first "$logs/called" '.* ([0-9]+ signatures called.*)/\1')" \
  "\`tests/abi/called.sh\`, host"
step called_arm ctest --preset armhf -R '^abi.every_function_is_called$' -V
row "The same on ARM" "$(first "$logs/called_arm" '.* ([0-9]+ signatures called.*)/\1')" "\`tests/abi/called.sh\`, armhf"

verdict=$suite
step misuse "build/release/tests/misuse/test_misuse" --gtest_brief=1
row "Random misuse neither crashes nor leaks nor throws an undocumented code" \
  "$(first "$logs/misuse" 'misuse: (.*)/\1')" "room \`misuse\`, also on ARM and with sanitizers"
row "Every exported function survives the failure of each of its allocations" \
  "$(first "$logs/misuse" 'exhaustion: (.*)/\1')" "room \`misuse\`"
step codes ctest --preset release -R '^misuse.(codes|complete)$' -V
row "Every code of the catalogue is thrown by a test, and no other" "$(first "$logs/codes" '^[0-9]+: ([0-9]+ operation codes.*)/\1')" \
  "\`tests/misuse/codes.py\`"
step writes build/release/tests/test_failure --gtest_filter='WriteFailure.*'
row "Every write of the text forms fails in turn; nothing crashes or leaks" \
  "$(first "$logs/writes" '.*PASSED. *\] ([0-9]+ tests).*/\1')" "\`tests/failure/write_failure.cpp\`"

# --- For releases -------------------------------------------------------------------------------------------------------

if [ $long = yes ]; then
  step coverage scripts/coverage.sh "${no_install[@]}"
  row "Lines of \`src/\` that the suite reaches" "$(first "$logs/coverage" '^lines: (.*)/\1')" "\`scripts/coverage.sh\` (gcov)"
  row "Branches of \`src/\` that the suite reaches" "$(first "$logs/coverage" '^branches: (.*)/\1')" "\`scripts/coverage.sh\` (gcov)"
  step valgrind scripts/valgrind.sh "${no_install[@]}"
  row "Valgrind finds nothing in the suite" "$(first "$logs/valgrind" '^([0-9]+ rooms, no finding)/\1')" "\`scripts/valgrind.sh\`"
  step fuzz scripts/fuzz.sh "$fuzz_seconds"
  row "Fuzzing finds nothing: operation sequences, text output, the simplex routine, RINEX files" \
    "$(sed -n 's/^fuzz_\([a-z]*: [0-9]* inputs in [0-9]* s\).*/\1/p' "$logs/fuzz" | paste -sd ';')" "\`scripts/fuzz.sh $fuzz_seconds\`"
  step mutation python3 tools/mutation/mutate.py --build build/release --count "$mutants" --jobs "$(nproc)" --minimum 90
  row "Changes of one token in \`src/\` that the suite notices" "$(first "$logs/mutation" '^mutation score (.*)/\1')" \
    "\`tools/mutation/mutate.py\`"
  step long_runs env QUORVEL_LONG_STEPS=1000000 build/release/tests/test_endurance --gtest_brief=1
  row "Filters of a million steps stay symmetric, definite and in agreement with the covariance form" \
    "$(sed -nE 's/^([a-z ]+): ([0-9]+ steps), .*: (bound [^;]*); differences[^:]*: (.*)/\1: \2, \3, \4/p' "$logs/long_runs" |
      paste -sd ';')" "room \`endurance\`"
  step packages scripts/package.sh "${no_install[@]}"
  row "The Debian packages have no errors, and serve a program in an empty root, on x86-64 and ARM" \
    "$(grep -c ': builds and runs$' "$logs/packages") programs built and run" "\`scripts/package.sh\` (lintian)"
fi

say "the table (build/prove/table.md)"
cat "$table"
if [ $docs = yes ]; then
  version() { "$1" --version | grep -oE '[0-9]+\.[0-9.]+' | head -n 1; }
  {
    echo "Measured on $(LC_ALL=C date '+%-d %B %Y') by \`scripts/prove.sh --$([ $long = yes ] && echo long || echo short)\` at commit" \
      "$(git rev-parse --short HEAD): $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1), $(nproc) processors, GCC $(version g++)," \
      "Clang $(version clang++), QEMU $(version qemu-arm), Valgrind $(version valgrind)."
    echo
    cat "$table"
    echo
  } >"$logs/figures.md"
  sed -i -e '/^<!-- figures -->$/,/^<!-- end of figures -->$/{//!d}' -e "/^<!-- figures -->\$/r $logs/figures.md" docs/RELIABILITY.md
fi
! grep -q '| FAILED |$' "$table" || exit 1
