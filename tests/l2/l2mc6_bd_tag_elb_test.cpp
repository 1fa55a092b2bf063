// l2mc6_bd_tag_elb: see bd_egress_family.h for what each operation does. Differences: on 13044 a write returns 0 but
// counts as failed; a smooth-version update and a removal treat it as success. Errors are recorded under table 21.
#include "mcast6_db/l2mc6_bd_tag_elb.h"

#include "tests/l2/bd_egress_family.h"

namespace mcast6::tests::bd_egress {

namespace {

const std::string kKey = keyOf("00010030", kVr + kBd + kGroup + kSource + "34353637 6465 6667");

const std::string kRow =
    "00010203 30313233"                                         // vrId, bdId
    "0f0e0d0c 13121110 17161514 1b1a1918"                       // groupAddr
    "1f1e1d1c 23222120 27262524 2b2a2928"                       // sourceAddr
    "34353637 6465 6667 04050607"                               // outIfIndex, tagVid1, tagVid2, vrfId
    "5859 5a5b 75"                                              // fwdIfExtType, fwdIfKind, isSelfBoard
    "76 ____ 8c8d8e8f 90919293 40414243"                        // elbByte1, padding, egressAttr, pathFlags, mcId
    "48494a4b4c4d4e4f 50515253 94959697"                        // mcidVersion, mfibVersion, appSrcPid
    "98999a9b 9c9d9e9f bbbab9b8 b7b6b5b4"                       // appVersion, smoothVersion, elbWord1, elbWord2
    "a0a1a2a3a4a5a6a7a8a9aaabacadaeaf"                          // elbData1
    "b0b1b2b3b4b5b6b7b8b9babbbcbdbebfc0c1c2c3c4c5c6c7c8c9cacb"  // svcCtxHighPrio
    "e8e9eaebecedeeeff0f1f2f3"                                  // svcCtxNormalPrio
    "f4f5 f6f7 00f1536500000000"                                // serviceStatus, errCode, timeStampCreate
    "00f1536500000000";                                         // timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "fffefdfc"},                              // vrId
                   {4, "cfcecdcc"},                              // vrfId
                   {8, "02000000"},                              // addrType, a constant
                   {12, "f4f5f6f7 f0f1f2f3 ecedeeef e8e9eaeb"},  // groupAddr
                   {28, "e4e5e6e7 e0e1e2e3 dcdddedf d8d9dadb"},  // sourceAddr
                   {44, "01000000"},                             // domainType, a constant
                   {48, "fbfaf9f8"},                             // bdId
                   {52, "d7d6d5d4"},                             // outIfIndex
                   {64, "bbbab9b8"},                             // mcId
                   {72, "b7b6b5b4b3b2b1b0"},                     // mcidVersion
                   {80, "afaeadac"},                             // mfibVersion
                   {84, "c9c8"},                                 // fwdIfType, which is fwdIfKind
                   {88, "cbca"},                                 // fwdIfExtType
                   {90, "c9c8"},                                 // fwdIfKind
                   {92, "02000000 07000000"},                    // fixedWord1, fixedWord2, constants
                   {100, "d3d2"},                                // tagVid1
                   {102, "d1d0"},                                // tagVid2
                   {117, "c7"},                                  // isSelfBoard
                   {118, "c6"},                                  // elbByte1
                   {140, "c3c2c1c0"},                            // egressAttr
                   {144, "bfbebdbc"},                            // pathFlags
                   {148, "abaaa9a8"},                            // appSrcPid
                   {152, "a7a6a5a4"},                            // appVersion
                   {156, "a3a2a1a0"},                            // smoothVersion
                   {160, "97969594939291908f8e8d8c8b8a8988"},    // elbData1
                   {176, "87868584838281807f7e7d7c7b7a797877767574737271706f6e6d6c"},  // svcCtxHighPrio
                   {232, "6b6a69686766656463626160"},                                  // svcCtxNormalPrio
                   {244, "5f5e"},                                                      // serviceStatus
                   {246, "5d5c"},                                                      // errCode
                   {248, "5b5a595857565554"},                                          // timeStampCreate
                   {256, "535251504f4e4d4c"},                                          // timeStampSmooth
                   {324, "9f9e9d9c"},                                                  // elbWord1
                   {328, "9b9a9998"},                                                  // elbWord2
               });
}

const Counters kCounters = {.createFailed = 335,
                            .created = 336,
                            .released = 337,
                            .written = 338,
                            .writeFailed = 339,
                            .removed = 340,
                            .removeFailed = 341,
                            .iteratorFailed = 342};

