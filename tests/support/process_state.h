// The process-wide state of the library besides its context: cached objects, scan handles, source process ids.
#pragma once

#include "mcast6_db.h"

namespace mcast6::tests {

// Restores the state at load. Cached objects are not released: a test resets the engine at the same time.
inline void forgetProcessState() {
    for (Mcast6DbHandle* cache :
         {&g_l2Mfib6BdDbReadObjCache, &g_l2Mfib6DbReadObjCache, &g_l3Mfib6DbReadObjCache, &g_l3Mfib6DbStatObjCache,
          &g_l3Elb6DbReadObjCache, &g_l3SubElb6DbReadObjCache, &g_vlanElb6DbReadObjCache, &g_l3Mc6BdTagElbStatObjCache,
          &g_l3Mc6BdUnTagElbStatObjCache, &g_l3Mc6BdTnlElbStatObjCache, &g_l3Mc6MvpnTnlElbStatObjCache}) {
        *cache = 0;
    }
    for (Mcast6DbScanHandle* scan : {&g_l3Elb6ScanDbHandle, &g_l3SubElb6ScanDbHandle, &g_l3VlanElb6ScanDbHandle}) {
        *scan = {0, 0, 0};
    }
    for (uint32_t* pid : {&g_l2BdMfib6Pid, &g_l2McVlanMfib6Pid, &g_l3Mfib6Pid, &g_l3Mc6BdTagElbPid, &g_l3Mc6BdTnlElbPid,
                          &g_l3Mc6MvpnTnlElbPid}) {
        *pid = 0;
    }
    g_subElb6DbIsLimit = 0;
}

}  // namespace mcast6::tests
