#include "platform/engine/table_facts.h"

namespace mcast6::engine {

namespace {

bool takesBytesOf(const schema::Key& key, const schema::Field& field) {
    for (const schema::KeyPart& part : key.parts()) {
        const bool apart = part.offset + part.width <= field.offset || field.offset + field.width <= part.offset;
        if (!part.isConstant && !apart) return true;
    }
    return false;
}

}  // namespace

TableFacts::TableFacts(uint32_t tableId, const schema::Table& description)
    : table(&description),
      id(tableId),
      recordSize(description.recordSize),
      primaryWord(description.primary.word),
      allFields(0),
      primaryFields(0) {
    for (size_t i = 0; i < description.fields.size(); ++i) {
        const uint64_t bit = uint64_t{1} << i;
        allFields |= bit;
        if (takesBytesOf(description.primary, description.fields[i])) primaryFields |= bit;
    }
    for (const schema::Key& index : description.indexes) indexWords.push_back(index.word);
}

std::optional<uint32_t> TableFacts::secondaryIndex(uint32_t keyWord) const {
    for (uint32_t i = 0; i < indexWords.size(); ++i) {
        if (indexWords[i] == keyWord && table->indexes[i].kind() == schema::KeyKind::secondary) return i;
    }
    return std::nullopt;
}

std::optional<uint32_t> TableFacts::sortedIndex(uint32_t keyWord, std::string_view conditionName) const {
    for (uint32_t i = 0; i < indexWords.size(); ++i) {
        const schema::Key& index = table->indexes[i];
        if (index.kind() != schema::KeyKind::sorted || index.word != keyWord) continue;
        if (index.conditionName == conditionName) return i;
    }
    return std::nullopt;
}

}  // namespace mcast6::engine