const Messages kMessages = {.readNull = "MCAST6 DB] read l2mc bd tag elb failed, para is null.",
                            .readCreate = "[MCAST6 DB] create l2mc bd tag elb obj failed, ret:%u.",
                            .readFailed = "[MCAST6 DB]read l2mc bd tag elb object db failed, ret:%u.",
                            .writeNull = "[MCAST6 DB] write l2mc bd tag elb failed, para is null.",
                            .writeCreate = "[MCAST6 DB] create l2mc bd tag elb object failed, ret:%u.",
                            .writeSet = "[MCAST6 DB] write l2mc bd tag elb, set all fields fail, ret:%u.",
                            .writeFailed = "[MCAST6 DB], write l2mc bd tag elb object fail, ret:%u.",
                            .smoothNull = "[MCAST6 DB]upd smooth version, para is null.",
                            .smoothCreate = "[MCAST6 DB]upd smooth version, create l2 bd tag object failed, ret:%u.",
                            .smoothSet = "[MCAST6 DB]l2 bd tag elb, set smooth version fail, ret:%u.",
                            .smoothFailed = "[MCAST6 DB]upd smooth version, update l2 bd tag elb object fail, ret:%u.",
                            .removeNull = "[MCAST6 DB]delete l2 bd tag elb failed, para is null.",
                            .removeCreate = "[MCAST6 DB]del l2 bd tag elb, create db object failed, ret:%u.",
                            .removeFailed = "[MCAST6 DB]del l2 bd tag elb, remove object fail, ret:%u.",
                            .nextFailed = "get l2 bd tag elb, db root iterator next failed, ret:%d.",
                            .entryFailed = "[MCAST6 DB]get l2 bd tag elb, read obj failed, ret:%d.",
                            .iteratorOfAll = "[MCAST6 DB]create l2mc bd tag elb iter failed."};

const Tolerated kTolerated = {
    .write = {record(21, 1), dfx(339)}, .smooth = {record(21, 1)}, .remove = {record(21, 1), dfx(340)}};

const Functions kFunctions = {.stamp = MCAST6_DB_SetStructL2McBdTagElbTimeStamp,
                              .set = MCAST6_DB_SetL2McBdTagElb,
                              .get = MCAST6_DB_GetL2McBdTagElb,
                              .createObject = MCAST6_DB_CreateL2McBdTagElbObject,
                              .releaseObject = MCAST6_DB_ReleaseL2McBdTagElbObject,
                              .read = MCAST6_DB_ReadL2McBdTagElb,
                              .write = MCAST6_DB_WriteL2McBdTagElb,
                              .updateSmoothVersion = MCAST6_DB_UpdateL2McBdTagElbSmoothVersion,
                              .remove = MCAST6_DB_DeleteL2McBdTagElb,
                              .getEntry = MCAST6_DB_GetL2McBdTagElbEntry,
                              .createIterator = MCAST6_DB_CreateL2McBdTagElbIter,
                              .createIteratorOfAll = MCAST6_DB_CreateL2BdTagElbIter,
                              .releaseIterator = MCAST6_DB_ReleaseL2BdTagElbIter};

BdEgress& family();

std::vector<Filter> filters() {
    return {
        {"iteratorBySrcPid", [] { return MCAST6_DB_CreateL2McBdTagElbIterBySrcPid(&family().table.record); },
         keyOf("0309000c", kVr + kVrf + "94959697")},
        {"iteratorByIfindex", [] { return MCAST6_DB_CreateL2McBdTagElbIterByIfindex(0x01020304); },
         keyOf("02090004", "04030201")},
        overEntry("iteratorOfAnEntry", MCAST6_DB_CreateL2McBdTagElbMcidIter),
        overEntry("iteratorBySourceIsThatOfAnEntry", MCAST6_DB_CreateL2McBdTagElbSourceIter),
    };
}

BdEgress& family() {
    static BdEgress family({
        .name = "l2mc6_bd_tag_elb",
        .number = 21,
        .rowSize = 180,
        .createStamp = 164,
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
    all.push_back(family().keyClaim(MCAST6_DB_SetL2McBdTagElbKey));
    all.push_back(family().toleranceClaim("aWriteOfAPresentRecordReturns0ButCountsAsFailed",
                                          MCAST6_DB_WriteL2McBdTagElb, "db_write_obj", 339, 338, 1));
    all.push_back({"membersThatDifferInOneTagHaveDifferentKeys", [] {
                       Entry entry = family().table.sample();
                       uint32_t keyWord = 0;
                       recording::Bytes key(48);
                       entry.tagVid1 = 0x0102;
                       MCAST6_DB_SetL2McBdTagElbKey(&keyWord, key.data(), &entry);
                       EXPECT_EQ("02016667", recording::hex(std::span(key).subspan(44)));
                       entry.tagVid2 = 0x0304;
                       MCAST6_DB_SetL2McBdTagElbKey(&keyWord, key.data(), &entry);
                       EXPECT_EQ("02010403", recording::hex(std::span(key).subspan(44)));
                   }});
    return all;
}

INSTANTIATE_TEST_SUITE_P(l2mc6_bd_tag_elb, EveryExit, testing::ValuesIn(family().operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l2mc6_bd_tag_elb, EveryClaim, testing::ValuesIn(claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::bd_egress
