// A record of the two layer-2 forwarding tables with different bytes in each field, its row, and the effect of reads.
#pragma once

#include <cstring>
#include <string>

#include "mcast6_db/l2_mfib.h"
#include "tests/l2/field_reads.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests::l2_mfib {

inline const std::string kVr = digits("38373635");
inline const std::string kGroup = digits("10111213 14151617 18191a1b 1c1d1e1f");
inline const std::string kSource = digits("20212223 24252627 28292a2b 2c2d2e2f");
inline const std::string kDomain = digits("34333231");

inline const std::string kKey = "key=00010028:" + kVr + kGroup + kSource + kDomain;

// The row that a write of the sample stores at 1'700'000'000, the recorder's time: up to vrfId, the mask lengths, which
// one table has, and from pathFlags on.
inline const std::string kWrittenHead = kVr + kGroup + kSource + kDomain + digits("3c3b3a39");
inline const std::string kWrittenMaskLengths = digits("41 42");
inline const std::string kWrittenTail = digits(
    "46454443 4a494847 5857565554535251 5c5b5a59"  // pathFlags, mcId, mcidVersion, mfibVersion
    "606162636465666768696a6b"                     // svcCtxHighPrio
    "707172737475767778797a7b"                     // svcCtxNormalPrio
    "84838281 8c8b8a89 88878685"                   // appSrcPid, smoothVersion, appVersion
    "9192 96959493 9a999897"                       // serviceStatus, hppErrCode, enpErrCode
    "00f1536500000000 00f1536500000000");          // timeStampCreate, timeStampSmooth

// Padding included, so that all bytes of a record can be compared.
inline void fillSample(L2Mc6MfibEntry& record) {
    std::memset(&record, 0xA5, sizeof record);
    record.addrType = 0xF1F2F3F4;
    record.groupAddr = {{0x10111213, 0x14151617, 0x18191A1B, 0x1C1D1E1F}};
    record.sourceAddr = {{0x20212223, 0x24252627, 0x28292A2B, 0x2C2D2E2F}};
    record.domainType = 0xE1E2E3E4;
    record.domainId = 0x31323334;
    record.vrId = 0x35363738;
    record.vrfId = 0x393A3B3C;
    record.groupMaskLen = 0x41;
    record.sourceMaskLen = 0x42;
    record.pathFlags = 0x43444546;
    record.mcId = 0x4748494A;
    record.mcidVersion = 0x5152535455565758;
    record.mfibVersion = 0x595A5B5C;
    setBytes(record.svcCtxHighPrio, "606162636465666768696a6b");
    setBytes(record.svcCtxNormalPrio, "707172737475767778797a7b");
    record.appSrcPid = 0x81828384;
    record.appVersion = 0x85868788;
    record.smoothVersion = 0x898A8B8C;
    setBytes(record.serviceStatus, "9192");
    record.hppErrCode = 0x93949596;
    record.enpErrCode = 0x9798999A;
    record.timeStampCreate = 0xA1A2A3A4A5A6A7A8;
    record.timeStampSmooth = 0xB1B2B3B4B5B6B7B8;
}

// A row that the engine returns, in the same three parts; it differs from the sample in every field.
inline const std::string kStoredHead = digits(
    "c1c2c3c4"                             // vrId
    "d0d1d2d3 d4d5d6d7 d8d9dadb dcdddedf"  // groupAddr
    "e0e1e2e3 e4e5e6e7 e8e9eaeb ecedeeef"  // sourceAddr
    "c5c6c7c8 c9cacbcc");                  // bdId or vlanId, vrfId
