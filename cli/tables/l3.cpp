#include "cli/tables/l3.h"

#include "mcast6_platform/engine.h"

namespace mcast6::ctl {

bool hasForwardingEntry(L3Mc6MfibEntry key) {
    const uint32_t code = MCAST6_DB_ReadL3MfibFast(&key);
    if (code == MCAST6_DB_SUCCESS) return true;
    if (code == MCAST6_DB_NO_SUCH_RECORD) return false;
    throw libraryFailure("reading l3mc6_mfib", code);
}

const StoredTables& l3Tables() {
    static const StoredTables kTables = [] {
        // Members that go with their entry are smoothed after it.
        StoredTables tables{l3MfibTable(), glbcfgTable()};
        for (const StoredTables& family : {l3InterfaceTables(), l3BridgeDomainTables(), mvpnTables()}) {
            tables.insert(tables.end(), family.begin(), family.end());
        }
        return tables;
    }();
    return kTables;
}

void addL3Tables(Commands& commands) {
    addL3Mfib(commands);
    const auto& filters = entryFilters<L3Mc6MfibEntry>();
    addLayer(commands, Layer::kLayer3, "l3", "layer-3", {filters.vr.option, filters.vrf.option});
}

}  // namespace mcast6::ctl
