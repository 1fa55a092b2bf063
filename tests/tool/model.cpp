#include "tests/tool/model.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <stdexcept>

#include "cli/output/library_log.h"
#include "mcast6_platform/platform.h"
#include "tests/support/process_state.h"

namespace mcast6::ctl::test {
namespace {

bool picks(const TableFacts& facts, const Given& given, const Row& row) {
    return std::all_of(given.begin(), given.end(), [&](const auto& filter) {
        const auto& [name, text] = filter;
        if (row.filters.at(name) != text) return false;
        const auto need = facts.needs.find(name);
        return need == facts.needs.end() || given.contains(need->second) || row.filters.at(need->second) == "0";
    });
}

FilledTable fill(const TableFacts& facts, uint32_t seed) {
    Numbers numbers(seed);
    FilledTable table{&facts, {}};
    std::map<Given, size_t> places;
    for (uint32_t draft = 0; draft < facts.drafts; ++draft) {
        auto [row, write] = facts.draw(numbers);
        const auto [place, isNew] = places.emplace(table.keyOf(row), table.rows.size());
        if (!isNew && !facts.replaces) continue;
        EXPECT_EQ(write(row), 0U) << facts.name;
        if (isNew) {
            table.rows.push_back(row);
        } else {
            table.rows[place->second] = row;
        }
    }
    return table;
}

}  // namespace

std::vector<Row> FilledTable::picked(const Given& given) const {
    std::vector<Row> found;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(found),
                 [&](const Row& row) { return picks(*facts, given, row); });
    return found;
}

Given FilledTable::keyOf(const Row& row) const {
    Given key;
    for (const std::string& name : facts->key) key[name] = row.filters.at(name);
    return key;
}

std::set<std::string> FilledTable::textsOf(const std::string& filter) const {
    std::set<std::string> texts;
    for (const Row& row : rows) texts.insert(row.filters.at(filter));
    if (texts.erase(kNotPicked) > 0) return texts;
    texts.insert(texts.begin()->find(':') == std::string::npos ? "77" : "ff0e::77");
    return texts;
}

std::set<std::string> FilledTable::filters() const {
    std::set<std::string> names;
    for (const auto& [name, text] : rows.at(0).filters) names.insert(name);
    return names;
}

size_t FilledTable::remove(const std::function<bool(const Row&)>& isGone) { return std::erase_if(rows, isGone); }

bool isOfEntry(const Row& row, const Row& entry) {
    const std::vector<std::string> key{"vr", "vrf", "group", "source"};
    return std::all_of(key.begin(), key.end(),
                       [&](const std::string& name) { return row.filters.at(name) == entry.filters.at(name); });
}

size_t removeMembers(std::vector<FilledTable>& tables, const std::vector<Row>& entries) {
    size_t removed = 0;
    for (FilledTable& table : tables) {
        const TableFacts& facts = *table.facts;
        if (!facts.isOfLayer3() || facts.areEntries() || facts.name == "glbcfg" || !facts.isDeletable) continue;
        removed += table.remove([&](const Row& row) {
            return std::any_of(entries.begin(), entries.end(), [&](const Row& entry) { return isOfEntry(row, entry); });
        });
    }
    return removed;
}

Lines linesOf(const std::vector<Row>& rows) {
    Lines lines;
    for (const Row& row : rows) lines.insert(row.shown.dump());
    return lines;
}

Lines linesOf(const Json& entries) {
    Lines lines;
    for (Json entry : entries) {
        for (const char* time : {"timeStampCreate", "timeStampSmooth"}) {
            EXPECT_GT(entry.value(time, 0), 0) << time << " of " << entry;
            entry.erase(time);
        }
        lines.insert(entry.dump());
    }
    return lines;
}

std::string differences(const Lines& shown, const Lines& expected) {
    std::vector<std::string> only;
    std::set_difference(shown.begin(), shown.end(), expected.begin(), expected.end(), std::back_inserter(only));
    std::string text;
    for (const std::string& line : only) text += "\nnot written: " + line;
    only.clear();
    std::set_difference(expected.begin(), expected.end(), shown.begin(), shown.end(), std::back_inserter(only));
    for (const std::string& line : only) text += "\nnot shown: " + line;
    return text;
}

std::string expectAnswered(const FilledTable& table, const Given& given) {
    SCOPED_TRACE(table.facts->name + " " + Json(given).dump());
    const std::vector<Row> expected = table.picked(given);
    const Answer shown = ask("show", table.facts->name, given);
    const Answer counted = ask("count", table.facts->name, given);
    EXPECT_EQ(shown.failure + counted.failure, "");
    if (shown.document.is_null() || counted.document.is_null()) return shown.told;
    EXPECT_EQ(shown.document.at("table"), table.facts->databaseName);
    EXPECT_EQ(differences(linesOf(shown.document.at("entries")), linesOf(expected)), "");
    EXPECT_EQ(counted.document, (Json{{"table", table.facts->databaseName}, {"count", expected.size()}}));
    std::string told = shown.told;
    if (const size_t place = told.find("walk of the whole table\n");
        table.facts->countsAll && place != std::string::npos) {
        told.replace(place, 4, "count");
    }
    EXPECT_EQ(counted.told, told);
    return shown.told;
}

void FilledTables::SetUp() {
    mcast6_platform_close();
    tests::forgetProcessState();
    installLibraryLog();
    uint32_t seed = 1;
    for (const auto* layer : {&l3Facts(), &l2Facts()}) {
        for (const TableFacts& facts : *layer) tables.push_back(fill(facts, seed++));
    }
}

void FilledTables::TearDown() {
    mcast6_platform_close();
    tests::forgetProcessState();
}

FilledTable& FilledTables::tableNamed(const std::string& name) {
    const auto found =
        std::find_if(tables.begin(), tables.end(), [&](const FilledTable& table) { return table.facts->name == name; });
    if (found == tables.end()) throw std::out_of_range(name);
    return *found;
}

void FilledTables::expectAll() const {
    for (const FilledTable& table : tables) expectAnswered(table, {});
}

}  // namespace mcast6::ctl::test
