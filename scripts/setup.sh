#!/usr/bin/env bash
# usage: setup.sh [--no-install] [build] [test] [clang] [arm] [abi] [package] [reference] [manual] [bench] [memory] [coverage]
#
# Sees to it that the tools of the named groups are there. What is missing is installed with apt,
# without questions; with --no-install it is only named, and the script fails.
set -euo pipefail

# group, Debian package, what proves its presence (a command or a file), what it is for
tools=(
  "build|cmake|cmake|configures the build"
  "build|ninja-build|ninja|runs the build"
  "build|g++|g++|compiles the library for this machine"
  "test|googletest|/usr/src/googletest/CMakeLists.txt|the test framework, built from source for every target"
  "test|gdb|gdb|checks the debugger's printers"
  "test|doxygen|doxygen|checks that everything is documented"
  "test|pkg-config|pkg-config|finds the installed library, in a test"
  "test|valgrind|valgrind|counts the instructions of calls"
  "test|python3|python3|compares lists of functions and codes, in tests"
  "clang|clang|clang++|the second compiler"
  "arm|g++-arm-linux-gnueabihf|arm-linux-gnueabihf-g++|compiles the library for 32-bit ARM"
  "arm|qemu-user|qemu-arm|runs the ARM programs on this machine"
  "arm|gdb-multiarch|gdb-multiarch|checks the debugger's printers on ARM"
  "package|dpkg-dev|dpkg-buildpackage|builds the Debian packages"
  "package|debhelper|dh|builds the Debian packages"
  "package|fakeroot|fakeroot|installs them into a folder"
  "package|lintian|lintian|looks at them"
  "abi|xz-utils|xz|unpacks the committed interface"
  "abi|abigail-tools|abidiff|compares the library's interface with the one committed"
  "reference|octave|octave-cli|reads our text output back, in a test"
  "reference|liblapack-dev|/usr/share/doc/liblapack-dev|factorises and solves beside us, in a test"
  "reference|libeigen3-dev|/usr/include/eigen3/Eigen/Core|looks into our arrays, in the examples of the manual"
  "manual|doxygen|doxygen|writes the manual"
  "manual|libjs-mathjax|/usr/share/javascript/mathjax/MathJax.js|sets the formulas of the manual"
  "bench|libeigen3-dev|/usr/include/eigen3/Eigen/Core|a peer in the benchmarks"
  "bench|libopenblas-serial-dev|/usr/share/doc/libopenblas-serial-dev|a peer in the benchmarks, with LAPACK, without threads"
  "bench|libarmadillo-dev|/usr/include/armadillo|a peer in the benchmarks"
  "bench|libsuitesparse-dev|/usr/include/suitesparse/cholmod.h|a peer in the benchmarks of sparse matrices"
  "bench|gnuplot-nox|gnuplot|draws the benchmarks' pictures"
  "memory|valgrind|valgrind|watches the memory of the test programs"
  "coverage|python3|python3|tells which lines and branches the tests reach"
)

install=yes
groups=()
for argument in "$@"; do
  case $argument in
    --no-install) install=no ;;
    build | test | clang | arm | abi | package | reference | manual | bench | memory | coverage) groups+=("$argument") ;;
    *) echo "setup.sh: unknown argument '$argument'" >&2; exit 2 ;;
  esac
done
[ ${#groups[@]} -gt 0 ] || groups=(build test clang arm abi package reference)

present() {
  case $1 in
    /*) [ -e "$1" ] ;;
    *) command -v "$1" >/dev/null ;;
  esac
}

missing=()
for tool in "${tools[@]}"; do
  IFS='|' read -r group package probe purpose <<<"$tool"
  [[ " ${groups[*]} " == *" $group "* ]] || continue
  present "$probe" && continue
  echo "missing: $package ($purpose)"
  [[ " ${missing[*]-} " == *" $package "* ]] || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

if [ "$install" = no ]; then
  echo "Not installing anything, as asked. Needed: apt-get install ${missing[*]}" >&2
  exit 1
fi
if ! command -v apt-get >/dev/null; then
  echo "No apt-get on this system. Please install by hand: ${missing[*]}" >&2
  exit 1
fi
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null; then
    echo "Installing needs root or sudo. Please install by hand: ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi

echo "installing with apt: ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q "$@" </dev/null >"$log" 2>&1 ||
    { cat "$log" >&2; echo "apt-get $1 failed" >&2; exit 1; }
}
apt update
apt install -y --no-install-recommends "${missing[@]}"
