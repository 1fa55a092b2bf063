// The memory of this process: its resident anonymous memory, and its number of allocations.
#pragma once

#include <cstdint>

namespace mcast6::bench {

// Resident anonymous memory in bytes, as the kernel counts it page by page: heap, mappings and stacks of every library,
// but neither code nor files.
uint64_t residentBytes();

// Allocates this much memory from the kernel, writes to every page and frees it. A virtual machine returns idle memory
// to its host, and the next use waits for the host: milliseconds for a huge page. Afterwards the kernel has this much
// free memory ready.
void touchFreeMemory(uint64_t bytes);

// Returns the free memory of the C library's heap to the kernel.
void trimHeap();

// The number of allocations of this thread: malloc and related functions, operator new (which calls malloc) and mmap,
// from this program or any library. Always 0 if the program is built with a sanitizer, which has its own malloc.
uint64_t allocationCount();
bool allocationsAreCounted();

}  // namespace mcast6::bench
