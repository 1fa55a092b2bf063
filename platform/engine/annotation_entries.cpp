// What the processes of a device agree on beside the tables of the library, kept in the store: the C entries for global
// versions (host.h) and for link names (platform.h). Inside a batch they are steps of it like any other.
#include <array>
#include <cstring>
#include <memory>
#include <string_view>

#include "mcast6_platform/engine.h"
#include "mcast6_platform/host.h"
#include "mcast6_platform/platform.h"
#include "platform/engine/answers.h"
#include "platform/engine/process_engine.h"
#include "platform/schema/catalog.h"
#include "platform/schema/link_name.h"

using mcast6::engine::codeOf;
using mcast6::engine::Engine;
using mcast6::engine::engineOpenedIfNeeded;
using mcast6::engine::guarded;
using mcast6::engine::refused;

namespace schema = mcast6::schema;
namespace store = mcast6::store;

namespace {

// The row of global_version; a caller's record has the same words at other places.
struct Version {
    std::array<uint32_t, 3> key;
    uint32_t version;
};
constexpr size_t kVersionOffset = 20;
constexpr uint64_t kVersionField = uint64_t{1} << 3;

// The row of link_name, whose primary key is its first three words.
struct LinkName {
    uint32_t vrId;
    uint32_t layer;
    uint32_t ifIndex;
    std::array<char, schema::link_name::kNameWidth> name;
};
enum LinkNameIndex : uint32_t { kByLayer, kByName };

template <class Row>
std::byte* bytesOf(Row& row) {
    return reinterpret_cast<std::byte*>(&row);
}
template <class Row>
const std::byte* bytesOf(const Row& row) {
    return reinterpret_cast<const std::byte*>(&row);
}

Version versionFrom(const void* record40) {
    Version row;
    std::memcpy(&row.key, record40, sizeof row.key);
    std::memcpy(&row.version, static_cast<const std::byte*>(record40) + kVersionOffset, sizeof row.version);
    return row;
}

// Calls step(store) on the open store.
template <class Step>
uint32_t onStore(const Step& step) noexcept {
    Engine* const engine = engineOpenedIfNeeded();
    if (engine == nullptr) return refused(MCAST6_DB_NO_MEMORY);
    return guarded([&] { return step(engine->front()); });
}

bool isLayer(uint32_t layer) { return layer == 2 || layer == 3; }

// Sets the name of a row. False when it is too long.
bool setName(LinkName& row, std::string_view name) {
    row.name.fill('\0');
    if (name.size() >= row.name.size()) return false;
    name.copy(row.name.data(), name.size());
    return true;
}

// Calls visit(row) for the committed rows that a scan finds, until it returns false. 15005 when there was none.
template <class Visit>
uint32_t walkLinkNames(LinkNameIndex index, const std::byte* key, const Visit& visit) noexcept {
    return onStore([&](store::Store& links) -> uint32_t {
        std::unique_ptr<store::Scan> scan;
        store::Answer answer = links.open(schema::linkNameTable(), {store::ScanRange::Order::index, index, key}, scan);
        bool hasFound = false;
        while (answer == store::Answer::done) {
            answer = scan->next();
            if (answer != store::Answer::done) break;
            LinkName row;
            const store::Answer read = scan->read(bytesOf(row));
            if (read == store::Answer::absent) continue;
            answer = read;
            if (answer != store::Answer::done) break;
            hasFound = true;
            if (!visit(row)) return MCAST6_DB_OK;
        }
        if (answer != store::Answer::end) return codeOf(answer, MCAST6_DB_STORE_FAILED);
        return hasFound ? MCAST6_DB_OK : MCAST6_DB_NO_SUCH_RECORD;
    });
}

}  // namespace

