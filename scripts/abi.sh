#!/usr/bin/env bash
# usage: abi.sh [--update] [--no-install]
#
# Builds the library with debugging information for this machine and for 32-bit ARM, and compares its interface (exported
# functions and objects, layouts of the public classes, virtual slots) with the ones committed in abi/. --update writes
# the committed ones and the list of symbols anew; docs/ABI.md says when that is right.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

update=no
no_install=()
for argument in "$@"; do
  case $argument in
    --update) update=yes ;;
    --no-install) no_install=(--no-install) ;;
    *) echo "usage: abi.sh [--update] [--no-install]" >&2; exit 2 ;;
  esac
done
scripts/setup.sh "${no_install[@]}" build arm abi

status=0
for machine in amd64 armhf; do
  say "interface on $machine"
  toolchain=()
  [ $machine = amd64 ] || toolchain=(-DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/armhf.cmake")
  quietly cmake -S . -B build/abi/$machine -G Ninja "${toolchain[@]}" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_CXX_FLAGS_RELEASE="-O0 -g" -DQUORVEL_BUILD_TESTS=OFF -DQUORVEL_BUILD_EXAMPLES=OFF
  build build/abi/$machine Quorvel
  now=build/abi/$machine.abixml
  committed=abi/$machine.abixml.xz
  # Only what the public headers declare, and nothing that depends on where it was built.
  abidw --headers-dir include/quorvel --exported-interfaces-only --drop-private-types --drop-undefined-syms \
    --no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed --type-id-style hash --out-file "$now" \
    build/abi/$machine/libQuorvel.so.1.0.0
  if [ $update = yes ]; then
    mkdir -p abi
    xz -9 -c "$now" >"$committed"
    echo "$committed is written"
    continue
  fi
  xz -dc "$committed" >"$now.committed"
  if abidiff --no-show-locs "$now.committed" "$now"; then
    echo "as committed: $(grep -c '<elf-symbol ' "$now") symbols, $(grep -c '<class-decl .*size-in-bits' "$now") class layouts"
  else
    echo "FAILED: the interface on $machine is not the committed one ($committed); see docs/ABI.md"
    status=1
  fi
done

# Symbols that the list has keep the version that brought them; new ones get the present version.
if [ $update = yes ]; then
  list=debian/libquorvel1.symbols
  version=$(sed -n 's/^  VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt)
  sed -nE 's/^ (\(c\+\+\)".*"|QUORVEL_1@.*) ([0-9.]+)$/\1\t\2/p' $list >build/abi/known
  {
    grep -v '^ ' $list
    nm -D -C --defined-only build/abi/amd64/libQuorvel.so.1.0.0 | sed -E 's/^[0-9a-f]+ . //; s/@@/@/' | LC_ALL=C sort -u |
      sed -E 's/^(QUORVEL_[0-9]+)$/\1@\1/; t; s/.*/(c++)"&"/' |
      awk -F '\t' -v now="$version" 'NR == FNR { since[$1] = $2; next } { print " " $0 " " ($0 in since ? since[$0] : now) }' \
        build/abi/known -
  } >build/abi/symbols
  diff $list build/abi/symbols || true
  cp build/abi/symbols $list
fi
exit $status
