// Queries of l3mc6_mfib. What each operation does, one row for each step:
//
// operation            step          fails with   then
// iterator, own handle create 5      any          KPI 114; KPI 115; its log if it has one; null
//                      root iterator any          released; KPI 115; its log; null
//                      property      any          released; KPI 115; its log; null
//                      allocation    -            released; KPI 115; its log; null
//                      -             -            handle
// iterator, given      null resource -            KPI 115; its log; 1
//   resource           create 5      any          KPI 114; KPI 115; its log; 1
//                      root iterator any          released; KPI 115; its log; 1
//                      property      any          released; KPI 115; its log; 1
//                      -             -            resource filled; 0
// iterator by type     type unknown  -            log; 1
//                      the rest                   as its constructor, then one more log
// release iterator     null          -            nothing
//                      -             -            released; block freed
// count of all         create 9      any          KPI 114; the code
//                      count         any          released; the code
//                      -             -            count written; released; 0
// count by key         create 9      any          KPI 114; log; its log if it has one; the code
//                      count         any          released; log; its log; the code
//                      -             -            released; count written; 0
// count by type        type unknown  -            log; 1
//                      the rest                   as its count, then one more log
// matches by type                                 as the count by type, then one more log
//
// "released" counts 152, a successful create counts 151. No error statistics.
#include "mcast6_db/l3mc6_mfib_query.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "tests/l3/l3mc6_mfib_sample.h"
#include "tests/support/operation_sweep.h"
#include "tests/support/operation_test.h"

