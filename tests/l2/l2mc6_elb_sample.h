// A record of l2mc6_elb with different bytes in each field, its row, and the effect of reads.
#pragma once

#include <cstring>
#include <string>

#include "mcast6_db/l2mc6_elb.h"
#include "tests/l2/field_reads.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests::l2mc6_elb {

inline const std::string kVr = digits("04030201");
inline const std::string kVlan = digits("3231");  // the low 16 bits
inline const std::string kUserVlan = digits("504f");
inline const std::string kGroup = digits("10111213 14151617 18191a1b 1c1d1e1f");
inline const std::string kSource = digits("20212223 24252627 28292a2b 2c2d2e2f");
inline const std::string kOutIf = digits("36353433");

inline const std::string kKeyBytes = kVr + kVlan + kUserVlan + kGroup + kSource + kOutIf;
inline const std::string kKey = "key=0001002c:" + kKeyBytes;

// The row that a write of the sample stores at 1'700'000'000, the recorder's time.
inline const std::string kWrittenRow = kKeyBytes + digits(
                                                       "08070605"           // vrfId
                                                       "5251 4e4d"          // fwdIfExtType, fwdIfType
                                                       "53 54 0000"         // isSelfBoard, elbByte1, two spare bytes
                                                       "58575655 5c5b5a59"  // pathFlags, appSrcPid
                                                       "4847464544434241"   // mcidVersion
                                                       "4c4b4a49 3a393837"  // mfibVersion, mcId
                                                       "605f5e5d"           // smoothVersion
                                                       "afaeadac bcbbbab0"  // elbWord1, elbWord2
                                                       "707172737475767778797a7b7c7d7e7f"     // elbData1
                                                       "808182838485868788898a8b8c8d8e8f"     // svcCtxHighPrio
                                                       "909192939495969798999a9b"             // its end
                                                       "6162636465666768696a6b6c"             // svcCtxNormalPrio
                                                       "9d9e a1a2"                            // serviceStatus, errCode
                                                       "00f1536500000000 00f1536500000000");  // both time stamps
inline constexpr size_t kSpareBytesAt = 54;

// Padding and host members included, so that all bytes of a record can be compared.
inline void fillSample(L2Elb6Entry& record) {
    std::memset(&record, 0xA5, sizeof record);
    record.vrId = 0x01020304;
    record.vrfId = 0x05060708;
    record.addrType = 0xF1F2F3F4;
    record.groupAddr = {{0x10111213, 0x14151617, 0x18191A1B, 0x1C1D1E1F}};
    record.sourceAddr = {{0x20212223, 0x24252627, 0x28292A2B, 0x2C2D2E2F}};
    record.domainType = 0xE1E2E3E4;
    record.vlanId = 0xD1D23132;
    record.outIfIndex = 0x33343536;
    record.mcId = 0x3738393A;
    record.mcidVersion = 0x4142434445464748;
    record.mfibVersion = 0x494A4B4C;
    record.fwdIfType = 0x4D4E;
    record.userVlanId = 0x4F50;
    record.fwdIfExtType = 0x5152;
    record.fixedWord1 = 0xC3C4C5C6;
    record.fixedWord2 = 0xC7C8C9CA;
    record.isSelfBoard = 0x53;
    record.elbByte1 = 0x54;
    record.pathFlags = 0x55565758;
    record.appSrcPid = 0x595A5B5C;
    record.smoothVersion = 0x5D5E5F60;
    setBytes(record.elbData1, "707172737475767778797a7b7c7d7e7f");
    setBytes(record.svcCtxHighPrio, "808182838485868788898a8b8c8d8e8f909192939495969798999a9b");
    setBytes(record.svcCtxNormalPrio, "6162636465666768696a6b6c");
    setBytes(record.serviceStatus, "9d9e");
    setBytes(record.errCode, "a1a2");
    record.timeStampCreate = 0xA3A4A6A7A8A9AAAB;
    record.timeStampSmooth = 0xB1B2B3B4B5B6B7B8;
    record.elbWord1 = 0xACADAEAF;
    record.elbWord2 = 0xB0BABBBC;
}

