#include "bench/imports/capture.h"

#include <fmt/os.h>

namespace mcast6::bench {
namespace {

constexpr uint32_t kLinks = 64;
constexpr uint32_t kGroupsOfSource = 16;

// A plain link for each of the first indexes after that of the loopback device.
void writeLinks(const std::string& path) {
    auto file = fmt::output_file(path);
    file.print(R"([{{"ifindex":1,"ifname":"lo","link_type":"loopback","promiscuity":0}})");
    for (uint32_t link = 0; link < kLinks; ++link) {
        file.print(R"(,{{"ifindex":{},"ifname":"eth{}","mtu":1500,"link_type":"ether","promiscuity":0)", link + 2,
                   link);
        file.print(R"(,"linkinfo":{{"info_kind":"veth"}}}})");
    }
    file.print("]\n");
}

void writeRoutes(const std::string& path, uint32_t routes) {
    auto file = fmt::output_file(path);
    file.print("[");
    for (uint32_t route = 0; route < routes; ++route) {
        const uint32_t source = route / kGroupsOfSource;
        const uint32_t incoming = source % kLinks;
        file.print(R"({}{{"src":"2001:db8:{:x}::{:x}","dst":"ff0e::{:x}:{:x}","iif":"eth{}","multipath":[)",
                   route == 0 ? "" : ",", source >> 16, (source & 0xFFFF) + 1, route >> 16, route & 0xFFFF, incoming);
        const uint32_t outgoing = 1 + route % 5;
        for (uint32_t member = 1; member <= outgoing; ++member) {
            file.print(R"({}{{"oif":"eth{}"}})", member == 1 ? "" : ",", (incoming + member * 7) % kLinks);
        }
        file.print(R"(],"state":"resolved","packets":{},"bytes":{},"expires":{}.{:02}}})", route % 1000,
                   uint64_t{route % 1000} * 1316, route % 180, route % 100);
    }
    file.print("]\n");
}

}  // namespace

void writeCapture(const std::string& directory, uint32_t routes) {
    writeLinks(directory + "/link.json");
    writeRoutes(directory + "/mroute.json", routes);
}

}  // namespace mcast6::bench