inline const std::string kStoredMaskLengths = digits("cd ce");
inline const std::string kStoredTail = digits(
    "01020304 05060708 090a0b0c0d0e0f00 f1f2f3f4"  // pathFlags, mcId, mcidVersion, mfibVersion
    "112233445566778899aabbcc"                     // svcCtxHighPrio
    "ccbbaa998877665544332211"                     // svcCtxNormalPrio
    "f5f6f7f8 f9fafbfc a0b0c0d0"                   // appSrcPid, smoothVersion, appVersion
    "abcd 02040608 0a0c0e10"                       // serviceStatus, hppErrCode, enpErrCode
    "1113151719 1b1d1f 2123252729 2b2d2f");        // timeStampCreate, timeStampSmooth

// Changes a record as reading one field of the stored row does; "<domain>" is bdId or vlanId.
using MfibRead = FieldRead<L2Mc6MfibEntry>;

inline const MfibRead kContextReads[] = {
    {"svcCtxHighPrio", [](L2Mc6MfibEntry& record) { setBytes(record.svcCtxHighPrio, "112233445566778899aabbcc"); }},
    {"svcCtxNormalPrio", [](L2Mc6MfibEntry& record) { setBytes(record.svcCtxNormalPrio, "ccbbaa998877665544332211"); }},
};

inline const MfibRead kAddressReads[] = {
    {"groupAddr",
     [](L2Mc6MfibEntry& record) {
         record.groupAddr = {{0xD0D1D2D3, 0xD4D5D6D7, 0xD8D9DADB, 0xDCDDDEDF}};
     }},
    {"sourceAddr",
     [](L2Mc6MfibEntry& record) {
         record.sourceAddr = {{0xE0E1E2E3, 0xE4E5E6E7, 0xE8E9EAEB, 0xECEDEEEF}};
     }},
};

inline const MfibRead kReadsUpToVrf[] = {
    {"serviceStatus", [](L2Mc6MfibEntry& record) { setBytes(record.serviceStatus, "abcd"); }},
    {"<domain>", [](L2Mc6MfibEntry& record) { record.domainId = 0xC8C7C6C5; }},
    {"vrId", [](L2Mc6MfibEntry& record) { record.vrId = 0xC4C3C2C1; }},
    {"vrfId", [](L2Mc6MfibEntry& record) { record.vrfId = 0xCCCBCAC9; }},
};

inline const MfibRead kMaskLengthReads[] = {
    {"groupMaskLen", [](L2Mc6MfibEntry& record) { record.groupMaskLen = 0xCD; }},
    {"sourceMaskLen", [](L2Mc6MfibEntry& record) { record.sourceMaskLen = 0xCE; }},
};

inline const MfibRead kReadsFromPathFlags[] = {
    {"pathFlags", [](L2Mc6MfibEntry& record) { record.pathFlags = 0x04030201; }},
    {"mcId", [](L2Mc6MfibEntry& record) { record.mcId = 0x08070605; }},
    {"mcidVersion", [](L2Mc6MfibEntry& record) { record.mcidVersion = 0x000F0E0D0C0B0A09; }},
    {"mfibVersion", [](L2Mc6MfibEntry& record) { record.mfibVersion = 0xF4F3F2F1; }},
    {"appSrcPid", [](L2Mc6MfibEntry& record) { record.appSrcPid = 0xF8F7F6F5; }},
    {"appVersion", [](L2Mc6MfibEntry& record) { record.appVersion = 0xD0C0B0A0; }},
    {"smoothVersion", [](L2Mc6MfibEntry& record) { record.smoothVersion = 0xFCFBFAF9; }},
    {"hppErrCode", [](L2Mc6MfibEntry& record) { record.hppErrCode = 0x08060402; }},
    {"enpErrCode", [](L2Mc6MfibEntry& record) { record.enpErrCode = 0x100E0C0A; }},
    {"timeStampCreate", [](L2Mc6MfibEntry& record) { record.timeStampCreate = 0x1F1D1B1917151311; }},
    {"timeStampSmooth", [](L2Mc6MfibEntry& record) { record.timeStampSmooth = 0x2F2D2B2927252321; }},
};

}  // namespace mcast6::tests::l2_mfib
