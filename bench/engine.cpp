#include "mcast6_platform/engine.h"

#include <arpa/inet.h>

#include <cstring>
#include <ctime>

#include "bench/subjects.h"
#include "mcast6_platform/tables/l3mc6_mfib.h"

namespace mcast6::bench {
namespace {

enum ObjectType : uint32_t { kWrite = 0, kUpdate = 1, kRead = 3, kRemove = 4, kIterate = 5, kCount = 9 };

constexpr uint32_t kRecordSize = layout::l3mc6_mfib::kRecordSize;
constexpr uint32_t kKeySize = 40;

// The parts of the primary key in order; the keys of the two queries are the first 24 and the first 8 bytes of it.
struct EngineKey {
    std::array<std::byte, kKeySize> bytes;
};

struct EngineRow {
    std::array<std::byte, kRecordSize> bytes;
};

struct KeyDescriptor {
    uint32_t keyWord;
    uint32_t zero[3];
};

constexpr KeyDescriptor kPrimary{0x00010028, {}};
constexpr KeyDescriptor kByGroup{0x05090018, {}};
constexpr KeyDescriptor kByVrf{0x03090008, {}};

template <class Value>
void put(std::byte* place, Value value) {
    std::memcpy(place, &value, sizeof value);
}

void putAddress(std::byte* place, const std::array<uint32_t, 4>& words) {
    for (const uint32_t word : words) {
        put(place, htonl(word));
        place += sizeof word;
    }
}

template <class Value>
Value valueAt(const EngineRow& row, size_t offset) {
    Value value;
    std::memcpy(&value, row.bytes.data() + offset, sizeof value);
    return value;
}

class Engine {
public:
    using Record = EngineRow;
    using Key = EngineKey;
    static constexpr bool kHasHandles = true;

    static Key key(const Seed& seed) {
        Key key;
        put(key.bytes.data(), seed.vrId);
        put(key.bytes.data() + 4, seed.vrfId);
        putAddress(key.bytes.data() + 8, seed.group);
        putAddress(key.bytes.data() + 24, seed.source);
        return key;
    }

    static Record record(const Seed& seed) {
        Record row{};
        std::byte* const bytes = row.bytes.data();
        std::memcpy(bytes, key(seed).bytes.data(), kKeySize);
        put(bytes + 44, seed.attribute(4));
        put(bytes + 48, seed.inIfIndex);
        put(bytes + 52, seed.regIfIndex);
        put(bytes + 64, seed.attribute(10));
        put(bytes + 88, seed.attribute(15));
        put(bytes + 168, uint32_t{1});
        put(bytes + 176, uint32_t{1});
        put(bytes + 180, seed.errorCode);
        return row;
    }

    static uint64_t digest(const Record& row) {
        return (uint64_t{ntohl(valueAt<uint32_t>(row, 36))} + valueAt<uint32_t>(row, 48) +
                valueAt<uint32_t>(row, 180)) *
                   (valueAt<uint32_t>(row, 176) + 1) +
               valueAt<uint32_t>(row, 88);
    }

    bool write(const Record& row) {
        const Object object(kWrite);
        const uint32_t code = db_set_l3mc6_mfib_all_fields(object.handle, row.bytes.data(), kRecordSize);
        if (code != 0) return false;
        const uint32_t written = db_write_obj(object.handle);
        return written == 0 || written == MCAST6_DB_EXISTS_OR_ABSENT;
    }

    bool read(const Key& key, Record& row) {
        const Object object(kRead);
        return db_read_obj_with_buf(object.handle, &kPrimary, key.bytes.data(), row.bytes.data(), kRecordSize) == 0;
    }

    bool fastRead(const Key& key, Record& row) {
        if (cached == 0 && db_create_l3mc6_mfib_cache_object(kRead, 0, &cached) != 0) return false;
        return db_reset_l3mc6_mfib_cache_object(cached) == 0 &&
               db_read_obj_with_buf(cached, &kPrimary, key.bytes.data(), row.bytes.data(), kRecordSize) == 0;
    }

    bool update(const Key& key, uint32_t smoothVersion) {
        const Object object(kUpdate);
        return db_set_l3mc6_mfib_smoothVersion(object.handle, smoothVersion) == 0 &&
               db_set_l3mc6_mfib_timeStampSmooth(object.handle, static_cast<uint64_t>(time(nullptr))) == 0 &&
               db_update_obj(object.handle, &kPrimary, key.bytes.data()) == 0;
    }

    bool erase(const Key& key) {
        const Object object(kRemove);
        return db_remove_obj(object.handle, &kPrimary, key.bytes.data()) == 0;
    }

    bool first(Query query, const Key& key, Record& row) {
        const Object object(kIterate);
        uint64_t iterator = 0;
        return open(object, query, key, iterator) && next(object, iterator, row);
    }

    template <class Visit>
    void walk(Query query, const Key& key, const Visit& visit) {
        const Object object(kIterate);
        uint64_t iterator = 0;
        if (!open(object, query, key, iterator)) return;
        Record row;
        while (next(object, iterator, row)) visit(row);
    }

    uint64_t count(Query query, const Key& key) {
        const Object object(kCount);
        uint64_t counted = 0;
        auto* const place = reinterpret_cast<uint32_t*>(&counted);
        const KeyDescriptor* const descriptor = descriptorOf(query);
        const uint32_t code = descriptor == nullptr ? db_get_table_record_count(object.handle, place)
                                                    : db_get_table_record_count_by_key(object.handle, descriptor,
                                                                                       key.bytes.data(), place);
        return code == 0 ? counted : 0;
    }

    bool createObject() {
        const Object object(kRead);
        return object.handle != 0;
    }

    bool createIterator() {
        const Object object(kIterate);
        uint64_t iterator = 0;
        return open(object, Query::all, {}, iterator);
    }

private:
    struct Object {
        explicit Object(uint32_t objectType) { db_create_l3mc6_mfib_obj(objectType, 0, &handle); }
        Object(const Object&) = delete;
        Object& operator=(const Object&) = delete;
        ~Object() { db_release_l3mc6_mfib_object(handle); }

        uint64_t handle = 0;
    };

    static const KeyDescriptor* descriptorOf(Query query) {
        switch (query) {
            case Query::all:
                return nullptr;
            case Query::group:
                return &kByGroup;
            case Query::vrf:
                return &kByVrf;
        }
        return nullptr;
    }

    static bool open(const Object& object, Query query, const Key& key, uint64_t& iterator) {
        const KeyDescriptor* const descriptor = descriptorOf(query);
        const uint32_t oneAtATime = 1;
        return db_create_root_iter(object.handle, descriptor, descriptor != nullptr ? key.bytes.data() : nullptr,
                                   &iterator) == 0 &&
               db_set_root_iterator_property(iterator, 0, &oneAtATime, sizeof oneAtATime) == 0;
    }

    static bool next(const Object& object, uint64_t iterator, Record& row) {
        return db_root_iterator_next(iterator) == 0 &&
               db_read_obj_with_buf(object.handle, nullptr, nullptr, row.bytes.data(), kRecordSize) == 0;
    }

    uint64_t cached = 0;
};

}  // namespace

void measureEngine(const Workload& workload, const Settings& settings, Findings& findings) {
    Measurement<Engine>(workload, settings, findings).run();
}

}  // namespace mcast6::bench
