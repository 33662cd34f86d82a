#!/bin/sh
# Doxygen input filter: see page.awk.
tools=$(dirname "$0")
exec awk -f "$tools/text.awk" -f "$tools/page.awk" "$1"
