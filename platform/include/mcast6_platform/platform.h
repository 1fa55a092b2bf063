/* This platform's own interface for a host: opening a store, batches, link names, and reading back what the counters
 * say. It is no part of the contract that the multicast library needs (engine.h, tables.h, host.h). Codes are those of
 * engine.h.
 *
 * A host that links libmcast6platform.so need call nothing: the first object that is made opens "memory:". */
#ifndef MCAST6_PLATFORM_PLATFORM_H
#define MCAST6_PLATFORM_PLATFORM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Opens the store that 'uri' names: the kind of store, a colon, and what that kind wants, options behind a question
 * mark last ('kind:path?name=value&flag'; %XX stands for a byte).
 *   memory:   the tables live in this process; batch=RECORDS is the most records that a batch may change (100000)
 * Further kinds may be compiled in, or lie beside this library as modules, mcast6db/mcast6_store_<kind>.so.
 * Returns 0, or non-zero with the reason in mcast6_platform_error(): the URI is null or malformed, its kind or an
 * option is unknown, or a store is open already. Nothing changes then. */
uint32_t mcast6_platform_open(const char *uri);

/* Closes the store and drops what it held in this process. Open batches are aborted. No other thread may be inside the
 * engine. Nothing open: nothing happens.
 * Every engine handle becomes stale but those of cache objects and their cached root iterators, which serve the store
 * that is opened next: a cache object as soon as it is reset, a cached root iterator as soon as it is given a key.
 * Until then they answer MCAST6_DB_BAD_OPERATION, and MCAST6_DB_BAD_HANDLE while nothing is open. So a host that closes
 * and opens again releases no cache and resets nothing of its own. */
void mcast6_platform_close(void);

/* Why this thread's last failed call failed, "" if none did: calls of this header and of engine.h and tables.h that
 * answered MCAST6_DB_TABLE_FULL or a code from MCAST6_DB_BAD_HANDLE on. Valid until the thread's next call. */
const char *mcast6_platform_error(void);

/* Batches. The changes that a thread makes between begin and commit become visible as one, or not at all, over all
 * tables. Each step answers at once, as it would without a batch, and reads by key see the thread's own steps; counts
 * and iterators show what is committed. From begin to the end of the batch other threads' changes and batches wait;
 * readers wait at most for the commit itself.
 *
 * _begin   MCAST6_DB_BATCH_OPEN: this thread has a batch open. Opens "memory:" when no store is open.
 * _commit  MCAST6_DB_NO_BATCH: this thread has none open; MCAST6_DB_BATCH_GONE: its store was closed since;
 *          MCAST6_DB_BATCH_LOST, MCAST6_DB_NO_MEMORY, MCAST6_DB_STORE_FAILED: nothing of the batch was stored. The
 *          batch is over in every case.
 * _abort   drops the batch; MCAST6_DB_NO_BATCH and MCAST6_DB_BATCH_GONE as above.
 *
 * A step that would change more records than the store's bound allows answers MCAST6_DB_BATCH_TOO_LARGE and is not
 * taken; the batch goes on without it. A thread that ends with a batch open aborts it. */
uint32_t mcast6_platform_begin(void);
uint32_t mcast6_platform_commit(void);
uint32_t mcast6_platform_abort(void);

/* Link names: what an import calls the interfaces of a virtual router, for layer 2 or 3. They lie in the store, so that
 * all processes that open it see the same, and a batch takes them in like the tables. A name has 1 to 51 bytes.
 *
 * _set_link_name  gives an interface its name, or takes it away when 'name' is "". MCAST6_DB_BAD_LENGTH: too long.
 * _link_name      writes the name with a zero behind it. MCAST6_DB_NO_SUCH_RECORD: none; MCAST6_DB_BAD_LENGTH: 'size'
 *                 is too small; 52 is enough.
 * _link_index     finds an interface of that name. MCAST6_DB_NO_SUCH_RECORD: none. As in counts and iterators, the
 *                 names are those that are committed.
 * _link_names     calls 'visit' with each name of the layer, until it returns non-zero; in no promised order. The names
 *                 are those that are committed.
 * MCAST6_DB_BAD_ARGUMENT: a null pointer, or a layer that is neither 2 nor 3. */
typedef int (*mcast6_platform_link_visitor)(void *context, uint32_t ifIndex, const char *name);
uint32_t mcast6_platform_set_link_name(uint32_t vrId, uint32_t layer, uint32_t ifIndex, const char *name);
uint32_t mcast6_platform_link_name(uint32_t vrId, uint32_t layer, uint32_t ifIndex, char *name, uint32_t size);
uint32_t mcast6_platform_link_index(uint32_t vrId, uint32_t layer, const char *name, uint32_t *ifIndex);
uint32_t mcast6_platform_link_names(uint32_t vrId, uint32_t layer, mcast6_platform_link_visitor visit, void *context);

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