uint32_t MCAST_DB_ReadGlbVersion(void* record40) {
    if (record40 == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
    return onStore([&](store::Store& versions) {
        Version row = versionFrom(record40);
        const store::Answer answer = versions.get(schema::globalVersionTable(), bytesOf(row.key), bytesOf(row));
        if (answer == store::Answer::done) {
            std::memcpy(static_cast<std::byte*>(record40) + kVersionOffset, &row.version, sizeof row.version);
        }
        return codeOf(answer, MCAST6_DB_NO_SUCH_RECORD);
    });
}

uint32_t MCAST_DB_UpdateGlbVersion(void* record40) {
    if (record40 == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
    return onStore([&](store::Store& versions) {
        const Version row = versionFrom(record40);
        const std::byte* const key = bytesOf(row.key);
        return codeOf(versions.patch(schema::globalVersionTable(), key, bytesOf(row), kVersionField),
                      MCAST6_DB_NO_SUCH_RECORD);
    });
}

uint32_t MCAST_DB_WriteGlbVersion(void* record40) {
    if (record40 == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
    return onStore([&](store::Store& versions) {
        const Version row = versionFrom(record40);
        return codeOf(versions.put(schema::globalVersionTable(), bytesOf(row)), MCAST6_DB_STORE_FAILED);
    });
}

uint32_t mcast6_platform_set_link_name(uint32_t vrId, uint32_t layer, uint32_t ifIndex, const char* name) {
    if (name == nullptr || !isLayer(layer)) return refused(MCAST6_DB_BAD_ARGUMENT);
    LinkName row{vrId, layer, ifIndex, {}};
    if (!setName(row, name)) return refused(MCAST6_DB_BAD_LENGTH);
    return onStore([&](store::Store& links) {
        if (*name == '\0') return codeOf(links.erase(schema::linkNameTable(), bytesOf(row)), MCAST6_DB_OK);
        const store::Answer answer = links.put(schema::linkNameTable(), bytesOf(row));
        return answer == store::Answer::present ? uint32_t{MCAST6_DB_OK} : codeOf(answer, MCAST6_DB_STORE_FAILED);
    });
}

uint32_t mcast6_platform_link_name(uint32_t vrId, uint32_t layer, uint32_t ifIndex, char* name, uint32_t size) {
    if (name == nullptr || !isLayer(layer)) return refused(MCAST6_DB_BAD_ARGUMENT);
    return onStore([&](store::Store& links) {
        LinkName row{vrId, layer, ifIndex, {}};
        const uint32_t code =
            codeOf(links.get(schema::linkNameTable(), bytesOf(row), bytesOf(row)), MCAST6_DB_NO_SUCH_RECORD);
        if (code != MCAST6_DB_OK) return code;
        const size_t length = std::strlen(row.name.data());
        if (length >= size) return refused(MCAST6_DB_BAD_LENGTH);
        std::memcpy(name, row.name.data(), length + 1);
        return code;
    });
}

uint32_t mcast6_platform_link_index(uint32_t vrId, uint32_t layer, const char* name, uint32_t* ifIndex) {
    if (name == nullptr || ifIndex == nullptr || !isLayer(layer)) return refused(MCAST6_DB_BAD_ARGUMENT);
    LinkName wanted{vrId, layer, 0, {}};
    if (!setName(wanted, name)) return MCAST6_DB_NO_SUCH_RECORD;
    struct Key {
        uint32_t vrId;
        uint32_t layer;
        std::array<char, schema::link_name::kNameWidth> name;
    };
    const Key key{vrId, layer, wanted.name};
    return walkLinkNames(kByName, bytesOf(key), [&](const LinkName& row) {
        *ifIndex = row.ifIndex;
        return false;
    });
}

uint32_t mcast6_platform_link_names(uint32_t vrId, uint32_t layer, mcast6_platform_link_visitor visit, void* context) {
    if (visit == nullptr || !isLayer(layer)) return refused(MCAST6_DB_BAD_ARGUMENT);
    const std::array<uint32_t, 2> key{vrId, layer};
    const uint32_t code = walkLinkNames(
        kByLayer, bytesOf(key), [&](const LinkName& row) { return visit(context, row.ifIndex, row.name.data()) == 0; });
    return code == MCAST6_DB_NO_SUCH_RECORD ? uint32_t{MCAST6_DB_OK} : code;
}
