/* The state of the library for the whole process: memory hooks, log callback and error statistics; and the helpers for
 * time and addresses that the tables share. */
#ifndef MCAST6_DB_CONTEXT_H
#define MCAST6_DB_CONTEXT_H

#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Receives the library's log lines. 'level' is always 9; 'logId' identifies the group of tables; 'format' and the
 * arguments after it are those of printf. */
typedef void (*Mcast6DbLogFunc)(uint32_t level, uint32_t logId, const char *format, ...);

/* Given to MCAST6_DB_RegCallBack. */
typedef struct Mcast6DbContext {
    Mcast6DbLogFunc log; /* null: nothing is logged */
} Mcast6DbContext;

/* Given to MCAST6_DB_InitMem: the allocator of iterator handles. */
typedef struct Mcast6DbMemCallback {
    void *(*alloc)(uint64_t size); /* returns null when there is no memory */
    void (*free)(void *block);
} Mcast6DbMemCallback;

/* Database failures since the last MCAST6_DB_RegCallBack, by table number (row) and error kind (column):
 *   0 reading, counting or building a query failed     5 never recorded
 *   1 the engine answered 13044 to a change             6 update failed
 *   2 write failed                                      7 creating a root iterator failed
 *   3 never recorded                                    8 another step of creating an iterator failed
 *   4 removal failed                                    9 stepping an iterator failed
 * The counts are added without synchronisation: concurrent callers may lose one. */
extern MCAST6_API uint64_t g_mcast6DbErrStat[33][10];

/* The memory hooks; malloc and free of the C library until MCAST6_DB_InitMem. */
extern MCAST6_API Mcast6DbMemCallback g_mcast6DbMemCallback;

/* The log callback; null until MCAST6_DB_RegCallBack. */
extern MCAST6_API Mcast6DbLogFunc g_mcast6DbContext;

/* Copies both hooks of 'callback', which must not be null. A block is freed with the hook that is set at that time, so
 * call this before any iterator is created. */
MCAST6_API void MCAST6_DB_InitMem(const Mcast6DbMemCallback *callback);

/* Returns what the allocate hook returns for 'size' bytes: a block, or null. */
MCAST6_API void *MCAST6_DB_Malloc(uint32_t size);

/* Passes 'block', which may be null, to the free hook. */
MCAST6_API void MCAST6_DB_Free(void *block);

/* Sets the log callback and clears the error statistics.
 *   0      done
 *   1      'context' is null; nothing changed */
MCAST6_API uint32_t MCAST6_DB_RegCallBack(const Mcast6DbContext *context);

/* Returns the log callback, or null. */
MCAST6_API Mcast6DbLogFunc MCAST6_DB_GetLogCallBack(void);

/* Adds 1 to the error statistics of 'tableNumber' (0 to 32) and 'errorKind' (0 to 9). Outside these ranges it logs a
 * line and changes nothing. */
MCAST6_API void MCAST6_DB_RecordErrState(uint32_t tableNumber, uint32_t errorKind);

/* Returns the time: seconds since 1970. */
MCAST6_API int64_t MCAST6_DB_GetSysTime(void);

/* Copies an address from a record to the database: four words in host order at 'source' become 'count' bytes in network
 * order at 'destination', which has room for 'destinationSize'. Always reads 16 bytes. Both sizes are 16.
 *   0      done
 *   other  memcpy_s refused the sizes or pointers */
MCAST6_API int MCAST6_DB_SetAddress(void *destination, uint32_t destinationSize, const void *source, uint32_t count);

/* Copies an address from the database to a record, the reverse of MCAST6_DB_SetAddress. The bytes of the first four
 * words at 'destination' change order even when the copy was refused.
 *   0      done
 *   other  memcpy_s refused the sizes or pointers */
MCAST6_API int MCAST6_DB_GetAddress(void *destination, uint32_t destinationSize, const void *source, uint32_t count);

/* Returns 1 when the two addresses, neither of them null, are equal, else 0. */
MCAST6_API uint32_t MCAST6_DB_IsIpv6AddrEqual(const Mcast6Ipv6Addr *left, const Mcast6Ipv6Addr *right);

#ifdef __cplusplus
}
#endif

#endif
