// Slots named by 64-bit handles.
//
// A handle holds its kind, the engine instance that made it, a slot, and the slot's generation: how often the slot had
// been used before. A live slot keeps its own handle, so a handle is valid exactly when the slot that it names
// holds the same 64 bits. That one comparison rejects a released handle (the slot is empty or of a later
// generation), an invented one, one of another kind and one of another engine.
//
//   bits 62-63 kind | 50-61 nonce of the engine | 22-49 generation | 0-21 slot
//
// Slots lie in chunks, each twice as large as the one before, that stay in place until the table is destroyed. So
// find() takes no lock, and reading the slot of a stale handle is safe at any time, even while another thread reuses
// the slot. Released slots are kept in lock-free lists: a thread puts them on its own list and takes from it first, so
// threads do not contend; a thread whose list is empty takes from the others before the table grows. A slot whose
// generations are used up is never used again, so that no handle comes twice from one engine. The nonce is 12 bits wide
// and comes round after 4095 engines of one process.
//
// The life of a slot: claim() takes it out of the list, the caller fills it, publish() makes its handle valid;
// withdraw() makes the handle invalid, the caller empties the slot, recycle() puts it back. A value is made once for
// each slot and kept for reuse.
#pragma once

#include <sys/single_threaded.h>

#include <array>
#include <atomic>
#include <bit>
#include <cstdint>
#include <mutex>
#include <new>

namespace mcast6::engine {

enum class HandleKind : uint64_t { object = 1, iterator = 2 };

inline constexpr unsigned kKindShift = 62;
inline constexpr unsigned kNonceShift = 50;
inline constexpr unsigned kGenerationShift = 22;
inline constexpr uint32_t kNonceMask = (1U << (kKindShift - kNonceShift)) - 1;
inline constexpr uint32_t kLastGeneration = (1U << (kNonceShift - kGenerationShift)) - 1;
inline constexpr uint64_t kSlotMask = (1U << kGenerationShift) - 1;

// What every value of a HandleTable begins with.
struct HandleSlot {
    std::atomic<uint64_t> handle{0};    // 0 while the slot is not in use
    std::atomic<uint32_t> nextFree{0};  // slot + 1; 0 ends the list
    uint32_t slot = 0;
    uint32_t generation = 0;
};

// Slots that wait for use. The head is a slot + 1 in the low half and, in the high half, a tag that every change
// advances: a slot that went and came back between load and exchange is not mistaken for one that stayed.
struct alignas(64) FreeList {
    static constexpr uint64_t kOneTag = uint64_t{1} << 32;

    static uint64_t successor(uint64_t head, uint32_t first) { return ((head + kOneTag) & ~(kOneTag - 1)) | first; }

    std::atomic<uint64_t> head{0};
};

inline constexpr uint32_t kFreeLists = 8;

// The list of this thread.
inline uint32_t ownFreeList() {
    if (__libc_single_threaded != 0) return 0;
    static std::atomic<uint32_t> threads{0};
    static thread_local const uint32_t own = threads.fetch_add(1, std::memory_order_relaxed) % kFreeLists;
    return own;
}

// Puts 'desired' in the place of 'expected' and returns true, or tells in 'expected' what is there instead. A process
// of one thread needs no atomic instruction, which would delay the instructions after it.
inline bool exchanged(std::atomic<uint64_t>& place, uint64_t& expected, uint64_t desired) {
    if (__libc_single_threaded == 0) {
        return place.compare_exchange_strong(expected, desired, std::memory_order_acq_rel);
    }
    const uint64_t present = place.load(std::memory_order_relaxed);
    if (present != expected) {
        expected = present;
        return false;
    }
    place.store(desired, std::memory_order_relaxed);
    return true;
}

// 64 * (2^16 - 1) slots, what 22 bits can name.
inline constexpr unsigned kMostChunks = 16;

template <class Value, unsigned kChunks = kMostChunks>
class HandleTable {
    static_assert(kChunks <= kMostChunks);

public:
    HandleTable(HandleKind kind, uint32_t nonce)
        : prefix_(static_cast<uint64_t>(kind) << kKindShift | uint64_t{nonce & kNonceMask} << kNonceShift) {}
    HandleTable(const HandleTable&) = delete;
    HandleTable& operator=(const HandleTable&) = delete;
    ~HandleTable() {
        for (std::atomic<Value*>& chunk : chunks_) delete[] chunk.load(std::memory_order_relaxed);
    }

    // The live value that 'handle' names, or null.
    Value* find(uint64_t handle) const {
        Value* value = at(static_cast<uint32_t>(handle & kSlotMask));
        if (value == nullptr || value->handle.load(std::memory_order_acquire) != handle) return nullptr;
        return handle != 0 ? value : nullptr;
    }

    // A slot for the caller alone, or null when there is no memory or no slot left.
    Value* claim() {
        const uint32_t own = ownFreeList();
        Value* value = pop(own);
        return value != nullptr ? value : popElsewhere(own);
    }

    uint64_t publish(Value& value) {
        const uint64_t handle = prefix_ | uint64_t{value.generation} << kGenerationShift | value.slot;
        value.handle.store(handle, std::memory_order_release);
        return handle;
    }

