// l3-register-elb, l3-elb, l3-sub-elb, l3-vlan-elb: the members of layer-3 forwarding entries that go out by an interface. None
// of their records has a smooth version.
#include <fmt/format.h>

#include <array>
#include <map>
#include <memory>

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
constexpr const char* kFlagAHelp = "Low byte of elbFlagA";

// elbFlagD where it belongs to the key.
template <class Record>
Filter<Record> flagDFilter() {
    Filter<Record> filter = numberFilter("flag-d", "elbFlagD", &Record::elbFlagD);
    filter.otherwise = "1";
    return filter;
}

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

// clang-format off
const Table<Register> kRegisters{
    .name = "l3-register-elb",
    .databaseName = "l3mc6_register_elb",
    .holds = "register interfaces of layer-3 forwarding entries",
    .columns = withStamps(entryColumns<Register>({
        column("OIF", "outIfIndex", &Register::outIfIndex, ColumnKind::kInterface),
        column<Register>("INSTANCE", "instance", instanceValue),
        column(nullptr, "instType", &Register::instType),
        column(nullptr, "instId", &Register::instId),
        column(nullptr, "regAttrC", &Register::regAttrC),
    })),
    .filters = entryFilters<Register>({
        interfaceFilter("oif", kOutgoingHelp, &Register::outIfIndex),
        numberFilter("inst-type", "Kind of instance: 0 VLAN, 1 bridge domain, 2 none", &Register::instType),
        numberFilter("inst-id", "VLAN or bridge domain", &Register::instId),
        numberFilter("attr-c", "regAttrC", &Register::regAttrC),
    }),
    .queries = {
        {"entry and attribute", ofEntry({"attr-c"}), openRegistersOfEntry, MCAST6_DB_ReleaseL3mcRegOifIterator},
        byKey<Register>(ofEntry(), MCAST6_DB_ReadRegistOif),
        {"instance", {"inst-type", "inst-id"},
         [](const Register& wanted) { return MCAST6_DB_CreateL3mcRegOifVlanIterator(&wanted); },
         MCAST6_DB_ReleaseL3mcRegOifIterator},
        {"outgoing interface", {"oif"},
         [](const Register& wanted) { return MCAST6_DB_CreateL3mcRegOifIfIndexIterator(wanted.outIfIndex); },
         MCAST6_DB_ReleaseL3mcRegOifIterator},
        wholeTable<Register>(MCAST6_DB_CreateL3mcRegOifAllIterator, MCAST6_DB_ReleaseL3mcRegOifIterator),
    },
    .step = MCAST6_DB_GetL3mcRegOifEntry,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = nullptr,
    .remove = MCAST6_DB_DeleteRegistOif,
    .layer = Layer::kLayer3,
    .router = &Register::vrId,
};

const Table<Plain> kPlains{
    .name = "l3-elb",
    .databaseName = "l3mc6_elb",
    .holds = "outgoing interfaces of layer-3 forwarding entries",
    .columns = withStamps(entryColumns<Plain>({
        column("OIF", "outIfIndex", &Plain::outIfIndex, ColumnKind::kInterface),
        column("VLAN", "instId", &Plain::instId),
        column("FLAG D", "elbFlagD", &Plain::elbFlagD),
        column("FLAG A", "elbFlagA", &Plain::elbFlagA),
    })),
    .filters = entryFilters<Plain>({
        interfaceFilter("oif", kOutgoingHelp, &Plain::outIfIndex),
        flagDFilter<Plain>(),
        numberFilter("flag-a", kFlagAHelp, &Plain::elbFlagA, kLargestByte),
    }),
    .queries = {
        byKey<Plain>(ofEntry({"oif", "flag-d"}), MCAST6_DB_ReadL3Elb),
        {kMembersOfEntry, ofEntry({"flag-a"}),
         [](const Plain& wanted) { return MCAST6_DB_CreateL3ElbMfibIteratorExt(&wanted); },
         MCAST6_DB_ReleaseL3ElbIterator,
         [](const Plain& wanted, uint32_t* count) { return MCAST6_DB_GetOutIfNum(&wanted, count); }},
        {"fast scan of an entry", ofEntry({"flag-d"}), openForwarding, MCAST6_DB_ReleaseL3ElbIterator, nullptr, nullptr,
         [](const Plain& wanted) { return wanted.elbFlagD == kForwards; }},
        {"outgoing interface", {"oif"},
         [](const Plain& wanted) { return MCAST6_DB_CreateL3ElbIfindexIterator(wanted.outIfIndex); },
         MCAST6_DB_ReleaseL3ElbIterator},
        wholeTable<Plain>(MCAST6_DB_CreateL3ElbAllIterator, MCAST6_DB_ReleaseL3ElbIterator),
    },
    .step = MCAST6_DB_GetL3ElbEntry,
    .absentCodes = {MCAST6_DB_NO_SUCH_RECORD},
    .smoothVersion = nullptr,
    .remove = kernel::removeOutgoingInterface,
    .layer = Layer::kLayer3,
    .router = &Plain::vrId,
};

