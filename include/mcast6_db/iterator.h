/* Iterator handles, cached engine objects and fast counts, which the tables share. A host rarely calls these itself:
 * each table has operations of its own on top of them. */
#ifndef MCAST6_DB_ITERATOR_H
#define MCAST6_DB_ITERATOR_H

#include "mcast6_db/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The iterator handle: the object that the iterator reads into, and the root iterator, which is released with its
 * object. */
typedef struct Mcast6DbRes {
    Mcast6DbHandle object;
    Mcast6DbHandle rootIter;
} Mcast6DbRes;

/* Creates an engine object; 0 is success, and only then '*object' is written. */
typedef uint32_t (*Mcast6DbCreateFunc)(uint32_t objType, uint32_t connType, Mcast6DbHandle *object);

/* How a table creates and releases the objects of its iterators. */
typedef struct Mcast6DbIterFuncs {
    Mcast6DbCreateFunc create;
    void (*release)(Mcast6DbHandle object);
} Mcast6DbIterFuncs;

/* How a table creates and resets a cached object. */
typedef struct Mcast6DbCacheFuncs {
    Mcast6DbCreateFunc create;
    uint32_t (*reset)(Mcast6DbHandle object); /* 0 is success */
} Mcast6DbCacheFuncs;

/* The cached object and root iterator of a table's fast scans. */
typedef struct Mcast6DbScanHandle {
    uint32_t inUse; /* 1 while a fast scan holds them */
    Mcast6DbHandle object;
    Mcast6DbHandle rootIter;
} Mcast6DbScanHandle;

/* Creates an iterator handle over the records that match 'key' (over all with 'descriptor' and 'key' null). The caller
 * owns the handle (MCAST6_DB_Malloc). Null when any step failed; nothing is left behind, logged or counted here.
 * 'funcs' must not be null. */
MCAST6_API Mcast6DbRes *MCAST6_DB_CreateIterCommon(const Mcast6DbIterFuncs *funcs, const Mcast6DbKeyDesc *descriptor,
                                                   const void *key);

/* As MCAST6_DB_CreateIterCommon, but into a handle that the caller provides; it is written on success only.
 *   0      done
 *   1      'resource' is null, or a step failed; nothing is left behind, logged or counted here */
MCAST6_API uint32_t MCAST6_DB_CreateIterCommonWithDbRes(Mcast6DbRes *resource, const Mcast6DbIterFuncs *funcs,
                                                        const Mcast6DbKeyDesc *descriptor, const void *key);

/* Ensures that '*slot' holds a cached object ready for use: creates one if the slot is 0, and resets it in any case. An
 * object whose first reset fails is not kept in the slot. Not for concurrent calls on one slot; the pointers must not
 * be null.
 *   0      done
 *   1      the object could not be created (counts 55, logged) or reset (counts 56, logged); the slot is unchanged */
MCAST6_API uint32_t MCAST6_DB_CreateObjCache(uint32_t objType, uint32_t connType, Mcast6DbHandle *slot,
                                             const Mcast6DbCacheFuncs *funcs);

/* Returns the number of records of a table, counted through its cached object; 0 on any failure as well, among them a
 * null 'funcs' or a null member of it. A failed count is logged. Not for concurrent calls on one slot. */
MCAST6_API uint32_t MCAST6_DB_GetCountFast(const Mcast6DbCacheFuncs *funcs, Mcast6DbHandle *slot);

#ifdef __cplusplus
}
#endif

#endif
