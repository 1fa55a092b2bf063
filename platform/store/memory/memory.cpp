#include "platform/store/memory/memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace mcast6::store::memory {
namespace {

size_t wholePages(size_t size) {
    static const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    return (size + page - 1) / page * page;
}

void* map(size_t size) {
    void* const block = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return block != MAP_FAILED ? block : nullptr;
}

// A mapping that begins at a multiple of kHuge, as huge pages do: cut out of a larger one.
void* mapHuge(size_t size) {
    auto* const block = static_cast<std::byte*>(map(size + Memory::kHuge));
    if (block == nullptr) return nullptr;
    const size_t head = Memory::kHuge - reinterpret_cast<uintptr_t>(block) % Memory::kHuge;
    std::byte* const aligned = block + head;
    (void)munmap(block, head);
    if (head < Memory::kHuge) (void)munmap(aligned + size, Memory::kHuge - head);
    (void)madvise(aligned, size, MADV_HUGEPAGE);
    return aligned;
}

void unmap(void* block, size_t size) {
    // A hole in a mapping makes two of it, of which a process may have only so many; then the pages go at least.
    if (munmap(block, size) != 0) (void)madvise(block, size, MADV_DONTNEED);
}

}  // namespace

void* Memory::take(size_t size) noexcept {
    if (size < kMapped) {
        void* const block = ::operator new(size, std::nothrow);
        if (block == nullptr) return nullptr;
        taken += size;
        return std::memset(block, 0, size);
    }
    const size_t mapped = wholePages(size);
    void* const block = mapped < kHuge ? map(mapped) : mapHuge(mapped);
    if (block == nullptr) return nullptr;
    taken += mapped;
    return block;
}

void Memory::give(void* block, size_t size) noexcept {
    if (size < kMapped) {
        ::operator delete(block);
        taken -= size;
        return;
    }
    const size_t mapped = wholePages(size);
    taken -= mapped;
    unmap(block, mapped);
}

size_t Memory::shrink(void* block, size_t size, size_t wanted) noexcept {
    const size_t kept = wholePages(std::max(wanted, kMapped));
    if (size < kMapped || kept >= wholePages(size)) return size;
    const size_t rest = wholePages(size) - kept;
    taken -= rest;
    unmap(static_cast<std::byte*>(block) + kept, rest);
    return kept;
}

void* Memory::do_allocate(size_t size, size_t) {
    void* const block = take(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void Memory::do_deallocate(void* block, size_t size, size_t) { give(block, size); }

}  // namespace mcast6::store::memory
