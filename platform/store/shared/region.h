// A region: the memory that tables lie in, in a file that every process maps or in memory of this process alone, with
// the undo log that makes every change whole.
//
// The idea: everything in the region is read through const references, which lead into a mapping that cannot be written
// to. What changes goes through the functions below. set(), write() and move() put the old bytes into the log before
// they change them; init(), fill() and zero() are for blocks that this very change has taken, which nobody can reach
// when it is undone. There is no third way: a block that is unreachable now may have been in use when the change began.
//
// A change ends by commit(), whose one store that counts sets the length of the log to zero, or by undo(), which copies
// the old bytes back from the log's end. When its process is killed in the middle, the log is still there, and whoever
// takes the lock next undoes it. Undoing twice does no harm, so that may be interrupted as well.
//
// Invariants:
//   - a log entry is complete before the log's length takes it in, and that stands before the place changes. A killed
//     process leaves its stores as far as it came, in the order of the program, so barriers of the compiler are enough;
//   - memory is there before it is touched: the file grows by fallocate, which says so when there is no more;
//   - a block that is given back is not taken again before the change has ended.
#pragma once

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#include "platform/store/memory/key_shape.h"
#include "platform/store/shared/layout.h"
#include "platform/store/shared/view.h"

namespace mcast6::store::shared {

// Thrown by a change that finds no memory. It is undone then.
struct NoRoom {};

class Region {
public:
    Region() = default;
    Region(const Region&) = delete;
    Region& operator=(const Region&) = delete;
    ~Region();

    // Memory of this process alone, with a heap of up to 'heapSize' bytes. False when there is no address space.
    bool makePrivate(uint64_t heapSize);

    // A region that somebody else copied to 'copy', heap and all: for looking at what a change left behind. The copy is
    // laid out like a file and must outlive the region.
    void adopt(std::byte* copy, uint64_t size);

    // Maps a file of up to 'limit' bytes, which is the region's from here on. False, with errno: it cannot be mapped.
    bool mapFile(int descriptor, uint64_t limit, bool mayWrite);

    // Makes an empty region in new memory or a new file of nothing but zeros, and the lock.
    // False, with errno: there is no memory.
    bool format(uint64_t limit);

    // The last steps of making a region.
    void setSecrets(const memory::HashSecrets& secrets);
    void setTable(uint32_t number, Ref table) { set(header().tables[number], table); }
    void setComplete();

    const Header& header() const { return *reinterpret_cast<const Header*>(base); }
    bool isWritable() const { return writable != nullptr; }
    bool isShared() const { return file >= 0; }
    int descriptor() const { return file; }

    // What can be read. Another process may have made the file larger since: refresh() looks.
    View view() const { return {base + kHeapAt, readable.load(std::memory_order_relaxed)}; }
    void refresh();
    uint64_t readableBytes() const { return kHeapAt + readable.load(std::memory_order_relaxed); }

    // --- The lock. All of what follows belongs to its holder.
    enum class Lock : uint8_t { taken, recovered, busy, broken };
    // Waits for ever, or for so many nanoseconds. recovered: its holder died, and what it left is undone; the caller
    // ends the open sequence numbers, then calls declareConsistent(). broken: the lock cannot be used any more.
    Lock lock();
    Lock lockFor(uint64_t nanoseconds);
    void declareConsistent();
    void unlock();
    // Undoes what is left of a change that nobody goes on with.
    Lock recover();
    // A reader that does not get through asks writers to pause once.
    void askForWay();

    // Begins a change.
    void begin();

    // Any four or eight bytes, at a place that is a multiple of as many.
    template <class T>
    void set(const T& place, std::type_identity_t<T> value) {
        using Word = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;
        static_assert(sizeof(T) == sizeof(Word));
        uint64_t old = 0;
        std::memcpy(&old, &place, sizeof(T));
        std::byte* const entry = room(2 * sizeof(uint64_t));
        std::memcpy(entry, &old, sizeof old);
        seal(entry + sizeof old, &place, sizeof(T));
        std::atomic_ref<Word>(*static_cast<Word*>(writableAt(&place)))
            .store(std::bit_cast<Word>(value), std::memory_order_relaxed);
    }
    // From memory of the caller.
    void write(const void* place, const void* from, size_t size) {
        log(place, size);
        copyIn(writableAt(place), from, size);
    }
    // From the region; the two may overlap.
    void move(const void* place, const void* from, size_t size);

