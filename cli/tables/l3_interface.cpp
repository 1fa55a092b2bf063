// l3-register-elb, l3-elb, l3-sub-elb, l3-vlan-elb: the members of layer-3 forwarding entries that go out by an
// interface. None of their records has a smooth version.
#include <fmt/format.h>

#include <memory>
#include <unordered_map>

#include "cli/tables/l3.h"
#include "kernel/apply/forwarding_process.h"
#include "mcast6_db/l3mc6_elb.h"
#include "mcast6_db/l3mc6_register_elb.h"
#include "mcast6_db/l3mc6_sub_elb.h"
#include "mcast6_db/l3mc6_vlan_elb.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

using Register = L3Mc6RegOifEntry;
using Plain = L3Mc6ElbEntry;
using Vlan = L3Mc6ElbEntryExt;
using Sub = L3Mc6ElbEntryExt;

// The fast scan of an entry's members, and the members that the tool's import makes.
constexpr uint8_t kForwards = 1;  // elbFlagD
// What the tables store of a VLAN, and of a word that they keep in a byte.
constexpr uint32_t kLargestVlan = 0xFFFF;
constexpr uint32_t kLargestByte = 0xFF;

constexpr const char* kOutgoingHelp = "Outgoing interface";

std::string instanceText(const Register& record) {
    switch (record.instType) {
        case L3_REG_INST_VLAN:
            return fmt::format("VLAN {}", record.instId);
        case L3_REG_INST_BRIDGE_DOMAIN:
            return fmt::format("BD {}", record.instId);
        case L3_REG_INST_NONE:
            return "";
        default:
            return fmt::format("{}:{}", record.instType, record.instId);
    }
}

Value instanceValue(const Register& record) {
    const std::string text = instanceText(record);
    return text.empty() ? Value() : Value(text);
}

Mcast6DbRes* openRegistersOfEntry(const Register& wanted) {
    Plain entry = keyOf<Plain>(wanted);
    entry.elbFlagA = wanted.regAttrC;
    return MCAST6_DB_CreateL3mcRegOifVSGIterator(&entry);
}

Mcast6DbRes* openForwarding(const Plain& wanted) {
    return MCAST6_DB_CreateL3ElbMcidIteratorFast(wanted.vrId, wanted.vrfId, wanted.groupAddr, wanted.sourceAddr);
}

Mcast6DbRes* openVlansOfEntry(const Vlan& wanted) {
    const L3Mc6MfibEntry entry = keyOf<L3Mc6MfibEntry>(wanted);
    constexpr uint32_t kFast = 1;
    return MCAST6_DB_CreateVlanElbMfibIterator(&entry, kFast);
}

Mcast6DbRes* openVlanOfEntry(const Vlan& wanted) {
    return newResource([&](Mcast6DbRes* resource) { return MCAST6_DB_CreateVlanElbScanIterator(&wanted, resource); });
}

Mcast6DbRes* openMembersOfEntry(const Plain& wanted) { return MCAST6_DB_CreateL3ElbMfibIteratorExt(&wanted); }

Query<Plain> byEntryAndFlag(const Filters<Plain>& takes) {
    Query<Plain> query = byEntry<Plain>(takes, openMembersOfEntry, MCAST6_DB_ReleaseL3ElbIterator);
    query.count = [](const Plain& wanted, uint32_t* count) { return MCAST6_DB_GetOutIfNum(&wanted, count); };
    return query;
}

const EntryFilters<Register>& kOfRegister = entryFilters<Register>();
const Filter<Register> kRegisterOif = interfaceFilter("oif", kOutgoingHelp, &Register::outIfIndex);
const Filter<Register> kInstType =
    numberFilter("inst-type", "Kind of instance: 0 VLAN, 1 bridge domain, 2 none", &Register::instType);
const Filter<Register> kInstId =
    interfaceFilter("inst-id", "VLAN, or bridge domain: its number or the bridge", &Register::instId);
const Filter<Register> kAttrC = numberFilter("attr-c", "regAttrC", &Register::regAttrC);

const EntryFilters<Plain>& kOfPlain = entryFilters<Plain>();
const Filter<Plain> kPlainOif = interfaceFilter("oif", kOutgoingHelp, &Plain::outIfIndex);
const Filter<Plain> kPlainFlagD = usually("1", numberFilter("flag-d", "elbFlagD", &Plain::elbFlagD));
const Filter<Plain> kFlagA = numberFilter("flag-a", "Low byte of elbFlagA", &Plain::elbFlagA, kLargestByte);

// Of both tables below.
const EntryFilters<Vlan>& kOfVlan = entryFilters<Vlan>();
const Filter<Vlan> kOif = interfaceFilter("oif", kOutgoingHelp, &Vlan::outIfIndex);
const Filter<Vlan> kVlan = numberFilter("vlan", "VLAN", &Vlan::instId, kLargestVlan);
const Filter<Sub> kSubif = interfaceFilter("subif", "Sub-interface", &Sub::subIfIndex);
const Filter<Sub> kFlagD = usually("1", numberFilter("flag-d", "elbFlagD", &Sub::elbFlagD));

