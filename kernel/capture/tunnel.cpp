#include "kernel/capture/tunnel.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "kernel/error.h"
#include "kernel/text.h"

namespace mcast6::kernel {
namespace {

struct TunnelKind {
    const char* kind;
    const char* id;    // the member that tells it; null: the kind has none
    uint8_t underlay;  // 0: either
};
constexpr TunnelKind kTunnelKinds[] = {
    {"ip6gre", "okey", 6},  {"ip6gretap", "okey", 6}, {"gre", "okey", 4}, {"gretap", "okey", 4},
    {"ip6tnl", nullptr, 6}, {"sit", nullptr, 4},      {"vxlan", "id", 0}, {"geneve", "id", 0},
};

const TunnelKind* find(std::string_view kind) {
    const auto* found = std::find_if(std::begin(kTunnelKinds), std::end(kTunnelKinds),
                                     [&](const TunnelKind& known) { return kind == known.kind; });
    return found == std::end(kTunnelKinds) ? nullptr : found;
}

// A number, or four decimal bytes as `ip` prints the keys of GRE.
uint32_t readId(const Json& settings, const char* name) {
    if (!hasMember(settings, name)) return 0;
    if (!findMember(settings, name)->IsString()) return numberMember(settings, name);
    const std::string text(textMember(settings, name));
    if (const auto number = parseNumber(text)) return *number;
    in_addr bytes{};
    if (inet_pton(AF_INET, text.c_str(), &bytes) == 1) return ntohl(bytes.s_addr);
    throw Refused(fmt::format("'{}' is '{}', not a number", name, shown(text)));
}

void readRemote(const Json& settings, Tunnel& tunnel) {
    for (const char* name : {"remote6", "group6", "remote", "group"}) {
        const std::string text(textOr(settings, name));
        if (text.empty() || text == "any") continue;
        const bool isIpv6 = text.find(':') != std::string::npos;
        const auto address = parseAddress(isIpv6 ? text : "::ffff:" + text);
        if (!address) throw Refused(fmt::format("'{}' is '{}', not an address", name, shown(text)));
        tunnel.underlay = isIpv6 ? 6 : 4;
        tunnel.remote = *address;
        return;
    }
}

}  // namespace

bool isTunnel(std::string_view kind) { return find(kind) != nullptr; }

Tunnel readTunnel(std::string_view kind, const Json& settings) {
    const TunnelKind* known = find(kind);
    if (known == nullptr) throw Refused(fmt::format("'{}' is no kind of tunnel", shown(kind)));
    Tunnel tunnel;
    tunnel.underlay = known->underlay;
    if (known->id != nullptr) tunnel.id = readId(settings, known->id);
    tunnel.udpPort = numberOr(settings, "port", 0);
    readRemote(settings, tunnel);
    return tunnel;
}

}  // namespace mcast6::kernel
