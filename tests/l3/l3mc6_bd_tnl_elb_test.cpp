// l3mc6_bd_tnl_elb: see bd_egress_family.h for what each operation does. The key ends with the tunnel. Differences: a
// count by key (object, count: any failure logs and returns 1; the count is written on success only) and the process
// id. Errors are recorded under table 20.
#include "mcast6_db/l3mc6_bd_tnl_elb.h"

#include "tests/l3/bd_egress_family.h"

namespace mcast6::tests::l3_bd_egress {

namespace {

const Mcast6DbHandle cacheAtLoad = g_l3Mc6BdTnlElbStatObjCache;
const uint32_t pidAtLoad = g_l3Mc6BdTnlElbPid;

const std::string kKey = keyOf("00010031", kVrVrf + kGroup + kSource + kBridgeDomain + "6c6d6e6f 72");

const std::string kRow =
    "04050607 08090a0b"                                         // vrId, vrfId
    "13121110 17161514 1b1a1918 1f1e1d1c"                       // groupAddr
    "23222120 27262524 2b2a2928 2f2e2d2c 48494a4b"              // sourceAddr, bdElbAttr4
    "6c6d6e6f 72 ee 54 eb"                                      // tnlAttr2, tnlAttr3, tnlAttr6, bdElbAttr6, bdElbAttr19
    "68696a6b 74757677"                                         // tnlAttr1, tnlAttr4
    "f4f5f6f7 4c4d4e4f 30313233 38393a3b3c3d3e3f"               // bdElbAttr16, bdElbAttr5, bdElbAttr1, bdElbAttr2
    "40414243 e0e1e2e3 e4e5e6e7 e8e9eaeb"                       // bdElbAttr3, appSrcPid, bdElbAttr14, smoothVersion
    "8c8d8e8f909192939495969798999a9b"                          // tnlAttr5
    "9c9d9e9fa0a1a2a3a4a5a6a7a8a9aaabacadaeafb0b1b2b3b4b5b6b7"  // bdElbAttr11
    "d4d5d6d7d8d9dadb dcdddedf f0f1 f8f9"                       // bdElbAttr12, bdElbAttr13, bdElbAttr15, bdElbAttr17
    "00f1536500000000 00f1536500000000";                        // timeStampCreate, timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "13000000"},                              // elbKind, a constant
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
                   {76, "bfbebdbc"},                             // bdElbAttr5
                   {84, "cd00"},                                 // bdElbAttr6 and the byte after it
                   {92, "03000000"},                             // elbSubKind, a constant
                   {104, "cbcac9c8"},                            // tnlAttr1
                   {108, "d3d2d1d0"},                            // tnlAttr2
                   {114, "cf"},                                  // tnlAttr3
                   {116, "c7c6c5c4"},                            // tnlAttr4
                   {140, "9f9e9d9c9b9a99989796959493929190"},    // tnlAttr5
                   {156, "8f8e8d8c8b8a898887868584838281807f7e7d7c7b7a797877767574"},  // bdElbAttr11
                   {212, "737271706f6e6d6c"},                                          // bdElbAttr12
                   {220, "6b6a6968"},                                                  // bdElbAttr13
                   {224, "abaaa9a8"},                                                  // appSrcPid
                   {228, "a7a6a5a4"},                                                  // bdElbAttr14
                   {232, "a3a2a1a0"},                                                  // smoothVersion
                   {240, "6766"},                                                      // bdElbAttr15
                   {244, "c3c2c1c0"},                                                  // bdElbAttr16
                   {248, "6564"},                                                      // bdElbAttr17
                   {256, "636261605f5e5d5c"},                                          // timeStampCreate
                   {264, "5b5a595857565554"},                                          // timeStampSmooth
                   {273, "ce"},                                                        // tnlAttr6
                   {276, "cc000000"},                                                  // bdElbAttr19
               });
}

