/* mcast6db: the database access library for IPv6 multicast tables.
 *
 * A process of the multicast software loads this library to keep its state in the device's object database. Every table
 * has a module, a group of operations that convert between the caller's record and the packed database record, and
 * drive the database engine to read, write, update, smooth (re-stamp a kept record with the current smooth version
 * after a switchover), delete, walk and count.
 *
 * Order of calls
 *   1. MCAST6_DB_InitMem, if the host brings its own allocator (before any iterator is made);
 *   2. MCAST6_DB_RegCallBack with the log callback, which also clears the error statistics;
 *   3. any operation of any table. There is no tear-down: what the library keeps for itself (cached engine objects, the
 *      remembered source process ids) lives as long as the process; iterator handles are released by the caller.
 *
 * Results: 0 is success, MCAST6_DB_FAILED (1) a null parameter or, where an operation says so, any failure,
 * MCAST6_DB_NO_RECORD (60) no such record or the end of an iteration. Any other value is the database engine's own code,
 * passed through. Each operation lists what it returns.
 *
 * Reports: a failure is told three ways, each independent of the others. The log callback gets a line; the host's
 * diagnostic counters and key performance indicators move ("counts 455", "KPI 93" below); database failures are added up
 * in g_mcast6DbErrStat by table number and error kind ("records kind 2").
 *
 * Ownership: records, keys and counts belong to the caller and are only used during the call. An iterator handle that an
 * operation returns belongs to the caller, who gives it back to the release operation of the same table. The two sides of
 * a conversion do not overlap.
 *
 * Threads: the library starts none and takes no lock. What it keeps is written without synchronisation: a host calls the
 * operations that use cached objects or scan handles ("one thread at a time") from one thread at a time, and takes the
 * remembered source process id and the error statistics for what the last writers left. Otherwise operations may run side
 * by side as far as the engine allows.
 *
 * Addresses are four 32-bit words in host order in records, 16 bytes in network order in the database. Times are seconds
 * since 1970 in 64 bits.
 */
#ifndef MCAST6_DB_H
#define MCAST6_DB_H

#include "mcast6_db/context.h"
#include "mcast6_db/flow_stat_sub.h"
#include "mcast6_db/iterator.h"
#include "mcast6_db/l2_egress.h"
#include "mcast6_db/l2_mfib.h"
#include "mcast6_db/l2_route.h"
#include "mcast6_db/l2mc6_bd_enable.h"
#include "mcast6_db/l2mc6_bd_flowstat_sub.h"
#include "mcast6_db/l2mc6_bd_mfib.h"
#include "mcast6_db/l2mc6_bd_rt_vxlan_elb.h"
#include "mcast6_db/l2mc6_bd_tag_elb.h"
#include "mcast6_db/l2mc6_bd_tag_rt.h"
#include "mcast6_db/l2mc6_bd_untag_elb.h"
#include "mcast6_db/l2mc6_bd_untag_rt.h"
#include "mcast6_db/l2mc6_bd_vxlan_elb.h"
#include "mcast6_db/l2mc6_bd_vxlan_sub_elb.h"
#include "mcast6_db/l2mc6_elb.h"
#include "mcast6_db/l2mc6_flowstat_sub.h"
#include "mcast6_db/l2mc6_global_enable.h"
#include "mcast6_db/l2mc6_vlan_enable.h"
#include "mcast6_db/l2mc6_vlan_mfib.h"
#include "mcast6_db/l2mc6_vlan_port.h"
#include "mcast6_db/l3_bd_egress.h"
#include "mcast6_db/l3_egress.h"
#include "mcast6_db/l3_mvpn_egress.h"
#include "mcast6_db/l3mc6_bd_tag_elb.h"
#include "mcast6_db/l3mc6_bd_tnl_elb.h"
#include "mcast6_db/l3mc6_bd_untag_elb.h"
#include "mcast6_db/l3mc6_elb.h"
#include "mcast6_db/l3mc6_glbcfg.h"
#include "mcast6_db/l3mc6_mfib.h"
#include "mcast6_db/l3mc6_mfib_query.h"
#include "mcast6_db/l3mc6_mvpn_tnl_elb.h"
#include "mcast6_db/l3mc6_mvpn_tnl_subelb.h"
#include "mcast6_db/l3mc6_register_elb.h"
#include "mcast6_db/l3mc6_sub_elb.h"
#include "mcast6_db/l3mc6_vlan_elb.h"
#include "mcast6_db/types.h"

#endif
