/* The database engine, as the multicast library calls it.
 *
 * This is one of the three parts of the platform contract; the others are the accessors of each table (tables.h) and
 * the host functions (host.h). Whoever provides these symbols, with C linkage, can carry libmcast6db.so: the library
 * binds to them at load time and knows nothing else of the platform.
 *
 * The objects of the engine
 *   object         made by db_create_<table>_obj for one purpose, its object type (see below), and released by
 *                  db_release_<table>_object. Field setters and db_set_<table>_all_fields fill it before a write or an
 *                  update; reading and stepping fill it for the field getters.
 *   cache object   the same, made by db_create_<table>_cache_object to be kept and reset before each use. Reading by
 *                  key fills the caller's buffer alone, not the object: getters answer MCAST6_DB_BAD_OPERATION.
 *   root iterator  a position in a table or in one index of it. It belongs to the object it was made on and is
 *                  released with that object; it has no release call of its own.
 *   statement      a question put together on an object (db_create_stmt, db_append_stmt_condition), from which
 *                  db_create_root_iterator_by_filter makes a root iterator.
 * All are named by 64-bit handles; 0 names nothing. A handle that was never given out, was released, or names a thing
 * of another kind or table is answered with MCAST6_DB_BAD_HANDLE and changes nothing.
 *
 * Object types: 0 write, 1 update, 3 read, 4 remove, 5 iterate, 9 count. An operation that the object's type does not
 * cover is answered with MCAST6_DB_BAD_OPERATION. 'connType' is 0.
 *
 * Keys
 *   A key descriptor is 16 bytes; its first 32-bit word is the key word: length of the key in bytes (bits 0-15), kind
 *   (bits 16-23: 1 primary, 9 secondary index, 2 sorted scan), index number (bits 24-31). The other 12 bytes are zero.
 *   A key is that many bytes: its parts joined without padding, scalars in host order, addresses in network order.
 *   A key word that the table does not have is answered with MCAST6_DB_BAD_KEY.
 *
 * Root iterators
 *   A root iterator is a position, not a snapshot. It stays valid while records are added, changed and removed, the one
 *   under it included; it never returns a record twice unless a change moved that record within the index, and it
 *   returns every record that was there, unmoved, from the iterator's creation to its end. The order is the store's,
 *   but for sorted statements.
 *
 * Threads: every function may be called from several threads at once; one object or iterator is used by one thread at
 * a time. No function blocks on anything but other calls of this contract, and none throws.
 *
 * All functions return an engine code; 0 is success. Handles and counts are written on success only.
 */
#ifndef MCAST6_PLATFORM_ENGINE_H
#define MCAST6_PLATFORM_ENGINE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    MCAST6_DB_OK = 0,
    MCAST6_DB_EXISTS_OR_ABSENT = 13044,  /* write of a present key; update or removal of an absent one */
    MCAST6_DB_NO_SUCH_RECORD = 15005,    /* read of an absent key, or of a position whose record is gone */
    MCAST6_DB_END_OF_ITERATION = 110012, /* step past the last record, again and again */
    MCAST6_DB_TABLE_FULL = 110024,       /* write of a new record to a table at its capacity; nothing was stored */
    MCAST6_DB_BAD_HANDLE = 120001,       /* unknown or released handle, or one of another kind or table */
    MCAST6_DB_BAD_OPERATION = 120002,    /* not allowed by the object's type or state */
    MCAST6_DB_BAD_LENGTH = 120003,       /* a length that is not the table's, the field's or the property's */
    MCAST6_DB_BAD_KEY = 120004,          /* key word or key name that the table does not have */
    MCAST6_DB_BAD_PROPERTY = 120005,     /* unknown root iterator property */
    MCAST6_DB_BAD_ARGUMENT = 120006,     /* a null pointer or a value that the call does not know */
    MCAST6_DB_NO_MEMORY = 120007,        /* nothing was changed */
    MCAST6_DB_STORE_FAILED = 120008,     /* the store behind the engine failed; nothing was changed */
    MCAST6_DB_BATCH_OPEN = 120009,       /* begin of a batch in a thread that has one open */
    MCAST6_DB_NO_BATCH = 120010,         /* end of a batch in a thread that has none open */
    MCAST6_DB_BATCH_GONE = 120011,       /* end of a batch whose store was closed; nothing of it was stored */
    MCAST6_DB_BATCH_TOO_LARGE = 120012,  /* the batch would change more records than the store allows; step not taken */
    MCAST6_DB_BATCH_LOST = 120013        /* commit: another writer was first; nothing of the batch was stored */
};

