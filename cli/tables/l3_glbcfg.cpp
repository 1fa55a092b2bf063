// glbcfg: the layer-3 global configuration. The tool takes the key's three words as VR, VRF and address type, and
// cfgWord3 as the switch of multicast routing.
#include "cli/tables/l3.h"
#include "mcast6_db/l3mc6_glbcfg.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

using E = L3Mc6GlbCfgEntry;

uint32_t countOfVrf(const E& wanted, uint32_t* count) {
    *count = MCAST6_DB_GetGlbCfgNum(wanted.cfgKeyA, wanted.cfgKeyB);
    return MCAST6_DB_SUCCESS;
}

const Filter<E> kVr = numberFilter("vr", "Virtual router", &E::cfgKeyA);
const Filter<E> kVrf = needing(
    &kVr, routingTableFilter("vrf", "VRF, the routing table's number, main, default or local (in VR 0 without --vr)",
                             &E::cfgKeyB));
const Filter<E> kType = usually("2", numberFilter("type", "Address type; 2 is IPv6", &E::cfgKeyC));

// clang-format off
const Table<E> kTable{
    .name = "glbcfg",
    .holds = "layer-3 global configurations",
    .operations = kernel::kL3Mc6GlbCfg,
    .columns = withStamps<E>({
        column("VR", "cfgKeyA", &E::cfgKeyA),
        column("VRF", "cfgKeyB", &E::cfgKeyB),
        column("TYPE", "cfgKeyC", &E::cfgKeyC),
        column<E>("ROUTING", "multicastRouting", [](const E& record) -> Value { return record.cfgWord3 != 0; }),
        column("GLOBAL VERSION", "glbVersion", &E::glbVersion),
        column(nullptr, "cfgWord3", &E::cfgWord3),
        column(nullptr, "cfgWord6", &E::cfgWord6),
        column(nullptr, "cfgWord7", &E::cfgWord7),
    }, &E::smoothVersion),
    .filters = {&kVr, &kVrf, &kType},
    .queries = {
        byKey<E>({&kVr, &kVrf, &kType}),
        {"VR and VRF", {&kVr, &kVrf},
         [](const E& wanted) { return MCAST6_DB_CreateGlbCfgIteratorByHashKey(wanted.cfgKeyA, wanted.cfgKeyB); },
         MCAST6_DB_ReleaseGlbCfgIterator, countOfVrf},
    },
    .layer = Layer::kLayer3,
    .vr = &kVr,
    .countAll = MCAST6_DB_GetGlbCfgCount,
};
// clang-format on

}  // namespace

StoredTable glbcfgTable() { return storedTable(kTable); }

}  // namespace mcast6::ctl
