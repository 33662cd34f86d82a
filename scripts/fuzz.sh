#!/usr/bin/env bash
# usage: fuzz.sh [SECONDS [TARGET...]]
#
# Builds the fuzz targets (operations, text, simplex, rinex) with Clang and an instrumented library, and runs each for
# SECONDS of processor time (default 20) from its seeds in tests/fuzz, as many at once as there are processors. What they
# learn is kept in build/fuzz/corpus. Fails when there is a finding, which is then in build/fuzz/findings.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

seconds=${1:-20}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(operations text simplex rinex)

# Milliseconds of processor time of all programs that this shell has run to their end.
spent_by_children() { awk -v ticks="$(getconf CLK_TCK)" '{print int(($16 + $17) * 1000 / ticks)}' "/proc/$$/stat"; }

quietly cmake -S . -B build/fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Fuzz \
  -DCMAKE_CXX_FLAGS_FUZZ="-O1 -g1" -DQUORVEL_SANITIZE=address,undefined,fuzzer-no-link \
  -DQUORVEL_BUILD_FUZZERS=ON -DQUORVEL_BUILD_TESTS=ON -DQUORVEL_BUILD_EXAMPLES=OFF
mkdir -p build/fuzz/findings

# fuzz TARGET: libFuzzer counts wall-clock time, so run on until that much processor time is used. Each round reads the
# corpus first, and so none is a short one.
fuzz() {
  local target=$1 seeds=tests/fuzz/corpus/$1 length=1500 inputs=0 used=0 before left
  local log=build/fuzz/fuzz_$target.log
  [ "$target" != rinex ] || seeds=tests/fuzz/seeds length=6000
  mkdir -p "build/fuzz/corpus/$target"
  : >"$log"
  while [ "$used" -lt $((seconds * 1000)) ]; do
    before=$(spent_by_children)
    left=$((seconds - used / 1000))
    [ "$used" -eq 0 ] || [ "$left" -ge 120 ] || left=120
    build/fuzz/tests/fuzz/fuzz_"$target" -max_total_time="$left" -max_len=$length -timeout=300 \
      -rss_limit_mb=4096 -print_final_stats=1 -artifact_prefix=build/fuzz/findings/"$target"- \
      build/fuzz/corpus/"$target" "$seeds" >>"$log" 2>&1 ||
      { tail -40 "$log"; echo "FAILED: fuzz_$target has a finding"; return 1; }
    used=$((used + $(spent_by_children) - before))
    inputs=$((inputs + $(tail -30 "$log" | awk '/stat::number_of_executed_units/ {n = $2} END {print n + 0}')))
  done
  echo "fuzz_$target: $inputs inputs in $((used / 1000)) s of processor time, no finding"
}

for target in "${targets[@]}"; do build build/fuzz "fuzz_$target"; done
export -f fuzz spent_by_children
export seconds
printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I{} bash -c 'fuzz {}'
