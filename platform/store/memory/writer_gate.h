// Keeps single-step writers out while a batch is open. Readers never come here.
//
// A batch closes the gate, and opens it when it ends. A writer looks at the gate under its table's lock, where it costs
// one load; when the gate is closed it lets the lock go and waits. Writers that wait are let through before the next
// batch, so that batches in a row starve nobody: each holds a pass until it has its lock again.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "platform/store/memory/table_lock.h"

namespace mcast6::store::memory {

class WriterGate {
public:
    bool isClosed() const { return closed.load(std::memory_order_relaxed); }

    // For a batch.
    void close() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return !isClosed() && passes == 0; });
        closed.store(true, std::memory_order_relaxed);
    }
    void open() {
        const std::lock_guard lock(mutex);
        closed.store(false, std::memory_order_relaxed);
        passes += waiting;
        waiting = 0;
        changed.notify_all();
    }

    // For a writer: waits until the gate is open, and keeps it so until handBack().
    void takePass() {
        std::unique_lock lock(mutex);
        if (!isClosed()) {
            ++passes;
            return;
        }
        ++waiting;
        changed.wait(lock, [&] { return !isClosed(); });
    }
    void handBack() {
        const std::lock_guard lock(mutex);
        if (--passes == 0) changed.notify_all();
    }

private:
    std::atomic<bool> closed{false};
    std::mutex mutex;
    std::condition_variable changed;
    uint64_t waiting = 0;  // writers
    uint64_t passes = 0;   // that are out
};

// A table's lock for one change, taken while the gate is open.
class StepGuard {
public:
    StepGuard(TableLock& tableLock, WriterGate& gate) {
        // A process of one thread has nobody to wait for: its own batch makes no single-step changes.
        if (isAlone()) return;
        tableLock.lock();
        if (gate.isClosed()) [[unlikely]]
            waitFor(tableLock, gate);
        taken = &tableLock;
    }
    StepGuard(const StepGuard&) = delete;
    StepGuard& operator=(const StepGuard&) = delete;
    ~StepGuard() {
        if (taken != nullptr) taken->unlock();
    }

private:
    [[gnu::noinline]] static void waitFor(TableLock& tableLock, WriterGate& gate) {
        tableLock.unlock();
        gate.takePass();
        tableLock.lock();
        gate.handBack();
    }

    TableLock* taken = nullptr;
};

}  // namespace mcast6::store::memory
