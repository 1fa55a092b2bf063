// Global versions and link names, which lie in the store. Their entries are a part of the shared library, not of the
// engine that the tests link, so they are compiled in here.
#include "platform/engine/annotation_entries.cpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <map>
#include <string>
#include <thread>
#include <vector>

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

TEST(GlobalVersionTest, goesWithTheStoreAndFollowsBatches) {
    mcast6_platform_close();
    Record record = recordOf(51, 2, 3, 5);
    EXPECT_EQ(0u, mcast6_platform_begin());
    EXPECT_EQ(0u, MCAST_DB_WriteGlbVersion(&record));
    EXPECT_EQ(13044u, MCAST_DB_WriteGlbVersion(&record));
    EXPECT_EQ(0u, MCAST_DB_ReadGlbVersion(&record)) << "the batch sees its own";
    EXPECT_EQ(0u, mcast6_platform_abort());
    EXPECT_EQ(15005u, MCAST_DB_ReadGlbVersion(&record));
    EXPECT_EQ(0u, MCAST_DB_WriteGlbVersion(&record));
    mcast6_platform_close();
    EXPECT_EQ(15005u, MCAST_DB_ReadGlbVersion(&record)) << "another store";
}

class LinkNames : public testing::Test {
protected:
    void SetUp() override { mcast6_platform_close(); }
    void TearDown() override { mcast6_platform_close(); }

    static std::string nameOf(uint32_t vr, uint32_t layer, uint32_t index) {
        char name[52] = "?";
        const uint32_t code = mcast6_platform_link_name(vr, layer, index, name, sizeof name);
        return code == 0 ? name : std::to_string(code);
    }
    static std::string indexOf(uint32_t vr, uint32_t layer, const char* name) {
        uint32_t index = 0;
        const uint32_t code = mcast6_platform_link_index(vr, layer, name, &index);
        return code == 0 ? "#" + std::to_string(index) : std::to_string(code);
    }
    static std::map<uint32_t, std::string> all(uint32_t vr, uint32_t layer) {
        std::map<uint32_t, std::string> names;
        const auto add = [](void* context, uint32_t index, const char* name) {
            (*static_cast<std::map<uint32_t, std::string>*>(context))[index] = name;
            return 0;
        };
        EXPECT_EQ(0u, mcast6_platform_link_names(vr, layer, add, &names));
        return names;
    }
};

TEST_F(LinkNames, belongToVrAndLayer) {
    EXPECT_EQ(0u, mcast6_platform_set_link_name(0, 3, 7, "m3"));
    EXPECT_EQ(0u, mcast6_platform_set_link_name(1, 3, 7, "uplink"));
    EXPECT_EQ(0u, mcast6_platform_set_link_name(0, 2, 7, "br10"));
    EXPECT_EQ(0u, mcast6_platform_set_link_name(0, 3, 8, "m4"));
    EXPECT_EQ("m3", nameOf(0, 3, 7));
    EXPECT_EQ("uplink", nameOf(1, 3, 7));
    EXPECT_EQ("br10", nameOf(0, 2, 7));
    EXPECT_EQ("15005", nameOf(1, 2, 7));
    EXPECT_EQ("#8", indexOf(0, 3, "m4"));
    EXPECT_EQ("15005", indexOf(1, 3, "m4"));
    EXPECT_EQ("15005", indexOf(0, 3, "m"));
    EXPECT_EQ("15005", indexOf(0, 3, std::string(80, 'x').c_str()));
    EXPECT_THAT(all(0, 3), testing::ElementsAre(testing::Pair(7, "m3"), testing::Pair(8, "m4")));
    EXPECT_THAT(all(5, 3), testing::IsEmpty());
}

TEST_F(LinkNames, areReplacedAndTakenAway) {
    EXPECT_EQ(0u, mcast6_platform_set_link_name(0, 3, 7, "m3"));
    EXPECT_EQ(0u, mcast6_platform_set_link_name(0, 3, 7, "m33"));
    EXPECT_EQ("m33", nameOf(0, 3, 7));
    EXPECT_EQ("15005", indexOf(0, 3, "m3"));
    EXPECT_EQ(0u, mcast6_platform_set_link_name(0, 3, 7, ""));
    EXPECT_EQ(0u, mcast6_platform_set_link_name(0, 3, 7, "")) << "none is no failure";
    EXPECT_EQ("15005", nameOf(0, 3, 7));
}

TEST_F(LinkNames, followBatches) {
    EXPECT_EQ(0u, mcast6_platform_begin());
    EXPECT_EQ(0u, mcast6_platform_set_link_name(0, 3, 7, "m3"));
    EXPECT_EQ("m3", nameOf(0, 3, 7));
    EXPECT_EQ("15005", indexOf(0, 3, "m3")) << "not committed";
    EXPECT_EQ(0u, mcast6_platform_commit());
    EXPECT_EQ("#7", indexOf(0, 3, "m3"));
}

TEST_F(LinkNames, haveLimits) {
    const std::string longest(51, 'n');
    EXPECT_EQ(0u, mcast6_platform_set_link_name(0, 3, 7, longest.c_str()));
    EXPECT_EQ(longest, nameOf(0, 3, 7));
    EXPECT_EQ("#7", indexOf(0, 3, longest.c_str()));
    EXPECT_EQ(120003u, mcast6_platform_set_link_name(0, 3, 8, (longest + "n").c_str()));
    EXPECT_EQ("15005", nameOf(0, 3, 8));
    char small[51] = "untouched";
    EXPECT_EQ(120003u, mcast6_platform_link_name(0, 3, 7, small, sizeof small));
    EXPECT_STREQ("untouched", small);
    uint32_t index = 0;
    for (const uint32_t layer : {0u, 1u, 4u}) {
        EXPECT_EQ(120006u, mcast6_platform_set_link_name(0, layer, 7, "m3"));
        EXPECT_EQ(120006u, mcast6_platform_link_name(0, layer, 7, small, sizeof small));
        EXPECT_EQ(120006u, mcast6_platform_link_index(0, layer, "m3", &index));
    }
    EXPECT_EQ(120006u, mcast6_platform_set_link_name(0, 3, 7, nullptr));
    EXPECT_EQ(120006u, mcast6_platform_link_name(0, 3, 7, nullptr, 52));
    EXPECT_EQ(120006u, mcast6_platform_link_index(0, 3, nullptr, &index));
    EXPECT_EQ(120006u, mcast6_platform_link_index(0, 3, "m3", nullptr));
    EXPECT_EQ(120006u, mcast6_platform_link_names(0, 3, nullptr, nullptr));
}

TEST_F(LinkNames, areVisitedUntilTheVisitorHasEnough) {
    for (uint32_t index = 1; index <= 5; ++index) {
        EXPECT_EQ(0u, mcast6_platform_set_link_name(0, 3, index, ("m" + std::to_string(index)).c_str()));
    }
    int visited = 0;
    const auto count = [](void* context, uint32_t, const char*) { return ++*static_cast<int*>(context) == 2 ? 1 : 0; };
    EXPECT_EQ(0u, mcast6_platform_link_names(0, 3, count, &visited));
    EXPECT_EQ(2, visited);
}

}  // namespace
