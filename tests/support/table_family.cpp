#include "tests/support/table_family.h"

#include <algorithm>
#include <cstdio>
#include <span>

namespace mcast6::tests {

namespace {

// Joins two lists of effects.
Effects after(const Effect& first, const Effects& rest) {
    Effects all{first};
    all.insert(all.end(), rest.begin(), rest.end());
    return all;
}

std::string answered(uint32_t answer) { return answer == 0 ? "" : " -> " + std::to_string(answer); }

}  // namespace

IterExits builtByTheFrame(const Effect& released, const Effects& failed) {
    const Effects withObject = after(released, failed);
    return {.createFailed = failed,
            .rootIterFailed = withObject,
            .propertyFailed = withObject,
            .allocationFailed = withObject};
}

Step creation(const TableFacts& table, uint32_t objType, Effects failed) {
    failed.insert(failed.begin(), table.createFailed.begin(), table.createFailed.end());
    return {.calls = {gives("create " + table.name + " " + std::to_string(objType) + " 0", "obj1")},
            .failed = std::move(failed),
            .done = table.created};
}

std::vector<Step> iteration(const TableFacts& table, const std::string& key, const IterExits& exits) {
    return {creation(table, 5, exits.createFailed),
            {.calls = {gives("root_iter obj1 " + key, "iter1")}, .failed = exits.rootIterFailed},
            {.calls = {call("property iter1 0 01000000")}, .failed = exits.propertyFailed}};
}

std::vector<Step> stepAndRead(const TableFacts& table, const EntryExits& exits) {
    return {{.calls = {call("next iter1")}, .failed = exits.nextFailed, .answered = {{110012, exits.ended}}},
            {.calls = {call("read obj1 none " + std::to_string(table.rowSize))},
             .failed = exits.readFailed,
             .answered = {{15005, exits.vanished}}}};
}

Call setsAll(const TableFacts& table) { return call("set_all " + table.name + " obj1 " + digits(table.writtenRow)); }

std::string inner(const recording::Bytes& bytes) {
    const std::string digitsOfInner = recording::hex(std::span(bytes).subspan(1, bytes.size() - 2));
    const bool isAroundLeft = bytes.front() == 0x5A && bytes.back() == 0x5A;
    return digitsOfInner + (isAroundLeft ? "" : " and writes outside its place");
}

std::string keyText(uint32_t keyWord, const std::string& digitsOfKey) {
    char word[9];
    std::snprintf(word, sizeof word, "%08x", keyWord);
    return "key=" + std::string(word) + ":" + digitsOfKey;
}

std::string stampMismatch(const TableFacts& table, uint32_t create, uint32_t smooth,
                          const std::function<uint32_t()>& run) {
    recording::Recorder& platform = recording::Recorder::instance();
    platform.takeTrace();
    platform.answer("db_set_" + table.name + "_timeStampCreate", create);
    platform.answer("db_set_" + table.name + "_timeStampSmooth", smooth);
    const uint32_t result = run();
    Trace lines = platform.takeTrace();
    std::sort(lines.begin(), lines.end());  // in any order
    const Trace expected{"set " + table.name + ".timeStampCreate obj1 1700000000" + answered(create),
                         "set " + table.name + ".timeStampSmooth obj1 1700000000" + answered(smooth)};
    std::string text;
    if (result != (create | smooth)) text = "answers " + std::to_string(result) + "\n";
    if (lines != expected) {
        text += "calls\n";
        for (const std::string& line : lines) text += "    " + line + "\n";
    }
    return text.empty() ? "" : "codes " + std::to_string(create) + " and " + std::to_string(smooth) + ": " + text;
}

}  // namespace mcast6::tests
