// The global versions that IPv4 and IPv6 multicast share. There are few, and they change rarely: a map and a lock.
#include <array>
#include <cstring>
#include <map>
#include <mutex>
#include <new>

#include "mcast6_platform/engine.h"
#include "mcast6_platform/host.h"

namespace {

using Key = std::array<uint32_t, 3>;

constexpr size_t kVersionOffset = 20;

struct Versions {
    std::mutex mutex;
    std::map<Key, uint32_t> byKey;
};

// Never destroyed: the library may call until the process is gone.
Versions& versions() {
    static Versions* const all = new Versions;
    return *all;
}

Key keyOf(const void* record) {
    Key key;
    std::memcpy(key.data(), record, sizeof key);
    return key;
}

uint32_t versionOf(const void* record) {
    uint32_t version = 0;
    std::memcpy(&version, static_cast<const uint8_t*>(record) + kVersionOffset, sizeof version);
    return version;
}

}  // namespace

uint32_t MCAST_DB_ReadGlbVersion(void* record40) {
    if (record40 == nullptr) return MCAST6_DB_BAD_ARGUMENT;
    Versions& all = versions();
    const std::lock_guard lock(all.mutex);
    const auto version = all.byKey.find(keyOf(record40));
    if (version == all.byKey.end()) return MCAST6_DB_NO_SUCH_RECORD;
    std::memcpy(static_cast<uint8_t*>(record40) + kVersionOffset, &version->second, sizeof version->second);
    return MCAST6_DB_OK;
}

uint32_t MCAST_DB_UpdateGlbVersion(void* record40) {
    if (record40 == nullptr) return MCAST6_DB_BAD_ARGUMENT;
    Versions& all = versions();
    const std::lock_guard lock(all.mutex);
    const auto version = all.byKey.find(keyOf(record40));
    if (version == all.byKey.end()) return MCAST6_DB_NO_SUCH_RECORD;
    version->second = versionOf(record40);
    return MCAST6_DB_OK;
}

uint32_t MCAST_DB_WriteGlbVersion(void* record40) {
    if (record40 == nullptr) return MCAST6_DB_BAD_ARGUMENT;
    try {
        Versions& all = versions();
        const std::lock_guard lock(all.mutex);
        const bool isNew = all.byKey.try_emplace(keyOf(record40), versionOf(record40)).second;
        return isNew ? MCAST6_DB_OK : MCAST6_DB_EXISTS_OR_ABSENT;
    } catch (const std::bad_alloc&) {
        return MCAST6_DB_NO_MEMORY;
    }
}
