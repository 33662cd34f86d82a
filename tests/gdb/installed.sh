#!/usr/bin/env bash
# usage: installed.sh CMAKE BUILD GDB PROGRAM EXPECTED SCRIPT
# The printers again, as they come with a library that was installed and moved; those of the build tree are not trusted.
set -euo pipefail
cmake=$1 build=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$cmake" --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved"
library=$(dirname "$(find "$work/moved" -name libQuorvel.so.1.0.0)")
export LD_LIBRARY_PATH=$library
bash "$(dirname "$0")/run.sh" "$1" "$2" "$library" "$3" "$4"
