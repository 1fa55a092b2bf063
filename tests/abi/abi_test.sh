#!/bin/bash
# abi.sh accepts a library with the interface of its baseline, wherever and however it was built, and refuses each that
# has another.
#   abi_test.sh COMPILER
set -euo pipefail
compiler=$1
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# Puts a fresh tree into directory $1.
freshTree() {
    rm -rf "${work:?}/$1"
    mkdir -p "$work/$1/include" "$work/$1/src"
    cat >"$work/$1/include/a.h" <<'H'
#include <stdint.h>
typedef struct A {
    uint32_t number;
    uint16_t first;
    uint16_t second;
} A;
H
    cat >"$work/$1/src/a.cpp" <<'C'
#include "a.h"
struct Inside { int member; };
static Inside inside;
extern "C" {
uint32_t writeA(const A* a) { return a->number + static_cast<uint32_t>(inside.member); }
uint32_t readA(A* a, uint64_t key) { a->number = static_cast<uint32_t>(key); return 0; }
uint32_t counts[3];
}
C
}

build() { (cd "$work/$1" && "$compiler" -shared -fPIC -g -Iinclude "${@:2}" src/a.cpp -o liba.so); }

abi() { "$here/abi.sh" "$1" "$work/$2/liba.so" "$work/a.abi" "$work/$2/include"; }

# expect NAME TREE WANTED: WANTED is a part of what abi.sh complains of, or nothing when it accepts.
expect() {
    local answer
    if answer=$(abi check "$2" 2>&1); then
        [[ -z $3 ]] && return
    elif [[ -n $3 && $answer == *"$3"* ]]; then
        return
    fi
    printf 'FAILED %s: wanted "%s", got: %s\n' "$1" "${3:-acceptance}" "$answer"
    failures=$((failures + 1))
}

# changed NAME WANTED FILE EDIT: the tree with sed's EDIT of FILE.
changed() {
    freshTree other
    sed -i -E "$4" "$work/other/$3"
    build other
    expect "$1" other "$2"
}

freshTree one
build one
abi dump one
expect "the same library" one ""
cp "$work/a.abi" "$work/first.abi"
freshTree elsewhere/deep
build elsewhere/deep
abi dump elsewhere/deep
cmp "$work/first.abi" "$work/a.abi" || failures=$((failures + 1))
if grep -q "$work" "$work/a.abi"; then
    echo "FAILED: the baseline names a directory of this machine"
    failures=$((failures + 1))
fi
freshTree other
build other -Wl,--build-id=sha1
expect "another build id" other ""
changed "a type of its own" "" src/a.cpp 's/int member/long member/'
changed "another name of a parameter" "" src/a.cpp 's/\bkey\b/word/g'

changed "a member of another type" "type of 'uint32_t number' changed" include/a.h 's/uint32_t number/int32_t number/'
changed "two members changed places" "offset changed" include/a.h 's/first/other/; s/second/first/; s/other/second/'
changed "a member more" "type size changed" include/a.h 's/uint16_t second;/& uint64_t third;/'
changed "another name of a member" "A::second" include/a.h 's/second/last/'
changed "a function less" "function uint32_t readA(A*, uint64_t)" src/a.cpp '/readA/d'
changed "a function more" "function uint32_t stray()" src/a.cpp 's/^uint32_t counts/uint32_t stray() { return 0; }\n&/'
changed "another parameter" "parameter 2 of type" src/a.cpp 's/uint64_t key/uint32_t key/'
changed "another result" "return type changed" src/a.cpp 's/uint32_t writeA/uint64_t writeA/'
changed "a longer array" "counts" src/a.cpp 's/counts\[3\]/counts[4]/'

freshTree other
(cd "$work/other" && "$compiler" -shared -fPIC -Iinclude src/a.cpp -o liba.so)
expect "no debug information" other "compile it with -g"
rm "$work/a.abi"
expect "no baseline" one "not there"

((failures == 0)) || exit 1
echo "abi.sh: every case as wanted"
