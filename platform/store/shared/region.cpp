#include "platform/store/shared/region.h"

#include <fcntl.h>
#include <linux/falloc.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <ctime>

namespace mcast6::store::shared {
namespace {

constexpr uint64_t kPage = 4096;
constexpr uint64_t kLeastGrowth = uint64_t{2} << 20;
constexpr uint64_t kLogGrowth = uint64_t{256} << 10;
// What take() logs at most.
constexpr size_t kMostLogOfTake = 128;
// A log that is longer than this goes back to the system after the change.
constexpr uint64_t kKeptLog = uint64_t{4} << 20;
// Free blocks from this size on go back to the system, but for their first page.
constexpr size_t kPunched = size_t{16} << 10;

// How long a writer pauses when a reader asked for it, in microseconds.
constexpr useconds_t kWay = 50;

constexpr uint64_t roundUp(uint64_t value, uint64_t to) { return (value + to - 1) / to * to; }

constexpr size_t padded(size_t size) { return (size + 7) / 8 * 8; }

}  // namespace

uint32_t Region::classFor(size_t size) {
    const uint64_t units = (size + kUnit - 1) / kUnit;
    if (units <= 4) return units == 0 ? 0 : static_cast<uint32_t>(units - 1);
    const auto top = static_cast<uint32_t>(std::bit_width(units - 1) - 1);
    return 4 + (top - 2) * 4 + static_cast<uint32_t>(((units - 1) >> (top - 2)) & 3);
}

size_t Region::sizeOfClass(uint32_t sizeClass) {
    if (sizeClass < 4) return kUnit * (sizeClass + 1);
    const uint32_t over = sizeClass - 4;
    return (kUnit * (5 + over % 4)) << (over / 4);
}

Region::~Region() {
    if (base != nullptr && !isAdopted) {
        (void)munmap(const_cast<std::byte*>(base), mapped);
        if (isWritable() && writable != base) (void)munmap(writable, mapped);
    }
    if (file >= 0) (void)close(file);
}

bool Region::makePrivate(uint64_t heapSize) {
    const uint64_t size = kHeapAt + heapSize;
    void* const memory =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) return false;
    base = writable = static_cast<std::byte*>(memory);
    mapped = size;
    (void)madvise(writable + kHeapAt, heapSize, MADV_HUGEPAGE);
    readable.store(heapSize, std::memory_order_relaxed);
    return format(size);
}

void Region::adopt(std::byte* copy, uint64_t size) {
    base = writable = copy;
    mapped = size;
    isAdopted = true;
    readable.store(std::min(header().heapBacked, size - kHeapAt), std::memory_order_relaxed);
}

bool Region::mapFile(int descriptor, uint64_t limit, bool mayWrite) {
    void* const reading = mmap(nullptr, limit, PROT_READ, MAP_SHARED | MAP_NORESERVE, descriptor, 0);
    if (reading == MAP_FAILED) return false;
    void* writing = nullptr;
    if (mayWrite) {
        writing = mmap(nullptr, limit, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_NORESERVE, descriptor, 0);
        if (writing == MAP_FAILED) {
            const int error = errno;
            (void)munmap(reading, limit);
            errno = error;
            return false;
        }
        (void)madvise(writing, limit, MADV_DONTDUMP);
    }
    // Core files would hold the whole reserve otherwise.
    (void)madvise(reading, limit, MADV_DONTDUMP);
    base = static_cast<const std::byte*>(reading);
    writable = static_cast<std::byte*>(writing);
    mapped = limit;
    file = descriptor;
    refresh();
    return true;
}

// As far as the file goes: behind its end a look would be answered by a signal.
void Region::refresh() {
    if (file < 0) return;
    struct stat status;
    if (fstat(file, &status) != 0) return;
    const uint64_t size = std::min(static_cast<uint64_t>(status.st_size), mapped);
    readable.store(size > kHeapAt ? size - kHeapAt : 0, std::memory_order_relaxed);
}

bool Region::format(uint64_t limit) {
    if (!back(0, kLogAt)) return false;
    Header& head = writableHeader();
    head.limit = limit;
    head.heapUsed = kUnit;
    if (!back(kLogAt, kLogGrowth) || !back(kHeapAt, kLeastGrowth)) return false;
    head.logBacked = kLogGrowth;
    head.heapBacked = kLeastGrowth;
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    if (isShared()) {
        pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
        pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    }
    pthread_mutex_init(&head.lock, &attributes);
    pthread_mutexattr_destroy(&attributes);
    refresh();
    return true;
}

void Region::setSecrets(const memory::HashSecrets& secrets) {
    writableHeader().hashSeed = secrets.seed;
    writableHeader().hashSecret = secrets.secret;
}

void Region::setComplete() {
    std::atomic_ref<uint64_t>(writableHeader().magic).store(kComplete, std::memory_order_release);
}

