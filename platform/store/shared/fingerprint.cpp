#include "platform/store/shared/fingerprint.h"

namespace mcast6::store::shared {
namespace {

class Mix {
public:
    void number(uint64_t value) {
        for (int i = 0; i < 8; ++i) byte(static_cast<uint8_t>(value >> (8 * i)));
    }
    void text(std::string_view value) {
        number(value.size());
        for (const char c : value) byte(static_cast<uint8_t>(c));
    }
    void key(const schema::Key& of) {
        number(of.word);
        for (const schema::KeyPart& part : of.parts()) {
            number(uint64_t{part.isConstant} << 1 | uint64_t{part.isScalar});
            number(part.offset);
            number(part.width);
            number(part.constant);
        }
    }
    uint64_t value() const { return mixed; }

private:
    void byte(uint8_t value) { mixed = (mixed ^ value) * 0x100000001B3; }

    uint64_t mixed = 0xCBF29CE484222325;
};

}  // namespace

uint64_t fingerprintOf(std::span<const schema::Table> tables) {
    Mix mix;
    mix.number(tables.size());
    for (const schema::Table& table : tables) {
        mix.text(table.name);
        mix.number(table.recordSize);
        mix.number(table.fields.size());
        for (const schema::Field& field : table.fields) {
            mix.text(field.name);
            mix.number(field.offset);
            mix.number(field.width);
            mix.number(static_cast<uint64_t>(field.kind));
        }
        mix.key(table.primary);
        mix.number(table.indexes.size());
        for (const schema::Key& key : table.indexes) mix.key(key);
        mix.number(static_cast<uint64_t>(table.presentWrite));
        mix.number(table.capacity);
    }
    return mix.value();
}

}  // namespace mcast6::store::shared
