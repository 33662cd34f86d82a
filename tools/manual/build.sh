#!/bin/sh
# usage: build.sh DOXYGEN FOLDER [MATHJAX]
# Runs Doxygen on FOLDER/Doxyfile and fails when it has anything to say. With a folder MATHJAX, what the formulas need
# of it goes beside the pages.
set -e
doxygen=$1
folder=$2
mathjax=${3-}

rm -rf "$folder/html"
status=0
"$doxygen" "$folder/Doxyfile" || status=$?
if [ $status -ne 0 ] || [ -s "$folder/warnings.txt" ]; then
  cat "$folder/warnings.txt" >&2
  echo "the manual has warnings" >&2
  exit 1
fi

[ $# -ge 3 ] || exit 0
if [ ! -e "$mathjax/MathJax.js" ]; then
  echo "no MathJax here (Debian: libjs-mathjax): the formulas of the manual show as source text" >&2
  exit 0
fi
for part in MathJax.js extensions jax/element jax/input/TeX jax/output/SVG/jax.js jax/output/SVG/config.js \
  jax/output/SVG/autoload jax/output/SVG/fonts/TeX localization/en; do
  [ -e "$mathjax/$part" ] || continue
  mkdir -p "$folder/html/mathjax/$(dirname "$part")"
  cp -r "$mathjax/$part" "$folder/html/mathjax/$part"
done
