// l3mc6_bd_untag_elb: see bd_egress_family.h for what each operation does. It has no tags, and no process id.
// Errors are recorded under table 19.
#include "mcast6_db/l3mc6_bd_untag_elb.h"

#include "tests/l3/bd_egress_family.h"

namespace mcast6::tests::l3_bd_egress {

namespace {

const Mcast6DbHandle cacheAtLoad = g_l3Mc6BdUnTagElbStatObjCache;

const std::string kKey = keyOf("00010030", kVrVrf + kGroup + kSource + kBridgeDomain + "4c4d4e4f");

const std::string kRow =
    "04050607 08090a0b"                             // vrId, vrfId
    "13121110 17161514 1b1a1918 1f1e1d1c"           // groupAddr
    "23222120 27262524 2b2a2928 2f2e2d2c 48494a4b"  // sourceAddr, bdElbAttr4
    "4c4d4e4f 54 eb ec __"                          // bdElbAttr5, bdElbAttr6, bdElbAttr19, bdElbAttr18, gap
    "78797a7b 7c7d7e7f"                             // bdElbAttr9, bdElbAttr10
    "f4f5f6f7 30313233 38393a3b3c3d3e3f ec ed"      // bdElbAttr16, bdElbAttr1, bdElbAttr2, mlagRole, isMlagDual
    "eeef 40414243 e0e1e2e3 e4e5e6e7 e8e9eaeb"      // inIfhasMlag, bdElbAttr3, appSrcPid, bdElbAttr14, smoothVersion
    "9c9d9e9fa0a1a2a3a4a5a6a7a8a9aaabacadaeafb0b1b2b3b4b5b6b7"  // bdElbAttr11
    "d4d5d6d7d8d9dadb dcdddedf f0f1 f8f9"                       // bdElbAttr12, bdElbAttr13, bdElbAttr15, bdElbAttr17
    "00f1536500000000 00f1536500000000";                        // timeStampCreate, timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "11000000"},                              // elbKind, a constant
                   {4, "fffefdfc"},                              // vrId
                   {8, "fbfaf9f8"},                              // vrfId
                   {12, "02000000"},                             // addrType, a constant
                   {16, "f4f5f6f7 f0f1f2f3 ecedeeef e8e9eaeb"},  // groupAddr
                   {32, "e4e5e6e7 e0e1e2e3 dcdddedf d8d9dadb"},  // sourceAddr
                   {48, "bfbebdbc"},                             // bdElbAttr1
                   {56, "bbbab9b8b7b6b5b4"},                     // bdElbAttr2
                   {64, "afaeadac"},                             // bdElbAttr3
                   {68, "01000000"},                             // fixedOne, a constant
                   {72, "d7d6d5d4"},                             // bdElbAttr4
                   {76, "d3d2d1d0"},                             // bdElbAttr5
                   {84, "cf00"},                                 // bdElbAttr6 and the byte after it
                   {92, "01000000"},                             // elbSubKind, a constant
                   {120, "cbcac9c8"},                            // bdElbAttr9
                   {124, "c7c6c5c4"},                            // bdElbAttr10
                   {156, "9f9e9d9c9b9a999897969594939291908f8e8d8c8b8a898887868584"},  // bdElbAttr11
                   {212, "838281807f7e7d7c"},                                          // bdElbAttr12
                   {220, "7b7a7978"},                                                  // bdElbAttr13
                   {224, "abaaa9a8"},                                                  // appSrcPid
                   {228, "a7a6a5a4"},                                                  // bdElbAttr14
                   {232, "a3a2a1a0"},                                                  // smoothVersion
                   {236, "b3"},                                                        // mlagRole
                   {237, "b2"},                                                        // isMlagDual
                   {238, "b1b0"},                                                      // inIfhasMlag
                   {240, "7776"},                                                      // bdElbAttr15
                   {244, "c3c2c1c0"},                                                  // bdElbAttr16
                   {248, "7574"},                                                      // bdElbAttr17
                   {256, "737271706f6e6d6c"},                                          // timeStampCreate
                   {264, "6b6a696867666564"},                                          // timeStampSmooth
                   {275, "cd"},                                                        // bdElbAttr18
                   {276, "ce000000"},                                                  // bdElbAttr19
               });
}

