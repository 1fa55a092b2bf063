// l3mc6_glbcfg on the shipped platform: records, and their versions from its store of global versions.
#include "mcast6_db/l3mc6_glbcfg.h"

#include <gmock/gmock.h>

#include <cstring>
#include <set>
#include <vector>

#include "mcast6_db/context.h"
#include "mcast6_platform/host.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::IsEmpty;

// The version record of the store of global versions.
struct VersionRecord {
    uint32_t key[3];
    uint32_t unused1[2];
    uint32_t version;
    uint32_t unused2[4];
};
static_assert(sizeof(VersionRecord) == 40);

class GlbCfgSystemTest : public SystemTest {
protected:
    // A record with a key that has no global version yet. Versions outlive the tables.
    static L3Mc6GlbCfgEntry freshRecord() {
        static uint32_t last = 0;
        L3Mc6GlbCfgEntry record{};
        record.cfgKeyA = 0x6C620000;
        record.cfgKeyB = 7;
        record.cfgKeyC = ++last;
        return record;
    }

    // The global version of a record's key; 0 if there is none.
    static uint32_t globalVersionOf(const L3Mc6GlbCfgEntry& record) {
        VersionRecord global{{record.cfgKeyA, record.cfgKeyB, record.cfgKeyC}, {}, 0, {}};
        return MCAST_DB_ReadGlbVersion(&global) == 0 ? global.version : 0;
    }
};

// -- records

