#!/usr/bin/env bash
# usage: output.sh EXPECTED COMMAND...
# The command prints what the file EXPECTED says.
set -euo pipefail
expected=$1
shift
diff "$expected" <("$@") || { echo "the examples print something else (>) than their page shows (<)" >&2; exit 1; }
