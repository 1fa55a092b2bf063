// import bridge: the captured state of bridges that snoop MLD into the layer-2 tables. docs/bridge-import.md tells how its
// attributes map.
#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <functional>
#include <set>
#include <utility>

#include "cli/commands/import.h"
#include "cli/commands/import_bridge_report.h"
#include "cli/commands/import_bridge_tables.h"
#include "cli/failure.h"
#include "cli/options/command.h"
#include "cli/tables/l2.h"
#include "kernel/capture/bridge.h"
#include "kernel/capture/json_input.h"
#include "kernel/text.h"

namespace mcast6::ctl {
namespace {

// A capture: what it is of, the option that names its file, the end of its name in a directory.
struct CaptureKind {
    const char* what;
    const char* option;
    const char* fileName;
    bool needed;
};
enum Captures : size_t { kGroupList, kLinkList, kBridgeLinkList, kVlanList, kVlanSwitchList, kCaptures };
constexpr CaptureKind kCaptureKinds[kCaptures] = {
    {"group lists", "mdb", "mdb", true},
    {"links", "links", "link", true},
    {"ports", "bridge-links", "bridge-link", false},
    {"VLANs of ports", "vlans", "bridge-vlan", false},
    {"VLANs of bridges", "vlan-globals", "bridge-vlan-global", false},
};

// The captures that an import reads; "" for one that there is not.
struct CaptureFiles {
    std::string name;  // of all of them
    std::array<std::string, kCaptures> paths;
};

std::string pathInDirectory(const std::string& stem) {
    for (const char* ending : {".json", ".json.gz"}) {
        if (std::filesystem::exists(stem + ending)) return stem + ending;
    }
    return "";
}

CaptureFiles filesOfDirectory(const Arguments& arguments) {
    const std::string& directory = arguments.text("DIR");
    const std::string prefix = arguments.has("prefix") ? arguments.text("prefix") : "sw";
    CaptureFiles files{directory + "/" + prefix, {}};
    for (size_t capture = 0; capture < kCaptures; ++capture) {
        const CaptureKind& kind = kCaptureKinds[capture];
        if (arguments.has(kind.option)) throw UsageError(fmt::format("give either DIR or --{}", kind.option));
        files.paths[capture] = pathInDirectory(files.name + "." + kind.fileName);
        if (kind.needed && files.paths[capture].empty()) {
            throw Failure(
                fmt::format("{}.{}.json: there is no such file, nor one with .gz", files.name, kind.fileName));
        }
    }
    return files;
}

CaptureFiles filesOf(const Arguments& arguments) {
    if (arguments.has("DIR")) return filesOfDirectory(arguments);
    if (arguments.has("prefix")) throw UsageError("--prefix goes with DIR");
    CaptureFiles files{inputName(arguments.text("mdb")), {}};
    for (size_t capture = 0; capture < kCaptures; ++capture) {
        const CaptureKind& kind = kCaptureKinds[capture];
        if (kind.needed && !arguments.has(kind.option)) throw UsageError("give DIR, or --mdb and --links");
        files.paths[capture] = arguments.text(kind.option);
    }
    return files;
}

class BridgeImport {
public:
    BridgeImport(Tool& tool, const Arguments& arguments)
        : tool_(tool),
          files_(filesOf(arguments)),
          smoothVersion_(arguments.number("smooth-version", 0)),
          strict_(arguments.has("strict")) {}

    // Nothing is imported unless all files can be read.
    void run() {
        for (size_t capture = 0; capture < kCaptures; ++capture) {
            const std::string& path = files_.paths[capture];
            lists_[capture] = path.empty() ? Json::array() : readJsonList(path, kCaptureKinds[capture].what);
        }
        const LinkTable links = LinkTable::fromEntries(files_.paths[kLinkList], lists_[kLinkList]);
        devices_ = Devices::fromLinks(files_.paths[kLinkList], lists_[kLinkList]);
        devices_.addBridgeLinks(files_.paths[kBridgeLinkList], lists_[kBridgeLinkList]);
        tool_.links.replace(Layer::kLayer2, kBridgeRouter, namesOf(links));
        BridgeReport report(tool_, files_.name, smoothVersion_);
        BridgeTables tables(report, smoothVersion_);
        report_ = &report;
        tables_ = &tables;
        try {
            importAll();
        } catch (const Failure&) {
            report.print();
            throw;
        }
        report.print();
    }

private:
    // VLANs of ports come before all that asks how a port sends.
    void importAll() {
        importBridges();
        importVlanPorts();
        importVlans();
        importRouterPorts();
        importGroups();
    }

