// The tables as they should be: what was written to each, and what the tool must answer for any filters.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "tests/tool/table.h"
#include "tests/tool/tool.h"

namespace mcast6::ctl::test {

// A table and the rows that were written to it.
struct FilledTable {
    const TableFacts* facts;
    std::vector<Row> rows;

    std::vector<Row> picked(const Given& given) const;
    // The filters that name 'row', with its texts.
    Given keyOf(const Row& row) const;
    // The texts that a filter is tried with: those of all rows, and one that no row has.
    std::set<std::string> textsOf(const std::string& filter) const;
    std::set<std::string> filters() const;
    // Takes the rows away that 'isGone' tells, and returns how many.
    size_t remove(const std::function<bool(const Row&)>& isGone);
};

// 'row' belongs to the forwarding entry of 'entry', or is one with its key.
bool isOfEntry(const Row& row, const Row& entry);

// Takes the members of these forwarding entries away that can be deleted, and returns how many.
size_t removeMembers(std::vector<FilledTable>& tables, const std::vector<Row>& entries);

using Lines = std::multiset<std::string>;

Lines linesOf(const std::vector<Row>& rows);
// Of the entries that show printed, whose times must be set.
Lines linesOf(const Json& entries);

// The lines that only one of the two has, or "".
std::string differences(const Lines& shown, const Lines& expected);

// show and count with these filters answer what was written. Returns what show told about the query.
std::string expectAnswered(const FilledTable& table, const Given& given);

// Each test starts with all tables filled, and nothing else in the store or cached by the library.
class FilledTables : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    FilledTable& tableNamed(const std::string& name);
    // Each table holds what the model has.
    void expectAll() const;

    std::vector<FilledTable> tables;
};

}  // namespace mcast6::ctl::test
