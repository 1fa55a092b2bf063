// l2mc6_bd_mfib and l2mc6_vlan_mfib on the shipped platform: records, and every iterator and count compared with a
// plain walk of what was written.
#include "mcast6_db/l2_mfib.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "mcast6_db/context.h"
#include "mcast6_db/l2mc6_bd_mfib.h"
#include "mcast6_db/l2mc6_vlan_mfib.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::IsEmpty;
using Entry = L2Mc6MfibEntry;

struct MfibTable {
    const char* name;
    uint32_t number, created, released, writeFailed, removed;
    uint32_t domainType;
    bool hasMaskLengths;
    Mcast6DbHandle* keptObject;
    uint32_t (*sourcePid)();
    uint32_t (*write)(const Entry*);
    uint32_t (*read)(Entry*);
    uint32_t (*readFast)(Entry*);
    uint32_t (*updateSmoothVersion)(const Entry*);
    uint32_t (*remove)(const Entry*);
    Mcast6DbRes* (*createIter)();
    Mcast6DbRes* (*createIterByGroup)(uint32_t, uint32_t, const Mcast6Ipv6Addr*);
    Mcast6DbRes* (*createIterByDomain)(uint32_t, uint32_t);
    Mcast6DbRes* (*createSortedIter)();
    uint32_t (*createIterByErrCode)(Mcast6DbRes*);
    void (*releaseObject)(Mcast6DbHandle);
    void (*releaseIter)(Mcast6DbRes*);
    uint32_t (*getEntry)(Mcast6DbRes*, Entry*);
    uint32_t (*getNext)(Mcast6DbRes*, Entry*);
    uint32_t (*count)(uint32_t*);
    uint32_t (*countByDomain)(uint32_t, uint32_t);
    uint32_t (*countConflicts)(uint32_t*);
};

constexpr MfibTable kBdMfib{
    .name = "l2mc6_bd_mfib",
    .number = 27,
    .created = 473,
    .released = 474,
    .writeFailed = 208,
    .removed = 209,
    .domainType = 1,
    .hasMaskLengths = false,
    .keptObject = &g_l2Mfib6BdDbReadObjCache,
    .sourcePid = MCAST6_DB_GetL2BdMfib6SourcePid,
    .write = MCAST6_DB_WriteL2BdMfib6,
    .read = MCAST6_DB_ReadL2BdMfib6,
    .readFast = MCAST6_DB_ReadL2BdMfib6Fast,
    .updateSmoothVersion = MCAST6_DB_UpdateL2BdMfib6SmoothVersion,
    .remove = MCAST6_DB_DeleteL2BdMfib6,
    .createIter = MCAST6_DB_CreateL2BdMfib6Iter,
    .createIterByGroup = MCAST6_DB_Createl2BdMfib6IterByGrpAddr,
    .createIterByDomain = MCAST6_DB_CreateL2BdMfib6IterByBdId,
    .createSortedIter = MCAST6_DB_l2BdMfib6_ScanGetBdIterSorted,
    .createIterByErrCode = MCAST6_DB_CreateL2BdMfib6IterByErrCode,
    .releaseObject = MCAST6_DB_ReleaseL2BdMfib6Object,
    .releaseIter = MCAST6_DB_ReleaseL2BdMfib6Iterator,
    .getEntry = MCAST6_DB_GetL2BdMfib6Entry,
    .getNext = MCAST6_DB_GetNextL2BdMfib6,
    .count = MCAST6_DB_GetL2BdMfib6Count,
    .countByDomain = MCAST6_DB_L2BdMfib6CountByBdId,
    .countConflicts = MCAST6_DB_GetL2BdMfib6HashConflictTotalNum,
};

