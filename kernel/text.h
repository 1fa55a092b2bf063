// Values as an operator writes and reads them. Parsers take the whole text or nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "mcast6_db/types.h"

namespace mcast6::kernel {

// The routing table that a route without a table number is in, and where --vrf points unless given.
constexpr uint32_t kMainTable = 254;

std::optional<Mcast6Ipv6Addr> parseAddress(std::string_view text);
std::string addressText(const Mcast6Ipv6Addr& address);
bool sameAddress(const Mcast6Ipv6Addr& left, const Mcast6Ipv6Addr& right);
bool isAnyAddress(const Mcast6Ipv6Addr& address);
bool isMulticastAddress(const Mcast6Ipv6Addr& address);

// Decimal, 32 bits, no sign.
std::optional<uint32_t> parseNumber(std::string_view text);

// A routing table: a number, or one of the kernel's own names main, default and local.
std::optional<uint32_t> parseRoutingTable(std::string_view text);

// Seconds since 1970 as "2026-03-31 09:05:00" (UTC); "-" for 0.
std::string timeText(uint64_t seconds);

// Whether a terminal can be given 'text' as it is: valid UTF-8 without control characters, characters that change the
// direction of writing, line separators and invisible ones.
bool isPrintable(std::string_view text);

// 'text' as a message or a table can show it. An ASCII control character and a byte that is not valid UTF-8 become
// \xNN, another character that is not printable \uNNNN or \UNNNNNNNN. What is printable, the result included, stays as
// it is.
std::string printable(std::string_view text);

// The same of a value in a message, where a long one is cut after 80 characters: "abc... (70000 characters)".
std::string shown(std::string_view text);

// "1 entry", "2 entries"; 'noun' ends in y or takes an s.
std::string counted(uint64_t count, std::string_view noun);

}  // namespace mcast6::kernel
