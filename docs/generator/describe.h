// What docs/tables.md says of a table's module, taken from the module's own description: its number, its log id and what
// it does on every way out of its operations. The build makes one source for each module, which includes the module and
// calls describe() on its Table, so nothing here is written down twice.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/operations.h"
#include "frame/scan.h"

namespace mcast6::docs {

struct Way {
    std::string name;     // "absent"
    std::string effects;  // "released, record 0"
    std::string result;   // "60", "the engine's code"
};

struct Ways {
    std::string operation;  // "read"
    std::vector<Way> ways;
};

struct Module {
    std::string table;
    bool isNumbered = false;
    uint32_t number = 0;
    uint32_t logId = 0;
    uint32_t rowSize = 0;
    std::vector<Ways> operations;
};

inline std::string textOf(const Effect& effect) {
    const std::string number = std::to_string(effect.number);
    const bool isElsewhere = effect.owner != Effect::kOfTable;
    switch (effect.kind) {
        case Effect::Kind::release:
            return "release";
        case Effect::Kind::dfx:
            return "counter " + number;
        case Effect::Kind::kpi:
            return "KPI " + number;
        case Effect::Kind::call:
            return "tell the host";
        case Effect::Kind::record:
            return "record " + number + (isElsewhere ? " under " + std::to_string(effect.owner) : "");
        case Effect::Kind::log:
        case Effect::Kind::logCode:
        case Effect::Kind::logObject:
            return "log";
    }
    return {};
}

// 'isHandle' for operations that give a handle: their failures give null.
inline Way wayOf(const char* name, const Outcome& outcome, bool isHandle) {
    Way way{name, {}, {}};
    for (uint8_t i = 0; i < outcome.effectCount; ++i) {
        if (i != 0) way.effects += ", ";
        way.effects += textOf(outcome.effects[i]);
    }
    if (!outcome.isTested) {
        way.effects = "not looked for";
    } else if (isHandle) {
        way.result = "null";
    } else {
        way.result = outcome.result.isCode ? "the code" : std::to_string(outcome.result.value);
    }
    return way;
}

using NamedOutcomes = std::vector<std::pair<const char*, Outcome>>;

inline NamedOutcomes listOf(const CreateOutcomes& on) { return {{"created", on.created}, {"failed", on.failed}}; }
inline NamedOutcomes listOf(const CacheOutcomes& on) {
    return {{"not made", on.createFailed}, {"not reset", on.resetFailed}};
}
inline NamedOutcomes listOf(const ReadOutcomes& on) {
    return {{"null record", on.nullRecord},
            {"no object", on.createFailed},
            {"found", on.found},
            {"15005", on.absent},
            {"read failed", on.readFailed}};
}
inline NamedOutcomes listOf(const KeyedReadOutcomes& on) {
    return {{"found", on.found}, {"15005", on.absent}, {"read failed", on.readFailed}};
}
inline NamedOutcomes listOf(const GivenObjectOutcomes& on) {
    return {{"null record", on.nullRecord}, {"no object", on.createFailed}};
}
inline NamedOutcomes listOf(const WriteOutcomes& on) {
    return {{"null record", on.nullRecord}, {"no object", on.createFailed}, {"not set", on.setFailed},
            {"written", on.written},        {"13044", on.code13044},        {"write failed", on.writeFailed}};
}
inline NamedOutcomes listOf(const LimitedWriteOutcomes& on) {
    NamedOutcomes list = listOf(static_cast<const WriteOutcomes&>(on));
    list.emplace_back("110024", on.tableFull);
    return list;
}
inline NamedOutcomes listOf(const UpdateOutcomes& on) {
    return {{"null record", on.nullRecord}, {"no object", on.createFailed}, {"not set", on.setFailed},
            {"updated", on.updated},        {"13044", on.code13044},        {"update failed", on.updateFailed}};
}
inline NamedOutcomes listOf(const RemoveOutcomes& on) {
    return {{"null record", on.nullRecord},
            {"no object", on.createFailed},
            {"removed", on.removed},
            {"13044", on.code13044},
            {"removal failed", on.removeFailed}};
}
inline NamedOutcomes listOf(const RemoveOrAbsentOutcomes& on) {
    NamedOutcomes list = listOf(static_cast<const RemoveOutcomes&>(on));
    list.emplace_back("15005", on.code15005);
    return list;
}
inline NamedOutcomes listOf(const EntryOutcomes& on) {
    return {{"null parameter", on.nullParameter},
            {"110012", on.ended},
            {"step failed", on.nextFailed},
            {"an entry", on.entry},
            {"15005", on.vanished},
            {"read failed", on.readFailed}};
}
inline NamedOutcomes listOf(const NextItemOutcomes& on) {
    return {
        {"null handle", on.nullHandle}, {"110012", on.ended}, {"step failed", on.nextFailed}, {"an entry", on.entry}};
}
inline NamedOutcomes listOf(const IterOutcomes& on) { return {{"failed", on.failed}}; }
inline NamedOutcomes listOf(const BuildIntoOutcomes& on) {
    return {{"no object", on.createFailed}, {"no root iterator", on.rootIterFailed}, {"property", on.propertyFailed}};
}
inline NamedOutcomes listOf(const BuildOutcomes& on) {
    return {{"no object", on.createFailed},
            {"no root iterator", on.rootIterFailed},
            {"property", on.propertyFailed},
            {"no memory", on.allocationFailed}};
}
inline NamedOutcomes listOf(const FastScanOutcomes& on) {
    return {{"no object", on.objectFailed},
            {"no root iterator", on.iteratorFailed},
            {"property", on.propertyFailed},
            {"no memory", on.allocationFailed}};
}
inline NamedOutcomes listOf(const CountOutcomes& on) {
    return {{"no object", on.createFailed}, {"count failed", on.countFailed}};
}
inline NamedOutcomes listOf(const MatchOutcomes& on) {
    return {{"no object", on.createFailed}, {"15005", on.absent}, {"count failed", on.countFailed}};
}
// Outcomes that a module shares with its twin alone have members of these names.
template <class On>
requires requires(On on) { on.statementFailed; }
NamedOutcomes listOf(const On& on) {
    return {{"no statement", on.statementFailed},
            {"no root iterator", on.filterFailed},
            {"property", on.propertyFailed},
            {"no memory", on.allocationFailed}};
}
template <class On>
requires(requires(On on) {
    on.createFailed;
    on.countFailed;
} && sizeof(On) == 2 * sizeof(Outcome)) NamedOutcomes listOf(const On& on) {
    return {{"no object", on.createFailed}, {"count failed", on.countFailed}};
}

template <class On>
constexpr bool kGivesHandle = std::is_same_v<On, IterOutcomes> || std::is_same_v<On, BuildOutcomes> ||
                              std::is_same_v<On, FastScanOutcomes> || requires(On on) {
    on.statementFailed;
};

template <class On>
void add(Module& module, const char* operation, const On& on) {
    Ways ways{operation, {}};
    for (const auto& [name, outcome] : listOf(on)) ways.ways.push_back(wayOf(name, outcome, kGivesHandle<On>));
    module.operations.push_back(std::move(ways));
}

template <class Table>
Module describe(std::string_view name) {
    Module module;
    module.table = name;
    module.logId = Table::logId;
    module.rowSize = Table::Row::size;
    if constexpr (requires { Table::number; }) {
        module.isNumbered = true;
        module.number = Table::number;
    }
    add(module, "make an object", Table::onCreate);
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

}  // namespace mcast6::docs
