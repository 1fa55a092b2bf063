#!/bin/bash
# complete_list.sh accepts a library with its names, and refuses one with a name less or a name more.
#   complete_list_test.sh COMPILER
set -euo pipefail
compiler=${1:-g++}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# build NAMES...: a library that exports them.
build() {
    printf '%s\n' "$@" | sed 's/.*/extern "C" void &() {}/' >"$work/names.cpp"
    "$compiler" -shared -fPIC "$work/names.cpp" -o "$work/lib.so"
}

# expect NAME WANTED: WANTED is what it complains of, or nothing when it accepts.
expect() {
    local answer
    if answer=$("$here/complete_list.sh" check "$work/lib.so" 2>&1); then
        [[ -z $2 ]] && return
    elif [[ -n $2 && $answer == "$2" ]]; then
        return
    fi
    printf 'FAILED %s: wanted "%s", got: %s\n' "$1" "${2:-acceptance}" "$answer"
    failures=$((failures + 1))
}

mapfile -t names < <("$here/complete_list.sh" print)

build "${names[@]}"
expect "the list" ""

build "${names[@]:1}"
expect "a name less" "${names[0]}: in the list, not exported"

build "${names[@]}" MCAST6_DB_Stray
expect "a name more" "MCAST6_DB_Stray: exported, not in the list"

((failures == 0)) || exit 1
echo "complete_list.sh: every case as wanted"
