// l2mc6_bd_untag_elb: see bd_egress_family.h for what each operation does. Differences: all changes treat 13044 as
// success; a step with a null handle and a record prints a debug line with the record's addresses. Errors are recorded
// under table 22.
#include "mcast6_db/l2mc6_bd_untag_elb.h"

#include "tests/l2/bd_egress_family.h"

namespace mcast6::tests::bd_egress {

namespace {

const std::string kKey = keyOf("0001002c", kVr + kBd + kGroup + kSource + "34353637");

const std::string kRow =
    "00010203 30313233"                                         // vrId, bdId
    "0f0e0d0c 13121110 17161514 1b1a1918"                       // groupAddr
    "1f1e1d1c 23222120 27262524 2b2a2928"                       // sourceAddr
    "34353637 04050607 5859 5a5b"                               // outIfIndex, vrfId, fwdIfExtType, fwdIfKind
    "75 76 ____"                                                // isSelfBoard, elbByte1, padding
    "90919293 40414243 8c8d8e8f"                                // pathFlags, mcId, egressAttr
    "48494a4b4c4d4e4f 50515253 94959697"                        // mcidVersion, mfibVersion, appSrcPid
    "98999a9b 9c9d9e9f"                                         // appVersion, smoothVersion
    "b0b1b2b3b4b5b6b7b8b9babbbcbdbebfc0c1c2c3c4c5c6c7c8c9cacb"  // svcCtxHighPrio
    "e8e9eaebecedeeeff0f1f2f3"                                  // svcCtxNormalPrio
    "f4f5 f6f7 00f1536500000000"                                // serviceStatus, errCode, timeStampCreate
    "00f1536500000000";                                         // timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "fffefdfc"},                              // vrId
                   {4, "d3d2d1d0"},                              // vrfId
                   {8, "02000000"},                              // addrType, a constant
                   {12, "f4f5f6f7 f0f1f2f3 ecedeeef e8e9eaeb"},  // groupAddr
                   {28, "e4e5e6e7 e0e1e2e3 dcdddedf d8d9dadb"},  // sourceAddr
                   {44, "01000000"},                             // domainType, a constant
                   {48, "fbfaf9f8"},                             // bdId
                   {52, "d7d6d5d4"},                             // outIfIndex
                   {64, "c3c2c1c0"},                             // mcId
                   {72, "bbbab9b8b7b6b5b4"},                     // mcidVersion
                   {80, "b3b2b1b0"},                             // mfibVersion
                   {84, "cdcc"},                                 // fwdIfType, which is fwdIfKind
                   {88, "cfce"},                                 // fwdIfExtType
                   {90, "cdcc"},                                 // fwdIfKind
                   {92, "01000000 08000000"},                    // fixedWord1, fixedWord2, constants
                   {117, "cb"},                                  // isSelfBoard
                   {118, "ca"},                                  // elbByte1
                   {140, "bfbebdbc"},                            // egressAttr
                   {144, "c7c6c5c4"},                            // pathFlags
                   {148, "afaeadac"},                            // appSrcPid
                   {152, "abaaa9a8"},                            // appVersion
                   {156, "a7a6a5a4"},                            // smoothVersion
                   {176, "a3a2a1a09f9e9d9c9b9a999897969594939291908f8e8d8c8b8a8988"},  // svcCtxHighPrio
                   {232, "87868584838281807f7e7d7c"},                                  // svcCtxNormalPrio
                   {244, "7b7a"},                                                      // serviceStatus
                   {246, "7978"},                                                      // errCode
                   {248, "7776757473727170"},                                          // timeStampCreate
                   {256, "6f6e6d6c6b6a6968"},                                          // timeStampSmooth
               });
}

const Counters kCounters = {.createFailed = 343,
                            .created = 344,
                            .released = 345,
                            .written = 346,
                            .writeFailed = 347,
                            .removed = 348,
                            .removeFailed = 349,
                            .iteratorFailed = 350};

const Messages kMessages = {
    .readNull = "[MCAST6 DB]read l2 bd untag elb, para is null.",
    .readCreate = "[MCAST6 DB]create l2 bd untag elb db object failed, ret:%u.",
    .readFailed = "[MCAST6 DB]read l2 bd untag elb object db failed, ret:%u.",
    .writeNull = "[MCAST6 DB]write l2 bd untag elb, para is null.",
    .writeCreate = "[MCAST6 DB]write l2 bd untag elb, create db object failed, ret:%u.",
    .writeSet = "[MCAST6 DB]write l2 bd untag elb, set all fields failed, ret:%u.",
    .writeFailed = "[MCAST6 DB]write l2 bd untag elb, release db object fail, ret:%u.",
    .smoothNull = "[MCAST6 DB]upd smooth version, para is null.",
    .smoothCreate = "[MCAST6 DB]upd smooth version, create l2 bd untag elb object failed, ret:%u.",
    .smoothSet = "[MCAST6 DB]l2 bd untag elb set smooth version failed, ret:%u.",
    .smoothFailed = "[MCAST6 DB]upd smooth version, upd l2 bd untag elb object failed, ret:%u.",
    .removeNull = "[MCAST6 DB]del l2 bd untag elb, para is null.",
    .removeCreate = "[MCAST6 DB]del l2 bd untag elb, create object failed, ret:%u.",
    .removeFailed = "[MCAST6 DB]del l2 bd untag elb, remove obj db failed, ret:%u.",
    .nextFailed = "[MCAST6 DB]get l2 bd untag elb, db root iterator next failed, ret:%d.",
    .entryFailed = "[MCAST6 DB]get l2 bd untag elb, read obj failed, ret:%d.",
    .iteratorOfAll = "[MCAST6 DB]l2 bd untag elb create iterator failed"};