constexpr MfibTable kVlanMfib{
    .name = "l2mc6_vlan_mfib",
    .number = 8,
    .created = 0,
    .released = 1,
    .writeFailed = 4,
    .removed = 5,
    .domainType = 0,
    .hasMaskLengths = true,
    .keptObject = &g_l2Mfib6DbReadObjCache,
    .sourcePid = MCAST6_DB_GetVlanMfib6SourcePid,
    .write = MCAST6_DB_WriteVlanMfib6,
    .read = MCAST6_DB_ReadVlanMfib6,
    .readFast = MCAST6_DB_ReadVlanMfib6Fast,
    .updateSmoothVersion = MCAST6_DB_UpdateVlanMfib6SmoothVersion,
    .remove = MCAST6_DB_DeleteVlanMfib6,
    .createIter = MCAST6_DB_CreateVlanMfib6Iter,
    .createIterByGroup = MCAST6_DB_CreateVlanMfib6IterByGrpAddr,
    .createIterByDomain = MCAST6_DB_CreateVlanMfib6IterByVlanId,
    .createSortedIter = MCAST6_DB_VlanMfib6_ScanGetVlanIterSorted,
    .createIterByErrCode = MCAST6_DB_CreateVlanMfib6IterByErrCode,
    .releaseObject = MCAST6_DB_ReleaseL2Mfib6Object,
    .releaseIter = MCAST6_DB_ReleaseVlanMfib6Iterator,
    .getEntry = MCAST6_DB_GetVlanMfib6Entry,
    .getNext = MCAST6_DB_GetNextVlanMfib6,
    .count = MCAST6_DB_GetVlanMfib6Count,
    .countByDomain = MCAST6_DB_VlanMfib6CountByVlanId,
    .countConflicts = MCAST6_DB_GetL2Mfib6HashConflictTotalNum,
};

Entry entryOf(uint32_t vrId, uint32_t domainId, uint32_t group, uint32_t source) {
    Entry record{};
    record.vrId = vrId;
    record.domainId = domainId;
    record.groupAddr = {{0xFF1E0000, 0, 0, group}};
    if (source != 0) record.sourceAddr = {{0x20010DB8, 0, 0, source}};
    return record;
}

// The key of an entry, to compare sets of entries.
std::string nameOf(const Entry& record) {
    std::string name = std::to_string(record.vrId) + "/" + std::to_string(record.domainId);
    for (const uint32_t word : record.groupAddr.word) name += " " + std::to_string(word);
    for (const uint32_t word : record.sourceAddr.word) name += " " + std::to_string(word);
    return name;
}

class L2MfibSystemTest : public SystemTest, public testing::WithParamInterface<const MfibTable*> {
protected:
    void SetUp() override {
        SystemTest::SetUp();
        *table.keptObject = 0;
    }
    void TearDown() override {
        SystemTest::TearDown();
        *table.keptObject = 0;
    }

    // Entries in 2 VRs, in mixed combinations of domains, groups, sources (any source included), processes and errors.
    void writeMany() {
        for (uint32_t vrId = 1; vrId <= 2; ++vrId) {
            // Their byte order differs from the order of their values.
            for (const uint32_t domainId : {0x01000000u, 1u, 0x00010000u, 0x0100u, 0xFFFFFFFFu, 2u, 0xFFu}) {
                for (uint32_t group = 0; group < 3; ++group) {
                    for (uint32_t source = 0; source < 3; ++source) {
                        Entry record = entryOf(vrId, domainId, group, source);
                        record.appSrcPid = 70 + (group + source) % 2;
                        record.hppErrCode = 4 + (group * source + vrId) % 3;
                        ASSERT_EQ(0u, table.write(&record));
                        written.push_back(record);
                    }
                }
            }
        }
    }

    using Predicate = std::function<bool(const Entry&)>;
    std::multiset<std::string> matching(const Predicate& matches) const {
        std::multiset<std::string> names;
        for (const Entry& record : written) {
            if (matches(record)) names.insert(nameOf(record));
        }
        return names;
    }

    // Walks an iterator to its end.
    std::vector<Entry> entriesOf(Mcast6DbRes* iterator, uint32_t (*step)(Mcast6DbRes*, Entry*)) const {
        std::vector<Entry> entries;
        Entry record{};
        uint32_t result = 0;
        while (entries.size() <= written.size() && (result = step(iterator, &record)) == 0) entries.push_back(record);
        EXPECT_EQ(60u, result);
        EXPECT_EQ(60u, step(iterator, &record));
        return entries;
    }

    // As above, and releases the iterator.
    std::multiset<std::string> walk(Mcast6DbRes* iterator) const {
        std::multiset<std::string> names;
        if (iterator == nullptr) {
            ADD_FAILURE() << "no iterator";
            return names;
        }
        for (const Entry& record : entriesOf(iterator, table.getEntry)) names.insert(nameOf(record));
        table.releaseIter(iterator);
        return names;
    }

    void expectSilence() const {
        EXPECT_THAT(logLines(), IsEmpty());
        EXPECT_EQ(0u, errors());
        EXPECT_EQ(mcast6_platform_counter(table.created), mcast6_platform_counter(table.released));
    }

