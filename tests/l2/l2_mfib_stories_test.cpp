// The two tables of layer-2 forwarding entries: conversions byte for byte, and claims that involve more than one exit.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "mcast6_db/context.h"
#include "tests/l2/l2mc6_bd_mfib_facts.h"
#include "tests/l2/l2mc6_vlan_mfib_facts.h"

namespace mcast6::tests::l2_mfib {

namespace {

using recording::Bytes;
using recording::hex;
using recording::Recorder;
using recording::unhex;
using testing::IsEmpty;

class L2MfibTest : public testing::TestWithParam<const MfibTable*> {
protected:
    void SetUp() override {
        startOver();
        forgetGlobals();
        fillSample(entry);
    }
    void TearDown() override {
        platform.reset();
        forgetGlobals();
    }
    void forgetGlobals() const {
        *table.pid = 0;
        *table.keptObject = 0;
    }
    Entry stored() const {
        Entry read;
        fillSample(read);
        readStored(table, read);
        return read;
    }
    // An iterator positioned on the stored row.
    Mcast6DbRes* onStoredRow() {
        Mcast6DbRes* iterator = f.createIter.function();
        platform.fillNextStep(unhex(table.storedRow()));
        EXPECT_EQ(0u, db_root_iterator_next(iterator->rootIter));
        platform.takeTrace();
        return iterator;
    }
    std::string released(const char* object) const { return "release " + table.name + " " + object; }
    std::string counts(uint32_t counter) const { return "dfx " + std::to_string(counter); }

