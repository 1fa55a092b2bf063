#include "cli/options/command.h"

#include <fmt/format.h>

#include <utility>

#include "kernel/text.h"

namespace mcast6::ctl {

namespace {

// "VR 1 has", "VRs 0, 1 and 7 have", "VRs 0, 1, 2, 3, 4, 5, 6, 7 and 92 more have".
std::string routersText(const std::vector<uint32_t>& routers) {
    constexpr size_t kNamed = 8;
    if (routers.size() == 1) return fmt::format("VR {} has", routers.front());
    const bool isLong = routers.size() > kNamed + 1;
    const auto end = isLong ? routers.begin() + kNamed : routers.end() - 1;
    return fmt::format("VRs {} and {} have", fmt::join(routers.begin(), end, ", "),
                       isLong ? fmt::format("{} more", routers.size() - kNamed) : std::to_string(routers.back()));
}

}  // namespace

OptionSpec valueOption(std::string name, std::string placeholder, std::string help) {
    return {OptionKind::kValue, std::move(name), std::move(placeholder), std::move(help)};
}

OptionSpec flagOption(std::string name, std::string help) {
    return {OptionKind::kFlag, std::move(name), "", std::move(help)};
}

OptionSpec positional(std::string name, std::string help) {
    return {OptionKind::kPositional, std::move(name), "", std::move(help), true};
}

OptionSpec required(OptionSpec option) {
    option.required = true;
    return option;
}

const std::string& Arguments::text(const std::string& name) const {
    static const std::string kNone;
    const auto found = texts_.find(name);
    return found == texts_.end() ? kNone : found->second;
}

uint32_t Arguments::number(const std::string& name, uint32_t otherwise) const {
    return has(name) ? readNumber(name, text(name)) : otherwise;
}

uint32_t Arguments::routingTable(const std::string& name, uint32_t otherwise) const {
    return has(name) ? readRoutingTable(name, text(name)) : otherwise;
}

uint32_t readNumber(const std::string& option, const std::string& text, uint32_t largest) {
    if (const auto number = parseNumber(text); number && *number <= largest) return *number;
    throw UsageError(fmt::format("--{}: '{}' is not a number from 0 to {}", option, text, largest));
}

uint32_t readRoutingTable(const std::string& option, const std::string& text) {
    if (const auto table = parseRoutingTable(text)) return *table;
    throw UsageError(fmt::format("--{}: '{}' is neither a number nor main, default or local", option, text));
}

Mcast6Ipv6Addr readAddress(const std::string& option, const std::string& text) {
    if (text == "any") return {};
    if (const auto address = parseAddress(text)) return *address;
    throw UsageError(fmt::format("--{}: '{}' is not an IPv6 address", option, text));
}

uint32_t readInterface(const std::string& option, const std::string& text, const LinkScope& scope) {
    if (const auto number = parseNumber(text)) return *number;
    const std::vector<uint32_t> known = scope.names.routers(scope.layer);
    if (known.empty()) {
        throw Failure(
            fmt::format("--{}: no link list was imported that tells the index of '{}'; "
                        "give the interface's number",
                        option, text));
    }
    const uint32_t vrId = known.size() == 1 ? known.front() : scope.vrId;
    if (const LinkName* link = linksOf(scope.names, scope.layer, vrId).byName(text)) return link->index;
    std::vector<uint32_t> others = known;
    std::erase_if(others,
                  [&](uint32_t other) { return linksOf(scope.names, scope.layer, other).byName(text) == nullptr; });
    if (!others.empty()) {
        throw Failure(
            fmt::format("--{}: no imported link list of VR {} has an interface '{}', but {} one: choose by --vr",
                        option, scope.vrId, text, routersText(others)));
    }
    if (known.size() == 1) {
        throw Failure(fmt::format("--{}: the imported link list has no interface '{}'", option, text));
    }
    throw Failure(fmt::format("--{}: no imported link list has an interface '{}'", option, text));
}

Failure ambiguousInterface(const std::string& option, const std::string& text, const std::vector<uint32_t>& routers) {
    return Failure(fmt::format("--{}: {} an interface '{}': choose one by --vr", option, routersText(routers), text));
}

const Commands& allCommands() {
    static const Commands kCommands = [] {
        Commands commands;
        addImportMroute(commands);
        addImportBridge(commands);
        addL3Tables(commands);
        addBdEnable(commands);
        addL2Tables(commands);
        addStats(commands);
        addScript(commands);
        return commands;
    }();
    return kCommands;
}

}  // namespace mcast6::ctl
