#!/bin/sh
# usage: storage.sh FOLDER
# Draws where each kind keeps its elements: FOLDER/storage_<kind>.svg, the pictures of docs/manual/kinds.md. The numbers
# in the cells are places in the array (data()); an example on that page prints the same from the library.
set -e
for kind in regular symmetric upper lower diagonal sparse; do
  awk -v kind=$kind -f "$(dirname "$0")/storage.awk" >"$1/storage_$kind.svg"
done
