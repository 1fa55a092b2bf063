// Which forwarding entry a record is, or is a member of: tables of entries and tables of their members meet here.
#pragma once

#include <array>
#include <cstdint>
#include <unordered_set>

#include "mcast6_db/types.h"

namespace mcast6::ctl {

enum class EntryKind : uint8_t {
    kNone,          // the record has to do with no entry
    kRoute,         // of l3-mfib
    kBridgeDomain,  // of l2-bd-mfib
    kVlan,          // of l2-vlan-mfib
};

// VR, domain (VRF, bridge domain or VLAN), group and source.
using EntryId = std::array<uint32_t, 10>;

struct EntryIdHash {
    size_t operator()(const EntryId& id) const {
        uint64_t hash = 0;
        for (const uint32_t word : id) hash = (hash ^ word) * 0x9E3779B97F4A7C15U, hash ^= hash >> 29;
        return hash;
    }
};

using EntryIds = std::unordered_set<EntryId, EntryIdHash>;

// Where the records of a table have the words of an entry.
template <class Record>
struct EntryWords {
    EntryKind kind = EntryKind::kNone;
    bool isMember = false;  // false: the record is the entry
    uint32_t Record::*vrId = nullptr;
    uint32_t Record::*domain = nullptr;
    Mcast6Ipv6Addr Record::*group = nullptr;
    Mcast6Ipv6Addr Record::*source = nullptr;

    bool areEntries() const { return kind != EntryKind::kNone && !isMember; }

    EntryId idOf(const Record& record) const {
        const auto& to = (record.*group).word;
        const auto& from = (record.*source).word;
        return {record.*vrId, record.*domain, to[0], to[1], to[2], to[3], from[0], from[1], from[2], from[3]};
    }

    void put(const EntryId& id, Record& record) const {
        record.*vrId = id[0];
        record.*domain = id[1];
        for (size_t word = 0; word < 4; ++word) {
            (record.*group).word[word] = id[2 + word];
            (record.*source).word[word] = id[6 + word];
        }
    }
};

}  // namespace mcast6::ctl
