// import bridge: the captured state of bridges that snoop MLD into the layer-2 tables. docs/bridge-import.md tells how
// its attributes map.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <utility>

#include "cli/commands/import.h"
#include "cli/commands/import_bridge_report.h"
#include "cli/failure.h"
#include "cli/options/command.h"
#include "cli/output/output.h"
#include "cli/tables/l2.h"
#include "kernel/apply/bridges.h"
#include "kernel/capture/bridge.h"
#include "kernel/capture/json_list.h"
#include "kernel/capture/link_list.h"
#include "kernel/error.h"

namespace mcast6::ctl {
namespace {

using kernel::Json;

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
    CaptureFiles files{kernel::inputName(arguments.text("mdb")), {}};
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
          strict_(arguments.has("strict")),
          force_(arguments.has("force")) {}

    // Nothing is imported unless all files can be read to their ends.
    void run() {
        links_ = kernel::LinkList::fromFile(files_.paths[kLinkList]);
        for (const Captures capture : {kGroupList, kVlanList, kVlanSwitchList}) open(capture);
        if (!files_.paths[kBridgeLinkList].empty()) links_.addBridgeLinks(files_.paths[kBridgeLinkList]);
        if (!links_.isDetailed()) warnOfMissingDetails(files_.paths[kLinkList]);
        if (!force_) refuseOlder(files_.name, smoothVersion_, "", kernel::newerBridges(smoothVersion_));
        tool_.links.replace(Layer::kLayer2, kBridgeRouter, namesOf(links_.links()));
        BridgeReport report(tool_, files_.name, smoothVersion_);
        kernel::BridgeTables tables(links_.links(), smoothVersion_);
        report_ = &report;
        tables_ = &tables;
        try {
            importAll();
        } catch (...) {
            report.print(tables.changes());
            throw;
        }
        report.print(tables.changes());
        tellEnd(tool_, files_.name, report.total());
    }

private:
    // Checks a list; of the groups, which may be many, what else is told of the bridges is kept, for it comes before
    // them.
    void open(Captures capture) {
        const CaptureKind& kind = kCaptureKinds[capture];
        const std::string& path = files_.paths[capture];
        if (path.empty()) return;
        const bool ofVlans = capture != kGroupList;
        const kernel::JsonListForm form{kind.what, ofVlans ? nullptr : "mdb", ofVlans};
        lists_[capture] = std::make_unique<kernel::JsonList>(path, form);
        lists_[capture]->check([&](const Json& part) {
            if (capture == kGroupList) groupParts_.emplace_back().CopyFrom(part, groupParts_.back().GetAllocator());
        });
        if (lists_[capture]->wasLoneBracket()) {
            complain(fmt::format("{}: only `[`, as `bridge` prints where no bridge filters VLANs: taken as empty",
                                 kernel::inputName(path)));
        }
    }

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
        const auto called = [&] { return fmt::format("{}: {}", kernel::inputName(files_.paths[capture]), name()); };
        try {
            bring();
            report_->imported(kind);
        } catch (const kernel::Skipped& reason) {
            report_->skipped(kind, called(), reason.what());
        } catch (const kernel::Refused& reason) {
            if (!strict_) return report_->refused(kind, called(), reason.what());
            report_->countRefused(kind);
            throw Failure(fmt::format("{}: refused: {}; stopped there (--strict)", called(), reason.what()));
        } catch (const kernel::Error& error) {
            throw failureOf(error, called() + ": ");
        }
    }

    // The rows in the member 'rows' of each entry of a list; an entry without it counts as one row.
    template <class Bring>
    void innerRows(RowKind kind, Captures capture, const char* rows, Bring bring) {
        if (lists_[capture] == nullptr) return;
        size_t number = 0;
        lists_[capture]->read([&](const Json& entry) {
            ++number;
            const auto name = [&] { return fmt::format("entry {} of {}", number, kCaptureKinds[capture].what); };
            const Json* inner = kernel::findMember(entry, rows);
            if (inner == nullptr || !inner->IsArray()) {
                return row(kind, capture, name, [&] { kernel::listMember(entry, rows); });
            }
            for (const Json& each : inner->GetArray()) {
                row(
                    kind, capture, [&] { return fmt::format("{}: {}", name(), kernel::shownJson(each)); },
                    [&] { bring(entry, each); });
            }
        });
    }

    void importBridges() {
        for (const Link* link : links_.links().all()) {
            if (!link->bridge) continue;
            row(
                RowKind::kBridge, kLinkList, [&] { return "bridge " + shown(link->name); },
                [&] { tables_->bridge(*link); });
        }
    }

    void importVlans() {
        innerRows(RowKind::kVlan, kVlanSwitchList, "vlans", [&](const Json& entry, const Json& vlan) {
            const std::string_view bridge = kernel::textMember(entry, "ifname");
            kernel::Vlan told = kernel::readVlan(vlan, bridge, links_);
            const Json* routers = kernel::findMember(vlan, "router_ports");
            for (const uint32_t last = kernel::readVlanRange(vlan).last; told.vlanId <= last; ++told.vlanId) {
                tables_->vlan(told);
                if (routers != nullptr) importRoutersOf(bridge, told.vlanId, *routers, kVlanSwitchList);
            }
        });
    }

