#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
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

// Addresses, which are 16 bytes, are copied in a way of their own; so every length goes through the same checks.
class MemcpySLengths : public ::testing::TestWithParam<size_t> {
protected:
    using Area = std::array<uint8_t, 80>;
    static constexpr size_t kBefore = 20;  // where the destination begins

    static Area numbered() {
        Area bytes{};
        for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i + 1);
        return bytes;
    }
    static Area zeroedFrom(size_t begin, size_t count) {
        Area bytes = numbered();
        std::fill_n(bytes.begin() + static_cast<ptrdiff_t>(begin), count, uint8_t{0});
        return bytes;
    }

    const size_t length = GetParam();
    Area area = numbered();
};

TEST_P(MemcpySLengths, areCopiedToTheByte) {
    const Area source = zeroedFrom(0, 80);
    Area expected = numbered();
    std::copy_n(source.begin(), length, expected.begin() + kBefore);
    EXPECT_EQ(0, memcpy_s(area.data() + kBefore, length, source.data(), length));
    EXPECT_EQ(expected, area);
    EXPECT_EQ(0, memcpy_s(area.data() + kBefore, length + 1, numbered().data() + kBefore, length));
    EXPECT_EQ(numbered(), area);
}

TEST_P(MemcpySLengths, tooMuchOrNoSourceZeroesTheDestination) {
    const Area source{};
    EXPECT_EQ(ERANGE, memcpy_s(area.data() + kBefore, length - 1, numbered().data(), length));
    EXPECT_EQ(zeroedFrom(kBefore, length - 1), area);
    area = numbered();
    EXPECT_EQ(EINVAL, memcpy_s(area.data() + kBefore, length + 2, nullptr, length));
    EXPECT_EQ(zeroedFrom(kBefore, length + 2), area);
    area = numbered();
    EXPECT_EQ(EINVAL, memcpy_s(nullptr, length, source.data(), length));
    EXPECT_EQ(ERANGE, memcpy_s(area.data(), SIZE_MAX, source.data(), length));
    EXPECT_EQ(numbered(), area);
}

TEST_P(MemcpySLengths, overlapAtAnyDistanceZeroesTheDestinationAndNeighboursAreCopied) {
    for (size_t distance = 0; distance <= length; ++distance) {
        SCOPED_TRACE(distance);
        const bool overlaps = distance < length;
        for (const size_t from : {kBefore - distance, kBefore + distance}) {
            area = numbered();
            Area expected = zeroedFrom(kBefore, length);
            if (!overlaps) std::copy_n(area.begin() + static_cast<ptrdiff_t>(from), length, expected.begin() + kBefore);
            EXPECT_EQ(overlaps ? EINVAL : 0, memcpy_s(area.data() + kBefore, length, area.data() + from, length));
            EXPECT_EQ(expected, area);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Around, MemcpySLengths, ::testing::Values(8, 15, 16, 17));

}  // namespace
