// l2mc6_bd_enable. What each operation does, one row for each step:
//
// operation          step          fails with   then
// create object      create        any          453; the code
//                    -             -            452; 0
// release object     -             -            released; 454
// read               null          -            log; 1
//                    create 3      any          453; log; the code
//                    read          15005        released; 60
//                                  other        released; log; error 0; the code
//                    -             -            record filled; released; 0
// write              null          -            log; 456; 1
//                    create 0      any          453; log; 456; the code
//                    set all       any          released; log; 456; the code
//                    write         13044        released; error 1; 455; 0
//                                  other        released; log; error 2; 456; the code
//                    -             -            released; 455; 0
// update             null          -            log; 1
//                    create 1      any          453; log; the code
//                    7 setters     any          log; the update is made all the same; released; log; OR of all codes
//                    update        any          released; log; the code
//                    -             -            released; 0
// smooth version     null          -            log; 1
//                    create 1      any          453; log; the code
//                    2 setters     any          log; released; OR of both codes
//                    update        13044        released; error 1; 0
//                                  other        released; log; error 6; the code
//                    -             -            released; 0
// delete             null          -            log; 458; 1
//                    create 4      any          453; log; 458; the code
//                    remove        13044        released; error 1; 457; 0
//                                  other        released; error 4; log; 458; the code
//                    -             -            released; 457; 0
// create iterator    create 5      any          453; 459; log; null
//                    root iterator any          released; 459; log; null
//                    property      any          released; 459; log; null
//                    allocation    -            released; 459; log; null
//                    -             -            handle
// get entry          null          -            log; 1
//                    next          110012       60
//                                  other        log; error 9; 1
//                    read          15005        60
//                                  other        log; error 0; 1
//                    -             -            record filled; 0
// release iterator   null          -            nothing
//                    -             -            released; block freed
//
// "released" counts 454, a create that succeeds 452. Errors are recorded under table 26.
#include "mcast6_db/l2mc6_bd_enable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mcast6_db/context.h"
#include "tests/l2/l2mc6_bd_enable_sample.h"
#include "tests/support/operation_sweep.h"
#include "tests/support/operation_test.h"

