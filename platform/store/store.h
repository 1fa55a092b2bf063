// Where records live: the narrow interface behind the engine.
//
// A store keeps the records of all tables of a catalog and their indexes, and nothing else: no objects, no handles, no
// engine codes. The engine checks every argument before it comes here (table and index exist, buffers have the right
// size), so a store does not check again. Three kinds of store are meant to fit: one inside this process, one shared by
// several processes in a file that all of them map, one on a server at the other end of a socket. So
//   - every function is one atomic step: the record with all its index entries, or nothing at all. A failed step says
//     Answer::failed (or noMemory) and has changed nothing. Several steps become one by a batch (transaction.h);
//   - nothing hands out pointers into the store: records travel by copy;
//   - a scan fetches records with the step, and may fetch further ones with them (see Scan).
// A store that is shared is asked for everything that several processes must agree on, link names and global versions
// included: these are tables of the catalog like all others (platform/schema/catalog.h).
//
// Reconnecting, remapping and growing happen inside a store: the objects and scans of its users survive them.
//
// Keys come in as bytes composed as the table's schema::Key says, records as whole packed rows of recordSize bytes.
//
// Threads: all functions of a Store may be called from several threads at once. A Scan is used by one thread at a time
// and must be gone before its store, and so must a Transaction.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/schema/schema.h"
#include "platform/store/answer.h"
#include "platform/store/failure.h"
#include "platform/store/transaction.h"

namespace mcast6::store {

// A position in one table. It outlives every change to the table: a record that stays in place from the opening of the
// scan to its end is returned exactly once, one that comes, goes or moves within the index meanwhile at most once for
// each place it took. After the end it stays at the end, until restart().
//
// Step and fetch are one: next() fetches the record that it steps to, and may fetch up to kReadAhead records with it;
// read() serves what was fetched. What may be served is the CURRENT record, which means:
//   - it is the record as the store held it at some moment since the scan's last fetch, and
//   - it is not older than the last change that this process made through this store.
// A store in memory, shared or not, does better: it serves the record as it is during the call. A store at the other
// end of a socket serves many records for one round trip, and asks again only after a change by its own process.
class Scan {
public:
    // The most records that a scan fetches beyond the one it steps to.
    static constexpr uint32_t kReadAhead = 64;

    Scan() = default;
    Scan(const Scan&) = delete;
    Scan& operator=(const Scan&) = delete;
    virtual ~Scan() = default;

    // Steps to the next record: done, end, failed.
    virtual Answer next() = 0;

    // Copies the current record under the position: done, or absent when it is gone (or before the first step), failed.
    // The record is known by its primary key: one that was changed since is served as changed, even where the change
    // moved it within the index.
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

    // Begins a batch of the calling thread: done, noMemory, failed. Waits for the batch of another thread.
    virtual Answer begin(std::unique_ptr<Transaction>& transaction) = 0;

    // Bytes taken for records, indexes and book-keeping.
    virtual uint64_t memory() const = 0;

    // Why the calling thread's last call that failed did so; of this store, its scans and its transactions. Valid until
    // the thread's next failure. A decorator answers for the store behind it, a module for its own texts.
    virtual const char* reason() const noexcept { return failureText(); }
};

}  // namespace mcast6::store
