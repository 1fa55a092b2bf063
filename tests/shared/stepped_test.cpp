// A writer that is stopped after every instruction. What it would leave behind if it were killed there is copied,
// recovered and checked whole: it must be the state before or after the change, never a third.
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/wait.h>

#include <atomic>
#include <cstring>

#include "tests/shared/support.h"

namespace mcast6::store::test {
namespace {

using shared::Header;
using shared::kHeapAt;
using shared::kLogAt;
using shared::Region;

constexpr uint64_t kSize = kHeapAt + (uint64_t{64} << 20);

// Where the writer is, for the one that watches it.
struct Progress {
    std::atomic<uint64_t> done;    // changes
    std::atomic<bool> isChanging;  // inside of one
    std::atomic<bool> isOver;
};

struct Plan {
    const char* name;
    uint64_t first;     // number of the first change
    uint64_t preload;   // records that are there before
    uint64_t range;     // of keys
    uint64_t count;     // changes, in the short form
    uint64_t together;  // made as one
};

// Memory laid out like a file.
class Scratch {
public:
    Scratch()
        : memory(static_cast<std::byte*>(
              mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))) {}
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch() { (void)munmap(memory, kSize); }

    std::byte* bytes() const { return memory; }
    Header& header() const { return *reinterpret_cast<Header*>(memory); }

private:
    std::byte* const memory;
};

class Watcher {
public:
    explicit Watcher(const std::byte* region) : live(region) {}

    // Calls f(offset, size) for what a change may have touched.
    template <class F>
    void forParts(const F& f) const {
        const auto& head = *reinterpret_cast<const Header*>(live);
        f(0, sizeof(Header));
        f(kLogAt, head.logUsed + 4096);
        f(kHeapAt, head.heapUsed + 8192);
    }

    bool hasChanged() const {
        bool isSame = true;
        forParts([&](uint64_t at, uint64_t size) {
            isSame = isSame && std::memcmp(last.bytes() + at, live + at, size) == 0;
        });
        return !isSame;
    }

    // Recovers a copy. Empty: it is whole; then 'found' is its digest.
    std::string look(uint64_t& found) {
        forParts([&](uint64_t at, uint64_t size) {
            std::memcpy(last.bytes() + at, live + at, size);
            std::memcpy(copy.bytes() + at, live + at, size);
        });
        ++states;
        const uint64_t length = copy.header().logUsed;
        if (length > 0) ++unfinished;
        // Now and then who recovers is killed as well.
        if (length > 0 && states % 3 == 0) Region::undoCopy(copy.bytes(), kSize, length, states % 7 + 1);
        const std::unique_ptr<SharedStore> store =
            SharedStore::adopt(std::span<const schema::Table>(kTables), copy.bytes(), kSize);
        if (store == nullptr) return "cannot be recovered";
        std::string wrong = store->check();
        found = digest(*store);
        return wrong;
    }

