// import mroute: the kernel's IPv6 multicast routes into the layer-3 tables. docs/mcast6ctl.md tells how a route's
// members map.
#include <fmt/format.h>

#include <optional>
#include <utility>

#include "cli/commands/import.h"
#include "cli/commands/import_mroute_report.h"
#include "cli/failure.h"
#include "cli/options/command.h"
#include "kernel/apply/routes.h"
#include "kernel/capture/json_list.h"
#include "kernel/capture/link_list.h"
#include "kernel/capture/route.h"
#include "kernel/capture/route_numbers.h"
#include "kernel/error.h"

namespace mcast6::ctl {
namespace {

using kernel::Json;
using kernel::RouteState;

class RouteImport {
public:
    RouteImport(Tool& tool, const Arguments& arguments)
        : tool_(tool),
          path_(arguments.text("FILE")),
          file_(kernel::inputName(path_)),
          linksPath_(arguments.text("links")),
          vrId_(arguments.number("vr", 0)),
          smoothVersion_(arguments.number("smooth-version", 0)),
          withLinks_(arguments.has("links")),
          strict_(arguments.has("strict")),
          force_(arguments.has("force")) {
        if (withLinks_ && linksPath_ == "-" && path_ == "-") {
            throw UsageError("only one of FILE and --links can be standard input");
        }
    }

    // Nothing is imported unless both files can be read to their ends.
    void run() {
        kernel::JsonList entries(path_, {.holds = "routes"});
        entries.check();
        kernel::LinkList links;
        if (withLinks_) links = kernel::LinkList::fromFile(linksPath_);
        if (!links.isDetailed()) warnOfMissingDetails(linksPath_);
        if (!force_) {
            refuseOlder(file_, smoothVersion_, fmt::format(" in VR {}", vrId_),
                        kernel::newerRoutes(vrId_, smoothVersion_));
        }
        if (withLinks_) tool_.links.replace(Layer::kLayer3, vrId_, namesOf(links.links()));
        RouteReport report(tool_, file_, smoothVersion_);
        kernel::RouteTables tables(links.links(), vrId_, smoothVersion_);
        report_ = &report;
        tables_ = &tables;
        try {
            importAll(entries, withLinks_ ? &links.links() : nullptr);
        } catch (...) {
            if (!report.empty()) report.print(tables.changes());
            throw;
        }
        report.print(tables.changes());
        const FateCounts total = report.total();
        const uint64_t refused = total[Fate::kRefused];
        tellEnd(tool_, file_, {total.sum(), total.sum() - refused - total[Fate::kSkipped], refused});
    }

private:
    void importAll(kernel::JsonList& entries, const LinkTable* links) {
        Progress progress(fmt::format("importing {}", file_), entries.entries());
        size_t number = 0;
        entries.read([&](const Json& entry) {
            progress.at(number);
            ++number;
            try {
                importOne(entry, number, links, progress);
            } catch (const kernel::Refused& reason) {
                progress.clear();
                setAside(entry, number, Fate::kRefused, fmt::format("refused: {}", reason.what()));
            } catch (const kernel::Error& error) {
                progress.clear();
                throw failureOf(error, fmt::format("{}: {}: ", file_, kernel::routeName(number, entry)));
            }
        });
    }

    void importOne(const Json& entry, size_t number, const LinkTable* links, Progress& progress) {
        kernel::readRoute(entry, links, route_);
        const bool forwards = route_.state == RouteState::kForwards;
        const uint64_t first = forwards ? seen_.firstOf(route_, number) : 0;
        if (first != 0) throw kernel::Refused(fmt::format("entry {} has the same table, source and group", first));
        const Fate fate = tables_->route(route_, true);
        report_->countOutgoing(route_.outIfIndexes.size());
        if (forwards) return report_->count(route_.table, fate);
        progress.clear();
        setAside(entry, number, Fate::kSkipped,
                 route_.state == RouteState::kUnresolved ? "skipped: the route is unresolved"
                                                         : "skipped: the route has no incoming interface");
    }

    // Counts and tells an entry that is not imported; with --strict a refused one ends the import.
    void setAside(const Json& entry, size_t number, Fate fate, const std::string& reason) {
        countSetAside(entry, fate);
        const std::string name = kernel::routeName(number, entry);
        if (fate == Fate::kRefused && strict_) {
            throw Failure(fmt::format("{}: {}: {}; stopped there (--strict)", file_, name, reason));
        }
        report_->tell(name, reason);
    }

    void countSetAside(const Json& entry, Fate fate) {
        try {
            report_->count(kernel::routeTable(entry), fate);
        } catch (const kernel::Refused&) {
            report_->count(fate);
        }
    }

    Tool& tool_;
    std::string path_;
    std::string file_;
    std::string linksPath_;
    uint32_t vrId_;
    uint32_t smoothVersion_;
    bool withLinks_;
    bool strict_;
    bool force_;
    RouteReport* report_ = nullptr;
    kernel::RouteTables* tables_ = nullptr;
    kernel::RouteNumbers seen_;
    kernel::Route route_;  // the memory of one serves all
};

void importMroute(Tool& tool, const Arguments& arguments) {
    RouteImport import(tool, arguments);
    asFailure([&] { import.run(); });
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
          flagOption("strict", "Stop at the first entry that is refused"), forceOption()},
         importMroute});
}

}  // namespace mcast6::ctl
