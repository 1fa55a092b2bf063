#include "platform/store/fingerprint.h"

#include <string_view>

namespace mcast6::store {
namespace {

// FNV-1a over numbers as eight bytes, least significant first, and over texts with their length in front.
class Digest {
public:
    void add(uint64_t number) {
        for (unsigned shift = 0; shift < 64; shift += 8) addByte(static_cast<uint8_t>(number >> shift));
    }
    void add(std::string_view text) {
        add(uint64_t{text.size()});
        for (const char c : text) addByte(static_cast<uint8_t>(c));
    }
    void add(const schema::Key& key) {
        add(uint64_t{key.word});
        add(key.conditionName);
        add(uint64_t{key.partCount});
        for (const schema::KeyPart& part : key.parts()) {
            for (const uint64_t number : {uint64_t{part.isConstant}, uint64_t{part.isScalar}, uint64_t{part.offset},
                                          uint64_t{part.width}, part.constant}) {
                add(number);
            }
        }
    }
    uint64_t value() const { return state; }

private:
    void addByte(uint8_t byte) { state = (state ^ byte) * 0x00000100000001B3U; }

    uint64_t state = 0xCBF29CE484222325U;
};

}  // namespace

uint64_t fingerprint(std::span<const schema::Table> tables) {
    Digest digest;
    digest.add(uint64_t{tables.size()});
    for (const schema::Table& table : tables) {
        digest.add(table.name);
        digest.add(uint64_t{table.recordSize});
        digest.add(uint64_t{table.fields.size()});
        for (const schema::Field& field : table.fields) {
            digest.add(field.name);
            digest.add(uint64_t{field.offset});
            digest.add(uint64_t{field.width});
            digest.add(static_cast<uint64_t>(field.kind));
        }
        digest.add(table.primary);
        digest.add(uint64_t{table.indexes.size()});
        for (const schema::Key& index : table.indexes) digest.add(index);
        digest.add(static_cast<uint64_t>(table.presentWrite));
        digest.add(table.capacity);
    }
    return digest.value();
}

}  // namespace mcast6::store
