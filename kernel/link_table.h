// Links by index and by name.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kernel/model.h"

namespace mcast6::kernel {

class LinkTable {
public:
    // Adds a link, or takes the place of the one with the same index. Throws Refused when another link has the name.
    void put(Link link);

    // Null when there is no such link. A pointer holds until its link is put again.
    const Link* byName(std::string_view name) const;
    const Link* byIndex(uint32_t index) const;

    // The bridge that 'link' is a port of; null: none.
    const Link* bridgeOf(const Link& link) const;

    bool empty() const { return byIndex_.empty(); }

    // All, in the order of their names.
    std::vector<const Link*> all() const;

private:
    struct TextHash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    std::unordered_map<uint32_t, Link> byIndex_;
    std::unordered_map<std::string, uint32_t, TextHash, std::equal_to<>> indexOf_;
};

}  // namespace mcast6::kernel
