// The row of l3mc6_mfib, which its record operations and its queries share.
#pragma once

#include "frame/fields.h"
#include "mcast6_db/l3mc6_mfib.h"

namespace mcast6::l3mc6_mfib {

using E = L3Mc6MfibEntry;

// clang-format off
// In row order, which differs from the record's: attr1 and attr2 are swapped, as are attr21 and attr22; attr19 comes
// before attr18; attr16 comes last.
using Row = mcast6::Row<208,
    Copy    <  0, &E::vrId>,
    Copy    <  4, &E::vrfId>,
    Address <  8, &E::groupAddr>,
    Address < 24, &E::sourceAddr>,
    Copy    < 40, &E::attr2>,
    Copy    < 41, &E::attr1>,
    Copy    < 42, &E::attr3>,
    Copy    < 44, &E::attr4>,
    Copy    < 48, &E::inIfIndex>,
    Copy    < 52, &E::regIfIndex>,
    Copy    < 56, &E::attr7>,
    Gap     < 60, 1>,
    Copy    < 61, &E::attr8>,
    Resized < 62, uint16_t, &E::attr9>,
    Copy    < 64, &E::attr10>,
    Copy    < 68, &E::attr11>,
    Copy    < 72, &E::attr12>,
    Copy    < 76, &E::attr13>,
    Block   < 80, &E::attr14>,
    Copy    < 88, &E::attr15>,
    Block   < 92, &E::mcStatSvcCtx>,
    Block   <128, &E::attr17>,
    Block   <140, &E::attr19>,
    Block   <152, &E::attr18>,
    Copy    <164, &E::attr22>,
    Copy    <166, &E::attr21>,
    Copy    <168, &E::appSrcPid>,
    Copy    <172, &E::attr20>,
    Copy    <176, &E::smoothVersion>,
    Copy    <180, &E::attr23>,
    Copy    <184, &E::attr24>,
    Now     <188, &E::timeStampCreate>,
    Now     <196, &E::timeStampSmooth>,
    Copy    <204, &E::attr16>>;
// clang-format on

}  // namespace mcast6::l3mc6_mfib