    const MfibTable& table = *GetParam();
    std::vector<Entry> written;
};

// -- records

TEST_P(L2MfibSystemTest, readsBackWhatWasWritten) {
    Entry record = entryOf(1, 2, 3, 4);
    record.addrType = 9;
    record.domainType = 9;
    record.vrfId = 10;
    record.groupMaskLen = 128;
    record.sourceMaskLen = 64;
    record.pathFlags = 11;
    record.mcId = 12;
    record.mcidVersion = 0x1300000000;
    record.mfibVersion = 14;
    record.svcCtxHighPrio[11] = 15;
    record.svcCtxNormalPrio[0] = 16;
    record.appSrcPid = 77;
    record.appVersion = 18;
    record.smoothVersion = 19;
    record.serviceStatus[1] = 20;
    record.hppErrCode = 21;
    record.enpErrCode = 22;
    record.timeStampCreate = 1;
    record.timeStampSmooth = 2;
    ASSERT_EQ(0u, table.write(&record));
    EXPECT_EQ(77u, table.sourcePid());

    Entry expected = record;
    expected.addrType = 2;
    expected.domainType = table.domainType;
    if (!table.hasMaskLengths) expected.groupMaskLen = expected.sourceMaskLen = 0;
    expected.timeStampCreate = 1'000;
    expected.timeStampSmooth = 1'000;
    for (const auto read : {table.read, table.readFast}) {
        Entry found = entryOf(1, 2, 3, 4);
        ASSERT_EQ(0u, read(&found));
        EXPECT_EQ(0, std::memcmp(&expected, &found, sizeof found));
    }
    // Read by field as well; the mask lengths that are not stored are unchanged.
    Mcast6DbRes* iterator = table.createIter();
    ASSERT_NE(nullptr, iterator);
    Entry found{};
    if (!table.hasMaskLengths) expected.groupMaskLen = found.groupMaskLen = 33;
    EXPECT_EQ(0u, table.getNext(iterator, &found));
    EXPECT_EQ(0, std::memcmp(&expected, &found, sizeof found));
    EXPECT_EQ(60u, table.getNext(iterator, &found));
    table.releaseIter(iterator);
    EXPECT_EQ(1u, mcast6_platform_kpi(3));
    EXPECT_EQ(0u, mcast6_platform_kpi(table.writeFailed));
    expectSilence();
}

TEST_P(L2MfibSystemTest, anAbsentEntryIs60AndLeavesTheRecord) {
    Entry record = entryOf(1, 2, 3, 4);
    record.mcId = 5;
    const Entry before = record;
    EXPECT_EQ(60u, table.read(&record));
    EXPECT_EQ(60u, table.readFast(&record));
    EXPECT_EQ(60u, table.readFast(&record));
    EXPECT_EQ(0, std::memcmp(&before, &record, sizeof record));
    expectSilence();
}

