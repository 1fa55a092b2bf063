// A record of l2mc6_bd_enable with other bytes in each field, and what becomes of it.
#pragma once

#include <cstring>
#include <string>

#include "mcast6_db/l2mc6_bd_enable.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests::l2mc6_bd_enable {

inline const std::string kKey = "key=0001000c:" + digits("04030201 08070605 14131211");

// The row of the sample when it is written at 1'700'000'000, the recorder's time.
inline const std::string kWrittenRow = digits(
    "04030201 08070605 14131211"           // keyId1, keyId2, addrType
    "24232221 38373635 28272625 2c2b2a29"  // attrA, pathFlags, mldVersion, attrB
    "34333231 4142 4344"                   // smoothVersion, serviceStatus, errCode
    "00f1536500000000 00f1536500000000"    // timeStampCreate, timeStampSmooth
    "74737271 8182838485868788898a8b8c");  // l2mcEnable, attrC

// Padding included, so that all bytes of a record can be compared.
inline void fillSample(L2McBdEnableEntry& record) {
    std::memset(&record, 0xA5, sizeof record);
    record.keyId1 = 0x01020304;
    record.addrType = 0x11121314;
    record.getFlag = 0xF1F2F3F4;
    record.keyId2 = 0x05060708;
    record.spare1 = 0xE1E2E3E4;
    record.attrA = 0x21222324;
    record.mldVersion = 0x25262728;
    record.attrB = 0x292A2B2C;
    record.smoothVersion = 0x31323334;
    record.pathFlags = 0x35363738;
    const uint8_t serviceStatus[2] = {0x41, 0x42};
    const uint8_t errCode[2] = {0x43, 0x44};
    const uint8_t attrC[12] = {0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87, 0x88, 0x89, 0x8A, 0x8B, 0x8C};
    std::memcpy(record.serviceStatus, serviceStatus, sizeof serviceStatus);
    std::memcpy(record.errCode, errCode, sizeof errCode);
    record.timeStampCreate = 0x5152535455565758;
    record.timeStampSmooth = 0x6162636465666768;
    record.l2mcEnable = 0x71727374;
    std::memcpy(record.attrC, attrC, sizeof attrC);
}

// A row that the engine may answer with, all of it unlike the sample.
inline const std::string kStoredRow =
    "0b000000 0c000000 0d000000"           // keyId1, keyId2, addrType
    "91000092 93000094 95000096 97000098"  // attrA, pathFlags, mldVersion, attrB
    "99000000 9a9b 9c9d"                   // smoothVersion, serviceStatus, errCode
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf"    // timeStampCreate, timeStampSmooth
    "b0b1b2b3 c0c1c2c3c4c5c6c7c8c9cacb";   // l2mcEnable, attrC

// What reading kStoredRow does to a record: spare1 and the padding stay.
inline void readStored(L2McBdEnableEntry& record) {
    record.keyId1 = 0x0B;
    record.addrType = 2;
    record.getFlag = 1;
    record.keyId2 = 0x0C;
    record.attrA = 0x92000091;
    record.mldVersion = 0x96000095;
    record.attrB = 0x98000097;
    record.smoothVersion = 0x99;
    record.pathFlags = 0x94000093;
    const uint8_t serviceStatus[2] = {0x9A, 0x9B};
    const uint8_t errCode[2] = {0x9C, 0x9D};
    const uint8_t attrC[12] = {0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xC5, 0xC6, 0xC7, 0xC8, 0xC9, 0xCA, 0xCB};
    std::memcpy(record.serviceStatus, serviceStatus, sizeof serviceStatus);
    std::memcpy(record.errCode, errCode, sizeof errCode);
    record.timeStampCreate = 0xA7A6A5A4A3A2A1A0;
    record.timeStampSmooth = 0xAFAEADACABAAA9A8;
    record.l2mcEnable = 0xB3B2B1B0;
    std::memcpy(record.attrC, attrC, sizeof attrC);
}

}  // namespace mcast6::tests::l2mc6_bd_enable
