// A record of l3mc6_mfib with different bytes in each field, its row, and the effect of reads.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>

#include "mcast6_db/l3mc6_mfib.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests::l3mc6_mfib {

// The parts of the sample that keys consist of, as stored.
inline const std::string kVrVrf = digits("04030201 08070605");
inline const std::string kGroup = digits("1112131415161718191a1b1c1d1e1f20");
inline const std::string kSource = digits("2122232425262728292a2b2c2d2e2f30");
inline const std::string kInIfIndex = digits("3c3b3a39");
inline const std::string kRegIfIndex = digits("403f3e3d");

inline const std::string kKey = "key=00010028:" + kVrVrf + kGroup + kSource;

// The row of the sample up to its time stamps.
inline const std::string kFieldsOfSample = digits(
    "04030201 08070605"                               // vrId, vrfId
    "1112131415161718191a1b1c1d1e1f20"                // groupAddr
    "2122232425262728292a2b2c2d2e2f30"                // sourceAddr
    "32 31 3433 38373635"                             // attr2, attr1, attr3, attr4
    "3c3b3a39 403f3e3d 44434241"                      // inIfIndex, regIfIndex, attr7
    "00 45 4746 4b4a4948 4f4e4d4c 53525150 57565554"  // reserved, attr8 to attr13
    "58595a5b5c5d5e5f 63626160"                       // attr14, attr15
    "707172737475767778797a7b7c7d7e7f80818283"        // mcStatSvcCtx
    "8485868788898a8b8c8d8e8f90919293"                //
    "97969594 9b9a9998 9f9e9d9c"                      // attr17
    "afaeadac b3b2b1b0 b7b6b5b4"                      // attr19
    "a3a2a1a0 a7a6a5a4 abaaa9a8"                      // attr18
    "c7c6 c5c4 bbbab9b8 bfbebdbc"                     // attr22, attr21, appSrcPid, attr20
    "c3c2c1c0 cbcac9c8 cfcecdcc");                    // smoothVersion, attr23, attr24
inline const std::string kAttr16OfSample = digits("67666564");

// Written at 1'700'000'000, the recorder's time.
inline const std::string kWrittenRow = kFieldsOfSample + digits("00f1536500000000 00f1536500000000") + kAttr16OfSample;

// Unstored places hold 0xA5.
inline void fillSample(L3Mc6MfibEntry& record) {
    std::memset(&record, 0xA5, sizeof record);
    record.vrId = 0x01020304;
    record.vrfId = 0x05060708;
    record.addrType = 0xF1F2F3F4;
    record.groupAddr = {{0x11121314, 0x15161718, 0x191A1B1C, 0x1D1E1F20}};
    record.sourceAddr = {{0x21222324, 0x25262728, 0x292A2B2C, 0x2D2E2F30}};
    record.attr1 = 0x31;
    record.attr2 = 0x32;
    record.attr3 = 0x3334;
    record.attr4 = 0x35363738;
    record.inIfIndex = 0x393A3B3C;
    record.regIfIndex = 0x3D3E3F40;
    record.attr7 = 0x41424344;
    record.attr8 = 0x45;
    record.attr9 = 0xABCD4647;  // the upper half is not stored
    record.attr10 = 0x48494A4B;
    record.attr11 = 0x4C4D4E4F;
    record.attr12 = 0x50515253;
    record.attr13 = 0x54555657;
    for (uint8_t i = 0; i < 8; ++i) record.attr14[i] = static_cast<uint8_t>(0x58 + i);
    record.attr15 = 0x60616263;
    record.attr16 = 0x64656667;
    for (uint8_t i = 0; i < 36; ++i) record.mcStatSvcCtx[i] = static_cast<uint8_t>(0x70 + i);
    const uint32_t attr17[3] = {0x94959697, 0x98999A9B, 0x9C9D9E9F};
    const uint32_t attr18[3] = {0xA0A1A2A3, 0xA4A5A6A7, 0xA8A9AAAB};
    const uint32_t attr19[3] = {0xACADAEAF, 0xB0B1B2B3, 0xB4B5B6B7};
    std::memcpy(record.attr17, attr17, sizeof attr17);
    std::memcpy(record.attr18, attr18, sizeof attr18);
    std::memcpy(record.attr19, attr19, sizeof attr19);
    record.appSrcPid = 0xB8B9BABB;
    record.attr20 = 0xBCBDBEBF;
    record.smoothVersion = 0xC0C1C2C3;
    record.attr21 = 0xC4C5;
    record.attr22 = 0xC6C7;
    record.attr23 = 0xC8C9CACB;
    record.attr24 = 0xCCCDCECF;
    record.timeStampCreate = 0xD0D1D2D3D4D5D6D7;
    record.timeStampSmooth = 0xD8D9DADBDCDDDEDF;
}