// clang-format off
const Table<Register> kRegisters{
    .name = "l3-register-elb",
    .holds = "register interfaces of layer-3 forwarding entries",
    .operations = kernel::kL3Mc6RegisterElb,
    .entry = memberOfRoute<Register>(),
    .columns = withStamps(entryColumns<Register>({
        column("OIF", "outIfIndex", &Register::outIfIndex, ColumnKind::kInterface),
        column<Register>("INSTANCE", "instance", instanceValue),
        column(nullptr, "instType", &Register::instType),
        column(nullptr, "instId", &Register::instId),
        column(nullptr, "regAttrC", &Register::regAttrC),
    })),
    .filters = kOfRegister.with({&kRegisterOif, &kInstType, &kInstId, &kAttrC}),
    .queries = {
        {"entry and attribute", kOfRegister.with({&kAttrC}), openRegistersOfEntry, MCAST6_DB_ReleaseL3mcRegOifIterator},
        byKeyOfEntry<Register>(kOfRegister.with()),
        {"instance", {&kInstType, &kInstId},
         [](const Register& wanted) { return MCAST6_DB_CreateL3mcRegOifVlanIterator(&wanted); },
         MCAST6_DB_ReleaseL3mcRegOifIterator},
        {"outgoing interface", {&kRegisterOif},
         [](const Register& wanted) { return MCAST6_DB_CreateL3mcRegOifIfIndexIterator(wanted.outIfIndex); },
         MCAST6_DB_ReleaseL3mcRegOifIterator},
    },
    .layer = Layer::kLayer3,
    .vr = &kOfRegister.vr,
};

const Table<Plain> kPlains{
    .name = "l3-elb",
    .holds = "outgoing interfaces of layer-3 forwarding entries",
    .operations = kernel::kL3Mc6Elb,
    .entry = memberOfRoute<Plain>(),
    .columns = withStamps(entryColumns<Plain>({
        column("OIF", "outIfIndex", &Plain::outIfIndex, ColumnKind::kInterface),
        column("VLAN", "instId", &Plain::instId),
        column("FLAG D", "elbFlagD", &Plain::elbFlagD),
        column("FLAG A", "elbFlagA", &Plain::elbFlagA),
    })),
    .filters = kOfPlain.with({&kPlainOif, &kPlainFlagD, &kFlagA}),
    .queries = {
        byKey<Plain>(kOfPlain.with({&kPlainOif, &kPlainFlagD})),
        byEntryAndFlag(kOfPlain.with({&kFlagA})),
        {.name = "fast scan of an entry", .takes = kOfPlain.with({&kPlainFlagD}), .open = openForwarding,
         .release = MCAST6_DB_ReleaseL3ElbIterator,
         .serves = [](const Plain& wanted) { return wanted.elbFlagD == kForwards; }},
        {"outgoing interface", {&kPlainOif},
         [](const Plain& wanted) { return MCAST6_DB_CreateL3ElbIfindexIterator(wanted.outIfIndex); },
         MCAST6_DB_ReleaseL3ElbIterator},
    },
    .layer = Layer::kLayer3,
    .vr = &kOfPlain.vr,
    .memberByte = &Plain::elbFlagA,
};

const Table<Sub> kSubs{
    .name = "l3-sub-elb",
    .holds = "VLAN sub-interfaces that layer-3 forwarding entries go out by",
    .operations = {
        .databaseName = "l3mc6_sub_elb",
        .read = MCAST6_DB_ReadL3SubElb,
        .absentCode = MCAST6_DB_NO_SUCH_RECORD,
        .write = nullptr,
        .restamp = nullptr,
        .remove = nullptr,
        .merge = nullptr,
        .vrId = &Sub::vrId,
        .openAll = MCAST6_DB_CreateL3SubElbAllIterator,
        .step = MCAST6_DB_GetL3SubElbEntry,
        .release = MCAST6_DB_ReleaseL3SubElbIterator,
    },
    .entry = memberOfRoute<Sub>(),
    .columns = withStamps(entryColumns<Sub>({
        column("OIF", "outIfIndex", &Sub::outIfIndex, ColumnKind::kInterface),
        column("SUBIF", "subIfIndex", &Sub::subIfIndex, ColumnKind::kInterface),
        column("VLAN", "instId", &Sub::instId),
        column("FLAG D", "elbFlagD", &Sub::elbFlagD),
        column(nullptr, "elbFlagA", &Sub::elbFlagA),
    })),
    .filters = kOfVlan.with({&kOif, &kSubif, &kVlan, &kFlagD}),
    .queries = {
        byKey<Sub>(kOfVlan.with({&kSubif, &kVlan, &kFlagD})),
        {"outgoing interface of an entry", kOfVlan.with({&kOif, &kFlagD}),
         [](const Sub& wanted) { return MCAST6_DB_CreateL3mcVlanAllMemIterator(&wanted); },
         MCAST6_DB_ReleaseL3SubElbIterator},
        {"VLAN", {&kVlan},
         [](const Sub& wanted) { return MCAST6_DB_CreateL3mcVlanScanIterater(static_cast<uint16_t>(wanted.instId)); },
         MCAST6_DB_ReleaseL3SubElbIterator},
    },
    .layer = Layer::kLayer3,
    .vr = &kOfVlan.vr,
};

