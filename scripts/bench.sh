#!/usr/bin/env bash
# usage: bench.sh [--quick] [--runs N] [--only OPERATION] [--out DIR | --docs] [--no-install]
#
# Measures this library beside Eigen, OpenBLAS with LAPACK, Armadillo and CHOLMOD: installs them, builds the benchmark
# program for any processor and for this one, runs both (three times each, sparse matrices once; --quick: once, with
# few rounds; --runs: N times), and writes DIR/PERFORMANCE.md with its tables, DIR/performance/figures.csv, and one
# picture per operation beside it. DIR is build/bench/report unless given, and docs with --docs. --only OPERATION:
# operations with that text in their name. --no-install: name missing packages instead of installing them.
#
# QUORVEL_KERNELS in the environment (portable, sse2, avx2, avx512) chooses our kernels.
set -euo pipefail
here=$PWD
. "$(dirname "$(readlink -f "$0")")/common.sh"

runs=
effort=normal
only=
out=build/bench/report
no_install=()
while [ $# -gt 0 ]; do
  case $1 in
    --quick) effort=quick ;;
    --runs) runs=${2?--runs needs a number}; shift ;;
    --only) only=${2?--only needs the name of an operation}; shift ;;
    --out) out=$(cd "$here" && realpath -m "${2?--out needs a folder}"); shift ;;
    --docs) out=docs ;;
    --no-install) no_install=(--no-install) ;;
    *) echo "usage: bench.sh [--quick] [--runs N] [--only OPERATION] [--out DIR | --docs] [--no-install]" >&2; exit 2 ;;
  esac
  shift
done
[ -n "$runs" ] || { [ $effort = quick ] && runs=1 || runs=3; }

scripts/setup.sh "${no_install[@]}" build bench

say "building the benchmarks"
quietly cmake -S . -B build/bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DQUORVEL_BUILD_TESTS=OFF \
  -DQUORVEL_BUILD_EXAMPLES=OFF -DQUORVEL_BUILD_BENCHMARKS=ON
build build/bench

raw=build/bench/runs
rm -rf "$raw"
mkdir -p "$raw" "$out/performance"

# race FLAVOUR RUN: on a processor with AVX-512 OpenBLAS runs with its AVX2 kernels in the default flavour, and with
# those for AVX-512 in the native one; on others with what it selects.
race() {
  local core=()
  if grep -qw avx512vl /proc/cpuinfo; then
    if [ "$1" = native ]; then core=(OPENBLAS_CORETYPE=SkylakeX); else core=(OPENBLAS_CORETYPE=Haswell); fi
  fi
  local without=()
  if [ "$2" -gt 1 ]; then without=(--without growth); fi # long, and not a matter of a few percent
  env OPENBLAS_NUM_THREADS=1 "${core[@]}" "build/bench/benchmarks/bench_$1" --effort $effort --only "$only" \
    "${without[@]}" >"$raw/$1-$2.txt" 2>"$raw/$1-$2.log" || { cat "$raw/$1-$2.log" >&2; echo "FAILED: bench_$1" >&2; exit 1; }
}
rounds="runs: $runs"
[ $effort = normal ] || rounds+=", short ones (few rounds)"
echo "# measured: $(date +%F), compiled with $(c++ --version | head -n 1); $rounds" >"$raw/default-0.txt"
for run in $(seq $runs); do
  for flavour in default native; do
    say "run $run of $runs, $flavour"
    race $flavour "$run"
  done
done

say "report"
build/bench/benchmarks/bench_report benchmarks/targets.csv benchmarks/arithmetic.csv benchmarks/remarks.txt docs/PERFORMANCE.md.in "$out" \
  "$raw"/*.txt >build/bench/pictures.gnuplot
rm -f "$out"/performance/*.svg
gnuplot build/bench/pictures.gnuplot
for picture in "$out"/performance/*.svg; do # without the empty groups that gnuplot leaves
  awk '/^<g .*>$/ { held = $0; next }
       held != "" && /^<\/g>$/ { held = ""; next }
       held != "" { print held; held = "" }
       { print }' "$picture" >build/bench/picture.svg
  mv build/bench/picture.svg "$picture"
done
grep '^#' "$raw/default-1.txt" || true
echo "written: $out/PERFORMANCE.md, $out/performance/"
