#!/bin/bash
# 'clang-format off' fences a table's field map and outcomes: at most once in a file, opened and closed, in the
# description of a table only; generated headers are left alone. Prints every file that does otherwise, exits 1 if any.
#   fences.sh [TREE]
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
tree=$(cd "${1:-$here/../..}" && pwd)
# shellcheck source=tests/lint/files.sh
source "$here/files.sh"

failures=0
complain() {
    printf '%s: %s\n' "$1" "$2"
    failures=$((failures + 1))
}

while IFS= read -r file; do
    fences=$(sed -nE 's,^[[:space:]]*(//|/\*) clang-format (on|off).*,\2,p' "$tree/$file" | tr '\n' ' ')
    case $fences in
    "") ;;
    "off on ")
        [[ $file =~ ^(l2/|l3/|platform/schema/|cli/tables/|tests/) ]] ||
            complain "$file" "only the description of a table is fenced from clang-format"
        ;;
    *) complain "$file" "one fence, opened and closed; found: $fences" ;;
    esac
done < <(treeFiles "$tree" | grep -E '\.(h|c|cpp)$' |
    grep -vE '^platform/include/mcast6_platform/tables(/|\.h$)')

((failures == 0))
