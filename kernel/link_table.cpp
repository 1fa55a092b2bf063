#include "kernel/link_table.h"

#include <algorithm>
#include <utility>

#include "kernel/error.h"

namespace mcast6::kernel {

void LinkTable::put(Link link) {
    const auto [named, isNew] = indexOf_.try_emplace(link.name, link.index);
    if (!isNew && named->second != link.index) throw Refused("a link before it has the same name");
    const auto old = byIndex_.find(link.index);
    if (old != byIndex_.end() && old->second.name != link.name) indexOf_.erase(old->second.name);
    byIndex_[link.index] = std::move(link);
}

const Link* LinkTable::byName(std::string_view name) const {
    const auto found = indexOf_.find(name);
    return found == indexOf_.end() ? nullptr : byIndex(found->second);
}

const Link* LinkTable::byIndex(uint32_t index) const {
    const auto found = byIndex_.find(index);
    return found == byIndex_.end() ? nullptr : &found->second;
}

const Link* LinkTable::bridgeOf(const Link& link) const {
    const Link* master = byIndex(link.masterIndex);
    return master != nullptr && master->kind == "bridge" ? master : nullptr;
}

std::vector<const Link*> LinkTable::all() const {
    std::vector<const Link*> links;
    for (const auto& indexed : byIndex_) links.push_back(&indexed.second);
    std::sort(links.begin(), links.end(), [](const Link* left, const Link* right) { return left->name < right->name; });
    return links;
}

}  // namespace mcast6::kernel
