// The context: memory hooks, log callback, error statistics, clock and addresses.
#include "mcast6_db/context.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "tests/platform/recorder.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests {

namespace {

using recording::hex;
using recording::Recorder;
using testing::ElementsAre;
using testing::IsEmpty;

// The state at load, before any test.
const Mcast6DbMemCallback hooksAtLoad = g_mcast6DbMemCallback;
const Mcast6DbLogFunc logAtLoad = g_mcast6DbContext;
const bool statisticsClearAtLoad = [] {
    uint64_t sum = 0;
    for (const auto& row : g_mcast6DbErrStat) {
        for (const uint64_t count : row) sum += count;
    }
    return sum == 0;
}();

uint64_t allErrors() {
    uint64_t sum = 0;
    for (const auto& row : g_mcast6DbErrStat) {
        for (const uint64_t count : row) sum += count;
    }
    return sum;
}

class ContextTest : public testing::Test {
protected:
    void SetUp() override { startOver(); }
    void TearDown() override { startOver(false); }

    Recorder& platform = Recorder::instance();
};

TEST_F(ContextTest, startsWithTheAllocatorOfTheCLibraryNoLogAndNoErrors) {
    EXPECT_EQ(&std::malloc, hooksAtLoad.alloc);
    EXPECT_EQ(&std::free, hooksAtLoad.free);
    EXPECT_EQ(nullptr, logAtLoad);
    EXPECT_TRUE(statisticsClearAtLoad);
}

// -- memory hooks

uint64_t askedFor;
void* handedBack;
char block[8];
void* allocateBlock(uint64_t size) {
    askedFor = size;
    return block;
}
void* allocateNothing(uint64_t size) {
    askedFor = size;
    return nullptr;
}
void takeBack(void* given) { handedBack = given; }

TEST_F(ContextTest, copiesBothHooks) {
    Mcast6DbMemCallback hooks{allocateBlock, takeBack};
    MCAST6_DB_InitMem(&hooks);
    EXPECT_EQ(allocateBlock, g_mcast6DbMemCallback.alloc);
    EXPECT_EQ(takeBack, g_mcast6DbMemCallback.free);
    hooks = {nullptr, nullptr};
    EXPECT_EQ(block, MCAST6_DB_Malloc(8));
    EXPECT_EQ(8u, askedFor);
    MCAST6_DB_Free(block);
    EXPECT_EQ(block, handedBack);
}

TEST_F(ContextTest, asksTheHookForAnySizeAndReturnsWhatItReturns) {
    const Mcast6DbMemCallback hooks{allocateNothing, takeBack};
    MCAST6_DB_InitMem(&hooks);
    EXPECT_EQ(nullptr, MCAST6_DB_Malloc(0));
    EXPECT_EQ(0u, askedFor);
    EXPECT_EQ(nullptr, MCAST6_DB_Malloc(0xFFFFFFFF));
    EXPECT_EQ(0xFFFFFFFFull, askedFor);
}

TEST_F(ContextTest, handsNullToTheFreeHookToo) {
    MCAST6_DB_Free(nullptr);
    EXPECT_EQ(platform.trace(), (Trace{"free none"}));
}

// -- log callback

TEST_F(ContextTest, aNullRegistrationIsRefusedAndChangesNothing) {
    MCAST6_DB_RecordErrState(3, 4);
    EXPECT_EQ(1u, MCAST6_DB_RegCallBack(nullptr));
    EXPECT_EQ(&Recorder::log, MCAST6_DB_GetLogCallBack());
    EXPECT_EQ(1u, g_mcast6DbErrStat[3][4]);
    EXPECT_EQ(1u, allErrors());
}

TEST_F(ContextTest, registeringSetsTheCallbackAndClearsEveryCounter) {
    for (uint32_t table = 0; table < 33; ++table) {
        for (uint32_t kind = 0; kind < 10; ++kind) MCAST6_DB_RecordErrState(table, kind);
    }
    EXPECT_EQ(330u, allErrors());
    const Mcast6DbContext silent{nullptr};
    EXPECT_EQ(0u, MCAST6_DB_RegCallBack(&silent));
    EXPECT_EQ(nullptr, MCAST6_DB_GetLogCallBack());
    EXPECT_EQ(nullptr, g_mcast6DbContext);
    EXPECT_EQ(0u, allErrors());
    const Mcast6DbContext talking{&Recorder::log};
    EXPECT_EQ(0u, MCAST6_DB_RegCallBack(&talking));
    EXPECT_EQ(&Recorder::log, MCAST6_DB_GetLogCallBack());
    EXPECT_EQ(&Recorder::log, g_mcast6DbContext);
}

// -- error statistics

TEST_F(ContextTest, eachErrorCountsInItsOwnPlace) {
    for (uint32_t table = 0; table < 33; ++table) {
        for (uint32_t kind = 0; kind < 10; ++kind) {
            ASSERT_EQ(0u, g_mcast6DbErrStat[table][kind]);
            MCAST6_DB_RecordErrState(table, kind);
            MCAST6_DB_RecordErrState(table, kind);
            ASSERT_EQ(2u, g_mcast6DbErrStat[table][kind]) << table << " " << kind;
            ASSERT_EQ(2u * (table * 10 + kind + 1), allErrors());
        }
    }
    EXPECT_THAT(platform.logFormats(), IsEmpty());
}

TEST_F(ContextTest, anErrorOutsideTheStatisticsIsLoggedAndNotCounted) {
    MCAST6_DB_RecordErrState(33, 0);
    MCAST6_DB_RecordErrState(32, 10);
    MCAST6_DB_RecordErrState(4294967295u, 4294967295u);
    EXPECT_EQ(platform.trace(), (Trace{
                                    "log 9 0x0F2E1012 \"[MCAST6 DB] Set db error stat fail. table 33, error 0\"",
                                    "log 9 0x0F2E1012 \"[MCAST6 DB] Set db error stat fail. table 32, error 10\"",
                                    "log 9 0x0F2E1012 \"[MCAST6 DB] Set db error stat fail. table 4294967295, "
                                    "error 4294967295\"",
                                }));
    EXPECT_EQ(3u, platform.logFormats().size());
    for (const std::string& format : platform.logFormats()) {
        EXPECT_EQ("[MCAST6 DB] Set db error stat fail. table %u, error %u", format);
    }
    EXPECT_EQ(0u, allErrors());
}

TEST_F(ContextTest, anErrorOutsideTheStatisticsIsSilentWithNoCallback) {
    startOver(false);
    MCAST6_DB_RecordErrState(33, 9);
    MCAST6_DB_RecordErrState(0, 10);
    EXPECT_THAT(platform.trace(), IsEmpty());
    EXPECT_EQ(0u, allErrors());
}

// -- clock

TEST_F(ContextTest, theTimeIsTheClockReadOnce) {
    platform.setTime(0x1'0000'0005, 1);
    EXPECT_EQ(0x1'0000'0005, MCAST6_DB_GetSysTime());
    EXPECT_EQ(1u, platform.clockReadings());
    platform.setTime(-1);
    EXPECT_EQ(-1, MCAST6_DB_GetSysTime());
}

// -- addresses

TEST_F(ContextTest, anAddressGoesToTheDatabaseInNetworkOrder) {
    const Mcast6Ipv6Addr address{{1, 2, 3, 4}};
    uint8_t stored[16] = {};
    EXPECT_EQ(0, MCAST6_DB_SetAddress(stored, 16, &address, 16));
    EXPECT_EQ(digits("00000001 00000002 00000003 00000004"), hex(stored));
}

TEST_F(ContextTest, anAddressComesBackAsItWas) {
    const Mcast6Ipv6Addr address{{0xFF1E0102, 0x03040506, 0x0708090A, 0x0B0C0D0E}};
    uint8_t stored[16] = {};
    Mcast6Ipv6Addr read{{9, 9, 9, 9}};
    EXPECT_EQ(0, MCAST6_DB_SetAddress(stored, 16, &address, 16));
    EXPECT_EQ(digits("ff1e0102 03040506 0708090a 0b0c0d0e"), hex(stored));
    EXPECT_EQ(0, MCAST6_DB_GetAddress(&read, 16, stored, 16));
    EXPECT_THAT(read.word, ElementsAre(0xFF1E0102, 0x03040506, 0x0708090A, 0x0B0C0D0E));
    EXPECT_THAT(address.word, ElementsAre(0xFF1E0102, 0x03040506, 0x0708090A, 0x0B0C0D0E));
}

TEST_F(ContextTest, anAddressMayLieAnywhere) {
    uint8_t source[17] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    uint8_t stored[19] = {};
    uint8_t read[18] = {};
    EXPECT_EQ(0, MCAST6_DB_SetAddress(stored + 3, 16, source + 1, 16));
    EXPECT_EQ(digits("000000 04030201 08070605 0c0b0a09 100f0e0d"), hex(stored));
    EXPECT_EQ(0, MCAST6_DB_GetAddress(read + 1, 16, stored + 3, 16));
    EXPECT_EQ(digits("00 01020304 05060708 090a0b0c 0d0e0f10 00"), hex(read));
}

TEST_F(ContextTest, addressesAreCopiedWithTheGivenSizes) {
    const Mcast6Ipv6Addr address{{1, 2, 3, 4}};
    uint8_t stored[16] = {};
    platform.traceCopies(true);
    EXPECT_EQ(0, MCAST6_DB_SetAddress(stored, 16, &address, 8));
    EXPECT_EQ(digits("00000001 00000002 00000000 00000000"), hex(stored));
    EXPECT_NE(0, MCAST6_DB_SetAddress(stored, 8, &address, 16));
    Mcast6Ipv6Addr read{};
    EXPECT_EQ(0, MCAST6_DB_GetAddress(&read, 16, stored, 12));
    EXPECT_NE(0, MCAST6_DB_GetAddress(&read, 4, stored, 16));
    const Trace trace = platform.takeTrace();
    ASSERT_EQ(4u, trace.size());
    EXPECT_EQ("memcpy_s 16 8", trace[0]);
    EXPECT_THAT(trace[1], testing::StartsWith("memcpy_s 8 16 -> "));
    EXPECT_EQ("memcpy_s 16 12", trace[2]);
    EXPECT_THAT(trace[3], testing::StartsWith("memcpy_s 4 16 -> "));
}

TEST_F(ContextTest, aRefusedCopyIsAnsweredWithItsResult) {
    const Mcast6Ipv6Addr address{{1, 2, 3, 4}};
    uint8_t stored[16];
    std::memset(stored, 0xA5, sizeof stored);
    platform.answer("memcpy_s", 34);
    EXPECT_EQ(34, MCAST6_DB_SetAddress(stored, 16, &address, 16));
    EXPECT_EQ(digits("a5a5a5a5 a5a5a5a5 a5a5a5a5 a5a5a5a5"), hex(stored));
}

TEST_F(ContextTest, theWordsAtTheDestinationChangeOrderEvenAfterARefusedCopy) {
    const uint8_t stored[16] = {};
    Mcast6Ipv6Addr read{{0x01020304, 0x05060708, 0x090A0B0C, 0x0D0E0F10}};
    platform.answer("memcpy_s", 34);
    EXPECT_EQ(34, MCAST6_DB_GetAddress(&read, 16, stored, 16));
    EXPECT_THAT(read.word, ElementsAre(0x04030201, 0x08070605, 0x0C0B0A09, 0x100F0E0D));
}

TEST_F(ContextTest, addressesAreEqualWhenAllFourWordsAre) {
    const Mcast6Ipv6Addr address{{1, 2, 3, 4}};
    const Mcast6Ipv6Addr same{{1, 2, 3, 4}};
    EXPECT_EQ(1u, MCAST6_DB_IsIpv6AddrEqual(&address, &same));
    EXPECT_EQ(1u, MCAST6_DB_IsIpv6AddrEqual(&address, &address));
    for (size_t word = 0; word < 4; ++word) {
        Mcast6Ipv6Addr other = address;
        other.word[word] ^= 0x80000000;
        EXPECT_EQ(0u, MCAST6_DB_IsIpv6AddrEqual(&address, &other)) << word;
        EXPECT_EQ(0u, MCAST6_DB_IsIpv6AddrEqual(&other, &address)) << word;
    }
}

}  // namespace

}  // namespace mcast6::tests
