// Routes into the layer-3 tables. docs/mcast6ctl.md tells how the members of a route map.
#pragma once

#include <cstdint>
#include <unordered_set>

#include "kernel/apply/applier.h"
#include "kernel/link_table.h"
#include "mcast6_db/l3mc6_mfib.h"

namespace mcast6::kernel {

class RouteTables {
public:
    // All records belong to the VR. 'links', which outlives this, tells the kinds of outgoing interfaces; one that it
    // does not have is a plain interface.
    RouteTables(const LinkTable& links, uint32_t vrId, uint32_t smoothVersion);

    // One group of steps: the configuration of the VRF when this is its first route, the forwarding entry, and its
    // members, each in the table of its kind of link. The tables whose records have no smooth version hold just these
    // members of the route afterwards; the others keep what 'smooth' deletes. A route that cannot forward brings its
    // VRF's configuration alone. Returns the fate of the forwarding entry. Throws TableError.
    //
    // 'isFirst': no route with the same table, source and group was given before. Then nothing is looked up in tables
    // that were empty before the first route.
    Fate route(const Route& route, bool isFirst = false);

    TableChanges changes() const { return applier_.changes(); }

private:
    using Entry = L3Mc6MfibEntry;
    using Stored = Applier::Stored;

    // A kind of link: which links are of it, and how one becomes a member.
    struct LinkKind {
        bool (*matches)(const Link& link);
        void (RouteTables::*bring)(const Entry& entry, const Link& link, Fate fateOfEntry);
    };
    static const LinkKind kLinkKinds[];
    static const LinkKind& kindOf(const Link& link);

    template <auto kTable, auto kMake>
    void bringMember(const Entry& entry, const Link& link, Fate fateOfEntry);
    template <auto kTable, auto kMake>
    void removeVanished(const Entry& entry, const Route& route, Fate fateOfEntry);

    void bringVrf(uint32_t vrfId);
    const Link& linkOf(uint32_t index);
    uint32_t registerOf(const Route& route);

    const LinkTable& links_;
    uint32_t vrId_;
    Applier applier_;
    std::unordered_set<uint32_t> vrfs_;
    Link unknown_;
};

}  // namespace mcast6::kernel
