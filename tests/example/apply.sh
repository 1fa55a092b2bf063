#!/bin/bash
# Puts the example of docs/adding-a-table.md into a tree: its files, and its line in each list.
#   apply.sh TREE
# A list that TREE does not have is taken from the tree that this script is in.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
tree=$1

# insert FILE AFTER LINE: LINE goes below the only line that is AFTER.
insert() {
    local file=$1
    if [[ ! -f $tree/$file ]]; then
        mkdir -p "$tree/${file%/*}"
        cp "$here/../../$file" "$tree/$file"
    fi
    [[ $(grep -cxF -e "$2" "$tree/$file") == 1 ]] || { echo "$file: not one line '$2' to follow" >&2; exit 1; }
    ! grep -qxF -e "$3" "$tree/$file" || { echo "$file: has the line '$3' already" >&2; exit 1; }
    after=$2 line=$3 awk '{ print } $0 == ENVIRON["after"] { print ENVIRON["line"] }' "$tree/$file" >"$tree/$file.new"
    mv "$tree/$file.new" "$tree/$file"
}

insert platform/schema/catalog.cpp \
    '#include "platform/schema/l2mc6_global_enable.h"' '#include "platform/schema/l2mc6_querier.h"'
insert platform/schema/catalog.cpp \
    '    l3mc6_mvpn_tnl_subelb::kTable,' '    l2mc6_querier::kTable,'
insert include/mcast6_db.h \
    '#include "mcast6_db/l2mc6_global_enable.h"' '#include "mcast6_db/l2mc6_querier.h"'
for directory in changes include l2 platform tests; do cp -r "$here/$directory" "$tree/"; done
