// A store in front of another one that fails, waits or stops at the n-th call: of the store, its scans, its batches.
//
// The fault comes before the call reaches the store behind, so a call that fails has done nothing there.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <thread>
#include <utility>

#include "platform/store/store.h"

namespace mcast6::store::test {

enum class Fault : uint8_t {
    none,
    failed,     // the call answers failed, with a reason
    noMemory,   // the call answers noMemory
    badAlloc,   // the call throws std::bad_alloc
    exception,  // the call throws something else
    delay,      // the call takes 20 ms longer
    stop,       // the call waits for release()
};

// When a fault comes. Used from several threads.
class FaultPlan {
public:
    // The fault comes at the n-th call from now, and with 'isLasting' at every one after it.
    void arm(Fault what, uint64_t nth = 1, bool isLasting = false) {
        const std::lock_guard lock(mutex);
        fault = what;
        left = nth;
        lasting = isLasting;
        hits = 0;
    }
    void disarm() { arm(Fault::none); }

    // How often the fault came since arm().
    uint64_t hitCount() noexcept {
        const std::lock_guard lock(mutex);
        return hits;
    }

    // For Fault::stop: waits until a call stands still; lets it go on.
    void waitForStop() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return isStopped; });
    }
    void release() {
        const std::lock_guard lock(mutex);
        isStopped = false;
        changed.notify_all();
    }

    // For every call. done: the call goes on to the store behind.
    Answer pass() {
        std::unique_lock lock(mutex);
        const Fault now = next();
        if (now == Fault::stop) {
            isStopped = true;
            changed.notify_all();
            changed.wait(lock, [&] { return !isStopped; });
        }
        lock.unlock();
        switch (now) {
            case Fault::failed:
                return failure("a fault was asked for");
            case Fault::noMemory:
                return Answer::noMemory;
            case Fault::badAlloc:
                throw std::bad_alloc();
            case Fault::exception:
                throw std::runtime_error("the store is broken");
            case Fault::delay:
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
                return Answer::done;
            default:
                return Answer::done;
        }
    }

    // Makes a call unless a fault comes first.
    template <class Call>
    Answer run(const Call& call) {
        const Answer answer = pass();
        return answer == Answer::done ? call() : answer;
    }

private:
    Fault next() {
        if (fault == Fault::none || left == 0) return Fault::none;
        if (left > 1) {
            --left;
            return Fault::none;
        }
        if (!lasting) left = 0;
        ++hits;
        return fault;
    }

    std::mutex mutex;
    std::condition_variable changed;
    Fault fault = Fault::none;
    uint64_t left = 0;
    uint64_t hits = 0;
    bool lasting = false;
    bool isStopped = false;
};

class FaultyScan final : public Scan {
public:
    FaultyScan(std::unique_ptr<Scan> inner, FaultPlan& faults) : behind(std::move(inner)), plan(faults) {}

    Answer next() override {
        return plan.run([&] { return behind->next(); });
    }
    Answer read(std::byte* row) override {
        return plan.run([&] { return behind->read(row); });
    }
    Answer restart(const std::byte* key) override {
        return plan.run([&] { return behind->restart(key); });
    }

private:
    const std::unique_ptr<Scan> behind;
    FaultPlan& plan;
};

class FaultyTransaction final : public Transaction {
public:
    FaultyTransaction(std::unique_ptr<Transaction> inner, FaultPlan& faults) : behind(std::move(inner)), plan(faults) {}

    Answer put(uint32_t table, const std::byte* row) override {
        return plan.run([&] { return behind->put(table, row); });
    }
    Answer get(uint32_t table, const std::byte* key, std::byte* row) override {
        return plan.run([&] { return behind->get(table, key, row); });
    }
    Answer patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) override {
        return plan.run([&] { return behind->patch(table, key, row, fields); });
    }
    Answer erase(uint32_t table, const std::byte* key) override {
        return plan.run([&] { return behind->erase(table, key); });
    }
    // A commit that fails ends the batch like any other.
    Answer commit() override {
        const Answer answer = plan.pass();
        if (answer == Answer::done) return behind->commit();
        behind->abort();
        return answer;
    }
    void abort() noexcept override { behind->abort(); }

private:
    const std::unique_ptr<Transaction> behind;
    FaultPlan& plan;
};

class FaultyStore final : public Store {
public:
    // 'faults' outlives the store.
    FaultyStore(std::unique_ptr<Store> inner, FaultPlan& faults) : behind(std::move(inner)), plan(faults) {}

    Answer put(uint32_t table, const std::byte* row) override {
        return plan.run([&] { return behind->put(table, row); });
    }
    Answer get(uint32_t table, const std::byte* key, std::byte* row) override {
        return plan.run([&] { return behind->get(table, key, row); });
    }
    Answer patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) override {
        return plan.run([&] { return behind->patch(table, key, row, fields); });
    }
    Answer erase(uint32_t table, const std::byte* key) override {
        return plan.run([&] { return behind->erase(table, key); });
    }
    Answer count(uint32_t table, uint64_t& records) override {
        return plan.run([&] { return behind->count(table, records); });
    }
    Answer countByKey(uint32_t table, uint32_t index, const std::byte* key, uint64_t& records) override {
        return plan.run([&] { return behind->countByKey(table, index, key, records); });
    }
    Answer open(uint32_t table, const ScanRange& range, std::unique_ptr<Scan>& scan) override {
        return plan.run([&] {
            const Answer answer = behind->open(table, range, scan);
            if (answer == Answer::done) scan = std::make_unique<FaultyScan>(std::move(scan), plan);
            return answer;
        });
    }
    Answer begin(std::unique_ptr<Transaction>& transaction) override {
        return plan.run([&] {
            const Answer answer = behind->begin(transaction);
            if (answer == Answer::done) {
                transaction = std::make_unique<FaultyTransaction>(std::move(transaction), plan);
            }
            return answer;
        });
    }
    uint64_t memory() const override { return behind->memory(); }
    const char* reason() const noexcept override { return plan.hitCount() > 0 ? failureText() : behind->reason(); }

private:
    const std::unique_ptr<Store> behind;
    FaultPlan& plan;
};

}  // namespace mcast6::store::test
