// l3mc6_glbcfg. What each operation does, one row for each step:
//
// operation          step            fails with   then
// create object      create          any          KPI 159; the code
//                    -               -            33; 0
// release object     -               -            released
// read               null            -            log; 1
//                    create 3        any          KPI 159; log; the code
//                    read            15005        released; 15005
//                                    other        log; error 0; released; the code
//                    -               -            record filled; released; 0
// write              null            -            log; KPI 146; 1
//                    create 0        any          KPI 159; log; KPI 146; the code
//                    read version    any          glbVersion 1; the rest as after success
//                    set all         any          released; log; KPI 146; the code
//                    write           13044        released; error 1; KPI 145; 0
//                                    other        released; KPI 146; log; error 2; KPI 145; the code
//                    -               -            released; KPI 145; 0; glbVersion 1 more than the version
// smooth version     null            -            log; 1
//                    create 1        any          KPI 159; log; the code
//                    1 setter        any          log; released; the code
//                    update          13044        released; error 1; 0
//                                    other        released; log; error 6; the code
//                    -               -            released; 0
// delete             null            -            log; KPI 148; 1
//                    read version    any          version written as the record's; the rest as after success
//                    update version  any          log; KPI 148; 1
//                    write version   any          log; KPI 148; 1
//                    create 4        any          KPI 159; log; KPI 148; the code
//                    remove          13044        released; error 1; KPI 147; 0
//                                    other        released; KPI 148; error 4; log; KPI 147; the code
//                    -               -            released; KPI 147; 0
// stamp              read version    any          glbVersion 1; 0
//                    -               -            glbVersion 1 more than the version; 0
// advance            read version    any          version written as the record's; the write's code
//                    update version  any          the code
//                    -               -            0
// version of a key   create 3        15005        KPI 159; log; 1
//                                    other        KPI 159; log; 0
//                    read            15005        released; 1
//                                    other        log; error 0; released; 0
//                    -               -            released; glbVersion
// create iterator    create 5        any          KPI 159; KPI 160; null; of all records: log before the null
//                    root iterator   any          released; the same
//                    property        any          released; the same
//                    allocation      -            released; the same
//                    -               -            handle
// get entry          null            -            1
//                    next            110012       60
//                                    other        log; error 9; 1
//                    read            15005        60
//                                    other        log; error 0; 1
//                    -               -            record filled; 0
// release iterator   null            -            nothing
//                    -               -            released; block freed
// count of a hash    create 9        any          KPI 159; log; 0
//   key              count           any          log; released; 0
//                    -               -            released; the count
// count of all       create 9        any          KPI 159; the code
//                    count           any          released; the code
//                    -               -            count written; released; 0
//
// "released" counts 34, a successful create counts 33. Errors are recorded under table 0.
#include "mcast6_db/l3mc6_glbcfg.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <span>

#include "mcast6_db/context.h"
#include "tests/support/operation_test.h"
#include "tests/support/table_claims.h"
#include "tests/support/table_family.h"