// A row that the engine returns; it differs from the sample in every field.
inline const std::string kStoredRow = digits(
    "c1c2c3c4 c5c6 c7c8"                     // vrId, vlanId, userVlanId
    "d0d1d2d3 d4d5d6d7 d8d9dadb dcdddedf"    // groupAddr
    "e0e1e2e3 e4e5e6e7 e8e9eaeb ecedeeef"    // sourceAddr
    "c9cacbcc cdcecfc0"                      // outIfIndex, vrfId
    "f1f2 f3f4 f5 f6 f7f8"                   // fwdIfExtType, fwdIfType, isSelfBoard, elbByte1, two spare bytes
    "01020304 05060708"                      // pathFlags, appSrcPid
    "090a0b0c0d0e0f00 f9fafbfc fdfeff1a"     // mcidVersion, mfibVersion, mcId
    "1b1c1d1e 2a2b2c2d 3a3b3c3d"             // smoothVersion, elbWord1, elbWord2
    "0123456789abcdeffedcba9876543210"       // elbData1
    "1122334455667788 99aabbccddeeff00"      // svcCtxHighPrio
    "0ffeeddccbbaa998 87766554"              // its end
    "b0a1928374655647 38291a0b"              // svcCtxNormalPrio
    "abcd ef01"                              // serviceStatus, errCode
    "1113151719 1b1d1f 2123252729 2b2d2f");  // timeStampCreate, timeStampSmooth

// Changes a record as reading one field of the stored row does, in the order of a read by field.
inline const FieldRead<L2Elb6Entry> kItemReads[] = {
    {"vrId", [](L2Elb6Entry& record) { record.vrId = 0xC4C3C2C1; }},
    {"vrfId", [](L2Elb6Entry& record) { record.vrfId = 0xC0CFCECD; }},
    {"vlanId", [](L2Elb6Entry& record) { record.vlanId = 0x0000C6C5; }},
    {"userVlanId", [](L2Elb6Entry& record) { record.userVlanId = 0xC8C7; }},
    {"outIfIndex", [](L2Elb6Entry& record) { record.outIfIndex = 0xCCCBCAC9; }},
    {"fwdIfExtType", [](L2Elb6Entry& record) { record.fwdIfExtType = 0xF2F1; }},
    {"fwdIfType", [](L2Elb6Entry& record) { record.fwdIfType = 0xF4F3; }},
    {"isSelfBoard", [](L2Elb6Entry& record) { record.isSelfBoard = 0xF5; }},
    {"pathFlags", [](L2Elb6Entry& record) { record.pathFlags = 0x04030201; }},
    {"appSrcPid", [](L2Elb6Entry& record) { record.appSrcPid = 0x08070605; }},
    {"mcidVersion", [](L2Elb6Entry& record) { record.mcidVersion = 0x000F0E0D0C0B0A09; }},
    {"mfibVersion", [](L2Elb6Entry& record) { record.mfibVersion = 0xFCFBFAF9; }},
    {"mcId", [](L2Elb6Entry& record) { record.mcId = 0x1AFFFEFD; }},
    {"smoothVersion", [](L2Elb6Entry& record) { record.smoothVersion = 0x1E1D1C1B; }},
    {"timeStampCreate", [](L2Elb6Entry& record) { record.timeStampCreate = 0x1F1D1B1917151311; }},
    {"timeStampSmooth", [](L2Elb6Entry& record) { record.timeStampSmooth = 0x2F2D2B2927252321; }},
    {"serviceStatus", [](L2Elb6Entry& record) { setBytes(record.serviceStatus, "abcd"); }},
    {"svcCtxHighPrio",
     [](L2Elb6Entry& record) {
         setBytes(record.svcCtxHighPrio, "112233445566778899aabbccddeeff000ffeeddccbbaa99887766554");
     }},
    {"svcCtxNormalPrio", [](L2Elb6Entry& record) { setBytes(record.svcCtxNormalPrio, "b0a192837465564738291a0b"); }},
    {"errCode", [](L2Elb6Entry& record) { setBytes(record.errCode, "ef01"); }},
    {"groupAddr",
     [](L2Elb6Entry& record) {
         record.groupAddr = {{0xD0D1D2D3, 0xD4D5D6D7, 0xD8D9DADB, 0xDCDDDEDF}};
     }},
    {"sourceAddr",
     [](L2Elb6Entry& record) {
         record.sourceAddr = {{0xE0E1E2E3, 0xE4E5E6E7, 0xE8E9EAEB, 0xECEDEEEF}};
     }},
};

inline void readConstants(L2Elb6Entry& record) {
    record.addrType = 2;
    record.domainType = 0;
    record.fixedWord1 = 0;
    record.fixedWord2 = 5;
}

// Changes a record as reading the whole stored row does.
inline void readStored(L2Elb6Entry& record) {
    for (const auto& read : kItemReads) read.readInto(record);
    record.elbByte1 = 0xF6;
    record.elbWord1 = 0x2D2C2B2A;
    record.elbWord2 = 0x3D3C3B3A;
    setBytes(record.elbData1, "0123456789abcdeffedcba9876543210");
    readConstants(record);
}

}  // namespace mcast6::tests::l2mc6_elb
