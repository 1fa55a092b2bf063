#!/bin/bash
# The committed docs/tables.md is byte for byte what the modules and the schema give.
#   committed.sh GENERATOR FILE
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$1" "$work/tables.md"
diff "$2" "$work/tables.md" || { echo "$2 is stale: run ./dev tables and commit"; exit 1; }
