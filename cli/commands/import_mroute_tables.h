// The layer-3 tables as an import of routes fills them.
#pragma once

#include <cstdint>

#include "cli/commands/import.h"
#include "cli/commands/import_tables.h"
#include "kernel/capture/route.h"
#include "mcast6_db/l3mc6_mfib.h"

namespace mcast6::ctl {

class RouteTables {
public:
    RouteTables(TableChanges& changes, uint32_t vrId, uint32_t smoothVersion);

    // The global configuration of a VRF.
    void vrf(uint32_t vrfId);

    // The forwarding entry and its members, each in the table of its kind of link. The tables whose records have no smooth
    // version hold just these members of the route afterwards; the others keep what 'smooth' deletes. Returns the fate of
    // the forwarding entry.
    Fate route(const Route& route);

private:
    template <class Record>
    Fate bring(const kernel::TableOperations<Record>& table, const Record& record);
    void member(const L3Mc6MfibEntry& entry, const Link& link);

    TableChanges& changes_;
    uint32_t vrId_;
    Stamp stamp_;
};

}  // namespace mcast6::ctl
