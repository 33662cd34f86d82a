#!/usr/bin/env bash
# usage: same_digest.sh PROGRAM...
# Runs each test program once per set of kernels; all must pass and print one digest. A set that this processor does not
# have is left out, and said to be.
set -euo pipefail
status=0
for program in "$@"; do
  digests=()
  for kernels in portable sse2 avx2 avx512; do
    if output=$(QUORVEL_KERNELS=$kernels "$program" --gtest_brief=1 2>&1); then
      grep -qx "kernels $kernels" <<<"$output" || { echo "$program never used the $kernels kernels"; status=1; }
      digests+=("$(grep '^digest ' <<<"$output")")
      echo "$kernels: ${digests[-1]}"
    elif grep -q 'no such kernels on this processor' <<<"$output"; then
      echo "$kernels: not on this processor"
    else
      tail -n 20 <<<"$output"
      echo "$program fails with the $kernels kernels"
      status=1
    fi
  done
  if [ ${#digests[@]} -lt 2 ] || [ "$(printf '%s\n' "${digests[@]}" | sort -u | wc -l)" -ne 1 ]; then
    echo "$program: the kernels do not agree"
    status=1
  fi
done
exit $status
