/* Sizes and offsets of the layer-2 tables' records and process-wide data; see layout.c. */
#include <assert.h>
#include <stddef.h>

#include "mcast6_db.h"

/* l2mc6_global_enable.h */
static_assert(sizeof(MldGlobalEntry) == 40, "");
static_assert(offsetof(MldGlobalEntry, keyId1) == 0, "");
static_assert(offsetof(MldGlobalEntry, keyId2) == 4, "");
static_assert(offsetof(MldGlobalEntry, cfgWord1) == 8, "");
static_assert(offsetof(MldGlobalEntry, smoothVersion) == 12, "");
static_assert(offsetof(MldGlobalEntry, serviceStatus) == 16, "");
static_assert(offsetof(MldGlobalEntry, errCode) == 18, "");
static_assert(offsetof(MldGlobalEntry, timeStampCreate) == 24, "");
static_assert(offsetof(MldGlobalEntry, timeStampSmooth) == 32, "");

/* l2mc6_vlan_enable.h */
static_assert(sizeof(L2VlanEnableEntry) == 80, "");
static_assert(offsetof(L2VlanEnableEntry, keyId1) == 0, "");
static_assert(offsetof(L2VlanEnableEntry, keyId2) == 4, "");
static_assert(offsetof(L2VlanEnableEntry, spare1) == 8, "");
static_assert(offsetof(L2VlanEnableEntry, vlanId) == 12, "");
static_assert(offsetof(L2VlanEnableEntry, vlanAttr) == 16, "");
static_assert(offsetof(L2VlanEnableEntry, cfgWord1) == 20, "");
static_assert(offsetof(L2VlanEnableEntry, cfgWord2) == 24, "");
static_assert(offsetof(L2VlanEnableEntry, cfgWord3) == 28, "");
static_assert(offsetof(L2VlanEnableEntry, cfgWord4) == 32, "");
static_assert(offsetof(L2VlanEnableEntry, cfgWord5) == 36, "");
static_assert(offsetof(L2VlanEnableEntry, serviceStatus) == 40, "");
static_assert(offsetof(L2VlanEnableEntry, errCode) == 42, "");
static_assert(offsetof(L2VlanEnableEntry, timeStampCreate) == 48, "");
static_assert(offsetof(L2VlanEnableEntry, timeStampSmooth) == 56, "");
static_assert(offsetof(L2VlanEnableEntry, l2mcEnable) == 64, "");
static_assert(offsetof(L2VlanEnableEntry, attrC) == 68, "");

/* l2mc6_vlan_port.h */
static_assert(sizeof(VlanPortEntry) == 80, "");
static_assert(offsetof(VlanPortEntry, keyId1) == 0, "");
static_assert(offsetof(VlanPortEntry, portAttr) == 4, "");
static_assert(offsetof(VlanPortEntry, spare1) == 8, "");
static_assert(offsetof(VlanPortEntry, vlanId) == 12, "");
static_assert(offsetof(VlanPortEntry, spare2) == 16, "");
static_assert(offsetof(VlanPortEntry, keyId3) == 20, "");
static_assert(offsetof(VlanPortEntry, keyId4) == 24, "");
static_assert(offsetof(VlanPortEntry, spare3) == 28, "");
static_assert(offsetof(VlanPortEntry, cfgWord1) == 44, "");
static_assert(offsetof(VlanPortEntry, smoothVersion) == 48, "");
static_assert(offsetof(VlanPortEntry, serviceStatus) == 52, "");
static_assert(offsetof(VlanPortEntry, errCode) == 56, "");
static_assert(offsetof(VlanPortEntry, timeStampCreate) == 64, "");
static_assert(offsetof(VlanPortEntry, timeStampSmooth) == 72, "");

