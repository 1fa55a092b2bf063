#!/bin/bash
# The committed files that are generated are byte for byte what schemas and modules give.
#   committed.sh DECLARED DESCRIBED TREE
set -euo pipefail
declared=$1 described=$2 tree=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$declared" headers "$work/headers"
"$described" names "$work/counter_names.h"
"$described" tables "$work/tables.md"

stale=0
compare() {
    diff -r "$tree/$1" "$2" && return
    echo "$1 is stale"
    stale=1
}
compare platform/include/mcast6_platform/tables.h "$work/headers/tables.h"
compare platform/include/mcast6_platform/tables "$work/headers/tables"
compare platform/host/counter_names.h "$work/counter_names.h"
compare docs/tables.md "$work/tables.md"
((stale == 0)) || { echo "run ./dev facts and commit what it wrote"; exit 1; }
