#!/bin/bash
# Compares what a shared library exports and needs with what the headers say. Prints each difference, exits 1 if any.
#
#   check.sh library TREE MAP BASELINE LIBRARY [plain|sanitized]
#       against the headers of include/, the version script and the baseline
#   check.sh platform TREE BASELINE LIBRARY
#       against the headers of platform/include/ and the baseline
#
# BASELINE is the committed interface of the library, which tests/abi/ compares in full; here its names alone.
set -euo pipefail
export LC_ALL=C

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

complain() {
    printf '%s\n' "$1"
    failures=$((failures + 1))
}

# compare FILE_A NAME_A FILE_B NAME_B: both hold one symbol a line.
compare() {
    local symbol
    for symbol in $(comm -23 "$1" "$3"); do complain "$symbol: in $2 but not in $4"; done
    for symbol in $(comm -13 "$1" "$3"); do complain "$symbol: in $4 but not in $2"; done
}

# The names of lines such as 'MCAST6_API uint32_t NAME(...);' and 'extern MCAST6_API uint64_t NAME[3];'.
declaredInHeaders() {
    find "$1" -name '*.h' -exec grep -hE '^[[:space:]]*(extern[[:space:]]+)?MCAST6_API[[:space:]]' {} + |
        sed -E 's/[[:space:]]*[[(;].*$//; s/^.*[^A-Za-z0-9_]//' | sort -u
}

namesOfMap() {
    sed -E 's,/\*([^*]|\*[^/])*\*/,,g; s/#.*$//' "$1" | awk '
        /global:/ { inside = 1; sub(/.*global:/, "") }
        /local:/  { inside = 0 }
        inside' | tr ';' '\n' | sed -E 's/[[:space:]]//g' | grep -v '^$' | sort -u
}

namesOfBaseline() { sed -nE "s/.*<elf-symbol name='([^']*)'.*/\1/p" "$1" | sort -u; }

# Without the names of version nodes (type A).
exportedBy() {
    nm -D --defined-only "$1" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | sort -u
}

# What the library wants of its process. Names with a version belong to the language's run time, weak ones may stay
# open.
wantedBy() {
    nm -D --undefined-only "$1" | awk '$1 == "U" && $2 !~ /@/ { print $2 }' | sort -u
}

# Comments name functions too, so they go first.
declaredByPlatform() {
    find "$1" -name '*.h' -exec cat {} + |
        sed -E 's,//.*$,,' | tr '\n' ' ' | sed -E 's,/\*([^*]|\*+[^*/])*\*+/, ,g' |
        grep -oE '\b(db_[a-z0-9_A-Z]+|MCAST6?_[A-Za-z0-9_]+|mcast6_platform_[a-z0-9_]+|memcpy_s)[[:space:]]*\(' |
        tr -d '( ' | sort -u
}

compareWithBaseline() {
    namesOfBaseline "$1" >"$work/baseline"
    compare "$work/baseline" "${1##*/}" "$work/exported" "${library##*/}"
}

checkLibrary() {
    library=$4
    local tree=$1 map=$2 baseline=$3 build=${5:-plain} symbol needed
    declaredInHeaders "$tree/include" >"$work/headers"
    namesOfMap "$map" >"$work/map"
    exportedBy "$library" >"$work/exported"
    [[ -s $work/headers ]] || complain "no header under include/ declares anything with MCAST6_API"
    grep -q '\*$' "$work/map" && complain "${map##*/}: names are spelled out, never matched by a pattern"
    compare "$work/headers" include/ "$work/exported" "${library##*/}"
    compare "$work/headers" include/ "$work/map" "${map##*/}"
    compare "$work/map" "${map##*/}" "$work/exported" "${library##*/}"
    compareWithBaseline "$baseline"
    # A sanitizer's run time is needed, and its symbols carry no version.
    [[ $build == plain ]] || return 0

    declaredByPlatform "$tree/platform/include" >"$work/platform"
    wantedBy "$library" >"$work/wanted"
    for symbol in $(comm -23 "$work/wanted" "$work/platform"); do
        complain "$symbol: wanted by ${library##*/} but not declared in platform/include/"
    done
    for needed in $(readelf -d "$library" | sed -nE 's/.*\(NEEDED\).*\[(.*)\].*/\1/p'); do
        case $needed in
        libc.so.* | libm.so.* | libgcc_s.so.* | libstdc++.so.* | ld-linux*.so.*) ;;
        *) complain "$needed: needed by ${library##*/}, which may need the language's run time only" ;;
        esac
    done
    [[ $(readelf -d "$library" | sed -nE 's/.*\(SONAME\).*\[(.*)\].*/\1/p') == libmcast6db.so.1 ]] ||
        complain "${library##*/}: its soname is not libmcast6db.so.1"
}

checkPlatform() {
    library=$3
    local tree=$1 baseline=$2
    declaredByPlatform "$tree/platform/include" >"$work/platform"
    exportedBy "$library" >"$work/exported"
    [[ -s $work/platform ]] || complain "no header under platform/include/ declares a function of the contract"
    compare "$work/platform" platform/include/ "$work/exported" "${library##*/}"
    compareWithBaseline "$baseline"
}

case ${1:-} in
library) checkLibrary "${@:2}" ;;
platform) checkPlatform "${@:2}" ;;
*)
    sed -n '2,5s/^# \{0,1\}//p' "$0" >&2
    exit 2
    ;;
esac
((failures == 0)) || exit 1
printf '%s: %d symbols, as declared\n' "${library##*/}" "$(wc -l <"$work/exported")"