TEST_P(L2MfibSystemTest, aSecondWriteReplacesTheEntryStampsItAnewAndRecordsIt) {
    Entry record = entryOf(1, 2, 3, 4);
    record.hppErrCode = 5;
    ASSERT_EQ(0u, table.write(&record));
    setTime(1'010);
    record.hppErrCode = 6;
    record.timeStampCreate = 1'000;
    EXPECT_EQ(0u, table.write(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[table.number][1]);
    EXPECT_EQ(1u, errors());
    EXPECT_EQ(2u, mcast6_platform_kpi(3));
    Entry found = entryOf(1, 2, 3, 4);
    ASSERT_EQ(0u, table.read(&found));
    EXPECT_EQ(6u, found.hppErrCode);
    EXPECT_EQ(1'010u, found.timeStampCreate);
    EXPECT_EQ(1'010u, found.timeStampSmooth);
    // It is no longer found by its old error code.
    uint32_t count = 9;
    EXPECT_EQ(0u, table.countConflicts(&count));
    EXPECT_EQ(0u, count);
    EXPECT_EQ(0u, table.count(&count));
    EXPECT_EQ(1u, count);
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_P(L2MfibSystemTest, anUpdateKeepsTheCreationTimeAndWhatItDoesNotSet) {
    Entry record = entryOf(1, 2, 3, 4);
    record.mcId = 44;
    record.smoothVersion = 5;
    ASSERT_EQ(0u, table.write(&record));
    setTime(1'010);
    Entry change = entryOf(1, 2, 3, 4);
    change.smoothVersion = 6;
    change.timeStampSmooth = 1;
    EXPECT_EQ(0u, table.updateSmoothVersion(&change));
    Entry found = entryOf(1, 2, 3, 4);
    ASSERT_EQ(0u, table.read(&found));
    EXPECT_EQ(6u, found.smoothVersion);
    EXPECT_EQ(44u, found.mcId);
    EXPECT_EQ(1'000u, found.timeStampCreate);
    EXPECT_EQ(1'010u, found.timeStampSmooth);
    expectSilence();
}

TEST_P(L2MfibSystemTest, changesOfAnAbsentEntryAnswer0RecordKind1AndStoreNothing) {
    const Entry record = entryOf(1, 2, 3, 4);
    EXPECT_EQ(0u, table.updateSmoothVersion(&record));
    EXPECT_EQ(0u, table.remove(&record));
    EXPECT_EQ(2u, g_mcast6DbErrStat[table.number][1]);
    EXPECT_EQ(2u, errors());
    EXPECT_EQ(1u, mcast6_platform_kpi(table.removed));
    EXPECT_THAT(logLines(), IsEmpty());
    uint32_t count = 9;
    EXPECT_EQ(0u, table.count(&count));
    EXPECT_EQ(0u, count);
}

TEST_P(L2MfibSystemTest, theFastReadSeesEveryChange) {
    Entry record = entryOf(1, 2, 3, 4);
    record.mcId = 1;
    ASSERT_EQ(0u, table.write(&record));
    const uint64_t created = mcast6_platform_counter(table.created);
    Entry found = entryOf(1, 2, 3, 4);
    EXPECT_EQ(0u, table.readFast(&found));
    EXPECT_EQ(1u, found.mcId);
    const Mcast6DbHandle kept = *table.keptObject;
    EXPECT_NE(0u, kept);
    EXPECT_EQ(created, mcast6_platform_counter(table.created));
    record.mcId = 2;
    ASSERT_EQ(0u, table.write(&record));
    EXPECT_EQ(0u, table.readFast(&found));
    EXPECT_EQ(2u, found.mcId);
    ASSERT_EQ(0u, table.remove(&record));
    EXPECT_EQ(60u, table.readFast(&found));
    EXPECT_EQ(kept, *table.keptObject);
    EXPECT_EQ(0u, mcast6_platform_trap_count());
    EXPECT_EQ(1u, mcast6_platform_kpi(table.removed));
    EXPECT_THAT(logLines(), IsEmpty());
}

// -- iterators and counts

TEST_P(L2MfibSystemTest, anEmptyTableHasNoRecordsToWalkAndCounts0) {
    EXPECT_THAT(walk(table.createIter()), IsEmpty());
    EXPECT_THAT(walk(table.createSortedIter()), IsEmpty());
    EXPECT_THAT(walk(table.createIterByDomain(1, 2)), IsEmpty());
    Mcast6DbRes handle{};
    ASSERT_EQ(0u, table.createIterByErrCode(&handle));
    EXPECT_THAT(entriesOf(&handle, table.getEntry), IsEmpty());
    table.releaseObject(handle.object);
    uint32_t count = 9;
    EXPECT_EQ(0u, table.count(&count));
    EXPECT_EQ(0u, count);
    EXPECT_EQ(0u, table.countByDomain(1, 2));
    count = 9;
    EXPECT_EQ(0u, table.countConflicts(&count));
    EXPECT_EQ(0u, count);
    expectSilence();
}

TEST_P(L2MfibSystemTest, allRecordsAreWalkedAndCountedOnce) {
    writeMany();
    EXPECT_EQ(matching([](const Entry&) { return true; }), walk(table.createIter()));
    uint32_t count = 0;
    EXPECT_EQ(0u, table.count(&count));
    EXPECT_EQ(written.size(), count);
    ASSERT_EQ(126u, written.size());
    expectSilence();
}

TEST_P(L2MfibSystemTest, theSortedScanGivesAllRecordsInAscendingOrderOfTheirDomains) {
    writeMany();
    for (const auto step : {table.getEntry, table.getNext}) {
        Mcast6DbRes* iterator = table.createSortedIter();
        ASSERT_NE(nullptr, iterator);
        std::vector<uint32_t> domains;
        std::multiset<std::string> names;
        for (const Entry& record : entriesOf(iterator, step)) {
            domains.push_back(record.domainId);
            names.insert(nameOf(record));
        }
        table.releaseIter(iterator);
        EXPECT_TRUE(std::is_sorted(domains.begin(), domains.end())) << testing::PrintToString(domains);
        EXPECT_EQ(matching([](const Entry&) { return true; }), names);
    }
    expectSilence();
}

TEST_P(L2MfibSystemTest, aDomainIsWalkedAndCounted) {
    writeMany();
    size_t found = 0;
    for (const uint32_t vrId : {0u, 1u, 2u}) {
        for (const uint32_t domainId : {1u, 0x0100u, 0xFFFFFFFFu, 3u}) {
            const auto expected =
                matching([&](const Entry& record) { return record.vrId == vrId && record.domainId == domainId; });
            EXPECT_EQ(expected, walk(table.createIterByDomain(vrId, domainId)));
            EXPECT_EQ(expected.size(), table.countByDomain(vrId, domainId));
            found += expected.size();
        }
    }
    EXPECT_EQ(54u, found);
    expectSilence();
}

TEST_P(L2MfibSystemTest, aGroupOfADomainIsWalked) {
    writeMany();
    size_t found = 0;
    for (const uint32_t vrId : {1u, 2u, 3u}) {
        for (const uint32_t group : {0u, 2u, 7u}) {
            const Entry probe = entryOf(vrId, 0x0100, group, 0);
            const auto expected = matching([&](const Entry& record) {
                return record.vrId == vrId && record.domainId == 0x0100 && record.groupAddr.word[3] == group;
            });
            EXPECT_EQ(expected, walk(table.createIterByGroup(vrId, 0x0100, &probe.groupAddr)));
            found += expected.size();
        }
    }
    EXPECT_EQ(12u, found);
    expectSilence();
}

TEST_P(L2MfibSystemTest, hashConflictsAreWalkedAndCounted) {
    writeMany();
    const auto conflicts = matching([](const Entry& record) { return record.hppErrCode == 5; });
    ASSERT_FALSE(conflicts.empty());
    ASSERT_LT(conflicts.size(), written.size());
    Mcast6DbRes handle{};
    ASSERT_EQ(0u, table.createIterByErrCode(&handle));
    std::multiset<std::string> names;
    for (const Entry& record : entriesOf(&handle, table.getEntry)) names.insert(nameOf(record));
    table.releaseObject(handle.object);
    EXPECT_EQ(conflicts, names);
    uint32_t count = 0;
    EXPECT_EQ(0u, table.countConflicts(&count));
    EXPECT_EQ(conflicts.size(), count);
    expectSilence();
}

INSTANTIATE_TEST_SUITE_P(l2, L2MfibSystemTest, testing::Values(&kBdMfib, &kVlanMfib),
                         [](const testing::TestParamInfo<const MfibTable*>& item) { return item.param->name; });

class BdMfibSystemTest : public L2MfibSystemTest {};

TEST_P(BdMfibSystemTest, theEntriesOfAProcessAreWalked) {
    writeMany();
    size_t found = 0;
    for (const uint32_t pid : {69u, 70u, 71u}) {
        const auto expected = matching([&](const Entry& record) { return record.appSrcPid == pid; });
        EXPECT_EQ(expected, walk(MCAST6_DB_CreateL2BdMfib6IterBySrcPid(pid)));
        found += expected.size();
    }
    EXPECT_EQ(written.size(), found);
    expectSilence();
}

INSTANTIATE_TEST_SUITE_P(l2, BdMfibSystemTest, testing::Values(&kBdMfib),
                         [](const testing::TestParamInfo<const MfibTable*>& item) { return item.param->name; });

// One record of each table under the same key.
TEST_F(SystemTest, theTwoForwardingTablesOfLayer2AreApart) {
    const Entry record = entryOf(1, 2, 3, 4);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2BdMfib6(&record));
    Entry found = record;
    EXPECT_EQ(60u, MCAST6_DB_ReadVlanMfib6(&found));
    ASSERT_EQ(0u, MCAST6_DB_WriteVlanMfib6(&record));
    EXPECT_EQ(0u, errors());
    ASSERT_EQ(0u, MCAST6_DB_DeleteL2BdMfib6(&record));
    EXPECT_EQ(60u, MCAST6_DB_ReadL2BdMfib6(&found));
    EXPECT_EQ(0u, MCAST6_DB_ReadVlanMfib6(&found));
}

}  // namespace

}  // namespace mcast6::tests