    template <class T>
    void init(const T& place, std::type_identity_t<T> value) {
        std::atomic_ref<T>(*static_cast<T*>(writableAt(&place))).store(value, std::memory_order_relaxed);
    }
    void fill(const void* place, const void* from, size_t size) { copyIn(writableAt(place), from, size); }
    void zero(const void* place, size_t size);

    // A block of at least 'size' bytes, of any content. Throws NoRoom, and has changed nothing then.
    Ref take(size_t size);
    void give(Ref block, size_t size);

    // What a block for so many bytes has.
    static size_t sizeFor(size_t size) { return sizeOfClass(classFor(size)); }

    // Ends the change for good. Throws NoRoom, and nothing is ended. The caller tells readers, then calls giveBack().
    void commit();
    // Takes back what was changed. Throws Torn when the log is damaged.
    void undo();
    bool isUnchanged() const { return header().logUsed == 0 && given.empty(); }

    // Gives memory of large free blocks back to the system.
    void giveBack();

    // Sequence numbers are no part of a change. open: what follows is seen after the number is odd; close: what was
    // done is seen before it is even again.
    void openSequence(const uint64_t& sequence);
    void closeSequence(const uint64_t& sequence);

    // For tests: the n-th take() from now on, or step of the log to more memory, finds no memory. 0: none does.
    void failAt(uint64_t n) { failIn = n; }
    bool hasFailed() const { return failIn == 0; }

    // Undoes on a copy what 'length' bytes of log say, from their end, 'entries' of them at most: for views of a change
    // that is under way elsewhere, whose log may be anything, and for recoveries that are interrupted. Throws Torn.
    static void undoCopy(std::byte* copy, uint64_t size, uint64_t length, uint64_t entries = UINT64_MAX);

    static uint32_t classFor(size_t size);
    static size_t sizeOfClass(uint32_t sizeClass);

private:
    struct Given {
        Ref block;
        uint32_t sizeClass;
    };

    // The part of a block that goes back to the system while it is free: whole pages after its first bytes.
    struct Pages {
        uint64_t from;
        uint64_t size;
    };
    static Pages pagesOf(Ref block, size_t size);

    Header& writableHeader() { return *reinterpret_cast<Header*>(writable); }
    void* writableAt(const void* place) { return writable + (static_cast<const std::byte*>(place) - base); }
    void log(const void* place, size_t size);
    std::byte* room(size_t size) {
        const Header& head = header();
        if (head.logUsed + size > head.logBacked) [[unlikely]]
            growLog(size);
        return writable + kLogAt + head.logUsed;
    }
    void seal(std::byte* end, const void* place, size_t size) {
        const uint64_t entry = static_cast<uint64_t>(static_cast<const std::byte*>(place) - base) << kSizeBits | size;
        std::memcpy(end, &entry, sizeof entry);
        std::atomic_signal_fence(std::memory_order_seq_cst);
        setLogUsed(static_cast<uint64_t>(end + sizeof entry - writable) - kLogAt);
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }
    void setLogUsed(uint64_t length) {
        std::atomic_ref<uint64_t>(writableHeader().logUsed).store(length, std::memory_order_relaxed);
    }
    bool isBacked(Ref free, size_t size);
    Ref takeFromEnd(size_t size);
    void growLog(size_t size);
    void growHeap(uint64_t size);
    bool back(uint64_t from, uint64_t size);
    void mayFail() {
        if (failIn != 0 && --failIn == 0) throw NoRoom{};
    }
    Lock taken(int result);

    // A log entry ends with a word: the place in the region, and how many bytes of it stand before the word.
    static constexpr unsigned kSizeBits = 28;
    static constexpr size_t kMostLogged = size_t{1} << 27;

    const std::byte* base = nullptr;
    std::byte* writable = nullptr;  // the same bytes; null: read only
    uint64_t mapped = 0;
    int file = -1;
    bool isAdopted = false;
    std::atomic<uint64_t> readable{0};  // bytes of the heap
    std::vector<Given> given;
    std::vector<Given> punchable;  // given back by the change that just ended, and large
    uint64_t failIn = 0;
};

}  // namespace mcast6::store::shared