    uint64_t states = 0;
    uint64_t unfinished = 0;
    uint64_t instructions = 0;

private:
    const std::byte* const live;
    Scratch last;
    Scratch copy;
};

std::vector<Change> changesOf(const Plan& plan, uint64_t number) {
    std::vector<Change> changes;
    for (uint64_t i = 0; i < plan.together; ++i) {
        changes.push_back(changeAt(plan.first + number * plan.together + i, plan.range));
    }
    return changes;
}

[[noreturn]] void write(const StoreFile& file, const Plan& plan, uint64_t count, Progress& progress) {
    const std::unique_ptr<SharedStore> store = file.open();
    if (store == nullptr || ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
    (void)raise(SIGSTOP);
    for (uint64_t number = 0; number < count; ++number) {
        const std::vector<Change> changes = changesOf(plan, number);
        progress.isChanging = true;
        if (plan.together == 1) {
            (void)apply(*store, changes[0]);
        } else {
            (void)applyAsOne(*store, changes);
        }
        progress.isChanging = false;
        ++progress.done;
    }
    progress.isOver = true;
    for (;;) pause();
}

bool step(pid_t writer) {
    int status = 0;
    if (ptrace(PTRACE_SINGLESTEP, writer, nullptr, nullptr) != 0) return false;
    return waitpid(writer, &status, 0) == writer && WIFSTOPPED(status) && WSTOPSIG(status) == SIGTRAP;
}

class Stepped : public testing::TestWithParam<Plan> {
protected:
    void TearDown() override {
        if (writer <= 0) return;
        (void)kill(writer, SIGKILL);
        (void)waitpid(writer, nullptr, 0);
    }
    pid_t writer = 0;
};

TEST_P(Stepped, EveryInstructionLeavesTheStateBeforeOrAfter) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "what a sanitizer adds to a step is no part of the writer; the plain build steps through it";
#endif
    const Plan& plan = GetParam();
    const uint64_t count = rounds(plan.count, plan.count * 100);
    const StoreFile file;
    const std::unique_ptr<SharedStore> store = file.open();
    ASSERT_NE(store, nullptr);
    const std::unique_ptr<Store> model = makeModel();
    for (uint64_t i = 0; i < plan.preload; ++i) {
        Change change = changeAt(1'000'000 + i, plan.range);
        change.kind = Change::Kind::put;
        ASSERT_EQ(apply(*store, change), apply(*model, change));
    }
    auto* const progress = shareWithChildren<Progress>();
    ASSERT_NE(progress, nullptr);
    Watcher watcher(reinterpret_cast<const std::byte*>(&store->regionForTests().header()));

    writer = fork();
    ASSERT_GE(writer, 0);
    if (writer == 0) write(file, plan, count, *progress);
    int status = 0;
    ASSERT_EQ(waitpid(writer, &status, 0), writer);
    if (!WIFSTOPPED(status)) {
        writer = 0;
        FAIL() << "the writer could not be traced";
    }

    uint64_t before = digest(*model);
    for (uint64_t number = 0; number < count; ++number) {
        for (const Change& change : changesOf(plan, number)) (void)apply(*model, change);
        const uint64_t after = digest(*model);
        bool isAfter = false;
        while (progress->done == number) {
            ASSERT_TRUE(step(writer)) << "change " << number;
            if (!progress->isChanging && !isAfter) continue;
            ++watcher.instructions;
            if (!watcher.hasChanged()) continue;
            uint64_t found = 0;
            ASSERT_EQ(watcher.look(found), "") << "change " << number << ", state " << watcher.states;
            if (isAfter) {
                ASSERT_EQ(found, after) << "change " << number << ", state " << watcher.states << ": it went back";
            } else {
                ASSERT_TRUE(found == before || found == after) << "change " << number << ", state " << watcher.states;
            }
            isAfter = found == after && after != before;
        }
        before = after;
    }
    ASSERT_EQ(digest(*store), before);
    EXPECT_GT(watcher.states, 20 * count);
    EXPECT_GT(watcher.unfinished, watcher.states / 2);
    RecordProperty("instructions", std::to_string(watcher.instructions));
    RecordProperty("states", std::to_string(watcher.states));
    std::printf("%s: %llu instructions, %llu states, %llu of them with something to undo\n", plan.name,
                static_cast<unsigned long long>(watcher.instructions), static_cast<unsigned long long>(watcher.states),
                static_cast<unsigned long long>(watcher.unfinished));
}

// From nothing; among some records; where sets have directories and bitmaps; several changes as one.
INSTANTIATE_TEST_SUITE_P(Plans, Stepped,
                         testing::Values(Plan{"Empty", 100'000, 0, 40, 3, 1}, Plan{"Some", 200'000, 100, 60, 4, 1},
                                         Plan{"Many", 300'000, 1500, 1000, 2, 1},
                                         Plan{"Together", 400'000, 100, 60, 1, 4}),
                         [](const auto& plan) { return plan.param.name; });

}  // namespace
}  // namespace mcast6::store::test