const Table<Sub> kSubs{
    .name = "l3-sub-elb",
    .databaseName = "l3mc6_sub_elb",
    .holds = "VLAN sub-interfaces that layer-3 forwarding entries go out by",
    .columns = withStamps(entryColumns<Sub>({
        column("OIF", "outIfIndex", &Sub::outIfIndex, ColumnKind::kInterface),
        column("SUBIF", "subIfIndex", &Sub::subIfIndex, ColumnKind::kInterface),
        column("VLAN", "instId", &Sub::instId),
        column("FLAG D", "elbFlagD", &Sub::elbFlagD),
        column(nullptr, "elbFlagA", &Sub::elbFlagA),
    })),
    .filters = entryFilters<Sub>({
        interfaceFilter("oif", kOutgoingHelp, &Sub::outIfIndex),
        interfaceFilter("subif", "Sub-interface", &Sub::subIfIndex),
        numberFilter("vlan", "VLAN", &Sub::instId, kLargestVlan),
        flagDFilter<Sub>(),
    }),
    .queries = {
        byKey<Sub>(ofEntry({"subif", "vlan", "flag-d"}), MCAST6_DB_ReadL3SubElb),
        {"outgoing interface of an entry", ofEntry({"oif", "flag-d"}),
         [](const Sub& wanted) { return MCAST6_DB_CreateL3mcVlanAllMemIterator(&wanted); },
         MCAST6_DB_ReleaseL3SubElbIterator},
        {"VLAN", {"vlan"},
         [](const Sub& wanted) { return MCAST6_DB_CreateL3mcVlanScanIterater(static_cast<uint16_t>(wanted.instId)); },
         MCAST6_DB_ReleaseL3SubElbIterator},
        wholeTable<Sub>(MCAST6_DB_CreateL3SubElbAllIterator, MCAST6_DB_ReleaseL3SubElbIterator),
    },
    .step = MCAST6_DB_GetL3SubElbEntry,
    .absentCodes = {MCAST6_DB_NO_SUCH_RECORD},
    .smoothVersion = nullptr,
    .remove = nullptr,
    .layer = Layer::kLayer3,
    .router = &Sub::vrId,
};

const Table<Vlan> kVlans{
    .name = "l3-vlan-elb",
    .databaseName = "l3mc6_vlan_elb",
    .holds = "VLAN members of layer-3 forwarding entries",
    .columns = withStamps(entryColumns<Vlan>({
        column("OIF", "outIfIndex", &Vlan::outIfIndex, ColumnKind::kInterface),
        column("VLAN", "instId", &Vlan::instId),
        column(nullptr, "elbFlagD", &Vlan::elbFlagD),
        column(nullptr, "elbFlagA", &Vlan::elbFlagA),
    })),
    .filters = entryFilters<Vlan>({
        interfaceFilter("oif", kOutgoingHelp, &Vlan::outIfIndex),
        numberFilter("vlan", "VLAN", &Vlan::instId, kLargestVlan),
    }),
    .queries = {
        byKey<Vlan>(ofEntry({"oif", "vlan"}), MCAST6_DB_ReadVlanElb),
        {"VLAN of an entry", ofEntry({"vlan"}), openVlanOfEntry, releaseResource<MCAST6_DB_ReleaseVlanElbStatObject>},
        {kMembersOfEntry, ofEntry(), openVlansOfEntry, MCAST6_DB_ReleaseVlanElbIterator},
        {"outgoing interface", {"oif"},
         [](const Vlan& wanted) { return MCAST6_DB_CreateVlanElbOutIfIterator(wanted.outIfIndex); },
         MCAST6_DB_ReleaseVlanElbIterator},
        wholeTable<Vlan>(MCAST6_DB_CreateVlanElbAllIterator, MCAST6_DB_ReleaseVlanElbIterator),
    },
    .step = MCAST6_DB_GetVlanElbEntry,
    .absentCodes = {MCAST6_DB_NO_RECORD},
    .smoothVersion = nullptr,
    .remove = MCAST6_DB_RemoveVlanElb,
    .layer = Layer::kLayer3,
    .router = &Vlan::vrId,
};
// clang-format on