/* flow_stat_sub.h */
static_assert(sizeof(FlowStatSubEntry) == 80, "");
static_assert(offsetof(FlowStatSubEntry, addrType) == 0, "");
static_assert(offsetof(FlowStatSubEntry, keyId1) == 4, "");
static_assert(offsetof(FlowStatSubEntry, srcPid) == 8, "");
static_assert(offsetof(FlowStatSubEntry, getFlag) == 12, "");
static_assert(offsetof(FlowStatSubEntry, keyId2) == 16, "");
static_assert(offsetof(FlowStatSubEntry, flowAddr1) == 20, "");
static_assert(offsetof(FlowStatSubEntry, flowAddr2) == 36, "");
static_assert(offsetof(FlowStatSubEntry, cfgWord2) == 52, "");
static_assert(offsetof(FlowStatSubEntry, cfgWord3) == 56, "");
static_assert(offsetof(FlowStatSubEntry, smoothVersion) == 60, "");
static_assert(offsetof(FlowStatSubEntry, timeStampCreate) == 64, "");
static_assert(offsetof(FlowStatSubEntry, timeStampSmooth) == 72, "");

/* l2_mfib.h */
static_assert(sizeof(L2Mc6MfibEntry) == 144, "");
static_assert(offsetof(L2Mc6MfibEntry, addrType) == 0, "");
static_assert(offsetof(L2Mc6MfibEntry, groupAddr) == 4, "");
static_assert(offsetof(L2Mc6MfibEntry, sourceAddr) == 20, "");
static_assert(offsetof(L2Mc6MfibEntry, domainType) == 36, "");
static_assert(offsetof(L2Mc6MfibEntry, domainId) == 40, "");
static_assert(offsetof(L2Mc6MfibEntry, vrId) == 44, "");
static_assert(offsetof(L2Mc6MfibEntry, vrfId) == 48, "");
static_assert(offsetof(L2Mc6MfibEntry, groupMaskLen) == 52, "");
static_assert(offsetof(L2Mc6MfibEntry, sourceMaskLen) == 53, "");
static_assert(offsetof(L2Mc6MfibEntry, pathFlags) == 56, "");
static_assert(offsetof(L2Mc6MfibEntry, mcId) == 60, "");
static_assert(offsetof(L2Mc6MfibEntry, mcidVersion) == 64, "");
static_assert(offsetof(L2Mc6MfibEntry, mfibVersion) == 72, "");
static_assert(offsetof(L2Mc6MfibEntry, svcCtxHighPrio) == 76, "");
static_assert(offsetof(L2Mc6MfibEntry, svcCtxNormalPrio) == 88, "");
static_assert(offsetof(L2Mc6MfibEntry, appSrcPid) == 100, "");
static_assert(offsetof(L2Mc6MfibEntry, appVersion) == 104, "");
static_assert(offsetof(L2Mc6MfibEntry, smoothVersion) == 108, "");
static_assert(offsetof(L2Mc6MfibEntry, serviceStatus) == 112, "");
static_assert(offsetof(L2Mc6MfibEntry, hppErrCode) == 116, "");
static_assert(offsetof(L2Mc6MfibEntry, enpErrCode) == 120, "");
static_assert(offsetof(L2Mc6MfibEntry, timeStampCreate) == 128, "");
static_assert(offsetof(L2Mc6MfibEntry, timeStampSmooth) == 136, "");

/* l2mc6_bd_mfib.h */
static_assert(sizeof(g_l2BdMfib6Pid) == 4, "");
static_assert(sizeof(g_l2Mfib6BdDbReadObjCache) == 8, "");

/* l2mc6_vlan_mfib.h */
static_assert(sizeof(g_l2McVlanMfib6Pid) == 4, "");
static_assert(sizeof(g_l2Mfib6DbReadObjCache) == 8, "");

