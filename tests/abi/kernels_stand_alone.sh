#!/usr/bin/env bash
# usage: kernels_stand_alone.sh NM SETS OBJECTS (lists separated by semicolons)
# The object of each instruction set defines its table of kernels and nothing else that the linker could choose for
# the whole library: an inline function compiled here would run on processors that lack the set.
set -euo pipefail
nm=$1
IFS=';' read -ra sets <<<"$2"
IFS=';' read -ra objects <<<"$3"
status=0

for set in portable "${sets[@]}"; do
  found=no
  for object in "${objects[@]}"; do
    [[ $object == */ops/kernels/$set.cpp.* ]] || continue
    found=yes
    symbols=$("$nm" --demangle --defined-only --extern-only "$object" | cut -d' ' -f3-)
    if [ "$symbols" != "quorvel::detail::kernels_$set" ]; then
      echo "$object defines:"
      echo "$symbols"
      status=1
    fi
  done
  [ $found = yes ] || { echo "no object of the kernels $set"; status=1; }
done
exit $status
