#!/usr/bin/env bash
# usage: readme.sh SOURCE COMMAND...
# README.md shows the source of examples/readme.cpp and what it prints; its links lead somewhere.
set -euo pipefail
source=$1
shift

block() { awk -v fence="\`\`\`$1" '$0 == fence { on = 1; next } /^```/ { if (on) exit } on' "$source/README.md"; }

[ -n "$(block cpp)" ] && [ -n "$(block text)" ] || { echo "README.md has no example" >&2; exit 1; }
diff <(block cpp) "$source/examples/readme.cpp" || { echo "README.md and examples/readme.cpp differ" >&2; exit 1; }
diff <(block text) <("$@") || { echo "the example prints something else" >&2; exit 1; }

# What readers see of a page outside its examples.
prose() { awk '/^```/ { on = !on } /^<!--/ { hidden = 1 } !on && !hidden; /-->/ { hidden = 0 }' "$1"; }

status=0
cd "$source"
for document in README.md docs/*.md docs/manual/*.md CONTRIBUTING.md; do
  [ -e "$document" ] || continue
  while read -r link; do
    case $link in http* | '#'* | '') continue ;; esac
    [ -e "$(dirname "$document")/${link%%#*}" ] || { echo "$document: no such file: $link" >&2; status=1; }
  done < <(prose "$document" | grep -o '](\([^)]*\))' | sed 's/^](\(.*\))$/\1/')
done
exit $status
