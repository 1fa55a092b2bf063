// A lock that readers share and that writers do not wait for forever: a writer that waits goes before new readers.
// A thread must not take it twice.
#pragma once

#include <pthread.h>

namespace mcast6::store::memory {

class TableLock {
public:
    TableLock() {
        pthread_rwlockattr_t attributes;
        pthread_rwlockattr_init(&attributes);
        pthread_rwlockattr_setkind_np(&attributes, PTHREAD_RWLOCK_PREFER_WRITER_NONRECURSIVE_NP);
        pthread_rwlock_init(&rwlock, &attributes);
        pthread_rwlockattr_destroy(&attributes);
    }
    TableLock(const TableLock&) = delete;
    TableLock& operator=(const TableLock&) = delete;
    ~TableLock() { pthread_rwlock_destroy(&rwlock); }

    // Named as std::unique_lock and std::shared_lock want them.
    void lock() { pthread_rwlock_wrlock(&rwlock); }
    void unlock() { pthread_rwlock_unlock(&rwlock); }
    void lock_shared() { pthread_rwlock_rdlock(&rwlock); }
    void unlock_shared() { pthread_rwlock_unlock(&rwlock); }

private:
    pthread_rwlock_t rwlock;
};

}  // namespace mcast6::store::memory
