#!/bin/bash
# No line is over 120 columns, in sources, scripts and documents. Left out: tables in Markdown, a line that is only one
# string (a message is never split), JSON, generated files and the licence. Prints every line that is too long, exits 1
# if any.
#   columns.sh [TREE]
set -euo pipefail
export LC_ALL=C.UTF-8
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
tree=$(cd "${1:-$here/../..}" && pwd)
# shellcheck source=tests/lint/files.sh
source "$here/files.sh"

# Generated or captured, or a script of mcast6ctl, which has one command a line.
exempt='^(LICENSE|.*\.(json|gz|abi|mcast6)|platform/include/mcast6_platform/tables(/.*|\.h)|docs/tables\.md)$'

found=0
while IFS= read -r file; do
    lines=$(grep -nIE '^.{121,}$' "$tree/$file" || true)
    left='^[0-9]+: *"[^"]*"[),;}]*$'
    [[ $file != *.md ]] || left='^[0-9]+: *\|'
    lines=$(grep -vE "$left" <<<"$lines" || true)
    [[ -n $lines ]] || continue
    sed -E "s|^([0-9]+):(.{40}).*|$file:\1: over 120 columns: \2...|" <<<"$lines"
    found=1
done < <(treeFiles "$tree" | grep -vE "$exempt")
exit $found
