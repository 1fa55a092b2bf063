// The region alone: what a change does to memory, and that undoing takes it back.
#include "platform/store/shared/region.h"

#include <csignal>
#include <cstring>
#include <vector>

#include "tests/shared/support.h"

namespace mcast6::store::test {
namespace {

using shared::Ref;
using shared::Region;

// Reading and writing go through two mappings of a file.
class RegionOfFile : public testing::Test {
protected:
    void SetUp() override {
        store = file.open();
        ASSERT_NE(store, nullptr);
        region = &store->regionForTests();
        ASSERT_EQ(region->lock(), Region::Lock::taken);
        region->begin();
    }
    void TearDown() override {
        if (region != nullptr) region->unlock();
    }

    // A block with numbers in ascending order.
    const uint64_t* numbers(uint32_t count) {
        const Ref block = region->take(count * sizeof(uint64_t));
        const auto* const from = region->view().array<uint64_t>(block);
        for (uint64_t i = 0; i < count; ++i) region->init(from[i], i);
        return from;
    }

    StoreFile file;
    std::unique_ptr<SharedStore> store;
    Region* region = nullptr;
};

TEST_F(RegionOfFile, MovesWhatOverlaps) {
    constexpr uint32_t kCount = 4096;
    for (const uint32_t size : {2U, 9U, 33U, 300U, 4000U}) {
        for (const bool isForward : {true, false}) {
            const uint64_t* const array = numbers(kCount);
            const uint64_t* const place = isForward ? array + 1 : array;
            const uint64_t* const from = isForward ? array : array + 1;
            region->move(place, from, size * sizeof(uint64_t));
            for (uint64_t i = 0; i < size; ++i) {
                ASSERT_EQ(place[i], isForward ? i : i + 1) << "of " << size << ", forward: " << isForward;
            }
            EXPECT_EQ(array[size + 1], size + 1);
        }
    }
    region->undo();
}

TEST_F(RegionOfFile, UndoesInReverseOrder) {
    const uint64_t* const array = numbers(100);
    region->commit();
    region->begin();
    region->set(array[5], 50);
    region->set(array[5], 51);
    region->move(array + 10, array + 9, 40 * sizeof(uint64_t));
    const std::vector<uint64_t> other(30, 7);
    region->write(array + 4, other.data(), 30 * sizeof(uint64_t));
    EXPECT_EQ(array[5], 7U);
    region->undo();
    for (uint64_t i = 0; i < 100; ++i) ASSERT_EQ(array[i], i);
    EXPECT_EQ(region->header().logUsed, 0U);
}

TEST_F(RegionOfFile, TakesNoBlockAgainThatItGaveInTheSameChange) {
    const Ref first = region->take(100);
    region->give(first, 100);
    const Ref second = region->take(100);
    EXPECT_NE(first, second);
    region->commit();
    region->begin();
    EXPECT_EQ(region->take(100), first);
    region->undo();
    region->begin();
    EXPECT_EQ(region->take(100), first);
    region->undo();
}

TEST_F(RegionOfFile, SizesOfBlocksWasteLittle) {
    for (size_t size = 1; size < 5'000'000; size += 1 + size / 7) {
        EXPECT_GE(Region::sizeFor(size), size);
        EXPECT_LE(Region::sizeFor(size), size + std::max<size_t>(16, size / 4)) << size;
        EXPECT_EQ(Region::sizeFor(Region::sizeFor(size)), Region::sizeFor(size));
    }
}

// What is read cannot be written to.
TEST_F(RegionOfFile, ReadsThroughAMappingThatCannotBeWritten) {
    const uint64_t* const array = numbers(4);
    region->undo();
    EXPECT_EXIT(
        {
            // The system's own answer, not that of a sanitizer.
            (void)signal(SIGSEGV, SIG_DFL);
            *const_cast<volatile uint64_t*>(array) = 1;
            _exit(0);
        },
        testing::KilledBySignal(SIGSEGV), "");
}

}  // namespace
}  // namespace mcast6::store::test
