#include "kernel/apply/forwarding_process.h"

#include "mcast6_db/iterator.h"
#include "mcast6_db/l3mc6_elb.h"
#include "mcast6_platform/engine.h"
#include "mcast6_platform/tables/l3mc6_elb.h"

namespace mcast6::kernel {
namespace {

// Object types and the connection type of the engine.
constexpr uint32_t kWriting = 0;
constexpr uint32_t kRemoving = 4;
constexpr uint32_t kConnection = 0;

// Calls 'work' with an engine object, which is released afterwards.
template <class Work>
uint32_t withObject(uint32_t type, Work work) {
    uint64_t object = 0;
    const uint32_t made = db_create_l3mc6_elb_obj(type, kConnection, &object);
    if (made != MCAST6_DB_OK) return made;
    const uint32_t code = work(object);
    db_release_l3mc6_elb_object(object);
    return code;
}

}  // namespace

uint32_t writeOutgoingInterface(const L3Mc6ElbEntry* entry) {
    return withObject(kWriting, [entry](uint64_t object) -> uint32_t {
        uint8_t row[layout::l3mc6_elb::kRecordSize] = {};
        MCAST6_DB_SetL3Elb(entry, row);
        const uint32_t set = db_set_l3mc6_elb_all_fields(object, row, sizeof row);
        if (set != MCAST6_DB_OK) return set;
        const uint32_t written = db_write_obj(object);
        return written == MCAST6_DB_EXISTS_OR_ABSENT ? uint32_t{MCAST6_DB_OK} : written;  // the table replaces
    });
}

uint32_t removeOutgoingInterface(const L3Mc6ElbEntry* entry) {
    return withObject(kRemoving, [entry](uint64_t object) {
        Mcast6DbKeyDesc descriptor{};
        uint8_t key[layout::l3mc6_elb::kRecordSize] = {};
        MCAST6_DB_SetL3ElbKey(&descriptor.keyWord, key, entry);
        return db_remove_obj(object, &descriptor, key);
    });
}

}  // namespace mcast6::kernel
