#include "kernel/text.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <charconv>
#include <ctime>

namespace mcast6::kernel {

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

std::string printable(std::string_view text) {
    std::string shown;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) {
            shown += fmt::format("\\x{:02X}", byte);
        } else {
            shown += c;
        }
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
