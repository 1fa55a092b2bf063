#!/bin/bash
# The binary interface of a shared library: names, types, sizes and offsets of all that it exports, as libabigail tells
# them from its debug information.
#
#   abi.sh dump LIBRARY BASELINE HEADER_DIR...    writes the interface of LIBRARY to BASELINE
#   abi.sh check LIBRARY BASELINE HEADER_DIR...   prints what differs from BASELINE, exits 1 if anything does
#
# Types that no header of HEADER_DIR declares are no part of it. LIBRARY is compiled with -g and without optimisation.
set -euo pipefail
export LC_ALL=C

# Without what another machine, directory or build of the same sources has otherwise.
dump() {
    local library=$1 out=$2 directories=()
    shift 2
    for directory in "$@"; do directories+=(--headers-dir "$directory"); done
    abidw --exported-interfaces-only --drop-private-types "${directories[@]}" --no-corpus-path --no-comp-dir-path \
        --no-show-locs --no-architecture --no-elf-needed --no-parameter-names --no-write-default-sizes \
        --type-id-style hash "$library" | sed -E "s# path='([^']*/)?([^/']+/[^/']+)'# path='\2'#" >"$out"
    grep -q '<function-decl' "$out" || {
        echo "$library: no function with debug information: compile it with -g" >&2
        exit 1
    }
}

check() {
    local library=$1 baseline=$2
    [[ -f $baseline ]] || { echo "$baseline: not there" >&2; exit 1; }
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT
    dump "$library" "$work/now.abi" "${@:3}"
    # The same interface may be told in another way by another compiler; abidiff sees through that.
    cmp -s "$baseline" "$work/now.abi" || abidiff --harmless "$baseline" "$work/now.abi" ||
        { echo "${library##*/} differs from $baseline"; exit 1; }
    printf '%s: the interface of %s\n' "${library##*/}" "$baseline"
}

case ${1:-} in
dump) dump "${@:2}" ;;
check) check "${@:2}" ;;
*)
    sed -n '5,6s/^# \{0,1\}//p' "$0" >&2
    exit 2
    ;;
esac
