// The measured operations, in the order of the table, and the aims.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace mcast6::bench {

enum class Operation : uint8_t {
    load,
    rewrite,
    read,
    fastRead,
    smoothUpdate,
    walk,
    groupFirst,
    groupEntry,
    vrfFirst,
    vrfEntry,
    countGroup,
    countVrf,
    countAll,
    object,
    iterator,
    renewal,
    erase,
};
inline constexpr size_t kOperations = 17;

struct Description {
    Operation operation;
    const char* name;  // for --only and JSON
    const char* title;
    double aim;  // the maximum for the library, as a multiple of the container's time; 0: no aim
};

inline constexpr std::array<Description, kOperations> kDescriptions{{
    {Operation::load, "load", "write, new key (load)", 0.5},
    {Operation::rewrite, "rewrite", "write, present key", 0},
    {Operation::read, "read", "keyed read", 0},
    {Operation::fastRead, "fast-read", "keyed read, read cache", 1.3},
    {Operation::smoothUpdate, "smooth-update", "smooth update", 1.5},
    {Operation::walk, "walk", "full walk, per entry", 0.2},
    {Operation::groupFirst, "group-first", "query by group, first entry", 0},
    {Operation::groupEntry, "group-entry", "query by group, per entry", 0},
    {Operation::vrfFirst, "vrf-first", "query by VR and VRF, first entry", 0},
    {Operation::vrfEntry, "vrf-entry", "query by VR and VRF, per entry", 0},
    {Operation::countGroup, "count-group", "count by group", 0},
    {Operation::countVrf, "count-vrf", "count by VR and VRF", 0},
    {Operation::countAll, "count-all", "count all", 0},
    {Operation::object, "object", "object, create and release", 0},
    {Operation::iterator, "iterator", "iterator, create and release", 0},
    {Operation::renewal, "renewal", "delete and write back", 0},
    {Operation::erase, "delete", "delete", 0},
}};

constexpr size_t indexOf(Operation operation) { return static_cast<size_t>(operation); }

inline constexpr double kMostBytesPerEntry = 480;

}  // namespace mcast6::bench
