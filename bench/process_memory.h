// What this process takes: its resident anonymous memory, and how often it asked for more.
#pragma once

#include <cstdint>

namespace mcast6::bench {

// Resident anonymous memory in bytes, as the kernel counts it page by page: heap, mappings and stacks of every library,
// but neither code nor files.
uint64_t residentBytes();

// Takes this much memory from the kernel, writes to every page of it and gives it back. A virtual machine hands memory that
// lay idle back to the machine below, and whoever uses it next waits for that machine: milliseconds for a huge page. What
// comes next finds the kernel's free memory at hand.
void stirFreeMemory(uint64_t bytes);

// Hands what the C library's heap keeps for later back to the kernel.
void trimHeap();

// How often this thread asked for memory: malloc and its kin, operator new (which is malloc) and mmap, from this program
// or any library. Stays 0 where the program is built with a sanitizer, which has a malloc of its own.
uint64_t allocationCount();
bool allocationsAreCounted();

}  // namespace mcast6::bench
