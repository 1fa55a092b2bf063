#!/bin/bash
# The committed accessor headers are byte for byte what the schema gives.
#   committed.sh GENERATOR DIRECTORY
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$1" headers "$work"
[[ -n $(ls "$work") ]] || { echo "the generator printed no header"; exit 1; }
stale=0
diff "$2/tables.h" "$work/tables.h" || stale=1
diff -r "$2/tables" "$work/tables" || stale=1
((stale == 0)) || { echo "the headers in $2 are stale: run ./dev accessors and commit"; exit 1; }
