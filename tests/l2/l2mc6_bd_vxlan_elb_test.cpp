// l2mc6_bd_vxlan_elb: see bd_egress_family.h for what each operation does. Differences: a write and an update record
// 13044 as a failure of their own kind, and a write and a removal count it as failed; all three return 0. Errors are
// recorded under table 30.
//
// Counts, which the other tables of the family do not have:
//
// operation          step          fails with   then
// count by key       create 9      any          504; log; 1
//                    count         any          released; log; 1
//                    -             -            count filled; released; 0
#include "mcast6_db/l2mc6_bd_vxlan_elb.h"

#include "tests/l2/bd_egress_family.h"

namespace mcast6::tests::bd_egress {

namespace {

const std::string kKey = keyOf("00010030", kVr + kBd + kGroup + kSource + "74000000 6c6d6e6f");

const std::string kRow =
    "00010203 30313233"                         // vrId, bdId
    "0f0e0d0c 13121110 17161514 1b1a1918"       // groupAddr
    "1f1e1d1c 23222120 27262524 2b2a2928"       // sourceAddr
    "74000000 6c6d6e6f 70717273 ________"       // vxlanByte, widened, vxlanWord1, vxlanWord2, reserved
    "78797a7b ________"                         // vxlanWord3, reserved
    "7c7d7e7f8081828384858687"                  // vxlanWords4to6
    "68696a6b 04050607 88000000 34353637 5455"  // vxlanWord0, vrfId, vxlanByte2, widened, outIfIndex, fwdIfType
    "75 77 90919293 40414243 48494a4b4c4d4e4f"  // isSelfBoard, vxlanFlag, pathFlags, mcId, mcidVersion
    "50515253 94959697 98999a9b 9c9d9e9f"       // mfibVersion, appSrcPid, appVersion, smoothVersion
    "a0a1a2a3a4a5a6a7a8a9aaabacadaeaf"          // elbData1
    "b0b1b2b3b4b5b6b7b8b9babbbcbdbebfc0c1c2c3c4c5c6c7c8c9cacb"  // svcCtxHighPrio
    "e8e9eaebecedeeeff0f1f2f3"                                  // svcCtxNormalPrio
    "f4f5 f6f7 00f1536500000000"                                // serviceStatus, errCode, timeStampCreate
    "00f1536500000000";                                         // timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "fffefdfc"},                              // vrId
                   {4, "afaeadac"},                              // vrfId
                   {8, "02000000"},                              // addrType, a constant
                   {12, "f4f5f6f7 f0f1f2f3 ecedeeef e8e9eaeb"},  // groupAddr
                   {28, "e4e5e6e7 e0e1e2e3 dcdddedf d8d9dadb"},  // sourceAddr
                   {44, "01000000"},                             // domainType, a constant
                   {48, "fbfaf9f8"},                             // bdId
                   {52, "a7a6a5a4"},                             // outIfIndex
                   {64, "9b9a9998"},                             // mcId
                   {72, "9796959493929190"},                     // mcidVersion
                   {80, "8f8e8d8c"},                             // mfibVersion
                   {84, "a3a2"},                                 // fwdIfType
                   {90, "a3a2"},                                 // fwdIfKind, which is fwdIfType
                   {92, "03000000 09000000"},                    // fixedWord1, fixedWord2, constants
                   {104, "b3b2b1b0"},                            // vxlanWord0
                   {108, "d3d2d1d0"},                            // vxlanWord1
                   {112, "cfcecdcc"},                            // vxlanWord2
                   {116, "d7"},                                  // vxlanByte, of which the low byte counts
                   {117, "a1"},                                  // isSelfBoard
                   {119, "a0"},                                  // vxlanFlag
                   {120, "c7c6c5c4"},                            // vxlanWord3
                   {124, "bfbebdbcbbbab9b8b7b6b5b4"},            // vxlanWords4to6
                   {136, "ab"},                                  // vxlanByte2, of which the low byte counts
                   {144, "9f9e9d9c"},                            // pathFlags
                   {148, "8b8a8988"},                            // appSrcPid
                   {152, "87868584"},                            // appVersion
                   {156, "83828180"},                            // smoothVersion
                   {160, "7f7e7d7c7b7a79787776757473727170"},    // elbData1
                   {176, "6f6e6d6c6b6a696867666564636261605f5e5d5c5b5a595857565554"},  // svcCtxHighPrio
                   {232, "535251504f4e4d4c4b4a4948"},                                  // svcCtxNormalPrio
                   {244, "4746"},                                                      // serviceStatus
                   {246, "4544"},                                                      // errCode
                   {248, "434241403f3e3d3c"},                                          // timeStampCreate
                   {256, "3b3a393837363534"},                                          // timeStampSmooth
               });
}

