// l3mc6_bd_tag_elb, l3mc6_bd_untag_elb and l3mc6_bd_tnl_elb on the shipped platform.
#include <gmock/gmock.h>

#include <cstring>
#include <ostream>

#include "mcast6_db/context.h"
#include "mcast6_db/l3mc6_bd_tag_elb.h"
#include "mcast6_db/l3mc6_bd_tnl_elb.h"
#include "mcast6_db/l3mc6_bd_untag_elb.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"
#include "tests/system/member_walk.h"

namespace mcast6::tests {

namespace {

using testing::Each;
using testing::IsEmpty;
using Entry = L3BdElb6Entry;

struct Table {
    std::string name;
    uint32_t number, kind, subKind;
    uint32_t created, released, written, removed;  // counters, KPI
    bool hasMlag;
    uint32_t (*read)(Entry*);
    uint32_t (*write)(const Entry*);
    uint32_t (*updateSmoothVersion)(const Entry*);
    uint32_t (*remove)(const Entry*);
    uint32_t (*getEntry)(Mcast6DbRes*, Entry*);
    Mcast6DbRes* (*iteratorOfAll)();
    Mcast6DbRes* (*iteratorOfEntry)(const L3BdElb6VsgKey*);
    Mcast6DbRes* (*iteratorByBridgeDomain)(uint32_t, uint32_t);
    Mcast6DbRes* (*iteratorBySrcPid)(const Entry*);
    Mcast6DbRes* (*iteratorByMfib)(const Entry*);
    Mcast6DbRes* (*iteratorByInterface)(uint32_t);
    void (*releaseIterator)(Mcast6DbRes*);
    uint32_t (*countFast)();
};

void PrintTo(const Table& table, std::ostream* out) { *out << table.name; }

const Table kTables[] = {
    {"tagged",
     18,
     18,
     2,
     322,
     323,
     188,
     190,
     true,
     MCAST6_DB_ReadL3McBdTagElb,
     MCAST6_DB_WriteL3McBdTagElb,
     MCAST6_DB_UpdateL3McBdTagElbSmoothVersion,
     MCAST6_DB_DeleteL3McBdTagElb,
     MCAST6_DB_GetL3McBdTagElbEntry,
     MCAST6_DB_CreateL3McBdTagElbAllIter,
     MCAST6_DB_CreateL3McBdTagElbCreateVSGIterator,
     MCAST6_DB_CreateL3McBdTagElbVrBdIter,
     MCAST6_DB_CreateL3McBdTagElbIterBySrcPid,
     MCAST6_DB_CreateL3McBdTagElbMfibIter,
     MCAST6_DB_CreateL3McBdTagElbIterByIfIndex,
     MCAST6_DB_ReleaseL3McBdTagElbIterator,
     MCAST6_DB_GetL3McBdTagElbCountFast},
    {"untagged",
     19,
     17,
     1,
     324,
     325,
     194,
     196,
     true,
     MCAST6_DB_ReadL3McBdUntagElb,
     MCAST6_DB_WriteL3McBdUntagElb,
     MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion,
     MCAST6_DB_DeleteL3McBdUntagElb,
     MCAST6_DB_GetL3McBdUntagElbEntry,
     MCAST6_DB_CreateL3McBdUntagElbAllIter,
     MCAST6_DB_CreateL3McBdUntagElbCreateVSGIterator,
     MCAST6_DB_CreateL3McBdUntagElbVrBdIter,
     MCAST6_DB_CreateL3McBdUntagElbIterBySrcPid,
     MCAST6_DB_CreateL3McBdUntagElbMfibIter,
     MCAST6_DB_CreateL3McBdUntagElbIfindexIter,
     MCAST6_DB_ReleaseL3McBdUntagElbIterator,
     MCAST6_DB_GetL3McBdUntagElbCountFast},
    {"tunnel",
     20,
     19,
     3,
     326,
     327,
     200,
     202,
     false,
     MCAST6_DB_ReadL3McBdTnlElb,
     MCAST6_DB_WriteL3McBdTnlElb,
     MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion,
     MCAST6_DB_DeleteL3McBdTnlElb,
     MCAST6_DB_GetL3McBdTnlElbEntry,
     MCAST6_DB_CreateL3McBdTnlElbAllIter,
     MCAST6_DB_CreateL3McBdTnlElbCreateVSGIterator,
     MCAST6_DB_CreateL3McBdTnlElbVrBdIter,
     MCAST6_DB_CreateL3McBdTnlElbIterBySrcPid,
     MCAST6_DB_CreateL3McBdTnlElbMfibIter,
     MCAST6_DB_CreateL3McBdTnlElbIterByIfIndex,
     MCAST6_DB_ReleaseL3McBdTnlElbIterator,
     MCAST6_DB_GetL3McBdTnlElbCountFast},
};

// The record is packed to 4: no reference may bind to its 64-bit members.
uint64_t valueOf(uint64_t value) { return value; }

// A record's number; every table stores this attribute.
uint32_t idOf(const Entry& record) { return record.bdElbAttr1; }

// The keys of all three tables differ with 'member'.
Entry entryOf(uint32_t vrId, uint32_t group, uint32_t member) {
    Entry record{};
    record.vrId = vrId;
    record.vrfId = 2;
    record.groupAddr = {{0xFF3E0000, 0, 0, group}};
    record.sourceAddr = {{0x20010DB8, 0, 0, 1}};
    record.bdElbAttr4 = 10 + member % 3;
    record.bdElbAttr5 = 100 + member;
    record.bdElbAttr7 = 7;
    record.bdElbAttr8 = 8;
    record.tnlAttr2 = 1000 + member;
    record.tnlAttr3 = static_cast<uint8_t>(member % 4);
    return record;
}

Entry filled(uint32_t vrId, uint32_t group, uint32_t member) {
    Entry record = entryOf(vrId, group, member);
    record.bdElbAttr1 = 10'000 * vrId + 100 * group + member;
    record.bdElbAttr6 = 0xC6;
    std::memset(record.bdElbAttr11, 0x11, sizeof record.bdElbAttr11);
    record.bdElbAttr12 = 0x1212121212121212;
    record.appSrcPid = 50 + member % 2;
    record.smoothVersion = 7;
    record.mlagRole = 1;
    record.isMlagDual = 2;
    record.inIfhasMlag = 0x0304;
    record.bdElbAttr19 = 0x12345600 + member % 5;
    record.timeStampCreate = 17;
    return record;
}

class L3BdEgressSystemTest : public SystemTest, public testing::WithParamInterface<Table> {
protected:
    const Table& table = GetParam();

