// import mroute: the kernel's IPv6 multicast routes into the layer-3 tables. docs/mcast6ctl.md tells how a route's members map.
#include <fmt/format.h>

#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "cli/commands/import.h"
#include "cli/commands/import_mroute_report.h"
#include "cli/commands/import_mroute_tables.h"
#include "cli/failure.h"
#include "cli/options/command.h"
#include "cli/tables/l3.h"
#include "kernel/capture/json_input.h"
#include "kernel/capture/route.h"
#include "kernel/text.h"

namespace mcast6::ctl {
namespace {

class RouteImport {
public:
    RouteImport(const Tool& tool, const Arguments& arguments)
        : file_(inputName(arguments.text("FILE"))),
          strict_(arguments.has("strict")),
          changes_(l3Tables()),
          tables_(changes_, arguments.number("vr", 0), arguments.number("smooth-version", 0)),
          report_(tool, file_, arguments.number("smooth-version", 0)) {}

    void run(const Json& entries, const LinkTable* links) {
        try {
            importAll(entries, links);
        } catch (const Failure&) {
            if (!report_.empty()) report_.print(changes_);
            throw;
        }
        report_.print(changes_);
    }

private:
    void importAll(const Json& entries, const LinkTable* links) {
        Progress progress(fmt::format("importing {}", file_), entries.size());
        for (size_t position = 0; position < entries.size(); ++position) {
            progress.at(position);
            const Json& entry = entries[position];
            try {
                importOne(entry, position + 1, links);
            } catch (const Unresolved& reason) {
                progress.clear();
                seeVrf(routeTable(entry));
                setAside(entry, position + 1, Fate::kSkipped, fmt::format("skipped: {}", reason.what()));
            } catch (const Refused& reason) {
                progress.clear();
                setAside(entry, position + 1, Fate::kRefused, fmt::format("refused: {}", reason.what()));
            } catch (const Failure& failure) {
                throw Failure(fmt::format("{}: {}: {}", file_, routeName(position + 1, entry), failure.what()));
            }
        }
    }

    void importOne(const Json& entry, size_t number, const LinkTable* links) {
        const Route route = readRoute(entry, links);
        const auto [first, isFirst] = seen_.try_emplace(keyOf(route), number);
        if (!isFirst) {
            throw Refused(fmt::format("entry {} has the same table, source and group", first->second));
        }
        seeVrf(route.table);
        report_.count(route.table, tables_.route(route));
        report_.countOutgoing(route.outgoing.size());
    }

    // A VRF has its configuration once it is known to have routes, be it that none of them can forward.
    void seeVrf(uint32_t vrfId) {
        if (vrfs_.insert(vrfId).second) tables_.vrf(vrfId);
    }

    // Counts and tells an entry that is not imported; with --strict a refused one ends the import.
    void setAside(const Json& entry, size_t number, Fate fate, const std::string& reason) {
        countSetAside(entry, fate);
        if (fate == Fate::kRefused && strict_) {
            throw Failure(fmt::format("{}: {}: {}; stopped there (--strict)", file_, routeName(number, entry), reason));
        }
        report_.tell(routeName(number, entry), reason);
    }

    void countSetAside(const Json& entry, Fate fate) {
        try {
            report_.count(routeTable(entry), fate);
        } catch (const Refused&) {
            report_.count(fate);
        }
    }

    using Words = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t>;
    using Key = std::tuple<uint32_t, Words, Words>;

    static Words wordsOf(const Mcast6Ipv6Addr& address) {
        return {address.word[0], address.word[1], address.word[2], address.word[3]};
    }
    static Key keyOf(const Route& route) { return {route.table, wordsOf(route.source), wordsOf(route.group)}; }

    std::string file_;
    bool strict_;
    TableChanges changes_;
    RouteTables tables_;
    RouteReport report_;
    std::map<Key, size_t> seen_;  // entry numbers
    std::set<uint32_t> vrfs_;
};

void importMroute(Tool& tool, const Arguments& arguments) {
    RouteImport import(tool, arguments);
    const bool withLinks = arguments.has("links");
    if (withLinks && arguments.text("links") == "-" && arguments.text("FILE") == "-") {
        throw UsageError("only one of FILE and --links can be standard input");
    }
    const Json entries = readJsonList(arguments.text("FILE"), "routes");
    const LinkTable links = withLinks ? LinkTable::fromFile(arguments.text("links")) : LinkTable();
    if (withLinks) tool.links.replace(Layer::kLayer3, arguments.number("vr", 0), namesOf(links));
    import.run(entries, withLinks ? &links : nullptr);
}

}  // namespace

void addImportMroute(Commands& commands) {
    commands.push_back(
        {"import",
         "mroute",
         "Import a capture of `ip -6 -j -s mroute show table all` into the layer-3 tables",
         {positional("FILE", "The capture, plain or gzip-compressed; - is standard input"),
          valueOption("links", "FILE", "The capture of `ip -j -d link` of the same network namespace"),
          valueOption("smooth-version", "N", "Smooth version that all entries of the capture get; 0 unless given"),
          valueOption("vr", "N", "Virtual router of all entries; 0 unless given"),
          flagOption("strict", "Stop at the first entry that is refused")},
         importMroute});
}

}  // namespace mcast6::ctl
