#include "platform/schema/catalog.h"

#include "platform/schema/l2mc6_bd_enable.h"
#include "platform/schema/l3mc6_mfib.h"

namespace mcast6::schema {

namespace {

constexpr Table kCatalog[] = {
    l2mc6_bd_enable::kTable,
    l3mc6_mfib::kTable,
};

}  // namespace

std::span<const Table> catalog() { return kCatalog; }

std::optional<uint32_t> tableNamed(std::string_view name) {
    const std::span<const Table> tables = catalog();
    for (uint32_t id = 0; id < tables.size(); ++id) {
        if (tables[id].name == name) return id;
    }
    return std::nullopt;
}

}  // namespace mcast6::schema