TEST_F(GlbCfgSystemTest, readsBackWhatWasWritten) {
    L3Mc6GlbCfgEntry record = freshRecord();
    record.cfgWord3 = 3;
    record.smoothVersion = 5;
    record.cfgWord6 = 6;
    record.cfgWord7 = 0x80000007;
    record.timeStampCreate = 11;
    record.timeStampSmooth = 12;
    ASSERT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
    EXPECT_EQ(11u, record.timeStampCreate);

    L3Mc6GlbCfgEntry read{};
    read.cfgKeyA = record.cfgKeyA;
    read.cfgKeyB = record.cfgKeyB;
    read.cfgKeyC = record.cfgKeyC;
    ASSERT_EQ(0u, MCAST6_DB_ReadGlbCfg(&read));
    L3Mc6GlbCfgEntry expected = record;
    expected.glbVersion = 1;
    expected.timeStampCreate = 1'000;
    expected.timeStampSmooth = 1'000;
    EXPECT_EQ(0, std::memcmp(&expected, &read, sizeof read));
    EXPECT_EQ(1u, mcast6_platform_kpi(145));
    EXPECT_EQ(0u, mcast6_platform_kpi(146));
    EXPECT_EQ(2u, mcast6_platform_counter(33));
    EXPECT_EQ(2u, mcast6_platform_counter(34));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(GlbCfgSystemTest, aSecondWriteReplacesTheRecordAndItsStamps) {
    L3Mc6GlbCfgEntry record = freshRecord();
    record.cfgWord3 = 3;
    ASSERT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
    setTime(1'010);
    record.cfgWord3 = 4;
    EXPECT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[0][1]);
    EXPECT_EQ(2u, mcast6_platform_kpi(145));
    ASSERT_EQ(0u, MCAST6_DB_ReadGlbCfg(&record));
    EXPECT_EQ(4u, record.cfgWord3);
    EXPECT_EQ(1'010u, record.timeStampCreate);
    EXPECT_EQ(1'010u, record.timeStampSmooth);
    uint32_t count = 0;
    EXPECT_EQ(0u, MCAST6_DB_GetGlbCfgCount(&count));
    EXPECT_EQ(1u, count);
}

TEST_F(GlbCfgSystemTest, theSmoothVersionUpdateChangesNothingElse) {
    L3Mc6GlbCfgEntry record = freshRecord();
    record.cfgWord3 = 3;
    record.smoothVersion = 5;
    ASSERT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
    setTime(1'010);
    L3Mc6GlbCfgEntry change = record;
    change.cfgWord3 = 4;
    change.glbVersion = 99;
    change.smoothVersion = 6;
    EXPECT_EQ(0u, MCAST6_DB_UpdateGlbCfgSmoothVersion(&change));
    ASSERT_EQ(0u, MCAST6_DB_ReadGlbCfg(&record));
    EXPECT_EQ(6u, record.smoothVersion);
    EXPECT_EQ(3u, record.cfgWord3);
    EXPECT_EQ(1u, record.glbVersion);
    EXPECT_EQ(1'000u, record.timeStampSmooth);
    EXPECT_EQ(0u, errors());
}

TEST_F(GlbCfgSystemTest, aMissingRecordIs15005AndItsChangesStoreNothing) {
    L3Mc6GlbCfgEntry record = freshRecord();
    EXPECT_EQ(15005u, MCAST6_DB_ReadGlbCfg(&record));
    EXPECT_EQ(0u, errors());
    EXPECT_EQ(0u, MCAST6_DB_UpdateGlbCfgSmoothVersion(&record));
    EXPECT_EQ(0u, MCAST6_DB_DeleteGlbCfg(&record));
    EXPECT_EQ(2u, g_mcast6DbErrStat[0][1]);
    EXPECT_EQ(1u, mcast6_platform_kpi(147));
    EXPECT_EQ(0u, mcast6_platform_kpi(148));
    uint32_t count = 9;
    EXPECT_EQ(0u, MCAST6_DB_GetGlbCfgCount(&count));
    EXPECT_EQ(0u, count);
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(GlbCfgSystemTest, aHashKeyFindsItsRecordsOnly) {
    std::multiset<uint32_t> expected;
    uint32_t hashA = 0;
    for (int i = 0; i < 10; ++i) {
        L3Mc6GlbCfgEntry record = freshRecord();
        hashA = record.cfgKeyA;
        ASSERT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
        expected.insert(record.cfgKeyC);
        record.cfgKeyB = 8;
        ASSERT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
    }
    Mcast6DbRes* iterator = MCAST6_DB_CreateGlbCfgIteratorByHashKey(hashA, 7);
    ASSERT_NE(nullptr, iterator);
    std::multiset<uint32_t> walked;
    L3Mc6GlbCfgEntry read{};
    while (walked.size() <= 20 && MCAST6_DB_GetGlbCfgEntry(iterator, &read) == 0) {
        EXPECT_EQ(7u, read.cfgKeyB);
        walked.insert(read.cfgKeyC);
    }
    EXPECT_EQ(expected, walked);
    EXPECT_EQ(60u, MCAST6_DB_GetGlbCfgEntry(iterator, &read));
    MCAST6_DB_ReleaseGlbCfgIterator(iterator);
    EXPECT_EQ(10u, MCAST6_DB_GetGlbCfgNum(hashA, 7));
    EXPECT_EQ(10u, MCAST6_DB_GetGlbCfgNum(hashA, 8));
    EXPECT_EQ(0u, MCAST6_DB_GetGlbCfgNum(hashA, 9));
    EXPECT_EQ(0u, MCAST6_DB_GetGlbCfgNum(7, hashA));

    iterator = MCAST6_DB_CreateGlbCfgIter();
    ASSERT_NE(nullptr, iterator);
    uint32_t all = 0;
    while (all <= 20 && MCAST6_DB_GetGlbCfgEntry(iterator, &read) == 0) ++all;
    EXPECT_EQ(20u, all);
    MCAST6_DB_ReleaseGlbCfgIterator(iterator);
    EXPECT_EQ(mcast6_platform_counter(33), mcast6_platform_counter(34));
    EXPECT_THAT(logLines(), IsEmpty());
}

// -- the global version

TEST_F(GlbCfgSystemTest, writesStampTheNextVersionAndDoNotAdvanceIt) {
    L3Mc6GlbCfgEntry record = freshRecord();
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
        EXPECT_EQ(1u, record.glbVersion);
        EXPECT_EQ(0u, globalVersionOf(record));
        EXPECT_EQ(1u, MCAST6_DB_GetGlbVerFromGlbCfg(record.cfgKeyA, record.cfgKeyB, record.cfgKeyC));
    }
}

TEST_F(GlbCfgSystemTest, theFirstDeleteWritesTheRecordsVersionAndEachFurtherOneAdvancesIt) {
    L3Mc6GlbCfgEntry record = freshRecord();
    for (uint32_t version = 1; version <= 4; ++version) {
        ASSERT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
        EXPECT_EQ(version, record.glbVersion);
        EXPECT_EQ(version, MCAST6_DB_GetGlbVerFromGlbCfg(record.cfgKeyA, record.cfgKeyB, record.cfgKeyC));
        EXPECT_EQ(version - 1, globalVersionOf(record));
        ASSERT_EQ(0u, MCAST6_DB_DeleteGlbCfg(&record));
        EXPECT_EQ(version, globalVersionOf(record));
        EXPECT_EQ(1u, MCAST6_DB_GetGlbVerFromGlbCfg(record.cfgKeyA, record.cfgKeyB, record.cfgKeyC));  // missing
    }
    EXPECT_EQ(4u, mcast6_platform_kpi(147));
    EXPECT_EQ(0u, errors());
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(GlbCfgSystemTest, theVersionIsSharedWithWhoeverElseKeepsIt) {
    L3Mc6GlbCfgEntry record = freshRecord();
    VersionRecord global{{record.cfgKeyA, record.cfgKeyB, record.cfgKeyC}, {}, 7, {}};
    ASSERT_EQ(0u, MCAST_DB_WriteGlbVersion(&global));
    ASSERT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
    EXPECT_EQ(8u, record.glbVersion);
    EXPECT_EQ(7u, globalVersionOf(record));
    ASSERT_EQ(0u, MCAST6_DB_DeleteGlbCfg(&record));
    EXPECT_EQ(8u, globalVersionOf(record));

    global.version = 0xFFFFFFFF;
    ASSERT_EQ(0u, MCAST_DB_UpdateGlbVersion(&global));
    ASSERT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
    EXPECT_EQ(0u, record.glbVersion);
}

TEST_F(GlbCfgSystemTest, eachKeyHasAVersionOfItsOwn) {
    L3Mc6GlbCfgEntry one = freshRecord();
    L3Mc6GlbCfgEntry other = freshRecord();
    one.glbVersion = 40;
    ASSERT_EQ(0u, MCAST6_DB_ProcessGlbVersion(&one));
    EXPECT_EQ(40u, globalVersionOf(one));
    EXPECT_EQ(0u, globalVersionOf(other));
    ASSERT_EQ(0u, MCAST6_DB_SetGlbVerion(&one));
    ASSERT_EQ(0u, MCAST6_DB_SetGlbVerion(&other));
    EXPECT_EQ(41u, one.glbVersion);
    EXPECT_EQ(1u, other.glbVersion);
}

TEST_F(GlbCfgSystemTest, aDeleteOfAMissingRecordAdvancesTheVersionToo) {
    L3Mc6GlbCfgEntry record = freshRecord();
    record.glbVersion = 5;
    EXPECT_EQ(0u, MCAST6_DB_DeleteGlbCfg(&record));
    EXPECT_EQ(5u, globalVersionOf(record));
    EXPECT_EQ(0u, MCAST6_DB_DeleteGlbCfg(&record));
    EXPECT_EQ(6u, globalVersionOf(record));
}

}  // namespace

}  // namespace mcast6::tests