const Counters kCounters = {.createFailed = 504,
                            .created = 503,
                            .released = 505,
                            .written = 506,
                            .writeFailed = 507,
                            .removed = 508,
                            .removeFailed = 509,
                            .iteratorFailed = 510};

const Messages kMessages = {
    .readNull = "MCAST6_DB_ReadL2Mc6BdVxlanElb, l2McBdVxlanElbEntry is null.",
    .readCreate = "MCAST6_DB_ReadL2Mc6BdVxlanElb, create db object failed, ret:%u.",
    .readFailed = "MCAST6_DB_ReadL2Mc6BdVxlanElb, read l2mc_bd_vxlan_elb object db failed, ret:%u.",
    .writeNull = "MCAST6_DB_WriteL2Mc6BdVxlanElb, l2McBdVxlanElb is null.",
    .writeCreate = "MCAST6_DB_WriteL2Mc6BdVxlanElb, create db object failed, ret:%u.",
    .writeSet = "MCAST6_DB_WriteL2Mc6BdVxlanElb, set_all_fields failed, ret:%u.",
    .writeFailed = "MCAST6_DB_WriteL2Mc6BdVxlanElb, release  object fail, ret:%u.",
    .smoothNull = "MCAST6_DB_UpdateL2Mc6BdVxlanElbSmoothVersion, l2McBdVxlanElbEntry is null.",
    .smoothCreate = "MCAST_DB_UpdateL2McBdVxlanElbSmoothVersion, create db object failed, ret:%u.",
    .smoothSet = "MCAST6_DB_UpdateL2Mc6BdVxlanElbSmoothVersion, set smooth version fail, ret:%u.",
    .smoothFailed = "MCAST_DB_UpdateL2McBdVxlanElbSmoothVersion, update object fail, ret:%u.",
    .removeNull = "MCAST6_DB_DeleteL2Mc6BdVxlanElb, l2McBdVxlanElbEntry is null.",
    .removeCreate = "MCAST6_DB_DeleteL2Mc6BdVxlanElb, create db object failed, ret:%u.",
    .removeFailed = "MCAST6_DB_DeleteL2Mc6BdVxlanElb, remove object fail, ret:%u.",
    .nextFailed = "MCAST6_DB_GetL2Mc6BdVxlanElbEntry, db root iterator next fail, ret:%d.",
    .entryFailed = "MCAST6_DB_GetL2Mc6BdVxlanElbEntry, read obj fail, ret:%d.",
    .iteratorOfAll = "CreateL2Mc6BdVxlanElbIter failed"};

const Tolerated kTolerated = {
    .write = {record(30, 2), dfx(507)}, .smooth = {record(30, 6)}, .remove = {record(30, 1), dfx(509)}};

const Functions kFunctions = {.stamp = MCAST6_DB_SetStructL2Mc6BdVxlanElbTimeStamp,
                              .set = MCAST6_DB_SetL2Mc6BdVxlanElb,
                              .get = MCAST6_DB_GetL2Mc6BdVxlanElb,
                              .createObject = MCAST6_DB_CreateL2Mc6BdVxlanElbObject,
                              .releaseObject = MCAST6_DB_ReleaseL2Mc6BdVxlanElbObject,
                              .read = MCAST6_DB_ReadL2Mc6BdVxlanElb,
                              .write = MCAST6_DB_WriteL2Mc6BdVxlanElb,
                              .updateSmoothVersion = MCAST6_DB_UpdateL2Mc6BdVxlanElbSmoothVersion,
                              .remove = MCAST6_DB_DeleteL2Mc6BdVxlanElb,
                              .getEntry = MCAST6_DB_GetL2Mc6BdVxlanElbEntry,
                              .createIterator = MCAST6_DB_CreateL2Mc6BdVxlanElbIterator,
                              .createIteratorOfAll = MCAST6_DB_CreateL2Mc6BdVxlanElbIter,
                              .releaseIterator = MCAST6_DB_ReleaseL2Mc6BdVxlanElbIterator};

