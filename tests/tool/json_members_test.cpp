// The members that docs/mcast6ctl.md promises are those that the tool prints, for every table and both ways.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "cli/tables/layer.h"
#include "kernel/apply/layer2_tables.h"
#include "kernel/apply/layer3_tables.h"
#include "tests/tool/model.h"

namespace mcast6::ctl::test {
namespace {

using Names = std::set<std::string>;

// Every word of 'text' in backquotes.
Names namesIn(const std::string& text) {
    static const std::regex kWord("`([^`]+)`");
    Names names;
    for (auto word = std::sregex_iterator(text.begin(), text.end(), kWord); word != std::sregex_iterator(); ++word) {
        EXPECT_TRUE(names.insert((*word)[1]).second) << (*word)[1] << " is there twice: " << text;
    }
    return names;
}

// The rows of the document's table that begins with 'title', by what the first cell has in backquotes.
std::map<std::string, std::string> documented(const std::string& title) {
    std::ifstream file(MCAST6_DOCS "/mcast6ctl.md");
    std::map<std::string, std::string> rows;
    std::string line;
    while (std::getline(file, line) && !line.starts_with("| " + title + " | Members |")) continue;
    static const std::regex kRow("\\| `([^`]+)` \\| (.*) \\|");
    std::getline(file, line);  // the line under the titles
    for (std::smatch row; std::getline(file, line) && std::regex_match(line, row, kRow);) {
        EXPECT_TRUE(rows.emplace(row[1], row[2]).second) << row[1] << " is there twice";
    }
    EXPECT_FALSE(rows.empty()) << title;
    return rows;
}

Names membersOf(const Json& object) {
    Names names;
    for (const auto& [name, value] : object.items()) names.insert(name);
    return names;
}

template <class Record>
void writeOne(const kernel::TableOperations<Record>& operations) {
    const Record record{};
    EXPECT_EQ(operations.write(&record), 0U) << operations.databaseName;
}

class Documented : public FilledTables {
protected:
    // Those tables that an import fills have an entry as well.
    void SetUp() override {
        FilledTables::SetUp();
        writeOne(kernel::kL2Mc6BdEnable);
        writeOne(kernel::kL2Mc6GlobalEnable);
        writeOne(kernel::kL2Mc6VlanEnable);
        writeOne(kernel::kL2Mc6VlanPort);
        writeOne(kernel::kL2Mc6BdUntagRt);
        writeOne(kernel::kL2Mc6BdTagRt);
        writeOne(kernel::kL2Mc6BdRtVxlanElb);
        writeOne(kernel::kL2Mc6BdMfib);
        writeOne(kernel::kL2Mc6VlanMfib);
        writeOne(kernel::kL2Mc6Elb);
        writeOne(kernel::kL2Mc6BdUntagElb);
        writeOne(kernel::kL2Mc6BdVxlanElb);
    }
};

TEST_F(Documented, members_of_every_table_are_those_shown) {
    std::map<std::string, std::string> rows = documented("Entry of");
    for (const Layer layer : {Layer::kLayer2, Layer::kLayer3}) {
        for (const StoredTable& table : tablesOf(layer)) {
            SCOPED_TRACE(table.name);
            const Json entries = ask("show", table.name, {}).document.at("entries");
            ASSERT_FALSE(entries.empty());
            ASSERT_TRUE(rows.contains(table.name)) << "not documented";
            EXPECT_EQ(namesIn(rows.at(table.name)), membersOf(entries.at(0)));
            rows.erase(table.name);
        }
    }
    for (const auto& [name, members] : rows) ADD_FAILURE() << name << " is documented, but there is no such table";
}

// A command whose document is looked at, and the object of a list in it that must have the members in parentheses.
struct Asked {
    const char* documented;
    const char* verb;
    const char* object;
    Given given;
};

TEST_F(Documented, members_of_each_command_on_tables_are_those_printed) {
    std::map<std::string, std::string> rows = documented("Document of");
    const Given route = tableNamed("l3-mfib").keyOf(tableNamed("l3-mfib").rows.at(0));
    const Given member = tableNamed("l3-elb").keyOf(tableNamed("l3-elb").rows.at(0));
    const std::vector<Asked> all{
        {"show T", "show", "l3-elb", {}},
        {"show l2-mfib", "show", "l2-mfib", {}},
        {"count T", "count", "l3-elb", {}},
        {"count l2-mfib", "count", "l2-mfib", {}},
        {"count l2", "count", "l2", {}},
        {"count l3", "count", "l3", {}},
        {"delete T", "delete", "l3-elb", member},
        {"smooth T --dry-run", "smooth", "l3-bd-tag-elb", {{"version", "1"}, {"dry-run", ""}}},
        {"smooth T", "smooth", "l3-bd-tag-elb", {{"version", "1"}}},
        {"smooth l3-mfib --dry-run", "smooth", "l3-mfib", {{"version", "1"}, {"dry-run", ""}}},
        {"smooth l3-mfib", "smooth", "l3-mfib", {{"version", "0"}}},
        {"smooth l2-bd-mfib", "smooth", "l2-bd-mfib", {{"version", "0"}}},
        {"smooth l2-vlan-mfib", "smooth", "l2-vlan-mfib", {{"version", "0"}}},
        {"smooth l2 --dry-run", "smooth", "l2", {{"version", "1"}, {"dry-run", ""}}},
        {"smooth l2", "smooth", "l2", {{"version", "0"}}},
        {"smooth l3 --dry-run", "smooth", "l3", {{"version", "1"}, {"dry-run", ""}}},
        {"smooth l3", "smooth", "l3", {{"version", "0"}}},
        {"delete l3-mfib", "delete", "l3-mfib", route},
        {"delete l2-mfib", "delete", "l2-mfib", {{"bd", "0"}, {"group", "::"}, {"source", "::"}}},
        {"set T", "set", "bd-enable", {{"bd", "7"}, {"on", ""}}},
    };
    static const std::regex kList("`(\\w+)` \\(list: ([^)]*)\\)");
    for (const Asked& asked : all) {
        SCOPED_TRACE(asked.documented);
        ASSERT_TRUE(rows.contains(asked.documented)) << "not documented";
        const std::string members = rows.at(asked.documented);
        rows.erase(asked.documented);
        const Answer answer = ask(asked.verb, asked.object, asked.given);
        ASSERT_EQ(answer.failure, "");
        EXPECT_EQ(namesIn(std::regex_replace(members, kList, "`$1`")), membersOf(answer.document));
        for (auto list = std::sregex_iterator(members.begin(), members.end(), kList); list != std::sregex_iterator();
             ++list) {
            const Json& items = answer.document.at((*list)[1]);
            ASSERT_FALSE(items.empty());
            EXPECT_EQ(namesIn((*list)[2]), membersOf(items.at(0)));
        }
    }
    for (const auto& [name, members] : rows) ADD_FAILURE() << "not looked at: " << name;
}

TEST_F(Documented, members_under_an_entry_are_those_of_their_tables) {
    std::map<std::string, std::string> rows = documented("Entry of");
    std::map<std::string, std::string> names;  // by database name
    for (const StoredTable& table : l3Tables()) names[table.databaseName] = table.name;
    size_t members = 0;
    const Answer shown = ask("show", "l3-mfib", {{"members", ""}});
    for (const Json& entry : shown.document.at("entries")) {
        Names expected = namesIn(rows.at("l3-mfib"));
        expected.insert("members");
        EXPECT_EQ(membersOf(entry), expected);
        for (const Json& member : entry.at("members")) {
            Names ofMember = namesIn(rows.at(names.at(member.at("table"))));
            ofMember.insert("table");
            EXPECT_EQ(membersOf(member), ofMember);
            ++members;
        }
    }
    EXPECT_GT(members, 0U);
}

}  // namespace
}  // namespace mcast6::ctl::test
