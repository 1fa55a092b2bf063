// The descriptions of all tables are in themselves right, and a wrong one is found.
#include "cli/tables/wiring.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "cli/tables/layer.h"
#include "kernel/apply/layer3_tables.h"

namespace mcast6::ctl {
namespace {

using E = L3Mc6GlbCfgEntry;

TEST(Wiring, of_every_table_holds) {
    std::set<std::string> names;
    for (const Layer layer : {Layer::kLayer2, Layer::kLayer3}) {
        for (const StoredTable& table : tablesOf(layer)) {
            EXPECT_EQ(table.wiringFaults(), std::vector<std::string>()) << table.name;
            names.insert(table.databaseName);
        }
    }
    EXPECT_EQ(names.size(), 27U);
}

const Filter<E> kVr = numberFilter("vr", "", &E::cfgKeyA);
const Filter<E> kVrf = needing(&kVr, routingTableFilter("vrf", "", &E::cfgKeyB));
const Filter<E> kType = numberFilter("type", "", &E::cfgKeyC);
const Filter<E> kAlsoVr = numberFilter("vr", "", &E::cfgKeyB);

Mcast6DbRes* open(const E&) { return nullptr; }

Query<E> byVr() { return {"VR", {&kVr}, open, MCAST6_DB_ReleaseGlbCfgIterator}; }

// A table without a fault.
Table<E> right() {
    return {.name = "t",
            .holds = "",
            .operations = kernel::kL3Mc6GlbCfg,
            .columns = {},
            .filters = {&kVr, &kVrf},
            .queries = {byKey<E>({&kVr, &kVrf}), byVr()},
            .layer = Layer::kLayer3,
            .vr = &kVr};
}

struct Fault {
    const char* name;
    void (*make)(Table<E>& table);
    const char* told;
};
void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

class WiringFaults : public testing::TestWithParam<Fault> {};

TEST(Wiring, of_a_right_table_holds) { EXPECT_EQ(wiringFaults(right()), std::vector<std::string>()); }

TEST_P(WiringFaults, are_found) {
    Table<E> table = right();
    GetParam().make(table);
    const std::vector<std::string> faults = wiringFaults(table);
    EXPECT_EQ(std::count(faults.begin(), faults.end(), std::string("t: ") + GetParam().told), 1)
        << (faults.empty() ? "none" : faults.front());
}

INSTANTIATE_TEST_SUITE_P(
    Wiring, WiringFaults,
    testing::Values(
        Fault{"needed", [](Table<E>& table) { table.filters = {&kVrf}; }, "not there: what is needed by --vrf"},
        Fault{"taken", [](Table<E>& table) { table.queries[0].takes.push_back(&kType); },
              "--type is not one of its filters: key"},
        Fault{"taken_twice", [](Table<E>& table) { table.queries[0].takes.push_back(&kVr); },
              "wrong number of filters: key"},
        Fault{"router", [](Table<E>& table) { table.vr = &kType; }, "the filter by VR is not one of the table's"},
        Fault{"name", [](Table<E>& table) { table.filters.push_back(&kAlsoVr); }, "two filters are named --vr"},
        Fault{"no_key", [](Table<E>& table) { table.queries = {byVr()}; }, "there are 0 keys"},
        Fault{"two_keys", [](Table<E>& table) { table.queries.push_back(table.queries[0]); }, "there are 2 keys"},
        Fault{"not_released", [](Table<E>& table) { table.queries[1].release = nullptr; },
              "is neither the key nor opened: VR"},
        Fault{"members", [](Table<E>& table) { table.queries[1].findsMembers = true; },
              "finds members of no entry: VR"},
        Fault{"entry", [](Table<E>& table) { table.entry.kind = EntryKind::kRoute; },
              "the words of the entry are incomplete"},
        Fault{"operation", [](Table<E>& table) { table.operations.step = nullptr; },
              "an operation of every table is missing"}),
    [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace mcast6::ctl
