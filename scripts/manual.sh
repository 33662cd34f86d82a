#!/usr/bin/env bash
# usage: manual.sh [--no-install] [FOLDER]
#
# Writes the manual to FOLDER/manual/html (FOLDER: build/docs) and fails on any warning. Installs what it needs first.
set -euo pipefail
. "$(dirname "$(readlink -f "$0")")/common.sh"

no_install=()
if [ "${1-}" = --no-install ]; then
  no_install=(--no-install)
  shift
fi
folder=${1-build/docs}

scripts/setup.sh "${no_install[@]}" build manual
say "writing the manual"
quietly cmake --preset release -B "$folder" -DQUORVEL_BUILD_TESTS=OFF -DQUORVEL_BUILD_EXAMPLES=OFF
cmake --build "$folder" --target manual
echo "$folder/manual/html/index.html"
