// Where a table gets its memory: counted to the byte, and returned to the operating system when given back.
//
// Anything large is mapped on its own, so that unmapping it shrinks the process whatever its neighbours are; the rest
// comes from the heap. Very large blocks use huge pages where the system has them: in a table of a million records
// nearly every access would miss the TLB. It is a memory_resource as well, for the standard
// containers inside a table.
//
// Not synchronised: the table's lock guards it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>

namespace mcast6::store::memory {

class Memory final : public std::pmr::memory_resource {
public:
    // Zeroed memory, aligned for any scalar; null when there is none.
    void* take(size_t size) noexcept;
    void give(void* block, size_t size) noexcept;

    // Makes a block smaller where it lies, as far as that is possible, and says what size it has now: 'wanted' or more.
    size_t shrink(void* block, size_t size, size_t wanted) noexcept;

    uint64_t bytes() const noexcept { return taken; }

    // Blocks from this size on are mapped ...
    static constexpr size_t kMapped = size_t{32} << 10;
    // ... and from this size on, which is that of a huge page, in huge pages.
    static constexpr size_t kHuge = size_t{2} << 20;

private:
    void* do_allocate(size_t size, size_t alignment) override;
    void do_deallocate(void* block, size_t size, size_t alignment) override;
    bool do_is_equal(const memory_resource& other) const noexcept override { return this == &other; }

    uint64_t taken = 0;
};

}  // namespace mcast6::store::memory
