#!/bin/sh
# usage: filter.sh header|page FILE
# Doxygen input filter: see header.awk, page.awk.
tools=$(dirname "$0")
exec awk -f "$tools/text.awk" -f "$tools/$1.awk" "$2"