    // 30 members of four entries.
    std::vector<Entry> writeMany() {
        std::vector<Entry> records;
        for (uint32_t member = 0; member < 30; ++member) {
            records.push_back(filled(1 + member % 2, 1 + member / 15, member));
            EXPECT_EQ(0u, table.write(&records.back()));
        }
        return records;
    }
    std::vector<uint32_t> walkOf(Mcast6DbRes* iterator) const {
        return walk<Entry>(iterator, table.getEntry, table.releaseIterator, idOf);
    }
    void expectSilence() {
        EXPECT_THAT(logLines(), IsEmpty());
        EXPECT_EQ(0u, errors());
        EXPECT_EQ(mcast6_platform_counter(table.created), mcast6_platform_counter(table.released));
    }
};

std::string nameOf(const testing::TestParamInfo<Table>& item) { return item.param.name; }
INSTANTIATE_TEST_SUITE_P(tables, L3BdEgressSystemTest, testing::ValuesIn(kTables), nameOf);

TEST_P(L3BdEgressSystemTest, readsBackWhatWasWrittenWithTheKindsOfTheTable) {
    const Entry record = filled(1, 1, 4);
    Entry read = entryOf(1, 1, 4);
    read.elbKind = 99;
    std::memset(read.host8, 0x77, sizeof read.host8);
    ASSERT_EQ(0u, table.write(&record));
    ASSERT_EQ(0u, table.read(&read));
    EXPECT_EQ(table.kind, read.elbKind);
    EXPECT_EQ(table.subKind, read.elbSubKind);
    EXPECT_EQ(2u, read.addrType);
    EXPECT_EQ(1u, read.fixedOne);
    EXPECT_EQ(record.bdElbAttr1, read.bdElbAttr1);
    EXPECT_EQ(0xC6u, read.bdElbAttr6);
    EXPECT_THAT(read.bdElbAttr11, Each(0x11));
    EXPECT_EQ(0x1212121212121212u, valueOf(read.bdElbAttr12));
    EXPECT_THAT(read.host8, Each(0x77));
    EXPECT_EQ(1'000u, valueOf(read.timeStampCreate));
    EXPECT_EQ(1'000u, valueOf(read.timeStampSmooth));
    expectSilence();
}

TEST_P(L3BdEgressSystemTest, attribute19Above255ReadsBackAsItsLowByte) {
    const Entry record = filled(1, 1, 4);
    ASSERT_EQ(0x12345604u, record.bdElbAttr19);
    ASSERT_EQ(0u, table.write(&record));
    Entry read = entryOf(1, 1, 4);
    ASSERT_EQ(0u, table.read(&read));
    EXPECT_EQ(4u, read.bdElbAttr19);
}

TEST_P(L3BdEgressSystemTest, onlyTheTunnelTableDropsMlag) {
    Entry record = filled(1, 1, 4);
    ASSERT_EQ(0u, table.write(&record));
    Entry read = entryOf(1, 1, 4);
    ASSERT_EQ(0u, table.read(&read));
    EXPECT_EQ(table.hasMlag ? 1u : 0u, read.mlagRole);
    EXPECT_EQ(table.hasMlag ? 2u : 0u, read.isMlagDual);
    EXPECT_EQ(table.hasMlag ? 0x0304u : 0u, read.inIfhasMlag);
}

TEST_P(L3BdEgressSystemTest, anAbsentRecordAnswers15005Silently) {
    Entry read = entryOf(1, 1, 4);
    EXPECT_EQ(15005u, table.read(&read));
    EXPECT_EQ(0u, read.elbKind);
    expectSilence();
}

TEST_P(L3BdEgressSystemTest, aSecondWriteReplacesTheRecord) {
    Entry record = filled(1, 1, 4);
    ASSERT_EQ(0u, table.write(&record));
    setTime(1'010);
    record.bdElbAttr1 = 5;
    EXPECT_EQ(0u, table.write(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[table.number][1]);
    EXPECT_EQ(1u, errors());
    EXPECT_EQ(2u, mcast6_platform_kpi(table.written));
    EXPECT_THAT(logLines(), IsEmpty());
    Entry read = entryOf(1, 1, 4);
    ASSERT_EQ(0u, table.read(&read));
    EXPECT_EQ(5u, read.bdElbAttr1);
    EXPECT_EQ(1'010u, valueOf(read.timeStampCreate));
    EXPECT_EQ(1u, table.countFast());
}

TEST_P(L3BdEgressSystemTest, aSmoothUpdateChangesTheVersionMlagAndTheSmoothTimeOnly) {
    const Entry record = filled(1, 1, 4);
    ASSERT_EQ(0u, table.write(&record));
    setTime(1'010);
    Entry change = entryOf(1, 1, 4);
    change.smoothVersion = 8;
    change.mlagRole = 0x21;
    change.isMlagDual = 0x22;
    change.inIfhasMlag = 0x2324;
    EXPECT_EQ(0u, table.updateSmoothVersion(&change));
    Entry read = entryOf(1, 1, 4);
    ASSERT_EQ(0u, table.read(&read));
    EXPECT_EQ(8u, read.smoothVersion);
    EXPECT_EQ(table.hasMlag ? 0x21u : 0u, read.mlagRole);
    EXPECT_EQ(table.hasMlag ? 0x22u : 0u, read.isMlagDual);
    EXPECT_EQ(table.hasMlag ? 0x2324u : 0u, read.inIfhasMlag);
    EXPECT_EQ(record.bdElbAttr1, read.bdElbAttr1);
    EXPECT_EQ(record.appSrcPid, read.appSrcPid);
    EXPECT_EQ(1'000u, valueOf(read.timeStampCreate));
    EXPECT_EQ(1'010u, valueOf(read.timeStampSmooth));
    expectSilence();
}

// Both treat it as success and record it.
TEST_P(L3BdEgressSystemTest, changesOfAnAbsentRecordStoreNothing) {
    const Entry record = filled(1, 1, 4);
    EXPECT_EQ(0u, table.updateSmoothVersion(&record));
    EXPECT_EQ(0u, table.remove(&record));
    EXPECT_EQ(2u, g_mcast6DbErrStat[table.number][1]);
    EXPECT_EQ(2u, errors());
    EXPECT_EQ(1u, mcast6_platform_kpi(table.removed));
    EXPECT_THAT(logLines(), IsEmpty());
    Entry read = entryOf(1, 1, 4);
    EXPECT_EQ(15005u, table.read(&read));
    EXPECT_EQ(0u, table.countFast());
}

TEST_P(L3BdEgressSystemTest, iteratorsSelectByTheirKeys) {
    const std::vector<Entry> records = writeMany();
    const Entry wanted = records[7];
    const L3BdElb6VsgKey entry{wanted.vrId, wanted.vrfId, wanted.groupAddr, wanted.sourceAddr};
    const auto isOfEntry = [&](const Entry& record) {
        return record.vrId == wanted.vrId && record.groupAddr.word[3] == wanted.groupAddr.word[3];
    };
    const std::vector<Selection<Entry>> selections = {
        {"all", [this] { return table.iteratorOfAll(); }, [](const Entry&) { return true; }},
        {"entry", [&] { return table.iteratorOfEntry(&entry); }, isOfEntry},
        {"bridge domain", [&] { return table.iteratorByBridgeDomain(wanted.vrId, wanted.bdElbAttr4); },
         [&](const Entry& record) { return record.vrId == wanted.vrId && record.bdElbAttr4 == wanted.bdElbAttr4; }},
        {"process", [&] { return table.iteratorBySrcPid(&wanted); },
         [&](const Entry& record) { return record.vrId == wanted.vrId && record.appSrcPid == wanted.appSrcPid; }},
        {"entry and attribute 19", [&] { return table.iteratorByMfib(&wanted); },
         [&](const Entry& record) { return isOfEntry(record) && record.bdElbAttr19 == wanted.bdElbAttr19; }},
        {"interface", [&] { return table.iteratorByInterface(wanted.bdElbAttr5); },
         [&](const Entry& record) { return record.bdElbAttr5 == wanted.bdElbAttr5; }},
        {"no interface", [this] { return table.iteratorByInterface(1); }, [](const Entry&) { return false; }},
    };
    for (const Selection<Entry>& selection : selections) {
        EXPECT_EQ(idsOf(records, selection.isSelected, idOf), walkOf(selection.create())) << selection.name;
    }
    expectSilence();
}

TEST_P(L3BdEgressSystemTest, theFastCountFollowsWritesAndRemovals) {
    EXPECT_EQ(0u, table.countFast());
    const std::vector<Entry> records = writeMany();
    EXPECT_EQ(30u, table.countFast());
    for (size_t i = 0; i < 10; ++i) EXPECT_EQ(0u, table.remove(&records[i]));
    EXPECT_EQ(20u, table.countFast());
    EXPECT_EQ(20u, walkOf(table.iteratorOfAll()).size());
    expectSilence();
}

// A walk skips records removed ahead of it, has seen those removed behind it, and ends.
TEST_P(L3BdEgressSystemTest, recordsMayBeRemovedDuringAWalk) {
    const std::vector<Entry> records = writeMany();
    Mcast6DbRes* const iterator = table.iteratorOfAll();
    ASSERT_NE(nullptr, iterator);
    Entry record{};
    uint32_t seen = 0;
    while (table.getEntry(iterator, &record) == 0) {
        ++seen;
        EXPECT_EQ(0u, table.remove(&record));
    }
    EXPECT_EQ(30u, seen);
    EXPECT_EQ(60u, table.getEntry(iterator, &record));
    table.releaseIterator(iterator);
    EXPECT_EQ(0u, table.countFast());
    expectSilence();
}

class L3BdEgressOwnTest : public SystemTest {};

TEST_F(L3BdEgressOwnTest, membersThatDifferInOneTagAreTwo) {
    Entry record = filled(1, 1, 4);
    ASSERT_EQ(0u, MCAST6_DB_WriteL3McBdTagElb(&record));
    record.bdElbAttr7 = 70;
    ASSERT_EQ(0u, MCAST6_DB_WriteL3McBdTagElb(&record));
    record.bdElbAttr8 = 80;
    ASSERT_EQ(0u, MCAST6_DB_WriteL3McBdTagElb(&record));
    EXPECT_EQ(3u, MCAST6_DB_GetL3McBdTagElbCountFast());
    EXPECT_EQ(0u, errors());
}

TEST_F(L3BdEgressOwnTest, interfacesOfAVrAreTaggedOrNot) {
    for (const uint32_t vrId : {1u, 2u}) {
        const Entry record = filled(vrId, 1, 4);
        ASSERT_EQ(0u, MCAST6_DB_WriteL3McBdTagElb(&record));
        ASSERT_EQ(0u, MCAST6_DB_WriteL3McBdUntagElb(&record));
    }
    EXPECT_EQ(std::vector<uint32_t>{20'104},
              walk<Entry>(MCAST6_DB_CreateL3McBdTagElbIterByVrIdIfIndex(2, 104), MCAST6_DB_GetL3McBdTagElbEntry,
                          MCAST6_DB_ReleaseL3McBdTagElbIterator, idOf));
    EXPECT_EQ(std::vector<uint32_t>{20'104},
              walk<Entry>(MCAST6_DB_CreateL3McBdUntagElbIterByVrIdIfIndex(2, 104), MCAST6_DB_GetL3McBdUntagElbEntry,
                          MCAST6_DB_ReleaseL3McBdUntagElbIterator, idOf));
}

// By VR, bridge domain and the tunnel's two attributes.
TEST_F(L3BdEgressOwnTest, tunnelsAreFoundAndCountedByKey) {
    for (const uint32_t group : {1u, 2u, 3u}) {
        for (const uint32_t member : {4u, 5u}) {
            const Entry record = filled(1, group, member);
            ASSERT_EQ(0u, MCAST6_DB_WriteL3McBdTnlElb(&record));
        }
    }
    EXPECT_EQ((std::vector<uint32_t>{10'105, 10'205, 10'305}),
              walk<Entry>(MCAST6_DB_CreateL3McBdTnlElbIterByVrTnlInfo(1, 12, 1005, 1), MCAST6_DB_GetL3McBdTnlElbEntry,
                          MCAST6_DB_ReleaseL3McBdTnlElbIterator, idOf));
    const Mcast6DbKeyDesc descriptor{0x0309000D, {0, 0, 0}};
    uint8_t key[13];
    const uint32_t words[] = {1, 12, 1005};
    std::memcpy(key, words, sizeof words);
    key[12] = 1;
    uint32_t count = 99;
    EXPECT_EQ(0u, MCAST6_DB_GetL3McBdTnlElbCountByKey(&descriptor, key, &count));
    EXPECT_EQ(3u, count);
    key[12] = 2;
    EXPECT_EQ(0u, MCAST6_DB_GetL3McBdTnlElbCountByKey(&descriptor, key, &count));
    EXPECT_EQ(0u, count);
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(L3BdEgressOwnTest, aCountByAKeyThatIsNoneLeavesTheCount) {
    const Mcast6DbKeyDesc descriptor{0x0F090004, {0, 0, 0}};
    const uint32_t key = 1;
    uint32_t count = 99;
    EXPECT_EQ(1u, MCAST6_DB_GetL3McBdTnlElbCountByKey(&descriptor, &key, &count));
    EXPECT_EQ(99u, count);
    EXPECT_EQ(1u, logLines().size());
    EXPECT_EQ(0u, errors());
}

}  // namespace

}  // namespace mcast6::tests
