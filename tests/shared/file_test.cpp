// The file of a shared store: made, opened, refused in words, read without the right to write, and damaged.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <array>
#include <cstring>

#include "tests/shared/support.h"

namespace mcast6::store::test {
namespace {

using shared::Header;
using testing::Test;

class File : public Test {
protected:
    // Opens the file, which must be refused, and tells why.
    std::string refusal() const {
        std::string reason;
        EXPECT_EQ(file.open(reason), nullptr);
        return reason;
    }

    void overwrite(size_t offset, const void* bytes, size_t size) const {
        const int descriptor = ::open(file.options.path.c_str(), O_RDWR | O_CLOEXEC);
        ASSERT_GE(descriptor, 0);
        EXPECT_EQ(pwrite(descriptor, bytes, size, static_cast<off_t>(offset)), static_cast<ssize_t>(size));
        (void)close(descriptor);
    }

    template <class T>
    void overwrite(size_t offset, T value) const {
        overwrite(offset, &value, sizeof value);
    }

    void fill() const {
        const std::unique_ptr<SharedStore> store = file.open();
        ASSERT_NE(store, nullptr);
        for (uint64_t number = 0; number < 300; ++number) (void)apply(*store, changeAt(number, 100));
    }

    StoreFile file;
};

TEST_F(File, IsOpenedAgainWithAllThatWasInIt) {
    uint64_t before = 0;
    {
        const std::unique_ptr<SharedStore> store = file.open();
        for (uint64_t number = 0; number < 300; ++number) (void)apply(*store, changeAt(number, 100));
        before = digest(*store);
    }
    const std::unique_ptr<SharedStore> store = file.open();
    EXPECT_EQ(digest(*store), before);
    EXPECT_EQ(store->check(), "");
}

TEST_F(File, IsSharedAtOnce) {
    const std::unique_ptr<SharedStore> one = file.open();
    const std::unique_ptr<SharedStore> other = file.open();
    const Bytes row = makeRow(kOdd, {{"vr", 1}, {"group", 2}});
    ASSERT_EQ(one->put(kOddTable, raw(row)), Answer::done);
    Bytes found(kOdd.recordSize, '\0');
    ASSERT_EQ(other->get(kOddTable, raw(keyOf(kOdd.primary, row)), raw(found)), Answer::done);
    EXPECT_EQ(found, row);
    // A file that grows under one process is read by the other.
    for (uint64_t number = 0; number < 20'000; ++number) {
        const Bytes entry = makeRow(kTables[kMfibTable], {{"groupAddr", number}, {"sourceAddr", number}});
        ASSERT_EQ(one->put(kMfibTable, raw(entry)), Answer::done);
    }
    EXPECT_EQ(digest(*other), digest(*one));
}

TEST_F(File, HasTheModeThatWasAskedFor) {
    file.options.mode = 0640;
    (void)file.open();
    struct stat status;
    ASSERT_EQ(stat(file.options.path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, mode_t{0640});
}

TEST_F(File, ReadOnlyNeedsTheRightToReadAlone) {
    fill();
    ASSERT_EQ(chmod(file.options.path.c_str(), 0444), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // Nobody in particular, who may read what all may read.
        if (getuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0)) _exit(2);
        std::string reason;
        if (SharedStore::open(file.options, std::span<const schema::Table>(kTables), reason) != nullptr) _exit(3);
        if (reason.find("readonly") == std::string::npos) _exit(4);
        FileOptions reading = file.options;
        reading.isReadOnly = true;
        const std::unique_ptr<SharedStore> store =
            SharedStore::open(reading, std::span<const schema::Table>(kTables), reason);
        if (store == nullptr) _exit(5);
        uint64_t records = 0;
        if (store->count(kOddTable, records) != Answer::done || records == 0) _exit(6);
        if (store->put(kOddTable, raw(makeRow(kOdd))) != Answer::failed) _exit(7);
        if (store->erase(kOddTable, raw(Bytes(20, '\0'))) != Answer::failed) _exit(8);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(File, IsMadeAnewWhenItsMakerDied) {
    fill();
    overwrite(offsetof(Header, magic), shared::kCreating);
    FileOptions reading = file.options;
    reading.isReadOnly = true;
    std::string reason;
    EXPECT_EQ(SharedStore::open(reading, std::span<const schema::Table>(kTables), reason), nullptr);
    EXPECT_NE(reason.find("is not finished"), std::string::npos) << reason;
    const std::unique_ptr<SharedStore> store = file.open();
    ASSERT_NE(store, nullptr);
    uint64_t records = 99;
    ASSERT_EQ(store->count(kOddTable, records), Answer::done);
    EXPECT_EQ(records, 0U);
    EXPECT_EQ(store->check(), "");
}

TEST_F(File, OfSomethingElseIsLeftAlone) {
    const std::string text = "what somebody keeps here\n";
    const int descriptor = ::open(file.options.path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(write(descriptor, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    EXPECT_NE(refusal().find("is not a shared store"), std::string::npos);
    std::array<char, 64> found{};
    EXPECT_EQ(pread(descriptor, found.data(), found.size(), 0), static_cast<ssize_t>(text.size()));
    EXPECT_EQ(text, found.data());
    (void)close(descriptor);
}

TEST_F(File, OfAnotherKindIsRefusedInWords) {
    const auto refusedWith = [&](size_t offset, auto value, const char* words) {
        file.remove();
        fill();
        overwrite(offset, value);
        const std::string reason = refusal();
        EXPECT_NE(reason.find(words), std::string::npos) << reason;
        EXPECT_NE(reason.find(file.options.path), std::string::npos) << reason;
    };
    refusedWith(offsetof(Header, magic), __builtin_bswap64(shared::kComplete), "byte order");
    refusedWith(offsetof(Header, format), shared::kFormat + 1, "format");
    refusedWith(offsetof(Header, mutexSize), uint16_t{24}, "C library");
    refusedWith(offsetof(Header, pointerSize), uint16_t{4}, "C library or word size");
    refusedWith(offsetof(Header, fingerprint), uint64_t{1}, "other tables");
    refusedWith(offsetof(Header, bootId), uint64_t{1}, "earlier start of this machine");
    refusedWith(offsetof(Header, limit), uint64_t{12}, "damaged");
    refusedWith(offsetof(Header, heapBacked), uint64_t{1} << 40, "damaged");
}

TEST_F(File, OfOtherTablesIsRefused) {
    fill();
    std::string reason;
    const std::span<const schema::Table> fewer(kTables, 2);
    EXPECT_EQ(SharedStore::open(file.options, fewer, reason), nullptr);
    EXPECT_NE(reason.find("other tables"), std::string::npos) << reason;
}

TEST_F(File, NamesAreNamesAndPathsArePaths) {
    std::string reason;
    EXPECT_EQ(shared::pathOf("left-1.db_2", reason), "/dev/shm/mcast6db.left-1.db_2");
    EXPECT_EQ(shared::pathOf("./here", reason), "./here");
    EXPECT_EQ(reason, "");
    for (const char* name : {"", ".hidden", "white space", "new\nline"}) {
        reason.clear();
        EXPECT_EQ(shared::pathOf(name, reason), "");
        EXPECT_NE(reason, "") << name;
    }
    ASSERT_EQ(mkfifo(file.options.path.c_str(), 0600), 0);
    EXPECT_NE(refusal().find("no regular file"), std::string::npos);
    file.remove();
    file.options.path += "/no/such/directory";
    EXPECT_NE(refusal().find("/no/such/directory: cannot be opened"), std::string::npos);
}

// Bytes of a finished file at random: a reader answers something or fails, and comes back.
TEST_F(File, ThatIsDamagedDoesNotCrashItsReaders) {
    std::mt19937_64 random(11);
    uint64_t failures = 0;
    for (uint64_t round = 0; round < rounds(15, 1'000); ++round) {
        file.remove();
        fill();
        const std::unique_ptr<SharedStore> store = file.openReadOnly();
        ASSERT_NE(store, nullptr);
        const uint64_t heap = store->regionForTests().header().heapUsed;
        for (int i = 0; i < 200; ++i) {
            overwrite(shared::kHeapAt + random() % heap / 4 * 4, static_cast<uint32_t>(random() >> (random() % 32)));
        }
        // Not the sequence numbers: who reads waits for them to be even.
        const std::unique_ptr<SharedStore> writable = file.open();
        for (uint32_t table = 0; table < std::size(kTables); ++table) {
            shared::Region& region = writable->regionForTests();
            const auto& head = region.view().at<shared::TableHead>(region.header().tables[table]);
            region.init(head.sequence, 2);
            region.init(head.rowSequence, 2);
        }
        for (uint64_t number = 0; number < 100; ++number) {
            const Change change = changeAt(number, 100);
            std::array<std::byte, schema::kMaxRecordSize> row;
            if (writable->get(change.table, raw(change.key), row.data()) == Answer::failed) ++failures;
            uint64_t records = 0;
            for (uint32_t index = 0; index < kTables[change.table].indexes.size(); ++index) {
                const Bytes key = keyOf(kTables[change.table].indexes[index], change.row);
                if (writable->countByKey(change.table, index, raw(key), records) == Answer::failed) ++failures;
                std::unique_ptr<Scan> scan;
                ASSERT_EQ(writable->open(change.table, {ScanRange::Order::index, index, raw(key)}, scan), Answer::done);
                for (int steps = 0; steps < 50; ++steps) {
                    const Answer answer = scan->next();
                    if (answer == Answer::failed) ++failures;
                    if (answer != Answer::done) break;
                }
            }
        }
    }
    EXPECT_GT(failures, 0U);
}

}  // namespace
}  // namespace mcast6::store::test
