#!/bin/sh
# Doxygen input filter: see header.awk.
tools=$(dirname "$0")
exec awk -f "$tools/text.awk" -f "$tools/header.awk" "$1"
