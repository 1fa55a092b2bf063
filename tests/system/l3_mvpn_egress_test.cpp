// l3mc6_mvpn_tnl_elb and l3mc6_mvpn_tnl_subelb on the shipped platform.
#include <gmock/gmock.h>

#include <cstring>
#include <ostream>

#include "mcast6_db/context.h"
#include "mcast6_db/l3mc6_mvpn_tnl_elb.h"
#include "mcast6_db/l3mc6_mvpn_tnl_subelb.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"
#include "tests/system/member_walk.h"

namespace mcast6::tests {

namespace {

using testing::Each;
using testing::IsEmpty;
using Entry = L3McMvpnTnlElbEntry;

struct Table {
    std::string name;
    uint32_t number, created, released, written, removed;  // counters, KPI
    uint32_t (*read)(Entry*);
    uint32_t (*write)(const Entry*);
    uint32_t (*updateSmoothVersion)(const Entry*);
    uint32_t (*remove)(const Entry*);
    uint32_t (*getEntry)(Mcast6DbRes*, Entry*);
    Mcast6DbRes* (*iteratorOfAll)();
    void (*releaseIterator)(Mcast6DbRes*);
};

void PrintTo(const Table& table, std::ostream* out) { *out << table.name; }

const Table kTables[] = {
    {"l3mc6_mvpn_tnl_elb", 28, 476, 477, 212, 214, MCAST6_DB_ReadL3McMvpnTnlElb, MCAST6_DB_WriteL3McMvpnTnlElb,
     MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion, MCAST6_DB_DeleteL3McMvpnTnlElb, MCAST6_DB_GetL3McMvpnTnlElbEntry,
     MCAST6_DB_CreateL3McMvpnTnlElbAllIter, MCAST6_DB_ReleaseL3McMvpnTnlElbIterator},
    {"l3mc6_mvpn_tnl_subelb", 29, 478, 479, 218, 220, MCAST6_DB_ReadL3McMvpnTnlSubElb, MCAST6_DB_WriteL3McMvpnTnlSubElb,
     MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion, MCAST6_DB_DeleteL3McMvpnTnlSubElb,
     MCAST6_DB_GetNextL3McMvpnTnlSubElb, MCAST6_DB_CreateL3McMvpnTnlSubElbAllIter,
     MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator},
};

// A record's number; both tables store this attribute.
uint32_t idOf(const Entry& record) { return record.memberAttr1; }

Entry entryOf(uint32_t vrId, uint32_t group) {
    Entry record{};
    record.vrId = vrId;
    record.vrfId = 2 + vrId;
    record.groupAddr = {{0xFF3E0000, 0, 0, group}};
    record.sourceAddr = {{0x20010DB8, 0, 0, 1}};
    record.outIfIndex = 100 + group % 4;
    record.subKeyWord = 9;
    return record;
}

Entry filled(uint32_t vrId, uint32_t group) {
    Entry record = entryOf(vrId, group);
    record.memberAttr1 = 1000 * vrId + group;
    record.memberAttr2 = 0x1212121212121212;
    record.tunnelWord1 = 20 + group % 3;
    record.tunnelWord2 = 30 + group % 2;
    record.tunnelWord3 = 40 + group % 5;
    record.tunnelWord4 = 0x12345600 + group % 3;
    record.l2IfIndex = 200 + group % 5;
    std::memset(record.tunnelData, 0x33, sizeof record.tunnelData);
    record.appSrcPid = 50 + group % 2;
    record.smoothVersion = 7;
    record.serviceStatus[0] = 0x44;
    record.timeStampCreate = 17;
    return record;
}

class L3MvpnEgressSystemTest : public SystemTest {
protected:
    // 20 members of as many entries, of two VR.
    static std::vector<Entry> writeMany(uint32_t (*write)(const Entry*)) {
        std::vector<Entry> records;
        for (uint32_t group = 0; group < 20; ++group) {
            records.push_back(filled(1 + group / 12, group));
            EXPECT_EQ(0u, write(&records.back()));
        }
        return records;
    }
    static void expectSilence() {
        EXPECT_THAT(logLines(), IsEmpty());
        EXPECT_EQ(0u, errors());
    }
};

class EveryMvpnTable : public L3MvpnEgressSystemTest, public testing::WithParamInterface<Table> {
protected:
    const Table& table = GetParam();
};

std::string nameOf(const testing::TestParamInfo<Table>& item) { return item.param.name; }
INSTANTIATE_TEST_SUITE_P(tables, EveryMvpnTable, testing::ValuesIn(kTables), nameOf);

TEST_P(EveryMvpnTable, readsBackWhatWasWritten) {
    const Entry record = filled(1, 4);
    ASSERT_EQ(0u, table.write(&record));
    Entry read = entryOf(1, 4);
    ASSERT_EQ(0u, table.read(&read));
    EXPECT_EQ(20u, read.entryType);
    EXPECT_EQ(2u, read.addrType);
    EXPECT_EQ(5u, read.kindWord);
    EXPECT_EQ(1004u, read.memberAttr1);
    EXPECT_EQ(0x1212121212121212u, read.memberAttr2);
    EXPECT_THAT(read.tunnelData, Each(0x33));
    EXPECT_EQ(50u, read.appSrcPid);
    EXPECT_EQ(7u, read.smoothVersion);
    EXPECT_EQ(0x44u, read.serviceStatus[0]);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'000u, read.timeStampSmooth);
    expectSilence();
}

TEST_P(EveryMvpnTable, anAbsentRecordAnswers60Silently) {
    Entry read = entryOf(1, 4);
    EXPECT_EQ(60u, table.read(&read));
    EXPECT_EQ(0u, read.entryType);
    expectSilence();
}

TEST_P(EveryMvpnTable, aSecondWriteReplacesTheRecord) {
    Entry record = filled(1, 4);
    ASSERT_EQ(0u, table.write(&record));
    record.memberAttr1 = 5;
    EXPECT_EQ(0u, table.write(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[table.number][1]);
    EXPECT_EQ(1u, errors());
    EXPECT_EQ(2u, mcast6_platform_kpi(table.written));
    EXPECT_THAT(logLines(), IsEmpty());
    Entry read = entryOf(1, 4);
    ASSERT_EQ(0u, table.read(&read));
    EXPECT_EQ(5u, read.memberAttr1);
}

TEST_P(EveryMvpnTable, aSmoothUpdateChangesTheVersionAndTheSmoothTimeOnly) {
    const Entry record = filled(1, 4);
    ASSERT_EQ(0u, table.write(&record));
    setTime(1'010);
    Entry change = entryOf(1, 4);
    change.smoothVersion = 8;
    EXPECT_EQ(0u, table.updateSmoothVersion(&change));
    Entry read = entryOf(1, 4);
    ASSERT_EQ(0u, table.read(&read));
    EXPECT_EQ(8u, read.smoothVersion);
    EXPECT_EQ(1004u, read.memberAttr1);
    EXPECT_EQ(50u, read.appSrcPid);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'010u, read.timeStampSmooth);
    expectSilence();
}

// Both treat it as success and record it.
TEST_P(EveryMvpnTable, changesOfAnAbsentRecordStoreNothing) {
    const Entry record = filled(1, 4);
    EXPECT_EQ(0u, table.updateSmoothVersion(&record));
    EXPECT_EQ(0u, table.remove(&record));
    EXPECT_EQ(2u, g_mcast6DbErrStat[table.number][1]);
    EXPECT_EQ(2u, errors());
    EXPECT_EQ(1u, mcast6_platform_kpi(table.removed));
    EXPECT_THAT(logLines(), IsEmpty());
    Entry read = entryOf(1, 4);
    EXPECT_EQ(60u, table.read(&read));
}

TEST_P(EveryMvpnTable, recordsAreWalkedAndRemoved) {
    const std::vector<Entry> records = writeMany(table.write);
    EXPECT_EQ(0u, table.remove(&records[3]));
    const auto isLeft = [](const Entry& record) { return record.memberAttr1 != 1003; };
    EXPECT_EQ(idsOf<Entry>(records, isLeft, idOf),
              walk<Entry>(table.iteratorOfAll(), table.getEntry, table.releaseIterator, idOf));
    EXPECT_EQ(mcast6_platform_counter(table.created), mcast6_platform_counter(table.released));
    expectSilence();
}

TEST_F(L3MvpnEgressSystemTest, iteratorsOfMembersSelectByTheirKeys) {
    const std::vector<Entry> records = writeMany(MCAST6_DB_WriteL3McMvpnTnlElb);
    const Entry wanted = records[7];
    const uint32_t vr = wanted.vrId;
    const uint32_t vrf = wanted.vrfId;
    const std::vector<Selection<Entry>> selections = {
        {"VNI", [&] { return MCAST6_DB_CreateL3McMvpnTnlElbIterByVniId(vr, vrf, wanted.tunnelWord1); },
         [&](const Entry& record) { return record.vrId == vr && record.tunnelWord1 == wanted.tunnelWord1; }},
        {"process", [&] { return MCAST6_DB_CreateL3McMvpnTnlElbIterBySrcPid(&wanted); },
         [&](const Entry& record) { return record.vrId == vr && record.appSrcPid == wanted.appSrcPid; }},
        {"tunnel",
         [&] { return MCAST6_DB_CreateL3McMvpnTnlElbIterByTnlVsg(vr, vrf, wanted.tunnelWord2, wanted.tunnelWord3); },
         [&](const Entry& record) {
             return record.vrId == vr && record.tunnelWord2 == wanted.tunnelWord2 &&
                    record.tunnelWord3 == wanted.tunnelWord3;
         }},
        // The low byte of a record's word is used.
        {"tunnel id", [&] { return MCAST6_DB_CreateL3McMvpnTnlElbIterByTnlId(vr, vrf, wanted.tunnelWord2, 1); },
         [&](const Entry& record) {
             return record.vrId == vr && record.tunnelWord2 == wanted.tunnelWord2 && (record.tunnelWord4 & 0xFF) == 1;
         }},
        {"VRF", [&] { return MCAST6_DB_CreateL3McMvpnTnlElbIterByVrfId(vr, vrf); },
         [&](const Entry& record) { return record.vrId == vr; }},
        {"another VRF", [&] { return MCAST6_DB_CreateL3McMvpnTnlElbIterByVrfId(vr, vrf + 1); },
         [](const Entry&) { return false; }},
    };
    for (const Selection<Entry>& selection : selections) {
        EXPECT_EQ(idsOf(records, selection.isSelected, idOf),
                  walk<Entry>(selection.create(), MCAST6_DB_GetL3McMvpnTnlElbEntry,
                              MCAST6_DB_ReleaseL3McMvpnTnlElbIterator, idOf))
            << selection.name;
    }
    expectSilence();
}

TEST_F(L3MvpnEgressSystemTest, iteratorsOfSubMembersSelectByTheirKeys) {
    const std::vector<Entry> records = writeMany(MCAST6_DB_WriteL3McMvpnTnlSubElb);
    const Entry wanted = records[7];
    const L3McMvpnElbKey entry{wanted.vrId, wanted.vrfId, wanted.groupAddr, wanted.sourceAddr};
    const std::vector<Selection<Entry>> selections = {
        {"entry", [&] { return MCAST6_DB_CreateL3McMvpnTnlSubElbCreateVSGIterator(&entry); },
         [](const Entry& record) { return record.memberAttr1 == 1007; }},
        {"interface", [&] { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByIfIndex(wanted.outIfIndex); },
         [&](const Entry& record) { return record.outIfIndex == wanted.outIfIndex; }},
        {"VR and VRF", [&] { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByVrVrf(wanted.vrId, wanted.vrfId); },
         [&](const Entry& record) { return record.vrId == wanted.vrId; }},
        {"layer-2 interface", [&] { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByL2IfIndex(wanted.l2IfIndex); },
         [&](const Entry& record) { return record.l2IfIndex == wanted.l2IfIndex; }},
        {"no interface", [] { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByIfIndex(1); },
         [](const Entry&) { return false; }},
    };
    for (const Selection<Entry>& selection : selections) {
        EXPECT_EQ(idsOf(records, selection.isSelected, idOf),
                  walk<Entry>(selection.create(), MCAST6_DB_GetNextL3McMvpnTnlSubElb,
                              MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator, idOf))
            << selection.name;
    }
    expectSilence();
}

// The interface and the word after it are in the key of a sub-member, not in that of a member.
TEST_F(L3MvpnEgressSystemTest, anEntryHasOneMemberAndManySubMembers) {
    Entry record = filled(1, 4);
    ASSERT_EQ(0u, MCAST6_DB_WriteL3McMvpnTnlSubElb(&record));
    ASSERT_EQ(0u, MCAST6_DB_WriteL3McMvpnTnlElb(&record));
    EXPECT_EQ(0u, errors());
    ++record.subKeyWord;
    ASSERT_EQ(0u, MCAST6_DB_WriteL3McMvpnTnlSubElb(&record));
    EXPECT_EQ(0u, errors());
    ASSERT_EQ(0u, MCAST6_DB_WriteL3McMvpnTnlElb(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[28][1]);
    EXPECT_EQ(1u, MCAST6_DB_GetL3McMvpnTnlElbCountFast());
}

TEST_F(L3MvpnEgressSystemTest, membersAreCounted) {
    EXPECT_EQ(0u, MCAST6_DB_GetL3McMvpnTnlElbCountFast());
    const std::vector<Entry> records = writeMany(MCAST6_DB_WriteL3McMvpnTnlElb);
    EXPECT_EQ(20u, MCAST6_DB_GetL3McMvpnTnlElbCountFast());
    ASSERT_EQ(0u, MCAST6_DB_DeleteL3McMvpnTnlElb(&records[0]));
    EXPECT_EQ(19u, MCAST6_DB_GetL3McMvpnTnlElbCountFast());

    const Mcast6DbKeyDesc descriptor{0x05090008, {0, 0, 0}};
    const uint32_t key[] = {2, 4};
    uint32_t count = 99;
    EXPECT_EQ(0u, MCAST6_DB_GetL3McMvpnTnlElbCountByKey(&descriptor, key, &count));
    EXPECT_EQ(8u, count);
    // Of the groups 1 to 11 of the first VR, 1 and 11 have the words 31 and 41.
    const L3McMvpnVsgKey tunnel{{1, 3, 31, 41}};
    EXPECT_EQ(0u, MCAST6_DB_GetL3McBdMvpnTnlElbCountByTnlVsg(&tunnel, &count));
    EXPECT_EQ(2u, count);
    expectSilence();
}

TEST_F(L3MvpnEgressSystemTest, aCountByAKeyThatIsNoneAnswers1AndLeavesTheCount) {
    const Mcast6DbKeyDesc descriptor{0x0F090004, {0, 0, 0}};
    const uint32_t key = 1;
    uint32_t count = 99;
    EXPECT_EQ(1u, MCAST6_DB_GetL3McMvpnTnlElbCountByKey(&descriptor, &key, &count));
    EXPECT_EQ(99u, count);
    EXPECT_EQ(1u, logLines().size());
    EXPECT_EQ(0u, errors());
}

TEST_F(L3MvpnEgressSystemTest, theProcessIdIsTheHosts) {
    EXPECT_EQ(0u, MCAST6_DB_GetL3McMvpnTnlElbSourcePid());
    const Entry record = filled(1, 4);
    ASSERT_EQ(0u, MCAST6_DB_WriteL3McMvpnTnlElb(&record));
    EXPECT_EQ(0u, MCAST6_DB_GetL3McMvpnTnlElbSourcePid());
    g_l3Mc6MvpnTnlElbPid = 77;
    EXPECT_EQ(77u, MCAST6_DB_GetL3McMvpnTnlElbSourcePid());
}

}  // namespace

}  // namespace mcast6::tests
