#include "kernel/apply/layer3_tables.h"

namespace mcast6::kernel {

Mcast6DbRes* openVlanMembers(const L3Mc6ElbEntryExt* member) {
    constexpr uint32_t kFast = 1;
    L3Mc6MfibEntry entry{};
    entry.vrId = member->vrId;
    entry.vrfId = member->vrfId;
    entry.groupAddr = member->groupAddr;
    entry.sourceAddr = member->sourceAddr;
    return MCAST6_DB_CreateVlanElbMfibIterator(&entry, kFast);
}

}  // namespace mcast6::kernel
