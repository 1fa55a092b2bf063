// l3mc6_mfib on the shipped platform: records, and every query compared with a plain walk of what was written.
#include "mcast6_db/l3mc6_mfib.h"

#include <gmock/gmock.h>

#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "mcast6_db/context.h"
#include "mcast6_db/l3mc6_mfib_query.h"
#include "mcast6_platform/platform.h"
#include "mcast6_platform/tables.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

L3Mc6MfibEntry entryOf(uint32_t vrId, uint32_t vrfId, uint32_t group, uint32_t source) {
    L3Mc6MfibEntry record{};
    record.vrId = vrId;
    record.vrfId = vrfId;
    record.groupAddr = {{0xFF1E0000, 0, 0, group}};
    if (source != 0) record.sourceAddr = {{0x20010DB8, 0, 0, source}};
    return record;
}

uint32_t readInto(L3Mc6MfibEntry& record, const L3Mc6MfibEntry& key) {
    record = key;
    return MCAST6_DB_ReadL3Mfib(&record);
}

// The key of an entry, to compare sets of entries.
std::string nameOf(const L3Mc6MfibEntry& record) {
    std::string name = std::to_string(record.vrId) + "/" + std::to_string(record.vrfId);
    for (const uint32_t word : record.groupAddr.word) name += " " + std::to_string(word);
    for (const uint32_t word : record.sourceAddr.word) name += " " + std::to_string(word);
    return name;
}

// Walks an iterator to its end; a repeated entry is found by the size.
std::multiset<std::string> walk(Mcast6DbRes& iterator, size_t limit) {
    std::multiset<std::string> names;
    L3Mc6MfibEntry record{};
    uint32_t result = 0;
    while (names.size() <= limit && (result = MCAST6_DB_GetL3MfibEntry(&iterator, &record)) == 0) {
        names.insert(nameOf(record));
    }
    EXPECT_EQ(60u, result);
    return names;
}

class MfibSystemTest : public SystemTest {};

// -- records

