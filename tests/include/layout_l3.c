/* Sizes and offsets of the layer-3 tables' records except those in layout.c, and of their process-wide data; see
 * layout.c. */
#include <assert.h>
#include <stddef.h>

#include "mcast6_db.h"

/* l3mc6_glbcfg.h */
static_assert(sizeof(L3Mc6GlbCfgEntry) == 48, "");
static_assert(offsetof(L3Mc6GlbCfgEntry, cfgKeyA) == 0, "");
static_assert(offsetof(L3Mc6GlbCfgEntry, cfgKeyB) == 4, "");
static_assert(offsetof(L3Mc6GlbCfgEntry, cfgKeyC) == 8, "");
static_assert(offsetof(L3Mc6GlbCfgEntry, cfgWord3) == 12, "");
static_assert(offsetof(L3Mc6GlbCfgEntry, smoothVersion) == 16, "");
static_assert(offsetof(L3Mc6GlbCfgEntry, glbVersion) == 20, "");
static_assert(offsetof(L3Mc6GlbCfgEntry, cfgWord6) == 24, "");
static_assert(offsetof(L3Mc6GlbCfgEntry, cfgWord7) == 28, "");
static_assert(offsetof(L3Mc6GlbCfgEntry, timeStampCreate) == 32, "");
static_assert(offsetof(L3Mc6GlbCfgEntry, timeStampSmooth) == 40, "");

/* l3mc6_register_elb.h */
static_assert(sizeof(L3Mc6RegOifEntry) == 128, "");
static_assert(offsetof(L3Mc6RegOifEntry, vrId) == 0, "");
static_assert(offsetof(L3Mc6RegOifEntry, vrfId) == 4, "");
static_assert(offsetof(L3Mc6RegOifEntry, groupAddr) == 8, "");
static_assert(offsetof(L3Mc6RegOifEntry, sourceAddr) == 24, "");
static_assert(offsetof(L3Mc6RegOifEntry, outIfIndex) == 40, "");
static_assert(offsetof(L3Mc6RegOifEntry, regAttrA) == 48, "");
static_assert(offsetof(L3Mc6RegOifEntry, regAttrB) == 52, "");
static_assert(offsetof(L3Mc6RegOifEntry, instId) == 56, "");
static_assert(offsetof(L3Mc6RegOifEntry, instType) == 60, "");
static_assert(offsetof(L3Mc6RegOifEntry, regAttrC) == 61, "");
static_assert(offsetof(L3Mc6RegOifEntry, regAttrD) == 62, "");
static_assert(offsetof(L3Mc6RegOifEntry, regHalfB) == 64, "");
static_assert(offsetof(L3Mc6RegOifEntry, regHalfA) == 66, "");
static_assert(offsetof(L3Mc6RegOifEntry, regCtxA) == 68, "");
static_assert(offsetof(L3Mc6RegOifEntry, regCtxB) == 96, "");
static_assert(offsetof(L3Mc6RegOifEntry, regWord) == 108, "");
static_assert(offsetof(L3Mc6RegOifEntry, timeStampCreate) == 112, "");
static_assert(offsetof(L3Mc6RegOifEntry, timeStampSmooth) == 120, "");

