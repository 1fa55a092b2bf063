// What commands print on standard output: aligned tables for people, or with --json one document a line for programs.
// Text from files and command lines may be given as it is: cells, lines and messages are escaped here (printable() in
// kernel/text.h), and JSON is valid UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/kernel.h"
#include "cli/output/link_names.h"

namespace mcast6::ctl {

// monostate is "none": "-" in tables, null in JSON.
using Value = std::variant<std::monostate, bool, uint64_t, std::string>;

enum class ColumnKind {
    kPlain,
    kTime,       // seconds: a date in tables, the number in JSON
    kInterface,  // an index, 0 for none: the name in tables where it is known, both in JSON
    kBridge,     // a number that is a bridge's index where an import made it: the name in tables then, both in JSON
};

struct ColumnHead {
    const char* title;  // in tables; null: in JSON only
    const char* name;   // in JSON
    ColumnKind kind = ColumnKind::kPlain;
};

// Writes one JSON document, a member at a time.
class JsonWriter {
public:
    JsonWriter& beginObject(std::string_view name = {});
    JsonWriter& endObject();
    JsonWriter& beginArray(std::string_view name = {});
    JsonWriter& endArray();
    JsonWriter& member(std::string_view name, const Value& value);

    // What was written since the last call.
    std::string take();

private:
    void begin(std::string_view name, char bracket);
    void separate(std::string_view name);

    std::string text_;
    bool first_ = true;
};

// Lines of aligned cells, as UTF-8; a column of numbers is aligned on the right.
class TextTable {
public:
    explicit TextTable(std::vector<std::string> titles);
    void row(const std::vector<std::string>& cells);
    // Standard output gets the titles and all rows; nothing when there is no row.
    void print() const;
    size_t rows() const { return lengths_.size() / widths_.size(); }

private:
    void printLine(const std::string_view* cells) const;

    std::vector<std::string> titles_;
    std::vector<size_t> widths_;
    std::vector<bool> numeric_;
    // All cells one after the other: a million rows must not cost a string for each.
    std::string text_;
    std::vector<uint16_t> lengths_;
};

// How a table and a JSON object show 'value' under 'head'; an interface that 'links' lacks has no name.
std::string cellText(const ColumnHead& head, const Value& value, const RouterLinks& links);
void writeMember(JsonWriter& json, const ColumnHead& head, const Value& value, const RouterLinks& links);

// The rows of one list, as a table or as an array of objects.
class RowPrinter {
public:
    RowPrinter(bool json, std::vector<ColumnHead> heads);
    // In the order of the heads; 'links' names the row's interfaces.
    void row(const std::vector<Value>& values, const RouterLinks& links = noLinks());
    // Ends the list; standard output has all of it then.
    void finish();
    uint64_t rows() const { return rows_; }

    // Inside the document that holds the array; for JSON only.
    JsonWriter& json() { return writer_; }

private:
    bool json_;
    std::vector<ColumnHead> heads_;
    TextTable table_;
    JsonWriter writer_;
    uint64_t rows_ = 0;
};

// Writes to standard output. finishOutput throws Failure when any of it was lost, print when the command was
// interrupted.
void print(std::string_view text);  // as it is
void printLine(std::string_view text);
void flushOutput();
void finishOutput();

// A line on standard error, after everything that standard output was given before, and its notes, each on a line
// below.
void complain(std::string_view line, const std::vector<std::string>& notes = {});
// The same without the tool's name.
void printNote(std::string_view line);

}  // namespace mcast6::ctl
