#include "bench/process_memory.h"

#include <malloc.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define MCAST6_BENCH_COUNTS_ALLOCATIONS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define MCAST6_BENCH_COUNTS_ALLOCATIONS 0
#endif
#endif
#ifndef MCAST6_BENCH_COUNTS_ALLOCATIONS
#define MCAST6_BENCH_COUNTS_ALLOCATIONS 1
#endif

namespace {

thread_local uint64_t allocations;

}  // namespace

namespace mcast6::bench {

uint64_t residentBytes() {
    std::ifstream summary("/proc/self/smaps_rollup");
    std::string name;
    while (summary >> name) {
        uint64_t kilobytes = 0;
        if (name == "Anonymous:" && summary >> kilobytes) return kilobytes << 10;
    }
    return 0;
}

void touchFreeMemory(uint64_t bytes) {
    constexpr size_t kPage = 4096;  // or a part of one
    void* const block = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED) return;
    // Memory that was idle for long is in the largest blocks, which huge pages are taken from first.
    (void)madvise(block, bytes, MADV_HUGEPAGE);
    volatile char* const bytesOf = static_cast<char*>(block);
    for (uint64_t at = 0; at < bytes; at += kPage) bytesOf[at] = 1;
    (void)munmap(block, bytes);
}

void trimHeap() { malloc_trim(0); }

uint64_t allocationCount() { return allocations; }

bool allocationsAreCounted() { return MCAST6_BENCH_COUNTS_ALLOCATIONS != 0; }

}  // namespace mcast6::bench

#if MCAST6_BENCH_COUNTS_ALLOCATIONS
// These replace the C library's functions for the whole process: the dynamic linker searches the program first.
extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void* __libc_memalign(size_t alignment, size_t size);

void* malloc(size_t size) noexcept {
    ++allocations;
    return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) noexcept {
    ++allocations;
    return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) noexcept {
    ++allocations;
    return __libc_realloc(block, size);
}

void* memalign(size_t alignment, size_t size) noexcept {
    ++allocations;
    return __libc_memalign(alignment, size);
}

void* aligned_alloc(size_t alignment, size_t size) noexcept {
    ++allocations;
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** block, size_t alignment, size_t size) noexcept {
    ++allocations;
    void* const taken = __libc_memalign(alignment, size);
    if (taken == nullptr) return ENOMEM;
    *block = taken;
    return 0;
}

void* mmap(void* address, size_t length, int protection, int flags, int file, off_t offset) noexcept {
    ++allocations;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel answers with an address
    return reinterpret_cast<void*>(syscall(SYS_mmap, address, length, protection, flags, file, offset));
}
}
#endif
