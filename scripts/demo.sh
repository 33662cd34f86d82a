#!/usr/bin/env bash
# usage: demo.sh [--no-install] [arguments of the example]
#
# From a fresh clone to a running example: installs what is missing, builds, runs.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

example=covariance_propagation

no_install=()
if [ "${1-}" = --no-install ]; then
  no_install=(--no-install)
  shift
fi

scripts/setup.sh "${no_install[@]}" build
say "building the library and the example $example"
quietly cmake --preset release -B build/demo -DQUORVEL_BUILD_TESTS=OFF
build build/demo "$example"
say "running build/demo/examples/$example"
exec "build/demo/examples/$example" "$@"