namespace mcast6::tests::l2mc6_bd_enable {

namespace {

using recording::Recorder;
using recording::unhex;

L2McBdEnableEntry entry;
Mcast6DbHandle object;
Mcast6DbRes* iterator;

const LogId config{0x0F2E1012};
const Effect released = allOf({line("release l2mc6_bd_enable obj1"), dfx(454)});

// A record, a row to be read, and no object yet.
Scene plain() {
    return {.prepare =
                [] {
                    fillSample(entry);
                    object = 0;
                    iterator = nullptr;
                    Recorder::instance().fillNextRead(unhex(kStoredRow));
                },
            .watched = {watchBytes("record", entry), watchHandle("object", object)}};
}

Scene withObject() {
    Scene scene = plain();
    scene.prepare = [prepare = scene.prepare] {
        prepare();
        ASSERT_EQ(0u, MCAST6_DB_CreateL2McBdEnableObject(1, 0, &object));
    };
    return scene;
}

Scene withIterator() {
    Scene scene = plain();
    scene.prepare = [prepare = scene.prepare] {
        prepare();
        iterator = MCAST6_DB_CreateL2McBdEnableIter();
        ASSERT_NE(nullptr, iterator);
    };
    return scene;
}

std::string readBack() {
    L2McBdEnableEntry record;
    fillSample(record);
    readStored(record);
    return bytesOf(record);
}

Step creation(uint32_t objType, Effects failed) {
    failed.insert(failed.begin(), dfx(453));
    return {.calls = {gives("create l2mc6_bd_enable " + std::to_string(objType) + " 0", "obj1")},
            .failed = failed,
            .done = {dfx(452)}};
}

Operation createObject() {
    return {
        .name = "CreateL2McBdEnableObject",
        .scene = plain(),
        .run = [] { return MCAST6_DB_CreateL2McBdEnableObject(3, 0, &object); },
        .steps = {creation(3, {returns(code)})},
        .done = {leaves("object", "obj1"), keeps(1, 0, 0), returns(0)},
    };
}

Operation releaseObject() {
    return {
        .name = "ReleaseL2McBdEnableObject",
        .scene = withObject(),
        .run = [] { MCAST6_DB_ReleaseL2McBdEnableObject(object); },
        .steps = {},
        .done = {released, leaves("object", "?1"), keeps(-1, 0, 0), returnsNothing()},
    };
}

Operation read() {
    return {
        .name = "ReadL2McBdEnable",
        .scene = plain(),
        .run = [] { return MCAST6_DB_ReadL2McBdEnable(&entry); },
        .nulls = {{"record",
                   [] { return MCAST6_DB_ReadL2McBdEnable(nullptr); },
                   {config("[MCAST6 DB]read l2 bd enable, para is null."), returns(1)}}},
        .steps =
            {
                creation(3,
                         {config("[MCAST6 DB]read l2 bd enable, create object failed, ret:%u.", code), returns(code)}),
                {.calls = {call("read obj1 " + kKey + " 68")},
                 .failed = {released, config("[MCAST6 DB]read l2 bd enable, read object failed, ret:%u.", code),
                            record(26, 0), returns(code)},
                 .answered = {{15005, {released, returns(60)}}}},
            },
        .done = {leaves("record", readBack()), released, returns(0)},
    };
}

Operation write() {
    return {
        .name = "WriteL2McBdEnable",
        .scene = plain(),
        .run = [] { return MCAST6_DB_WriteL2McBdEnable(&entry); },
        .nulls = {{"record",
                   [] { return MCAST6_DB_WriteL2McBdEnable(nullptr); },
                   {config("[MCAST6 DB]write l2 bd enable, para is null."), dfx(456), returns(1)}}},
        .steps =
            {
                creation(0, {config("[MCAST6 DB]write l2 bd enable, create object failed, ret:%u.", code), dfx(456),
                             returns(code)}),
                {.calls = {call("set_all l2mc6_bd_enable obj1 " + kWrittenRow)},
                 .failed = {released, config("[MCAST6 DB]write l2 bd enable, set all fields failed, ret:%u.", code),
                            dfx(456), returns(code)}},
                {.calls = {call("write obj1")},
                 .failed = {released, config("[MCAST6 DB]write l2 bd enable, write object failed, ret:%u.", code),
                            record(26, 2), dfx(456), returns(code)},
                 .answered = {{13044, {released, record(26, 1), dfx(455), returns(0)}}}},
            },
        .done = {released, dfx(455), returns(0)},
    };
}

// The setters of the update, as they go with 'entry'.
std::vector<Call> updateSetters() {
    return {
        sets("l2mc6_bd_enable.mldVersion", "obj1", 0x25262728),
        sets("l2mc6_bd_enable.l2mcEnable", "obj1", 0x71727374),
        call("set l2mc6_bd_enable.serviceStatus obj1 4142"),
        call("set l2mc6_bd_enable.errCode obj1 4344"),
        sets("l2mc6_bd_enable.smoothVersion", "obj1", 0x31323334),
        sets("l2mc6_bd_enable.pathFlags", "obj1", 0x35363738),
        sets("l2mc6_bd_enable.timeStampSmooth", "obj1", 1'700'000'000),
    };
}

Operation update() {
    const Effect updateFailed = config("[MCAST6 DB]update l2 bd enable, update object failed, ret:%u.", code);
    return {
        .name = "UpdateL2BdEnableCfg",
        .scene = plain(),
        .run = [] { return MCAST6_DB_UpdateL2BdEnableCfg(&entry); },
        .nulls = {{"record",
                   [] { return MCAST6_DB_UpdateL2BdEnableCfg(nullptr); },
                   {config("[MCAST6 DB]update l2 bd enable, para is null."), returns(1)}}},
        .steps =
            {
                creation(
                    1, {config("[MCAST6 DB]update l2 bd enable, create object failed. ret:%u.", code), returns(code)}),
                {.calls = updateSetters(),
                 .failed = {config("[MCAST6 DB]update l2 bd enable data, set field failed, ret:%u.", code),
                            line("update obj1 " + kKey), released, updateFailed, returns(code)}},
                {.calls = {call("update obj1 " + kKey)}, .failed = {released, updateFailed, returns(code)}},
            },
        .done = {released, returns(0)},
    };
}

Operation setUpdateFields() {
    return {
        .name = "SetBdEnableUpdateData",
        .scene = withObject(),
        .run = [] { return MCAST6_DB_SetBdEnableUpdateData(object, &entry); },
        .steps = {{.calls = updateSetters(),
                   .failed = {config("[MCAST6 DB]update l2 bd enable data, set field failed, ret:%u.", code),
                              returns(code)}}},
        .done = {returns(0)},
    };
}

Operation stamp(const char* name, uint32_t flag, std::vector<Call> setters) {
    return {
        .name = name,
        .scene = withObject(),
        .run = [flag] { return MCAST6_DB_SetMldBdTimeStamp(object, flag); },
        .steps = {{.calls = std::move(setters), .failed = {returns(code)}}},
        .done = {returns(0)},
    };
}

Operation updateSmoothVersion() {
    return {
        .name = "UpdateL2McBdEnableSmoothVersion",
        .scene = plain(),
        .run = [] { return MCAST6_DB_UpdateL2McBdEnableSmoothVersion(&entry); },
        .nulls = {{"record",
                   [] { return MCAST6_DB_UpdateL2McBdEnableSmoothVersion(nullptr); },
                   {config("[MCAST6 DB]update l2 bd enable smoothing version, para is null."), returns(1)}}},
        .steps =
            {
                creation(
                    1, {config("[MCAST6 DB]update l2 bd enable smoothing version, create object failed, ret:%u.", code),
                        returns(code)}),
                {.calls = {sets("l2mc6_bd_enable.smoothVersion", "obj1", 0x31323334),
                           sets("l2mc6_bd_enable.timeStampSmooth", "obj1", 1'700'000'000)},
                 .failed = {config("[MCAST6 DB]update l2 bd enable smoothing version, set field failed, ret:%u.", code),
                            released, returns(code)}},
                {.calls = {call("update obj1 " + kKey)},
                 .failed = {released,
                            config("[MCAST6 DB]update l2 bd enable smoothing version, update object failed, ret:%u.",
                                   code),
                            record(26, 6), returns(code)},
                 .answered = {{13044, {released, record(26, 1), returns(0)}}}},
            },
        .done = {released, returns(0)},
    };
}

Operation remove() {
    return {
        .name = "DeleteL2McBdEnable",
        .scene = plain(),
        .run = [] { return MCAST6_DB_DeleteL2McBdEnable(&entry); },
        .nulls = {{"record",
                   [] { return MCAST6_DB_DeleteL2McBdEnable(nullptr); },
                   {config("[MCAST6 DB]del l2 bd enable, para is null."), dfx(458), returns(1)}}},
        .steps =
            {
                creation(4, {config("[MCAST6 DB]del l2 bd enable, create object failed, ret:%u.", code), dfx(458),
                             returns(code)}),
                {.calls = {call("remove obj1 " + kKey)},
                 .failed = {released, record(26, 4),
                            config("[MCAST6 DB]del l2 bd enable, remove object failed, ret:%u.", code), dfx(458),
                            returns(code)},
                 .answered = {{13044, {released, record(26, 1), dfx(457), returns(0)}}}},
            },
        .done = {released, dfx(457), returns(0)},
    };
}

Operation createIterator() {
    const Effect failed = allOf({dfx(459), config("[MCAST6 DB]create l2 bd enable iter failed."), returnsNull()});
    Scene scene = plain();
    scene.watched.push_back({"iterator", [] {
                                 if (iterator == nullptr) return std::string("none");
                                 return nameOf(iterator->object) + " " + nameOf(iterator->rootIter);
                             }});
    return {
        .name = "CreateL2McBdEnableIter",
        .scene = scene,
        .run = [] { return iterator = MCAST6_DB_CreateL2McBdEnableIter(); },
        .steps =
            {
                creation(5, {failed}),
                {.calls = {gives("root_iter obj1 none", "iter1")}, .failed = {released, failed}},
                {.calls = {call("property iter1 0 01000000")}, .failed = {released, failed}},
                {.calls = {allocation(16, "block1")}, .failed = {released, failed}},
            },
        .done = {leaves("iterator", "obj1 iter1"), keeps(1, 1, 1), returnsHandle()},
    };
}

Operation getEntry() {
    const Effect refused = allOf({config("[MCAST6 DB]get l2 bd enable entry, para is null."), returns(1)});
    return {
        .name = "GetL2McBdEnableEntry",
        .scene = withIterator(),
        .run = [] { return MCAST6_DB_GetL2McBdEnableEntry(iterator, &entry); },
        .nulls = {{"iterator", [] { return MCAST6_DB_GetL2McBdEnableEntry(nullptr, &entry); }, {refused}},
                  {"record", [] { return MCAST6_DB_GetL2McBdEnableEntry(iterator, nullptr); }, {refused}}},
        .steps =
            {
                {.calls = {call("next iter1")},
                 .failed = {config("[MCAST6 DB]get l2 bd enable entry, db root iterator next failed, ret:%d.", code),
                            record(26, 9), returns(1)},
                 .answered = {{110012, {returns(60)}}}},
                {.calls = {call("read obj1 none 68")},
                 .failed = {config("[MCAST6 DB]get l2 bd enable entry, read obj failed, ret:%d.", code), record(26, 0),
                            returns(1)},
                 .answered = {{15005, {returns(60)}}}},
            },
        .done = {leaves("record", readBack()), returns(0)},
    };
}

Operation releaseIterator() {
    return {
        .name = "ReleaseL2McBdEnableIterator",
        .scene = withIterator(),
        .run = [] { MCAST6_DB_ReleaseL2McBdEnableIterator(iterator); },
        .nulls = {{"iterator", [] { MCAST6_DB_ReleaseL2McBdEnableIterator(nullptr); }, {returnsNothing()}}},
        .steps = {},
        .done = {released, line("free block1"), keeps(-1, -1, -1), returnsNothing()},
    };
}

std::vector<Operation> operations() {
    return {
        createObject(),
        releaseObject(),
        read(),
        write(),
        update(),
        setUpdateFields(),
        stamp("SetMldBdTimeStampOfUpdate", 0, {sets("l2mc6_bd_enable.timeStampSmooth", "obj1", 1'700'000'000)}),
        updateSmoothVersion(),
        remove(),
        createIterator(),
        getEntry(),
        releaseIterator(),
    };
}

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_enable, EveryWayOut, testing::ValuesIn(operations()), nameOfOperation);

}  // namespace

}  // namespace mcast6::tests::l2mc6_bd_enable