    Recorder& platform = Recorder::instance();
    const MfibTable& table = *GetParam();
    const Functions& f = table.functions;
    Entry entry;
};

// -- conversions

TEST_P(L2MfibTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    const std::string before = bytesOf(entry);
    Bytes row(table.rowSize + 2, 0x5A);
    EXPECT_EQ(0u, f.set.function(&entry, row.data() + 1));
    EXPECT_EQ("5a" + table.writtenRow() + "5a", hex(row));
    EXPECT_EQ(before, bytesOf(entry));
    EXPECT_EQ(0x81828384u, *table.pid);
}

TEST_P(L2MfibTest, setReadsTheClockOnceForBothStamps) {
    platform.setTime(0x0102030405060708, 1);
    Bytes row(table.rowSize);
    f.set.function(&entry, row.data());
    EXPECT_EQ(1u, platform.clockReadings());
    EXPECT_EQ(digits("0807060504030201 0807060504030201"), hex(std::span(row).last(16)));
}

TEST_P(L2MfibTest, getWritesEveryFieldItsConstantsAndNothingElse) {
    const Bytes row = unhex("00" + table.storedRow());
    EXPECT_EQ(0u, f.get.function(row.data() + 1, &entry));
    EXPECT_EQ(bytesOf(stored()), bytesOf(entry));
    EXPECT_EQ(2u, entry.addrType);
    EXPECT_EQ(table.domainType, entry.domainType);
    EXPECT_THAT(platform.trace(), IsEmpty());
    EXPECT_EQ(0u, platform.clockReadings());
    EXPECT_EQ(0u, *table.pid);
}

// The copies of a conversion, by their sizes. A conversion returns the code of a failed copy only for the two bytes of
// serviceStatus.
TEST_P(L2MfibTest, conversionsAnswerTheResultOfTheCopyOfServiceStatus) {
    Bytes row = unhex(table.storedRow());
    const auto set = [&] { return f.set.function(&entry, row.data()); };
    const auto get = [&] { return f.get.function(row.data(), &entry); };
    for (const std::function<uint32_t()>& convert : {std::function<uint32_t()>(set), std::function<uint32_t()>(get)}) {
        platform.traceCopies(true);
        EXPECT_EQ(0u, convert());
        const Trace copies = platform.takeTrace();
        EXPECT_THAT(copies, testing::UnorderedElementsAre("memcpy_s 16 16", "memcpy_s 16 16", "memcpy_s 12 12",
                                                          "memcpy_s 12 12", "memcpy_s 2 2"));
        for (size_t failing = 0; failing < copies.size(); ++failing) {
            for (size_t i = 0; i <= failing; ++i) platform.answer("memcpy_s", i == failing ? 34 : 0);
            EXPECT_EQ(copies[failing] == "memcpy_s 2 2" ? 34u : 0u, convert()) << copies[failing];
            EXPECT_EQ(0u, platform.pendingAnswers());
        }
        platform.takeTrace();
    }
}

TEST_P(L2MfibTest, getAfterSetGivesWhatWasSet) {
    Bytes row(table.rowSize);
    f.set.function(&entry, row.data());
    Entry expected;
    fillSample(expected);
    expected.addrType = 2;
    expected.domainType = table.domainType;
    if (!table.hasMaskLengths) expected.groupMaskLen = expected.sourceMaskLen = 0;
    expected.timeStampCreate = 1'700'000'000;
    expected.timeStampSmooth = 1'700'000'000;
    f.get.function(row.data(), &entry);
    EXPECT_EQ(bytesOf(expected), bytesOf(entry));
}

TEST_P(L2MfibTest, theSourcePidIsTheLastConvertedOrTheOneSet) {
    f.setSourcePid.function(0x71727374);
    EXPECT_EQ(0x71727374u, f.sourcePid.function());
    EXPECT_EQ(0x71727374u, *table.pid);
    *table.pid = 5;
    EXPECT_EQ(5u, f.sourcePid.function());
    EXPECT_THAT(platform.trace(), IsEmpty());

    entry.appSrcPid = 100;
    platform.answer("db_write_obj", 9);
    EXPECT_EQ(1u, f.write.function(&entry));
    EXPECT_EQ(100u, f.sourcePid.function());
    entry.appSrcPid = 200;
    platform.answer(table.accessor("create", "obj"), 9);
    EXPECT_EQ(1u, f.write.function(&entry));
    EXPECT_EQ(100u, f.sourcePid.function());
}

TEST_P(L2MfibTest, theTablesKeepTheirPidsAndObjectsApart) {
    const MfibTable& other = &table == &kBdMfib ? kVlanMfib : kBdMfib;
    f.setSourcePid.function(7);
    other.functions.setSourcePid.function(8);
    EXPECT_EQ(7u, f.sourcePid.function());
    EXPECT_EQ(0u, f.readFast.function(&entry));
    EXPECT_NE(0u, *table.keptObject);
    EXPECT_EQ(0u, *other.keptObject);
    *other.pid = 0;
}

// -- reads

TEST_P(L2MfibTest, readingAnAbsentKeyIsSilentAnswers60AndLeavesTheRecord) {
    const std::string before = bytesOf(entry);
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(60u, f.read.function(&entry));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create " + table.name + " 3 0 -> obj1",
                                    counts(table.created),
                                    "read obj1 " + kKey + " " + std::to_string(table.rowSize) + " -> 15005",
                                    released("obj1"),
                                    counts(table.released),
                                }));
    EXPECT_EQ(before, bytesOf(entry));
}

TEST_P(L2MfibTest, theObjectOfTheFastReadIsMadeOnceAndThenResetForEachRead) {
    for (int i = 0; i < 3; ++i) {
        fillSample(entry);  // the key
        EXPECT_EQ(0u, f.readFast.function(&entry));
    }
    const std::string read = "read obj1 " + kKey + " " + std::to_string(table.rowSize);
    EXPECT_EQ(platform.trace(), (Trace{"create " + table.name + " 3 0 -> obj1", read, "reset " + table.name + " obj1 3",
                                       read, "reset " + table.name + " obj1 3", read}));
    EXPECT_EQ(1u, platform.liveObjects());
}

TEST_P(L2MfibTest, theObjectOfTheFastReadIsKeptWhenItsResetFailsAndResetAgain) {
    platform.answer(table.accessor("create", "obj"), 9);
    EXPECT_EQ(1u, f.readFast.function(&entry));
    EXPECT_EQ(0u, *table.keptObject);
    EXPECT_EQ(0u, f.readFast.function(&entry));
    const Mcast6DbHandle kept = *table.keptObject;
    EXPECT_NE(0u, kept);
    platform.answer(table.accessor("reset", "object"), 9);
    EXPECT_EQ(1u, f.readFast.function(&entry));
    EXPECT_EQ(kept, *table.keptObject);
    EXPECT_EQ(0u, f.readFast.function(&entry));
    EXPECT_EQ(kept, *table.keptObject);
    EXPECT_EQ(2u, platform.callsOf(table.accessor("create", "obj")));
    EXPECT_EQ(2u, platform.callsOf(table.accessor("reset", "object")));
    EXPECT_EQ(1u, platform.liveObjects());
}

