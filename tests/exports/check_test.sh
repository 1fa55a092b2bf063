#!/bin/bash
# check.sh accepts a library that is as it should be, and names what is wrong with each that is not.
#   check_test.sh COMPILER
set -euo pipefail
compiler=${1:-g++}
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# A tree with one operation, one datum and one call of the platform.
freshTree() {
    rm -rf "$work/tree"
    mkdir -p "$work/tree/include/mcast6_db" "$work/tree/platform/include"
    cat >"$work/tree/include/mcast6_db/a.h" <<'H'
#define MCAST6_API __attribute__((visibility("default")))
MCAST6_API unsigned MCAST6_DB_WriteA(const void *record);
extern MCAST6_API unsigned g_mcast6DbA[3];
H
    printf '{\n  global: /* all */\n    MCAST6_DB_WriteA;\n    g_mcast6DbA;\n  local: *;\n};\n' \
        >"$work/tree/exports.map"
    printf "  <elf-symbol name='%s' type='x'/>\n" MCAST6_DB_WriteA g_mcast6DbA >"$work/tree/a.abi"
    cat >"$work/tree/platform/include/engine.h" <<'H'
/* unlike db_old_call(), which is gone */
unsigned db_write_obj(unsigned long object);
H
    cat >"$work/tree/a.cpp" <<'C'
extern "C" {
#include "mcast6_db/a.h"
unsigned db_write_obj(unsigned long object);
unsigned g_mcast6DbA[3];
unsigned MCAST6_DB_WriteA(const void *) { return db_write_obj(0); }
}
C
}

build() {
    "$compiler" -shared -fPIC -I"$work/tree/include" "$work/tree/a.cpp" -o "$work/tree/libmcast6db.so" \
        -Wl,-soname,"${soname:-libmcast6db.so.1}" -Wl,--version-script="${map:-$work/tree/exports.map}" "$@"
}

# expect NAME WANTED_LINE: WANTED_LINE is what check.sh complains of, or nothing when it accepts.
expect() {
    local answer
    if answer=$("$here/check.sh" library "$work/tree" "$work/tree/exports.map" "$work/tree/a.abi" \
        "$work/tree/libmcast6db.so" 2>&1); then
        [[ -z $2 ]] && return
    elif [[ -n $2 && $answer == *"$2"* ]]; then
        return
    fi
    printf 'FAILED %s: wanted "%s", got: %s\n' "$1" "${2:-acceptance}" "$answer"
    failures=$((failures + 1))
}

freshTree && build
expect "as it should be" ""

freshTree && build
echo 'MCAST6_API unsigned MCAST6_DB_ReadA(void *record);' >>"$work/tree/include/mcast6_db/a.h"
expect "declared, not exported" "MCAST6_DB_ReadA: in include/ but not in libmcast6db.so"

freshTree
sed -i 's/local:/MCAST6_DB_Extra; local:/' "$work/tree/exports.map"
echo 'extern "C" void MCAST6_DB_Extra() {}' >>"$work/tree/a.cpp"
build
expect "exported, not declared" "MCAST6_DB_Extra: in libmcast6db.so but not in include/"

freshTree && build
sed -i 's/g_mcast6DbA;//' "$work/tree/exports.map"
expect "not in the map" "g_mcast6DbA: in include/ but not in exports.map"

freshTree && build
sed -i 1d "$work/tree/a.abi"
expect "not in the baseline" "MCAST6_DB_WriteA: in libmcast6db.so but not in a.abi"

freshTree && build
echo "<elf-symbol name='MCAST6_DB_ReadA'/>" >>"$work/tree/a.abi"
expect "in the baseline, gone" "MCAST6_DB_ReadA: in a.abi but not in libmcast6db.so"

freshTree
sed -i 's/MCAST6_DB_WriteA;/MCAST6_DB_*;/' "$work/tree/exports.map"
build
expect "a pattern in the map" "never matched by a pattern"

freshTree
sed -i 's/db_write_obj(0)/db_old_call(0)/; s/unsigned db_write_obj/unsigned db_old_call/' "$work/tree/a.cpp"
build
expect "a stranger is wanted" "db_old_call: wanted by libmcast6db.so but not declared in platform/include/"

freshTree && build -Wl,--no-as-needed -lrt -lresolv
expect "a stranger is needed" "libresolv.so.2: needed by libmcast6db.so"

freshTree && soname=libother.so build
expect "another soname" "its soname is not libmcast6db.so.1"

# The platform's side.
freshTree
echo 'extern "C" unsigned db_write_obj(unsigned long) { return 0; }' >"$work/tree/p.cpp"
"$compiler" -shared -fPIC "$work/tree/p.cpp" -o "$work/tree/libp.so"
echo "<elf-symbol name='db_write_obj'/>" >"$work/tree/p.abi"
"$here/check.sh" platform "$work/tree" "$work/tree/p.abi" "$work/tree/libp.so" || failures=$((failures + 1))
echo 'extern "C" unsigned db_stray() { return 0; }' >>"$work/tree/p.cpp"
"$compiler" -shared -fPIC "$work/tree/p.cpp" -o "$work/tree/libp.so"
if answer=$("$here/check.sh" platform "$work/tree" "$work/tree/p.abi" "$work/tree/libp.so"); then
    echo "FAILED a platform with a stray symbol was accepted"
    failures=$((failures + 1))
else
    wanted=$(printf 'db_stray: in libp.so but not in %s\n' platform/include/ p.abi)
    [[ $answer == "$wanted" ]] || failures=$((failures + 1))
fi

((failures == 0)) || exit 1
echo "check.sh: every case as wanted"
