/* This platform's own interface for a host: opening a store, and reading back what the counters say. It is no part of
 * the contract that the multicast library needs (engine.h, tables.h, host.h).
 *
 * A host that links libmcast6platform.so need call nothing: the first object that is made opens "memory:". */
#ifndef MCAST6_PLATFORM_PLATFORM_H
#define MCAST6_PLATFORM_PLATFORM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Opens the store that 'uri' names; "memory:" keeps the tables in this process.
 * Returns 0, or non-zero with the reason in mcast6_platform_error(): the URI is null, malformed or of an unknown kind,
 * or a store is open already. Nothing changes then. */
uint32_t mcast6_platform_open(const char *uri);

/* Closes the store and drops what it held in this process. Every engine handle becomes stale. No other thread may be
 * inside the engine. Nothing open: nothing happens. */
void mcast6_platform_close(void);

/* Why the last failed call of this thread failed, "" if none did. Valid until the thread's next call. */
const char *mcast6_platform_error(void);

/* Bytes that the store takes for records, indexes and their book-keeping. */
uint64_t mcast6_platform_memory(void);

/* The value of a diagnostic counter and of a key performance indicator, by id; ids from 1024 share the last place. */
enum { MCAST6_PLATFORM_COUNTERS = 1024 };
uint64_t mcast6_platform_counter(uint32_t counterId);
uint64_t mcast6_platform_kpi(uint32_t kpiId);

/* What they count: "l3mc6_mfib: objects created", or null for an id that no table uses. Static storage. */
const char *mcast6_platform_counter_name(uint32_t counterId);
const char *mcast6_platform_kpi_name(uint32_t kpiId);

/* How many layer-3 forwarding entries were reported as removed. */
uint64_t mcast6_platform_trap_count(void);

/* Sets all counters, indicators and the trap count to zero. */
void mcast6_platform_reset_counters(void);

/* Sends debug lines up to 'level' to standard error; 0, as at the start, sends none. */
void mcast6_platform_debug(uint32_t level);

#ifdef __cplusplus
}
#endif

#endif
