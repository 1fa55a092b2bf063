#include <ostream>
#include <stdexcept>

#include "tests/platform/recorder.h"

namespace mcast6::recording {

namespace {

int digitValue(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    throw std::invalid_argument(std::string("no hexadecimal digit: ") + digit);
}

}  // namespace

Bytes unhex(std::string_view digits) {
    Bytes bytes;
    int high = -1;
    for (const char digit : digits) {
        if (digit == ' ' || digit == '\n') continue;
        const int value = digitValue(digit);
        if (high < 0) {
            high = value;
        } else {
            bytes.push_back(static_cast<uint8_t>(high << 4 | value));
            high = -1;
        }
    }
    if (high >= 0) throw std::invalid_argument("half a byte at the end of the digits");
    return bytes;
}

std::string hex(std::span<const uint8_t> bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const uint8_t byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

void PrintTo(const Trace& trace, std::ostream* out) {
    *out << trace.size() << " lines";
    for (const std::string& line : trace) *out << "\n    " << line;
}

}  // namespace mcast6::recording
