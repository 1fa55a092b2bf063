/* mcast6db: the database access library for IPv6 multicast tables.
 *
 * A process of the multicast software loads this library to keep its state in the device's object database. Each table
 * has a module: a group of operations that convert between the caller's record and the packed database record, and that
 * call the database engine to read, write, update, smooth, delete, walk and count records. To smooth is to re-stamp the
 * records that are still valid with the current smooth version after a restart or switchover; records that keep an
 * older version are then stale.
 *
 * Order of calls
 *   1. MCAST6_DB_InitMem, if the host has its own allocator (before any iterator is created);
 *   2. MCAST6_DB_RegCallBack with the log callback, which also clears the error statistics;
 *   3. any operation of any table. There is no tear-down: what the library keeps for itself (cached engine objects, the
 *      last source process ids) lives as long as the process. The caller releases iterator handles.
 *
 * Results: 0 is success. MCAST6_DB_FAILED (1) means a null parameter or, where an operation says so, any failure.
 * MCAST6_DB_NO_RECORD (60) means no such record or the end of an iteration. Any other value is the database engine's
 * own code, passed through. Each operation lists what it returns.
 *
 * Reports: a failure is reported in three independent ways. The log callback receives a line. The host's diagnostic
 * counters and key performance indicators are incremented ("counts 455", "KPI 93" below). Database failures are counted
 * in g_mcast6DbErrStat by table number and error kind ("records kind 2").
 *
 * Ownership: records, keys and counts belong to the caller and are used only during the call. An iterator handle that
 * an operation returns belongs to the caller, who passes it to the release operation of the same table. The source and
 * the destination of a conversion must not overlap.
 *
 * Threads: the library starts no threads and takes no locks. Its own state is written without synchronisation: a host
 * calls the operations that use cached objects or scan handles ("one thread at a time") from one thread at a time. The
 * last source process id is that of the last writer, and the error statistics may lose a count when two threads add at
 * once. Other operations may run concurrently as far as the engine allows.
 *
 * Addresses are four 32-bit words in host order in records, and 16 bytes in network order in the database. Times are
 * seconds since 1970 in 64 bits.
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
#include "mcast6_db/version.h"

#endif
