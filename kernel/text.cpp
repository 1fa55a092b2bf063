#include "kernel/text.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>

namespace mcast6::kernel {
namespace {

struct Character {
    char32_t code = 0;
    size_t size = 1;  // in bytes
    bool isValid = false;
};

// The UTF-8 character that 'text' begins with; one byte that is not valid where it begins with none. 'text' is not
// empty.
Character firstCharacter(std::string_view text) {
    constexpr std::array<char32_t, 5> kSmallestOfSize = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80) return {first, 1, true};
    const size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC0 || first > 0xF7 || text.size() < size) return {};
    char32_t code = first & (0x7FU >> size);
    for (const char c : text.substr(1, size - 1)) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0U) != 0x80) return {};
        code = code << 6 | (byte & 0x3FU);
    }
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kSmallestOfSize[size] || code > 0x10FFFF || isSurrogate) return {};
    return {code, size, true};
}

struct CodeRange {
    char32_t first;
    char32_t last;
};

// Characters that command a terminal, turn or break the line, or cannot be seen.
constexpr CodeRange kControls[] = {
    {0x00, 0x1F},        // C0
    {0x7F, 0x9F},        // DEL, C1
    {0x061C, 0x061C},    // Arabic letter mark
    {0x200B, 0x200B},    // zero width space
    {0x200E, 0x200F},    // left-to-right and right-to-left mark
    {0x2028, 0x202E},    // line and paragraph separator; bidirectional embeddings and overrides
    {0x2060, 0x206F},    // word joiner, invisible operators, bidirectional isolates, deprecated formats
    {0xFEFF, 0xFEFF},    // byte order mark
    {0xFFF9, 0xFFFB},    // interlinear annotation
    {0xE0000, 0xE007F},  // tags
};

bool isControl(char32_t code) {
    if (code >= 0x20 && code < 0x7F) return false;
    return std::any_of(std::begin(kControls), std::end(kControls),
                       [&](const CodeRange& range) { return code >= range.first && code <= range.last; });
}

}  // namespace

std::optional<Mcast6Ipv6Addr> parseAddress(std::string_view text) {
    const std::string terminated(text);
    in6_addr bytes{};
    // A NUL inside would end the text early for inet_pton.
    if (terminated.find('\0') != std::string::npos) return std::nullopt;
    if (inet_pton(AF_INET6, terminated.c_str(), &bytes) != 1) return std::nullopt;
    Mcast6Ipv6Addr address{};
    for (size_t word = 0; word < 4; ++word) address.word[word] = ntohl(bytes.s6_addr32[word]);
    return address;
}

std::string addressText(const Mcast6Ipv6Addr& address) {
    in6_addr bytes{};
    for (size_t word = 0; word < 4; ++word) bytes.s6_addr32[word] = htonl(address.word[word]);
    char text[INET6_ADDRSTRLEN] = "";
    inet_ntop(AF_INET6, &bytes, text, sizeof text);
    return text;
}

bool sameAddress(const Mcast6Ipv6Addr& left, const Mcast6Ipv6Addr& right) {
    for (size_t word = 0; word < 4; ++word) {
        if (left.word[word] != right.word[word]) return false;
    }
    return true;
}

bool isAnyAddress(const Mcast6Ipv6Addr& address) { return sameAddress(address, Mcast6Ipv6Addr{}); }

bool isMulticastAddress(const Mcast6Ipv6Addr& address) { return address.word[0] >> 24 == 0xFF; }

std::optional<uint32_t> parseNumber(std::string_view text) {
    uint32_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

std::optional<uint32_t> parseRoutingTable(std::string_view text) {
    if (text == "default") return 253;
    if (text == "main") return kMainTable;
    if (text == "local") return 255;
    return parseNumber(text);
}

std::string timeText(uint64_t seconds) {
    if (seconds == 0) return "-";
    const auto clock = static_cast<std::time_t>(seconds);
    std::tm parts{};
    char text[32] = "";
    if (gmtime_r(&clock, &parts) == nullptr || std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts) == 0) {
        return std::to_string(seconds);
    }
    return text;
}

bool isPrintable(std::string_view text) {
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (!character.isValid || isControl(character.code)) return false;
        text.remove_prefix(character.size);
    }
    return true;
}

std::string printable(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const Character character = firstCharacter(text);
        if (!character.isValid || character.code < 0x80) {
            const auto byte = static_cast<unsigned char>(text.front());
            const bool escaped = !character.isValid || isControl(character.code);
            shown += escaped ? fmt::format("\\x{:02X}", byte) : std::string(1, text.front());
        } else if (isControl(character.code)) {
            const auto code = static_cast<uint32_t>(character.code);
            shown += code > 0xFFFF ? fmt::format("\\U{:08X}", code) : fmt::format("\\u{:04X}", code);
        } else {
            shown += text.substr(0, character.size);
        }
        text.remove_prefix(character.size);
    }
    return shown;
}

std::string shown(std::string_view text) {
    constexpr size_t kMost = 80;
    const auto continues = [&](size_t position) { return (static_cast<unsigned char>(text[position]) & 0xC0) == 0x80; };
    size_t characters = 0;
    size_t cut = text.size();
    for (size_t position = 0; position < text.size(); ++position) {
        if (continues(position)) continue;
        if (characters == kMost) cut = position;
        ++characters;
    }
    if (characters <= kMost) return printable(text);
    return fmt::format("{}... ({} characters)", printable(text.substr(0, cut)), characters);
}

std::string counted(uint64_t count, std::string_view noun) {
    if (count == 1) return fmt::format("1 {}", noun);
    if (noun.ends_with('y')) return fmt::format("{} {}ies", count, noun.substr(0, noun.size() - 1));
    return fmt::format("{} {}s", count, noun);
}

}  // namespace mcast6::kernel