namespace mcast6::tests::l3mc6_glbcfg {

namespace {

using recording::Bytes;
using recording::hex;
using recording::Recorder;
using recording::unhex;

// -- the sample: a record with different bytes in each field, and its rows

void fillSample(L3Mc6GlbCfgEntry& record) {
    record.cfgKeyA = 0x01020304;
    record.cfgKeyB = 0x05060708;
    record.cfgKeyC = 0x090A0B0C;
    record.cfgWord3 = 0x11121314;
    record.smoothVersion = 0x21222324;
    record.glbVersion = 0x31323334;
    record.cfgWord6 = 0x41424344;
    record.cfgWord7 = 0x51525354;
    record.timeStampCreate = 0x6162636465666768;
    record.timeStampSmooth = 0x7172737475767778;
}
static_assert(sizeof(L3Mc6GlbCfgEntry) == 48, "every byte of the sample is in one of its fields");

const std::string kKeyBytes = digits("04030201 08070605 0c0b0a09");
const std::string kKey = "key=0001000c:" + kKeyBytes;
const std::string kHashKey = "key=01090008:" + digits("04030201 08070605");

// Written at 1'700'000'000, the recorder's time; 'glbVersion' in the row's order of bytes.
std::string rowWith(const std::string& glbVersion) {
    const std::string before = digits(
        "04030201 08070605 0c0b0a09 14131211"  // cfgKeyA, cfgKeyB, cfgKeyC, cfgWord3
        "24232221");                           // smoothVersion
    const std::string after = digits(
        "44434241 54535251"                    // cfgWord6, cfgWord7
        "00f1536500000000 00f1536500000000");  // timeStampCreate, timeStampSmooth
    return before + glbVersion + after;
}

// The common version is 7, so the record's becomes 8.
constexpr uint32_t kCommonVersion = 7;
const std::string kWrittenRow = rowWith("08000000");

const std::string kStoredRow = digits(
    "91000001 92000002 93000003 94000004"  // cfgKeyA, cfgKeyB, cfgKeyC, cfgWord3
    "95000005 96000006 97000007 98000008"  // smoothVersion, glbVersion, cfgWord6, cfgWord7
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf");  // timeStampCreate, timeStampSmooth

void readStored(L3Mc6GlbCfgEntry& record) {
    record.cfgKeyA = 0x01000091;
    record.cfgKeyB = 0x02000092;
    record.cfgKeyC = 0x03000093;
    record.cfgWord3 = 0x04000094;
    record.smoothVersion = 0x05000095;
    record.glbVersion = 0x06000096;
    record.cfgWord6 = 0x07000097;
    record.cfgWord7 = 0x08000098;
    record.timeStampCreate = 0xA7A6A5A4A3A2A1A0;
    record.timeStampSmooth = 0xAFAEADACABAAA9A8;
}

// The version record for the common library: the sample's key, eight zeros, the version, sixteen zeros.
std::string versionRecord(const std::string& version) {
    return kKeyBytes + "0000000000000000" + version + std::string(32, '0');
}
const Call readsVersion = call("glb_read " + versionRecord("00000000"));

// -- every exit

const LogId config{0x0F2E1012};
const Effect released = allOf({line("release l3mc6_glbcfg obj1"), dfx(34)});

TableFamily<L3Mc6GlbCfgEntry> table({.name = "l3mc6_glbcfg",
                                     .rowSize = 48,
                                     .key = kKey,
                                     .writtenRow = kWrittenRow,
                                     .storedRow = kStoredRow,
                                     .created = {dfx(33)},
                                     .createFailed = {kpi(159)},
                                     .released = released,
                                     .createObject = MCAST6_DB_CreateGlbCfgObject,
                                     .createIterator = MCAST6_DB_CreateGlbCfgIter},
                                    fillSample, readStored);

// The bytes of the sample with another version.
std::string sampleWithVersion(uint32_t glbVersion) {
    L3Mc6GlbCfgEntry record = table.sample();
    record.glbVersion = glbVersion;
    return bytesOf(record);
}

// The scene with a common version ready to be read, or with none.
Scene withCommonVersion(Scene scene) {
    scene.prepare = [prepare = scene.prepare] {
        prepare();
        Recorder::instance().fillNextGlobalVersion(kCommonVersion);
    };
    return scene;
}
Scene withoutCommonVersion(Scene scene) {
    scene.prepare = [prepare = scene.prepare] {
        prepare();
        Recorder::instance().answer("MCAST_DB_ReadGlbVersion", 15005);
    };
    return scene;
}

Operation read() {
    return table.read(
        "ReadGlbCfg", MCAST6_DB_ReadGlbCfg,
        {.null = {config("[MCAST6 DB]read global enable cfg failed, para is null."), returns(1)},
         .createFailed = {config("[MCAST6 DB]read global enable cfg failed, create db object failed. ret:%u.", code),
                          returns(code)},
         .failed = {config("[MCAST6 DB]read global enable cfg object db failed, ret:%u.", code), record(0, 0), released,
                    returns(code)},
         .answered = {{15005, {released, returns(15005)}}},
         .done = {released, returns(0)}});
}

Operation write() {
    Operation operation = table.write(
        "WriteGlbCfg", MCAST6_DB_WriteGlbCfg,
        {.null = {config("[MCAST6 DB]write db global enable cfg object failed, param is null."), kpi(146), returns(1)},
         .createFailed = {config("[MCAST6 DB]write global enable cfg failed, create db object failed. ret:%u.", code),
                          kpi(146), returns(code)},
         .setFailed = {released, config("[MCAST6 DB]WriteGlbCfg, set_all_fields failed. ret:%u.", code), kpi(146),
                       returns(code)},
         .failed = {released, kpi(146), config("[MCAST6 DB]write global enable cfg failed. ret:%u.", code),
                    record(0, 2), kpi(145), returns(code)},
         .answered = {{13044, {released, record(0, 1), kpi(145), returns(0)}}},
         .done = {released, kpi(145), returns(0)}});
    operation.scene = withCommonVersion(operation.scene);
    const Step stamp{
        .calls = {readsVersion},
        .failed = {leaves("record", sampleWithVersion(1)), line("set_all l3mc6_glbcfg obj1 " + rowWith("01000000")),
                   line("write obj1"), released, kpi(145), returns(0)},
        .done = {leaves("record", sampleWithVersion(8))}};  // whatever the result
    operation.steps.insert(operation.steps.begin() + 1, stamp);
    return operation;
}

Operation updateSmoothVersion() {
    const Effect failed =
        config("[MCAST6 DB]Update global enable cfg failed, create db object failed. ret:%u.", code);  // for all three
    return table.update(
        "UpdateGlbCfgSmoothVersion", MCAST6_DB_UpdateGlbCfgSmoothVersion, {table.sets("smoothVersion", 0x21222324)},
        {.null = {config("[MCAST6 DB]Update db global enable cfg object failed, param is null."), returns(1)},
         .createFailed = {failed, returns(code)},
         .setFailed = {failed, released, returns(code)},
         .failed = {released, failed, record(0, 6), returns(code)},
         .answered = {{13044, {released, record(0, 1), returns(0)}}},
         .done = {released, returns(0)}});
}

// The part of a removal that follows the version.
Operation remove(std::string name) {
    return table.remove(
        std::move(name), MCAST6_DB_DeleteGlbCfg,
        {.null = {config("[MCAST6 DB]Delete db global enable cfg object failed, param is null."), kpi(148), returns(1)},
         .createFailed = {config("[MCAST6 DB]Delete global enable cfg failed, create db object failed. ret:%u.", code),
                          kpi(148), returns(code)},
         .failed = {released, kpi(148), record(0, 4),
                    config("[MCAST6 DB]Delete global enable cfg failed. ret:%u.", code), kpi(147), returns(code)},
         .answered = {{13044, {released, record(0, 1), kpi(147), returns(0)}}},
         .done = {released, kpi(147), returns(0)}});
}

const Effect removal = allOf(
    {line("create l3mc6_glbcfg 4 0 -> obj1"), dfx(33), line("remove obj1 " + kKey), released, kpi(147), returns(0)});
const Effects notAdvanced = {
    config("[MCAST6 DB]Delete db global cfg object failed, write or update glb version failed. ret:%u", code), kpi(148),
    returns(1)};

Operation removeWithCommonVersion() {
    Operation operation = remove("DeleteGlbCfgWithACommonVersion");
    operation.scene = withCommonVersion(operation.scene);
    operation.steps.insert(
        operation.steps.begin(),
        {{.calls = {readsVersion}, .failed = {line("glb_write " + versionRecord("34333231")), removal}},
         {.calls = {call("glb_update " + versionRecord("08000000"))}, .failed = notAdvanced}});
    return operation;
}

Operation removeWithoutCommonVersion() {
    Operation operation = remove("DeleteGlbCfgWithoutACommonVersion");
    operation.scene = withoutCommonVersion(operation.scene);
    const std::string write = "glb_write " + versionRecord("34333231");  // the record's version
    operation.steps.insert(operation.steps.begin(),
                           {{.calls = {gives(readsVersion.line, "15005")}, .failed = {line(write), removal}},
                            {.calls = {call(write)}, .failed = notAdvanced}});
    return operation;
}

Operation stamp() {
    return {.name = "SetGlbVerion",
            .scene = withCommonVersion(table.plain()),
            .run = [] { return MCAST6_DB_SetGlbVerion(&table.record); },
            .steps = {{.calls = {readsVersion}, .failed = {leaves("record", sampleWithVersion(1)), returns(0)}}},
            .done = {leaves("record", sampleWithVersion(8)), returns(0)}};
}

Operation advance() {
    return {.name = "ProcessGlbVersionWithACommonVersion",
            .scene = withCommonVersion(table.plain()),
            .run = [] { return MCAST6_DB_ProcessGlbVersion(&table.record); },
            .steps = {{.calls = {readsVersion}, .failed = {line("glb_write " + versionRecord("34333231")), returns(0)}},
                      {.calls = {call("glb_update " + versionRecord("08000000"))}, .failed = {returns(code)}}},
            .done = {returns(0)}};
}

Operation advanceWithoutCommonVersion() {
    const std::string write = "glb_write " + versionRecord("34333231");
    return {.name = "ProcessGlbVersionWithoutACommonVersion",
            .scene = withoutCommonVersion(table.plain()),
            .run = [] { return MCAST6_DB_ProcessGlbVersion(&table.record); },
            .steps = {{.calls = {gives(readsVersion.line, "15005")}, .failed = {line(write), returns(0)}},
                      {.calls = {call(write)}, .failed = {returns(code)}}},
            .done = {returns(0)}};
}

Operation versionOfKey() {
    const Effects createFailed = {
        config("[MCAST6 DB]read global enable cfg failed, create db object failed. ret:%u.", code), returns(0)};
    Step create = creation(table.facts, 3, createFailed);
    create.answered = {{15005, {kpi(159), createFailed[0], returns(1)}}};
    return {.name = "GetGlbVerFromGlbCfg",
            .scene = table.plain(),
            .run = [] { return MCAST6_DB_GetGlbVerFromGlbCfg(0x01020304, 0x05060708, 0x090A0B0C); },
            .steps = {create,
                      {.calls = {call("read obj1 " + kKey + " 48")},
                       .failed = {config("[MCAST6 DB]read global enable cfg object db failed, ret:%u.", code),
                                  record(0, 0), released, returns(0)},
                       .answered = {{15005, {released, returns(1)}}}}},
            .done = {released, returns(0x06000096)}};
}

IterExits iterExits() { return builtByTheFrame(released, {kpi(160), returnsNull()}); }

Operation createIteratorOfAll() {
    return table.createIterator(
        "CreateGlbCfgIter", MCAST6_DB_CreateGlbCfgIter, "none",
        builtByTheFrame(released, {kpi(160), config("[MCAST6 DB]create glb cfg iter failed"), returnsNull()}));
}

Operation createIteratorByHashKey() {
    return table.createIterator(
        "CreateGlbCfgIteratorByHashKey", [] { return MCAST6_DB_CreateGlbCfgIteratorByHashKey(0x01020304, 0x05060708); },
        kHashKey, iterExits());
}

Operation createIteratorCommon() {
    return table.createIterator(
        "CreateGlbCfgIterCommon",
        [] {
            const Mcast6DbKeyDesc descriptor{0x0001000C, {0, 0, 0}};
            const uint32_t key[3] = {0x01020304, 0x05060708, 0x090A0B0C};
            return MCAST6_DB_CreateGlbCfgIterCommon(&descriptor, key);
        },
        kKey, iterExits());
}

Operation createIteratorCommonOfAll() {
    return table.createIterator(
        "CreateGlbCfgIterCommonOfAll", [] { return MCAST6_DB_CreateGlbCfgIterCommon(nullptr, nullptr); }, "none",
        iterExits());
}

Operation getEntry() {
    return table.getEntry(
        "GetGlbCfgEntry", MCAST6_DB_GetGlbCfgEntry,
        {.null = {returns(1)},
         .nextFailed = {config("[MCAST6 DB]get global cfg entry error. ret:%d", code), record(0, 9), returns(1)},
         .readFailed = {config("[MCAST6 DB]get global cfg entry fail, ret:%d.", code), record(0, 0), returns(1)}});
}

Operation countOfHashKey() {
    return {.name = "GetGlbCfgNum",
            .scene = table.plain(),
            .run = [] { return MCAST6_DB_GetGlbCfgNum(0x01020304, 0x05060708); },
            .steps = {creation(table.facts, 9,
                               {config("[MCAST6 DB]get global num, create object fail. ret:%u", code), returns(0)}),
                      {.calls = {call("count_by_key obj1 " + kHashKey)},
                       .failed = {config("[MCAST6 DB]get global num, get count by key fail. ret:%u", code), released,
                                  returns(0)}}},
            .done = {released, returns(kCounted)}};
}

const Operation operations[] = {
    table.createObject("CreateGlbCfgObject", MCAST6_DB_CreateGlbCfgObject),
    table.releaseObject("ReleaseGlbCfgObject", MCAST6_DB_ReleaseGlbCfgObject),
    read(),
    write(),
    updateSmoothVersion(),
    removeWithCommonVersion(),
    removeWithoutCommonVersion(),
    stamp(),
    advance(),
    advanceWithoutCommonVersion(),
    versionOfKey(),
    createIteratorOfAll(),
    createIteratorByHashKey(),
    createIteratorCommon(),
    createIteratorCommonOfAll(),
    getEntry(),
    table.releaseIterator("ReleaseGlbCfgIterator", MCAST6_DB_ReleaseGlbCfgIterator),
    countOfHashKey(),
    table.countAll(
        "GetGlbCfgCount", MCAST6_DB_GetGlbCfgCount,
        {.createFailed = {returns(code)}, .failed = {released, returns(code)}, .done = {released, returns(0)}}),
};

INSTANTIATE_TEST_SUITE_P(l3mc6_glbcfg, EveryExit, testing::ValuesIn(operations), nameOfOperation);

// -- conversions

class GlbCfgTest : public SampleTest<L3Mc6GlbCfgEntry, fillSample> {};

TEST_F(GlbCfgTest, setWritesEveryFieldInItsPlaceAndNothingElse) {
    expectRow(table, rowWith("34333231"), MCAST6_DB_SetGlbCfg);
}

TEST_F(GlbCfgTest, setReadsTheClockForEachStampTheCreationTimeFirst) {
    startClock();
    Bytes row(48, 0x5A);
    MCAST6_DB_SetGlbCfg(&record, row.data());
    EXPECT_EQ(2u, platform.clockReadings());
    EXPECT_EQ(kFirstTime + kSecondTime, hex(std::span(row).subspan(32)));
}

TEST_F(GlbCfgTest, getWritesEveryFieldAndNothingElse) { expectRecord(table, MCAST6_DB_GetGlbCfg); }

TEST_F(GlbCfgTest, theKeyIsTheThreeKeyWordsByteForByte) {
    expectKey(table, [](uint32_t* keyWord, void* key, const L3Mc6GlbCfgEntry* given) {
        MCAST6_DB_SetGlbCfgPriKey(given, key, keyWord);
    });
}

// -- the global version

TEST_F(GlbCfgTest, aWriteStamps1WhenTheCommonVersionCannotBeRead) {
    for (const uint32_t answer : {1u, 9u, 13044u, 15005u}) {
        startOver();
        fillSample(record);
        platform.answer("MCAST_DB_ReadGlbVersion", answer);
        EXPECT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
        EXPECT_EQ(1u, record.glbVersion);
        EXPECT_EQ(platform.trace(), (Trace{
                                        "create l3mc6_glbcfg 0 0 -> obj1",
                                        "dfx 33",
                                        "glb_read " + versionRecord("00000000") + " -> " + std::to_string(answer),
                                        "set_all l3mc6_glbcfg obj1 " + rowWith("01000000"),
                                        "write obj1",
                                        "release l3mc6_glbcfg obj1",
                                        "dfx 34",
                                        "kpi 145",
                                    }));
    }
}

TEST_F(GlbCfgTest, aWriteStampsOneMoreThanTheCommonVersionAndLeavesThatAlone) {
    platform.fillNextGlobalVersion(7);
    EXPECT_EQ(0u, MCAST6_DB_WriteGlbCfg(&record));
    EXPECT_EQ(8u, record.glbVersion);
    EXPECT_EQ(0u, platform.callsOf("MCAST_DB_UpdateGlbVersion"));
    EXPECT_EQ(0u, platform.callsOf("MCAST_DB_WriteGlbVersion"));
}

TEST_F(GlbCfgTest, aFailedWriteKeepsTheNewVersionInTheRecord) {
    platform.fillNextGlobalVersion(7);
    platform.answer("db_write_obj", 9);
    EXPECT_EQ(9u, MCAST6_DB_WriteGlbCfg(&record));
    EXPECT_EQ(8u, record.glbVersion);
    EXPECT_EQ(1u, platform.kpi(145));
    EXPECT_EQ(1u, platform.kpi(146));
}

TEST_F(GlbCfgTest, aRecordThatGetsNoObjectKeepsItsVersion) {
    platform.answer("db_create_l3mc6_glbcfg_obj", 9);
    EXPECT_EQ(9u, MCAST6_DB_WriteGlbCfg(&record));
    EXPECT_EQ(0x31323334u, record.glbVersion);
    EXPECT_EQ(0u, platform.callsOf("MCAST_DB_ReadGlbVersion"));
}

TEST_F(GlbCfgTest, versionsWrapAt32Bits) {
    platform.fillNextGlobalVersion(0xFFFFFFFF);
    EXPECT_EQ(0u, MCAST6_DB_SetGlbVerion(&record));
    EXPECT_EQ(0u, record.glbVersion);
    platform.fillNextGlobalVersion(0xFFFFFFFF);
    platform.takeTrace();
    EXPECT_EQ(0u, MCAST6_DB_ProcessGlbVersion(&record));
    EXPECT_EQ(platform.trace(), (Trace{readsVersion.line, "glb_update " + versionRecord("00000000")}));
}

TEST_F(GlbCfgTest, aDeleteAdvancesTheCommonVersionBeforeTheRemoval) {
    platform.fillNextGlobalVersion(7);
    EXPECT_EQ(0u, MCAST6_DB_DeleteGlbCfg(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "glb_read " + versionRecord("00000000"),
                                    "glb_update " + versionRecord("08000000"),
                                    "create l3mc6_glbcfg 4 0 -> obj1",
                                    "dfx 33",
                                    "remove obj1 " + kKey,
                                    "release l3mc6_glbcfg obj1",
                                    "dfx 34",
                                    "kpi 147",
                                }));
}

TEST_F(GlbCfgTest, aDeleteWithNoCommonVersionWritesTheRecordsVersionBeforeTheRemoval) {
    platform.answer("MCAST_DB_ReadGlbVersion", 15005);
    EXPECT_EQ(0u, MCAST6_DB_DeleteGlbCfg(&record));
    EXPECT_EQ(platform.trace(), (Trace{
                                    "glb_read " + versionRecord("00000000") + " -> 15005",
                                    "glb_write " + versionRecord("34333231"),
                                    "create l3mc6_glbcfg 4 0 -> obj1",
                                    "dfx 33",
                                    "remove obj1 " + kKey,
                                    "release l3mc6_glbcfg obj1",
                                    "dfx 34",
                                    "kpi 147",
                                }));
}

TEST_F(GlbCfgTest, nothingIsRemovedWhenTheCommonVersionCannotBeAdvanced) {
    for (const bool isThere : {true, false}) {
        startOver();
        if (!isThere) platform.answer("MCAST_DB_ReadGlbVersion", 9);
        platform.answer(isThere ? "MCAST_DB_UpdateGlbVersion" : "MCAST_DB_WriteGlbVersion", 13044);
        EXPECT_EQ(1u, MCAST6_DB_DeleteGlbCfg(&record));
        EXPECT_EQ(0u, platform.callsOf("db_create_l3mc6_glbcfg_obj"));
        EXPECT_EQ(0u, platform.callsOf("db_remove_obj"));
        EXPECT_EQ(1u, platform.kpi(148));
        EXPECT_EQ(0u, platform.kpi(147));
        EXPECT_EQ(0u, g_mcast6DbErrStat[0][1]);
    }
}

TEST_F(GlbCfgTest, aFailedRemovalLeavesTheCommonVersionAdvanced) {
    platform.fillNextGlobalVersion(7);
    platform.answer("db_remove_obj", 9);
    EXPECT_EQ(9u, MCAST6_DB_DeleteGlbCfg(&record));
    EXPECT_EQ(1u, platform.callsOf("MCAST_DB_UpdateGlbVersion"));
    EXPECT_EQ(0u, platform.callsOf("MCAST_DB_WriteGlbVersion"));
}

// -- edges

TEST_F(GlbCfgTest, theVersionOfAMissingRecordIs1AndOfAFailure0) {
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(1u, MCAST6_DB_GetGlbVerFromGlbCfg(1, 2, 3));
    platform.answer("db_read_obj_with_buf", 110012);
    EXPECT_EQ(0u, MCAST6_DB_GetGlbVerFromGlbCfg(1, 2, 3));
    EXPECT_EQ(0u, platform.liveObjects());
}

TEST_F(GlbCfgTest, theVersionOfAKeyIsAskedForWithThatKey) {
    platform.fillNextRead(unhex(kStoredRow));
    EXPECT_EQ(0x06000096u, MCAST6_DB_GetGlbVerFromGlbCfg(0xA1A2A3A4, 0xB1B2B3B4, 0xC1C2C3C4));
    EXPECT_EQ("read obj1 key=0001000c:a4a3a2a1b4b3b2b1c4c3c2c1 48", platform.trace()[2]);
}

TEST_F(GlbCfgTest, aHashKeyThatCannotBeCountedCountsAs0) {
    platform.fillNextCount(7);
    platform.answer("db_create_l3mc6_glbcfg_obj", 9);
    EXPECT_EQ(0u, MCAST6_DB_GetGlbCfgNum(1, 2));
    platform.answer("db_get_table_record_count_by_key", 15005);
    EXPECT_EQ(0u, MCAST6_DB_GetGlbCfgNum(1, 2));
    EXPECT_EQ(7u, MCAST6_DB_GetGlbCfgNum(1, 2));
}

TEST_F(GlbCfgTest, anIteratorGives60AtItsEndAnd1OnAnyOtherFailure) {
    Mcast6DbRes* iterator = MCAST6_DB_CreateGlbCfgIter();
    ASSERT_NE(nullptr, iterator);
    platform.answer("db_root_iterator_next", 110012);
    EXPECT_EQ(60u, MCAST6_DB_GetGlbCfgEntry(iterator, &record));
    platform.answer("db_root_iterator_next", 15005);
    EXPECT_EQ(1u, MCAST6_DB_GetGlbCfgEntry(iterator, &record));
    platform.answer("db_read_obj_with_buf", 110012);
    EXPECT_EQ(1u, MCAST6_DB_GetGlbCfgEntry(iterator, &record));
    platform.answer("db_read_obj_with_buf", 15005);
    EXPECT_EQ(60u, MCAST6_DB_GetGlbCfgEntry(iterator, &record));
    MCAST6_DB_ReleaseGlbCfgIterator(iterator);
    EXPECT_EQ(0u, platform.liveObjects());
    EXPECT_EQ(0u, platform.liveBlocks());
}

}  // namespace

}  // namespace mcast6::tests::l3mc6_glbcfg
