// Where records live: the narrow interface behind the engine.
//
// A store keeps the records of all tables of a catalog and their indexes, and nothing else: no objects, no handles, no
// engine codes. The engine checks every argument before it comes here (table and index exist, buffers have the right
// size), so a store does not check again. Three kinds of store are meant to fit: one inside this process, one shared by
// several processes on an ordered key-value file, one on a server at the other end of a socket. So
//   - every function is one atomic step: the record with all its index entries, or nothing at all. A failed step says
//     Answer::failed (or noMemory) and has changed nothing;
//   - nothing hands out pointers into the store: records travel by copy;
//   - a scan asks for the next record after its position; it may fetch ahead, as long as what it tells is what the
//     store held at some moment between the call and its return.
//
// Keys come in as bytes composed as the table's schema::Key says, records as whole packed rows of recordSize bytes.
//
// Threads: all functions of a Store may be called from several threads at once. A Scan is used by one thread at a time
// and must be gone before its store.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/schema/schema.h"

namespace mcast6::store {

enum class Answer : uint8_t {
    done,
    present,   // put: the key was there; replaced, or left alone where the table refuses that
    absent,    // get, patch, erase, Scan::read: no such record
    full,      // put: a new key, and the table is at its capacity
    end,       // Scan::next: no further record
    noMemory,  // nothing was changed
    failed,    // the store itself failed; nothing was changed
};

// A position in one table. It outlives every change to the table: a record that stays in place from the opening of the
// scan to its end is returned exactly once, one that comes, goes or moves within the index meanwhile at most once for
// each place it took. After the end it stays at the end, until restart().
class Scan {
public:
    Scan() = default;
    Scan(const Scan&) = delete;
    Scan& operator=(const Scan&) = delete;
    virtual ~Scan() = default;

    // Steps to the next record: done, end, failed.
    virtual Answer next() = 0;

    // Copies the record under the position: done, or absent when it is gone (or before the first step), failed.
    // The record is known by its primary key: one that was changed since is returned as it is now, even where the
    // change moved it within the index.
    virtual Answer read(std::byte* row) = 0;

    // Goes back before the first record, now of the records with 'key' (index scans) or of the table ('key' null).
    // Takes no new memory where the store can help it.
    virtual Answer restart(const std::byte* key) = 0;
};

struct ScanRange {
    enum class Order : uint8_t { table, index, sorted };
    Order order;
    uint32_t index;        // position in the table's list of indexes; order table: unused
    const std::byte* key;  // index, sorted: the key to match. Null: sorted, all records; index, none before restart()
};

class Store {
public:
    Store() = default;
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    virtual ~Store() = default;

    // Stores a record under its primary key: done, present, full, noMemory, failed.
    virtual Answer put(uint32_t table, const std::byte* row) = 0;

    // Copies the record with this primary key: done, absent, failed.
    virtual Answer get(uint32_t table, const std::byte* key, std::byte* row) = 0;

    // Copies the fields of 'row' whose bits are set in 'fields' (bit i: the table's field i) over those of the record
    // with this primary key. Fields of the primary key are never among them. done, absent, noMemory, failed.
    virtual Answer patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) = 0;

    // Removes the record with this primary key: done, absent, failed.
    virtual Answer erase(uint32_t table, const std::byte* key) = 0;

    // Counts the records of the table, or those with 'key' in the index: done, failed. Must not walk the matches.
    virtual Answer count(uint32_t table, uint64_t& records) = 0;
    virtual Answer countByKey(uint32_t table, uint32_t index, const std::byte* key, uint64_t& records) = 0;

    // Opens a scan before its first record: done, noMemory, failed. Order sorted walks by ascending key value, each
    // scalar part compared as a number, byte parts byte by byte.
    virtual Answer open(uint32_t table, const ScanRange& range, std::unique_ptr<Scan>& scan) = 0;

    // Bytes taken for records, indexes and book-keeping.
    virtual uint64_t memory() const = 0;
};

}  // namespace mcast6::store
