#!/bin/bash
# Each lint accepts this tree and refuses what it is there to refuse.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

fail() {
    printf 'FAILED %s\n' "$1"
    failures=$((failures + 1))
}

accepts() { "$here/$1.sh" "$2" || fail "$1 refuses ${3:-$2}"; }

# refuses LINT FILE TEXT: a tree that is right but for FILE, which holds TEXT. The lint must name the file.
refuses() {
    local answer
    freshTree
    mkdir -p "$(dirname "$work/tree/$2")"
    printf '%s\n' "$3" >>"$work/tree/$2"
    if answer=$("$here/$1.sh" "$work/tree"); then
        fail "$1 accepts $2 with: $3"
    elif [[ $answer != *"$2"* ]]; then
        fail "$1 refuses, but does not name $2: $answer"
    fi
}

freshTree() {
    rm -rf "$work/tree"
    mkdir -p "$work/tree"/{include/mcast6_db,frame,l2,l3,platform/include/mcast6_platform,platform/engine,cli}
    mkdir -p "$work/tree"/platform/{store/memory,schema,host}
    cd "$work/tree"
    echo '#include <stdint.h>' >include/mcast6_db/types.h
    printf '#include "mcast6_db/%s.h"\n' types version >include/mcast6_db.h
    echo '#define MCAST6_DB_VERSION "@PROJECT_VERSION@"' >include/mcast6_db/version.h.in
    echo '#include "mcast6_db.h"' >frame/operations.h
    printf '#include "frame/operations.h"\n// clang-format off\n// clang-format on\n' >l2/table.cpp
    echo '#include <stdint.h>' >platform/include/mcast6_platform/engine.h
    echo '#include <vector>' >platform/schema/schema.h
    echo '#include "platform/schema/schema.h"' >platform/store/store.h
    echo '#include "platform/store/store.h"' >platform/engine/engine.h
    echo '#include "mcast6_platform/engine.h"' >platform/host/host.cpp
    printf '#include "show.h"\n#include <mcast6_db.h>\n#include <fmt/format.h>\n' >cli/main.cpp
    echo '#include "mcast6_platform/engine.h"' >cli/show.h
    cd - >/dev/null
}

for lint in arrows words fences columns; do
    freshTree
    accepts "$lint" "$work/tree" "a tree as it should be"
    accepts "$lint" "$here/../.." "this tree"
done

refuses arrows include/mcast6_db/bad.h '#include "frame/operations.h"'
refuses arrows include/mcast6_db/bad.h '#include "mcast6_platform/engine.h"'
refuses arrows include/mcast6_db/bad.h '#include <vector>'
refuses arrows include/mcast6_db/bad.h '#include "mcast6_db/made_of_nothing.h"'
refuses arrows frame/bad.cpp '#include "platform/engine/engine.h"'
refuses arrows frame/bad.cpp '#include "l2/table.cpp"'
refuses arrows l3/bad.cpp '#include "platform/schema/schema.h"'
refuses arrows platform/engine/bad.cpp '#include "frame/operations.h"'
refuses arrows kernel/apply/bad.cpp '#include "cli/show.h"'
refuses arrows kernel/capture/bad.cpp '#include "platform/engine/engine.h"'
refuses arrows platform/engine/bad.cpp '#  include <mcast6_db.h>'
refuses arrows platform/host/bad.cpp '#include "mcast6_db/types.h"'
refuses arrows platform/store/memory/bad.cpp '#include "platform/engine/engine.h"'
refuses arrows platform/include/mcast6_platform/bad.h '#include "platform/schema/schema.h"'
refuses arrows cli/bad.cpp '#include "platform/store/store.h"'
refuses arrows cli/bad.cpp '#include "frame/operations.h"'
refuses arrows l2/bad.cpp '#include "../frame/operations.h"'

# Put together here, so that this file passes the lint that it tests.
refuses words frame/bad.h "// as the $(printf 'spec%s' ification) says"
refuses words docs/bad.md "see $(printf 'spec.%s' md)"
refuses words l2/bad.cpp "// $(printf 'Part %d.%d' 2 1): the switch"
refuses words docs/bad.md "see $(printf 'Parts %d.%d' 2 1) and others"
refuses words README.md "cd $(printf '/%s/' work)main"

refuses fences l2/bad.cpp '// clang-format off'
refuses fences l2/bad.cpp $'// clang-format on\n// clang-format off'
refuses fences l2/bad.cpp $'// clang-format off\n// clang-format on\n// clang-format off\n// clang-format on'
refuses fences frame/bad.cpp $'// clang-format off\n// clang-format on'

long=$(printf 'x%.0s' {1..121})
refuses columns l2/bad.cpp "// $long"
refuses columns docs/bad.md "$long"
refuses columns bad.sh "# $long"
refuses columns l2/bad.cpp "log(\"$long\");"
freshTree
accepts columns "$work/tree" "a tree as it should be"
printf '| %s |\n' "$long" >"$work/tree/table.md"
printf '    "%s");\n' "$long" >>"$work/tree/l2/table.cpp"
printf '// %s\n' "$(printf 'ä%.0s' {1..117})" >>"$work/tree/l2/table.cpp"
accepts columns "$work/tree" "a Markdown table, a whole message or 120 columns of two bytes each"

((failures == 0)) || exit 1
echo "the lints: every case as wanted"
