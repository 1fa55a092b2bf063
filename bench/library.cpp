#include "bench/subjects.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/l3mc6_mfib_query.h"

namespace mcast6::bench {
namespace {

constexpr uint32_t kReadObject = 3;

struct LibraryKey {
    uint32_t vrId;
    uint32_t vrfId;
    Mcast6Ipv6Addr group;
    Mcast6Ipv6Addr source;
};

Mcast6Ipv6Addr address(const std::array<uint32_t, 4>& words) { return {{words[0], words[1], words[2], words[3]}}; }

void putKey(const LibraryKey& key, L3Mc6MfibEntry& record) {
    record.vrId = key.vrId;
    record.vrfId = key.vrfId;
    record.groupAddr = key.group;
    record.sourceAddr = key.source;
}

class Library {
public:
    using Record = L3Mc6MfibEntry;
    using Key = LibraryKey;
    static constexpr bool kHasHandles = true;

    static Key key(const Seed& seed) { return {seed.vrId, seed.vrfId, address(seed.group), address(seed.source)}; }

    static Record record(const Seed& seed) {
        Record record{};
        putKey(key(seed), record);
        record.inIfIndex = seed.inIfIndex;
        record.regIfIndex = seed.regIfIndex;
        record.attr23 = seed.errorCode;
        record.attr4 = seed.attribute(4);
        record.attr10 = seed.attribute(10);
        record.attr15 = seed.attribute(15);
        record.appSrcPid = 1;
        record.smoothVersion = 1;
        return record;
    }

    static uint64_t digest(const Record& record) {
        return (uint64_t{record.sourceAddr.word[3]} + record.inIfIndex + record.attr23) * (record.smoothVersion + 1) +
               record.attr15;
    }

    bool write(const Record& record) { return MCAST6_DB_WriteL3Mfib(&record) == 0; }

    bool read(const Key& key, Record& record) {
        putKey(key, record);
        return MCAST6_DB_ReadL3Mfib(&record) == 0;
    }

    bool fastRead(const Key& key, Record& record) {
        putKey(key, record);
        return MCAST6_DB_ReadL3MfibFast(&record) == 0;
    }

    bool update(const Key& key, uint32_t smoothVersion) {
        putKey(key, named);
        named.smoothVersion = smoothVersion;
        return MCAST6_DB_UpdateL3MfibSmoothVersion(&named) == 0;
    }

    bool erase(const Key& key) {
        putKey(key, named);
        return MCAST6_DB_DeleteL3Mfib(&named) == 0;
    }

    bool first(Query query, const Key& key, Record& record) {
        Mcast6DbRes iterator{};
        if (!open(query, key, iterator)) return false;
        const uint32_t code = MCAST6_DB_GetL3MfibEntry(&iterator, &record);
        MCAST6_DB_ReleaseL3MfibObject(iterator.object);
        return code == 0;
    }

    template <class Visit>
    void walk(Query query, const Key& key, const Visit& visit) {
        Mcast6DbRes iterator{};
        if (!open(query, key, iterator)) return;
        Record record;
        while (MCAST6_DB_GetL3MfibEntry(&iterator, &record) == 0) visit(record);
        MCAST6_DB_ReleaseL3MfibObject(iterator.object);
    }

    uint64_t count(Query query, const Key& key) {
        uint32_t counted = 0;
        putKey(key, named);
        switch (query) {
            case Query::all:
                return MCAST6_DB_GetL3MfibCnt(&counted) == 0 ? counted : 0;
            case Query::group:
                return MCAST6_DB_GetL3MfibNumByGroup(&named, &counted) == 0 ? counted : 0;
            case Query::vrf:
                return MCAST6_DB_GetL3MfibFwdTotalNum(&named, &counted) == 0 ? counted : 0;
        }
        return 0;
    }

    bool createObject() {
        Mcast6DbHandle object = 0;
        if (MCAST6_DB_CreateL3MfibObject(kReadObject, 0, &object) != 0) return false;
        MCAST6_DB_ReleaseL3MfibObject(object);
        return true;
    }

    bool createIterator() {
        Mcast6DbRes* const iterator = MCAST6_DB_CreateL3MfibIter();
        MCAST6_DB_ReleaseL3MfibIter(iterator);
        return iterator != nullptr;
    }

private:
    bool open(Query query, const Key& key, Mcast6DbRes& iterator) {
        putKey(key, named);
        switch (query) {
            case Query::all:
                return MCAST6_DB_CreateL3MfibIterWithDbResCommon(&iterator, nullptr, nullptr) == 0;
            case Query::group:
                return MCAST6_DB_CreateL3MfibIterByGrpAddr(&iterator, &named) == 0;
            case Query::vrf:
                return MCAST6_DB_CreateL3MfibIterByVrAndVrf(&iterator, &named) == 0;
        }
        return false;
    }

    Record named{};  // names an entry by its key
};

}  // namespace

void measureLibrary(const Workload& workload, const Settings& settings, Findings& findings) {
    Measurement<Library>(workload, settings, findings).run();
}

}  // namespace mcast6::bench