    void importVlanPorts() {
        innerRows(RowKind::kVlanPort, kVlanList, "vlans", [&](const Json& entry, const Json& vlan) {
            kernel::VlanPort told = kernel::readVlanPort(vlan, kernel::textMember(entry, "ifname"), links_);
            for (const uint32_t last = kernel::readVlanRange(vlan).last; told.vlanId <= last; ++told.vlanId) {
                tables_->vlanPort(told);
            }
        });
    }

    void importRouterPorts() {
        for (const Json& part : groupParts_) {
            const Json* bridges = kernel::findMember(part, "router");
            if (bridges == nullptr) continue;
            if (!bridges->IsObject()) {
                importRoutersOf("?", 0, *bridges, kGroupList);
                continue;
            }
            for (const auto& [bridge, ports] : bridges->GetObject()) {
                importRoutersOf(kernel::textOf(bridge), 0, ports, kGroupList);
            }
        }
        importPermanentRoutersOfVlans();
    }

    void importRoutersOf(std::string_view bridge, uint32_t vlanId, const Json& ports, Captures capture) {
        const auto called = [&](const std::string& port) {
            return fmt::format("router port ({}, VLAN {}): {}", shown(bridge), vlanId, port);
        };
        const RowKind kind = RowKind::kRouterPort;
        if (!ports.IsArray()) {
            return row(
                kind, capture, [&] { return called("?"); }, [] { throw kernel::Refused("the ports are not a list"); });
        }
        for (const Json& entry : ports.GetArray()) {
            row(
                kind, capture, [&] { return called(kernel::shownJson(entry)); },
                [&] { importRouter(kernel::readRouterPort(entry, bridge, vlanId, links_)); });
        }
    }

    void importRouter(const kernel::RouterPort& router) {
        if (!routers_.insert({router.bridgeIndex, router.portIndex, router.vlanId}).second) {
            throw kernel::Refused("an entry before it is the same");
        }
        tables_->routerPort(router);
    }

    // Where there is no list of the VLANs of bridges, the settings of ports still tell these.
    void importPermanentRoutersOfVlans() {
        constexpr uint32_t kPermanentRouter = 2;
        for (const auto& [key, membership] : tables_->memberships()) {
            if (membership.mcastRouter != kPermanentRouter) continue;
            const kernel::RouterPort router{membership.bridgeIndex, membership.portIndex, membership.vlanId,
                                            kPermanentRouter};
            if (routers_.contains({router.bridgeIndex, router.portIndex, router.vlanId})) continue;
            const auto name = [&] {
                const Link* port = links_.links().byIndex(router.portIndex);
                return fmt::format("router port ({}, VLAN {})", shown(port->name), router.vlanId);
            };
            row(RowKind::kRouterPort, kVlanList, name, [&] { importRouter(router); });
        }
    }

    void importGroups() {
        Progress progress(fmt::format("importing {}", files_.name), lists_[kGroupList]->rows());
        uint64_t number = 0;
        const auto atRow = [&](const Json& entry) {
            progress.at(number);
            ++number;
            row(
                RowKind::kGroup, kGroupList, [&] { return progress.clear(), kernel::groupRowName(number, entry); },
                [&] { importGroup(entry, number); });
        };
        const auto atPart = [&](const Json& part) {
            const Json* rows = kernel::findMember(part, "mdb");
            if (rows != nullptr && rows->IsArray()) return;
            row(
                RowKind::kGroup, kGroupList, [] { return std::string("group list"); },
                [&] { kernel::listMember(part, "mdb"); });
        };
        lists_[kGroupList]->read(atPart, atRow);
    }

    // What one row has to itself.
    using RowKey = std::array<uint32_t, 11>;

    static RowKey keyOf(const kernel::GroupEntry& entry) {
        RowKey key{entry.bridgeIndex, entry.vlanId, entry.portIndex};
        std::copy(std::begin(entry.group.word), std::end(entry.group.word), key.begin() + 3);
        std::copy(std::begin(entry.source.word), std::end(entry.source.word), key.begin() + 7);
        return key;
    }

    void importGroup(const Json& row, uint64_t number) {
        const kernel::GroupEntry entry = kernel::readGroupEntry(row, links_);
        const auto [first, isFirst] = seen_.try_emplace(keyOf(entry), number);
        if (!isFirst) {
            throw kernel::Refused(
                fmt::format("row {} has the same bridge, VLAN, group, source and port", first->second));
        }
        tables_->group(entry);
    }

    Tool& tool_;
    CaptureFiles files_;
    uint32_t smoothVersion_;
    bool strict_;
    bool force_;
    std::array<std::unique_ptr<kernel::JsonList>, kCaptures> lists_;  // null: there is no such file
    std::deque<rapidjson::Document> groupParts_;                      // of the group list, without the groups
    kernel::LinkList links_;
    BridgeReport* report_ = nullptr;
    kernel::BridgeTables* tables_ = nullptr;
    std::set<std::array<uint32_t, 3>> routers_;  // bridge, port, VLAN
    std::map<RowKey, uint64_t> seen_;            // row numbers
};

void importBridge(Tool& tool, const Arguments& arguments) {
    BridgeImport import(tool, arguments);
    asFailure([&] { import.run(); });
}

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
          flagOption("strict", "Stop at the first row that is refused"), forceOption()},
         importBridge});
}

}  // namespace mcast6::ctl
