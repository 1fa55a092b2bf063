// What the tests know of each table on their own account, and the records that they write: the answers of the tool are
// compared with these, never with the tool's own descriptions.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "mcast6_db/types.h"
#include "tests/tool/tool.h"

namespace mcast6::ctl::test {

// Numbers from a fixed seed, the same on every machine.
class Numbers {
public:
    explicit Numbers(uint32_t seed) : engine_(seed) {}
    uint32_t below(uint32_t limit) { return static_cast<uint32_t>(engine_()) % limit; }

private:
    std::mt19937 engine_;
};

// A record that was written.
struct Row {
    Json shown;     // as JSON shows it, but for its times
    Given filters;  // every filter, with the text that picks this record
    uint32_t version = 0;
};

// What a flag, which is a filter without a text, has for a record that it does not pick.
constexpr const char* kNotPicked = "not picked";

struct QueryFacts {
    std::string name;                              // as --verbose tells it
    std::set<std::string> takes;                   // the filters that lead to it
    std::map<std::string, std::string> only = {};  // filters that must have this value
};

// A record that is not written yet.
struct Draft {
    Row row;
    std::function<uint32_t(Row&)> write;  // 0, or a code; completes the row by what a write gives
};

struct TableFacts {
    std::string name;
    std::string databaseName;
    std::vector<std::string> key;  // the filters that name one record
    Given unless = {};             // what these are in delete unless they are given
    Given needs = {};              // filters that make another one 0 unless it is given
    std::vector<QueryFacts> queries;
    std::function<Draft(Numbers&)> draw;
    uint32_t drafts;  // how many are drawn; some have the key of an earlier one
    bool hasVersion = true;
    bool isDeletable = true;
    bool countsFast = false;
    bool countsAll = false;  // the whole table, without a walk
    bool replaces = true;    // on a write of a key that is there

    // Its records are forwarding entries, whose members go with them.
    bool areEntries() const { return databaseName.ends_with("_mfib"); }
    bool isOfLayer3() const { return databaseName.starts_with("l3mc6_"); }
};
void PrintTo(const TableFacts& facts, std::ostream* out);

const std::vector<TableFacts>& l3Facts();
// Of the layer-2 tables those that no capture fills.
const std::vector<TableFacts>& l2Facts();

// By name the numbers that filters have.
using Words = std::map<std::string, uint32_t>;
Given texts(const Words& words);
Json joined(Json object, const Json& further);
Given joined(Given given, const Given& further);

struct Address {
    Mcast6Ipv6Addr words;
    const char* text;
};
Address drawGroup(Numbers& numbers);
Address drawSource(Numbers& numbers);

// A record as it is drawn, member by member, with what it will be shown and picked by.
template <class Record>
struct Drawn {
    Record record{};
    Json shown;
    Given filters;

    void tell(const Json& furtherShown, const Words& furtherFilters) {
        shown.update(furtherShown);
        filters.merge(texts(furtherFilters));
    }
    // Draws group and source.
    void tellAddresses(Numbers& numbers, const char* groupName, Mcast6Ipv6Addr Record::*group, const char* sourceName,
                       Mcast6Ipv6Addr Record::*source) {
        const Address drawnGroup = drawGroup(numbers);
        const Address drawnSource = drawSource(numbers);
        record.*group = drawnGroup.words;
        record.*source = drawnSource.words;
        shown.update({{groupName, drawnGroup.text}, {sourceName, drawnSource.text}});
        filters.insert({{"group", drawnGroup.text}, {"source", drawnSource.text}});
    }
};

// Of a record that 'write' takes.
template <class Record>
Draft draftOf(const Drawn<Record>& drawn, uint32_t (*write)(const Record*)) {
    uint32_t version = 0;
    if constexpr (requires { drawn.record.smoothVersion; }) version = drawn.record.smoothVersion;
    return {{drawn.shown, drawn.filters, version}, [record = drawn.record, write](Row&) { return write(&record); }};
}

}  // namespace mcast6::ctl::test