BdEgress& family();

std::vector<Filter> filters() {
    return {
        overEntry("iteratorOfAnEntry", MCAST6_DB_CreateL2Mc6BdVxlanElbMcidIterator),
        overEntry("iteratorBySourceIsThatOfAnEntry", MCAST6_DB_CreateL2Mc6BdVxlanElbsourceIterator),
        {"iteratorByTunnelIgnoresItsSecondArgument",
         [] { return MCAST6_DB_CreateL2mcv6ElbIterByVxlanTnl(0x11121314, 0x2122232425262728, 0x31323334, 0x41424344); },
         keyOf("0209000c", "14131211 34333231 44434241")},
        {"iteratorByIfindexDeclaresTwelveBytes",
         [] { return MCAST6_DB_CreateL2Mc6BdVxlanElbIteratorByIfindex(0x01020304); },
         keyOf("0409000c", "04030201 0000000000000000")},
        {"iteratorByBridgeDomain", [] { return MCAST_DB_CreateL2McBdVxlanElbIteratorByBd(0x11121314, 0x31323334); },
         keyOf("05090008", "14131211 34333231")},
        {"iteratorByTunnelVsg",
         [] { return MCAST6_DB_CreateL2Mc6VxlanElbIterByTnlVsg(0x11121314, 0x21222324, 0x31323334, 0x41424344); },
         keyOf("06090014", "14131211 24232221 34333231 44434241 02000000")},
    };
}

BdEgress& family() {
    static BdEgress family({
        .name = "l2mc6_bd_vxlan_elb",
        .number = 30,
        .rowSize = 204,
        .createStamp = 188,
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

CallExits exitsOfCount() {
    return {
        .createFailed = {egress("[GetL2Mc6BdVxlanElbCountByKey] create elb object fail, ret:%u.", code), returns(1)},
        .failed = {family().released, egress("[GetL2Mc6BdVxlanElbCountByKey] get elb num fail, ret:%u.", code),
                   returns(1)},
        .done = {family().released, returns(0)}};
}

std::vector<Operation> operations() {
    std::vector<Operation> all = family().operations();
    all.push_back(family().table.countByKey(
        "countByKey",
        [](uint32_t* count) {
            const Mcast6DbKeyDesc descriptor{0x05090008, {}};
            const recording::Bytes key = recording::unhex("14131211 34333231");
            return MCAST6_DB_GetL2Mc6BdVxlanElbCountByKey(&descriptor, key.data(), count);
        },
        keyOf("05090008", "14131211 34333231"), exitsOfCount()));
    all.push_back(family().table.countByKey(
        "countByTunnelVsg",
        [](uint32_t* count) {
            const L2McBdVxlanVsgKey key{{0x11121314, 0x21222324, 0x31323334, 0x41424344}};
            return MCAST6_DB_GetL2Mc6BdVxlanElbCountByTnlVsg(&key, count);
        },
        keyOf("06090014", "14131211 24232221 34333231 44434241 02000000"), exitsOfCount()));
    return all;
}

std::vector<Claim> claims() {
    std::vector<Claim> all = family().claims();
    all.push_back(family().toleranceClaim("aWriteOfAPresentRecordReturns0ButIsRecordedAndCountedAsFailed",
                                          MCAST6_DB_WriteL2Mc6BdVxlanElb, "db_write_obj", 507, 506, 2));
    all.push_back(family().toleranceClaim("aRemovalOfAnAbsentRecordReturns0ButCountsAsFailed",
                                          MCAST6_DB_DeleteL2Mc6BdVxlanElb, "db_remove_obj", 509, 508, 1));
    all.push_back({"aFailedCountAnswers1AndNotTheEnginesCode", [] {
                       const L2McBdVxlanVsgKey key{{1, 2, 3, 4}};
                       uint32_t count = 77;
                       recording::Recorder::instance().answer("db_get_table_record_count_by_key", 15005);
                       EXPECT_EQ(1u, MCAST6_DB_GetL2Mc6BdVxlanElbCountByTnlVsg(&key, &count));
                       EXPECT_EQ(77u, count);
                       EXPECT_THAT(g_mcast6DbErrStat[30], testing::Each(0u));
                   }});
    return all;
}

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_vxlan_elb, EveryExit, testing::ValuesIn(operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l2mc6_bd_vxlan_elb, EveryClaim, testing::ValuesIn(claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::bd_egress