    // One row: counted by what becomes of it. 'name' is asked only when it is needed.
    void row(RowKind kind, Captures capture, const std::function<std::string()>& name,
             const std::function<void()>& bring) {
        const auto called = [&] { return fmt::format("{}: {}", inputName(files_.paths[capture]), name()); };
        try {
            bring();
            report_->imported(kind);
        } catch (const Skipped& reason) {
            report_->skipped(kind, called(), reason.what());
        } catch (const Refused& reason) {
            if (!strict_) return report_->refused(kind, called(), reason.what());
            report_->countRefused(kind);
            throw Failure(fmt::format("{}: refused: {}; stopped there (--strict)", called(), reason.what()));
        } catch (const Failure& failure) {
            throw Failure(fmt::format("{}: {}", called(), failure.what()));
        }
    }

    // The rows in the member 'list' of each entry; an entry without it counts as one row.
    template <class Bring>
    void innerRows(RowKind kind, Captures capture, const char* list, Bring bring) {
        const Json& entries = lists_[capture];
        for (size_t position = 0; position < entries.size(); ++position) {
            const Json& entry = entries[position];
            const auto name = [&] { return fmt::format("entry {} of {}", position + 1, kCaptureKinds[capture].what); };
            if (!entry.is_object() || !entry.contains(list) || !entry.at(list).is_array()) {
                row(kind, capture, name, [&] { listMember(entry, list); });
                continue;
            }
            for (const Json& inner : entry.at(list)) {
                row(
                    kind, capture, [&] { return fmt::format("{}: {}", name(), inner.dump()); },
                    [&] { bring(entry, inner); });
            }
        }
    }

    void importBridges() {
        for (const auto& named : devices_.all()) {
            const Device& device = named.second;
            if (!device.bridge) continue;
            row(
                RowKind::kBridge, kLinkList, [&] { return "bridge " + printable(device.name); },
                [&] { tables_->bridge(device); });
        }
    }

    void importVlans() {
        innerRows(RowKind::kVlan, kVlanSwitchList, "vlans", [&](const Json& entry, const Json& vlan) {
            const Device& bridge = devices_.bridgeNamed("ifname", textMember(entry, "ifname"));
            const auto [first, last] = readVlanRange(vlan);
            const bool snooping = numberOr(vlan, "mcast_snooping", 0) != 0;
            const bool querier = numberOr(vlan, "mcast_querier", 0) != 0;
            const uint32_t mldVersion = numberOr(vlan, "mcast_mld_version", 0);
            for (uint32_t vlanId = first; vlanId <= last; ++vlanId) {
                tables_->vlan(bridge, vlanId, snooping, querier, mldVersion);
                if (hasMember(vlan, "router_ports")) {
                    importRoutersOf(bridge.name, vlanId, vlan.at("router_ports"), kVlanSwitchList);
                }
            }
        });
    }

    void importVlanPorts() {
        innerRows(RowKind::kVlanPort, kVlanList, "vlans", [&](const Json& entry, const Json& vlan) {
            Device& port = devices_.named("ifname", textMember(entry, "ifname"));
            if (port.bridge) throw Skipped("the bridge itself, which is no port");
            const Device& bridge = devices_.bridgeNamed("master", port.master);
            const auto [first, last] = readVlanRange(vlan);
            const VlanMembership membership = readMembership(vlan);
            for (uint32_t vlanId = first; vlanId <= last; ++vlanId) {
                port.vlans[vlanId] = membership;
                tables_->vlanPort(bridge, port, vlanId, membership);
            }
        });
    }

    void importRouterPorts() {
        for (const Json& part : lists_[kGroupList]) {
            if (!part.is_object() || !part.contains("router")) continue;
            const Json& bridges = part.at("router");
            if (!bridges.is_object()) {
                importRoutersOf("?", 0, bridges, kGroupList);
                continue;
            }
            for (const auto& [bridge, ports] : bridges.items()) importRoutersOf(bridge, 0, ports, kGroupList);
        }
        importPermanentRoutersOfVlans();
    }

    void importRoutersOf(const std::string& bridgeName, uint32_t vlanId, const Json& ports, Captures capture) {
        const auto called = [&](const std::string& port) {
            return fmt::format("router port ({}, VLAN {}): {}", printable(bridgeName), vlanId, port);
        };
        const RowKind kind = RowKind::kRouterPort;
        if (!ports.is_array()) {
            return row(
                kind, capture, [&] { return called("?"); }, [] { throw Refused("the ports are not a list"); });
        }
        for (const Json& entry : ports) {
            row(
                kind, capture, [&] { return called(entry.dump()); },
                [&] {
                    const Device& bridge = devices_.bridgeNamed("bridge", bridgeName);
                    const Device& port = devices_.portNamed("port", textMember(entry, "port"), bridge);
                    const auto membership = port.vlans.find(vlanId);
                    constexpr uint32_t kLearned = 1;
                    importRouter(
                        bridge, port, vlanId,
                        readRouterKind(entry,
                                       membership == port.vlans.end() ? kLearned : membership->second.mcastRouter));
                });
        }
    }

