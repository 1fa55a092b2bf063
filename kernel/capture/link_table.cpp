#include "kernel/capture/link_table.h"

#include <fmt/format.h>

#include <utility>

#include "cli/failure.h"
#include "kernel/capture/json_input.h"
#include "kernel/text.h"

namespace mcast6::ctl {
namespace {

uint16_t readVlanId(const Json& settings) {
    constexpr uint32_t kLargest = 4094;
    const uint32_t vlanId = numberMember(settings, "id");
    if (vlanId > kLargest) throw Refused(fmt::format("'id' is {}, not a VLAN from 0 to {}", vlanId, kLargest));
    return static_cast<uint16_t>(vlanId);
}

}  // namespace

Link readLink(const Json& entry) {
    Link link;
    link.index = numberMember(entry, "ifindex");
    link.name = textMember(entry, "ifname");
    if (link.index == 0) throw Refused("'ifindex' is 0");
    const std::string type = textOr(entry, "link_type");
    const Json& linkInfo = objectMember(entry, "linkinfo");
    const Json& settings = objectMember(linkInfo, "info_data");
    link.kind = textOr(linkInfo, "info_kind");
    link.master = textOr(entry, "master");
    if (link.kind == "vlan") link.vlanId = readVlanId(settings);
    if (isTunnel(link.kind)) link.tunnel = readTunnel(link.kind, settings);
    link.isRegister = type == "pimreg" || (type.empty() && link.name.starts_with("pim6reg"));
    return link;
}

LinkTable LinkTable::fromFile(const std::string& path) { return fromEntries(path, readJsonList(path, "links")); }

LinkTable LinkTable::fromEntries(const std::string& path, const Json& entries) {
    LinkTable table;
    for (size_t position = 0; position < entries.size(); ++position) {
        const Json& entry = entries[position];
        // `ip` prints an empty object for each link that a selection such as `type veth` leaves out.
        if (entry.is_object() && entry.empty()) continue;
        try {
            table.add(path, position + 1, readLink(entry));
        } catch (const Refused& refused) {
            throw Failure(fmt::format("{}: link {}: {}", inputName(path), position + 1, refused.what()));
        }
    }
    for (auto& named : table.byName_) {
        const Link* master = table.byName(named.second.master);
        if (master != nullptr && master->kind == "bridge") named.second.bridgeIndex = master->index;
    }
    return table;
}

void LinkTable::add(const std::string& file, size_t entryNumber, Link link) {
    const auto refuse = [&](const std::string& reason) {
        return Failure(fmt::format("{}: link {} ({}): {}", inputName(file), entryNumber, printable(link.name), reason));
    };
    if (byName_.contains(link.name)) throw refuse("a link before it has the same name");
    if (!nameOf_.emplace(link.index, link.name).second) {
        throw refuse(fmt::format("link {} has the same index {}", printable(nameOf_[link.index]), link.index));
    }
    std::string name = link.name;
    byName_.emplace(std::move(name), std::move(link));
}

const Link* LinkTable::byName(const std::string& name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : &found->second;
}

const Link* LinkTable::byIndex(uint32_t index) const {
    const auto found = nameOf_.find(index);
    return found == nameOf_.end() ? nullptr : byName(found->second);
}

}  // namespace mcast6::ctl
