#include "cli/output/link_names.h"

namespace mcast6::ctl {

RouterLinks::RouterLinks(std::vector<LinkName> links) : links_(std::move(links)) {
    for (size_t place = 0; place < links_.size(); ++place) {
        byIndex_.emplace(links_[place].index, place);
        byName_.emplace(links_[place].name, place);
    }
}

const LinkName* RouterLinks::byIndex(uint32_t index) const {
    const auto found = byIndex_.find(index);
    return found == byIndex_.end() ? nullptr : &links_[found->second];
}

const LinkName* RouterLinks::byName(const std::string& name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : &links_[found->second];
}

void LinkNames::replace(Layer layer, uint32_t vrId, std::vector<LinkName> links) {
    routers_.insert_or_assign({layer, vrId}, RouterLinks(std::move(links)));
}

const RouterLinks* LinkNames::find(Layer layer, uint32_t vrId) const {
    const auto found = routers_.find({layer, vrId});
    return found == routers_.end() ? nullptr : &found->second;
}

std::vector<uint32_t> LinkNames::routers(Layer layer) const {
    std::vector<uint32_t> ids;
    for (const auto& [key, links] : routers_) {
        if (key.first == layer) ids.push_back(key.second);
    }
    return ids;
}

const RouterLinks& noLinks() {
    static const RouterLinks kNone;
    return kNone;
}

const RouterLinks& linksOf(const LinkNames& names, Layer layer, uint32_t vrId) {
    const RouterLinks* links = names.find(layer, vrId);
    return links == nullptr ? noLinks() : *links;
}

}  // namespace mcast6::ctl
