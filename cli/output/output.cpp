#include "cli/output/output.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/failure.h"
#include "kernel/text.h"

namespace mcast6::ctl {
namespace {

// Names and messages come from files and command lines and need not be valid UTF-8; JSON must be.
std::string jsonString(std::string_view text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string jsonText(const Value& value) {
    if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "true" : "false";
    if (const auto* number = std::get_if<uint64_t>(&value)) return std::to_string(*number);
    if (const auto* text = std::get_if<std::string>(&value)) return jsonString(*text);
    return "null";
}

std::vector<std::string> titlesOf(const std::vector<ColumnHead>& heads) {
    std::vector<std::string> titles;
    for (const ColumnHead& head : heads) {
        if (head.title != nullptr) titles.emplace_back(head.title);
    }
    return titles;
}

bool namesLink(const ColumnHead& head) {
    return head.kind == ColumnKind::kInterface || head.kind == ColumnKind::kBridge;
}

const LinkName* linkOf(const ColumnHead& head, uint64_t index, const RouterLinks& links) {
    const LinkName* link = links.byIndex(static_cast<uint32_t>(index));
    return link != nullptr && head.kind == ColumnKind::kBridge && !link->isBridge ? nullptr : link;
}

// inIfIndex is followed by inIfName, bdId by bdName, keyId1 by keyId1Name.
std::string linkMemberName(std::string name) {
    for (const std::string_view ending : {"Index", "Id"}) {
        if (name.ends_with(ending)) name.resize(name.size() - ending.size());
    }
    return name + "Name";
}

bool isNumber(std::string_view cell) {
    return cell == "-" || std::all_of(cell.begin(), cell.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

JsonWriter& JsonWriter::beginObject(std::string_view name) {
    begin(name, '{');
    return *this;
}

JsonWriter& JsonWriter::beginArray(std::string_view name) {
    begin(name, '[');
    return *this;
}

void JsonWriter::begin(std::string_view name, char bracket) {
    separate(name);
    text_ += bracket;
    first_ = true;
}

JsonWriter& JsonWriter::endObject() {
    text_ += '}';
    first_ = false;
    return *this;
}

JsonWriter& JsonWriter::endArray() {
    text_ += ']';
    first_ = false;
    return *this;
}

JsonWriter& JsonWriter::member(std::string_view name, const Value& value) {
    separate(name);
    text_ += jsonText(value);
    return *this;
}

void JsonWriter::separate(std::string_view name) {
    if (!first_) text_ += ',';
    first_ = false;
    if (!name.empty()) text_ += jsonString(name) + ':';
}

std::string JsonWriter::take() { return std::exchange(text_, {}); }

TextTable::TextTable(std::vector<std::string> titles)
    : titles_(std::move(titles)), widths_(titles_.size()), numeric_(titles_.size(), true) {
    for (size_t column = 0; column < titles_.size(); ++column) widths_[column] = titles_[column].size();
}

void TextTable::row(const std::vector<std::string>& cells) {
    for (size_t column = 0; column < cells.size(); ++column) {
        const std::string_view cell = std::string_view(cells[column]).substr(0, UINT16_MAX);
        text_ += cell;
        lengths_.push_back(static_cast<uint16_t>(cell.size()));
        widths_[column] = std::max(widths_[column], cell.size());
        if (!isNumber(cell)) numeric_[column] = false;
    }
}

void TextTable::printLine(const std::string_view* cells) const {
    std::string line;
    for (size_t column = 0; column < widths_.size(); ++column) {
        const std::string padding(widths_[column] - cells[column].size(), ' ');
        if (column > 0) line += "  ";
        if (numeric_[column]) line += padding;
        line += cells[column];
        if (!numeric_[column]) line += padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    ctl::printLine(line);
}

void TextTable::print() const {
    if (lengths_.empty()) return;
    std::vector<std::string_view> cells(titles_.begin(), titles_.end());
    printLine(cells.data());
    std::string_view rest = text_;
    for (size_t next = 0; next < lengths_.size();) {
        for (std::string_view& cell : cells) {
            cell = rest.substr(0, lengths_[next]);
            rest.remove_prefix(lengths_[next++]);
        }
        printLine(cells.data());
    }
}

RowPrinter::RowPrinter(bool json, std::vector<ColumnHead> heads)
    : json_(json), heads_(std::move(heads)), table_(titlesOf(heads_)) {}

void RowPrinter::row(const std::vector<Value>& values, const RouterLinks& links) {
    ++rows_;
    if (json_) {
        writer_.beginObject();
        for (size_t column = 0; column < heads_.size(); ++column) {
            writeMember(writer_, heads_[column], values[column], links);
        }
        writer_.endObject();
        print(writer_.take());
        return;
    }
    std::vector<std::string> cells;
    for (size_t column = 0; column < heads_.size(); ++column) {
        if (heads_[column].title != nullptr) cells.push_back(cellText(heads_[column], values[column], links));
    }
    table_.row(cells);
}

void RowPrinter::finish() {
    if (json_) {
        print(writer_.take());
    } else {
        table_.print();
    }
}

std::string cellText(const ColumnHead& head, const Value& value, const RouterLinks& links) {
    if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "on" : "off";
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    const auto* number = std::get_if<uint64_t>(&value);
    if (number == nullptr) return "-";
    if (head.kind == ColumnKind::kTime) return timeText(*number);
    if (!namesLink(head)) return std::to_string(*number);
    if (*number == 0 && head.kind == ColumnKind::kInterface) return "-";
    const LinkName* link = linkOf(head, *number, links);
    return link == nullptr ? std::to_string(*number) : printable(link->name);
}

void writeMember(JsonWriter& json, const ColumnHead& head, const Value& value, const RouterLinks& links) {
    json.member(head.name, value);
    const auto* number = std::get_if<uint64_t>(&value);
    if (!namesLink(head) || number == nullptr) return;
    const LinkName* link = linkOf(head, *number, links);
    json.member(linkMemberName(head.name), link == nullptr ? Value() : Value(link->name));
}

void print(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

void printLine(std::string_view text) {
    print(text);
    print("\n");
}

void finishOutput() {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return;
    throw Failure(fmt::format("cannot write to standard output: {}", std::strerror(errno)));
}

void complain(std::string_view line) {
    std::fflush(stdout);
    fmt::print(stderr, "mcast6ctl: {}\n", line);
}

}  // namespace mcast6::ctl