const Table<Vlan> kVlans{
    .name = "l3-vlan-elb",
    .holds = "VLAN members of layer-3 forwarding entries",
    .operations = kernel::kL3Mc6VlanElb,
    .entry = memberOfRoute<Vlan>(),
    .columns = withStamps(entryColumns<Vlan>({
        column("OIF", "outIfIndex", &Vlan::outIfIndex, ColumnKind::kInterface),
        column("VLAN", "instId", &Vlan::instId),
        column(nullptr, "elbFlagD", &Vlan::elbFlagD),
        column(nullptr, "elbFlagA", &Vlan::elbFlagA),
    })),
    .filters = kOfVlan.with({&kOif, &kVlan}),
    .queries = {
        byKey<Vlan>(kOfVlan.with({&kOif, &kVlan})),
        {"VLAN of an entry", kOfVlan.with({&kVlan}), openVlanOfEntry,
         releaseResource<MCAST6_DB_ReleaseVlanElbStatObject>},
        byEntry<Vlan>(kOfVlan.with(), openVlansOfEntry, MCAST6_DB_ReleaseVlanElbIterator),
        {"outgoing interface", {&kOif},
         [](const Vlan& wanted) { return MCAST6_DB_CreateVlanElbOutIfIterator(wanted.outIfIndex); },
         MCAST6_DB_ReleaseVlanElbIterator},
    },
    .layer = Layer::kLayer3,
    .vr = &kOfVlan.vr,
};
// clang-format on

// The members of a table that no query finds by entry: it is walked once, for the first entry that is asked about.
template <class Record>
class GroupedByEntry {
public:
    explicit GroupedByEntry(const Table<Record>& table) : table_(table) {}

    const std::vector<Record>& of(const EntryId& entry) {
        if (!walked_) {
            walk(table_, everything(table_),
                 [this](const Record& record) { groups_[table_.entry.idOf(record)].push_back(record); });
        }
        walked_ = true;
        static const std::vector<Record> kNone;
        const auto found = groups_.find(entry);
        return found == groups_.end() ? kNone : found->second;
    }

private:
    const Table<Record>& table_;
    std::unordered_map<EntryId, std::vector<Record>, EntryIdHash> groups_;
    bool walked_ = false;
};

}  // namespace

StoredTables l3InterfaceTables() {
    return {tableOfMembers(kRegisters), tableOfMembers(kPlains), tableOfMembers(kSubs), tableOfMembers(kVlans)};
}

void addInterfaceMembers(const Tool& tool, L3Members& members) {
    using Entry = L3Mc6MfibEntry;
    using Way = std::vector<std::string>;
    const auto plain = [](const Plain&) -> Way { return {"plain"}; };
    members.push_back(
        memberTable<Entry, Plain>(tool, kPlains, membersByQuery(kRouteWords, kPlains), {&Plain::outIfIndex, plain}));
    const auto grouped = [groups = std::make_shared<GroupedByEntry<Sub>>(kSubs)](
                             const Entry& entry, const std::function<void(const Sub&)>& visit) {
        for (const Sub& member : groups->of(kRouteWords.idOf(entry))) visit(member);
    };
    const auto sub = [&tool](const Sub& member) -> Way {
        const ColumnHead head{"", "subIfIndex", ColumnKind::kInterface};
        const RouterLinks& links = linksOf(tool, kSubs, member);
        return {fmt::format("sub-interface {}, VLAN {}", cellText(head, uint64_t{member.subIfIndex}, links),
                            member.instId)};
    };
    members.push_back(memberTable<Entry, Sub>(tool, kSubs, grouped, {&Sub::outIfIndex, sub}));
    const auto vlan = [](const Vlan& member) -> Way { return {fmt::format("VLAN {}", member.instId)}; };
    members.push_back(
        memberTable<Entry, Vlan>(tool, kVlans, membersByQuery(kRouteWords, kVlans), {&Vlan::outIfIndex, vlan}));
    const auto registers = [](const Register& member) -> Way {
        const std::string instance = instanceText(member);
        return {instance.empty() ? "register" : "register, " + instance};
    };
    members.push_back(memberTable<Entry, Register>(tool, kRegisters, membersByQuery(kRouteWords, kRegisters),
                                                   {&Register::outIfIndex, registers}));
}

}  // namespace mcast6::ctl
