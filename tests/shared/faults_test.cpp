// The shared store without memory: every block that a change asks for is refused once, and nothing may change. And a
// file system, or a limit, that is full.
#include <sys/mount.h>
#include <sys/stat.h>

#include "tests/shared/support.h"

namespace mcast6::store::test {
namespace {

TEST(Faults, AChangeHappensWholeOrNotAtAll) {
    const std::unique_ptr<SharedStore> store =
        SharedStore::makePrivate(std::span<const schema::Table>(kTables), uint64_t{256} << 20);
    ASSERT_NE(store, nullptr);
    const std::unique_ptr<Store> model = makeModel();
    uint64_t failures = 0;
    const uint64_t changes = rounds(1500, 20'000);
    for (uint64_t number = 0; number < changes; ++number) {
        const Change change = changeAt(number, 400);
        const uint64_t before = digest(*model);
        const Answer expected = apply(*model, change);
        for (uint64_t n = 1;; ++n) {
            store->regionForTests().failAt(n);
            const Answer answer = apply(*store, change);
            const bool hasFailed = store->regionForTests().hasFailed();
            store->regionForTests().failAt(0);
            if (answer == expected) {
                ASSERT_TRUE(!hasFailed || change.kind == Change::Kind::erase) << "change " << number;
                break;
            }
            ASSERT_TRUE(hasFailed) << "change " << number;
            ASSERT_EQ(answer, Answer::noMemory) << "change " << number << ", failure " << n;
            ++failures;
            if (failures % 16 == 0 || number < 50) {
                ASSERT_EQ(store->check(), "") << "change " << number << ", failure " << n;
                ASSERT_EQ(digest(*store), before) << "change " << number << ", failure " << n;
            }
        }
    }
    EXPECT_EQ(store->check(), "");
    EXPECT_EQ(digest(*store), digest(*model));
    EXPECT_GT(failures, changes / 4);
}

TEST(Faults, AllOfABatchHappensOrNothing) {
    const std::unique_ptr<SharedStore> store =
        SharedStore::makePrivate(std::span<const schema::Table>(kTables), uint64_t{256} << 20);
    ASSERT_NE(store, nullptr);
    const std::unique_ptr<Store> model = makeModel();
    uint64_t failures = 0;
    for (uint64_t round = 0; round < rounds(30, 400); ++round) {
        std::vector<Change> changes;
        for (uint64_t i = 0; i < 12; ++i) changes.push_back(changeAt(round * 12 + i, 400));
        const uint64_t before = digest(*model);
        for (uint64_t n = 1;; ++n) {
            store->regionForTests().failAt(n);
            const Answer answer = applyAsOne(*store, changes);
            store->regionForTests().failAt(0);
            if (answer == Answer::done) break;
            ASSERT_EQ(answer, Answer::noMemory);
            ASSERT_EQ(store->check(), "") << "round " << round << ", failure " << n;
            ASSERT_EQ(digest(*store), before) << "round " << round << ", failure " << n;
            ++failures;
        }
        for (const Change& change : changes) (void)apply(*model, change);
        ASSERT_EQ(digest(*store), digest(*model)) << "round " << round;
    }
    EXPECT_GT(failures, 30U);
}

// Fills the store until it takes no more, then goes on changing and erasing what is there.
void fillAndGoOn(SharedStore& store) {
    uint64_t count = 0;
    Answer answer = Answer::done;
    const auto row = [](uint64_t number) {
        return makeRow(kTables[kMfibTable],
                       {{"vrfId", number % 4}, {"groupAddr", number / 50}, {"sourceAddr", number}});
    };
    while ((answer = store.put(kMfibTable, raw(row(count)))) == Answer::done) ++count;
    EXPECT_EQ(answer, Answer::noMemory);
    EXPECT_GT(count, 1000U);
    EXPECT_EQ(store.check(), "");
    uint64_t records = 0;
    ASSERT_EQ(store.count(kMfibTable, records), Answer::done);
    EXPECT_EQ(records, count);
    for (uint64_t number = 0; number < count; ++number) {
        const Bytes key = keyOf(kTables[kMfibTable].primary, row(number));
        ASSERT_EQ(store.erase(kMfibTable, raw(key)), Answer::done) << number << " of " << count;
        if (number % 97 == 0) {
            // What goes away makes room.
            ASSERT_EQ(store.put(kMfibTable, raw(row(number))), Answer::done) << number << " of " << count;
            ASSERT_EQ(store.erase(kMfibTable, raw(key)), Answer::done);
        }
    }
    EXPECT_EQ(store.check(), "");
    // Most of it again: blocks that were small stay what they were.
    for (uint64_t number = 0; number < count * 3 / 4; ++number) {
        ASSERT_EQ(store.put(kMfibTable, raw(row(number))), Answer::done) << number << " of " << count;
    }
    EXPECT_EQ(store.check(), "");
}

TEST(Faults, AFullStoreSaysSoAndGoesOn) {
    StoreFile file;
    file.options.limit = shared::kHeapAt + (uint64_t{16} << 20);
    const std::unique_ptr<SharedStore> store = file.open();
    ASSERT_NE(store, nullptr);
    fillAndGoOn(*store);
}

TEST(Faults, AFullFileSystemIsNoSignal) {
    const std::string directory = "/tmp/mcast6db.full-" + std::to_string(getpid());
    ASSERT_EQ(mkdir(directory.c_str(), 0700), 0);
    if (mount("tmpfs", directory.c_str(), "tmpfs", 0, "size=16m") != 0) {
        (void)rmdir(directory.c_str());
        GTEST_SKIP() << "a file system can be mounted by root only";
    }
    {
        StoreFile file;
        file.options.path = directory + "/store";
        const std::unique_ptr<SharedStore> store = file.open();
        if (store != nullptr) fillAndGoOn(*store);
    }
    (void)umount2(directory.c_str(), MNT_DETACH);
    (void)rmdir(directory.c_str());
}

}  // namespace
}  // namespace mcast6::store::test
