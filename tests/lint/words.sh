#!/bin/bash
# The tree stands on its own: no file sends its reader to papers or directories outside of it. Prints every such line,
# exits 1 if any.
#   words.sh [TREE]
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
tree=$(cd "${1:-$here/../..}" && pwd)
# shellcheck source=tests/lint/files.sh
source "$here/files.sh"

# Written with brackets, so that this file does not find itself.
words='\bthe [s]pecification\b|\b[s]pec\.md\b|\b[P]arts? [1-6]\.[1-9]\b|/[w]ork/'

found=0
while IFS= read -r file; do
    if grep -nIHE "$words" "$tree/$file" | sed "s|^$tree/||" | grep .; then found=1; fi
done < <(treeFiles "$tree" | grep -vx LICENSE)
exit $found
