// A flow-statistics subscription with different bytes in each field, its row, and the effect of reads in either table.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "mcast6_db/flow_stat_sub.h"
#include "tests/platform/recorder.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests::flow_stat_sub {

inline void fillSample(FlowStatSubEntry& record) {
    std::memset(&record, 0xA5, sizeof record);
    record.addrType = 0xE1E2E3E4;
    record.keyId1 = 0x01020304;
    record.srcPid = 0x11121314;
    record.getFlag = 0xE5E6E7E8;
    record.keyId2 = 0x05060708;
    record.flowAddr1 = {{0x20010DB8, 0x71727374, 0x75767778, 0x797A7B7C}};
    record.flowAddr2 = {{0xFF1E8182, 0x83848586, 0x8788898A, 0x8B8C8D8E}};
    record.cfgWord2 = 0x21222324;
    record.cfgWord3 = 0x25262728;
    record.smoothVersion = 0x31323334;
    record.timeStampCreate = 0x5152535455565758;
    record.timeStampSmooth = 0x6162636465666768;
}

inline const std::string kKey = "key=00010028:" + digits(
                                                      "04030201 08070605"
                                                      "20010db8 71727374 75767778 797a7b7c"
                                                      "ff1e8182 83848586 8788898a 8b8c8d8e");

// The row of the sample up to its time stamps.
inline const std::string kWrittenFields = digits(
    "04030201 08070605"                    // keyId1, keyId2
    "20010db8 71727374 75767778 797a7b7c"  // flowAddr1, network order
    "ff1e8182 83848586 8788898a 8b8c8d8e"  // flowAddr2
    "14131211 24232221 28272625"           // srcPid, cfgWord2, cfgWord3
    "34333231");                           // smoothVersion

// A row that the engine returns; it differs from the sample in every field.
inline const std::string kStoredRow = digits(
    "91000092 93000094"                    // keyId1, keyId2
    "fd00d1d2 d3d4d5d6 d7d8d9da dbdcdddf"  // flowAddr1
    "ff02c1c2 c3c4c5c6 c7c8c9ca cbcccdcf"  // flowAddr2
    "95000096 97000098 9900009a"           // srcPid, cfgWord2, cfgWord3
    "9b00009c"                             // smoothVersion
    "a0a1a2a3a4a5a6a7 a8a9aaabacadaeaf");  // timeStampCreate, timeStampSmooth

// Changes a record as reading kStoredRow does; only getFlag differs between the tables.
inline void readStored(FlowStatSubEntry& record, uint32_t getFlag) {
    record.addrType = 2;
    record.keyId1 = 0x92000091;
    record.srcPid = 0x96000095;
    record.getFlag = getFlag;
    record.keyId2 = 0x94000093;
    record.flowAddr1 = {{0xFD00D1D2, 0xD3D4D5D6, 0xD7D8D9DA, 0xDBDCDDDF}};
    record.flowAddr2 = {{0xFF02C1C2, 0xC3C4C5C6, 0xC7C8C9CA, 0xCBCCCDCF}};
    record.cfgWord2 = 0x98000097;
    record.cfgWord3 = 0x9A000099;
    record.smoothVersion = 0x9C00009B;
    record.timeStampCreate = 0xA7A6A5A4A3A2A1A0;
    record.timeStampSmooth = 0xAFAEADACABAAA9A8;
}

// -- checks for both tables

// A key setter returns the code of the second address's copy.
inline void expectTheLastCopyToBeAnswered(uint32_t (*setKey)(Mcast6DbKeyDesc*, void*, const FlowStatSubEntry*)) {
    recording::Recorder& platform = recording::Recorder::instance();
    FlowStatSubEntry record;
    fillSample(record);
    Mcast6DbKeyDesc descriptor{};
    uint8_t key[40] = {};
    EXPECT_EQ(0u, setKey(&descriptor, key, &record));
    platform.answer("memcpy_s", 22);
    EXPECT_EQ(0u, setKey(&descriptor, key, &record));
    platform.answer("memcpy_s", 0);
    platform.answer("memcpy_s", 34);
    EXPECT_EQ(34u, setKey(&descriptor, key, &record));
    EXPECT_EQ(0u, platform.pendingAnswers());
}

// The values of unstored members after a read.
inline void expectReadConstants(uint32_t (*read)(FlowStatSubEntry*), uint32_t addrType, uint32_t getFlag) {
    FlowStatSubEntry record;
    fillSample(record);
    recording::Recorder::instance().fillNextRead(recording::unhex(kStoredRow));
    EXPECT_EQ(0u, read(&record));
    EXPECT_EQ(addrType, record.addrType);
    EXPECT_EQ(getFlag, record.getFlag);
}

}  // namespace mcast6::tests::flow_stat_sub