bool Region::back(uint64_t from, uint64_t size) {
    if (from + size > mapped) {
        errno = ENOSPC;
        return false;
    }
    if (file < 0) return true;
    int result = 0;
    do result = fallocate(file, 0, static_cast<off_t>(from), static_cast<off_t>(size));
    while (result != 0 && errno == EINTR);
    return result == 0;
}

Region::Lock Region::taken(int result) {
    if (result == 0) return Lock::taken;
    if (result == ETIMEDOUT) return Lock::busy;
    return result == EOWNERDEAD ? recover() : Lock::broken;
}

Region::Lock Region::recover() {
    try {
        undo();
    } catch (const Torn&) {
        return Lock::broken;
    }
    ++writableHeader().recoveries;
    return Lock::recovered;
}

Region::Lock Region::lock() {
    if (isAdopted) return Lock::taken;
    return taken(pthread_mutex_lock(&writableHeader().lock));
}

Region::Lock Region::lockFor(uint64_t nanoseconds) {
    if (isAdopted) return Lock::taken;
    timespec until;
    clock_gettime(CLOCK_REALTIME, &until);
    const uint64_t total = static_cast<uint64_t>(until.tv_nsec) + nanoseconds;
    until.tv_sec += static_cast<time_t>(total / 1'000'000'000);
    until.tv_nsec = static_cast<long>(total % 1'000'000'000);
    return taken(pthread_mutex_timedlock(&writableHeader().lock, &until));
}

void Region::declareConsistent() {
    if (!isAdopted) pthread_mutex_consistent(&writableHeader().lock);
}

void Region::unlock() {
    if (isAdopted) return;
    const bool isAsked = peek(header().isAskedForWay) != 0;
    if (isAsked) init(header().isAskedForWay, 0);
    pthread_mutex_unlock(&writableHeader().lock);
    if (isAsked) (void)usleep(kWay);
}

void Region::askForWay() { init(header().isAskedForWay, 1); }

void Region::begin() {
    given.clear();
    punchable.clear();
    std::atomic_ref<uint64_t> changes(writableHeader().changes);
    changes.store(changes.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

void Region::log(const void* place, size_t size) {
    const auto* from = static_cast<const std::byte*>(place);
    while (size > 0) {
        const size_t part = std::min(size, kMostLogged);
        std::byte* const entry = room(padded(part) + sizeof(uint64_t));
        std::memcpy(entry, from, part);
        seal(entry + padded(part), from, part);
        from += part;
        size -= part;
    }
}

void Region::move(const void* place, const void* from, size_t size) {
    log(place, size);
    if constexpr (!kThreadSanitized) {
        // Both in the one mapping: addresses in two do not show how the places overlap.
        std::memmove(writableAt(place), writableAt(from), size);
    } else {
        std::vector<std::byte> held(size);
        copyOut(held.data(), from, size);
        copyIn(writableAt(place), held.data(), size);
    }
}

void Region::zero(const void* place, size_t size) {
    if constexpr (!kThreadSanitized) {
        std::memset(writableAt(place), 0, size);
    } else {
        const std::vector<std::byte> zeros(size);
        copyIn(writableAt(place), zeros.data(), size);
    }
}

// Memory behind the log or the heap is no part of a change: it stays when the change is undone.
void Region::growLog(size_t size) {
    mayFail();
    Header& head = writableHeader();
    const uint64_t more = roundUp(head.logUsed + size - head.logBacked, kLogGrowth);
    if (kLogAt + head.logBacked + more > kHeapAt || !back(kLogAt + head.logBacked, more)) throw NoRoom{};
    head.logBacked += more;
}

void Region::growHeap(uint64_t size) {
    Header& head = writableHeader();
    const uint64_t needed = head.heapUsed + size - head.heapBacked;
    const uint64_t wanted = roundUp(std::max({needed, head.heapBacked / 8, kLeastGrowth}), kLeastGrowth);
    // Less and less, down to the block alone.
    for (const uint64_t more : {wanted, roundUp(needed, kPage)}) {
        if (kHeapAt + head.heapBacked + more > head.limit || !back(kHeapAt + head.heapBacked, more)) continue;
        std::atomic_ref<uint64_t>(head.heapBacked).store(head.heapBacked + more, std::memory_order_relaxed);
        if (isShared()) refresh();
        return;
    }
    throw NoRoom{};
}

Region::Pages Region::pagesOf(Ref block, size_t size) {
    const uint64_t start = kHeapAt + block * kUnit;
    const uint64_t from = roundUp(start + sizeof(FreeBlock), kPage);
    const uint64_t end = (start + size) / kPage * kPage;
    return {from, end > from ? end - from : 0};
}

Ref Region::take(size_t size) {
    mayFail();
    (void)room(kMostLogOfTake);
    const uint32_t sizeClass = classFor(size);
    const size_t whole = sizeOfClass(sizeClass);
    const Header& head = header();
    const Ref free = head.freeBlocks[sizeClass];
    if (free == 0 || !isBacked(free, whole)) return takeFromEnd(whole);
    const FreeBlock& block = view().at<FreeBlock>(free);
    if (block.isPunched != 0) set(head.punchedBytes, head.punchedBytes - pagesOf(free, whole).size);
    set(head.freeBlocks[sizeClass], block.next);
    set(head.freeBytes, head.freeBytes - whole);
    // Its first words are about to be overwritten: they belong to the list if this is undone.
    log(&block, sizeof block);
    return free;
}

// Whether a free block has all its memory, or gets it now.
bool Region::isBacked(Ref free, size_t size) {
    if (view().at<FreeBlock>(free).isPunched == 0) return true;
    const Pages pages = pagesOf(free, size);
    return pages.size == 0 || back(pages.from, pages.size);
}

Ref Region::takeFromEnd(size_t size) {
    const uint64_t from = header().heapUsed;
    if (from + size > header().heapBacked) growHeap(size);
    set(header().heapUsed, from + size);
    return static_cast<Ref>(from / kUnit);
}

void Region::give(Ref block, size_t size) { given.push_back({block, classFor(size)}); }

void Region::commit() {
    const Header& head = header();
    for (const Given& block : given) {
        const size_t size = sizeOfClass(block.sizeClass);
        const bool isLarge = isShared() && size >= kPunched;
        const FreeBlock link{head.freeBlocks[block.sizeClass], isLarge ? 1U : 0U};
        write(&view().at<FreeBlock>(block.block), &link, sizeof link);
        set(head.freeBlocks[block.sizeClass], block.block);
        set(head.freeBytes, head.freeBytes + size);
        if (!isLarge) continue;
        set(head.punchedBytes, head.punchedBytes + pagesOf(block.block, size).size);
        punchable.push_back(block);
    }
    given.clear();
    std::atomic_signal_fence(std::memory_order_seq_cst);
    setLogUsed(0);
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

void Region::undo() {
    undoCopy(writable, std::min(mapped, kHeapAt + header().heapBacked), header().logUsed);
    std::atomic_signal_fence(std::memory_order_seq_cst);
    setLogUsed(0);
    std::atomic_signal_fence(std::memory_order_seq_cst);
    given.clear();
    punchable.clear();
}

void Region::undoCopy(std::byte* copy, uint64_t size, uint64_t length, uint64_t entries) {
    std::byte* const log = copy + kLogAt;
    if (length > kHeapAt - kLogAt || length % 8 != 0) throw Torn{};
    for (; length > 0 && entries > 0; --entries) {
        uint64_t entry;
        std::memcpy(&entry, log + length - sizeof entry, sizeof entry);
        const uint64_t bytes = entry & ((uint64_t{1} << kSizeBits) - 1);
        const uint64_t place = entry >> kSizeBits;
        if (padded(bytes) + sizeof entry > length || place + bytes > size) throw Torn{};
        length -= padded(bytes) + sizeof entry;
        copyIn(copy + place, log + length, bytes);
    }
}

void Region::giveBack() {
    if (!isShared()) return;
    for (const Given& block : punchable) {
        const Pages pages = pagesOf(block.block, sizeOfClass(block.sizeClass));
        if (pages.size == 0) continue;
        (void)fallocate(file, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, static_cast<off_t>(pages.from),
                        static_cast<off_t>(pages.size));
    }
    punchable.clear();
    Header& head = writableHeader();
    if (head.logBacked <= kKeptLog) return;
    const uint64_t before = head.logBacked;
    head.logBacked = kKeptLog;
    (void)fallocate(file, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, static_cast<off_t>(kLogAt + kKeptLog),
                    static_cast<off_t>(before - kKeptLog));
}

void Region::openSequence(const uint64_t& sequence) {
    std::atomic_ref<uint64_t> number(*static_cast<uint64_t*>(writableAt(&sequence)));
    const uint64_t value = number.load(std::memory_order_relaxed) + 1;
    if constexpr (kThreadSanitized) {
        number.store(value, std::memory_order_seq_cst);
    } else {
        number.store(value, std::memory_order_relaxed);
#ifndef __SANITIZE_THREAD__
        std::atomic_thread_fence(std::memory_order_release);
#endif
    }
}

void Region::closeSequence(const uint64_t& sequence) {
    std::atomic_ref<uint64_t> number(*static_cast<uint64_t*>(writableAt(&sequence)));
    number.store(number.load(std::memory_order_relaxed) + 1, std::memory_order_release);
}

}  // namespace mcast6::store::shared