BdEgress& family() {
    static BdEgress family(
        {
            .name = "l3mc6_bd_untag_elb",
            .number = 19,
            .rowSize = 156,
            .createStamp = 140,
            .key = kKey,
            .row = kRow,
            .readStored = readStored,
            .smoothSetters =
                {{"smoothVersion", 0xEBEAE9E8}, {"mlagRole", 0xEC}, {"isMlagDual", 0xED}, {"inIfhasMlag", 0xEFEE}},
            .counters = {.created = 324, .released = 325},
            .kpis = {.written = 194,
                     .writeFailed = 195,
                     .removed = 196,
                     .removeFailed = 197,
                     .createFailed = 198,
                     .iteratorFailed = 199},
            .messages =
                {
                    .readNull = "MCAST6_DB_ReadL3McBdUntagElb, elbEntry is null.",
                    .readCreate = "MCAST6_DB_ReadL3McBdUntagElb, create db object failed, ret:%u.",
                    .readFailed = "MCAST6_DB_ReadL3McBdUntagElb, read l3mc6_bd_untag_elb object db failed, ret:%u.",
                    .writeNull = "MCAST6_DB_WriteL3McBdUntagElb, elbEntry is null.",
                    .writeCreate = "MCAST6_DB_WriteL3McBdUntagElb, create db object failed, ret:%u.",
                    .writeFailed = "MCAST6_DB_WriteL3McBdUntagElb, release db object fail, ret:%u.",
                    .smoothNull = "MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion, elbEntry is null.",
                    .smoothCreate = "MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion, create db object failed, ret:%u.",
                    .smoothSet = "MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion, set smooth version fail, ret:%u.",
                    .smoothFailed = "MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion, release mfibv4 object fail, ret:%u.",
                    .removeNull = "MCAST6_DB_DeleteL3McBdUntagElb, elbEntry is null.",
                    .removeCreate = "MCAST6_DB_DeleteL3McBdUntagElb, create db object failed, ret:%u.",
                    .removeFailed = "MCAST6_DB_DeleteL3McBdUntagElb, release db object fail, ret:%u.",
                    .nextFailed = "MCAST6_DB_GetL3McBdUntagElbEntry, db root iterator next fail, ret:%d.",
                    .entryFailed = "MCAST6_DB_GetL3McBdUntagElbEntry, read obj fail, ret:%d.",
                },
            .functions =
                {
                    .stamp = MCAST6_DB_SetStructL3McBdUntagElbTimeStamp,
                    .set = MCAST6_DB_SetL3McBdUntagElb,
                    .get = MCAST6_DB_GetL3McBdUntagElb,
                    .createObject = MCAST6_DB_CreateL3McBdUntagElbObject,
                    .releaseObject = MCAST6_DB_ReleaseL3McBdUntagElbObject,
                    .read = MCAST6_DB_ReadL3McBdUntagElb,
                    .write = MCAST6_DB_WriteL3McBdUntagElb,
                    .updateSmoothVersion = MCAST6_DB_UpdateL3McBdUntagElbSmoothVersion,
                    .remove = MCAST6_DB_DeleteL3McBdUntagElb,
                    .getEntry = MCAST6_DB_GetL3McBdUntagElbEntry,
                    .createIterator = MCAST6_DB_CreateL3McBdUntagElbIter,
                    .createIteratorOfAll = MCAST6_DB_CreateL3McBdUntagElbAllIter,
                    .releaseIterator = MCAST6_DB_ReleaseL3McBdUntagElbIterator,
                },
            .filters =
                {
                    overEntry<Entry>(MCAST6_DB_CreateL3McBdUntagElbCreateVSGIterator),
                    {"iteratorByBridgeDomain",
                     [](const Entry&) { return MCAST6_DB_CreateL3McBdUntagElbVrBdIter(0x01020304, 0x05060708); },
                     keyOf("02090008", "04030201 08070605")},
                    {"iteratorByVrAndInterface",
                     [](const Entry&) {
                         return MCAST6_DB_CreateL3McBdUntagElbIterByVrIdIfIndex(0x01020304, 0x05060708);
                     },
                     keyOf("03090008", "04030201 08070605")},
                    {"iteratorBySrcPid",
                     [](const Entry& entry) { return MCAST6_DB_CreateL3McBdUntagElbIterBySrcPid(&entry); }, kBySrcPid},
                    {"iteratorByMfibEntry",
                     [](const Entry& entry) { return MCAST6_DB_CreateL3McBdUntagElbMfibIter(&entry); }, kByMfib},
                    {"iteratorByInterface",
                     [](const Entry&) { return MCAST6_DB_CreateL3McBdUntagElbIfindexIter(0x01020304); },
                     keyOf("06090004", "04030201")},
                },
        },
        "MCAST6_DB_WriteL3McBdUntagElb, set_all_fields failed, ret:%u.");
    return family;
}

std::vector<Operation> operations() {
    std::vector<Operation> all = family().operations();
    for (Operation& count : family().fastCounts(MCAST6_DB_GetL3McBdUntagElbCountFast, g_l3Mc6BdUnTagElbStatObjCache)) {
        all.push_back(std::move(count));
    }
    return all;
}

std::vector<Claim> claims() {
    std::vector<Claim> all = family().claims();
    all.push_back(family().fastCountClaim(MCAST6_DB_GetL3McBdUntagElbCountFast));
    all.push_back({"atLoadItsProcessWideDataIs0", [] { EXPECT_EQ(0u, cacheAtLoad); }});
    return all;
}

INSTANTIATE_TEST_SUITE_P(l3mc6_bd_untag_elb, EveryExit, testing::ValuesIn(operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l3mc6_bd_untag_elb, EveryClaim, testing::ValuesIn(claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::l3_bd_egress
