// bd-enable: the layer-2 multicast (MLD snooping) switch of each bridge domain. The tool takes the key's two words as
// virtual router (keyId1) and bridge domain (keyId2).
#include <fmt/format.h>

#include "cli/options/command.h"
#include "cli/tables/l2.h"
#include "cli/tables/table.h"
#include "cli/tables/table_commands.h"
#include "mcast6_db/l2mc6_bd_enable.h"

namespace mcast6::ctl {
namespace {

using E = L2McBdEnableEntry;
constexpr uint32_t kIpv6 = 2;  // addrType

E blankSwitch() {
    E blank{};
    blank.addrType = kIpv6;
    return blank;
}

std::string nameOf(const E& key) { return fmt::format("bridge domain {} of VR {}", key.keyId2, key.keyId1); }

const Filter<E> kVr = numberFilter("vr", "Virtual router", &E::keyId1);
const Filter<E> kBd = interfaceFilter("bd", "Bridge domain: its number, or the bridge of the last import", &E::keyId2);

// clang-format off
const Table<E> kTable{
    .name = "bd-enable",
    .holds = "MLD snooping switches of bridge domains",
    .operations = kernel::kL2Mc6BdEnable,
    .columns = {
        column("VR", "keyId1", &E::keyId1),
        column("BD", "keyId2", &E::keyId2, ColumnKind::kBridge),
        column<E>("SNOOPING", "l2mcEnable", [](const E& record) -> Value { return record.l2mcEnable != 0; }),
        column("MLD", "mldVersion", &E::mldVersion),
        column("STATUS", "serviceStatus", &E::serviceStatus),
        column("ERROR", "errCode", &E::errCode),
        column("VERSION", "smoothVersion", &E::smoothVersion),
        column("WRITTEN (UTC)", "timeStampCreate", &E::timeStampCreate, ColumnKind::kTime),
        column("CONFIRMED (UTC)", "timeStampSmooth", &E::timeStampSmooth, ColumnKind::kTime),
    },
    .filters = {&kVr, &kBd},
    .queries = {byKey<E>({&kVr, &kBd})},
    .layer = Layer::kLayer2,
    .vr = &kVr,
    .blank = blankSwitch(),
    .nameOf = nameOf,
};
// clang-format on

// Writes a new entry; of one that is there, changes what was given and leaves the rest.
void setEntry(Tool& tool, const Arguments& arguments) {
    if (arguments.has("on") == arguments.has("off")) throw UsageError("give one of --on and --off");
    E record = readKey(tool, kTable, arguments);
    record.mldVersion = 2;
    const std::string name = nameOf(record);
    const bool known = readRecord(kTable, &record);
    record.l2mcEnable = arguments.has("on") ? 1 : 0;
    record.mldVersion = arguments.number("mld-version", record.mldVersion);
    record.smoothVersion = arguments.number("smooth-version", record.smoothVersion);
    if (arguments.has("mld-version") && record.mldVersion != 1 && record.mldVersion != 2) {
        throw UsageError(fmt::format("--mld-version: '{}' is neither 1 nor 2", arguments.text("mld-version")));
    }
    const uint32_t code = known ? MCAST6_DB_UpdateL2BdEnableCfg(&record) : MCAST6_DB_WriteL2McBdEnable(&record);
    if (code != MCAST6_DB_SUCCESS) throw libraryFailure(fmt::format("bd-enable: setting {}", name), code);
    if (!tool.settings.json) return printLine(fmt::format("bd-enable: {} {}", known ? "changed" : "added", name));
    JsonWriter json;
    json.beginObject().member("table", kTable.operations.databaseName).member("new", !known).endObject();
    printLine(json.take());
}

}  // namespace

StoredTable bdEnableTable() {
    StoredTable table = storedTable(kTable);
    table.addCommands = nullptr;
    return table;
}

void addBdEnable(Commands& commands) {
    addTableCommands(commands, kTable);
    commands.push_back({"set", kTable.name, "Switch MLD snooping of a bridge domain on or off",
                        joined(keyOptions(kTable),
                               {flagOption("on", "Snooping on"), flagOption("off", "Snooping off"),
                                valueOption("mld-version", "1|2", "MLD version; 2 for a new entry unless given"),
                                valueOption("smooth-version", "N", "Smooth version; 0 for a new entry unless given")}),
                        setEntry});
    addDelete(commands, kTable);
}

}  // namespace mcast6::ctl
