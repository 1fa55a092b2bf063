#include "kernel/apply/stored_version.h"

#include "kernel/apply/applier.h"
#include "kernel/apply/layer2_tables.h"
#include "kernel/apply/layer3_tables.h"

namespace mcast6::kernel {
namespace {

// Goes over the tables in turn until one has a newer record.
class Search {
public:
    Search(uint32_t smoothVersion, std::optional<uint32_t> vrId) : smoothVersion_(smoothVersion), vrId_(vrId) {}

    template <class Record>
    Search& in(const TableOperations<Record>& table) {
        if (found_) return *this;
        Walk<Record> records(table, table.openAll());
        for (Record record{}; !found_ && records.next(&record);) {
            if (vrId_ && record.*table.vrId != *vrId_) continue;
            if (record.*table.smoothVersion <= smoothVersion_) continue;
            found_ = StoredVersion{table.databaseName, record.*table.smoothVersion};
        }
        return *this;
    }

    std::optional<StoredVersion> found() const { return found_; }

private:
    uint32_t smoothVersion_;
    std::optional<uint32_t> vrId_;
    std::optional<StoredVersion> found_;
};

}  // namespace

// The short tables first: they mostly tell.
std::optional<StoredVersion> newerRoutes(uint32_t vrId, uint32_t smoothVersion) {
    return Search(smoothVersion, vrId).in(kL3Mc6GlbCfg).in(kL3Mc6BdUntagElb).in(kL3Mc6BdTnlElb).in(kL3Mc6Mfib).found();
}

std::optional<StoredVersion> newerBridges(uint32_t smoothVersion) {
    return Search(smoothVersion, std::nullopt)
        .in(kL2Mc6BdEnable)
        .in(kL2Mc6GlobalEnable)
        .in(kL2Mc6VlanEnable)
        .in(kL2Mc6VlanPort)
        .in(kL2Mc6BdUntagRt)
        .in(kL2Mc6BdTagRt)
        .in(kL2Mc6BdRtVxlanElb)
        .in(kL2Mc6BdMfib)
        .in(kL2Mc6VlanMfib)
        .in(kL2Mc6BdUntagElb)
        .in(kL2Mc6BdTagElb)
        .in(kL2Mc6BdVxlanElb)
        .in(kL2Mc6Elb)
        .found();
}

}  // namespace mcast6::kernel