// -- reads by field

TEST_P(L2MfibTest, getNextAnswers0EvenWhenGettersFailed) {
    Mcast6DbRes* iterator = f.createIter.function();
    platform.fillNextStep(unhex(table.storedRow()));
    platform.answer(table.accessor("get", "vrId"), 0x100);
    platform.answer(table.accessor("get", "timeStampSmooth"), 0x23);
    platform.answer(table.accessor("get", "groupAddr"), 0x4000);       // not reported
    platform.answer(table.accessor("get", "svcCtxHighPrio"), 0x8000);  // not reported
    EXPECT_EQ(0u, f.getNext.function(iterator, &entry));
    EXPECT_EQ(platform.trace().back(), "log 9 0x0F2E1010 \"[MCAST6 DB] get vlan mfib item fail, ret:291.\"");
    EXPECT_EQ(1u, platform.logFormats().size());
    EXPECT_EQ(0x35363738u, entry.vrId);
    EXPECT_EQ(0x04030201u, entry.pathFlags);
    f.releaseIter.function(iterator);
}

TEST_P(L2MfibTest, bytesAreCopiedAsLongAsTheEngineSays) {
    Mcast6DbRes* iterator = onStoredRow();
    platform.announceLength(table.accessor("get", "svcCtxHighPrio"), 8);
    platform.announceLength(table.accessor("get", "serviceStatus"), 1);
    f.getItem.function(iterator->object, &entry);
    EXPECT_EQ(digits("1122334455667788 68696a6b"), bytesOf(entry.svcCtxHighPrio));
    EXPECT_EQ("ab92", bytesOf(entry.serviceStatus));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
    f.releaseIter.function(iterator);
}

TEST_P(L2MfibTest, aCopyThatDoesNotFitCountsAsAFailedGetter) {
    ASSERT_EQ(34, ERANGE);
    Mcast6DbRes* iterator = onStoredRow();
    platform.announceLength(table.accessor("get", "svcCtxNormalPrio"), 13);
    EXPECT_EQ(34u, f.getContexts.function(iterator->object, &entry));
    EXPECT_EQ(digits("112233445566778899aabbcc"), bytesOf(entry.svcCtxHighPrio));
    f.getItem.function(iterator->object, &entry);
    EXPECT_THAT(platform.logFormats(), IsEmpty());

    platform.announceLength(table.accessor("get", "serviceStatus"), 3);
    f.getItem.function(iterator->object, &entry);
    EXPECT_EQ(platform.trace().back(), "log 9 0x0F2E1010 \"[MCAST6 DB] get vlan mfib item fail, ret:34.\"");
    EXPECT_EQ(0xC4C3C2C1u, entry.vrId);
    f.releaseIter.function(iterator);
}

TEST_P(L2MfibTest, bothCodesOfTheServiceContextsAreOredAndBothAreFetched) {
    Mcast6DbRes* iterator = onStoredRow();
    platform.announceLength(table.accessor("get", "svcCtxHighPrio"), 13);
    platform.answer(table.accessor("get", "svcCtxNormalPrio"), 0x100);
    EXPECT_EQ(0x100u | 34u, f.getContexts.function(iterator->object, &entry));
    EXPECT_EQ(2u, platform.trace().size());
    f.releaseIter.function(iterator);
}

TEST_P(L2MfibTest, onlyTheGetterOfTheSourceIsAnsweredByTheAddresses) {
    Mcast6DbRes* iterator = onStoredRow();
    platform.answer(table.accessor("get", "groupAddr"), 0x100);
    platform.answer(table.accessor("get", "sourceAddr"), 0x23);
    EXPECT_EQ(0x23u, f.getAddresses.function(iterator->object, &entry));
    EXPECT_EQ(2u, entry.addrType);
    EXPECT_EQ(table.domainType, entry.domainType);
    platform.announceLength(table.accessor("get", "sourceAddr"), 17);  // its copy fails
    EXPECT_EQ(0u, f.getAddresses.function(iterator->object, &entry));
    EXPECT_EQ(0xD0D1D2D3u, entry.groupAddr.word[0]);
    f.releaseIter.function(iterator);
}

