// l2mc6_bd_vxlan_sub_elb: see bd_egress_family.h for what each operation does. Differences: a write and an update
// record 13044 as a failure of their own kind, and a write and a removal count it as failed; all three return 0. A
// release counts 380. Errors are recorded under table 31.
#include "mcast6_db/l2mc6_bd_vxlan_sub_elb.h"

#include "tests/l2/bd_egress_family.h"

namespace mcast6::tests::bd_egress {

namespace {

const std::string kKey = keyOf("00010034", kVr + kBd + kGroup + kSource + "74000000 6c6d6e6f 34353637");

const std::string kRow =
    "00010203 30313233"                      // vrId, bdId
    "0f0e0d0c 13121110 17161514 1b1a1918"    // groupAddr
    "1f1e1d1c 23222120 27262524 2b2a2928"    // sourceAddr
    "74000000 6c6d6e6f 34353637 70717273"    // vxlanByte, widened, vxlanWord1, outIfIndex, vxlanWord2
    "78797a7b7c7d7e7f8081828384858687"       // vxlanWords3to6
    "68696a6b 04050607 5455 75 77 90919293"  // vxlanWord0, vrfId, fwdIfType, isSelfBoard, vxlanFlag, pathFlags
    "40414243 48494a4b4c4d4e4f 50515253"     // mcId, mcidVersion, mfibVersion
    "94959697 98999a9b 9c9d9e9f"             // appSrcPid, appVersion, smoothVersion
    "a0a1a2a3a4a5a6a7a8a9aaabacadaeaf"       // elbData1
    "b0b1b2b3b4b5b6b7b8b9babbbcbdbebfc0c1c2c3c4c5c6c7c8c9cacb"  // svcCtxHighPrio
    "e8e9eaebecedeeeff0f1f2f3"                                  // svcCtxNormalPrio
    "f4f5 f6f7 00f1536500000000"                                // serviceStatus, errCode, timeStampCreate
    "00f1536500000000";                                         // timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "fffefdfc"},                              // vrId
                   {4, "b3b2b1b0"},                              // vrfId
                   {8, "02000000"},                              // addrType, a constant
                   {12, "f4f5f6f7 f0f1f2f3 ecedeeef e8e9eaeb"},  // groupAddr
                   {28, "e4e5e6e7 e0e1e2e3 dcdddedf d8d9dadb"},  // sourceAddr
                   {44, "01000000"},                             // domainType, a constant
                   {48, "fbfaf9f8"},                             // bdId
                   {52, "cfcecdcc"},                             // outIfIndex
                   {64, "a7a6a5a4"},                             // mcId
                   {72, "a3a2a1a09f9e9d9c"},                     // mcidVersion
                   {80, "9b9a9998"},                             // mfibVersion
                   {84, "afae"},                                 // fwdIfType
                   {90, "afae"},                                 // fwdIfKind, which is fwdIfType
                   {92, "08000000 0a000000"},                    // fixedWord1, fixedWord2, constants
                   {104, "b7b6b5b4"},                            // vxlanWord0
                   {108, "d3d2d1d0"},                            // vxlanWord1
                   {112, "cbcac9c8"},                            // vxlanWord2
                   {116, "d7"},                                  // vxlanByte, of which the low byte counts
                   {117, "ad"},                                  // isSelfBoard
                   {119, "ac"},                                  // vxlanFlag
                   {120, "c7c6c5c4c3c2c1c0bfbebdbcbbbab9b8"},    // vxlanWords3to6
                   {144, "abaaa9a8"},                            // pathFlags
                   {148, "97969594"},                            // appSrcPid
                   {152, "93929190"},                            // appVersion
                   {156, "8f8e8d8c"},                            // smoothVersion
                   {160, "8b8a898887868584838281807f7e7d7c"},    // elbData1
                   {176, "7b7a797877767574737271706f6e6d6c6b6a69686766656463626160"},  // svcCtxHighPrio
                   {232, "5f5e5d5c5b5a595857565554"},                                  // svcCtxNormalPrio
                   {244, "5352"},                                                      // serviceStatus
                   {246, "5150"},                                                      // errCode
                   {248, "4f4e4d4c4b4a4948"},                                          // timeStampCreate
                   {256, "4746454443424140"},                                          // timeStampSmooth
               });
}

const Counters kCounters = {.createFailed = 512,
                            .created = 511,
                            .released = 380,
                            .written = 513,
                            .writeFailed = 514,
                            .removed = 515,
                            .removeFailed = 516,
                            .iteratorFailed = 517};

