// A lock that readers share and that writers do not wait for forever: a writer that waits goes before new readers.
// A thread must not take it twice.
//
// It is taken by the guards below. In a process of one thread there is nobody to keep out, and they leave it alone: an
// atomic instruction on either side keeps the processor from overlapping this search with the next one. No thread
// begins while a guard is alive, and the guard remembers whether it took the lock.
#pragma once

#include <pthread.h>
#include <sys/single_threaded.h>

namespace mcast6::store::memory {

// Whether the process has one thread.
inline bool isAlone() { return __libc_single_threaded != 0; }

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

    // For a writer, whatever the number of threads.
    void lock() { pthread_rwlock_wrlock(&rwlock); }
    void unlock() { pthread_rwlock_unlock(&rwlock); }

private:
    template <int (*)(pthread_rwlock_t*)>
    friend class LockGuard;

    pthread_rwlock_t rwlock;
};

template <int (*kTake)(pthread_rwlock_t*)>
class LockGuard {
public:
    explicit LockGuard(TableLock& lock) : taken(isAlone() ? nullptr : &lock.rwlock) {
        if (taken != nullptr) kTake(taken);
    }
    LockGuard(const LockGuard&) = delete;
    LockGuard& operator=(const LockGuard&) = delete;
    ~LockGuard() {
        if (taken != nullptr) pthread_rwlock_unlock(taken);
    }

private:
    pthread_rwlock_t* const taken;
};

using ReadGuard = LockGuard<pthread_rwlock_rdlock>;
using WriteGuard = LockGuard<pthread_rwlock_wrlock>;

}  // namespace mcast6::store::memory
