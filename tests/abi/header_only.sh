#!/usr/bin/env bash
# usage: header_only.sh NM LIBRARY OBJECT
# OBJECT uses all of convenience.h. What that header declares it must define itself, and the library must not have it.
set -euo pipefail
export LC_ALL=C
nm=$1 library=$2 object=$3
conveniences='(quorvel::|operator<<\(std::ostream&, Matrix|operator<<\(std::basic_ostream<.*>&, Matrix)'

defined=$("$nm" -C --defined-only "$object" | grep -cE " [WVu] .*$conveniences" || true)
[ "$defined" -ge 10 ] || { echo "only $defined conveniences found in $object: its symbols were not understood"; exit 1; }
wanted=$("$nm" -C --undefined-only "$object" | grep -E "U $conveniences" || true)
[ -z "$wanted" ] || { echo "the header declares but does not define: $wanted"; exit 1; }
exported=$("$nm" -D -C --defined-only "$library" | grep -E "$conveniences" || true)
[ -z "$exported" ] || { echo "the library exports: $exported"; exit 1; }
echo "$defined conveniences, all of them in the program alone"
