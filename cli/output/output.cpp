#include "cli/output/output.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/failure.h"
#include "cli/output/interrupt.h"
#include "kernel/text.h"

namespace mcast6::ctl {
namespace {

// Names and messages come from files and command lines. What a terminal must not be given is escaped, so that it keeps
// its value; bytes that are not valid UTF-8 become U+FFFD.
std::string jsonString(std::string_view text) {
    const bool plain = isPrintable(text);
    if (plain && text.find_first_of("\"\\") == std::string_view::npos) return fmt::format("\"{}\"", text);
    return nlohmann::json(text).dump(-1, ' ', !plain, nlohmann::json::error_handler_t::replace);
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

constexpr size_t kLongestCell = UINT16_MAX;

// The start of 'cell' that a table keeps, without half a character at its end.
std::string_view keptOf(std::string_view cell) {
    if (cell.size() <= kLongestCell) return cell;
    size_t size = kLongestCell;
    while ((static_cast<unsigned char>(cell[size]) & 0xC0U) == 0x80) --size;
    return cell.substr(0, size);
}

// How many places of a terminal line valid UTF-8 takes. Output is UTF-8 whatever the user's locale, and so is this.
size_t placesOf(std::string_view text) {
    if (std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
        return text.size();
    }
    static const locale_t kUtf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t before = kUtf8 == nullptr ? nullptr : uselocale(kUtf8);
    size_t places = 0;
    std::mbstate_t state{};
    while (!text.empty()) {
        wchar_t character = 0;
        const size_t size = std::mbrtowc(&character, text.data(), text.size(), &state);
        if (size == 0 || size > text.size()) break;
        places += static_cast<size_t>(std::max(wcwidth(character), 0));
        text.remove_prefix(size);
    }
    if (before != nullptr) uselocale(before);
    return places + text.size();
}

// Of the first write to standard output that failed; 0: none did.
int outputError = 0;

// In one write where it can be, after what standard output was given. What standard error does not take is lost: that a
// message cannot be told is no reason to fail.
void writeError(const std::string& text) {
    flushOutput();
    std::fwrite(text.data(), 1, text.size(), stderr);
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
    for (size_t column = 0; column < titles_.size(); ++column) widths_[column] = placesOf(titles_[column]);
}

void TextTable::row(const std::vector<std::string>& cells) {
    failIfInterrupted();
    for (size_t column = 0; column < cells.size(); ++column) {
        std::string escaped;
        if (!isPrintable(cells[column])) escaped = printable(cells[column]);
        const std::string_view cell = keptOf(escaped.empty() ? cells[column] : escaped);
        text_ += cell;
        lengths_.push_back(static_cast<uint16_t>(cell.size()));
        widths_[column] = std::max(widths_[column], placesOf(cell));
        if (!isNumber(cell)) numeric_[column] = false;
    }
}

void TextTable::printLine(const std::string_view* cells) const {
    std::string line;
    for (size_t column = 0; column < widths_.size(); ++column) {
        const std::string padding(widths_[column] - placesOf(cells[column]), ' ');
        if (column > 0) line += "  ";
        if (numeric_[column]) line += padding;
        line += cells[column];
        if (!numeric_[column]) line += padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    line += '\n';
    ctl::print(line);
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
    return link == nullptr ? std::to_string(*number) : link->name;
}

void writeMember(JsonWriter& json, const ColumnHead& head, const Value& value, const RouterLinks& links) {
    json.member(head.name, value);
    const auto* number = std::get_if<uint64_t>(&value);
    if (!namesLink(head) || number == nullptr) return;
    const LinkName* link = linkOf(head, *number, links);
    json.member(linkMemberName(head.name), link == nullptr ? Value() : Value(link->name));
}

void print(std::string_view text) {
    failIfInterrupted();
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && outputError == 0) outputError = errno;
}

void printLine(std::string_view text) {
    print(isPrintable(text) ? text : printable(text));
    print("\n");
}

void flushOutput() {
    if (std::fflush(stdout) != 0 && outputError == 0) outputError = errno;
}

void finishOutput() {
    flushOutput();
    if (outputError == 0) return;
    throw Failure(fmt::format("cannot write to standard output: {}", std::strerror(outputError)));
}

void complain(std::string_view line, const std::vector<std::string>& notes) {
    std::string text = fmt::format("mcast6ctl: {}\n", printable(line));
    for (const std::string& note : notes) text += fmt::format("  {}\n", printable(note));
    writeError(text);
}

void printNote(std::string_view line) { writeError(printable(line) + "\n"); }

}  // namespace mcast6::ctl