/* l3_egress.h */
static_assert(sizeof(L3Mc6ElbEntry) == 288, "");
static_assert(offsetof(L3Mc6ElbEntry, entryType) == 0, "");
static_assert(offsetof(L3Mc6ElbEntry, vrId) == 4, "");
static_assert(offsetof(L3Mc6ElbEntry, vrfId) == 8, "");
static_assert(offsetof(L3Mc6ElbEntry, addrType) == 12, "");
static_assert(offsetof(L3Mc6ElbEntry, groupAddr) == 16, "");
static_assert(offsetof(L3Mc6ElbEntry, sourceAddr) == 32, "");
static_assert(offsetof(L3Mc6ElbEntry, elbAttrA) == 48, "");
static_assert(offsetof(L3Mc6ElbEntry, elbAttrB) == 56, "");
static_assert(offsetof(L3Mc6ElbEntry, elbAttrC) == 64, "");
static_assert(offsetof(L3Mc6ElbEntry, instType) == 68, "");
static_assert(offsetof(L3Mc6ElbEntry, instId) == 72, "");
static_assert(offsetof(L3Mc6ElbEntry, outIfIndex) == 76, "");
static_assert(offsetof(L3Mc6ElbEntry, elbAttrD) == 84, "");
static_assert(offsetof(L3Mc6ElbEntry, elbAttrE) == 88, "");
static_assert(offsetof(L3Mc6ElbEntry, zeroWord) == 92, "");
static_assert(offsetof(L3Mc6ElbEntry, elbCtxA) == 156, "");
static_assert(offsetof(L3Mc6ElbEntry, elbCtxB) == 212, "");
static_assert(offsetof(L3Mc6ElbEntry, elbAttrF) == 224, "");
static_assert(offsetof(L3Mc6ElbEntry, elbWord) == 232, "");
static_assert(offsetof(L3Mc6ElbEntry, elbHalfA) == 240, "");
static_assert(offsetof(L3Mc6ElbEntry, elbAttrG) == 244, "");
static_assert(offsetof(L3Mc6ElbEntry, elbHalfB) == 248, "");
static_assert(offsetof(L3Mc6ElbEntry, timeStampCreate) == 256, "");
static_assert(offsetof(L3Mc6ElbEntry, timeStampSmooth) == 264, "");
static_assert(offsetof(L3Mc6ElbEntry, elbFlagC) == 272, "");
static_assert(offsetof(L3Mc6ElbEntry, elbFlagD) == 273, "");
static_assert(offsetof(L3Mc6ElbEntry, zeroByte) == 274, "");
static_assert(offsetof(L3Mc6ElbEntry, elbFlagA) == 276, "");
static_assert(offsetof(L3Mc6ElbEntry, elbFlagB) == 280, "");
static_assert(sizeof(L3Mc6ElbEntryExt) == 296, "");
static_assert(offsetof(L3Mc6ElbEntryExt, entryType) == 0, "");
static_assert(offsetof(L3Mc6ElbEntryExt, vrId) == 4, "");
static_assert(offsetof(L3Mc6ElbEntryExt, vrfId) == 8, "");
static_assert(offsetof(L3Mc6ElbEntryExt, addrType) == 12, "");
static_assert(offsetof(L3Mc6ElbEntryExt, groupAddr) == 16, "");
static_assert(offsetof(L3Mc6ElbEntryExt, sourceAddr) == 32, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbAttrA) == 48, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbAttrB) == 56, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbAttrC) == 64, "");
static_assert(offsetof(L3Mc6ElbEntryExt, instType) == 68, "");
static_assert(offsetof(L3Mc6ElbEntryExt, instId) == 72, "");
static_assert(offsetof(L3Mc6ElbEntryExt, outIfIndex) == 76, "");
static_assert(offsetof(L3Mc6ElbEntryExt, subIfIndex) == 80, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbAttrD) == 84, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbAttrE) == 88, "");
static_assert(offsetof(L3Mc6ElbEntryExt, zeroWord) == 92, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbExtCtx) == 140, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbCtxA) == 156, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbCtxB) == 212, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbAttrF) == 224, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbWord) == 232, "");
static_assert(offsetof(L3Mc6ElbEntryExt, vlanFlagA) == 236, "");
static_assert(offsetof(L3Mc6ElbEntryExt, vlanFlagB) == 237, "");
static_assert(offsetof(L3Mc6ElbEntryExt, vlanFlagC) == 238, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbHalfA) == 240, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbAttrG) == 244, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbHalfB) == 248, "");
static_assert(offsetof(L3Mc6ElbEntryExt, timeStampCreate) == 256, "");
static_assert(offsetof(L3Mc6ElbEntryExt, timeStampSmooth) == 264, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbFlagC) == 272, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbFlagD) == 273, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbFlagE) == 275, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbFlagA) == 276, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbFlagB) == 280, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbExtA) == 288, "");
static_assert(offsetof(L3Mc6ElbEntryExt, elbExtB) == 292, "");

/* l3_bd_egress.h */
static_assert(sizeof(L3BdElb6Entry) == 280, "");
static_assert(offsetof(L3BdElb6Entry, elbKind) == 0, "");
static_assert(offsetof(L3BdElb6Entry, vrId) == 4, "");
static_assert(offsetof(L3BdElb6Entry, vrfId) == 8, "");
static_assert(offsetof(L3BdElb6Entry, addrType) == 12, "");
static_assert(offsetof(L3BdElb6Entry, groupAddr) == 16, "");
static_assert(offsetof(L3BdElb6Entry, sourceAddr) == 32, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr1) == 48, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr2) == 56, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr3) == 64, "");
static_assert(offsetof(L3BdElb6Entry, fixedOne) == 68, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr4) == 72, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr5) == 76, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr6) == 84, "");
static_assert(offsetof(L3BdElb6Entry, elbSubKind) == 92, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr7) == 96, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr8) == 98, "");
static_assert(offsetof(L3BdElb6Entry, tnlAttr1) == 104, "");
static_assert(offsetof(L3BdElb6Entry, tnlAttr2) == 108, "");
static_assert(offsetof(L3BdElb6Entry, tnlAttr3) == 114, "");
static_assert(offsetof(L3BdElb6Entry, tnlAttr4) == 116, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr9) == 120, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr10) == 124, "");
static_assert(offsetof(L3BdElb6Entry, tnlAttr5) == 140, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr11) == 156, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr12) == 212, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr13) == 220, "");
static_assert(offsetof(L3BdElb6Entry, appSrcPid) == 224, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr14) == 228, "");
static_assert(offsetof(L3BdElb6Entry, smoothVersion) == 232, "");
static_assert(offsetof(L3BdElb6Entry, mlagRole) == 236, "");
static_assert(offsetof(L3BdElb6Entry, isMlagDual) == 237, "");
static_assert(offsetof(L3BdElb6Entry, inIfhasMlag) == 238, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr15) == 240, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr16) == 244, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr17) == 248, "");
static_assert(offsetof(L3BdElb6Entry, timeStampCreate) == 256, "");
static_assert(offsetof(L3BdElb6Entry, timeStampSmooth) == 264, "");
static_assert(offsetof(L3BdElb6Entry, tnlAttr6) == 273, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr18) == 275, "");
static_assert(offsetof(L3BdElb6Entry, bdElbAttr19) == 276, "");
static_assert(sizeof(L3BdElb6VsgKey) == 40, "");
static_assert(offsetof(L3BdElb6VsgKey, wordA) == 0, "");
static_assert(offsetof(L3BdElb6VsgKey, wordB) == 4, "");
static_assert(offsetof(L3BdElb6VsgKey, addrC) == 8, "");
static_assert(offsetof(L3BdElb6VsgKey, addrD) == 24, "");

