// l3mc6_mvpn_tnl_elb: see mvpn_family.h for what each operation does. Errors are recorded under table 28.
#include "mcast6_db/l3mc6_mvpn_tnl_elb.h"

#include "tests/l3/mvpn_family.h"

namespace mcast6::tests::l3_mvpn {

namespace {

const Mcast6DbHandle cacheAtLoad = g_l3Mc6MvpnTnlElbStatObjCache;
const uint32_t pidAtLoad = g_l3Mc6MvpnTnlElbPid;

const std::string kKey = keyOf("00010028", kVrVrf + kGroup + kSource);

const std::string kRow =
    "04050607 08090a0b"                             // vrId, vrfId
    "13121110 17161514 1b1a1918 1f1e1d1c"           // groupAddr
    "23222120 27262524 2b2a2928 2f2e2d2c 44454647"  // sourceAddr, tunnelWord1
    "48494a4b 4c4d4e4f 50515253 54555657 58595a5b"  // tunnelWord2, tunnelWord3, tunnelWord4, tunnelWord5, tunnelWord6
    "5c5d5e5f 60616263 64656667 ________ 30313233"  // tunnelWord7, tunnelWord8, tunnelWord9, gap, memberAttr1
    "38393a3b3c3d3e3f 40414243 bcbdbebf c0c1c2c3"   // memberAttr2, memberAttr3, appSrcPid, appVersion
    "c4c5c6c7 8485868788898a8b8c8d8e8f90919293"     // smoothVersion, tunnelData
    "c8c9 00f1536500000000 00f1536500000000";       // serviceStatus, timeStampCreate, timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "14000000"},                              // entryType, a constant
                   {4, "fffefdfc"},                              // vrId
                   {8, "fbfaf9f8"},                              // vrfId
                   {12, "02000000"},                             // addrType, a constant
                   {16, "f4f5f6f7 f0f1f2f3 ecedeeef e8e9eaeb"},  // groupAddr
                   {32, "e4e5e6e7 e0e1e2e3 dcdddedf d8d9dadb"},  // sourceAddr
                   {48, "afaeadac"},                             // memberAttr1
                   {52, "05000000"},                             // kindWord, a constant
                   {56, "abaaa9a8a7a6a5a4"},                     // memberAttr2
                   {64, "a3a2a1a0"},                             // memberAttr3
                   {68, "d7d6d5d4"},                             // tunnelWord1
                   {72, "d3d2d1d0"},                             // tunnelWord2
                   {76, "cfcecdcc"},                             // tunnelWord3
                   {80, "cbcac9c8"},                             // tunnelWord4
                   {84, "c7c6c5c4"},                             // tunnelWord5
                   {88, "c3c2c1c0"},                             // tunnelWord6
                   {92, "bfbebdbc"},                             // tunnelWord7
                   {96, "bbbab9b8"},                             // tunnelWord8
                   {100, "b7b6b5b4"},                            // tunnelWord9
                   {132, "939291908f8e8d8c8b8a898887868584"},    // tunnelData
                   {188, "9f9e9d9c"},                            // appSrcPid
                   {192, "9b9a9998"},                            // appVersion
                   {196, "97969594"},                            // smoothVersion
                   {200, "8382"},                                // serviceStatus
                   {208, "81807f7e7d7c7b7a"},                    // timeStampCreate
                   {216, "7978777675747372"},                    // timeStampSmooth
               });
}

