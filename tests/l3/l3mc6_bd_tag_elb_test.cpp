// l3mc6_bd_tag_elb: see bd_egress_family.h for what each operation does. The key ends with the interface and two tags.
// Errors are recorded under table 18.
#include "mcast6_db/l3mc6_bd_tag_elb.h"

#include "tests/l3/bd_egress_family.h"

namespace mcast6::tests::l3_bd_egress {

namespace {

const Mcast6DbHandle cacheAtLoad = g_l3Mc6BdTagElbStatObjCache;
const uint32_t pidAtLoad = g_l3Mc6BdTagElbPid;

const std::string kKey = keyOf("00010034", kVrVrf + kGroup + kSource + kBridgeDomain + "4c4d4e4f 6061 6263");

const std::string kRow =
    "04050607 08090a0b"                             // vrId, vrfId
    "13121110 17161514 1b1a1918 1f1e1d1c"           // groupAddr
    "23222120 27262524 2b2a2928 2f2e2d2c 48494a4b"  // sourceAddr, bdElbAttr4
    "4c4d4e4f 6061 6263 54 eb"                      // bdElbAttr5, bdElbAttr7, bdElbAttr8, bdElbAttr6, bdElbAttr19
    "ec __ 78797a7b"                                // bdElbAttr18, gap, bdElbAttr9
    "7c7d7e7f f4f5f6f7 30313233 38393a3b3c3d3e3f"   // bdElbAttr10, bdElbAttr16, bdElbAttr1, bdElbAttr2
    "40414243 e0e1e2e3 e4e5e6e7 e8e9eaeb"           // bdElbAttr3, appSrcPid, bdElbAttr14, smoothVersion
    "ec ed eeef"                                    // mlagRole, isMlagDual, inIfhasMlag
    "9c9d9e9fa0a1a2a3a4a5a6a7a8a9aaabacadaeafb0b1b2b3b4b5b6b7"  // bdElbAttr11
    "d4d5d6d7d8d9dadb dcdddedf f0f1 f8f9"                       // bdElbAttr12, bdElbAttr13, bdElbAttr15, bdElbAttr17
    "00f1536500000000 00f1536500000000";                        // timeStampCreate, timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "12000000"},                              // elbKind, a constant
                   {4, "fffefdfc"},                              // vrId
                   {8, "fbfaf9f8"},                              // vrfId
                   {12, "02000000"},                             // addrType, a constant
                   {16, "f4f5f6f7 f0f1f2f3 ecedeeef e8e9eaeb"},  // groupAddr
                   {32, "e4e5e6e7 e0e1e2e3 dcdddedf d8d9dadb"},  // sourceAddr
                   {48, "bbbab9b8"},                             // bdElbAttr1
                   {56, "b7b6b5b4b3b2b1b0"},                     // bdElbAttr2
                   {64, "afaeadac"},                             // bdElbAttr3
                   {68, "01000000"},                             // fixedOne, a constant
                   {72, "d7d6d5d4"},                             // bdElbAttr4
                   {76, "d3d2d1d0"},                             // bdElbAttr5
                   {84, "cb00"},                                 // bdElbAttr6 and the byte after it
                   {92, "02000000"},                             // elbSubKind, a constant
                   {96, "cfce"},                                 // bdElbAttr7
                   {98, "cdcc"},                                 // bdElbAttr8
                   {120, "c7c6c5c4"},                            // bdElbAttr9
                   {124, "c3c2c1c0"},                            // bdElbAttr10
                   {156, "9b9a999897969594939291908f8e8d8c8b8a89888786858483828180"},  // bdElbAttr11
                   {212, "7f7e7d7c7b7a7978"},                                          // bdElbAttr12
                   {220, "77767574"},                                                  // bdElbAttr13
                   {224, "abaaa9a8"},                                                  // appSrcPid
                   {228, "a7a6a5a4"},                                                  // bdElbAttr14
                   {232, "a3a2a1a0"},                                                  // smoothVersion
                   {236, "9f"},                                                        // mlagRole
                   {237, "9e"},                                                        // isMlagDual
                   {238, "9d9c"},                                                      // inIfhasMlag
                   {240, "7372"},                                                      // bdElbAttr15
                   {244, "bfbebdbc"},                                                  // bdElbAttr16
                   {248, "7170"},                                                      // bdElbAttr17
                   {256, "6f6e6d6c6b6a6968"},                                          // timeStampCreate
                   {264, "6766656463626160"},                                          // timeStampSmooth
                   {275, "c9"},                                                        // bdElbAttr18
                   {276, "ca000000"},                                                  // bdElbAttr19
               });
}

