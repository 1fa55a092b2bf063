#!/bin/bash
# A table that counts in something that it does not list does not compile, whichever way it counts.
#   listed_test.sh COMPILER TREE
set -euo pipefail
compiler=$1 tree=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# compiles LISTS: a module with the lists LISTS.
compiles() {
    cat >"$work/module.cpp" <<C
#include "frame/operations.h"
using namespace mcast6;
constexpr Counter kCreated{600, "objects created"};
constexpr Counter kReleased{601, "objects released"};
constexpr Kpi kCreateFailed{300, "object creations failed"};
struct Table {
    static constexpr uint32_t logId = kLogConfiguration;
    $1
    static constexpr Accessors accessors{};
    static constexpr CreateOutcomes onCreate{
        .created = {dfx(kCreated), returns(0)},
        .failed  = {kpi(kCreateFailed), returns(1)},
    };
};
uint32_t create(Mcast6DbHandle* object) { return createObject<Table>(0, 0, object); }
void release(Mcast6DbHandle object) { releaseObject<Table, kReleased>(object); }
void both() { countOne<Table, kReleased>(); countOne<Table, kCreateFailed>(); }
C
    "$compiler" -std=c++20 -fsyntax-only -I"$tree" -I"$tree/include" -I"$tree/platform/include" "$work/module.cpp" \
        2>"$work/said"
}

# refuses NAME WHAT LISTS: the compiler's message has WHAT.
refuses() {
    if compiles "$3" || ! grep -q "$2" "$work/said"; then
        printf 'FAILED %s: %s\n' "$1" "$(cat "$work/said")"
        failures=$((failures + 1))
    fi
}

counters='static constexpr Counter counters[]{kCreated, kReleased};'
indicators='static constexpr Kpi indicators[]{kCreateFailed};'

compiles "$counters $indicators" || { cat "$work/said"; failures=1; }
refuses "a counter of an outcome" "lacks one that an outcome counts in" \
    "static constexpr Counter counters[]{kReleased}; $indicators"
refuses "a counter of a release" "lacks one that it counts in" \
    "static constexpr Counter counters[]{kCreated}; $indicators"
refuses "an indicator" "lacks one that an outcome counts in" \
    "$counters static constexpr Kpi indicators[]{{301, \"another\"}};"
refuses "an indicator for a counter" "kCreateFailed" "${counters/kReleased/kCreateFailed} $indicators"

((failures == 0)) || exit 1
echo "every case as wanted"
