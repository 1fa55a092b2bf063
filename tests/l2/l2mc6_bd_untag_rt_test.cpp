// l2mc6_bd_untag_rt: see bd_route_family.h for what each operation does. All changes treat 13044 as success. The tags
// are neither stored nor read. Errors are recorded under table 25.
#include "mcast6_db/l2mc6_bd_untag_rt.h"

#include "tests/l2/bd_route_family.h"

namespace mcast6::tests::bd_route {

namespace {

using Entry = L2McBdRtEntry;

const std::string kKey = keyOf("0001000e", "00010203 0c0d0e0f 18191a1b 1415");

const std::string kRow =
    "00010203 0c0d0e0f 18191a1b 14151617"  // vrId, rtKeyWord1, rtKeyWord2, rtKeyValue
    "04050607 2c2d2e2f"                    // vrfId, rtAttr
    "30313233 34353637 38393a3b"           // smoothVersion, serviceStatus, errCode
    "4041424344454647 00f1536500000000";   // timeStampCreate, timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "fffefdfc"},           // vrId
                   {4, "efeeedec"},           // vrfId
                   {8, "01000000"},           // addrKind, a constant
                   {12, "fbfaf9f8"},          // rtKeyWord1
                   {16, "01000000"},          // rtKind, a constant
                   {20, "f3f2f1f0"},          // rtKeyValue
                   {24, "f7f6f5f4"},          // rtKeyWord2
                   {44, "ebeae9e8"},          // rtAttr
                   {48, "e7e6e5e4"},          // smoothVersion
                   {52, "e3e2e1e0"},          // serviceStatus
                   {56, "dfdedddc"},          // errCode
                   {64, "dbdad9d8d7d6d5d4"},  // timeStampCreate
                   {72, "d3d2d1d0cfcecdcc"},  // timeStampSmooth
               });
}

const Counters kCounters = {.createFailed = 413,
                            .created = 412,
                            .released = 414,
                            .written = 415,
                            .writeFailed = 416,
                            .removed = 417,
                            .removeFailed = 418,
                            .iteratorFailed = 419};

const Messages kMessages = {.readNull = "[MCAST6 DB]read l2 bd untag rt, para is null.",
                            .readCreate = "[MCAST6 DB]read l2 bd untag rt, create object failed, ret:%u.",
                            .readFailed = "[MCAST6 DB]read l2 bd untag rt, read object failed, ret:%u.",
                            .writeNull = "[MCAST6 DB]write l2 bd untag rt, para is null.",
                            .writeCreate = "[MCAST6 DB]write l2 bd untag rt, create object failed, ret:%u.",
                            .writeSet = "[MCAST6 DB]write l2 bd untag rt, set all fields failed, ret:%u.",
                            .writeFailed = "[MCAST6 DB]write l2 bd untag rt, write object failed, ret:%u.",
                            .updateNull = "[MCAST6 DB]l2 bd untag rt upd oper, para is null.",
                            .updateCreate = "[MCAST6 DB]l2 bd untag rt upd oper, create object failed, ret:%u.",
                            .updateSet = "[MCAST6 DB]l2 bd untag rt upd oper, set object failed, ret:%u.",
                            .updateFailed = "[MCAST6 DB]l2 bd untag rt upd oper, update object failed, ret:%u.",
                            .removeNull = "[MCAST6 DB]del l2 bd untag rt, para is null.",
                            .removeCreate = "[MCAST6 DB]del l2 bd untag rt, create object failed, ret:%u.",
                            .removeFailed = "[MCAST6 DB]del l2 bd untag rt, remove object failed, ret:%u.",
                            .entryNull = "[MCAST6 DB]l2 bd untag rt get entry, para is null.",
                            .nextFailed = "[MCAST6 DB]l2 bd untag rt get entry, db root iterator next failed, ret:%d.",
                            .entryFailed = "[MCAST6 DB]l2 bd untag rt get entry, read obj failed, ret:%d.",
                            .iteratorOfAll = "[MCAST6 DB]l2 bd untag rt, create all iter failed"};

const Tolerated kTolerated = {.write = {dfx(415)}, .remove = {dfx(417)}};

const Functions<Entry> kFunctions = {.stamp = MCAST6_DB_SetL2McBdUntagRtTimeStamp,
                                     .set = MCAST6_DB_SetL2McBdUntagRt,
                                     .get = MCAST6_DB_GetL2McBdUntagRt,
                                     .createObject = MCAST6_DB_CreateL2McBdUntagRtObject,
                                     .releaseObject = MCAST6_DB_ReleaseL2McBdUntagRtObject,
                                     .read = MCAST6_DB_ReadL2McBdUntagRt,
                                     .write = MCAST6_DB_WriteL2McBdUntagRt,
                                     .setSmoothItem = MCAST6_DB_SetUpdateL2McBdUntagRtSmthItem,
                                     .setItem = MCAST6_DB_SetUpdateL2McBdUntagRtItem,
                                     .updateOper = MCAST6_DB_UpdateL2McBdUntagRtOper,
                                     .updateSmoothVersion = MCAST6_DB_UpdateL2McBdUntagRtSmoothVersion,
                                     .update = MCAST6_DB_UpdateL2McBdUntagRt,
                                     .remove = MCAST6_DB_DeleteL2McBdUntagRt,
                                     .getEntry = MCAST6_DB_GetL2McBdUntagRtEntry,
                                     .createIterator = MCAST6_DB_CreateL2McBdUntagRtIterCommon,
                                     .createIteratorOfAll = MCAST6_DB_CreateL2McBdUntagRtIter,
                                     .releaseIterator = MCAST6_DB_ReleaseL2McBdUntagRtIterator};

BdRoute<Entry>& family() {
    static BdRoute<Entry> family({
        .name = "l2mc6_bd_untag_rt",
        .number = 25,
        .rowSize = 52,
        .createStamp = 36,
        .key = kKey,
        .row = kRow,
        .readStored = readStored,
        .iteratorKeyWord = "0001000e",
        .iteratorKey = "00010203 0c0d0e0f 18191a1b 1415",
        .counters = kCounters,
        .messages = kMessages,
        .tolerated = kTolerated,
        .functions = kFunctions,
    });
    return family;
}

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_untag_rt, EveryExit, testing::ValuesIn(family().operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l2mc6_bd_untag_rt, EveryClaim, testing::ValuesIn(family().claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::bd_route
