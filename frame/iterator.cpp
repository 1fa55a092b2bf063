// Iterator handles, object caches and fast counts: the base of those of the tables.
#include "mcast6_db/iterator.h"

#include "frame/operations.h"
#include "mcast6_db/context.h"

namespace mcast6 {

namespace {

constexpr Counter kCreateFailed{55, "creations failed"};
constexpr Counter kResetFailed{56, "resets failed"};

// Counters and outcomes of the cached objects, in the form of a table.
struct Cache {
    static constexpr uint32_t logId = kLogLayer3;
    static constexpr Counter counters[]{kCreateFailed, kResetFailed};
    static constexpr CacheOutcomes onCache{
        .createFailed = {dfx(kCreateFailed),
                         logObject("Failed to create cache object, objType:%d, connType:%d, ret:%d"), returns(1)},
        .resetFailed = {dfx(kResetFailed), logObject("Failed to reset cache object, objType:%d, connType:%d, ret:%d"),
                        returns(1)},
    };
};

// Creates the object and the root iterator of a handle; on failure neither is left. Releasing the object releases its
// root iterator, so a failed property releases both.
bool buildIter(const Mcast6DbIterFuncs& funcs, const Mcast6DbKeyDesc* descriptor, const void* key, Mcast6DbRes& built) {
    if (funcs.create(kIterateObject, kConnType, &built.object) != kOk) return false;
    if (db_create_root_iter(built.object, descriptor, key, &built.rootIter) == kOk &&
        setOneRecordPerStep(built.rootIter) == kOk) {
        return true;
    }
    funcs.release(built.object);
    return false;
}

}  // namespace

}  // namespace mcast6

using namespace mcast6;

Mcast6DbRes* MCAST6_DB_CreateIterCommon(const Mcast6DbIterFuncs* funcs, const Mcast6DbKeyDesc* descriptor,
                                        const void* key) {
    Mcast6DbRes built{};
    if (!buildIter(*funcs, descriptor, key, built)) return nullptr;
    auto* const iterator = static_cast<Mcast6DbRes*>(MCAST6_DB_Malloc(sizeof built));
    if (iterator == nullptr) {
        funcs->release(built.object);
        return nullptr;
    }
    *iterator = built;
    return iterator;
}

uint32_t MCAST6_DB_CreateIterCommonWithDbRes(Mcast6DbRes* resource, const Mcast6DbIterFuncs* funcs,
                                             const Mcast6DbKeyDesc* descriptor, const void* key) {
    if (resource == nullptr) return kFailed;
    Mcast6DbRes built{};
    if (!buildIter(*funcs, descriptor, key, built)) return kFailed;
    *resource = built;
    return kOk;
}

uint32_t MCAST6_DB_CreateObjCache(uint32_t objType, uint32_t connType, Mcast6DbHandle* slot,
                                  const Mcast6DbCacheFuncs* funcs) {
    return obtainCached<Cache, Cache::onCache>(objType, connType, slot, *funcs);
}

uint32_t MCAST6_DB_GetCountFast(const Mcast6DbCacheFuncs* funcs, Mcast6DbHandle* slot) {
    if (funcs == nullptr || funcs->create == nullptr || funcs->reset == nullptr) return 0;
    if (MCAST6_DB_CreateObjCache(kCountObject, kConnType, slot, funcs) != kOk) return 0;
    CountWord counted;
    const uint32_t code = db_get_table_record_count(*slot, &counted.low);
    if (code == kOk) return counted.low;
    logLine(kLogLayer3, "[GetCountFast]Failed to get db count, ret:%d", code);
    return 0;
}
