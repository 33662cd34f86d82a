#!/usr/bin/env bash
# usage: demo.sh [--no-install] [OBS NAV] [other arguments of the example gnss_position]
#
# From a fresh clone to a running example: installs what is missing, builds, runs. Without files the
# example simulates a drive; OBS and NAV are RINEX 2 or 3 files with GPS observations and GPS navigation
# messages. The results are written to gnss_position_results in the present folder; --help tells more.
set -euo pipefail
here=$PWD
. "$(dirname "$(readlink -f "$0")")/common.sh"

example=gnss_position

no_install=()
if [ "${1-}" = --no-install ]; then
  no_install=(--no-install)
  shift
fi

scripts/setup.sh "${no_install[@]}" build
say "building the library and the example $example"
quietly cmake --preset release -B build/demo -DQUORVEL_BUILD_TESTS=OFF
build build/demo "$example"
program=$PWD/build/demo/examples/$example/$example
say "running $program $*"
cd "$here"
exec "$program" "$@"
