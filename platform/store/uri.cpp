#include "platform/store/uri.h"

#include <charconv>

namespace mcast6::store {
namespace {

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// Replaces %XX escapes. False when one is cut short or stands for a zero byte.
bool unescape(std::string_view from, std::string& to) {
    to.clear();
    for (size_t i = 0; i < from.size(); ++i) {
        if (from[i] != '%') {
            to += from[i];
            continue;
        }
        if (i + 2 >= from.size() || !isHexDigit(from[i + 1]) || !isHexDigit(from[i + 2])) return false;
        unsigned byte = 0;
        std::from_chars(from.data() + i + 1, from.data() + i + 3, byte, 16);
        if (byte == 0) return false;
        to += static_cast<char>(byte);
        i += 2;
    }
    return true;
}

bool parseOption(std::string_view text, Uri::Option& option) {
    const size_t equals = text.find('=');
    option.hasValue = equals != std::string_view::npos;
    return unescape(text.substr(0, equals), option.name) && !option.name.empty() &&
           unescape(option.hasValue ? text.substr(equals + 1) : std::string_view(), option.value);
}

}  // namespace

bool parseUri(std::string_view text, Uri& uri, std::string& reason) {
    const size_t colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0) {
        reason = "not a URI: a kind of store and a colon are expected first";
        return false;
    }
    uri = {std::string(text.substr(0, colon)), {}, {}};
    std::string_view rest = text.substr(colon + 1);
    const size_t question = rest.find('?');
    if (!unescape(rest.substr(0, question), uri.path)) {
        reason = "a '%' must be followed by two hexadecimal digits, and not by 00";
        return false;
    }
    if (question == std::string_view::npos) return true;
    for (rest = rest.substr(question + 1);;) {
        const size_t end = rest.find('&');
        const std::string_view option = rest.substr(0, end);
        if (!parseOption(option, uri.options.emplace_back())) {
            reason = "option '" + std::string(option) + "' is malformed: 'name' or 'name=value' is expected";
            return false;
        }
        if (end == std::string_view::npos) return true;
        rest = rest.substr(end + 1);
    }
}

void OptionReader::complain(std::string text) {
    if (mistake.empty()) mistake = std::move(text);
}

const Uri::Option* OptionReader::take(std::string_view name) {
    known.append(known.empty() ? "" : ", ").append(name);
    const Uri::Option* found = nullptr;
    for (size_t i = 0; i < uri.options.size(); ++i) {
        if (uri.options[i].name != name) continue;
        if (found != nullptr) complain("option '" + std::string(name) + "' is given twice");
        isTaken[i] = true;
        found = &uri.options[i];
    }
    return found;
}

uint64_t OptionReader::scaled(std::string_view name, uint64_t otherwise, uint64_t least, uint64_t most, bool isSize) {
    const Uri::Option* const option = take(name);
    if (option == nullptr) return otherwise;
    const char* const begin = option->value.data();
    const char* const end = begin + option->value.size();
    uint64_t value = 0;
    const auto [rest, error] = std::from_chars(begin, end, value);
    bool isRight = error == std::errc() && rest != begin;
    unsigned shift = 0;
    if (isRight && rest != end) {
        shift = *rest == 'K' ? 10 : *rest == 'M' ? 20 : *rest == 'G' ? 30 : 0;
        isRight = isSize && shift != 0 && rest + 1 == end && value <= UINT64_MAX >> shift;
    }
    value <<= shift;
    if (isRight && value >= least && value <= most) return value;
    complain("option '" + std::string(name) + "': '" + option->value + "' is not a " +
             (isSize ? "size (a number, with K, M or G behind it or nothing)" : "number") + " from " +
             std::to_string(least) + " to " + std::to_string(most));
    return otherwise;
}

uint64_t OptionReader::number(std::string_view name, uint64_t otherwise, uint64_t least, uint64_t most) {
    return scaled(name, otherwise, least, most, false);
}

uint64_t OptionReader::size(std::string_view name, uint64_t otherwise, uint64_t least, uint64_t most) {
    return scaled(name, otherwise, least, most, true);
}

bool OptionReader::flag(std::string_view name) {
    const Uri::Option* const option = take(name);
    if (option == nullptr) return false;
    if (!option->hasValue || option->value == "1") return true;
    if (option->value != "0") {
        complain("option '" + std::string(name) + "': '" + option->value + "' is neither 0 nor 1");
    }
    return false;
}

std::string OptionReader::text(std::string_view name, std::string_view otherwise) {
    const Uri::Option* const option = take(name);
    if (option == nullptr) return std::string(otherwise);
    if (option->value.empty()) complain("option '" + std::string(name) + "' needs a value");
    return option->value;
}

bool OptionReader::finish(std::string& reason) {
    for (size_t i = 0; i < isTaken.size(); ++i) {
        if (isTaken[i]) continue;
        complain("unknown option '" + uri.options[i].name + "'; " + uri.scheme + ": takes " +
                 (known.empty() ? "none" : known));
    }
    if (mistake.empty()) return true;
    reason = mistake;
    return false;
}

}  // namespace mcast6::store
