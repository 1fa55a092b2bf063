// l3mc6_mfib. What each operation does, one row for each step:
//
// operation          step          fails with   then
// create object      create        any          KPI 114; the code
//                    -             -            151; 0
// release object     -             -            released, handle 0 too, which the engine does not see
// keyed read         read          15005        15005
//                                  other        log; error 0; the code
//                    -             -            record filled; 0
// read               create 3      any          KPI 114; log; the code
//                    read          15005        released; 15005
//                                  other        log; error 0; released; the code
//                    -             -            record filled; released; 0
// object cache       create cache  any          153; log; the code
//                    reset cache   any          154; log; the code; a new object is lost
//                    -             -            object in the slot; 0
// fast read          create cache  any          153; log; log; the code
//                    reset cache   any          154; log; log; the code; a new object is lost
//                    read                       as the keyed read
// write              create 0      any          KPI 114; log; KPI 94; the code
//                    set all       any          pid set; released; log; KPI 94; the code
//                    write         13044        pid set; released; error 1; KPI 93; 0
//                                  other        pid set; released; log; error 2; KPI 94; KPI 93; the code
//                    -             -            pid set; released; KPI 93; 0
// smooth version     create 1      any          KPI 114; log; the code
//                    2 setters     any          log; released; OR of both codes
//                    update        13044        released; error 1; 0
//                                  other        released; log; error 6; the code
//                    -             -            released; 0
// statistics context null          -            log; 1
//                    the rest                   as for the smooth version
// delete             create 4      any          KPI 114; log; KPI 96; the code
//                    remove        13044        released; error 1; KPI 95; 0
//                                  other        released; error 4; log; KPI 96; the code
//                    -             -            released; trap; KPI 95; 0
// get entry          next          110012       60
//                                  other        log; error 9; the code
//                    read          15005        60
//                                  other        log; error 0; the code
//                    -             -            record filled; 0
// get next           next          110012       released, handle's object 0; 60
//                                  other        log; released, handle's object 0; the code
//                    read          any          log; record filled from a cleared row; the code
//                    -             -            record filled; 0
//
// "released" counts 152, a successful create counts 151. Errors are recorded under table 15.
#include "mcast6_db/l3mc6_mfib.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mcast6_db/l3mc6_mfib_query.h"
#include "tests/l3/l3mc6_mfib_sample.h"
#include "tests/support/operation_sweep.h"
#include "tests/support/operation_test.h"

