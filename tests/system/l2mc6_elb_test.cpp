// l2mc6_elb on the shipped platform: records, and every iterator and the count compared with a plain walk of what was
// written.
#include "mcast6_db/l2mc6_elb.h"

#include <gmock/gmock.h>

#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "mcast6_db/context.h"
#include "mcast6_platform/platform.h"
#include "tests/system/host.h"

namespace mcast6::tests {

namespace {

using testing::IsEmpty;

L2Elb6Entry memberOf(uint32_t vrId, uint32_t vlanId, uint32_t group, uint32_t source, uint32_t outIfIndex) {
    L2Elb6Entry record{};
    record.vrId = vrId;
    record.vlanId = vlanId;
    record.groupAddr = {{0xFF1E0000, 0, 0, group}};
    if (source != 0) record.sourceAddr = {{0x20010DB8, 0, 0, source}};
    record.outIfIndex = outIfIndex;
    return record;
}

// The key of a member, to compare sets of members.
std::string nameOf(const L2Elb6Entry& record) {
    std::string name = std::to_string(record.vrId) + "/" + std::to_string(record.vlanId) + "/" +
                       std::to_string(record.userVlanId) + " if " + std::to_string(record.outIfIndex);
    name +=
        " group " + std::to_string(record.groupAddr.word[3]) + " source " + std::to_string(record.sourceAddr.word[3]);
    return name;
}

class L2ElbSystemTest : public SystemTest {
protected:
    // Members of entries in mixed combinations of VRs, VLANs, groups, sources (any source included) and interfaces.
    void writeMany() {
        for (uint32_t vrId = 1; vrId <= 2; ++vrId) {
            for (const uint32_t vlanId : {1u, 0x0100u, 0xFFFFu}) {
                for (uint32_t group = 0; group < 3; ++group) {
                    for (uint32_t source = 0; source < 2; ++source) {
                        for (uint32_t member = 0; member < 3; ++member) {
                            L2Elb6Entry record = memberOf(vrId, vlanId, group, source, 10 + (group + member) % 4);
                            record.userVlanId = static_cast<uint16_t>(member);
                            ASSERT_EQ(0u, MCAST6_DB_WriteL2Elb6(&record));
                            written.push_back(record);
                        }
                    }
                }
            }
        }
    }

    using Predicate = std::function<bool(const L2Elb6Entry&)>;
    std::multiset<std::string> matching(const Predicate& matches) const {
        std::multiset<std::string> names;
        for (const L2Elb6Entry& record : written) {
            if (matches(record)) names.insert(nameOf(record));
        }
        return names;
    }

    // Walks an iterator to its end and releases it.
    std::multiset<std::string> walk(Mcast6DbRes* iterator,
                                    uint32_t (*step)(Mcast6DbRes*, L2Elb6Entry*) = MCAST6_DB_GetL2Elb6Entry) const {
        std::multiset<std::string> names;
        if (iterator == nullptr) {
            ADD_FAILURE() << "no iterator";
            return names;
        }
        L2Elb6Entry record{};
        uint32_t result = 0;
        while (names.size() <= written.size() && (result = step(iterator, &record)) == 0) names.insert(nameOf(record));
        EXPECT_EQ(60u, result);
        EXPECT_EQ(60u, step(iterator, &record));
        MCAST6_DB_ReleaseL2Elb6Iterator(iterator);
        return names;
    }

    static void expectSilence() {
        EXPECT_THAT(logLines(), IsEmpty());
        EXPECT_EQ(0u, errors());
        EXPECT_EQ(mcast6_platform_counter(7), mcast6_platform_counter(8));
    }

