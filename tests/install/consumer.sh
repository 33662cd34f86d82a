#!/usr/bin/env bash
# usage: consumer.sh CMAKE SOURCE BUILD COMPILER TOOLCHAIN EMULATOR
# Installs, moves the tree, and builds and runs an outside program by find_package, by pkg-config (where
# there is one) and, against the source tree, by add_subdirectory.
set -euo pipefail
cmake=$1 source=$2 build=$3 compiler=$4 toolchain=$5
IFS=';' read -ra emulator <<<"$6"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
consumer=$source/tests/install/consumer

run() {
  local library_path=$1 program=$2
  [ "$(LD_LIBRARY_PATH=$library_path "${emulator[@]}" "$program")" = "sum 6, code 40000" ] ||
    { echo "$program: wrong output" >&2; exit 1; }
}

# Output only when something fails.
quietly() { "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }; }

configure() { quietly "$cmake" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" ${toolchain:+"-DCMAKE_TOOLCHAIN_FILE=$toolchain"} "$@"; }

quietly "$cmake" --install "$build" --prefix "$work/first"
mv "$work/first" "$work/moved"
lib=$(dirname "$(find "$work/moved" -name libQuorvel.so.1.0.0)")
if grep -rq "$work/first\|$source" "$work/moved"/include "$lib/cmake" "$lib/pkgconfig"; then
  echo "the installed files name the place they were built or installed in" >&2
  exit 1
fi

echo "find_package"
configure -S "$consumer" -B "$work/package" -DHOW=package -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH \
  -DQuorvel_DIR="$lib/cmake/Quorvel"
quietly "$cmake" --build "$work/package"
run "$lib" "$work/package/consumer"

if command -v pkg-config >/dev/null; then
  echo "pkg-config"
  export PKG_CONFIG_PATH=$lib/pkgconfig PKG_CONFIG_ALLOW_SYSTEM_LIBS=1
  [ "$(pkg-config --modversion quorvel)" = 1.0.0 ]
  # shellcheck disable=SC2046  # the flags are words
  "$compiler" -std=c++17 "$consumer/main.cpp" -o "$work/by_pkg_config" $(pkg-config --cflags --libs quorvel)
  run "$lib" "$work/by_pkg_config"
fi

echo "add_subdirectory (configured; the library is built already)"
configure -S "$consumer" -B "$work/subdirectory" -DHOW=subdirectory -DQUORVEL_SOURCE="$source"
grep -q 'QUORVEL_BUILD_TESTS:BOOL=OFF' "$work/subdirectory/CMakeCache.txt"
