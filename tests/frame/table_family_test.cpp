// The helpers for tests of tables find the defects they are written for.
#include "tests/support/table_family.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mcast6_platform/tables/l2mc6_vlan_port.h"

namespace mcast6::tests {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct Pair {
    uint32_t first;
    uint32_t second;
};

void fillPair(Pair& record) { record = {0x01020304, 0x05060708}; }
void readPair(Pair& record) { record.second = 0x0C0B0A09; }

uint32_t createPort(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    return db_create_l2mc6_vlan_port_obj(objType, connType, object);
}

TableFamily<Pair> pairs({.name = "l2mc6_vlan_port",
                         .rowSize = 4,
                         .key = "key=00010004:04030201",
                         .writtenRow = "08070605",
                         .storedRow = "090a0b0c",
                         .released = line("release l2mc6_vlan_port obj1"),
                         .createObject = createPort},
                        fillPair, readPair);

void setPair(const Pair* record, void* row) { std::memcpy(row, &record->second, 4); }
void getPair(const void* row, Pair* record) { std::memcpy(&record->second, row, 4); }
void setPairKey(Mcast6DbKeyDesc* descriptor, void* key, const Pair* record) {
    descriptor->keyWord = 0x00010004;
    std::memcpy(key, &record->first, 4);
}

TEST(TableFamilyTest, rowsAreReadAndWhatLiesAroundThemIsWatched) {
    EXPECT_EQ("08070605", pairs.rowOf(setPair));
    EXPECT_EQ("5a5a5a5a", pairs.rowOf([](const Pair*, void*) {}));
    for (const int offset : {-1, 4}) {
        EXPECT_THAT(pairs.rowOf([offset](const Pair*, void* row) { static_cast<uint8_t*>(row)[offset] = 0; }),
                    HasSubstr("writes outside its place"));
    }
    EXPECT_THAT(pairs.rowOf([](Pair* record, void*) { record->first = 0; }), HasSubstr("changes the record"));
}

TEST(TableFamilyTest, recordsAreReadAndTheirRowIsWatched) {
    EXPECT_EQ("04030201090a0b0c", pairs.readBack());
    EXPECT_EQ(pairs.readBack(), pairs.recordOf(getPair));
    EXPECT_EQ("0403020108070605", pairs.recordOf([](const void*, Pair*) {}));
    EXPECT_THAT(pairs.recordOf([](void* row, Pair*) { static_cast<uint8_t*>(row)[3] = 0; }),
                HasSubstr("changes the row"));
}

TEST(TableFamilyTest, keysAreReadAndTheRestOfTheDescriptorIsWatched) {
    EXPECT_EQ("key=00010004:04030201", pairs.keyOf(setPairKey));
    EXPECT_EQ("key=5a5a5a5a:5a5a5a5a", pairs.keyOf([](Mcast6DbKeyDesc*, void*, const Pair*) {}));
    EXPECT_THAT(pairs.keyOf([](Mcast6DbKeyDesc* descriptor, void*, const Pair*) { descriptor->reserved[2] = 0; }),
                HasSubstr("changes the descriptor"));
    EXPECT_THAT(pairs.keyOf([](Mcast6DbKeyDesc*, void* key, const Pair*) { static_cast<uint8_t*>(key)[4] = 0; }),
                HasSubstr("writes outside its place"));
}

uint32_t stampBoth(Mcast6DbHandle object, bool isOred) {
    const uint32_t smooth = db_set_l2mc6_vlan_port_timeStampSmooth(object, 1'700'000'000);
    const uint32_t create = db_set_l2mc6_vlan_port_timeStampCreate(object, 1'700'000'000);
    return isOred ? smooth | create : smooth;
}

TEST(TableFamilyTest, stampsAreHeldToBothCallsTheTimeAndTheOrOfTheCodes) {
    EXPECT_THAT(pairs.stampMismatches([](Mcast6DbHandle object, uint32_t) { return stampBoth(object, true); }),
                IsEmpty());
    // With a failing setter of the creation time it is wrong for both flags.
    EXPECT_THAT(pairs.stampMismatches([](Mcast6DbHandle object, uint32_t) { return stampBoth(object, false); }),
                SizeIs(4));
    EXPECT_THAT(pairs.stampMismatches([](Mcast6DbHandle object, uint32_t) {
        return db_set_l2mc6_vlan_port_timeStampSmooth(object, 1'700'000'000);
    }),
                SizeIs(8));
    EXPECT_THAT(pairs.stampMismatches([](Mcast6DbHandle object, uint32_t flag) {
        return flag == 1 ? stampBoth(object, true) : db_set_l2mc6_vlan_port_timeStampSmooth(object, 1'700'000'000);
    }),
                SizeIs(4));
}

}  // namespace

}  // namespace mcast6::tests
