// A copy-on-write view of a region's file: what is written to it stays in this process.
#pragma once

#include <sys/mman.h>

#include <algorithm>

#include "platform/store/shared/region.h"

namespace mcast6::store::shared {

class PrivateCopy {
public:
    explicit PrivateCopy(const Region& of) : length(of.readableBytes()) {
        void* const copy = of.isShared() ? mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_NORESERVE,
                                                of.descriptor(), 0)
                                         : MAP_FAILED;
        if (copy != MAP_FAILED) memory = static_cast<std::byte*>(copy);
    }
    PrivateCopy(const PrivateCopy&) = delete;
    PrivateCopy& operator=(const PrivateCopy&) = delete;
    ~PrivateCopy() {
        if (memory != nullptr) (void)munmap(memory, length);
    }

    bool isThere() const { return memory != nullptr; }
    std::byte* bytes() const { return memory; }
    uint64_t size() const { return length; }
    View view() const { return {memory + kHeapAt, length - kHeapAt}; }

private:
    const uint64_t length;
    std::byte* memory = nullptr;
};

}  // namespace mcast6::store::shared
