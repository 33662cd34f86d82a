#!/usr/bin/env bash
# usage: pictures.sh SOURCE FOLDER
# docs/manual/images holds what tools/manual/storage.sh draws.
set -euo pipefail
mkdir -p "$2"
"$1/tools/manual/storage.sh" "$2"
for picture in "$2"/*.svg; do
  cmp "$picture" "$1/docs/manual/images/$(basename "$picture")"
done
