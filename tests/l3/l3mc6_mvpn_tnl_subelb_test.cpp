// l3mc6_mvpn_tnl_subelb: see mvpn_family.h for what each operation does. It has no counts. Errors are recorded under
// table 29.
#include "mcast6_db/l3mc6_mvpn_tnl_subelb.h"

#include "tests/l3/mvpn_family.h"

namespace mcast6::tests::l3_mvpn {

namespace {

const std::string kKey = keyOf("00010030", kVrVrf + kGroup + kSource + "68696a6b 6c6d6e6f");

const std::string kRow =
    "04050607 08090a0b"                             // vrId, vrfId
    "13121110 17161514 1b1a1918 1f1e1d1c"           // groupAddr
    "23222120 27262524 2b2a2928 2f2e2d2c 68696a6b"  // sourceAddr, outIfIndex
    "6c6d6e6f 70717273 74757677 78797a7b 7c7d7e7f"  // subKeyWord, l2IfIndex, subWord1, subWord2, subWord3
    "80 81 82 __ 30313233 38393a3b3c3d3e3f"         // subByte1, subByte2, subByte3, gap, memberAttr1, memberAttr2
    "40414243 bcbdbebf c4c5c6c7"                    // memberAttr3, appSrcPid, smoothVersion
    "8485868788898a8b8c8d8e8f90919293"              // tunnelData
    "9495969798999a9b9c9d9e9fa0a1a2a3a4a5a6a7a8a9aaabacadaeaf"  // svcCtxHighPrio
    "b0b1b2b3b4b5b6b7b8b9babb c8c9 cacb"                        // svcCtxNormalPrio, serviceStatus, errCode
    "00f1536500000000 00f1536500000000";                        // timeStampCreate, timeStampSmooth

void readStored(Entry& entry) {
    put(entry, {
                   {0, "14000000"},                                                    // entryType, a constant
                   {4, "fffefdfc"},                                                    // vrId
                   {8, "fbfaf9f8"},                                                    // vrfId
                   {12, "02000000"},                                                   // addrType, a constant
                   {16, "f4f5f6f7 f0f1f2f3 ecedeeef e8e9eaeb"},                        // groupAddr
                   {32, "e4e5e6e7 e0e1e2e3 dcdddedf d8d9dadb"},                        // sourceAddr
                   {48, "bbbab9b8"},                                                   // memberAttr1
                   {52, "05000000"},                                                   // kindWord, a constant
                   {56, "b7b6b5b4b3b2b1b0"},                                           // memberAttr2
                   {64, "afaeadac"},                                                   // memberAttr3
                   {104, "d7d6d5d4"},                                                  // outIfIndex
                   {108, "d3d2d1d0"},                                                  // subKeyWord
                   {112, "cfcecdcc"},                                                  // l2IfIndex
                   {116, "cbcac9c8"},                                                  // subWord1
                   {120, "c7c6c5c4"},                                                  // subWord2
                   {124, "c3c2c1c0"},                                                  // subWord3
                   {128, "bf"},                                                        // subByte1
                   {129, "be"},                                                        // subByte2
                   {130, "bd"},                                                        // subByte3
                   {132, "a3a2a1a09f9e9d9c9b9a999897969594"},                          // tunnelData
                   {148, "939291908f8e8d8c8b8a898887868584838281807f7e7d7c7b7a7978"},  // svcCtxHighPrio
                   {176, "77767574737271706f6e6d6c"},                                  // svcCtxNormalPrio
                   {188, "abaaa9a8"},                                                  // appSrcPid
                   {196, "a7a6a5a4"},                                                  // smoothVersion
                   {200, "6b6a"},                                                      // serviceStatus
                   {202, "6968"},                                                      // errCode
                   {208, "6766656463626160"},                                          // timeStampCreate
                   {216, "5f5e5d5c5b5a5958"},                                          // timeStampSmooth
               });
}

Mvpn& family() {
    static Mvpn family({
        .name = "l3mc6_mvpn_tnl_subelb",
        .number = 29,
        .rowSize = 168,
        .createStamp = 152,
        .key = kKey,
        .row = kRow,
        .readStored = readStored,
        .smoothSetters = {{"smoothVersion", 0xC7C6C5C4}},
        .counters = {.created = 478, .released = 479},
        .kpis = {.written = 218,
                 .writeFailed = 219,
                 .removed = 220,
                 .removeFailed = 221,
                 .createFailed = 222,
                 .iteratorFailed = 223},
        .messages =
            {
                .readNull = "MCAST6_DB_ReadL3McMvpnTnlSubElb, elbEntry is null.",
                .readCreate = "MCAST6_DB_ReadL3McMvpnTnlSubElb, create db object failed, ret:%u.",
                .readFailed = "MCAST6_DB_ReadL3McMvpnTnlSubElb, read l3mc6_mvpn_tnl_subelb object db failed, ret:%u.",
                .writeNull = "MCAST6_DB_WriteL3McMvpnTnlSubElb, l3McMvpnTnlSubElb is null.",
                .writeCreate = "MCAST6_DB_WriteL3McMvpnTnlSubElb, create db object failed, ret:%u.",
                .writeFailed = "MCAST6_DB_WriteL3McMvpnTnlSubElb, release db object fail, ret:%u.",
                .smoothNull = "MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion, elbEntry is null.",
                .smoothCreate = "MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion, create db object failed, ret:%u.",
                .smoothSet = "MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion, set smooth version fail, ret:%u.",
                .smoothFailed = "MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion, release db object fail, ret:%u.",
                .removeNull = "MCAST6_DB_DeleteL3McMvpnTnlSubElb, elbEntry is null.",
                .removeCreate = "MCAST6_DB_DeleteL3McMvpnTnlSubElb, create db object failed, ret:%u.",
                .removeFailed = "MCAST6_DB_DeleteL3McMvpnTnlSubElb, release db object fail, ret:%u.",
                .nextFailed = "MCAST6_DB_GetL3McMvpnTnlSubElbEntry, db root iterator next fail, ret:%d.",
                .entryFailed = "MCAST6_DB_GetL3McMvpnTnlSubElbEntry, read obj fail, ret:%d.",
            },
        .functions =
            {
                .stamp = MCAST6_DB_SetStructL3McMvpnTnlSubElbTimeStamp,
                .set = MCAST6_DB_SetL3McMvpnTnlSubElb,
                .get = MCAST6_DB_GetL3McMvpnTnlSubElb,
                .createObject = MCAST6_DB_CreateL3McMvpnTnlSubElbObject,
                .releaseObject = MCAST6_DB_ReleaseL3McMvpnTnlSubElbObject,
                .read = MCAST6_DB_ReadL3McMvpnTnlSubElb,
                .write = MCAST6_DB_WriteL3McMvpnTnlSubElb,
                .updateSmoothVersion = MCAST6_DB_UpdateL3McMvpnTnlSubElbSmoothVersion,
                .remove = MCAST6_DB_DeleteL3McMvpnTnlSubElb,
                .getEntry = MCAST6_DB_GetNextL3McMvpnTnlSubElb,
                .createIterator = MCAST6_DB_CreateL3McMvpnTnlSubElbIter,
                .createIteratorOfAll = MCAST6_DB_CreateL3McMvpnTnlSubElbAllIter,
                .releaseIterator = MCAST6_DB_ReleaseL3McMvpnTnlSubElbIterator,
            },
        .filters =
            {
                overEntry<Entry>(MCAST6_DB_CreateL3McMvpnTnlSubElbCreateVSGIterator),
                {"iteratorByInterface",
                 [](const Entry&) { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByIfIndex(0x01020304); },
                 keyOf("02090004", "04030201")},
                {"iteratorByVrAndVrf",
                 [](const Entry&) { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByVrVrf(0x01020304, 0x05060708); },
                 keyOf("03090008", "04030201 08070605")},
                {"iteratorByLayer2Interface",
                 [](const Entry&) { return MCAST6_DB_CreateL3McMvpnTnlSubElbIterByL2IfIndex(0x01020304); },
                 keyOf("04090004", "04030201")},
            },
    });
    return family;
}

INSTANTIATE_TEST_SUITE_P(l3mc6_mvpn_tnl_subelb, EveryExit, testing::ValuesIn(family().operations()), nameOfOperation);
INSTANTIATE_TEST_SUITE_P(l3mc6_mvpn_tnl_subelb, EveryClaim, testing::ValuesIn(family().claims()), nameOfClaim);

}  // namespace

}  // namespace mcast6::tests::l3_mvpn