    std::vector<L2Elb6Entry> written;
};

// -- records

TEST_F(L2ElbSystemTest, readsBackWhatWasWritten) {
    L2Elb6Entry record = memberOf(1, 2, 3, 4, 5);
    record.userVlanId = 6;
    record.vrfId = 7;
    record.addrType = 9;
    record.domainType = 9;
    record.fixedWord1 = 9;
    record.fixedWord2 = 9;
    record.mcId = 8;
    record.mcidVersion = 0x900000000;
    record.mfibVersion = 10;
    record.fwdIfType = 11;
    record.fwdIfExtType = 12;
    record.isSelfBoard = 13;
    record.elbByte1 = 14;
    record.pathFlags = 15;
    record.appSrcPid = 16;
    record.smoothVersion = 17;
    record.elbData1[15] = 18;
    record.svcCtxHighPrio[27] = 19;
    record.svcCtxNormalPrio[11] = 20;
    record.serviceStatus[1] = 21;
    record.errCode[0] = 22;
    record.elbWord1 = 23;
    record.elbWord2 = 24;
    record.timeStampCreate = 1;
    ASSERT_EQ(0u, MCAST6_DB_WriteL2Elb6(&record));

    L2Elb6Entry expected = record;
    expected.addrType = 2;
    expected.fixedWord2 = 5;
    expected.domainType = expected.fixedWord1 = 0;
    expected.timeStampCreate = expected.timeStampSmooth = 1'000;
    expected.host5[59] = 0x3C;
    L2Elb6Entry found = memberOf(1, 2, 3, 4, 5);
    found.userVlanId = 6;
    found.host5[59] = 0x3C;
    ASSERT_EQ(0u, MCAST6_DB_ReadL2Elb6(&found));
    EXPECT_EQ(0, std::memcmp(&expected, &found, sizeof found));

    // Read by field: all except four.
    expected.elbByte1 = 0;
    expected.elbWord1 = expected.elbWord2 = 0;
    expected.elbData1[15] = 0;
    L2Elb6Entry item{};
    item.host5[59] = 0x3C;
    Mcast6DbRes* iterator = MCAST6_DB_CreateL2Elb6Iter();
    ASSERT_NE(nullptr, iterator);
    EXPECT_EQ(0u, MCAST6_DB_GetNextL2Elb6(iterator, &item));
    EXPECT_EQ(0, std::memcmp(&expected, &item, sizeof item));
    MCAST6_DB_ReleaseL2Elb6Iterator(iterator);
    EXPECT_EQ(1u, mcast6_platform_kpi(27));
    EXPECT_EQ(0u, mcast6_platform_kpi(28));
    expectSilence();
}

TEST_F(L2ElbSystemTest, anAbsentMemberIs15005AndLeavesTheRecord) {
    L2Elb6Entry record = memberOf(1, 2, 3, 4, 5);
    record.mcId = 6;
    const L2Elb6Entry before = record;
    EXPECT_EQ(15005u, MCAST6_DB_ReadL2Elb6(&record));
    EXPECT_EQ(0, std::memcmp(&before, &record, sizeof record));
    expectSilence();
}

TEST_F(L2ElbSystemTest, aVlanAbove65535IsTheOneOfItsLow16Bits) {
    L2Elb6Entry record = memberOf(1, 0x00050002, 3, 4, 5);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2Elb6(&record));
    L2Elb6Entry found = memberOf(1, 2, 3, 4, 5);
    EXPECT_EQ(0u, MCAST6_DB_ReadL2Elb6(&found));
    found = record;
    EXPECT_EQ(0u, MCAST6_DB_ReadL2Elb6(&found));
    EXPECT_EQ(2u, found.vlanId);
    expectSilence();
}

TEST_F(L2ElbSystemTest, aSecondWriteReplacesTheMemberStampsItAnewAndRecordsIt) {
    L2Elb6Entry record = memberOf(1, 2, 3, 4, 5);
    ASSERT_EQ(0u, MCAST6_DB_WriteL2Elb6(&record));
    setTime(1'010);
    record.mcId = 6;
    record.timeStampCreate = 1'000;
    EXPECT_EQ(0u, MCAST6_DB_WriteL2Elb6(&record));
    EXPECT_EQ(1u, g_mcast6DbErrStat[7][1]);
    EXPECT_EQ(1u, errors());
    EXPECT_EQ(2u, mcast6_platform_kpi(27));
    L2Elb6Entry found = memberOf(1, 2, 3, 4, 5);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2Elb6(&found));
    EXPECT_EQ(6u, found.mcId);
    EXPECT_EQ(1'010u, found.timeStampCreate);
    EXPECT_EQ(1'010u, found.timeStampSmooth);
}

TEST_F(L2ElbSystemTest, anUpdateKeepsTheCreationTimeAndWhatItDoesNotSet) {
    L2Elb6Entry record = memberOf(1, 2, 3, 4, 5);
    record.mcId = 44;
    record.smoothVersion = 5;
    ASSERT_EQ(0u, MCAST6_DB_WriteL2Elb6(&record));
    setTime(1'010);
    L2Elb6Entry change = memberOf(1, 2, 3, 4, 5);
    change.smoothVersion = 6;
    EXPECT_EQ(0u, MCAST6_DB_UpdateL2Elb6SmoothVersion(&change));
    L2Elb6Entry found = memberOf(1, 2, 3, 4, 5);
    ASSERT_EQ(0u, MCAST6_DB_ReadL2Elb6(&found));
    EXPECT_EQ(6u, found.smoothVersion);
    EXPECT_EQ(44u, found.mcId);
    EXPECT_EQ(1'000u, found.timeStampCreate);
    EXPECT_EQ(1'010u, found.timeStampSmooth);
    expectSilence();
}

TEST_F(L2ElbSystemTest, changesOfAnAbsentMemberAnswer0RecordKind1AndStoreNothing) {
    const L2Elb6Entry record = memberOf(1, 2, 3, 4, 5);
    EXPECT_EQ(0u, MCAST6_DB_UpdateL2Elb6SmoothVersion(&record));
    EXPECT_EQ(0u, MCAST6_DB_DeleteL2Elb6(&record));
    EXPECT_EQ(2u, g_mcast6DbErrStat[7][1]);
    EXPECT_EQ(2u, errors());
    EXPECT_EQ(1u, mcast6_platform_kpi(29));
    EXPECT_THAT(logLines(), IsEmpty());
    EXPECT_THAT(walk(MCAST6_DB_CreateL2Elb6Iter()), IsEmpty());
}

TEST_F(L2ElbSystemTest, aRemovedMemberIsGoneAndItsNeighboursStay) {
    writeMany();
    const L2Elb6Entry gone = written.back();
    written.pop_back();
    EXPECT_EQ(0u, MCAST6_DB_DeleteL2Elb6(&gone));
    EXPECT_EQ(1u, mcast6_platform_kpi(29));
    L2Elb6Entry found = gone;
    EXPECT_EQ(15005u, MCAST6_DB_ReadL2Elb6(&found));
    EXPECT_EQ(matching([](const L2Elb6Entry&) { return true; }), walk(MCAST6_DB_CreateL2Elb6Iter()));
    expectSilence();
}

// -- iterators and the count

TEST_F(L2ElbSystemTest, allMembersAreWalkedOnceByBothIteratorsAndBothSteps) {
    writeMany();
    ASSERT_EQ(108u, written.size());
    const auto expected = matching([](const L2Elb6Entry&) { return true; });
    for (const auto create : {MCAST6_DB_CreateL2Elb6Iter, MCAST6_DB_CreateL2Elb6AllIterator}) {
        EXPECT_EQ(expected, walk(create()));
        EXPECT_EQ(expected, walk(create(), MCAST6_DB_GetNextL2Elb6));
    }
    expectSilence();
}

TEST_F(L2ElbSystemTest, theMembersOfAnInterfaceAreWalked) {
    writeMany();
    size_t found = 0;
    for (uint32_t ifIndex = 9; ifIndex < 15; ++ifIndex) {
        const auto expected = matching([&](const L2Elb6Entry& record) { return record.outIfIndex == ifIndex; });
        EXPECT_EQ(expected, walk(MCAST6_DB_CreateL2Elb6IterByIfindex(ifIndex)));
        found += expected.size();
    }
    EXPECT_EQ(written.size(), found);
    expectSilence();
}

TEST_F(L2ElbSystemTest, theMembersOfAnEntryAreWalkedAndCounted) {
    writeMany();
    std::vector<L2Elb6Entry> probes = written;
    probes.push_back(memberOf(3, 1, 0, 0, 0));
    probes.push_back(memberOf(1, 2, 0, 0, 0));
    probes.push_back(memberOf(1, 1, 7, 0, 0));
    probes.push_back(memberOf(1, 1, 0, 7, 0));
    for (const L2Elb6Entry& probe : probes) {
        const auto expected = matching([&](const L2Elb6Entry& record) {
            return record.vrId == probe.vrId && record.vlanId == probe.vlanId &&
                   record.groupAddr.word[3] == probe.groupAddr.word[3] &&
                   record.sourceAddr.word[3] == probe.sourceAddr.word[3];
        });
        const auto vlanId = static_cast<uint16_t>(probe.vlanId);
        const Mcast6Ipv6Addr group = probe.groupAddr;
        const Mcast6Ipv6Addr source = probe.sourceAddr;
        EXPECT_EQ(expected, walk(MCAST6_DB_CreateL2Elb6IterBySrcAddr(probe.vrId, vlanId, &source, &group)));
        EXPECT_EQ(expected.size(), MCAST6_DB_L2Elb6CountBySource(probe.vrId, vlanId, &source, &group));
        L2Elb6McidKey key{};
        key.keyWord0 = probe.vrId;
        key.keyWord1 = 0x00070000 | probe.vlanId;
        key.keyAddr0 = group;
        key.keyAddr1 = source;
        EXPECT_EQ(expected, walk(MCAST6_DB_CreateL2Elb6IterByMcid(&key)));
    }
    expectSilence();
}

}  // namespace

}  // namespace mcast6::tests