// -- changes

TEST_P(L2MfibTest, aSecondWriteThatTheEngineAnswersWith13044CountsAsWritten) {
    EXPECT_EQ(0u, f.write.function(&entry));
    platform.answer("db_write_obj", 13044);
    EXPECT_EQ(0u, f.write.function(&entry));
    EXPECT_EQ(2u, platform.kpi(3));
    EXPECT_EQ(0u, platform.kpi(table.writeFailed));
    EXPECT_EQ(1u, g_mcast6DbErrStat[table.number][1]);
    EXPECT_THAT(platform.logFormats(), IsEmpty());
}

// -- iterators

TEST_P(L2MfibTest, anIteratorIsReadToItsEndAndAnswers60AgainAndAgain) {
    Mcast6DbRes* iterator = f.createIter.function();
    ASSERT_NE(nullptr, iterator);
    platform.fillNextRead(unhex(table.storedRow()));
    EXPECT_EQ(0u, f.getEntry.function(iterator, &entry));
    EXPECT_EQ(bytesOf(stored()), bytesOf(entry));
    platform.answerAlways("db_root_iterator_next", 110012);
    EXPECT_EQ(60u, f.getEntry.function(iterator, &entry));
    EXPECT_EQ(60u, f.getNext.function(iterator, &entry));
    EXPECT_EQ(60u, f.getNext.function(iterator, &entry));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
    EXPECT_EQ(1u, platform.liveObjects());
    f.releaseIter.function(iterator);
    EXPECT_EQ(0u, platform.liveObjects());
    EXPECT_EQ(0u, platform.liveIterators());
    EXPECT_EQ(0u, platform.liveBlocks());
}

TEST_P(L2MfibTest, aSortedScanWithoutAnObjectGoesOnWithHandle0AndReleasesIt) {
    platform.answer(table.accessor("create", "obj"), 4711);
    EXPECT_EQ(nullptr, f.createSortedIter.function());
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create " + table.name + " 5 0 -> 4711",
                                    "log 9 0x0F2E1010 \"[MCAST6 DB] l2 mfib6 create db object failed, ret:4711.\"",
                                    "stmt none 2 -> 120001",
                                    "condition none " + table.sortedKey + " 3 key=01020004:none -> 120001",
                                    released("none"),
                                    counts(table.released),
                                }));
    EXPECT_THAT(platform.misuses(), IsEmpty());
}

TEST_P(L2MfibTest, aSortedScanReleasesItsObjectOnceWhenBothStatementCallsFail) {
    platform.answer("db_create_stmt", 4711);
    platform.answer("db_append_stmt_condition", 9);
    EXPECT_EQ(nullptr, f.createSortedIter.function());
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create " + table.name + " 5 0 -> obj1",
                                    counts(table.created),
                                    "stmt obj1 2 -> 4711",
                                    "condition obj1 " + table.sortedKey + " 3 key=01020004:none -> 9",
                                    released("obj1"),
                                    counts(table.released),
                                }));
}

TEST_P(L2MfibTest, theCallersHandleOfTheErrorCodeIteratorStaysOnFailure) {
    for (uint64_t n = 1; n <= 3; ++n) {
        Mcast6DbRes handle{0x77, 0x88};
        platform.failCall(n, 4711);
        EXPECT_EQ(1u, f.createIterByErrCode.function(&handle));
        EXPECT_TRUE(platform.faultHit());
        EXPECT_EQ(0x77u, handle.object);
        EXPECT_EQ(0x88u, handle.rootIter);
    }
    EXPECT_EQ(0u, platform.liveObjects());
    Mcast6DbRes handle{0x77, 0x88};
    platform.failCall(100, 1);
    EXPECT_EQ(0u, f.createIterByErrCode.function(&handle));
    EXPECT_EQ(0u, platform.allocationCount());
    f.releaseObject.function(handle.object);
    EXPECT_EQ(0u, platform.liveObjects());
    EXPECT_EQ(0u, platform.liveIterators());
}