Mvpn& family() {
    static Mvpn family({
        .name = "l3mc6_mvpn_tnl_elb",
        .number = 28,
        .rowSize = 142,
        .createStamp = 126,
        .key = kKey,
        .row = kRow,
        .readStored = readStored,
        .smoothSetters = {{"smoothVersion", 0xC7C6C5C4}},
        .counters = {.created = 476, .released = 477},
        .kpis = {.written = 212,
                 .writeFailed = 213,
                 .removed = 214,
                 .removeFailed = 215,
                 .createFailed = 216,
                 .iteratorFailed = 217},
        .messages =
            {
                .readNull = "MCAST6_DB_ReadL3McMvpnTnlElb, l3McMvpnTnlElbEntry is null.",
                .readCreate = "MCAST6_DB_ReadL3McMvpnTnlElb, create db object failed, ret:%u.",
                .readFailed = "MCAST6_DB_ReadL3McMvpnTnlElb, read l3mc6_mvpn_tnl_elb object db failed, ret:%u.",
                .writeNull = "MCAST6_DB_WriteL3McMvpnTnlElb, l3McMvpnTnlElb is null.",
                .writeCreate = "MCAST6_DB_WriteL3McMvpnTnlElb, create db object failed, ret:%u.",
                .writeFailed = "MCAST6_DB_WriteL3McMvpnTnlElb, write l3mc6_mvpn_tnl_elb object fail, ret:%u.",
                .smoothNull = "MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion, l3McMvpnTnlElbEntry is null.",
                .smoothCreate = "MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion, create db object failed, ret:%u.",
                .smoothSet = "MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion, set smooth version fail, ret:%u.",
                .smoothFailed = "MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion, release db object fail, ret:%u.",
                .removeNull = "MCAST6_DB_DeleteL3McMvpnTnlElb, l3McMvpnTnlElbEntry is null.",
                .removeCreate = "MCAST6_DB_DeleteL3McMvpnTnlElb, create db object failed, ret:%u.",
                .removeFailed = "MCAST6_DB_DeleteL3McMvpnTnlElb, release db object fail, ret:%u.",
                .nextFailed = "MCAST6_DB_GetL3McMvpnTnlElbEntry, db root iterator next fail, ret:%d.",
                .entryFailed = "MCAST6_DB_GetL3McMvpnTnlElbEntry, read obj fail, ret:%d.",
            },
        .functions =
            {
                .stamp = MCAST6_DB_SetStructL3McMvpnTnlElbTimeStamp,
                .set = MCAST6_DB_SetL3McMvpnTnlElb,
                .get = MCAST6_DB_GetL3McMvpnTnlElb,
                .createObject = MCAST6_DB_CreateL3McMvpnTnlElbObject,
                .releaseObject = MCAST6_DB_ReleaseL3McMvpnTnlElbObject,
                .read = MCAST6_DB_ReadL3McMvpnTnlElb,
                .write = MCAST6_DB_WriteL3McMvpnTnlElb,
                .updateSmoothVersion = MCAST6_DB_UpdateL3McMvpnTnlElbSmoothVersion,
                .remove = MCAST6_DB_DeleteL3McMvpnTnlElb,
                .getEntry = MCAST6_DB_GetL3McMvpnTnlElbEntry,
                .createIterator = MCAST6_DB_CreateL3McMvpnTnlElbIter,
                .createIteratorOfAll = MCAST6_DB_CreateL3McMvpnTnlElbAllIter,
                .releaseIterator = MCAST6_DB_ReleaseL3McMvpnTnlElbIterator,
            },
        .filters =
            {
                {"iteratorByVni",
                 [](const Entry&) {
                     return MCAST6_DB_CreateL3McMvpnTnlElbIterByVniId(0x01020304, 0x05060708, 0x090A0B0C);
                 },
                 keyOf("0109000c", "04030201 08070605 0c0b0a09")},
                {"iteratorBySrcPid",
                 [](const Entry& entry) { return MCAST6_DB_CreateL3McMvpnTnlElbIterBySrcPid(&entry); },
                 keyOf("0209000c", kVrVrf + "bcbdbebf")},
                {"iteratorByTunnelVsg",
                 [](const Entry&) {
                     return MCAST6_DB_CreateL3McMvpnTnlElbIterByTnlVsg(0x01020304, 0x05060708, 0x090A0B0C, 0x0D0E0F10);
                 },
                 keyOf("03090010", "04030201 08070605 0c0b0a09 100f0e0d")},
                {"iteratorByTunnelIdIsOf13Bytes",
                 [](const Entry&) {
                     return MCAST6_DB_CreateL3McMvpnTnlElbIterByTnlId(0x01020304, 0x05060708, 0x090A0B0C, 0x0D);
                 },
                 keyOf("0409000d", "04030201 08070605 0c0b0a09 0d")},
                {"iteratorByVrf",
                 [](const Entry&) { return MCAST6_DB_CreateL3McMvpnTnlElbIterByVrfId(0x01020304, 0x05060708); },
                 keyOf("05090008", "04030201 08070605")},
            },
    });
    return family;
}

std::vector<Operation> operations() {
    std::vector<Operation> all = family().operations();
    for (Operation& count : family().fastCounts(MCAST6_DB_GetL3McMvpnTnlElbCountFast, g_l3Mc6MvpnTnlElbStatObjCache)) {
        all.push_back(std::move(count));
    }
    all.push_back(family().countByKey(
        "countByKey",
        [](uint32_t* count) {
            const Mcast6DbKeyDesc descriptor{0x05090008, {}};
            const recording::Bytes key = recording::unhex("0403020108070605");
            return MCAST6_DB_GetL3McMvpnTnlElbCountByKey(&descriptor, key.data(), count);
        },
        keyOf("05090008", "04030201 08070605"), "[GetL3McMvpnTnlElbCountByKey] create elb object fail, ret:%u.",
        "[GetL3McMvpnTnlElbCountByKey] get elb num fail, ret:%u."));
    all.push_back(family().countByKey(
        "countByTunnelVsg",
        [](uint32_t* count) {
            const L3McMvpnVsgKey key{{0x01020304, 0x05060708, 0x090A0B0C, 0x0D0E0F10}};
            return MCAST6_DB_GetL3McBdMvpnTnlElbCountByTnlVsg(&key, count);
        },
        keyOf("03090010", "04030201 08070605 0c0b0a09 100f0e0d"),
        "[GetL3McMvpnTnlElbCountByKey] create elb object fail, ret:%u.",
        "[GetL3McMvpnTnlElbCountByKey] get elb num fail, ret:%u."));
    return all;
}

std::vector<Claim> claims() {
    std::vector<Claim> all = family().claims();
    all.push_back(family().fastCountClaim(MCAST6_DB_GetL3McMvpnTnlElbCountFast));
    all.push_back(family().pidClaim(g_l3Mc6MvpnTnlElbPid, operations()));
    all.push_back(family().pidReaderClaim(g_l3Mc6MvpnTnlElbPid, MCAST6_DB_GetL3McMvpnTnlElbSourcePid));
    all.push_back({"atLoadItsProcessWideDataIs0", [] {
                       EXPECT_EQ(0u, cacheAtLoad);
                       EXPECT_EQ(0u, pidAtLoad);
                   }});
    return all;
}

INSTANTIATE_TEST_SUITE_P(l3mc6_mvpn_tnl_elb, EveryExit, testing::ValuesIn(operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l3mc6_mvpn_tnl_elb, EveryClaim, testing::ValuesIn(claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::l3_mvpn