BdEgress& family() {
    static BdEgress family(
        {
            .name = "l3mc6_bd_tag_elb",
            .number = 18,
            .rowSize = 160,
            .createStamp = 144,
            .key = kKey,
            .row = kRow,
            .readStored = readStored,
            .smoothSetters =
                {{"smoothVersion", 0xEBEAE9E8}, {"mlagRole", 0xEC}, {"isMlagDual", 0xED}, {"inIfhasMlag", 0xEFEE}},
            .counters = {.created = 322, .released = 323},
            .kpis = {.written = 188,
                     .writeFailed = 189,
                     .removed = 190,
                     .removeFailed = 191,
                     .createFailed = 192,
                     .iteratorFailed = 193},
            .messages =
                {
                    .readNull = "MCAST6_DB_ReadL3McBdTagElb, elbEntry is null.",
                    .readCreate = "MCAST6_DB_ReadL3McBdTagElb, create db object failed, ret:%u.",
                    .readFailed = "MCAST6_DB_ReadL3McBdTagElb, read l3mc6_bd_tag_elb object db failed, ret:%u.",
                    .writeNull = "MCAST6_DB_WriteL3McBdTagElb, l3McBdTagElb is null.",
                    .writeCreate = "MCAST6_DB_WriteL3McBdTagElb, create db object failed, ret:%u.",
                    .writeFailed = "MCAST6_DB_WriteL3McBdTagElb, release db object fail, ret:%u.",
                    .smoothNull = "MCAST6_DB_UpdateL3McBdTagElbSmoothVersion, elbEntry is null.",
                    .smoothCreate = "MCAST6_DB_UpdateL3McBdTagElbSmoothVersion, create db object failed, ret:%u.",
                    .smoothSet = "MCAST6_DB_UpdateL3McBdTagElbSmoothVersion, set smooth version fail, ret:%u.",
                    .smoothFailed = "MCAST6_DB_UpdateL3McBdTagElbSmoothVersion, release mfibv4 object fail, ret:%u.",
                    .removeNull = "MCAST6_DB_DeleteL3McBdTagElb, elbEntry is null.",
                    .removeCreate = "MCAST6_DB_DeleteL3McBdTagElb, create db object failed, ret:%u.",
                    .removeFailed = "MCAST6_DB_DeleteL3McBdTagElb, release db object fail, ret:%u.",
                    .nextFailed = "MCAST6_DB_GetL3McBdTagElbEntry, db root iterator next fail, ret:%d.",
                    .entryFailed = "MCAST6_DB_GetL3McBdTagElbEntry, read obj fail, ret:%d.",
                },
            .functions =
                {
                    .stamp = MCAST6_DB_SetStructL3McBdTtagElbTimeStamp,
                    .set = MCAST6_DB_SetL3McBdTagElb,
                    .get = MCAST6_DB_GetL3McBdTagElb,
                    .createObject = MCAST6_DB_CreateL3McBdTagElbObject,
                    .releaseObject = MCAST6_DB_ReleaseL3McBdTagElbObject,
                    .read = MCAST6_DB_ReadL3McBdTagElb,
                    .write = MCAST6_DB_WriteL3McBdTagElb,
                    .updateSmoothVersion = MCAST6_DB_UpdateL3McBdTagElbSmoothVersion,
                    .remove = MCAST6_DB_DeleteL3McBdTagElb,
                    .getEntry = MCAST6_DB_GetL3McBdTagElbEntry,
                    .createIterator = MCAST6_DB_CreateL3McBdTagElbIter,
                    .createIteratorOfAll = MCAST6_DB_CreateL3McBdTagElbAllIter,
                    .releaseIterator = MCAST6_DB_ReleaseL3McBdTagElbIterator,
                },
            .filters =
                {
                    overEntry<Entry>(MCAST6_DB_CreateL3McBdTagElbCreateVSGIterator),
                    {"iteratorByBridgeDomain",
                     [](const Entry&) { return MCAST6_DB_CreateL3McBdTagElbVrBdIter(0x01020304, 0x05060708); },
                     keyOf("02090008", "04030201 08070605")},
                    {"iteratorByVrAndInterface",
                     [](const Entry&) { return MCAST6_DB_CreateL3McBdTagElbIterByVrIdIfIndex(0x01020304, 0x05060708); },
                     keyOf("03090008", "04030201 08070605")},
                    {"iteratorBySrcPid",
                     [](const Entry& entry) { return MCAST6_DB_CreateL3McBdTagElbIterBySrcPid(&entry); }, kBySrcPid},
                    {"iteratorByMfibEntry",
                     [](const Entry& entry) { return MCAST6_DB_CreateL3McBdTagElbMfibIter(&entry); }, kByMfib},
                    {"iteratorByInterface",
                     [](const Entry&) { return MCAST6_DB_CreateL3McBdTagElbIterByIfIndex(0x01020304); },
                     keyOf("06090004", "04030201")},
                },
        },
        "MCAST6_DB_WriteL3McBdTagElb, set_all_fields failed, ret:%u.");
    return family;
}

std::vector<Operation> operations() {
    std::vector<Operation> all = family().operations();
    for (Operation& count : family().fastCounts(MCAST6_DB_GetL3McBdTagElbCountFast, g_l3Mc6BdTagElbStatObjCache)) {
        all.push_back(std::move(count));
    }
    return all;
}

std::vector<Claim> claims() {
    std::vector<Claim> all = family().claims();
    all.push_back(family().fastCountClaim(MCAST6_DB_GetL3McBdTagElbCountFast));
    all.push_back(family().pidClaim(g_l3Mc6BdTagElbPid, operations()));
    all.push_back({"atLoadItsProcessWideDataIs0", [] {
                       EXPECT_EQ(0u, cacheAtLoad);
                       EXPECT_EQ(0u, pidAtLoad);
                   }});
    return all;
}

INSTANTIATE_TEST_SUITE_P(l3mc6_bd_tag_elb, EveryExit, testing::ValuesIn(operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l3mc6_bd_tag_elb, EveryClaim, testing::ValuesIn(claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::l3_bd_egress
