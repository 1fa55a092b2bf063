// The layer-2 tables as an import of bridges writes them.
#pragma once

#include <cstdint>

#include "cli/commands/import.h"
#include "cli/commands/import_bridge_report.h"
#include "kernel/capture/bridge.h"

namespace mcast6::ctl {

// Brings captured state into the tables, and counts the fates of the records. Throws Failure when the library fails.
class BridgeTables {
public:
    BridgeTables(BridgeReport& report, uint32_t smoothVersion);

    void bridge(const Device& bridge);
    void vlan(const Device& bridge, uint32_t vlanId, bool snooping, bool querier, uint32_t mldVersion);
    void vlanPort(const Device& bridge, const Device& port, uint32_t vlanId, const VlanMembership& membership);
    void routerPort(const Device& bridge, const Device& port, uint32_t vlanId, const Tags& tags, uint32_t kind);
    void entry(const GroupRow& row);
    void member(const GroupRow& row, const Tags& tags);

private:
    template <class Record>
    void bring(const kernel::TableOperations<Record>& table, const Record& record);

    BridgeReport& report_;
    Stamp stamp_;
};

}  // namespace mcast6::ctl
