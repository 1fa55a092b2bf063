#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

#include "mcast6_platform/host.h"

namespace {

struct Record {
    uint32_t key[3];
    uint32_t spare1[2];
    uint32_t version;
    uint32_t spare2[4];
};
static_assert(sizeof(Record) == 40 && offsetof(Record, version) == 20);

Record recordOf(uint32_t first, uint32_t second, uint32_t third, uint32_t version) {
    return {{first, second, third}, {0, 0}, version, {0, 0, 0, 0}};
}

TEST(GlobalVersionTest, whatIsWrittenIsRead) {
    Record written = recordOf(1, 2, 3, 0xFFFFFFFE);
    EXPECT_EQ(0u, MCAST_DB_WriteGlbVersion(&written));
    Record read = recordOf(1, 2, 3, 0);
    EXPECT_EQ(0u, MCAST_DB_ReadGlbVersion(&read));
    EXPECT_EQ(0, std::memcmp(&written, &read, sizeof read));
}

TEST(GlobalVersionTest, anAbsentVersionIsNeitherReadNorUpdated) {
    Record record = recordOf(11, 2, 3, 77);
    EXPECT_EQ(15005u, MCAST_DB_ReadGlbVersion(&record));
    EXPECT_EQ(77u, record.version);
    EXPECT_EQ(15005u, MCAST_DB_UpdateGlbVersion(&record));
    EXPECT_EQ(15005u, MCAST_DB_ReadGlbVersion(&record));
}

TEST(GlobalVersionTest, aPresentVersionIsUpdatedButNotWrittenAgain) {
    Record record = recordOf(21, 2, 3, 5);
    EXPECT_EQ(0u, MCAST_DB_WriteGlbVersion(&record));
    record.version = 6;
    EXPECT_EQ(13044u, MCAST_DB_WriteGlbVersion(&record));
    EXPECT_EQ(0u, MCAST_DB_ReadGlbVersion(&record));
    EXPECT_EQ(5u, record.version);
    record.version = 6;
    EXPECT_EQ(0u, MCAST_DB_UpdateGlbVersion(&record));
    record.version = 0;
    EXPECT_EQ(0u, MCAST_DB_ReadGlbVersion(&record));
    EXPECT_EQ(6u, record.version);
}

TEST(GlobalVersionTest, eachOfTheThreeWordsTells) {
    Record record = recordOf(31, 32, 33, 1);
    EXPECT_EQ(0u, MCAST_DB_WriteGlbVersion(&record));
    for (int word = 0; word < 3; ++word) {
        Record other = record;
        other.key[word] += 100;
        EXPECT_EQ(15005u, MCAST_DB_ReadGlbVersion(&other)) << word;
    }
}

TEST(GlobalVersionTest, nullIsRefused) {
    EXPECT_EQ(120006u, MCAST_DB_ReadGlbVersion(nullptr));
    EXPECT_EQ(120006u, MCAST_DB_UpdateGlbVersion(nullptr));
    EXPECT_EQ(120006u, MCAST_DB_WriteGlbVersion(nullptr));
}

TEST(GlobalVersionTest, oneOfManyThreadsWrites) {
    std::atomic<int> written{0};
    std::atomic<int> refused{0};
    std::vector<std::thread> threads;
    for (uint32_t i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (uint32_t key = 0; key < 200; ++key) {
                Record record = recordOf(key, 41, 42, i);
                const uint32_t code = MCAST_DB_WriteGlbVersion(&record);
                written += code == 0;
                refused += code == 13044;
                EXPECT_EQ(0u, MCAST_DB_UpdateGlbVersion(&record));
                EXPECT_EQ(0u, MCAST_DB_ReadGlbVersion(&record));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(200, written);
    EXPECT_EQ(600, refused);
}

}  // namespace
