// Records of layer-3 egress members with different bytes in each field, for the tables that share them.
#pragma once

#include <cstring>
#include <string>

#include "mcast6_db/l3_egress.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests::l3_egress {

// The parts of the sample that keys consist of, as stored.
inline const std::string kEntry = digits(
    "04030201 08070605"                   // vrId, vrfId
    "1112131415161718191a1b1c1d1e1f20"    // groupAddr
    "2122232425262728292a2b2c2d2e2f30");  // sourceAddr
inline const std::string kOutIfIndex = digits("46454443");

// The members that both records have. Other places hold 0xA5.
template <class Entry>
void fillShared(Entry& entry) {
    std::memset(&entry, 0xA5, sizeof entry);
    entry.entryType = 0xE1E2E3E4;
    entry.vrId = 0x01020304;
    entry.vrfId = 0x05060708;
    entry.addrType = 0xE5E6E7E8;
    entry.groupAddr = {{0x11121314, 0x15161718, 0x191A1B1C, 0x1D1E1F20}};
    entry.sourceAddr = {{0x21222324, 0x25262728, 0x292A2B2C, 0x2D2E2F30}};
    entry.elbAttrA = 0x31323334;
    entry.elbAttrB = 0x35363738393A3B3C;
    entry.elbAttrC = 0x3D3E3F40;
    entry.instType = 0xE9EAEBEC;
    entry.instId = 0xF1F24142;  // 16 bits are stored
    entry.outIfIndex = 0x43444546;
    entry.elbAttrD = 0x4748;
    entry.elbAttrE = 0x494A4B4C;
    entry.zeroWord = 0xEDEEEFF0;
    for (uint8_t i = 0; i < 28; ++i) entry.elbCtxA[i] = static_cast<uint8_t>(0x50 + i);
    for (uint8_t i = 0; i < 12; ++i) entry.elbCtxB[i] = static_cast<uint8_t>(0x70 + i);
    entry.elbAttrF = 0x7C7D7E7F;
    entry.elbWord = 0x80818283;
    entry.elbHalfA = 0x8485;
    entry.elbAttrG = 0x86878889;
    entry.elbHalfB = 0x8A8B;
    entry.timeStampCreate = 0x8C8D8E8F90919293;
    entry.timeStampSmooth = 0x9495969798999A9B;
    entry.elbFlagC = 0x9C;
    entry.elbFlagD = 0x9D;
    entry.elbFlagA = 0xF3F4F59E;  // 8 bits are stored
    entry.elbFlagB = 0xF6F7F89F;  // 8 bits are stored
}

inline void fillSample(L3Mc6ElbEntry& entry) {
    fillShared(entry);
    entry.zeroByte = 0xF9;
}

inline void fillSample(L3Mc6ElbEntryExt& entry) {
    fillShared(entry);
    entry.subIfIndex = 0xB0B1B2B3;
    for (uint8_t i = 0; i < 16; ++i) entry.elbExtCtx[i] = static_cast<uint8_t>(0xB4 + i);
    entry.vlanFlagA = 0xC4;
    entry.vlanFlagB = 0xC5;
    entry.vlanFlagC = 0xC6;
    entry.elbFlagE = 0xC7;
    entry.elbExtA = 0xC8C9CACB;
    entry.elbExtB = 0xCCCDCECF;
}

// Changes the members that all these tables store as reading a stored row does. The test of a table adds its own
// members.
template <class Entry>
void readShared(Entry& entry) {
    entry.vrId = 0x010000D1;
    entry.vrfId = 0x020000D2;
    entry.addrType = 2;
    entry.groupAddr = {{0xFF1E0000, 0, 0, 0x1234}};
    entry.sourceAddr = {{0x20010DB8, 0, 0, 0x5678}};
    entry.elbAttrA = 0x0C0000EC;
    entry.elbAttrB = 0x1716151413121110;
    entry.elbAttrC = 0x0D0000ED;
    entry.instType = 0;
    entry.instId = 0xE606;
    entry.outIfIndex = 0x030000E3;
    entry.elbAttrD = 0x09E9;
    for (uint8_t i = 0; i < 28; ++i) entry.elbCtxA[i] = static_cast<uint8_t>(0x20 + i);
    for (uint8_t i = 0; i < 12; ++i) entry.elbCtxB[i] = static_cast<uint8_t>(0x40 + i);
    entry.elbWord = 0x0F0000F1;
    entry.elbHalfA = 0xAFEF;
    entry.elbAttrG = 0x0B0000EB;
    entry.elbHalfB = 0xAEEE;
    entry.timeStampCreate = 0xA7A6A5A4A3A2A1A0;
    entry.timeStampSmooth = 0xAFAEADACABAAA9A8;
    entry.elbFlagA = 0xE5;
    entry.elbFlagB = 0xE8;
}

}  // namespace mcast6::tests::l3_egress