namespace mcast6::tests::l3mc6_mfib {

namespace {

using recording::Recorder;

L3Mc6MfibEntry entry;
Mcast6DbRes resource;
Mcast6DbRes* iterator;
uint32_t count;

const LogId records{0x0F2E1016};
const LogId queries{0x0F2E1017};
const Effect released = allOf({line("release l3mc6_mfib obj1"), dfx(152)});

constexpr uint32_t kUntouchedCount = 0xDEADBEEF;
constexpr uint32_t kCounted = 0x01020007;

Scene plain() {
    return {.prepare =
                [] {
                    fillSample(entry);
                    resource = {0xA5A5, 0x5A5A};
                    iterator = nullptr;
                    count = kUntouchedCount;
                    Recorder::instance().fillNextCount(kCounted);
                },
            .watched = {watchBytes("record", entry),
                        watchBytes("count", count),
                        {"resource", [] { return nameOf(resource.object) + " " + nameOf(resource.rootIter); }},
                        {"iterator", [] {
                             if (iterator == nullptr) return std::string("none");
                             return nameOf(iterator->object) + " " + nameOf(iterator->rootIter);
                         }}}};
}

Step creation(uint32_t objType, Effects failed) {
    failed.insert(failed.begin(), kpi(114));
    return {.calls = {gives("create l3mc6_mfib " + std::to_string(objType) + " 0", "obj1")},
            .failed = failed,
            .done = {dfx(151)}};
}

// -- iterators --------------------------------------------------------------------------------------------------------

// An iterator that allocates its handle. 'key' as in the trace; 'log': the message of a failure, if any.
Operation owned(std::string name, std::string key, Effects log, Run run) {
    const Effect failed = allOf({kpi(115), allOf(std::move(log)), returnsNull()});
    return {
        .name = std::move(name),
        .scene = plain(),
        .run = std::move(run),
        .steps =
            {
                creation(5, {failed}),
                {.calls = {gives("root_iter obj1 " + std::move(key), "iter1")}, .failed = {released, failed}},
                {.calls = {call("property iter1 0 01000000")}, .failed = {released, failed}},
                {.calls = {allocation(16, "block1")}, .failed = {released, failed}},
            },
        .done = {leaves("iterator", "obj1 iter1"), keeps(1, 1, 1), returnsHandle()},
    };
}

// An iterator into a handle that the caller provides; 'nullRun': the same without a handle.
Operation given(std::string name, std::string key, Effects log, Run run, Run nullRun) {
    const Effect failed = allOf({kpi(115), allOf(std::move(log)), returns(1)});
    return {
        .name = std::move(name),
        .scene = plain(),
        .run = std::move(run),
        .nulls = {{"resource", std::move(nullRun), {failed}}},
        .steps =
            {
                creation(5, {failed}),
                {.calls = {gives("root_iter obj1 " + std::move(key), "iter1")}, .failed = {released, failed}},
                {.calls = {call("property iter1 0 01000000")}, .failed = {released, failed}},
            },
        .done = {leaves("resource", "obj1 iter1"), keeps(1, 1, 0), returns(0)},
    };
}

Operation releaseIterator() {
    Scene scene = plain();
    scene.prepare = [first = scene.prepare] {
        first();
        iterator = MCAST6_DB_CreateL3MfibIter();
        ASSERT_NE(nullptr, iterator);
    };
    scene.watched.pop_back();  // the block is freed
    return {
        .name = "ReleaseL3MfibIter",
        .scene = scene,
        .run = [] { MCAST6_DB_ReleaseL3MfibIter(iterator); },
        .nulls = {{"iterator", [] { MCAST6_DB_ReleaseL3MfibIter(nullptr); }, {returnsNothing()}}},
        .steps = {},
        .done = {released, line("free block1"), keeps(-1, -1, -1), returnsNothing()},
    };
}

// -- counts -----------------------------------------------------------------------------------------------------------

// A count by key; 'log': the additional message of a failure.
Operation counted(std::string name, std::string key, Effects log, Run run) {
    const Effect failed = allOf({allOf(std::move(log)), returns(code)});
    return {
        .name = std::move(name),
        .scene = plain(),
        .run = std::move(run),
        .steps =
            {
                creation(9, {queries("create l3mc6_mfib db object fail."), failed}),
                {.calls = {call("count_by_key obj1 " + std::move(key))},
                 .failed = {released, queries("query l3mc6_mfib db count fail."), failed}},
            },
        .done = {released, leaves("count", bytesOf(kCounted)), returns(0)},
    };
}

Operation countAll() {
    return {
        .name = "GetL3MfibCnt",
        .scene = plain(),
        .run = [] { return MCAST6_DB_GetL3MfibCnt(&count); },
        .steps = {creation(9, {returns(code)}), {.calls = {call("count obj1")}, .failed = {released, returns(code)}}},
        .done = {leaves("count", bytesOf(kCounted)), released, returns(0)},
    };
}

// -- queries by type, called directly and through the dispatching operations ------------------------------------------

struct Query {
    uint32_t type;
    std::string iteratorName;
    L3MfibCreateIterFunc createIterator;
    const char* iteratorMessage;
    std::string countName;
    L3MfibGetNumFunc getNumber;
    const char* countMessage;
    std::string key;
};

// clang-format off
const std::vector<Query>& allQueries() {
    static const std::vector<Query> all{
        {0, "CreateL3MfibIterBySrcAddr", MCAST6_DB_CreateL3MfibIterBySrcAddr,
            "MCAST6_DB_Create MfibIter by src addr failed.",
            "GetL3MfibNumBySource", MCAST6_DB_GetL3MfibNumBySource, "create object fail.",
            "key=04090018:" + kVrVrf + kSource},
        {1, "CreateL3MfibIterByGrpAddr", MCAST6_DB_CreateL3MfibIterByGrpAddr,
            "MCAST6_DB_Create MfibIter by group failed.",
            "GetL3MfibNumByGroup", MCAST6_DB_GetL3MfibNumByGroup, "create object fail.",
            "key=05090018:" + kVrVrf + kGroup},
        {2, "CreateL3MfibIterByIntf", MCAST6_DB_CreateL3MfibIterByIntf,
            "MCAST6_DB_Create MfibIter by interface failed.",
            "GetL3MfibNumByIntf", MCAST6_DB_GetL3MfibNumByIntf, "create object fail.",
            "key=0809000c:" + kVrVrf + kInIfIndex},
        {3, "CreateL3MfibIterBySrcAndIntf", MCAST6_DB_CreateL3MfibIterBySrcAndIntf,
            "MCAST6_DB_Create MfibIter by source and interface failed.",
            "GetL3MfibNumBySrcAndIntf", MCAST6_DB_GetL3MfibNumBySrcAndIntf, "create object fail.",
            "key=0609001c:" + kVrVrf + kSource + kInIfIndex},
        {4, "CreateL3MfibIterByGrpAndIntf", MCAST6_DB_CreateL3MfibIterByGrpAndIntf,
            "MCAST6_DB_Create MfibIter by group ip and interface failed.",
            "GetL3MfibNumByGrpAndIntf", MCAST6_DB_GetL3MfibNumByGrpAndIntf, "create object fail.",
            "key=0709001c:" + kVrVrf + kGroup + kInIfIndex},
        {6, "CreateL3MfibIterByVrAndVrf", MCAST6_DB_CreateL3MfibIterByVrAndVrf,
            "MCAST6_DB_Create MfibIter by vr and vrf failed.",
            "GetL3MfibFwdTotalNum", MCAST6_DB_GetL3MfibFwdTotalNum, "create object fail.",
            "key=03090008:" + kVrVrf},
        {7, "CreateL3MfibIterByRegIntf", MCAST6_DB_CreateL3MfibIterByRegIntf,
            "MCAST6_DB_Create MfibIter by reg failed.",
            "GetL3MfibNumByRegIntf", MCAST6_DB_GetL3MfibNumByRegIntf, "get num by reg failed.",
            "key=0c09000c:" + kVrVrf + kRegIfIndex},
        {8, "CreateL3MfibIterByRegIntfAndSrc", MCAST6_DB_CreateL3MfibIterByRegIntfAndSrc,
            "MCAST6_DB_Create MfibIter by reg and src failed.",
            "GetL3MfibNumByRegIntfAndSrc", MCAST6_DB_GetL3MfibNumByRegIntfAndSrc, "get num by reg and src failed.",
            "key=0e09001c:" + kVrVrf + kSource + kRegIfIndex},
        {9, "CreateL3MfibIterByRegIntfAndGrp", MCAST6_DB_CreateL3MfibIterByRegIntfAndGrp,
            "MCAST6_DB_Create MfibIter by reg and grp failed.",
            "GetL3MfibNumByRegIntfAndGrp", MCAST6_DB_GetL3MfibNumByRegIntfAndGrp, "get num by reg and grp failed.",
            "key=0d09001c:" + kVrVrf + kGroup + kRegIfIndex},
    };
    return all;
}
// clang-format on

std::vector<Operation> operationsOf(const Query& query) {
    const uint32_t type = query.type;
    const std::string suffix = "OfType" + std::to_string(type);
    const Effect iteratorLog = queries(query.iteratorMessage);
    const Effect iteratorTypeLog = queries("create iter by queryType fail, queryType: %u.", type);
    const Effect countLog = queries(query.countMessage);
    const Effect countTypeLog = queries("get count by key fail, keyType: %u.", type);
    const Effect matchLog = queries("query count fail, queryType: %u.", type);
    const L3MfibCreateIterFunc createIterator = query.createIterator;
    const L3MfibGetNumFunc getNumber = query.getNumber;
    return {
        given(
            query.iteratorName, query.key, {iteratorLog}, [=] { return createIterator(&resource, &entry); },
            [=] { return createIterator(nullptr, &entry); }),
        given(
            "CreateL3MfibFwdIter" + suffix, query.key, {iteratorLog, iteratorTypeLog},
            [=] { return MCAST6_DB_CreateL3MfibFwdIter(&resource, type, &entry); },
            [=] { return MCAST6_DB_CreateL3MfibFwdIter(nullptr, type, &entry); }),
        counted(query.countName, query.key, {countLog}, [=] { return getNumber(&entry, &count); }),
        counted("QueryL3MfibCountDispatch" + suffix, query.key, {countLog, countTypeLog},
                [=] { return MCAST6_DB_QueryL3MfibCountDispatch(&entry, &count, type); }),
        counted("GetL3MfibFwdMatchNum" + suffix, query.key, {countLog, countTypeLog, matchLog},
                [=] { return MCAST6_DB_GetL3MfibFwdMatchNum(&entry, &count, type); }),
    };
}

const Mcast6DbKeyDesc kGroupDescriptor{0x05090018, {0, 0, 0}};
const uint8_t kGroupKey[24] = {0x61, 0x62, 0x63, 0x64, 0x65, 0x66, 0x67, 0x68, 0x69, 0x6A, 0x6B, 0x6C,
                               0x6D, 0x6E, 0x6F, 0x70, 0x71, 0x72, 0x73, 0x74, 0x75, 0x76, 0x77, 0x78};
const std::string kGroupKeyText = "key=05090018:6162636465666768696a6b6c6d6e6f707172737475767778";

std::vector<Operation> iterators() {
    return {
        owned("CreateL3MfibIter", "none", {}, [] { return iterator = MCAST6_DB_CreateL3MfibIter(); }),
        owned("CreateL3MfibIterCommon", kGroupKeyText, {},
              [] { return iterator = MCAST6_DB_CreateL3MfibIterCommon(&kGroupDescriptor, kGroupKey); }),
        owned("CreateL3MfibIterCommonOfAll", "none", {},
              [] { return iterator = MCAST6_DB_CreateL3MfibIterCommon(nullptr, nullptr); }),
        owned("CreateL3MfibIterByVrVrf", "key=03090008:8483828188878685", {},
              [] { return iterator = MCAST6_DB_CreateL3MfibIterByVrVrf(0x81828384, 0x85868788); }),
        owned("CreateL3MfibIterByIfIndex", "key=02090004:84838281",
              {records("MCAST6_DB_CreateL3MfibIteratorByIfIndex failed")},
              [] { return iterator = MCAST6_DB_CreateL3MfibIterByIfIndex(0x81828384); }),
        releaseIterator(),
        given(
            "CreateL3MfibIterWithDbResCommon", kGroupKeyText, {},
            [] { return MCAST6_DB_CreateL3MfibIterWithDbResCommon(&resource, &kGroupDescriptor, kGroupKey); },
            [] { return MCAST6_DB_CreateL3MfibIterWithDbResCommon(nullptr, &kGroupDescriptor, kGroupKey); }),
        given(
            "CreateL3MfibIterByErrCode", "key=0a090008:8483828105000000",
            {queries("MCAST6_DB_Create MfibIter by errCode failed.")},
            [] { return MCAST6_DB_CreateL3MfibIterByErrCode(0x81828384, &resource); },
            [] { return MCAST6_DB_CreateL3MfibIterByErrCode(0x81828384, nullptr); }),
    };
}

std::vector<Operation> counts() {
    return {
        countAll(),
        counted("GetL3MfibCountByKey", kGroupKeyText, {},
                [] { return MCAST6_DB_GetL3MfibCountByKey(&kGroupDescriptor, kGroupKey, &count); }),
        counted("GetL3MfibHashConflictTotalNum", "key=0a090008:8483828105000000", {queries("create object fail.")},
                [] { return MCAST6_DB_GetL3MfibHashConflictTotalNum(0x81828384, &count); }),
    };
}

std::vector<Operation> typedQueries() {
    std::vector<Operation> operations;
    for (const Query& query : allQueries()) {
        for (Operation& operation : operationsOf(query)) operations.push_back(std::move(operation));
    }
    return operations;
}

// A type without a query.
std::vector<Operation> refusedTypes() {
    std::vector<Operation> operations;
    for (const uint32_t type : {5u, 10u, 4294967295u}) {
        const std::string suffix = "OfType" + std::to_string(type);
        operations.push_back({
            .name = "CreateL3MfibFwdIter" + suffix,
            .scene = plain(),
            .run = [type] { return MCAST6_DB_CreateL3MfibFwdIter(&resource, type, &entry); },
            .steps = {},
            .done = {queries("set queryType id fail."), returns(1)},
        });
        operations.push_back({
            .name = "QueryL3MfibCountDispatch" + suffix,
            .scene = plain(),
            .run = [type] { return MCAST6_DB_QueryL3MfibCountDispatch(&entry, &count, type); },
            .steps = {},
            .done = {queries("set key id fail."), returns(1)},
        });
        operations.push_back({
            .name = "GetL3MfibFwdMatchNum" + suffix,
            .scene = plain(),
            .run = [type] { return MCAST6_DB_GetL3MfibFwdMatchNum(&entry, &count, type); },
            .steps = {},
            .done = {queries("set key id fail."), queries("query count fail, queryType: %u.", type), returns(1)},
        });
    }
    return operations;
}

INSTANTIATE_TEST_SUITE_P(l3mc6_mfib_iterators, EveryExit, testing::ValuesIn(iterators()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l3mc6_mfib_counts, EveryExit, testing::ValuesIn(counts()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l3mc6_mfib_query_types, EveryExit, testing::ValuesIn(typedQueries()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l3mc6_mfib_refused_types, EveryExit, testing::ValuesIn(refusedTypes()), nameOfOperation);

// -- beyond the exits -------------------------------------------------------------------------------------------------

TEST(L3Mc6MfibQueryTables, holdTheFunctionsOfEachTypeAndNoneForType5) {
    static_assert(sizeof g_Mfib6CreatIterFunc / sizeof g_Mfib6CreatIterFunc[0] == 10);
    static_assert(sizeof g_Mfib6GetNumFunc / sizeof g_Mfib6GetNumFunc[0] == 10);
    EXPECT_EQ(MCAST6_DB_CreateL3MfibIterBySrcAddr, g_Mfib6CreatIterFunc[0]);
    EXPECT_EQ(MCAST6_DB_CreateL3MfibIterByGrpAddr, g_Mfib6CreatIterFunc[1]);
    EXPECT_EQ(MCAST6_DB_CreateL3MfibIterByIntf, g_Mfib6CreatIterFunc[2]);
    EXPECT_EQ(MCAST6_DB_CreateL3MfibIterBySrcAndIntf, g_Mfib6CreatIterFunc[3]);
    EXPECT_EQ(MCAST6_DB_CreateL3MfibIterByGrpAndIntf, g_Mfib6CreatIterFunc[4]);
    EXPECT_EQ(nullptr, g_Mfib6CreatIterFunc[5]);
    EXPECT_EQ(MCAST6_DB_CreateL3MfibIterByVrAndVrf, g_Mfib6CreatIterFunc[6]);
    EXPECT_EQ(MCAST6_DB_CreateL3MfibIterByRegIntf, g_Mfib6CreatIterFunc[7]);
    EXPECT_EQ(MCAST6_DB_CreateL3MfibIterByRegIntfAndSrc, g_Mfib6CreatIterFunc[8]);
    EXPECT_EQ(MCAST6_DB_CreateL3MfibIterByRegIntfAndGrp, g_Mfib6CreatIterFunc[9]);

    EXPECT_EQ(MCAST6_DB_GetL3MfibNumBySource, g_Mfib6GetNumFunc[0]);
    EXPECT_EQ(MCAST6_DB_GetL3MfibNumByGroup, g_Mfib6GetNumFunc[1]);
    EXPECT_EQ(MCAST6_DB_GetL3MfibNumByIntf, g_Mfib6GetNumFunc[2]);
    EXPECT_EQ(MCAST6_DB_GetL3MfibNumBySrcAndIntf, g_Mfib6GetNumFunc[3]);
    EXPECT_EQ(MCAST6_DB_GetL3MfibNumByGrpAndIntf, g_Mfib6GetNumFunc[4]);
    EXPECT_EQ(nullptr, g_Mfib6GetNumFunc[5]);
    EXPECT_EQ(MCAST6_DB_GetL3MfibFwdTotalNum, g_Mfib6GetNumFunc[6]);
    EXPECT_EQ(MCAST6_DB_GetL3MfibNumByRegIntf, g_Mfib6GetNumFunc[7]);
    EXPECT_EQ(MCAST6_DB_GetL3MfibNumByRegIntfAndSrc, g_Mfib6GetNumFunc[8]);
    EXPECT_EQ(MCAST6_DB_GetL3MfibNumByRegIntfAndGrp, g_Mfib6GetNumFunc[9]);
}

// Queries of type 6 read only the two words: no memory after them is needed.
TEST(L3Mc6MfibQuery, byVrAndVrfReadsTwoWords) {
    startOver();
    Recorder& platform = Recorder::instance();
    const auto words = std::make_unique<uint32_t[]>(2);
    words[0] = 0x81828384;
    words[1] = 0x85868788;
    const void* place = words.get();
    const auto* record = static_cast<const L3Mc6MfibEntry*>(place);
    platform.fillNextCount(3);
    uint32_t number = 0;
    EXPECT_EQ(0u, MCAST6_DB_GetL3MfibFwdTotalNum(record, &number));
    EXPECT_EQ(3u, number);
    Mcast6DbRes made{0, 0};
    EXPECT_EQ(0u, MCAST6_DB_CreateL3MfibIterByVrAndVrf(&made, record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "create l3mc6_mfib 9 0 -> obj1",
                                    "dfx 151",
                                    "count_by_key obj1 key=03090008:8483828188878685",
                                    "release l3mc6_mfib obj1",
                                    "dfx 152",
                                    "create l3mc6_mfib 5 0 -> obj2",
                                    "dfx 151",
                                    "root_iter obj2 key=03090008:8483828188878685 -> iter1",
                                    "property iter1 0 01000000",
                                }));
    platform.reset();
}

// An engine may write 64 bits of a count; the caller gets the low half.
TEST(L3Mc6MfibQuery, countsThatTheEngineFillsAs64BitsDoNotOverrun) {
    startOver();
    Recorder& platform = Recorder::instance();
    struct {
        uint32_t number = 0;
        uint32_t behind = 0xA5A5A5A5;
    } place;
    fillSample(entry);
    platform.fillNextCount(0x1'0000'0002);
    EXPECT_EQ(0u, MCAST6_DB_GetL3MfibCnt(&place.number));
    EXPECT_EQ(2u, place.number);
    platform.fillNextCount(0x1'0000'0003);
    EXPECT_EQ(0u, MCAST6_DB_GetL3MfibNumByGroup(&entry, &place.number));
    EXPECT_EQ(3u, place.number);
    EXPECT_EQ(0xA5A5A5A5u, place.behind);
    EXPECT_TRUE(platform.misuses().empty());
    platform.reset();
}

}  // namespace

}  // namespace mcast6::tests::l3mc6_mfib