TEST_F(MfibSystemTest, readsBackWhatWasWritten) {
    L3Mc6MfibEntry record = entryOf(1, 2, 3, 4);
    record.addrType = 9;
    record.attr1 = 1;
    record.attr2 = 2;
    record.attr3 = 3;
    record.attr8 = 8;
    record.attr9 = 0x00030004;
    record.attr16 = 16;
    record.attr17[0] = 17;
    record.attr18[1] = 18;
    record.attr19[2] = 19;
    record.attr21 = 21;
    record.attr22 = 22;
    record.mcStatSvcCtx[35] = 35;
    record.appSrcPid = 77;
    record.smoothVersion = 5;
    record.timeStampCreate = 1;
    ASSERT_EQ(0u, MCAST6_DB_WriteL3Mfib(&record));
    EXPECT_EQ(77u, MCAST6_DB_GetL3MfibSourcePid());

    L3Mc6MfibEntry read = entryOf(1, 2, 3, 4);
    read.host1 = 0x3C;
    read.hostTail[23] = 0x3C;
    ASSERT_EQ(0u, MCAST6_DB_ReadL3Mfib(&read));
    L3Mc6MfibEntry expected = record;
    expected.addrType = 2;
    expected.attr9 = 4;
    expected.timeStampCreate = 1'000;
    expected.timeStampSmooth = 1'000;
    expected.host1 = 0x3C;
    expected.hostTail[23] = 0x3C;
    EXPECT_EQ(0, std::memcmp(&expected, &read, sizeof read));
    EXPECT_EQ(1u, mcast6_platform_kpi(93));
    EXPECT_EQ(0u, mcast6_platform_kpi(94));
    EXPECT_EQ(mcast6_platform_counter(151), mcast6_platform_counter(152));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(MfibSystemTest, anAbsentEntryIs15005ByKeyAnd60ByIterator) {
    L3Mc6MfibEntry record = entryOf(1, 2, 3, 4);
    EXPECT_EQ(15005u, MCAST6_DB_ReadL3Mfib(&record));
    EXPECT_EQ(15005u, MCAST6_DB_ReadL3MfibFast(&record));
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3MfibIter();
    ASSERT_NE(nullptr, iterator);
    EXPECT_EQ(60u, MCAST6_DB_GetL3MfibEntry(iterator, &record));
    MCAST6_DB_ReleaseL3MfibIter(iterator);
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

TEST_F(MfibSystemTest, aSecondWriteReplacesTheEntryAndRecordsIt) {
    L3Mc6MfibEntry record = entryOf(1, 2, 3, 4);
    record.inIfIndex = 7;
    ASSERT_EQ(0u, MCAST6_DB_WriteL3Mfib(&record));
    record.inIfIndex = 8;
    EXPECT_EQ(0u, MCAST6_DB_WriteL3Mfib(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[15][1]);
    EXPECT_EQ(1u, errors());
    EXPECT_EQ(2u, mcast6_platform_kpi(93));
    // The entry is found by its new interface, and no longer by its old one.
    uint32_t count = 9;
    EXPECT_EQ(0u, MCAST6_DB_GetL3MfibNumByIntf(&record, &count));
    EXPECT_EQ(1u, count);
    record.inIfIndex = 7;
    EXPECT_EQ(0u, MCAST6_DB_GetL3MfibNumByIntf(&record, &count));
    EXPECT_EQ(0u, count);
    EXPECT_EQ(0u, MCAST6_DB_GetL3MfibCnt(&count));
    EXPECT_EQ(1u, count);
}

TEST_F(MfibSystemTest, updatesKeepTheCreationTimeAndWhatTheyDoNotSet) {
    L3Mc6MfibEntry record = entryOf(1, 2, 3, 4);
    record.attr4 = 44;
    record.smoothVersion = 5;
    record.mcStatSvcCtx[0] = 1;
    ASSERT_EQ(0u, MCAST6_DB_WriteL3Mfib(&record));

    setTime(1'010);
    L3Mc6MfibEntry change = entryOf(1, 2, 3, 4);
    change.smoothVersion = 6;
    change.mcStatSvcCtx[0] = 2;
    EXPECT_EQ(0u, MCAST6_DB_UpdateL3MfibSmoothVersion(&change));
    L3Mc6MfibEntry read;
    ASSERT_EQ(0u, readInto(read, change));
    EXPECT_EQ(6u, read.smoothVersion);
    EXPECT_EQ(1, read.mcStatSvcCtx[0]);
    EXPECT_EQ(44u, read.attr4);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'010u, read.timeStampSmooth);

    setTime(1'020);
    change.smoothVersion = 7;
    EXPECT_EQ(0u, MCAST6_DB_UpdateL3MfibMcStatSvcCtx(&change));
    ASSERT_EQ(0u, readInto(read, change));
    EXPECT_EQ(6u, read.smoothVersion);
    EXPECT_EQ(2, read.mcStatSvcCtx[0]);
    EXPECT_EQ(1'000u, read.timeStampCreate);
    EXPECT_EQ(1'020u, read.timeStampSmooth);
    EXPECT_EQ(0u, errors());
}

TEST_F(MfibSystemTest, changesOfAnAbsentEntryStoreNothing) {
    const L3Mc6MfibEntry record = entryOf(1, 2, 3, 4);
    EXPECT_EQ(0u, MCAST6_DB_UpdateL3MfibSmoothVersion(&record));
    EXPECT_EQ(0u, MCAST6_DB_UpdateL3MfibMcStatSvcCtx(&record));
    EXPECT_EQ(0u, MCAST6_DB_DeleteL3Mfib(&record));
    EXPECT_EQ(3u, g_mcast6DbErrStat[15][1]);
    EXPECT_EQ(3u, errors());
    EXPECT_EQ(1u, mcast6_platform_kpi(95));
    EXPECT_EQ(0u, mcast6_platform_trap_count());
    EXPECT_THAT(logLines(), IsEmpty());
    uint32_t count = 9;
    EXPECT_EQ(0u, MCAST6_DB_GetL3MfibCnt(&count));
    EXPECT_EQ(0u, count);
}

TEST_F(MfibSystemTest, aRemovedEntryIsGoneAndTheHostIsTold) {
    const L3Mc6MfibEntry record = entryOf(1, 2, 3, 4);
    ASSERT_EQ(0u, MCAST6_DB_WriteL3Mfib(&record));
    EXPECT_EQ(0u, MCAST6_DB_DeleteL3Mfib(&record));
    EXPECT_EQ(1u, mcast6_platform_trap_count());
    EXPECT_EQ(1u, mcast6_platform_kpi(95));
    EXPECT_EQ(0u, mcast6_platform_kpi(96));
    L3Mc6MfibEntry read;
    EXPECT_EQ(15005u, readInto(read, record));
    EXPECT_EQ(0u, errors());
}

// The fast read caches an object, but no records.
TEST_F(MfibSystemTest, theFastReadSeesEveryChange) {
    L3Mc6MfibEntry record = entryOf(1, 2, 3, 4);
    record.attr4 = 1;
    ASSERT_EQ(0u, MCAST6_DB_WriteL3Mfib(&record));
    const uint64_t created = mcast6_platform_counter(151);
    L3Mc6MfibEntry read = entryOf(1, 2, 3, 4);
    EXPECT_EQ(0u, MCAST6_DB_ReadL3MfibFast(&read));
    EXPECT_EQ(1u, read.attr4);
    EXPECT_EQ(created, mcast6_platform_counter(151));
    record.attr4 = 2;
    ASSERT_EQ(0u, MCAST6_DB_WriteL3Mfib(&record));
    EXPECT_EQ(0u, MCAST6_DB_ReadL3MfibFast(&read));
    EXPECT_EQ(2u, read.attr4);
    ASSERT_EQ(0u, MCAST6_DB_DeleteL3Mfib(&record));
    EXPECT_EQ(15005u, MCAST6_DB_ReadL3MfibFast(&read));
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(MfibSystemTest, getNextReleasesTheObjectAtTheEnd) {
    const L3Mc6MfibEntry record = entryOf(1, 2, 3, 4);
    ASSERT_EQ(0u, MCAST6_DB_WriteL3Mfib(&record));
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3MfibIter();
    ASSERT_NE(nullptr, iterator);
    L3Mc6MfibEntry read{};
    EXPECT_EQ(0u, MCAST6_DB_GetNextL3Mfib(iterator, &read));
    EXPECT_EQ(nameOf(record), nameOf(read));
    EXPECT_NE(0u, iterator->object);
    EXPECT_EQ(60u, MCAST6_DB_GetNextL3Mfib(iterator, &read));
    EXPECT_EQ(0u, iterator->object);
    MCAST6_DB_ReleaseL3MfibIter(iterator);
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_EQ(0u, errors());
}

// -- queries

// Entries in 2 VRs with 2 VRFs each, in mixed combinations of groups, sources (any source included) and interfaces.
class MfibQueryTest : public MfibSystemTest {
protected:
    void SetUp() override {
        MfibSystemTest::SetUp();
        for (uint32_t vrId = 1; vrId <= 2; ++vrId) {
            for (uint32_t vrfId = 0; vrfId < 2; ++vrfId) {
                for (uint32_t group = 0; group < 5; ++group) {
                    for (uint32_t source = 0; source < 4; ++source) add(vrId, vrfId, group, source);
                }
            }
        }
    }

    void add(uint32_t vrId, uint32_t vrfId, uint32_t group, uint32_t source) {
        L3Mc6MfibEntry record = entryOf(vrId, vrfId, group, source);
        record.inIfIndex = 10 + (group + source) % 3;
        record.regIfIndex = 20 + (group * source + vrfId) % 4;
        record.attr23 = (group + source) % 2 == 0 ? 5 : 6;
        ASSERT_EQ(0u, MCAST6_DB_WriteL3Mfib(&record));
        written.push_back(record);
    }

    using Predicate = std::function<bool(const L3Mc6MfibEntry&)>;
    std::multiset<std::string> matching(const Predicate& matches) const {
        std::multiset<std::string> names;
        for (const L3Mc6MfibEntry& record : written) {
            if (matches(record)) names.insert(nameOf(record));
        }
        return names;
    }

    std::vector<L3Mc6MfibEntry> written;
};

bool sameAddress(const Mcast6Ipv6Addr& left, const Mcast6Ipv6Addr& right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
}

// The fields that a query of a type compares, besides VR and VRF.
struct QueryFields {
    uint32_t type;
    bool group, source, inIfIndex, regIfIndex;
};

bool matches(const QueryFields& query, const L3Mc6MfibEntry& probe, const L3Mc6MfibEntry& record) {
    return probe.vrId == record.vrId && probe.vrfId == record.vrfId &&
           (!query.group || sameAddress(probe.groupAddr, record.groupAddr)) &&
           (!query.source || sameAddress(probe.sourceAddr, record.sourceAddr)) &&
           (!query.inIfIndex || probe.inIfIndex == record.inIfIndex) &&
           (!query.regIfIndex || probe.regIfIndex == record.regIfIndex);
}

constexpr QueryFields kQueries[] = {
    {.type = 0, .group = false, .source = true, .inIfIndex = false, .regIfIndex = false},
    {.type = 1, .group = true, .source = false, .inIfIndex = false, .regIfIndex = false},
    {.type = 2, .group = false, .source = false, .inIfIndex = true, .regIfIndex = false},
    {.type = 3, .group = false, .source = true, .inIfIndex = true, .regIfIndex = false},
    {.type = 4, .group = true, .source = false, .inIfIndex = true, .regIfIndex = false},
    {.type = 6, .group = false, .source = false, .inIfIndex = false, .regIfIndex = false},
    {.type = 7, .group = false, .source = false, .inIfIndex = false, .regIfIndex = true},
    {.type = 8, .group = false, .source = true, .inIfIndex = false, .regIfIndex = true},
    {.type = 9, .group = true, .source = false, .inIfIndex = false, .regIfIndex = true},
};

TEST_F(MfibQueryTest, everyTypeCountsAndWalksExactlyItsEntries) {
    std::vector<L3Mc6MfibEntry> probes = written;
    probes.push_back(entryOf(3, 0, 0, 1));    // a VR without entries
    probes.push_back(entryOf(1, 0, 77, 77));  // addresses and interfaces without entries
    size_t found = 0;
    for (const QueryFields& query : kQueries) {
        for (const L3Mc6MfibEntry& probe : probes) {
            const auto expected = matching([&](const L3Mc6MfibEntry& record) { return matches(query, probe, record); });
            uint32_t count = 0xDEADBEEF;
            ASSERT_EQ(0u, MCAST6_DB_GetL3MfibFwdMatchNum(&probe, &count, query.type));
            EXPECT_EQ(expected.size(), count) << "type " << query.type << " of " << nameOf(probe);
            Mcast6DbRes iterator{};
            ASSERT_EQ(0u, MCAST6_DB_CreateL3MfibFwdIter(&iterator, query.type, &probe));
            EXPECT_EQ(expected, walk(iterator, written.size())) << "type " << query.type << " of " << nameOf(probe);
            MCAST6_DB_ReleaseL3MfibObject(iterator.object);
            found += expected.size();
        }
    }
    EXPECT_GT(found, 0u);
    EXPECT_EQ(mcast6_platform_counter(151), mcast6_platform_counter(152));
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(MfibQueryTest, countsFollowRemovalsAndMoves) {
    const L3Mc6MfibEntry gone = written.back();
    written.pop_back();
    ASSERT_EQ(0u, MCAST6_DB_DeleteL3Mfib(&gone));
    written.front().inIfIndex = 99;
    written.front().regIfIndex = 98;
    ASSERT_EQ(0u, MCAST6_DB_WriteL3Mfib(&written.front()));
    for (const QueryFields& query : kQueries) {
        for (const L3Mc6MfibEntry& probe : {gone, written.front(), written[1]}) {
            const auto expected = matching([&](const L3Mc6MfibEntry& record) { return matches(query, probe, record); });
            uint32_t count = 0xDEADBEEF;
            ASSERT_EQ(0u, MCAST6_DB_QueryL3MfibCountDispatch(&probe, &count, query.type));
            EXPECT_EQ(expected.size(), count) << "type " << query.type << " of " << nameOf(probe);
        }
    }
}

TEST_F(MfibQueryTest, aTypeThatNoQueryHasIsRefused) {
    for (const uint32_t type : {5u, 10u}) {
        Mcast6DbRes iterator{7, 8};
        uint32_t count = 9;
        EXPECT_EQ(1u, MCAST6_DB_CreateL3MfibFwdIter(&iterator, type, &written[0]));
        EXPECT_EQ(7u, iterator.object);
        EXPECT_EQ(8u, iterator.rootIter);
        EXPECT_EQ(1u, MCAST6_DB_QueryL3MfibCountDispatch(&written[0], &count, type));
        EXPECT_EQ(1u, MCAST6_DB_GetL3MfibFwdMatchNum(&written[0], &count, type));
        EXPECT_EQ(9u, count);
    }
    EXPECT_EQ(6u + 2u, logLines().size());
}

TEST_F(MfibQueryTest, allEntriesAreCountedAndWalked) {
    uint32_t count = 0;
    EXPECT_EQ(0u, MCAST6_DB_GetL3MfibCnt(&count));
    EXPECT_EQ(80u, count);
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3MfibIter();
    ASSERT_NE(nullptr, iterator);
    EXPECT_EQ(matching([](const L3Mc6MfibEntry&) { return true; }), walk(*iterator, written.size()));
    MCAST6_DB_ReleaseL3MfibIter(iterator);

    const Mcast6DbCacheFuncs cached{db_create_l3mc6_mfib_cache_object, db_reset_l3mc6_mfib_cache_object};
    Mcast6DbHandle slot = 0;
    EXPECT_EQ(80u, MCAST6_DB_GetCountFast(&cached, &slot));
    const Mcast6DbHandle kept = slot;
    ASSERT_EQ(0u, MCAST6_DB_DeleteL3Mfib(&written[0]));
    EXPECT_EQ(79u, MCAST6_DB_GetCountFast(&cached, &slot));
    EXPECT_EQ(kept, slot);
}

TEST_F(MfibQueryTest, byVrAndVrfAndByInterfaceWalkTheirEntries) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3MfibIterByVrVrf(2, 1);
    ASSERT_NE(nullptr, iterator);
    EXPECT_EQ(matching([](const L3Mc6MfibEntry& record) { return record.vrId == 2 && record.vrfId == 1; }),
              walk(*iterator, written.size()));
    MCAST6_DB_ReleaseL3MfibIter(iterator);
    iterator = MCAST6_DB_CreateL3MfibIterByIfIndex(11);
    ASSERT_NE(nullptr, iterator);
    const auto expected = matching([](const L3Mc6MfibEntry& record) { return record.inIfIndex == 11; });
    EXPECT_GT(expected.size(), 0u);
    EXPECT_EQ(expected, walk(*iterator, written.size()));
    MCAST6_DB_ReleaseL3MfibIter(iterator);
}

TEST_F(MfibQueryTest, hashConflictsAreTheEntriesWithCode5OfOneVr) {
    for (const uint32_t vrId : {1u, 2u, 3u}) {
        const auto expected =
            matching([vrId](const L3Mc6MfibEntry& record) { return record.vrId == vrId && record.attr23 == 5; });
        EXPECT_EQ(vrId == 3 ? 0u : 20u, expected.size());
        Mcast6DbRes iterator{};
        ASSERT_EQ(0u, MCAST6_DB_CreateL3MfibIterByErrCode(vrId, &iterator));
        EXPECT_EQ(expected, walk(iterator, written.size()));
        MCAST6_DB_ReleaseL3MfibObject(iterator.object);
        uint32_t count = 9;
        EXPECT_EQ(0u, MCAST6_DB_GetL3MfibHashConflictTotalNum(vrId, &count));
        EXPECT_EQ(expected.size(), count);
    }
}

// Entries may be removed during a walk: each of the others is still returned once.
TEST_F(MfibQueryTest, entriesMayBeRemovedWhileTheyAreWalked) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateL3MfibIterByVrVrf(1, 0);
    ASSERT_NE(nullptr, iterator);
    std::multiset<std::string> walked;
    L3Mc6MfibEntry record{};
    while (walked.size() <= written.size() && MCAST6_DB_GetL3MfibEntry(iterator, &record) == 0) {
        walked.insert(nameOf(record));
        ASSERT_EQ(0u, MCAST6_DB_DeleteL3Mfib(&record));
    }
    EXPECT_EQ(matching([](const L3Mc6MfibEntry& one) { return one.vrId == 1 && one.vrfId == 0; }), walked);
    MCAST6_DB_ReleaseL3MfibIter(iterator);
    uint32_t count = 9;
    EXPECT_EQ(0u, MCAST6_DB_GetL3MfibCnt(&count));
    EXPECT_EQ(60u, count);
    EXPECT_EQ(20u, mcast6_platform_trap_count());
}

TEST_F(MfibSystemTest, releasingNoIteratorDoesNothing) {
    MCAST6_DB_ReleaseL3MfibIter(nullptr);
    EXPECT_EQ(0u, mcast6_platform_counter(152));
    EXPECT_THAT(logLines(), IsEmpty());
}

}  // namespace

}  // namespace mcast6::tests