/* l3_mvpn_egress.h */
static_assert(sizeof(L3McMvpnTnlElbEntry) == 224, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, entryType) == 0, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, vrId) == 4, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, vrfId) == 8, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, addrType) == 12, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, groupAddr) == 16, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, sourceAddr) == 32, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, memberAttr1) == 48, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, kindWord) == 52, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, memberAttr2) == 56, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, memberAttr3) == 64, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, tunnelWord1) == 68, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, tunnelWord2) == 72, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, tunnelWord3) == 76, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, tunnelWord4) == 80, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, tunnelWord5) == 84, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, tunnelWord6) == 88, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, tunnelWord7) == 92, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, tunnelWord8) == 96, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, tunnelWord9) == 100, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, outIfIndex) == 104, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, subKeyWord) == 108, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, l2IfIndex) == 112, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, subWord1) == 116, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, subWord2) == 120, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, subWord3) == 124, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, subByte1) == 128, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, subByte2) == 129, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, subByte3) == 130, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, tunnelData) == 132, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, svcCtxHighPrio) == 148, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, svcCtxNormalPrio) == 176, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, appSrcPid) == 188, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, appVersion) == 192, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, smoothVersion) == 196, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, serviceStatus) == 200, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, errCode) == 202, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, timeStampCreate) == 208, "");
static_assert(offsetof(L3McMvpnTnlElbEntry, timeStampSmooth) == 216, "");
static_assert(sizeof(L3McMvpnElbKey) == 40, "");
static_assert(offsetof(L3McMvpnElbKey, vrId) == 0, "");
static_assert(offsetof(L3McMvpnElbKey, vrfId) == 4, "");
static_assert(offsetof(L3McMvpnElbKey, groupAddr) == 8, "");
static_assert(offsetof(L3McMvpnElbKey, sourceAddr) == 24, "");

/* l3mc6_mvpn_tnl_elb.h */
static_assert(sizeof(L3McMvpnVsgKey) == 16, "");
static_assert(offsetof(L3McMvpnVsgKey, word) == 0, "");
static_assert(sizeof(g_l3Mc6MvpnTnlElbStatObjCache) == 8, "");
static_assert(sizeof(g_l3Mc6MvpnTnlElbPid) == 4, "");

/* l3mc6_elb.h */
static_assert(sizeof(g_l3Elb6ScanDbHandle) == 24, "");
static_assert(sizeof(g_l3Elb6DbReadObjCache) == 8, "");

/* l3mc6_sub_elb.h */
static_assert(sizeof(g_l3SubElb6ScanDbHandle) == 24, "");
static_assert(sizeof(g_l3SubElb6DbReadObjCache) == 8, "");
static_assert(sizeof(g_subElb6DbIsLimit) == 4, "");

/* l3mc6_vlan_elb.h */
static_assert(sizeof(g_l3VlanElb6ScanDbHandle) == 24, "");
static_assert(sizeof(g_vlanElb6DbReadObjCache) == 8, "");

/* l3mc6_bd_tag_elb.h */
static_assert(sizeof(g_l3Mc6BdTagElbStatObjCache) == 8, "");
static_assert(sizeof(g_l3Mc6BdTagElbPid) == 4, "");

/* l3mc6_bd_untag_elb.h */
static_assert(sizeof(g_l3Mc6BdUnTagElbStatObjCache) == 8, "");

/* l3mc6_bd_tnl_elb.h */
static_assert(sizeof(g_l3Mc6BdTnlElbStatObjCache) == 8, "");
static_assert(sizeof(g_l3Mc6BdTnlElbPid) == 4, "");