namespace mcast6::tests::l3mc6_mfib {

namespace {

using recording::Recorder;
using recording::unhex;

L3Mc6MfibEntry entry;
Mcast6DbHandle object;
Mcast6DbHandle slot;
Mcast6DbRes* iterator;

const LogId records{0x0F2E1016};
const LogId statistics{0x0F2E1017};
const Effect released = allOf({line("release l3mc6_mfib obj1"), dfx(152)});
const Effect pidSet = leaves("pid", digits("bbbab9b8"));

// A record, a row ready to be read, no object yet, empty caches.
Scene plain() {
    return {.prepare =
                [] {
                    fillSample(entry);
                    object = 0;
                    slot = 0;
                    iterator = nullptr;
                    Recorder::instance().fillNextRead(unhex(kStoredRow));
                    MCAST6_DB_SetL3MfibSourcePid(7);
                },
            .watched = {watchBytes("record", entry), watchBytes("pid", g_l3Mfib6Pid), watchHandle("object", object),
                        watchHandle("slot", slot), watchHandle("read cache", g_l3Mfib6DbReadObjCache),
                        watchHandle("statistics cache", g_l3Mfib6DbStatObjCache)}};
}

Scene after(Scene scene, std::function<void()> more) {
    scene.prepare = [first = std::move(scene.prepare), more = std::move(more)] {
        first();
        more();
    };
    return scene;
}

Scene withObject() {
    return after(plain(), [] { ASSERT_EQ(0u, MCAST6_DB_CreateL3MfibObject(3, 0, &object)); });
}

Scene withSlot() {
    return after(plain(), [] { ASSERT_EQ(0u, MCAST6_DB_CreateL3MfibObjCache(9, 0, &slot)); });
}

Scene withReadCache() {
    return after(plain(), [] { ASSERT_EQ(0u, MCAST6_DB_CreateL3MfibObjCache(3, 0, &g_l3Mfib6DbReadObjCache)); });
}

Scene withIterator() {
    Scene scene = after(plain(), [] {
        iterator = MCAST6_DB_CreateL3MfibIter();
        ASSERT_NE(nullptr, iterator);
    });
    scene.watched.push_back({"iterator", [] { return nameOf(iterator->object) + " " + nameOf(iterator->rootIter); }});
    return scene;
}

std::string changed(void (*change)(L3Mc6MfibEntry&)) {
    L3Mc6MfibEntry record;
    fillSample(record);
    change(record);
    return bytesOf(record);
}

Step creation(uint32_t objType, Effects failed) {
    failed.insert(failed.begin(), kpi(114));
    return {.calls = {gives("create l3mc6_mfib " + std::to_string(objType) + " 0", "obj1")},
            .failed = failed,
            .done = {dfx(151)}};
}

Operation createObject() {
    return {
        .name = "CreateL3MfibObject",
        .scene = plain(),
        .run = [] { return MCAST6_DB_CreateL3MfibObject(4, 0, &object); },
        .steps = {creation(4, {returns(code)})},
        .done = {leaves("object", "obj1"), keeps(1, 0, 0), returns(0)},
    };
}

Operation releaseObject() {
    return {
        .name = "ReleaseL3MfibObject",
        .scene = withObject(),
        .run = [] { MCAST6_DB_ReleaseL3MfibObject(object); },
        .nulls = {{"handle", [] { MCAST6_DB_ReleaseL3MfibObject(0); }, {dfx(152), returnsNothing()}}},
        .steps = {},
        .done = {released, leaves("object", "?1"), keeps(-1, 0, 0), returnsNothing()},
    };
}

// The read by key, with the effects that follow it.
Step keyedRead(Effects afterwards) {
    Effects failed{records("MCAST6_DB_ReadL3Mfib, read mfib object db failed, ret:%u.", code), record(15, 0)};
    failed.insert(failed.end(), afterwards.begin(), afterwards.end());
    failed.push_back(returns(code));
    afterwards.push_back(returns(15005));
    return {.calls = {call("read obj1 " + kKey + " 208")}, .failed = failed, .answered = {{15005, afterwards}}};
}

Operation readEntry() {
    return {
        .name = "ReadL3MfibEntry",
        .scene = withObject(),
        .run = [] { return MCAST6_DB_ReadL3MfibEntry(&entry, object); },
        .steps = {keyedRead({})},
        .done = {leaves("record", changed(readStored)), returns(0)},
    };
}

Operation read() {
    return {
        .name = "ReadL3Mfib",
        .scene = plain(),
        .run = [] { return MCAST6_DB_ReadL3Mfib(&entry); },
        .steps =
            {
                creation(
                    3, {records("MCAST6_DB_ReadL3Mfib failed, create db object failed. ret:%u.", code), returns(code)}),
                keyedRead({released}),
            },
        .done = {leaves("record", changed(readStored)), released, returns(0)},
    };
}

// Creating and resetting a cached object; 'afterwards': effects at the end of a failure.
Step cacheCreation(uint32_t objType, Effects afterwards) {
    Effects failed{
        dfx(153), records("Failed to create l3mfib6 cache object, objType:%u, connType:%u, ret:%u", objType, 0u, code)};
    failed.insert(failed.end(), afterwards.begin(), afterwards.end());
    return {.calls = {gives("create_cache l3mc6_mfib " + std::to_string(objType) + " 0", "obj1")}, .failed = failed};
}

Step cacheReset(uint32_t objType, Effects afterwards) {
    Effects failed{dfx(154),
                   records("Failed to reset l3mfib6 cache object, objType:%u, connType:%u, ret:%u", objType, 0u, code)};
    failed.insert(failed.end(), afterwards.begin(), afterwards.end());
    return {.calls = {call("reset_cache l3mc6_mfib obj1")}, .failed = failed};
}

Operation fillCache() {
    return {
        .name = "CreateL3MfibObjCacheOfEmptySlot",
        .scene = plain(),
        .run = [] { return MCAST6_DB_CreateL3MfibObjCache(9, 0, &slot); },
        // An object that cannot be reset leaks: it is neither kept in the slot nor released.
        .steps = {cacheCreation(9, {returns(code)}), cacheReset(9, {keeps(1, 0, 0), returns(code)})},
        .done = {leaves("slot", "obj1"), keeps(1, 0, 0), returns(0)},
    };
}

Operation reuseCache() {
    return {
        .name = "CreateL3MfibObjCacheOfFilledSlot",
        .scene = withSlot(),
        .run = [] { return MCAST6_DB_CreateL3MfibObjCache(9, 0, &slot); },
        .steps = {cacheReset(9, {returns(code)})},
        .done = {returns(0)},
    };
}

const Effect fastFailed = records("MCAST6_DB_ReadL3Mfib fast failed, create db object failed, ret:%u.", code);

Operation readFirstFast(const char* name, Run run) {
    const Effect cached = allOf({leaves("read cache", "obj1"), keeps(1, 0, 0)});
    return {
        .name = name,
        .scene = plain(),
        .run = std::move(run),
        .steps = {cacheCreation(3, {fastFailed, returns(code)}),
                  cacheReset(3, {fastFailed, keeps(1, 0, 0), returns(code)}), keyedRead({cached})},
        .done = {leaves("record", changed(readStored)), cached, returns(0)},
    };
}

Operation readFast(const char* name, Run run) {
    return {
        .name = name,
        .scene = withReadCache(),
        .run = std::move(run),
        .steps = {cacheReset(3, {fastFailed, returns(code)}), keyedRead({})},
        .done = {leaves("record", changed(readStored)), returns(0)},
    };
}

Operation write() {
    return {
        .name = "WriteL3Mfib",
        .scene = plain(),
        .run = [] { return MCAST6_DB_WriteL3Mfib(&entry); },
        .steps =
            {
                creation(0, {records("MCAST6_DB_WriteL3Mfib, create db object failed. ret:%u.", code), kpi(94),
                             returns(code)}),
                {.calls = {call("set_all l3mc6_mfib obj1 " + kWrittenRow)},
                 .failed = {pidSet, released, records("MCAST6_DB_WriteL3Mfib, set_all_fields failed, ret:%u.", code),
                            kpi(94), returns(code)}},
                {.calls = {call("write obj1")},
                 .failed = {pidSet, released, records("MCAST6_DB_WriteL3Mfib failed, ret:%u.", code), record(15, 2),
                            kpi(94), kpi(93), returns(code)},
                 .answered = {{13044, {pidSet, released, record(15, 1), kpi(93), returns(0)}}}},
            },
        .done = {pidSet, released, kpi(93), returns(0)},
    };
}

Operation updateSmoothVersion() {
    return {
        .name = "UpdateL3MfibSmoothVersion",
        .scene = plain(),
        .run = [] { return MCAST6_DB_UpdateL3MfibSmoothVersion(&entry); },
        .steps =
            {
                creation(1, {records("MCAST6_DB_UpdateL3MfibSmoothVersion, create db object failed, ret:%u.", code),
                             returns(code)}),
                {.calls = {sets("l3mc6_mfib.smoothVersion", "obj1", 0xC0C1C2C3),
                           sets("l3mc6_mfib.timeStampSmooth", "obj1", 1'700'000'000)},
                 .failed = {records("MCAST6_DB_UpdateL3MfibSmoothVersion failed, set smooth para failed, ret:%u.",
                                    code),
                            released, returns(code)}},
                {.calls = {call("update obj1 " + kKey)},
                 .failed = {released,
                            records("MCAST6_DB_UpdateL3MfibSmoothVersion, update db object failed, ret:%u.", code),
                            record(15, 6), returns(code)},
                 .answered = {{13044, {released, record(15, 1), returns(0)}}}},
            },
        .done = {released, returns(0)},
    };
}

Operation updateStatistics() {
    return {
        .name = "UpdateL3MfibMcStatSvcCtx",
        .scene = plain(),
        .run = [] { return MCAST6_DB_UpdateL3MfibMcStatSvcCtx(&entry); },
        .nulls = {{"record",
                   [] { return MCAST6_DB_UpdateL3MfibMcStatSvcCtx(nullptr); },
                   {statistics("mcast6 update mcStatSvcCtx failed, mfibEntry param is null."), returns(1)}}},
        .steps =
            {
                creation(1, {statistics("mcast6 update mcStatSvcCtx failed, create db object failed, ret:%u.", code),
                             returns(code)}),
                {.calls = {call("set l3mc6_mfib.mcStatSvcCtx obj1 "
                                "707172737475767778797a7b7c7d7e7f808182838485868788898a8b8c8d8e8f90919293"),
                           sets("l3mc6_mfib.timeStampSmooth", "obj1", 1'700'000'000)},
                 .failed = {statistics("mcast6 update mcStatSvcCtx failed, set mcStatCtx para failed, ret:%u.", code),
                            released, returns(code)}},
                {.calls = {call("update obj1 " + kKey)},
                 .failed = {released,
                            statistics("mcast6 update mcStatSvcCtx failed, update db object failed, ret:%u.", code),
                            record(15, 6), returns(code)},
                 .answered = {{13044, {released, record(15, 1), returns(0)}}}},
            },
        .done = {released, returns(0)},
    };
}

Operation remove() {
    return {
        .name = "DeleteL3Mfib",
        .scene = plain(),
        .run = [] { return MCAST6_DB_DeleteL3Mfib(&entry); },
        .steps =
            {
                creation(4, {records("MCAST6_DB_DeleteL3Mfib, create db object failed, ret:%u.", code), kpi(96),
                             returns(code)}),
                {.calls = {call("remove obj1 " + kKey)},
                 .failed = {released, record(15, 4),
                            records("MCAST6_DB_DeleteL3Mfib, db remove obj fail, ret:%u.", code), kpi(96),
                            returns(code)},
                 .answered = {{13044, {released, record(15, 1), kpi(95), returns(0)}}}},
            },
        .done = {released, line("trap"), kpi(95), returns(0)},
    };
}

Operation getEntry() {
    return {
        .name = "GetL3MfibEntry",
        .scene = withIterator(),
        .run = [] { return MCAST6_DB_GetL3MfibEntry(iterator, &entry); },
        .steps =
            {
                {.calls = {call("next iter1")},
                 .failed = {records("MCAST6_DB_GetL3MfibEntry, db root iterator next fail, ret:%u.", code),
                            record(15, 9), returns(code)},
                 .answered = {{110012, {returns(60)}}}},
                {.calls = {call("read obj1 none 208")},
                 .failed = {records("MCAST6_DB_GetL3MfibEntry, db read fail, ret:%u.", code), record(15, 0),
                            returns(code)},
                 .answered = {{15005, {returns(60)}}}},
            },
        .done = {leaves("record", changed(readStored)), returns(0)},
    };
}

Operation getNext() {
    // The recorder prints the number of a released handle; the root iterator is released with its object.
    const Effect ended = allOf({released, leaves("iterator", "none ?1000001"), keeps(-1, -1, 0)});
    return {
        .name = "GetNextL3Mfib",
        .scene = withIterator(),
        .run = [] { return MCAST6_DB_GetNextL3Mfib(iterator, &entry); },
        .steps =
            {
                {.calls = {call("next iter1")},
                 .failed = {statistics("[L3MC CFG]mFib Get next ctrl fail. ret %u", code), ended, returns(code)},
                 .answered = {{110012, {ended, returns(60)}}}},
                {.calls = {call("read obj1 none 208")},
                 .failed = {statistics("[L3MC CFG]get L3Mfib item fail, ret = %u", code),
                            leaves("record", changed(readNothing)), returns(code)}},
            },
        .done = {leaves("record", changed(readStored)), returns(0)},
    };
}

std::vector<Operation> operations() {
    return {
        createObject(),
        releaseObject(),
        readEntry(),
        read(),
        fillCache(),
        reuseCache(),
        readFirstFast("ReadL3MfibFastAtFirst", [] { return MCAST6_DB_ReadL3MfibFast(&entry); }),
        readFast("ReadL3MfibFast", [] { return MCAST6_DB_ReadL3MfibFast(&entry); }),
        readFirstFast("ReadL3MfibFastTempAtFirst", [] { return MCAST6_DB_ReadL3MfibFastTemp(&entry); }),
        readFast("ReadL3MfibFastTemp", [] { return MCAST6_DB_ReadL3MfibFastTemp(&entry); }),
        write(),
        updateSmoothVersion(),
        updateStatistics(),
        remove(),
        getEntry(),
        getNext(),
    };
}

INSTANTIATE_TEST_SUITE_P(l3mc6_mfib, EveryExit, testing::ValuesIn(operations()), nameOfOperation);

}  // namespace

}  // namespace mcast6::tests::l3mc6_mfib