/* l2_egress.h */
static_assert(sizeof(L2Elb6Entry) == 332, "");
static_assert(offsetof(L2Elb6Entry, vrId) == 0, "");
static_assert(offsetof(L2Elb6Entry, vrfId) == 4, "");
static_assert(offsetof(L2Elb6Entry, addrType) == 8, "");
static_assert(offsetof(L2Elb6Entry, groupAddr) == 12, "");
static_assert(offsetof(L2Elb6Entry, sourceAddr) == 28, "");
static_assert(offsetof(L2Elb6Entry, domainType) == 44, "");
static_assert(offsetof(L2Elb6Entry, vlanId) == 48, "");
static_assert(offsetof(L2Elb6Entry, bdId) == 48, "");
static_assert(offsetof(L2Elb6Entry, outIfIndex) == 52, "");
static_assert(offsetof(L2Elb6Entry, mcId) == 64, "");
static_assert(offsetof(L2Elb6Entry, mcidVersion) == 72, "");
static_assert(offsetof(L2Elb6Entry, mfibVersion) == 80, "");
static_assert(offsetof(L2Elb6Entry, fwdIfType) == 84, "");
static_assert(offsetof(L2Elb6Entry, userVlanId) == 86, "");
static_assert(offsetof(L2Elb6Entry, fwdIfExtType) == 88, "");
static_assert(offsetof(L2Elb6Entry, fwdIfKind) == 90, "");
static_assert(offsetof(L2Elb6Entry, fixedWord1) == 92, "");
static_assert(offsetof(L2Elb6Entry, fixedWord2) == 96, "");
static_assert(offsetof(L2Elb6Entry, tagVid1) == 100, "");
static_assert(offsetof(L2Elb6Entry, tagVid2) == 102, "");
static_assert(offsetof(L2Elb6Entry, vxlanWord0) == 104, "");
static_assert(offsetof(L2Elb6Entry, vxlanWord1) == 108, "");
static_assert(offsetof(L2Elb6Entry, vxlanWord2) == 112, "");
static_assert(offsetof(L2Elb6Entry, vxlanByte) == 116, "");
static_assert(offsetof(L2Elb6Entry, isSelfBoard) == 117, "");
static_assert(offsetof(L2Elb6Entry, elbByte1) == 118, "");
static_assert(offsetof(L2Elb6Entry, vxlanFlag) == 119, "");
static_assert(offsetof(L2Elb6Entry, vxlanWords3to6) == 120, "");
static_assert(offsetof(L2Elb6Entry, vxlanByte2) == 136, "");
static_assert(offsetof(L2Elb6Entry, egressAttr) == 140, "");
static_assert(offsetof(L2Elb6Entry, pathFlags) == 144, "");
static_assert(offsetof(L2Elb6Entry, appSrcPid) == 148, "");
static_assert(offsetof(L2Elb6Entry, appVersion) == 152, "");
static_assert(offsetof(L2Elb6Entry, smoothVersion) == 156, "");
static_assert(offsetof(L2Elb6Entry, elbData1) == 160, "");
static_assert(offsetof(L2Elb6Entry, svcCtxHighPrio) == 176, "");
static_assert(offsetof(L2Elb6Entry, svcCtxNormalPrio) == 232, "");
static_assert(offsetof(L2Elb6Entry, serviceStatus) == 244, "");
static_assert(offsetof(L2Elb6Entry, errCode) == 246, "");
static_assert(offsetof(L2Elb6Entry, timeStampCreate) == 248, "");
static_assert(offsetof(L2Elb6Entry, timeStampSmooth) == 256, "");
static_assert(offsetof(L2Elb6Entry, elbWord1) == 324, "");
static_assert(offsetof(L2Elb6Entry, elbWord2) == 328, "");
static_assert(sizeof(L2McBdElbKey) == 48, "");
static_assert(offsetof(L2McBdElbKey, vrId) == 0, "");
static_assert(offsetof(L2McBdElbKey, spare1) == 4, "");
static_assert(offsetof(L2McBdElbKey, bdId) == 8, "");
static_assert(offsetof(L2McBdElbKey, spare2) == 12, "");
static_assert(offsetof(L2McBdElbKey, groupAddr) == 16, "");
static_assert(offsetof(L2McBdElbKey, sourceAddr) == 32, "");

