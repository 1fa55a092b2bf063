// l2mc6_bd_tag_rt: see bd_route_family.h for what each operation does. All changes treat 13044 as success. Errors are
// recorded under table 24.
#include "mcast6_db/l2mc6_bd_tag_rt.h"

#include "tests/l2/bd_route_family.h"

namespace mcast6::tests::bd_route {

namespace {

using Entry = L2McBdRtEntry;

const std::string kKey = keyOf("00010012", "00010203 0c0d0e0f 18191a1b 2829 2a2b 1415");

const std::string kRow =
    "00010203 0c0d0e0f 18191a1b"          // vrId, rtKeyWord1, rtKeyWord2
    "2829 2a2b 14151617"                  // tagVid1, tagVid2, rtKeyValue
    "04050607 2c2d2e2f"                   // vrfId, rtAttr
    "30313233 34353637 38393a3b"          // smoothVersion, serviceStatus, errCode
    "4041424344454647 00f1536500000000";  // timeStampCreate, timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "fffefdfc"},           // vrId
                   {4, "ebeae9e8"},           // vrfId
                   {8, "01000000"},           // addrKind, a constant
                   {12, "fbfaf9f8"},          // rtKeyWord1
                   {16, "02000000"},          // rtKind, a constant
                   {20, "efeeedec"},          // rtKeyValue
                   {24, "f7f6f5f4"},          // rtKeyWord2
                   {40, "f3f2"},              // tagVid1
                   {42, "f1f0"},              // tagVid2
                   {44, "e7e6e5e4"},          // rtAttr
                   {48, "e3e2e1e0"},          // smoothVersion
                   {52, "dfdedddc"},          // serviceStatus
                   {56, "dbdad9d8"},          // errCode
                   {64, "d7d6d5d4d3d2d1d0"},  // timeStampCreate
                   {72, "cfcecdcccbcac9c8"},  // timeStampSmooth
               });
}

const Counters kCounters = {.createFailed = 405,
                            .created = 404,
                            .released = 406,
                            .written = 407,
                            .writeFailed = 408,
                            .removed = 409,
                            .removeFailed = 410,
                            .iteratorFailed = 411};

const Messages kMessages = {.readNull = "[MCAST6 DB]read l2 bd tag rt, para is null.",
                            .readCreate = "[MCAST6 DB]read l2 bd tag rt, create object failed, ret:%u.",
                            .readFailed = "[MCAST6 DB]read l2 bd tag rt, read object db failed, ret:%u.",
                            .writeNull = "[MCAST6 DB]write l2 bd tag rt, para is null.",
                            .writeCreate = "[MCAST6 DB]write l2v6 bd tag rt, create object failed, ret:%u.",
                            .writeSet = "[MCAST6 DB]write l2v6 bd tag rt, set_all_fields failed, ret:%u.",
                            .writeFailed = "[MCAST6 DB]write l2 bd tag rt, write object failed, ret:%u.",
                            .updateNull = "[MCAST6 DB]l2 bd tag rt upd oper, para is null.",
                            .updateCreate = "[MCAST6 DB]l2 bd tag rt upd oper, create object failed, ret:%u.",
                            .updateSet = "[MCAST6 DB]l2 bd tag rt upd oper, set fields failed, ret:%u.",
                            .updateFailed = "[MCAST6 DB]l2 bd tag rt upd oper, update object failed, ret:%u.",
                            .removeNull = "[MCAST6 DB]del l2 bd tag rt, para is null.",
                            .removeCreate = "[MCAST6 DB]del l2 bd tag rt, create object failed, ret:%u.",
                            .removeFailed = "[MCAST6 DB]del l2 bd tag rt, remove object failed, ret:%u.",
                            .entryNull = "[MCAST6 DB]l2 bd tag rt get entry, para is null.",
                            .nextFailed = "[MCAST6 DB]l2 bd tag rt get entry, db root iterator next failed, ret:%d.",
                            .entryFailed = "[MCAST6 DB]l2 bd tag rt get entry, read obj failed, ret:%d.",
                            .iteratorOfAll = "[MCAST6 DB]l2 bd tag rt, create all iter failed."};

const Tolerated kTolerated = {.write = {dfx(407)}, .remove = {dfx(409)}};

const Functions<Entry> kFunctions = {.stamp = MCAST6_DB_SetL2McBdTagRtTimeStamp,
                                     .set = MCAST6_DB_SetL2McBdTagRt,
                                     .get = MCAST6_DB_GetL2McBdTagRt,
                                     .createObject = MCAST6_DB_CreateL2McBdTagRtObject,
                                     .releaseObject = MCAST6_DB_ReleaseL2McBdTagRtObject,
                                     .read = MCAST6_DB_ReadL2McBdTagRt,
                                     .write = MCAST6_DB_WriteL2McBdTagRt,
                                     .setSmoothItem = MCAST6_DB_SetUpdateL2McBdTagRtSmthItem,
                                     .setItem = MCAST6_DB_SetUpdateL2McBdTagRtItem,
                                     .updateOper = MCAST6_DB_UpdateL2McBdTagRtOper,
                                     .updateSmoothVersion = MCAST6_DB_UpdateL2McBdTagRtSmoothVersion,
                                     .update = MCAST6_DB_UpdateL2McBdTagRt,
                                     .remove = MCAST6_DB_DeleteL2McBdTagRt,
                                     .getEntry = MCAST6_DB_GetL2McBdTagRtEntry,
                                     .createIterator = MCAST6_DB_CreateL2McBdTagRtIterCommon,
                                     .createIteratorOfAll = MCAST6_DB_CreateL2McBdTagRtIter,
                                     .releaseIterator = MCAST6_DB_ReleaseL2McBdTagRtIterator};

BdRoute<Entry>& family() {
    static BdRoute<Entry> family({
        .name = "l2mc6_bd_tag_rt",
        .number = 24,
        .rowSize = 56,
        .createStamp = 40,
        .key = kKey,
        .row = kRow,
        .readStored = readStored,
        .iteratorKeyWord = "00010012",
        .iteratorKey = "00010203 0c0d0e0f 18191a1b 2829 2a2b 1415",
        .counters = kCounters,
        .messages = kMessages,
        .tolerated = kTolerated,
        .functions = kFunctions,
    });
    return family;
}

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_tag_rt, EveryExit, testing::ValuesIn(family().operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l2mc6_bd_tag_rt, EveryClaim, testing::ValuesIn(family().claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::bd_route