// -- counts

TEST_P(L2MfibTest, aCountOfADomainIs0When15005And1WithoutAnObject) {
    platform.answer("db_get_table_record_count_by_key", 15005);
    EXPECT_EQ(0u, f.countByDomain.function(1, 2));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
    EXPECT_EQ(0u, g_mcast6DbErrStat[table.number][0]);
    platform.answer(table.accessor("create", "obj"), 4711);
    EXPECT_EQ(1u, f.countByDomain.function(1, 2));
    EXPECT_THAT(platform.logFormats(), IsEmpty());
    EXPECT_EQ(1u, g_mcast6DbErrStat[table.number][0]);
    platform.fillNextCount(1);
    EXPECT_EQ(1u, f.countByDomain.function(1, 2));
    EXPECT_EQ(0u, platform.dfx(table.created));
    EXPECT_EQ(0u, platform.dfx(table.released));
    EXPECT_EQ(0u, platform.liveObjects());
}

TEST_P(L2MfibTest, aFailedConflictCountWrites0AndTells15005As0) {
    uint32_t count = 5;
    platform.answer("db_get_table_record_count_by_key", 15005);
    EXPECT_EQ(1u, f.countConflicts.function(&count));
    EXPECT_EQ(0u, count);
    EXPECT_THAT(platform.trace()[3], testing::EndsWith(" failed, ret:0.\""));
    count = 5;
    platform.takeTrace();
    platform.answer("db_get_table_record_count_by_key", 4711);
    EXPECT_EQ(1u, f.countConflicts.function(&count));
    EXPECT_EQ(0u, count);
    EXPECT_THAT(platform.trace()[3], testing::EndsWith(" failed, ret:4711.\""));
    EXPECT_EQ(2u, g_mcast6DbErrStat[table.number][0]);
    count = 5;
    platform.answer(table.accessor("create", "obj"), 4711);
    EXPECT_EQ(1u, f.countConflicts.function(&count));
    EXPECT_EQ(5u, count);
}

INSTANTIATE_TEST_SUITE_P(l2, L2MfibTest, testing::Values(&kBdMfib, &kVlanMfib),
                         [](const testing::TestParamInfo<const MfibTable*>& item) { return item.param->name; });

// The bridge domain table records under the VLAN table's number too, twice.
TEST(L2MfibNumbersTest, theBridgeDomainTableRecordsTwoErrorsUnderTheNumberOfTheVlanTable) {
    startOver();
    Recorder& platform = Recorder::instance();
    platform.failAllocation(1);
    EXPECT_EQ(nullptr, MCAST6_DB_l2BdMfib6_ScanGetBdIterSorted());
    platform.answer("db_create_l2mc6_bd_mfib_obj", 9);
    uint32_t count = 0;
    EXPECT_EQ(1u, MCAST6_DB_GetL2BdMfib6HashConflictTotalNum(&count));
    EXPECT_EQ(1u, g_mcast6DbErrStat[8][8]);
    EXPECT_EQ(1u, g_mcast6DbErrStat[8][0]);
    for (const uint64_t errors : g_mcast6DbErrStat[27]) EXPECT_EQ(0u, errors);
    platform.reset();
}

TEST(L2MfibNumbersTest, aVlanObjectThatIsMadeCountsTheSuccessCode) {
    startOver();
    Recorder& platform = Recorder::instance();
    Mcast6DbHandle object = 0;
    platform.answer("db_create_l2mc6_vlan_mfib_obj", 9);
    EXPECT_EQ(1u, MCAST6_DB_CreateL2Mfib6Object(3, 0, &object));
    EXPECT_EQ(0u, platform.dfx(0));
    EXPECT_EQ(0u, MCAST6_DB_CreateL2Mfib6Object(3, 0, &object));
    EXPECT_EQ(1u, platform.dfx(0));
    EXPECT_EQ(0u, platform.dfx(9));
    platform.reset();
}

}  // namespace

}  // namespace mcast6::tests::l2_mfib