/* l2mc6_elb.h */
static_assert(sizeof(L2Elb6McidKey) == 48, "");
static_assert(offsetof(L2Elb6McidKey, keyWord0) == 0, "");
static_assert(offsetof(L2Elb6McidKey, keyWord1) == 8, "");
static_assert(offsetof(L2Elb6McidKey, keyAddr0) == 16, "");
static_assert(offsetof(L2Elb6McidKey, keyAddr1) == 32, "");

/* l2mc6_bd_vxlan_elb.h */
static_assert(sizeof(L2McBdVxlanVsgKey) == 16, "");
static_assert(offsetof(L2McBdVxlanVsgKey, word) == 0, "");

/* l2_route.h */
static_assert(sizeof(L2McBdRtEntry) == 80, "");
static_assert(offsetof(L2McBdRtEntry, vrId) == 0, "");
static_assert(offsetof(L2McBdRtEntry, vrfId) == 4, "");
static_assert(offsetof(L2McBdRtEntry, addrKind) == 8, "");
static_assert(offsetof(L2McBdRtEntry, rtKeyWord1) == 12, "");
static_assert(offsetof(L2McBdRtEntry, rtKind) == 16, "");
static_assert(offsetof(L2McBdRtEntry, rtKeyValue) == 20, "");
static_assert(offsetof(L2McBdRtEntry, rtKeyWord2) == 24, "");
static_assert(offsetof(L2McBdRtEntry, tagVid1) == 40, "");
static_assert(offsetof(L2McBdRtEntry, tagVid2) == 42, "");
static_assert(offsetof(L2McBdRtEntry, rtAttr) == 44, "");
static_assert(offsetof(L2McBdRtEntry, smoothVersion) == 48, "");
static_assert(offsetof(L2McBdRtEntry, serviceStatus) == 52, "");
static_assert(offsetof(L2McBdRtEntry, errCode) == 56, "");
static_assert(offsetof(L2McBdRtEntry, timeStampCreate) == 64, "");
static_assert(offsetof(L2McBdRtEntry, timeStampSmooth) == 72, "");

/* l2mc6_bd_rt_vxlan_elb.h */
static_assert(sizeof(L2McBdRtVxlanEntry) == 80, "");
static_assert(offsetof(L2McBdRtVxlanEntry, vrId) == 0, "");
static_assert(offsetof(L2McBdRtVxlanEntry, vrfId) == 4, "");
static_assert(offsetof(L2McBdRtVxlanEntry, addrKind) == 8, "");
static_assert(offsetof(L2McBdRtVxlanEntry, rtKeyWord1) == 12, "");
static_assert(offsetof(L2McBdRtVxlanEntry, rtKind) == 16, "");
static_assert(offsetof(L2McBdRtVxlanEntry, rtKeyValue) == 20, "");
static_assert(offsetof(L2McBdRtVxlanEntry, rtKeyWord3) == 28, "");
static_assert(offsetof(L2McBdRtVxlanEntry, rtKeyWord2) == 32, "");
static_assert(offsetof(L2McBdRtVxlanEntry, rtAttr) == 36, "");
static_assert(offsetof(L2McBdRtVxlanEntry, appSrcPid) == 44, "");
static_assert(offsetof(L2McBdRtVxlanEntry, smoothVersion) == 48, "");
static_assert(offsetof(L2McBdRtVxlanEntry, serviceStatus) == 52, "");
static_assert(offsetof(L2McBdRtVxlanEntry, errCode) == 56, "");
static_assert(offsetof(L2McBdRtVxlanEntry, timeStampCreate) == 64, "");
static_assert(offsetof(L2McBdRtVxlanEntry, timeStampSmooth) == 72, "");
