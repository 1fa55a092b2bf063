// import mroute: the kernel's IPv6 multicast routes into l3mc6_mfib. docs/mcast6ctl.md tells how a route's members map.
#include <fmt/format.h>
#include <unistd.h>

#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include "cli/command.h"
#include "cli/failure.h"
#include "cli/import.h"
#include "cli/json_input.h"
#include "cli/route.h"
#include "cli/text.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/l3mc6_mfib_query.h"
#include "mcast6_platform/engine.h"

namespace mcast6::ctl {
namespace {

using E = L3Mc6MfibEntry;
constexpr uint32_t kIpv6 = 2;  // addrType

// The host's own attributes of a stored entry outlive an import.
bool mergeEntry(const E& captured, E& stored) {
    const bool changed = stored.inIfIndex != captured.inIfIndex || stored.regIfIndex != captured.regIfIndex;
    stored.inIfIndex = captured.inIfIndex;
    stored.regIfIndex = captured.regIfIndex;
    return changed;
}

constexpr ImportTable<E> kTable{
    .read = MCAST6_DB_ReadL3MfibFast,
    .absentCode = MCAST6_DB_NO_SUCH_RECORD,
    .write = MCAST6_DB_WriteL3Mfib,
    .restamp = MCAST6_DB_UpdateL3MfibSmoothVersion,
    .merge = mergeEntry,
    .smoothVersion = &E::smoothVersion,
    .appSrcPid = &E::appSrcPid,
};

class RouteImport {
public:
    RouteImport(const Tool& tool, const Arguments& arguments)
        : file_(inputName(arguments.text("FILE"))),
          vrId_(arguments.number("vr", 0)),
          smoothVersion_(arguments.number("smooth-version", 0)),
          strict_(arguments.has("strict")),
          report_(tool, file_) {}

    void run(const Json& entries, const LinkTable* links) {
        const uint64_t before = tableSize();
        try {
            importAll(entries, links);
        } catch (const Failure&) {
            if (!report_.empty()) summarize(before);
            throw;
        }
        summarize(before);
    }

private:
    void summarize(uint64_t before) const {
        report_.print({"l3-mfib", "l3mc6_mfib", smoothVersion_, before, tableSize()});
    }

    static uint64_t tableSize() {
        uint32_t count = 0;
        const uint32_t code = MCAST6_DB_GetL3MfibCnt(&count);
        if (code != MCAST6_DB_SUCCESS) throw libraryFailure("counting l3mc6_mfib", code);
        return count;
    }

    void importAll(const Json& entries, const LinkTable* links) {
        Progress progress(fmt::format("importing {}", file_), entries.size());
        for (size_t position = 0; position < entries.size(); ++position) {
            progress.at(position);
            const Json& entry = entries[position];
            try {
                importOne(entry, position + 1, links);
            } catch (const Unresolved& reason) {
                progress.clear();
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
        E record{};
        record.vrId = vrId_;
        record.vrfId = route.table;
        record.addrType = kIpv6;
        record.groupAddr = route.group;
        record.sourceAddr = route.source;
        record.inIfIndex = route.inIfIndex;
        record.regIfIndex = route.regIfIndex;
        record.appSrcPid = static_cast<uint32_t>(getpid());
        record.smoothVersion = smoothVersion_;
        report_.count(route.table, importRecord(kTable, record));
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
    uint32_t vrId_;
    uint32_t smoothVersion_;
    bool strict_;
    ImportReport report_;
    std::map<Key, size_t> seen_;  // entry numbers
};

void importMroute(Tool& tool, const Arguments& arguments) {
    RouteImport import(tool, arguments);
    const bool withLinks = arguments.has("links");
    if (withLinks && arguments.text("links") == "-" && arguments.text("FILE") == "-") {
        throw UsageError("only one of FILE and --links can be standard input");
    }
    const Json entries = readJsonList(arguments.text("FILE"), "routes");
    if (withLinks) tool.links = LinkTable::fromFile(arguments.text("links"));
    import.run(entries, withLinks ? &tool.links : nullptr);
}

}  // namespace

void addImportMroute(Commands& commands) {
    commands.push_back(
        {"import",
         "mroute",
         "Import a capture of `ip -6 -j -s mroute show table all` into l3-mfib",
         {positional("FILE", "The capture, plain or gzip-compressed; - is standard input"),
          valueOption("links", "FILE", "The capture of `ip -j -d link` of the same network namespace"),
          valueOption("smooth-version", "N", "Smooth version that all entries of the capture get; 0 unless given"),
          valueOption("vr", "N", "Virtual router of all entries; 0 unless given"),
          flagOption("strict", "Stop at the first entry that is refused")},
         importMroute});
}

}  // namespace mcast6::ctl
