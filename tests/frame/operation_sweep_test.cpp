// The sweep itself: it accepts an operation that matches its description, and finds every kind of difference.
#include "tests/support/operation_sweep.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mcast6_db.h"
#include "mcast6_platform/engine.h"
#include "mcast6_platform/host.h"
#include "mcast6_platform/tables.h"

namespace mcast6::tests {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

enum class Defect {
    none,
    otherCounter,
    counterTwice,
    otherKpi,
    noRelease,
    releaseAfterLog,
    errorAfterLog,
    errorAfterCounter,
    otherErrorTable,
    otherErrorKind,
    errorTwice,
    otherFormat,
    otherText,
    otherLogId,
    otherLevel,
    logsWithoutFailure,
    otherResult,
    otherCode,
    tolerates15005,
    refuses13044,
    stopsAtFailedSetter,
    takesLastSettersCode,
    settersInOtherOrder,
    otherKey,
    changesRecord,
    leaksBlock,
    leavesBlockOnFailure,
    acceptsNull,
    countsOnlyWithLog,
    oneCallMore,
};

uint32_t place;

void say(Defect defect, const char* format, uint32_t code) {
    if (defect == Defect::otherFormat) format = "failed, code:%d";  // the same text
    if (defect == Defect::otherText) format = "Failed, code:%u";
    const Mcast6DbLogFunc log = MCAST6_DB_GetLogCallBack();
    if (log == nullptr) return;
    log(defect == Defect::otherLevel ? 8 : 9, defect == Defect::otherLogId ? 0x0F2E1017 : 0x0F2E1016, format, code);
}

uint32_t setFields(Defect defect, uint64_t object) {
    if (defect == Defect::settersInOtherOrder) {
        uint32_t code = db_set_l2mc6_bd_enable_pathFlags(object, 4);
        code |= db_set_l2mc6_bd_enable_mldVersion(object, 3);
        return code;
    }
    const uint32_t first = db_set_l2mc6_bd_enable_mldVersion(object, 3);
    if (defect == Defect::stopsAtFailedSetter && first != 0) return first;
    const uint32_t second = db_set_l2mc6_bd_enable_pathFlags(object, 4);
    if (defect == Defect::takesLastSettersCode && second != 0) return second;
    return first | second;
}

uint32_t concluded(Defect defect, uint32_t code) {
    const uint32_t counter = defect == Defect::otherCounter ? 501 : 502;
    if (defect == Defect::releaseAfterLog || defect == Defect::noRelease) return code;
    if (defect == Defect::countsOnlyWithLog && MCAST6_DB_GetLogCallBack() == nullptr) return code;
    if (defect == Defect::errorAfterCounter) MCAST6_DfxCounterInc(counter);
    const uint32_t table = defect == Defect::otherErrorTable ? 8 : 7;
    const uint32_t kind = defect == Defect::otherErrorKind ? 2 : 6;
    if (defect != Defect::errorAfterLog) MCAST6_DB_RecordErrState(table, kind);
    say(defect, "failed, code:%u", code);
    if (defect == Defect::errorAfterLog) MCAST6_DB_RecordErrState(table, kind);
    if (defect == Defect::errorTwice) MCAST6_DB_RecordErrState(table, kind);
    if (defect != Defect::errorAfterCounter) MCAST6_DfxCounterInc(counter);
    if (defect == Defect::counterTwice) MCAST6_DfxCounterInc(counter);
    return defect == Defect::otherCode ? 1 : code;
}

// An update with a defect. Its steps: a buffer, an object, two setters, the engine's update.
uint32_t operate(Defect defect, const uint32_t* record) {
    if (record == nullptr) {
        if (defect == Defect::acceptsNull) return 0;
        MCAST6_KPI_AddKpiData(defect == Defect::otherKpi ? 61 : 60);
        return 1;
    }
    void* buffer = MCAST6_DB_Malloc(24);
    if (buffer == nullptr) return 1;
    uint64_t object = 0;
    uint32_t code = db_create_l2mc6_bd_enable_obj(1, 0, &object);
    if (code != 0) {
        if (defect != Defect::leavesBlockOnFailure) MCAST6_DB_Free(buffer);
        return code;
    }
    code = setFields(defect, object);
    if (code == 0) {
        const Mcast6DbKeyDesc descriptor{0x0001000C, {0, 0, 0}};
        const uint32_t key[3] = {1, 2, defect == Defect::otherKey ? 4u : 3u};
        code = db_update_obj(object, &descriptor, key);
        if (code == 13044 && defect != Defect::refuses13044) code = 0;
    }
    if (defect == Defect::tolerates15005 && code == 15005) code = 0;
    if (defect == Defect::releaseAfterLog && code != 0) concluded(Defect::none, code);
    if (defect == Defect::oneCallMore) db_set_l2mc6_bd_enable_attrA(object, 1);
    if (defect != Defect::noRelease) db_release_l2mc6_bd_enable_object(object);
    if (defect != Defect::leaksBlock) MCAST6_DB_Free(buffer);
    if (defect == Defect::changesRecord) ++place;
    if (defect == Defect::logsWithoutFailure && code == 0) say(defect, "done, code:%u", code);
    if (code != 0) return concluded(defect, code);
    return defect == Defect::otherResult ? 2 : 0;
}

Operation described(Defect defect) {
    const LogId log{0x0F2E1016};
    const Effect released = allOf({line("release l2mc6_bd_enable obj1"), line("free block1")});
    const Effect failed = allOf({released, record(7, 6), log("failed, code:%u", code), dfx(502), returns(code)});
    return {
        .name = "Example",
        .scene = {.prepare = [] { place = 7; }, .watched = {watchBytes("record", place)}},
        .run = [defect] { return operate(defect, &place); },
        .nulls = {{"record", [defect] { return operate(defect, nullptr); }, {kpi(60), returns(1)}}},
        .steps =
            {
                {.calls = {allocation(24, "block1")}, .failed = {returns(1)}},
                {.calls = {gives("create l2mc6_bd_enable 1 0", "obj1")},
                 .failed = {line("free block1"), returns(code)}},
                {.calls = {sets("l2mc6_bd_enable.mldVersion", "obj1", 3), sets("l2mc6_bd_enable.pathFlags", "obj1", 4)},
                 .failed = {failed}},
                {.calls = {call("update obj1 key=0001000c:" + digits("01000000 02000000 03000000"))},
                 .failed = {failed},
                 .answered = {{13044, {released, returns(0)}}}},
            },
        .done = {released, returns(0)},
    };
}

TEST(OperationSweep, acceptsWhatIsAsDescribed) {
    size_t cases = 0;
    EXPECT_THAT(mismatches(described(Defect::none), &cases), IsEmpty());
    // Success, a null, an allocation, four calls with six codes each, the two setters together; each with and without a
    // log callback.
    EXPECT_EQ(2u * (1 + 1 + 1 + 4 * 6 + 1), cases);
}

TEST(OperationSweep, findsEveryDefect) {
    for (Defect defect = Defect::otherCounter; defect <= Defect::oneCallMore;
         defect = static_cast<Defect>(static_cast<int>(defect) + 1)) {
        EXPECT_THAT(mismatches(described(defect)), testing::Not(IsEmpty()))
            << "defect " << static_cast<int>(defect) << " went unnoticed";
    }
}

TEST(OperationSweep, namesTheCaseAndShowsWhatDiffers) {
    const std::vector<std::string> texts = mismatches(described(Defect::otherErrorKind));
    ASSERT_THAT(texts, testing::Not(IsEmpty()));
    EXPECT_THAT(texts.front(), HasSubstr("Example: 'set l2mc6_bd_enable.mldVersion obj1 3' fails with 1\n"));
    EXPECT_THAT(texts.front(), HasSubstr("    record 7 2\n"));
    EXPECT_THAT(texts.front(), HasSubstr("    record 7 6\n"));
    EXPECT_THAT(texts.front(), HasSubstr("errors of table 7, kind 2 is 1, expected 0\n"));
    EXPECT_THAT(texts.front(), HasSubstr("errors of table 7, kind 6 is 0, expected 1\n"));
}

TEST(OperationSweep, aWrongDescriptionOfMemoryIsFound) {
    Operation operation = described(Defect::none);
    operation.done.push_back(leaves("record", "08000000"));
    EXPECT_THAT(mismatches(operation), testing::SizeIs(2));
    operation = described(Defect::none);
    operation.done.push_back(leaves("no such place", ""));
    EXPECT_THAT(mismatches(operation), testing::SizeIs(2));
}

}  // namespace

}  // namespace mcast6::tests
