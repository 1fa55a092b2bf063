// What the engine needs to know of a table in every call, computed once from its description.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/schema/schema.h"

namespace mcast6::engine {

struct TableFacts {
    TableFacts(uint32_t tableId, const schema::Table& description);

    // The position of the secondary index with this key word, or of the sorted key with this word and condition name.
    std::optional<uint32_t> secondaryIndex(uint32_t keyWord) const;
    std::optional<uint32_t> sortedIndex(uint32_t keyWord, std::string_view conditionName) const;

    const schema::Table* table;
    uint32_t id;
    uint32_t recordSize;
    uint32_t primaryWord;
    uint64_t allFields;      // bit i: field i
    uint64_t primaryFields;  // those that the primary key takes bytes of
    std::vector<uint32_t> indexWords;
};

}  // namespace mcast6::engine