    void importRouter(const Device& bridge, const Device& port, uint32_t vlanId, uint32_t kind) {
        if (!routers_.insert({bridge.index, port.index, vlanId}).second)
            throw Refused("an entry before it is the same");
        tables_->routerPort(bridge, port, vlanId, devices_.tagsOf(port, vlanId), kind);
    }

    // Where there is no list of the VLANs of bridges, the settings of ports still tell these.
    void importPermanentRoutersOfVlans() {
        constexpr uint32_t kPermanentRouter = 2;
        for (const auto& named : devices_.all()) {
            const Device& port = named.second;
            for (const auto& [vlanId, membership] : port.vlans) {
                if (membership.mcastRouter != kPermanentRouter) continue;
                const Device& bridge = devices_.bridgeNamed("master", port.master);
                if (routers_.contains({bridge.index, port.index, vlanId})) continue;
                row(
                    RowKind::kRouterPort, kVlanList,
                    [&, vlan = vlanId] { return fmt::format("router port ({}, VLAN {})", printable(port.name), vlan); },
                    [&, vlan = vlanId] { importRouter(bridge, port, vlan, kPermanentRouter); });
            }
        }
    }

    void importGroups() {
        size_t number = 0;
        for (const Json& part : lists_[kGroupList]) {
            if (!part.is_object() || !part.contains("mdb") || !part.at("mdb").is_array()) {
                row(
                    RowKind::kGroup, kGroupList, [] { return std::string("group list"); },
                    [&] { listMember(part, "mdb"); });
                continue;
            }
            const Json& rows = part.at("mdb");
            Progress progress(fmt::format("importing {}", files_.name), rows.size());
            for (size_t position = 0; position < rows.size(); ++position) {
                progress.at(position);
                ++number;
                const Json& entry = rows[position];
                row(
                    RowKind::kGroup, kGroupList, [&] { return progress.clear(), groupRowName(number, entry); },
                    [&] { importGroup(entry, number); });
            }
        }
    }

    using EntryKey = std::array<uint32_t, 10>;

    static EntryKey keyOf(const GroupRow& row) {
        EntryKey key{row.bridge->index, row.vlanId};
        std::copy(std::begin(row.group.word), std::end(row.group.word), key.begin() + 2);
        std::copy(std::begin(row.source.word), std::end(row.source.word), key.begin() + 6);
        return key;
    }

    void importGroup(const Json& entry, size_t number) {
        const GroupRow row = readGroupRow(entry, devices_);
        const EntryKey key = keyOf(row);
        const auto [first, isFirst] = members_.try_emplace({key, row.port->index}, number);
        if (!isFirst) {
            throw Refused(fmt::format("row {} has the same bridge, VLAN, group, source and port", first->second));
        }
        if (entries_.insert(key).second) tables_->entry(row);
        tables_->member(row, devices_.tagsOf(*row.port, row.vlanId));
    }

    Tool& tool_;
    CaptureFiles files_;
    uint32_t smoothVersion_;
    bool strict_;
    std::array<Json, kCaptures> lists_;
    Devices devices_;
    BridgeReport* report_ = nullptr;
    BridgeTables* tables_ = nullptr;
    std::set<std::array<uint32_t, 3>> routers_;                // bridge, port, VLAN
    std::set<EntryKey> entries_;                               // of this capture
    std::map<std::pair<EntryKey, uint32_t>, size_t> members_;  // with the port; row numbers
};

void importBridge(Tool& tool, const Arguments& arguments) { BridgeImport(tool, arguments).run(); }

}  // namespace

void addImportBridge(Commands& commands) {
    OptionSpec directory = positional("DIR", "Directory of captures: PREFIX.mdb.json, PREFIX.link.json, ...");
    directory.required = false;
    commands.push_back(
        {"import",
         "bridge",
         "Import captures of bridges that snoop MLD into the layer-2 tables",
         {directory, valueOption("prefix", "TEXT", "Which captures of DIR; sw unless given"),
          valueOption("mdb", "FILE", "Without DIR: `bridge -j -d -s mdb show`"),
          valueOption("links", "FILE", "Without DIR: `ip -j -d link`"),
          valueOption("bridge-links", "FILE", "Without DIR: `bridge -j -d link`"),
          valueOption("vlans", "FILE", "Without DIR: `bridge -j -d vlan show`"),
          valueOption("vlan-globals", "FILE", "Without DIR: `bridge -j -d vlan global show`"),
          valueOption("smooth-version", "N", "Smooth version that all records of the captures get; 0 unless given"),
          flagOption("strict", "Stop at the first row that is refused")},
         importBridge});
}

}  // namespace mcast6::ctl