/* Writes the record that was set on 'object' (type 0), as one step: the record and all its indexes, or nothing.
 * A key that is present is replaced and answered with 13044; some tables refuse it instead: 13044, nothing stored.
 * A new record in a full table: 110024, nothing stored. */
uint32_t db_write_obj(uint64_t object);

/* Changes the fields that were set on 'object' (type 1) in the record with the given primary key, as one step.
 * An absent key: 13044, nothing stored. */
uint32_t db_update_obj(uint64_t object, const void *keyDesc, const void *key);

/* Removes the record with the given primary key ('object' of type 4). An absent key: 13044, or 15005 in
 * l3mc6_register_elb. */
uint32_t db_remove_obj(uint64_t object, const void *keyDesc, const void *key);

/* Reads a whole record into 'buffer'; 'length' is the table's record size. With a key: the record with that primary
 * key ('object' of type 3). Without (both null): the record at the position of the iterator that was stepped last on
 * 'object' (type 5). Absent, or gone from the position: 15005, 'buffer' untouched. */
uint32_t db_read_obj_with_buf(uint64_t object, const void *keyDesc, const void *key, void *buffer, uint32_t length);

/* Makes a root iterator on 'object' (type 5), before the first record: of the index that the key word names, over the
 * records that match 'key'; or of the whole table when both are null. The table's primary key word serves too: the one
 * record with that key, or none. */
uint32_t db_create_root_iter(uint64_t object, const void *keyDesc, const void *key, uint64_t *rootIter);

/* Sets a property of a root iterator. Property 0, a 32-bit value, is the only one: 1 asks for one record a step, which
 * is what every iterator does; other values are refused with MCAST6_DB_BAD_ARGUMENT. */
uint32_t db_set_root_iterator_property(uint64_t rootIter, uint32_t property, const void *value, uint32_t length);

/* Steps to the next record; past the last one 110012. After success the record can be read through the iterator's
 * object: whole with db_read_obj_with_buf, or by field with the getters. */
uint32_t db_root_iterator_next(uint64_t rootIter);

/* Counts the records of the table, or those that match a key of an index ('object' of type 9); with the table's primary
 * key word 1 or 0. The count is 64 bits wide or 32: a caller hands in the address of a zeroed 64-bit word, and this
 * engine fills 64 bits. No match: 0 records, success. */
uint32_t db_get_table_record_count(uint64_t object, uint32_t *count);
uint32_t db_get_table_record_count_by_key(uint64_t object, const void *keyDesc, const void *key, uint32_t *count);

/* Begins a statement on 'object' (type 5), in place of one begun earlier. 'kind' 2 is the only one; 'params' is null
 * and 'paramCount' 0. */
uint32_t db_create_stmt(uint64_t object, uint32_t kind, const void *params, uint32_t paramCount);

/* Adds a condition to the statement of 'object'. 'kind' 3 is the only one: walk in the order of the sorted key named
 * 'keyName', whose key word 'keyWord' points to. The reserved arguments are 0 and null. 'value' restricts the walk to
 * the records with that key, 'valueLength' bytes; null and 0: all records. */
uint32_t db_append_stmt_condition(uint64_t object, const char *keyName, uint32_t kind, uint32_t reserved1,
                                  const void *reserved2, uint32_t reserved3, const void *keyWord, const void *value,
                                  uint32_t valueLength);

/* Makes a root iterator from the statement of 'object', which must have a condition. */
uint32_t db_create_root_iterator_by_filter(uint64_t object, uint64_t *rootIter);

/* Makes a root iterator that is kept and given a key before each use, of an index or of the table's primary key. It
 * survives db_reset_<table>_cache_object. */
uint32_t db_create_cache_root_iter(uint64_t object, const void *keyDesc, uint64_t *rootIter);

/* Puts a cached root iterator before the first record that matches 'key'. */
uint32_t db_reset_cache_root_iter(uint64_t rootIter, const void *key);

#ifdef __cplusplus
}
#endif

#endif