BdEgress& family() {
    static BdEgress family(
        {
            .name = "l3mc6_bd_tnl_elb",
            .number = 20,
            .rowSize = 172,
            .createStamp = 156,
            .key = kKey,
            .row = kRow,
            .readStored = readStored,
            .smoothSetters = {{"smoothVersion", 0xEBEAE9E8}},
            .counters = {.created = 326, .released = 327},
            .kpis = {.written = 200,
                     .writeFailed = 201,
                     .removed = 202,
                     .removeFailed = 203,
                     .createFailed = 204,
                     .iteratorFailed = 205},
            .messages =
                {
                    .readNull = "MCAST6_DB_ReadL3McBdTnlElb, elbEntry is null.",
                    .readCreate = "MCAST6_DB_ReadL3McBdTnlElb, create db object failed, ret:%u.",
                    .readFailed = "MCAST6_DB_ReadL3McBdTnlElb, read l3mc6_bd_tnl_elb object db failed, ret:%u.",
                    .writeNull = "MCAST6_DB_WriteL3McBdTnlElb, elbEntry is null.",
                    .writeCreate = "MCAST6_DB_WriteL3McBdTnlElb, create db object failed, ret:%u.",
                    .writeFailed = "MCAST6_DB_WriteL3McBdTnlElb, release db object fail, ret:%u.",
                    .smoothNull = "MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion, elbEntry is null.",
                    .smoothCreate = "MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion, create db object failed, ret:%u.",
                    .smoothSet = "MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion, set smooth version fail, ret:%u.",
                    .smoothFailed = "MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion, release mfibv4 object fail, ret:%u.",
                    .removeNull = "MCAST6_DB_DeleteL3McBdTnlElb, elbEntry is null.",
                    .removeCreate = "MCAST6_DB_DeleteL3McBdTnlElb, create db object failed, ret:%u.",
                    .removeFailed = "MCAST6_DB_DeleteL3McBdTnlElb, release db object fail, ret:%u.",
                    .nextFailed = "MCAST6_DB_GetL3McBdTnlElbEntry, db root iterator next fail, ret:%d.",
                    .entryFailed = "MCAST6_DB_GetL3McBdTnlElbEntry, read obj fail, ret:%d.",
                },
            .functions =
                {
                    .stamp = MCAST6_DB_SetStructL3McBdTnlElbTimeStamp,
                    .set = MCAST6_DB_SetL3McBdTnlElb,
                    .get = MCAST6_DB_GetL3McBdTnlElb,
                    .createObject = MCAST6_DB_CreateL3McBdTnlElbObject,
                    .releaseObject = MCAST6_DB_ReleaseL3McBdTnlElbObject,
                    .read = MCAST6_DB_ReadL3McBdTnlElb,
                    .write = MCAST6_DB_WriteL3McBdTnlElb,
                    .updateSmoothVersion = MCAST6_DB_UpdateL3McBdTnlElbSmoothVersion,
                    .remove = MCAST6_DB_DeleteL3McBdTnlElb,
                    .getEntry = MCAST6_DB_GetL3McBdTnlElbEntry,
                    .createIterator = MCAST6_DB_CreateL3McBdTnlElbIter,
                    .createIteratorOfAll = MCAST6_DB_CreateL3McBdTnlElbAllIter,
                    .releaseIterator = MCAST6_DB_ReleaseL3McBdTnlElbIterator,
                },
            .filters =
                {
                    overEntry<Entry>(MCAST6_DB_CreateL3McBdTnlElbCreateVSGIterator),
                    {"iteratorByBridgeDomain",
                     [](const Entry&) { return MCAST6_DB_CreateL3McBdTnlElbVrBdIter(0x01020304, 0x05060708); },
                     keyOf("02090008", "04030201 08070605")},
                    {"iteratorByTunnel",
                     [](const Entry&) {
                         return MCAST6_DB_CreateL3McBdTnlElbIterByVrTnlInfo(0x01020304, 0x05060708, 0x090A0B0C, 0x0D);
                     },
                     keyOf("0309000d", "04030201 08070605 0c0b0a09 0d")},
                    {"iteratorBySrcPid",
                     [](const Entry& entry) { return MCAST6_DB_CreateL3McBdTnlElbIterBySrcPid(&entry); }, kBySrcPid},
                    {"iteratorByMfibEntry",
                     [](const Entry& entry) { return MCAST6_DB_CreateL3McBdTnlElbMfibIter(&entry); }, kByMfib},
                    {"iteratorByInterface",
                     [](const Entry&) { return MCAST6_DB_CreateL3McBdTnlElbIterByIfIndex(0x01020304); },
                     keyOf("06090004", "04030201")},
                },
        },
        "MCAST6_DB_WriteL3McBdTnlElb, set_all_fields failed, ret:%u.");
    return family;
}

std::vector<Operation> operations() {
    std::vector<Operation> all = family().operations();
    for (Operation& count : family().fastCounts(MCAST6_DB_GetL3McBdTnlElbCountFast, g_l3Mc6BdTnlElbStatObjCache)) {
        all.push_back(std::move(count));
    }
    all.push_back(family().countByKey(
        "countByKey",
        [](uint32_t* count) {
            const Mcast6DbKeyDesc descriptor{0x02090008, {}};
            const recording::Bytes key = recording::unhex("0403020108070605");
            return MCAST6_DB_GetL3McBdTnlElbCountByKey(&descriptor, key.data(), count);
        },
        keyOf("02090008", "04030201 08070605"), "[GetL3McBdTnlElbCountByKey] create elb object fail, ret:%u.",
        "[GetL3McBdTnlElbCountByKey] get elb num fail, ret:%u."));
    return all;
}

std::vector<Claim> claims() {
    std::vector<Claim> all = family().claims();
    all.push_back(family().fastCountClaim(MCAST6_DB_GetL3McBdTnlElbCountFast));
    all.push_back(family().pidClaim(g_l3Mc6BdTnlElbPid, operations()));
    all.push_back(family().pidReaderClaim(g_l3Mc6BdTnlElbPid, MCAST6_DB_GetL3McBdTnlElbSourcePid));
    all.push_back({"theMlagMembersAreNotStored", [] {
                       Entry entry = family().table.sample();
                       recording::Bytes before(172);
                       MCAST6_DB_SetL3McBdTnlElb(&entry, before.data());
                       entry.mlagRole ^= 0xFF;
                       entry.isMlagDual ^= 0xFF;
                       entry.inIfhasMlag ^= 0xFFFF;
                       recording::Bytes row(172);
                       MCAST6_DB_SetL3McBdTnlElb(&entry, row.data());
                       EXPECT_EQ(recording::hex(before), recording::hex(row));
                   }});
    all.push_back({"atLoadItsProcessWideDataIs0", [] {
                       EXPECT_EQ(0u, cacheAtLoad);
                       EXPECT_EQ(0u, pidAtLoad);
                   }});
    return all;
}

INSTANTIATE_TEST_SUITE_P(l3mc6_bd_tnl_elb, EveryExit, testing::ValuesIn(operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l3mc6_bd_tnl_elb, EveryClaim, testing::ValuesIn(claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::l3_bd_egress