const Messages kMessages = {
    .readNull = "MCAST6_DB_ReadL2McBdVxlanSubElb, l2Mc6BdVxlanSubElbEntry is null.",
    .readCreate = "MCAST6_DB_ReadL2McBdVxlanSubElb, create db object failed, ret:%u.",
    .readFailed = "MCAST6_DB_ReadL2Mc6BdVxlanSubElb, read object db failed, ret:%u.",
    .writeNull = "write l2mc6_bd_vxlan_sub_elb, l2Mc6BdVxlanSubElb is null.",
    .writeCreate = "write l2mc6_bd_vxlan_sub_elb, create db object failed, ret:%u.",
    .writeSet = "write l2mc_bd_vxlan_sub_elb, set_all_fields failed, ret:%u.",
    .writeFailed = "write l2mc6_bd_vxlan_sub_elb, release l2mc object fail, ret:%u.",
    .smoothNull = "MCAST6_DB_UpdateL2Mc6BdVxlanSubElbSmoothVersion, l2Mc6BdVxlanSubElbEntry is null.",
    .smoothCreate = "MCAST6_DB_UpdateL2Mc6BdVxlanSubElbSmoothVersion, create db object failed, ret:%u.",
    .smoothSet = "MCAST_DB_UpdateL2McBdVxlanSubElbSmoothVersion, set smooth version fail, ret:%u.",
    .smoothFailed = "MCAST6_DB_UpdateL2Mc6BdVxlanSubElbSmoothVersion, release object fail, ret:%u.",
    .removeNull = "MCAST6_DB_DeleteL2Mc6BdVxlanSubElb, l2Mc6BdVxlanSubElbEntry is null.",
    .removeCreate = "MCAST6_DB_DeleteL2Mc6BdVxlanSubElb, create db object failed, ret:%u.",
    .removeFailed = "MCAST6_DB_DeleteL2Mc6BdVxlanSubElb, release object fail, ret:%u.",
    .nextFailed = "MCAST6_DB_Getl2Mc6BdVxlanSubElbEntry, db root iterator next fail, ret:%d.",
    .entryFailed = "MCAST6_DB_Getl2Mc6BdVxlanSubElbEntry, read obj fail, ret:%d.",
    .iteratorOfAll = "MCAST6_DB_CreateL2Mc6BdVxlanSubElbIter failed"};

const Tolerated kTolerated = {
    .write = {record(31, 2), dfx(514)}, .smooth = {record(31, 6)}, .remove = {record(31, 1), dfx(516)}};

const Functions kFunctions = {.stamp = MCAST6_DB_SetStructL2Mc6BdVxlanSubElbTimeStamp,
                              .set = MCAST6_DB_SetL2McBdVxlanSubElb,
                              .get = MCAST6_DB_GetL2Mc6BdVxlanSubElb,
                              .createObject = MCAST6_DB_CreateL2Mc6BdVxlanSubElbObject,
                              .releaseObject = MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbObject,
                              .read = MCAST6_DB_ReadL2Mc6BdVxlanSubElb,
                              .write = MCAST6_DB_WriteL2Mc6BdVxlanSubElb,
                              .updateSmoothVersion = MCAST6_DB_UpdateL2Mc6BdVxlanSubElbSmoothVersion,
                              .remove = MCAST6_DB_DeleteL2Mc6BdVxlanSubElb,
                              .getEntry = MCAST6_DB_GetL2Mc6BdVxlanSubElbEntry,
                              .createIterator = MCAST6_DB_CreateL2Mc6BdVxlanSubElbIterator,
                              .createIteratorOfAll = MCAST6_DB_CreateL2Mc6BdVxlanSubElbIter,
                              .releaseIterator = MCAST6_DB_ReleaseL2Mc6BdVxlanSubElbIterator};

BdEgress& family();

std::vector<Filter> filters() {
    return {
        overEntry("iteratorOfAnEntry", MCAST6_DB_CreateL2Mc6BdVxlanSubElbMcidIterator),
        overEntry("iteratorBySourceIsThatOfAnEntry", MCAST6_DB_CreateL2Mc6BdVxlanSubElbsourceIterator),
        {"iteratorByVsg", [] { return MCAST6_DB_CreateL2Mc6VxlanSubElbCreateVSGIterator(&family().table.record); },
         keyOf("02090030", kVr + kBd + kGroup + kSource + "74000000 6c6d6e6f")},
        {"iteratorByIfindex", [] { return MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByIfindex(0x01020304); },
         keyOf("03090004", "04030201")},
        {"iteratorByBridgeDomain",
         [] { return MCAST6_DB_CreateL2Mc6BdVxlanSubElbIteratorByBd(0x11121314, 0x31323334); },
         keyOf("04090008", "14131211 34333231")},
    };
}

BdEgress& family() {
    static BdEgress family({
        .name = "l2mc6_bd_vxlan_sub_elb",
        .number = 31,
        .rowSize = 192,
        .createStamp = 176,
        .key = kKey,
        .row = kRow,
        .readStored = readStored,
        .counters = kCounters,
        .messages = kMessages,
        .tolerated = kTolerated,
        .functions = kFunctions,
        .filters = filters(),
    });
    return family;
}

std::vector<Claim> claims() {
    std::vector<Claim> all = family().claims();
    all.push_back(family().keyClaim(MCAST6_DB_SetL2Mc6BdVxlanSubElbKey));
    all.push_back(family().toleranceClaim("aWriteOfAPresentRecordReturns0ButIsRecordedAndCountedAsFailed",
                                          MCAST6_DB_WriteL2Mc6BdVxlanSubElb, "db_write_obj", 514, 513, 2));
    all.push_back(family().toleranceClaim("aRemovalOfAnAbsentRecordReturns0ButCountsAsFailed",
                                          MCAST6_DB_DeleteL2Mc6BdVxlanSubElb, "db_remove_obj", 516, 515, 1));
    return all;
}

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_vxlan_sub_elb, EveryExit, testing::ValuesIn(family().operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l2mc6_bd_vxlan_sub_elb, EveryClaim, testing::ValuesIn(claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::bd_egress
