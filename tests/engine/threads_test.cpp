// Several threads in one engine; the thread sanitizer build is what gives these tests their teeth.
#include <atomic>
#include <thread>

#include "tests/engine/test_tables.h"

namespace mcast6::testing {
namespace {

class Threads : public EngineTest {
protected:
    template <class Body>
    static void together(uint32_t threads, Body body) {
        std::vector<std::thread> running;
        for (uint32_t i = 0; i < threads; ++i) running.emplace_back(body, i);
        for (std::thread& thread : running) thread.join();
    }
};

TEST_P(Threads, WriteReadUpdateAndRemoveRecordsOfTheirOwn) {
    constexpr uint32_t kRecords = 200;
    together(4, [&](uint32_t vr) {
        for (uint32_t id = 0; id < kRecords; ++id) {
            EXPECT_EQ(write(Route{.vr = vr, .id = id, .port = 7, .version = id}), 0U);
        }
        for (uint32_t id = 0; id < kRecords; ++id) {
            Route stored;
            EXPECT_EQ(read(vr, id, stored), 0U);
            EXPECT_EQ(stored, (Route{.vr = vr, .id = id, .port = 7, .version = id}));
            if (id % 2 == 0) {
                EXPECT_EQ(remove(vr, id), 0U);
            }
        }
    });
    EXPECT_EQ(records(), 4 * kRecords / 2);
    EXPECT_EQ(records(kByPort, join(uint16_t{7})), 4 * kRecords / 2);
}

// What is read of a record that others rewrite is always one of its versions, whole.
TEST_P(Threads, NeverSeeHalfARecord) {
    const auto version = [](uint32_t n) {
        return Route{.vr = 1, .id = 1, .group = {static_cast<uint8_t>(n)}, .port = 7, .version = n, .stamp = n};
    };
    const auto expectWhole = [&](const Route& route) { EXPECT_EQ(route, version(route.version)); };
    EXPECT_EQ(write(version(1)), 0U);
    std::atomic<bool> isDone{false};
    together(4, [&](uint32_t thread) {
        if (thread < 2) {
            for (uint32_t n = 1; n < 200; ++n) EXPECT_EQ(write(version(n % 100)), 13044U);
            isDone = true;
            return;
        }
        while (!isDone) {
            Route route;
            if (thread == 2) {
                EXPECT_EQ(read(1, 1, route), 0U);
                expectWhole(route);
                continue;
            }
            const uint64_t walker = object(kIterate);
            const uint64_t rootIter = indexIter(walker, kByPort, join(uint16_t{7}));
            EXPECT_EQ(engine.next(rootIter), 0U);
            EXPECT_EQ(engine.read(walker, nullptr, nullptr, &route, sizeof route), 0U);
            expectWhole(route);
            engine.releaseObject(kRoute, walker);
        }
    });
}

TEST_P(Threads, WalkWhileOthersWriteAndRemove) {
    for (uint32_t id = 0; id < 50; ++id) EXPECT_EQ(write(Route{.vr = 9, .id = id, .port = 7}), 0U);
    std::atomic<uint32_t> writers{2};
    together(4, [&](uint32_t thread) {
        if (thread < 2) {
            for (uint32_t round = 0; round < 20; ++round) {
                for (uint32_t id = 0; id < 20; ++id) write(Route{.vr = thread, .id = id, .port = 7});
                for (uint32_t id = 0; id < 20; ++id) remove(thread, id);
            }
            --writers;
            return;
        }
        do {
            const uint64_t walker = object(kIterate);
            const uint64_t rootIter = thread == 2 ? tableIter(walker) : indexIter(walker, kByPort, join(uint16_t{7}));
            uint32_t stayed = 0;
            while (engine.next(rootIter) == 0) {
                Route route;
                const uint32_t code = engine.read(walker, nullptr, nullptr, &route, sizeof route);
                EXPECT_TRUE(code == 0 || code == 15005);
                if (code == 0 && route.vr == 9) ++stayed;
            }
            EXPECT_EQ(stayed, 50U) << "every record that stays comes once";
            engine.releaseObject(kRoute, walker);
        } while (writers != 0);
    });
    EXPECT_EQ(records(), 50U);
}

TEST_P(Threads, MakeAndReleaseObjectsWithoutSharingOne) {
    constexpr int kRounds = 3000;
    together(4, [&](uint32_t thread) {
        std::vector<uint64_t> mine;
        for (int i = 0; i < kRounds; ++i) {
            mine.push_back(object(kUpdate));
            EXPECT_EQ(engine.setField(kRoute, kVersion, mine.back(), &thread, 4), 0U);
            if (mine.size() < 40) continue;
            for (const uint64_t made : mine) {
                EXPECT_EQ(engine.resetObject(kRoute, made, kCount), 0U);
                engine.releaseObject(kRoute, made);
                EXPECT_EQ(engine.write(made), MCAST6_DB_BAD_HANDLE);
            }
            mine.clear();
        }
    });
    EXPECT_LE(engine.objectSlots(), 64U * 15);
}

TEST_P(Threads, AStaleHandleIsStaleInEveryThreadWhileItsSlotIsReused) {
    std::vector<uint64_t> stale;
    for (int i = 0; i < 64; ++i) stale.push_back(object(kWrite));
    for (const uint64_t made : stale) engine.releaseObject(kRoute, made);
    together(4, [&](uint32_t thread) {
        for (int i = 0; i < 3000; ++i) {
            const uint64_t old = stale[static_cast<size_t>(i) % stale.size()];
            if (thread < 2) {
                engine.releaseObject(kRoute, object(kWrite));
            } else {
                EXPECT_EQ(engine.write(old), MCAST6_DB_BAD_HANDLE);
                EXPECT_EQ(engine.next(old), MCAST6_DB_BAD_HANDLE);
                engine.releaseObject(kRoute, old);
            }
        }
    });
}

TEST_P(Threads, AnObjectMayGoFromOneThreadToTheNext) {
    const Route route{.vr = 1, .id = 2};
    uint64_t writer = 0;
    std::thread([&] { writer = object(kWrite); }).join();
    std::thread([&] { EXPECT_EQ(engine.setAllFields(kRoute, writer, &route, sizeof route), 0U); }).join();
    std::thread([&] { EXPECT_EQ(engine.write(writer), 0U); }).join();
    std::thread([&] { engine.releaseObject(kRoute, writer); }).join();
    EXPECT_EQ(engine.write(writer), MCAST6_DB_BAD_HANDLE);
    const uint64_t slots = engine.objectSlots();
    for (int i = 0; i < 200; ++i) {
        const uint64_t made = object(kWrite);
        std::thread([&] { engine.releaseObject(kRoute, made); }).join();
    }
    EXPECT_EQ(engine.objectSlots(), slots) << "slots that others released are used again";
}

INSTANTIATE_TEST_SUITE_P(Stores, Threads, ::testing::ValuesIn(kStores), storeName);

}  // namespace
}  // namespace mcast6::testing
