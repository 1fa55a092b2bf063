// The names of interfaces, as imports read them from captured link lists. A link list is that of one router: its names
// hold for one VR, and for the layer whose tables the import filled.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace mcast6::ctl {

enum class Layer : uint8_t { kLayer2, kLayer3 };

struct LinkName {
    uint32_t index = 0;
    std::string name;
    bool isBridge = false;
};

// The names of one VR.
class RouterLinks {
public:
    explicit RouterLinks(std::vector<LinkName> links = {});

    // Null when there is no such link.
    const LinkName* byIndex(uint32_t index) const;
    const LinkName* byName(const std::string& name) const;

private:
    std::vector<LinkName> links_;
    std::unordered_map<uint32_t, size_t> byIndex_;  // places in links_
    std::unordered_map<std::string, size_t> byName_;
};

// The names of all VRs.
class LinkNames {
public:
    // The VR has these names in the layer from now on, and no others.
    void replace(Layer layer, uint32_t vrId, std::vector<LinkName> links);

    // Null when no import brought the names of this VR.
    const RouterLinks* find(Layer layer, uint32_t vrId) const;

    // The VRs that have names in the layer, in ascending order.
    std::vector<uint32_t> routers(Layer layer) const;

private:
    std::map<std::pair<Layer, uint32_t>, RouterLinks> routers_;
};

// No names at all.
const RouterLinks& noLinks();

// The names of the VR, or none.
const RouterLinks& linksOf(const LinkNames& names, Layer layer, uint32_t vrId);

}  // namespace mcast6::ctl
