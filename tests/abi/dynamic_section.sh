#!/usr/bin/env bash
# usage: dynamic_section.sh READELF LIBRARY
# Checks the names under which the shared object is found, and that it needs nothing but the C and
# C++ run time.
set -euo pipefail
readelf=$1 library=$2
status=0
fail() { echo "$*"; status=1; }

[ "$(basename "$library")" = libQuorvel.so.1.0.0 ] || fail "file name: $library"
for link in libQuorvel.so.1 libQuorvel.so; do
  [ "$(readlink -f "$(dirname "$library")/$link")" = "$(readlink -f "$library")" ] || fail "link $link"
done

dynamic=$("$readelf" -dW "$library")
soname=$(sed -n 's/.*(SONAME).*\[\(.*\)\].*/\1/p' <<<"$dynamic")
[ "$soname" = libQuorvel.so.1 ] || fail "SONAME is '$soname'"

needed=$(sed -n 's/.*(NEEDED).*\[\(.*\)\].*/\1/p' <<<"$dynamic")
[ -n "$needed" ] || fail "no NEEDED entries found: the dynamic section was not understood"
while read -r name; do
  case $name in
    libstdc++.so.6 | libm.so.6 | libc.so.6 | libgcc_s.so.1 | ld-linux*.so.*) ;;
    *) fail "needs $name" ;;
  esac
done <<<"$needed"

grep -qE '\((RPATH|RUNPATH|TEXTREL)\)' <<<"$dynamic" && fail "has a run path or text relocations"
echo "SONAME $soname; needs" $needed
exit $status
