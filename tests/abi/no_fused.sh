#!/usr/bin/env bash
# usage: no_fused.sh OBJDUMP FILE
# Fails when the machine code of FILE contains a fused multiply-add instruction or calls fma.
set -euo pipefail
objdump=$1 file=$2

# Mnemonics: vfmadd132pd, vfnmsub231sd, ... (x86), vfma.f64, vfnms.f64 (32-bit ARM), fmadd, fmla (64-bit
# ARM). ARM's vmla.f64 is none of them: it rounds the product before it adds.
disassembly=$("$objdump" -d --no-show-raw-insn "$file")
multiplications=$(grep -cE '^ *[0-9a-f]+:\s+(v?mul[sp][sd]|vn?mul\.f64|vn?ml[as]\.f64|fmul)\s' <<<"$disassembly" || true)
fused=$(grep -E '^ *[0-9a-f]+:\s+(v?fn?m(add|sub)|vfm(addsub|subadd)|vfn?m[as](\.|[a-z]{2}\.)|fml[as])' <<<"$disassembly" || true)
calls=$("$objdump" -t "$file"; "$objdump" -T "$file" 2>/dev/null || true)
calls=$(grep -wE 'fma|fmaf|fmal' <<<"$calls" || true)

if [ "$multiplications" -eq 0 ]; then
  echo "no multiplication found in $file: the disassembly was not understood"
  exit 1
fi
if [ -n "$fused$calls" ]; then
  echo "$fused" "$calls"
  echo "$(grep -c . <<<"$fused$calls") fused multiply-adds in $file"
  exit 1
fi
echo "$multiplications multiplications, none of them fused with an addition"