// A row that the engine returns; it differs from the sample in every field, and the reserved byte is set.
inline const std::string kStoredRow =
    "a1000001 a2000002"                               // vrId, vrfId
    "ff1e0000000000000000000000001234"                // groupAddr
    "20010db8000000000000000000005678"                // sourceAddr
    "e2 e1 03e3 040000e4"                             // attr2, attr1, attr3, attr4
    "050000e5 060000e6 070000e7"                      // inIfIndex, regIfIndex, attr7
    "ff e8 09e9 100000ea 110000eb 120000ec 130000ed"  // reserved, attr8 to attr13
    "d0d1d2d3d4d5d6d7 150000ee"                       // attr14, attr15
    "101112131415161718191a1b1c1d1e1f20212223"        // mcStatSvcCtx
    "2425262728292a2b2c2d2e2f30313233"                //
    "170000c1 170000c2 170000c3"                      // attr17
    "190000c7 190000c8 190000c9"                      // attr19
    "180000c4 180000c5 180000c6"                      // attr18
    "22f2 21f1 3000f3f4 200000f5"                     // attr22, attr21, appSrcPid, attr20
    "320000f6 230000f7 240000f8"                      // smoothVersion, attr23, attr24
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf 160000f9";     // timeStampCreate, timeStampSmooth, attr16

// Changes a record as reading kStoredRow does: unstored places are unchanged.
inline void readStored(L3Mc6MfibEntry& record) {
    record.vrId = 0x010000A1;
    record.vrfId = 0x020000A2;
    record.addrType = 2;
    record.groupAddr = {{0xFF1E0000, 0, 0, 0x1234}};
    record.sourceAddr = {{0x20010DB8, 0, 0, 0x5678}};
    record.attr1 = 0xE1;
    record.attr2 = 0xE2;
    record.attr3 = 0xE303;
    record.attr4 = 0xE4000004;
    record.inIfIndex = 0xE5000005;
    record.regIfIndex = 0xE6000006;
    record.attr7 = 0xE7000007;
    record.attr8 = 0xE8;
    record.attr9 = 0x0000E909;
    record.attr10 = 0xEA000010;
    record.attr11 = 0xEB000011;
    record.attr12 = 0xEC000012;
    record.attr13 = 0xED000013;
    for (uint8_t i = 0; i < 8; ++i) record.attr14[i] = static_cast<uint8_t>(0xD0 + i);
    record.attr15 = 0xEE000015;
    record.attr16 = 0xF9000016;
    for (uint8_t i = 0; i < 36; ++i) record.mcStatSvcCtx[i] = static_cast<uint8_t>(0x10 + i);
    const uint32_t attr17[3] = {0xC1000017, 0xC2000017, 0xC3000017};
    const uint32_t attr18[3] = {0xC4000018, 0xC5000018, 0xC6000018};
    const uint32_t attr19[3] = {0xC7000019, 0xC8000019, 0xC9000019};
    std::memcpy(record.attr17, attr17, sizeof attr17);
    std::memcpy(record.attr18, attr18, sizeof attr18);
    std::memcpy(record.attr19, attr19, sizeof attr19);
    record.appSrcPid = 0xF4F30030;
    record.attr20 = 0xF5000020;
    record.smoothVersion = 0xF6000032;
    record.attr21 = 0xF121;
    record.attr22 = 0xF222;
    record.attr23 = 0xF7000023;
    record.attr24 = 0xF8000024;
    record.timeStampCreate = 0xA7A6A5A4A3A2A1A0;
    record.timeStampSmooth = 0xAFAEADACABAAA9A8;
}

// Changes a record as reading a cleared row does: everything is 0 except addrType and the unstored places.
inline void readNothing(L3Mc6MfibEntry& record) {
    constexpr size_t kStored[][2] = {
        {offsetof(L3Mc6MfibEntry, vrId), offsetof(L3Mc6MfibEntry, host1)},
        {offsetof(L3Mc6MfibEntry, attr8), offsetof(L3Mc6MfibEntry, attr8) + 1},
        {offsetof(L3Mc6MfibEntry, attr9), offsetof(L3Mc6MfibEntry, host2)},
        {offsetof(L3Mc6MfibEntry, attr13), offsetof(L3Mc6MfibEntry, host3)},
        {offsetof(L3Mc6MfibEntry, attr14), offsetof(L3Mc6MfibEntry, host4)},
        {offsetof(L3Mc6MfibEntry, mcStatSvcCtx), offsetof(L3Mc6MfibEntry, host5)},
        {offsetof(L3Mc6MfibEntry, timeStampCreate), offsetof(L3Mc6MfibEntry, hostTail)},
    };
    for (const auto& [begin, end] : kStored) std::memset(reinterpret_cast<uint8_t*>(&record) + begin, 0, end - begin);
    record.addrType = 2;
}

}  // namespace mcast6::tests::l3mc6_mfib
