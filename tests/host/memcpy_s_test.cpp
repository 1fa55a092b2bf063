#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdint>

#include "mcast6_platform/host.h"

namespace {

using Eight = std::array<uint8_t, 8>;
constexpr Eight kZeros{};
constexpr Eight kSource{1, 2, 3, 4, 5, 6, 7, 8};

TEST(MemcpySTest, copiesWhatFits) {
    Eight destination{9, 9, 9, 9, 9, 9, 9, 9};
    EXPECT_EQ(0, memcpy_s(destination.data(), 8, kSource.data(), 3));
    EXPECT_EQ((Eight{1, 2, 3, 9, 9, 9, 9, 9}), destination);
    EXPECT_EQ(0, memcpy_s(destination.data(), 8, kSource.data(), 8));
    EXPECT_EQ(kSource, destination);
}

TEST(MemcpySTest, tooMuchZeroesTheDestination) {
    Eight destination = kSource;
    EXPECT_EQ(ERANGE, memcpy_s(destination.data(), 7, kSource.data(), 8));
    EXPECT_EQ((Eight{0, 0, 0, 0, 0, 0, 0, 8}), destination);
}

TEST(MemcpySTest, aNullSourceZeroesTheDestination) {
    Eight destination = kSource;
    EXPECT_EQ(EINVAL, memcpy_s(destination.data(), 8, nullptr, 4));
    EXPECT_EQ(kZeros, destination);
}

TEST(MemcpySTest, aNullDestinationIsRefused) { EXPECT_EQ(EINVAL, memcpy_s(nullptr, 8, kSource.data(), 4)); }

TEST(MemcpySTest, overlapZeroesTheDestination) {
    Eight area = kSource;
    EXPECT_EQ(EINVAL, memcpy_s(area.data() + 1, 4, area.data(), 2));
    EXPECT_EQ((Eight{1, 0, 0, 0, 0, 6, 7, 8}), area);
    area = kSource;
    EXPECT_EQ(EINVAL, memcpy_s(area.data(), 2, area.data() + 1, 2));
    EXPECT_EQ((Eight{0, 0, 3, 4, 5, 6, 7, 8}), area);
    area = kSource;
    EXPECT_EQ(EINVAL, memcpy_s(area.data(), 8, area.data(), 8));
    EXPECT_EQ(kZeros, area);
}

TEST(MemcpySTest, neighboursDoNotOverlap) {
    Eight area = kSource;
    EXPECT_EQ(0, memcpy_s(area.data() + 4, 4, area.data(), 4));
    EXPECT_EQ((Eight{1, 2, 3, 4, 1, 2, 3, 4}), area);
    EXPECT_EQ(0, memcpy_s(area.data(), 2, area.data() + 2, 2));
    EXPECT_EQ((Eight{3, 4, 3, 4, 1, 2, 3, 4}), area);
}

TEST(MemcpySTest, nothingCanBeCopied) {
    Eight destination = kSource;
    EXPECT_EQ(0, memcpy_s(destination.data(), 8, kSource.data(), 0));
    EXPECT_EQ(0, memcpy_s(destination.data(), 0, kSource.data(), 0));
    EXPECT_EQ(kSource, destination);
}

TEST(MemcpySTest, anImpossibleSizeTouchesNothing) {
    Eight destination = kSource;
    EXPECT_EQ(ERANGE, memcpy_s(destination.data(), SIZE_MAX, kSource.data(), 4));
    EXPECT_EQ(kSource, destination);
    EXPECT_EQ(ERANGE, memcpy_s(destination.data(), 8, kSource.data(), SIZE_MAX));
    EXPECT_EQ(kZeros, destination);
}

}  // namespace
