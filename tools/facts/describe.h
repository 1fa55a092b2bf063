// Takes a module's facts from its own description. The build makes one source for each module, which includes the
// module and calls describe() on its Table, so nothing here is written down twice.
#pragma once

#include <type_traits>

#include "frame/operations.h"
#include "frame/scan.h"
#include "l2/l2_mfib.h"
#include "tools/facts/module.h"

namespace mcast6::facts {

using Exits = std::vector<Exit>;

inline Exits exitsOf(const CreateOutcomes& on) { return {{"created", &on.created}, {"failed", &on.failed}}; }
inline Exits exitsOf(const CacheOutcomes& on) {
    return {{"not made", &on.createFailed}, {"not reset", &on.resetFailed}};
}
inline Exits exitsOf(const ReadOutcomes& on) {
    return {{"null record", &on.nullRecord},
            {"no object", &on.createFailed},
            {"found", &on.found},
            {"15005", &on.absent},
            {"read failed", &on.readFailed}};
}
inline Exits exitsOf(const KeyedReadOutcomes& on) {
    return {{"found", &on.found}, {"15005", &on.absent}, {"read failed", &on.readFailed}};
}
inline Exits exitsOf(const GivenObjectOutcomes& on) {
    return {{"null record", &on.nullRecord}, {"no object", &on.createFailed}};
}
inline Exits exitsOf(const WriteOutcomes& on) {
    return {{"null record", &on.nullRecord}, {"no object", &on.createFailed}, {"not set", &on.setFailed},
            {"written", &on.written},        {"13044", &on.code13044},        {"write failed", &on.writeFailed}};
}
inline Exits exitsOf(const LimitedWriteOutcomes& on) {
    Exits exits = exitsOf(static_cast<const WriteOutcomes&>(on));
    exits.push_back({"110024", &on.tableFull});
    return exits;
}
inline Exits exitsOf(const UpdateOutcomes& on) {
    return {{"null record", &on.nullRecord}, {"no object", &on.createFailed}, {"not set", &on.setFailed},
            {"updated", &on.updated},        {"13044", &on.code13044},        {"update failed", &on.updateFailed}};
}
inline Exits exitsOf(const RemoveOutcomes& on) {
    return {{"null record", &on.nullRecord},
            {"no object", &on.createFailed},
            {"removed", &on.removed},
            {"13044", &on.code13044},
            {"removal failed", &on.removeFailed}};
}
inline Exits exitsOf(const RemoveOrAbsentOutcomes& on) {
    Exits exits = exitsOf(static_cast<const RemoveOutcomes&>(on));
    exits.push_back({"15005", &on.code15005});
    return exits;
}
inline Exits exitsOf(const EntryOutcomes& on) {
    return {{"null parameter", &on.nullParameter},
            {"110012", &on.ended},
            {"step failed", &on.nextFailed},
            {"an entry", &on.entry},
            {"15005", &on.vanished},
            {"read failed", &on.readFailed}};
}
inline Exits exitsOf(const NextItemOutcomes& on) {
    return {{"null handle", &on.nullHandle},
            {"110012", &on.ended},
            {"step failed", &on.nextFailed},
            {"an entry", &on.entry}};
}
inline Exits exitsOf(const IterOutcomes& on) { return {{"failed", &on.failed}}; }
inline Exits exitsOf(const BuildIntoOutcomes& on) {
    return {
        {"no object", &on.createFailed}, {"no root iterator", &on.rootIterFailed}, {"property", &on.propertyFailed}};
}
inline Exits exitsOf(const BuildOutcomes& on) {
    return {{"no object", &on.createFailed},
            {"no root iterator", &on.rootIterFailed},
            {"property", &on.propertyFailed},
            {"no memory", &on.allocationFailed}};
}
inline Exits exitsOf(const FastScanOutcomes& on) {
    return {{"no object", &on.objectFailed},
            {"no root iterator", &on.iteratorFailed},
            {"property", &on.propertyFailed},
            {"no memory", &on.allocationFailed}};
}
inline Exits exitsOf(const CountOutcomes& on) {
    return {{"no object", &on.createFailed}, {"count failed", &on.countFailed}};
}
inline Exits exitsOf(const MatchOutcomes& on) {
    return {{"no object", &on.createFailed}, {"15005", &on.absent}, {"count failed", &on.countFailed}};
}
inline Exits exitsOf(const SortedScanOutcomes& on) {
    return {{"no statement", &on.statementFailed},
            {"no root iterator", &on.filterFailed},
            {"property", &on.propertyFailed},
            {"no memory", &on.allocationFailed}};
}
inline Exits exitsOf(const ConflictOutcomes& on) {
    return {{"no object", &on.createFailed}, {"count failed", &on.countFailed}};
}

// Operations that give a handle: their failures give null.
template <class On>
constexpr bool kGivesHandle = std::is_same_v<On, IterOutcomes> || std::is_same_v<On, BuildOutcomes> ||
                              std::is_same_v<On, FastScanOutcomes> || std::is_same_v<On, SortedScanOutcomes>;

template <class On>
void add(Module& module, const char* operation, const On& on) {
    module.operations.push_back({operation, kGivesHandle<On>, exitsOf(on)});
}

template <class Table>
Module describe(const char* table) {
    Module module;
    module.table = table;
    module.logId = Table::logId;
    if constexpr (requires { typename Table::Row; }) module.rowSize = Table::Row::size;
    if constexpr (requires { Table::number; }) {
        module.isNumbered = true;
        module.number = Table::number;
    }
    if constexpr (requires { Table::counters; }) module.counters = Table::counters;
    if constexpr (requires { Table::indicators; }) module.indicators = Table::indicators;
    if constexpr (requires { Table::onCreate; }) add(module, "make an object", Table::onCreate);
    if constexpr (requires { Table::onCache; }) add(module, "keep an object", Table::onCache);
    if constexpr (requires { Table::onRead; }) add(module, "read", Table::onRead);
    if constexpr (requires { Table::onKeyedRead; }) add(module, "keyed read", Table::onKeyedRead);
    if constexpr (requires { Table::onFastRead; }) add(module, "fast read", Table::onFastRead);
    if constexpr (requires { Table::onWrite; }) add(module, "write", Table::onWrite);
    if constexpr (requires { Table::onUpdate; }) add(module, "update", Table::onUpdate);
    if constexpr (requires { Table::onSmooth; }) add(module, "smooth-version update", Table::onSmooth);
    if constexpr (requires { Table::onStat; }) add(module, "statistics-context update", Table::onStat);
    if constexpr (requires { Table::onRemove; }) add(module, "removal", Table::onRemove);
    if constexpr (requires { Table::onIter; }) add(module, "iterator", Table::onIter);
    if constexpr (requires { Table::onGenericIter; }) add(module, "iterator by any key", Table::onGenericIter);
    if constexpr (requires { Table::onIterByGroup; }) add(module, "iterator by group", Table::onIterByGroup);
    if constexpr (requires { Table::onIterBySource; }) add(module, "iterator by source", Table::onIterBySource);
    if constexpr (requires { Table::onIterBySrcPid; }) add(module, "iterator by process", Table::onIterBySrcPid);
    if constexpr (requires { Table::onIterByDomain; }) add(module, "iterator by domain", Table::onIterByDomain);
    if constexpr (requires { Table::onIterByErrCode; }) add(module, "iterator by error code", Table::onIterByErrCode);
    if constexpr (requires { Table::onSortedScan; }) add(module, "sorted scan", Table::onSortedScan);
    if constexpr (requires { Table::onScanIter; }) add(module, "iterator by entry and VLAN", Table::onScanIter);
    if constexpr (requires { Table::onFastScan; }) add(module, "fast scan", Table::onFastScan);
    if constexpr (requires { Table::onCachedIter; }) add(module, "keep a root iterator", Table::onCachedIter);
    if constexpr (requires { Table::onEntry; }) add(module, "next entry", Table::onEntry);
    if constexpr (requires { Table::onNextItem; }) add(module, "next entry by field", Table::onNextItem);
    if constexpr (requires { Table::onCount; }) add(module, "count by key", Table::onCount);
    if constexpr (requires { Table::onHashCount; }) add(module, "count by hash key", Table::onHashCount);
    if constexpr (requires { Table::onCountByDomain; }) add(module, "count by domain", Table::onCountByDomain);
    if constexpr (requires { Table::onCountBySource; }) add(module, "count by source", Table::onCountBySource);
    if constexpr (requires { Table::onConflicts; }) add(module, "hash-conflict count", Table::onConflicts);
    return module;
}

}  // namespace mcast6::facts