    // Takes the value out of use, or returns null when the handle names none. Of two callers at once one gets it.
    Value* withdraw(uint64_t handle) {
        Value* value = find(handle);
        return value != nullptr && withdraw(*value, handle) ? value : nullptr;
    }

    // The same for the value that the handle named a moment ago; false when it does no longer.
    bool withdraw(Value& value, uint64_t handle) { return exchanged(value.handle, handle, 0); }

    void recycle(Value& value) {
        if (value.generation == kLastGeneration) return;
        ++value.generation;
        push(ownFreeList(), value, value);
    }

    // Calls f with every live value, which may be withdrawn and recycled there. No other thread uses the table
    // meanwhile.
    template <class F>
    void forEachLive(const F& f) {
        for (unsigned chunk = 0; chunk < chunkCount_; ++chunk) {
            Value* const values = chunks_[chunk].load(std::memory_order_acquire);
            for (uint32_t i = 0; i < chunkSize(chunk); ++i) {
                if (values[i].handle.load(std::memory_order_acquire) != 0) f(values[i]);
            }
        }
    }

    // How many slots exist, used or not.
    uint64_t slots() const {
        uint64_t count = 0;
        for (unsigned chunk = 0; chunk < kChunks; ++chunk) {
            if (chunks_[chunk].load(std::memory_order_acquire) != nullptr) count += chunkSize(chunk);
        }
        return count;
    }

private:
    static constexpr uint32_t kFirstChunk = 64;

    static constexpr uint32_t chunkSize(unsigned chunk) { return kFirstChunk << chunk; }

    // Slots are numbered through the chunks: chunk n begins with number 64 * (2^n - 1).
    static constexpr unsigned chunkOf(uint32_t slot) {
        return static_cast<unsigned>(std::bit_width(slot / kFirstChunk + 1)) - 1;
    }
    static constexpr uint32_t firstSlot(unsigned chunk) { return chunkSize(chunk) - kFirstChunk; }

    // The slot with this number, or null when the table has not grown so far. Few processes have more objects at a time
    // than the first chunk holds.
    Value* at(uint32_t slot) const {
        if (slot < kFirstChunk) [[likely]] {
            Value* const values = chunks_[0].load(std::memory_order_acquire);
            return values != nullptr ? values + slot : nullptr;
        }
        const unsigned chunk = chunkOf(slot);
        if (chunk >= kChunks) return nullptr;
        Value* values = chunks_[chunk].load(std::memory_order_acquire);
        return values != nullptr ? values + (slot - firstSlot(chunk)) : nullptr;
    }

    // The same for a slot that is known to be there.
    Value& existing(uint32_t slot) const {
        if (slot < kFirstChunk) return chunks_[0].load(std::memory_order_acquire)[slot];
        const unsigned chunk = chunkOf(slot);
        return chunks_[chunk].load(std::memory_order_acquire)[slot - firstSlot(chunk)];
    }

    Value* pop(uint32_t list) {
        std::atomic<uint64_t>& listHead = free_[list].head;
        uint64_t head = listHead.load(std::memory_order_acquire);
        while (static_cast<uint32_t>(head) != 0) {
            Value& value = existing(static_cast<uint32_t>(head) - 1);
            const uint32_t next = value.nextFree.load(std::memory_order_relaxed);
            if (exchanged(listHead, head, FreeList::successor(head, next))) return &value;
        }
        return nullptr;
    }

    // Puts back a chain that is linked from 'first' to 'last'.
    void push(uint32_t list, Value& first, Value& last) {
        std::atomic<uint64_t>& listHead = free_[list].head;
        uint64_t head = listHead.load(std::memory_order_relaxed);
        do {
            last.nextFree.store(static_cast<uint32_t>(head), std::memory_order_relaxed);
        } while (!exchanged(listHead, head, FreeList::successor(head, first.slot + 1)));
    }

    Value* popElsewhere(uint32_t own) {
        const std::lock_guard lock(growth_);
        for (uint32_t i = 0; i < kFreeLists; ++i) {
            if (Value* value = pop((own + i) % kFreeLists); value != nullptr) return value;
        }
        return grow(own);
    }

    // Adds a chunk: its first slot for the caller, the others for the list.
    Value* grow(uint32_t list) {
        if (chunkCount_ == kChunks) return nullptr;
        const uint32_t count = chunkSize(chunkCount_);
        Value* values = new (std::nothrow) Value[count];
        if (values == nullptr) return nullptr;
        for (uint32_t i = 0; i < count; ++i) {
            values[i].slot = firstSlot(chunkCount_) + i;
            values[i].nextFree.store(values[i].slot + 2, std::memory_order_relaxed);
        }
        chunks_[chunkCount_].store(values, std::memory_order_release);
        ++chunkCount_;
        push(list, values[1], values[count - 1]);
        return &values[0];
    }

    const uint64_t prefix_;
    std::array<std::atomic<Value*>, kChunks> chunks_{};
    std::array<FreeList, kFreeLists> free_;
    std::mutex growth_;
    unsigned chunkCount_ = 0;  // under growth_
};

}  // namespace mcast6::engine
