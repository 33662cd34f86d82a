#!/usr/bin/env bash
# usage: kernels_isolated.sh NM OBJECT...
# Fails when an object of the kernels defines a symbol that other objects could end up with: the linker may keep a
# shared inline function in the version that was compiled for a newer instruction set. Only the table may be visible.
set -euo pipefail
nm=$1
shift
seen=0
status=0
for object in "$@"; do
  [[ $object =~ /kernels/(portable|sse2|avx2|avx512)\.cpp ]] || continue
  seen=$((seen + 1))
  symbols=$("$nm" -C --defined-only "$object" | grep -E '^[0-9a-f]+ [A-Zuvw] ' || true)
  others=$(grep -vE ' [RD] quorvel::detail::kernels_[a-z0-9]+$' <<<"$symbols" || true)
  if [ -z "$symbols" ] || [ -n "$others" ]; then
    echo "$object: beside its table it shares: ${others:-nothing, and it has no table}"
    status=1
  fi
done
if [ $seen -eq 0 ]; then
  echo "no object of the kernels among those given"
  exit 1
fi
echo "$seen kernel objects share nothing but their tables"
exit $status