const Tolerated kTolerated = {
    .write = {record(22, 1), dfx(346)}, .smooth = {record(22, 1)}, .remove = {record(22, 1), dfx(348)}};

const Functions kFunctions = {.stamp = MCAST6_DB_SetStructL2McBdUntagElbTimeStamp,
                              .set = MCAST6_DB_SetL2McBdUntagElb,
                              .get = MCAST6_DB_GetL2McBdUntagElb,
                              .createObject = MCAST6_DB_CreateL2McBdUntagElbObject,
                              .releaseObject = MCAST6_DB_ReleaseL2McBdUntagElbObject,
                              .read = MCAST6_DB_ReadL2McBdUntagElb,
                              .write = MCAST6_DB_WriteL2McBdUntagElb,
                              .updateSmoothVersion = MCAST6_DB_UpdateL2McBdUntagElbSmoothVersion,
                              .remove = MCAST6_DB_DeleteL2McBdUntagElb,
                              .getEntry = MCAST6_DB_GetL2McBdUntagElbEntry,
                              .createIterator = MCAST6_DB_CreateL2McBdUntagElbIterator,
                              .createIteratorOfAll = MCAST6_DB_CreateL2BdUntagElbIter,
                              .releaseIterator = MCAST6_DB_ReleaseL2BdUntagElbIter};

BdEgress& family();

std::vector<Filter> filters() {
    return {
        {"iteratorBySrcPid", [] { return MCAST6_DB_CreateL2McBdUntagElbIterBySrcPid(&family().table.record); },
         keyOf("0309000c", kVr + kVrf + "94959697")},
        {"iteratorByIfindex", [] { return MCAST6_DB_CreateL2McBdUntagElbIterByIfindex(0x01020304); },
         keyOf("02090004", "04030201")},
        overEntry("iteratorOfAnEntry", MCAST6_DB_CreateL2McBdUntagElbMcidIterator),
        overEntry("iteratorBySourceIsThatOfAnEntry", MCAST6_DB_CreateL2McBdUntagElbSourceIterator),
    };
}

BdEgress& family() {
    static BdEgress family({
        .name = "l2mc6_bd_untag_elb",
        .number = 22,
        .rowSize = 152,
        .createStamp = 136,
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

// A null iterator with a record prints a debug line.
std::vector<Operation> operations() {
    std::vector<Operation> all = family().operations();
    for (Operation& operation : all) {
        if (operation.name != "getEntry") continue;
        operation.nulls.front().effects = {
            line("debug 0 0 4 \"[MCAST6 DB]get l2 bd untag elb entry, handle is null, "
                 "src = 0x1F1E:1D1C:2322:2120:2726:2524:2B2A:2928, grp = 0x0F0E:0D0C:1312:1110:1716:1514:1B1A:1918.\""),
            returns(1)};
        operation.nulls.push_back(
            {"both", [] { return MCAST6_DB_GetL2McBdUntagElbEntry(nullptr, nullptr); }, {returns(1)}});
    }
    return all;
}

std::vector<Claim> claims() {
    std::vector<Claim> all = family().claims();
    all.push_back(family().toleranceClaim("aWriteOfAPresentRecordReturns0AndCountsAsWritten",
                                          MCAST6_DB_WriteL2McBdUntagElb, "db_write_obj", 346, 347, 1));
    all.push_back({"membersThatDifferInTagsHaveOneKey", [] {
                       Entry entry = family().table.sample();
                       entry.tagVid1 = 0x0102;
                       entry.tagVid2 = 0x0304;
                       EXPECT_EQ(0u, MCAST6_DB_DeleteL2McBdUntagElb(&entry));
                       EXPECT_EQ(recording::Recorder::instance().trace(),
                                 (Trace{"create l2mc6_bd_untag_elb 4 0 -> obj1", "dfx 344", "remove obj1 " + kKey,
                                        "release l2mc6_bd_untag_elb obj1", "dfx 345", "dfx 348"}));
                   }});
    return all;
}

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_untag_elb, EveryExit, testing::ValuesIn(operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l2mc6_bd_untag_elb, EveryClaim, testing::ValuesIn(claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::bd_egress