// The members of a table that no query finds by entry: it is walked once, for the first entry that is asked about.
template <class Record>
class GroupedByEntry {
public:
    explicit GroupedByEntry(const Table<Record>& table) : table_(table) {}

    const std::vector<Record>& of(const L3Mc6MfibEntry& entry) {
        if (!walked_) {
            walk(table_, everything(table_),
                 [this](const Record& record) { groups_[wordsOf(record)].push_back(record); });
        }
        walked_ = true;
        static const std::vector<Record> kNone;
        const auto found = groups_.find(wordsOf(entry));
        return found == groups_.end() ? kNone : found->second;
    }

private:
    using Words = std::array<uint32_t, 10>;

    template <class Named>
    static Words wordsOf(const Named& named) {
        const auto& group = named.groupAddr.word;
        const auto& source = named.sourceAddr.word;
        return {named.vrId, named.vrfId, group[0],  group[1],  group[2],
                group[3],   source[0],   source[1], source[2], source[3]};
    }

    const Table<Record>& table_;
    std::map<Words, std::vector<Record>> groups_;
    bool walked_ = false;
};

}  // namespace

StoredTables l3InterfaceTables() {
    return {tableOfMembers(kRegisters), tableOfMembers(kPlains), tableOfMembers(kSubs), tableOfMembers(kVlans)};
}

const Table<Register>& registerElbTable() { return kRegisters; }
const Table<Plain>& l3ElbTable() { return kPlains; }
const Table<Vlan>& l3VlanElbTable() { return kVlans; }

void addInterfaceMembers(const Tool& tool, L3Members& members) {
    using Entry = L3Mc6MfibEntry;
    using Way = std::vector<std::string>;
    const auto plain = [](const Plain&) -> Way { return {"plain"}; };
    members.push_back(memberTable<Entry, Plain>(tool, kPlains, membersByQuery<Entry, Plain>(kPlains, nameEntry),
                                                {&Plain::outIfIndex, plain}));
    const auto grouped = [groups = std::make_shared<GroupedByEntry<Sub>>(kSubs)](
                             const Entry& entry, const std::function<void(const Sub&)>& visit) {
        for (const Sub& member : groups->of(entry)) visit(member);
    };
    const auto sub = [&tool](const Sub& member) -> Way {
        const ColumnHead head{"", "subIfIndex", ColumnKind::kInterface};
        const RouterLinks& links = linksOf(tool, kSubs, member);
        return {fmt::format("sub-interface {}, VLAN {}", cellText(head, uint64_t{member.subIfIndex}, links),
                            member.instId)};
    };
    members.push_back(memberTable<Entry, Sub>(tool, kSubs, grouped, {&Sub::outIfIndex, sub}));
    const auto vlan = [](const Vlan& member) -> Way { return {fmt::format("VLAN {}", member.instId)}; };
    members.push_back(memberTable<Entry, Vlan>(tool, kVlans, membersByQuery<Entry, Vlan>(kVlans, nameEntry),
                                               {&Vlan::outIfIndex, vlan}));
    const auto registers = [](const Register& member) -> Way {
        const std::string instance = instanceText(member);
        return {instance.empty() ? "register" : "register, " + instance};
    };
    members.push_back(memberTable<Entry, Register>(
        tool, kRegisters, membersByQuery<Entry, Register>(kRegisters, nameEntry), {&Register::outIfIndex, registers}));
}

}  // namespace mcast6::ctl
