#!/bin/sh
# Compares what leaves a library with the list of its exports:
#   cmake/exports.sh LIBRARY MAP
# Differences are shown as diff does: "<" is listed and missing, ">" leaks.
set -eu
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
sed -n 's/^ *\([A-Za-z_][A-Za-z0-9_]*\);$/\1/p' "$2" | sort >"$work/listed"
nm -D --defined-only "$1" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | sort >"$work/exported"
test -s "$work/listed"
diff "$work/listed" "$work/exported"
