// The catalog of tables: rules for every table, and the content of single tables.
#include "platform/schema/catalog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "mcast6_platform/layout.h"
#include "mcast6_platform/tables.h"

namespace {

using namespace mcast6::schema;
namespace layout = mcast6::layout;

static_assert(kMaxKeyParts == layout::kMaxKeyParts);

std::vector<const Key*> keysOf(const Table& table) {
    std::vector<const Key*> keys{&table.primary};
    for (const Key& index : table.indexes) keys.push_back(&index);
    return keys;
}

class EachTable : public testing::TestWithParam<uint32_t> {
protected:
    const Table& table = catalog()[GetParam()];
};

std::string nameOf(const testing::TestParamInfo<uint32_t>& info) { return std::string(catalog()[info.param].name); }

INSTANTIATE_TEST_SUITE_P(Catalog, EachTable, testing::Range(0u, static_cast<uint32_t>(catalog().size())), nameOf);

TEST_P(EachTable, isFoundByItsName) {
    EXPECT_THAT(std::string(table.name), testing::MatchesRegex("l[23]mc6_[a-z0-9_]+"));
    ASSERT_TRUE(tableNamed(table.name).has_value());
    EXPECT_EQ(GetParam(), *tableNamed(table.name));
}

TEST_P(EachTable, fieldsLieInsideTheRecordWithoutOverlap) {
    std::set<std::string_view> names;
    size_t end = 0;
    for (const Field& field : table.fields) {
        EXPECT_TRUE(names.insert(field.name).second) << field.name;
        EXPECT_LE(end, field.offset) << field.name;
        EXPECT_GT(field.width, 0) << field.name;
        if (field.kind == FieldKind::scalar) {
            EXPECT_TRUE(field.width == 1 || field.width == 2 || field.width == 4 || field.width == 8) << field.name;
        }
        end = size_t{field.offset} + field.width;
    }
    EXPECT_LE(end, table.recordSize);
    EXPECT_LE(table.recordSize, kMaxRecordSize);
    EXPECT_LE(table.fields.size(), kMaxFields);
}

// Accessors share one name space: no two accessors may have the same name.
TEST_P(EachTable, noFieldNameMakesAnAccessorTwice) {
    for (const Field& field : table.fields) {
        EXPECT_NE("all_fields", field.name);
        EXPECT_THAT(std::string(field.name), testing::MatchesRegex("[a-z][A-Za-z0-9]*"));
    }
}

TEST_P(EachTable, keyWordsTellLengthKindAndNumber) {
    std::set<uint32_t> words;
    for (const Key* key : keysOf(table)) {
        size_t length = 0;
        for (const KeyPart& part : key->parts()) length += part.width;
        EXPECT_EQ(length, key->word & 0xFFFF) << std::hex << key->word;
        EXPECT_LE(length, kMaxKeyLength);
        EXPECT_TRUE(words.insert(key->word).second) << std::hex << key->word;
    }
    EXPECT_EQ(0x0001u, table.primary.word >> 16);
    for (const Key& index : table.indexes) {
        const uint32_t kind = (index.word >> 16) & 0xFF;
        EXPECT_TRUE(kind == 9 || kind == 2) << std::hex << index.word;
        EXPECT_EQ(kind == 2, !index.conditionName.empty()) << std::hex << index.word;
        EXPECT_NE(0u, index.word >> 24);
    }
}

TEST_P(EachTable, indexNumbersAscend) {
    for (size_t i = 1; i < table.indexes.size(); ++i) {
        EXPECT_LE(table.indexes[i - 1].number(), table.indexes[i].number());
    }
}

TEST_P(EachTable, keyPartsAreFieldsOrConstants) {
    for (const Key* key : keysOf(table)) {
        for (const KeyPart& part : key->parts()) {
            if (part.isConstant) {
                EXPECT_TRUE(part.width >= 8 || part.constant >> (8 * part.width) == 0) << std::hex << key->word;
                continue;
            }
            bool isField = false;
            for (const Field& field : table.fields) {
                isField |= field.offset == part.offset && part.width <= field.width;
            }
            EXPECT_TRUE(isField) << std::hex << key->word << " part at " << std::dec << part.offset;
        }
    }
}

TEST_P(EachTable, answersOfTheEngineAreThoseAllowed) {
    EXPECT_TRUE(table.absentRemoval == 13044 || (table.absentRemoval == 15005 && table.name == "l3mc6_register_elb"));
    const bool refuses =
        table.name == "l2mc6_global_enable" || table.name == "l2mc6_vlan_port" || table.name == "l2mc6_flowstat_sub";
    EXPECT_EQ(refuses ? PresentWrite::refused : PresentWrite::replaces, table.presentWrite);
    EXPECT_EQ(0u, table.capacity);
}

// 'name offset width kind' for each field, to compare a whole list at once.
std::vector<std::string> fieldsOf(const Table& table) {
    std::vector<std::string> lines;
    for (const Field& field : table.fields) {
        lines.push_back(std::string(field.name) + " " + std::to_string(field.offset) + " " +
                        std::to_string(field.width) + (field.kind == FieldKind::scalar ? " scalar" : " bytes"));
    }
    return lines;
}

std::vector<uint32_t> wordsOf(const Table& table) {
    std::vector<uint32_t> words;
    for (const Key* key : keysOf(table)) words.push_back(key->word);
    return words;
}

// Offset and width of each part; a constant is written as negative width.
std::vector<std::pair<int, int>> partsOf(const Key& key) {
    std::vector<std::pair<int, int>> parts;
    for (const KeyPart& part : key.parts()) parts.emplace_back(part.offset, part.isConstant ? -part.width : part.width);
    return parts;
}

using Parts = std::vector<std::pair<int, int>>;

TEST(Catalog, bridgeDomainEnable) {
    const Table& table = catalog()[*tableNamed("l2mc6_bd_enable")];
    EXPECT_EQ(68, table.recordSize);
    EXPECT_EQ(wordsOf(table), (std::vector<uint32_t>{0x0001000C}));
    EXPECT_EQ(partsOf(table.primary), (Parts{{0, 4}, {4, 4}, {8, 4}}));
    EXPECT_EQ(fieldsOf(table), (std::vector<std::string>{
                                   "keyId1 0 4 scalar",
                                   "keyId2 4 4 scalar",
                                   "addrType 8 4 scalar",
                                   "attrA 12 4 scalar",
                                   "pathFlags 16 4 scalar",
                                   "mldVersion 20 4 scalar",
                                   "attrB 24 4 scalar",
                                   "smoothVersion 28 4 scalar",
                                   "serviceStatus 32 2 bytes",
                                   "errCode 34 2 bytes",
                                   "timeStampCreate 36 8 scalar",
                                   "timeStampSmooth 44 8 scalar",
                                   "l2mcEnable 52 4 scalar",
                                   "attrC 56 12 bytes",
                               }));
}

TEST(Catalog, layer3Mfib) {
    const Table& table = catalog()[*tableNamed("l3mc6_mfib")];
    EXPECT_EQ(208, table.recordSize);
    EXPECT_EQ(33u, table.fields.size());
    EXPECT_EQ(wordsOf(table),
              (std::vector<uint32_t>{0x00010028, 0x02090004, 0x03090008, 0x04090018, 0x05090018, 0x0609001C, 0x0709001C,
                                     0x0809000C, 0x0A090008, 0x0C09000C, 0x0D09001C, 0x0E09001C}));
    const Parts byIndex[] = {
        {{0, 4}, {4, 4}, {8, 16}, {24, 16}},  // vrId, vrfId, groupAddr, sourceAddr
        {{48, 4}},                            // inIfIndex
        {{0, 4}, {4, 4}},
        {{0, 4}, {4, 4}, {24, 16}},
        {{0, 4}, {4, 4}, {8, 16}},
        {{0, 4}, {4, 4}, {24, 16}, {48, 4}},
        {{0, 4}, {4, 4}, {8, 16}, {48, 4}},
        {{0, 4}, {4, 4}, {48, 4}},
        {{0, 4}, {180, 4}},  // vrId, attr23
        {{0, 4}, {4, 4}, {52, 4}},
        {{0, 4}, {4, 4}, {8, 16}, {52, 4}},
        {{0, 4}, {4, 4}, {24, 16}, {52, 4}},
    };
    ASSERT_EQ(std::size(byIndex), keysOf(table).size());
    for (size_t i = 0; i < std::size(byIndex); ++i) EXPECT_EQ(byIndex[i], partsOf(*keysOf(table)[i])) << i;
}

TEST(Catalog, anUnknownNameIsNoTable) {
    EXPECT_FALSE(tableNamed("l3mc6").has_value());
    EXPECT_FALSE(tableNamed("").has_value());
}

// The published layout matches the schema.
template <class Fields, class Indexes>
void expectSameLayout(const Table& table, uint16_t recordSize, const Fields& fields, const layout::Key& primary,
                      const Indexes& indexes) {
    EXPECT_EQ(table.recordSize, recordSize);
    ASSERT_EQ(table.fields.size(), fields.size());
    for (size_t i = 0; i < fields.size(); ++i) {
        EXPECT_EQ(table.fields[i].name, fields[i].name);
        EXPECT_EQ(table.fields[i].offset, fields[i].offset);
        EXPECT_EQ(table.fields[i].width, fields[i].width);
        EXPECT_EQ(table.fields[i].kind == FieldKind::scalar, fields[i].isScalar);
    }
    std::vector<const layout::Key*> keys{&primary};
    for (const layout::Key& index : indexes) keys.push_back(&index);
    ASSERT_EQ(keysOf(table).size(), keys.size());
    for (size_t i = 0; i < keys.size(); ++i) {
        const Key& expected = *keysOf(table)[i];
        EXPECT_EQ(expected.word, keys[i]->word);
        ASSERT_EQ(expected.partCount, keys[i]->partCount);
        for (size_t part = 0; part < expected.partCount; ++part) {
            EXPECT_EQ(expected.partSlots[part].isConstant, keys[i]->parts[part].isConstant);
            EXPECT_EQ(expected.partSlots[part].offset, keys[i]->parts[part].offset);
            EXPECT_EQ(expected.partSlots[part].width, keys[i]->parts[part].width);
            EXPECT_EQ(expected.partSlots[part].constant, keys[i]->parts[part].constant);
        }
        const char* condition = keys[i]->conditionName;
        EXPECT_EQ(expected.conditionName, condition != nullptr ? condition : "");
    }
}

TEST(Catalog, thePublishedLayoutAgrees) {
    {
        using namespace layout::l2mc6_bd_enable;
        expectSameLayout(catalog()[*tableNamed("l2mc6_bd_enable")], kRecordSize, kFields, kPrimary, kIndexes);
    }
    {
        using namespace layout::l3mc6_mfib;
        expectSameLayout(catalog()[*tableNamed("l3mc6_mfib")], kRecordSize, kFields, kPrimary, kIndexes);
    }
}

}  // namespace
