// How a reader gets a consistent look at a table that writers change: see shared_store.h for the idea.
#pragma once

#include <atomic>

#include "platform/store/shared/failure.h"
#include "platform/store/shared/private_copy.h"
#include "platform/store/shared/shared_store.h"

namespace mcast6::store::shared {

inline constexpr uint32_t kSpins = 500;
inline constexpr uint64_t kPatience = 2'000'000;  // nanoseconds that a reader waits for the lock

inline void pauseProcessor() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#endif
}

// One attempt. False: a writer was at it.
template <class F>
inline bool SharedStore::tryLook(Glance& glance, const F& f) {
    const std::atomic_ref<uint64_t> number(const_cast<uint64_t&>(glance.sequence));
    const uint64_t before = number.load(std::memory_order_acquire);
    if ((before & 1) != 0) {
        pauseProcessor();
        return false;
    }
    try {
        f(region.view());
    } catch (const Torn&) {
        region.refresh();
        return false;
    }
    readBarrier();
    glance.version = before;
    return number.load(std::memory_order_relaxed) == before;
}

template <class F>
inline Answer SharedStore::look(Glance& glance, const F& f) {
    if (tryLook(glance, f)) [[likely]]
        return Answer::done;
    return lookPatiently(glance, f);
}

template <class F>
Answer SharedStore::lookPatiently(Glance& glance, const F& f) {
    for (;;) {
        for (uint32_t spin = 0; spin < kSpins; ++spin) {
            if (tryLook(glance, f)) return Answer::done;
        }
        if (region.isWritable()) {
            region.askForWay();
            const Region::Lock taken = region.lockFor(kPatience);
            if (taken == Region::Lock::broken)
                return failed("the store's lock cannot be used any more: remove its file");
            if (taken != Region::Lock::busy) {
                if (taken == Region::Lock::recovered) settle();
                // Nobody changes anything now: what does not hold together is damaged.
                Answer answer = Answer::done;
                try {
                    f(region.view());
                } catch (const Torn&) {
                    answer = failed("the store's file is damaged: remove it");
                }
                glance.version = peek(glance.sequence);
                region.unlock();
                return answer;
            }
        }
        if (lookBehind(f)) {
            glance.version = kVoid;
            return Answer::done;
        }
    }
}

// Looks at a copy of the file in which the change under way is undone. False: it went on, or was over.
template <class F>
bool SharedStore::lookBehind(const F& f) {
    const Header& head = region.header();
    const uint64_t change = peek(head.changes);
    const uint64_t length = peek(head.logUsed);
    readBarrier();
    region.refresh();
    PrivateCopy copy(region);
    if (!copy.isThere()) return false;
    try {
        Region::undoCopy(copy.bytes(), copy.size(), length);
        f(copy.view());
    } catch (const Torn&) {
        return false;
    }
    readBarrier();
    return peek(head.logUsed) == length && peek(head.changes) == change;
}

}  // namespace mcast6::store::shared
