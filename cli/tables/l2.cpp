#include "cli/tables/l2.h"

#include <fmt/format.h>

namespace mcast6::ctl {
namespace {

struct FlagName {
    uint32_t flag;
    const char* name;
};
constexpr FlagName kFlagNames[] = {
    {kPermanent, "permanent"},      {kIncludeMode, "include"},  {kExcludeMode, "exclude"}, {kBlocked, "blocked"},
    {kStarExclude, "star-exclude"}, {kFastLeave, "fast-leave"}, {kOffload, "offload"},
};

}  // namespace

std::string memberFlagsText(uint32_t flags) {
    std::string text;
    const auto add = [&](const std::string& word) { text += (text.empty() ? "" : " ") + word; };
    for (const FlagName& known : kFlagNames) {
        if ((flags & known.flag) == 0) continue;
        add(known.name);
        flags &= ~known.flag;
    }
    if (flags != 0) add(fmt::format("0x{:X}", flags));
    return text.empty() ? "-" : text;
}

const StoredTables& l2Tables() {
    static const StoredTables kTables = [] {
        StoredTables tables;
        for (const StoredTables& family :
             {l2MfibTables(), l2EgressTables(), l2RouteTables(), l2SwitchTables(), l2SubscriptionTables()}) {
            tables.insert(tables.end(), family.begin(), family.end());
        }
        tables.push_back(bdEnableTable());
        return tables;
    }();
    return kTables;
}

void addL2Tables(Commands& commands) {
    addL2Mfib(commands);
    addLayer(commands, Layer::kLayer2, "l2", "layer-2",
             {valueOption("vr", "NAME|N", "Virtual router; of tables of VLANs the bridge, by number or name")});
}

}  // namespace mcast6::ctl
