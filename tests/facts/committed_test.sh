#!/bin/bash
# committed.sh accepts the tree's generated files, and refuses each that lost a line or is not there.
#   committed_test.sh DECLARED DESCRIBED TREE
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
declared=$1 described=$2 tree=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
generated=(platform/include/mcast6_platform/tables.h platform/include/mcast6_platform/tables/l3mc6_mfib.h
    platform/host/counter_names.h docs/tables.md)

# refuses NAME FILE: committed.sh ends with an error and names FILE, or the directory that it is in.
refuses() {
    local answer
    if answer=$("$here/committed.sh" "$declared" "$described" "$work/tree" 2>&1) ||
        [[ $answer != *"$2 is stale"* ]]; then
        printf 'FAILED %s: %s\n' "$1" "$answer"
        failures=$((failures + 1))
    fi
}

fresh() {
    rm -rf "${work:?}/tree"
    mkdir "$work/tree"
    (cd "$tree" && cp -r --parents platform/include/mcast6_platform "${generated[@]}" "$work/tree/")
}

fresh
"$here/committed.sh" "$declared" "$described" "$work/tree" || failures=$((failures + 1))
for file in "${generated[@]}"; do
    named=${file/%\/tables\/*/\/tables}
    fresh
    sed -i '$d' "$work/tree/$file"
    refuses "$file without its last line" "$named"
    rm "$work/tree/$file"
    refuses "no $file" "$named"
done

((failures == 0)) || exit 1
echo "committed.sh: every case as wanted"
