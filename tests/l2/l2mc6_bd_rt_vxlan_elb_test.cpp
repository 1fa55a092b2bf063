// l2mc6_bd_rt_vxlan_elb: see bd_route_family.h for what each operation does. Differences: on 13044 a write and a
// removal count as failed and then as done; there is an iterator by process. Errors are recorded under table 32.
#include "mcast6_db/l2mc6_bd_rt_vxlan_elb.h"

#include "tests/l2/bd_route_family.h"

namespace mcast6::tests::bd_route {

namespace {

using Entry = L2McBdRtVxlanEntry;

const std::string kKey = keyOf("00010012", "00010203 0c0d0e0f 20212223 1c1d1e1f 1415");

const std::string kRow =
    "00010203 0c0d0e0f 20212223 1c1d1e1f"  // vrId, rtKeyWord1, rtKeyWord2, rtKeyWord3
    "14151617 24252627 ________ 04050607"  // rtKeyValue, rtAttr, reserved, vrfId
    "2c2d2e2f 30313233 34353637 38393a3b"  // appSrcPid, smoothVersion, serviceStatus, errCode
    "4041424344454647 00f1536500000000";   // timeStampCreate, timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "fffefdfc"},           // vrId
                   {4, "e3e2e1e0"},           // vrfId
                   {8, "01000000"},           // addrKind, a constant
                   {12, "fbfaf9f8"},          // rtKeyWord1
                   {16, "03000000"},          // rtKind, a constant
                   {20, "efeeedec"},          // rtKeyValue
                   {28, "f3f2f1f0"},          // rtKeyWord3
                   {32, "f7f6f5f4"},          // rtKeyWord2
                   {36, "ebeae9e8"},          // rtAttr
                   {44, "dfdedddc"},          // appSrcPid
                   {48, "dbdad9d8"},          // smoothVersion
                   {52, "d7d6d5d4"},          // serviceStatus
                   {56, "d3d2d1d0"},          // errCode
                   {64, "cfcecdcccbcac9c8"},  // timeStampCreate
                   {72, "c7c6c5c4c3c2c1c0"},  // timeStampSmooth
               });
}

const Counters kCounters = {.createFailed = 518,
                            .created = 519,
                            .released = 520,
                            .written = 522,
                            .writeFailed = 521,
                            .removed = 524,
                            .removeFailed = 523,
                            .iteratorFailed = 525};

const Messages kMessages = {
    .readNull = "MCAST6_DB_ReadL2Mc6BdRtVxlanElb, entry is null.",
    .readCreate = "MCAST6_DB_ReadL2Mc6BdRtVxlanElb, create db object failed, ret:%u.",
    .readFailed = "MCAST_DB_ReadL2McBdRtVxlanElb, read l2mc_bd_rt_vxlan_elb object db failed, ret:%u.",
    .writeNull = "MCAST6_DB_WriteL2Mc6BdRtVxlanElb, entry is null.",
    .writeCreate = "MCAST6_DB_WriteL2Mc6BdRtVxlanElb, create db object failed, ret:%u.",
    .writeSet = "MCAST6_DB_WriteL2Mc6BdRtVxlanElb, set_all_fields failed, ret:%u.",
    .writeFailed = "MCAST6_DB_WriteL2Mc6BdRtVxlanElb, release l2mc l2mc_bd_rt_vxlan_elb object fail, ret:%u.",
    .updateNull = "MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper, entry is null.",
    .updateCreate = "MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper, create db object failed, ret:%u.",
    .updateSet = "MCAST6_DB_UpdateL2Mc6BdRtVxlanElb, set smooth version fail, ret:%u.",
    .updateFailed = "MCAST6_DB_UpdateL2Mc6BdRtVxlanElb, release mfibv4 object fail, ret:%u.",
    .removeNull = "MCAST6_DB_DeleteL2Mc6BdRtVxlanElb, entry is null.",
    .removeCreate = "MCAST6_DB_DeleteL2Mc6BdRtVxlanElb, create db object failed, ret:%u.",
    .removeFailed = "MCAST6_DB_DeleteL2Mc6BdRtVxlanElb, dellet rt fail, ret:%u.",
    .entryNull = nullptr,
    .nextFailed = "MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry, db root iterator next fail, ret:%d.",
    .entryFailed = "MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry, read obj fail, ret:%d.",
    .iteratorOfAll = "MCAST6_DB_Create L2McBdRtVxlanElbIter failed."};

const Tolerated kTolerated = {.write = {dfx(521), dfx(522)}, .remove = {dfx(523), dfx(524)}};

const Functions<Entry> kFunctions = {.stamp = MCAST6_DB_SetL2Mc6BdRtVxlanElbTimeStamp,
                                     .set = MCAST6_DB_SetL2Mc6BdRtVxlanElb,
                                     .get = MCAST6_DB_GetL2Mc6BdRtVxlanElb,
                                     .createObject = MCAST6_DB_CreateL2Mc6BdRtVxlanElbObject,
                                     .releaseObject = MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbObject,
                                     .read = MCAST6_DB_ReadL2Mc6BdRtVxlanElb,
                                     .write = MCAST6_DB_WriteL2Mc6BdRtVxlanElb,
                                     .setSmoothItem = MCAST6_DB_SetUpdateL2Mc6BdRtVxlanElbSmthItem,
                                     .setItem = MCAST6_DB_SetUpdateL2Mc6BdRtVxlanElbItem,
                                     .updateOper = MCAST6_DB_UpdateL2Mc6BdRtVxlanElbOper,
                                     .updateSmoothVersion = MCAST6_DB_UpdateL2Mc6BdRtVxlanElbSmoothVersion,
                                     .update = MCAST6_DB_UpdateL2Mc6BdRtVxlanElb,
                                     .remove = MCAST6_DB_DeleteL2Mc6BdRtVxlanElb,
                                     .getEntry = MCAST6_DB_GetL2Mc6BdRtVxlanElbEntry,
                                     .createIterator = MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterCommon,
                                     .createIteratorOfAll = MCAST6_DB_CreateL2Mc6BdRtVxlanElbIter,
                                     .releaseIterator = MCAST6_DB_ReleaseL2Mc6BdRtVxlanElbIterator};

BdRoute<Entry>& family() {
    static BdRoute<Entry> family({
        .name = "l2mc6_bd_rt_vxlan_elb",
        .number = 32,
        .rowSize = 64,
        .createStamp = 48,
        .key = kKey,
        .row = kRow,
        .readStored = readStored,
        .iteratorKeyWord = "0209000c",
        .iteratorKey = "01020304 05060708 090a0b0c",
        .counters = kCounters,
        .messages = kMessages,
        .tolerated = kTolerated,
        .functions = kFunctions,
    });
    return family;
}

std::vector<Operation> operations() {
    std::vector<Operation> all = family().operations();
    all.push_back(family().iterator(
        "iteratorBySrcPid", [] { return MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterBySrcPid(&family().table.record); },
        keyOf("0209000c", "00010203 04050607 2c2d2e2f"),
        routes("MCAST6_DB_CreateL2Mc6BdRtVxlanElbIterBySrcPid by src pid failed.")));
    return all;
}

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_rt_vxlan_elb, EveryExit, testing::ValuesIn(operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l2mc6_bd_rt_vxlan_elb, EveryClaim, testing::ValuesIn(family().claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::bd_route
