#!/usr/bin/env bash
# usage: consumer.sh CMAKE SOURCE BUILD COMPILER TOOLCHAIN EMULATOR [package pkg-config fetch subdirectory]
# Installs, moves the tree, and builds and runs an outside program in the named ways: by find_package and by pkg-config
# against what was installed, by FetchContent and add_subdirectory against the sources.
set -euo pipefail
cmake=$1 source=$2 build=$3 compiler=$4 toolchain=$5
IFS=';' read -ra emulator <<<"$6"
shift 6

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
consumer=$source/tests/install/consumer

run() {
  local library_path=$1 program=$2 printed
  printed=$(LD_LIBRARY_PATH=$library_path "${emulator[@]}" "$program") || { echo "$program does not run" >&2; exit 1; }
  [ "$printed" = "sum 6, code 40000" ] || { echo "$program printed '$printed'" >&2; exit 1; }
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
diff -r "$source/include/quorvel" "$work/moved/include/quorvel"
quietly "$cmake" "-DQUORVEL_CMAKE=$lib/cmake/Quorvel" -P "$consumer/versions.cmake"

for how in "$@"; do
  echo "$how"
  case $how in
    package)
      # A toolchain file that looks below its own root only is told the folder itself.
      configure -S "$consumer" -B "$work/package" -DHOW=package \
        ${toolchain:+"-DQuorvel_DIR=$lib/cmake/Quorvel"} "-DCMAKE_PREFIX_PATH=$work/moved"
      grep -q "^Quorvel_DIR:[A-Z]*=$lib/cmake/Quorvel$" "$work/package/CMakeCache.txt" ||
        { echo "find_package found another Quorvel than the installed one" >&2; exit 1; }
      quietly "$cmake" --build "$work/package"
      run "$lib" "$work/package/consumer"
      ;;
    pkg-config)
      export PKG_CONFIG_PATH=$lib/pkgconfig PKG_CONFIG_ALLOW_SYSTEM_LIBS=1
      [ "$(pkg-config --modversion quorvel)" = 1.0.0 ]
      # shellcheck disable=SC2046  # the flags are words
      "$compiler" -std=c++17 "$consumer/main.cpp" -o "$work/by_pkg_config" $(pkg-config --cflags --libs quorvel)
      run "$lib" "$work/by_pkg_config"
      ;;
    fetch | subdirectory) # built in a hurry: what counts here is that it builds
      configure -S "$consumer" -B "$work/$how" "-DHOW=$how" -DQUORVEL_SOURCE="$source" -DCMAKE_BUILD_TYPE=Debug \
        -DCMAKE_CXX_FLAGS_DEBUG=-O0
      grep -q 'QUORVEL_BUILD_TESTS:BOOL=OFF' "$work/$how/CMakeCache.txt"
      grep -q 'QUORVEL_INSTALL:BOOL=OFF' "$work/$how/CMakeCache.txt"
      quietly "$cmake" --build "$work/$how"
      run "$(dirname "$(find "$work/$how" -name libQuorvel.so.1.0.0)")" "$work/$how/consumer"
      ;;
    *) echo "unknown way: $how" >&2; exit 2 ;;
  esac
done
