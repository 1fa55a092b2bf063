// The rules of the store interface one by one. Sequences at random: model_test.cpp. Threads: threads_test.cpp.
#include "tests/store/conformance.h"

#include <algorithm>

namespace mcast6::store::test {
namespace {

Bytes odd(uint64_t vr, uint64_t group, uint64_t zone = 0, uint64_t kind = 0, uint64_t stamp = 0) {
    return makeRow(kOdd, {{"vr", vr}, {"group", group}, {"zone", zone}, {"kind", kind}, {"stamp", stamp}});
}

}  // namespace

TEST_P(StoreConformance, AnEmptyTableHasNothing) {
    EXPECT_EQ(count(kOddTable), 0u);
    EXPECT_EQ(countLike(kOddTable, kByVr, odd(0, 0)), 0u);
    EXPECT_EQ(get(kOddTable, odd(0, 0)), std::nullopt);
    EXPECT_EQ(erase(kOddTable, odd(0, 0)), Answer::absent);
    EXPECT_EQ(patch(kOddTable, odd(0, 0), {"stamp"}), Answer::absent);
    EXPECT_EQ(drain(kOddTable, *openWhole(kOddTable)).size(), 0u);
    EXPECT_EQ(drain(kOddTable, *openLike(kOddTable, kByVr, odd(0, 0))).size(), 0u);
    EXPECT_EQ(drain(kOddTable, *openSorted(kOddTable, kByZone)).size(), 0u);
}

TEST_P(StoreConformance, APutRecordIsRead) {
    const Bytes row = odd(1, 2, 3, 4, 5);
    EXPECT_EQ(put(kOddTable, row), Answer::done);
    EXPECT_EQ(get(kOddTable, row), row);
    EXPECT_EQ(get(kOddTable, odd(1, 3)), std::nullopt);
    EXPECT_EQ(get(kOddTable, odd(2, 2)), std::nullopt);
    EXPECT_EQ(count(kOddTable), 1u);
    EXPECT_EQ(count(kMfibTable), 0u);
    EXPECT_EQ(drain(kOddTable, *openWhole(kOddTable)), std::vector{row});
}

TEST_P(StoreConformance, BytesThatNoFieldNamesAreStoredAsZero) {
    Bytes row = odd(1, 2);
    row[6] = row[37] = row[39] = '\x77';
    EXPECT_EQ(put(kOddTable, row), Answer::done);
    EXPECT_EQ(get(kOddTable, row), odd(1, 2));
    row[7] = 9;
    EXPECT_EQ(put(kOddTable, row), Answer::present);
    EXPECT_EQ(get(kOddTable, row), odd(1, 2, 0, 9));
}

TEST_P(StoreConformance, APutOfAPresentKeyReplaces) {
    ASSERT_EQ(put(kOddTable, odd(1, 2, 3, 4, 5)), Answer::done);
    EXPECT_EQ(put(kOddTable, odd(1, 2, 6, 4, 7)), Answer::present);
    EXPECT_EQ(get(kOddTable, odd(1, 2)), odd(1, 2, 6, 4, 7));
    EXPECT_EQ(count(kOddTable), 1u);
    EXPECT_EQ(countLike(kOddTable, kByZone, odd(1, 2, 3)), 0u);
    EXPECT_EQ(countLike(kOddTable, kByZone, odd(1, 2, 6)), 1u);
    EXPECT_EQ(countLike(kOddTable, kByKind, odd(0, 0, 0, 4)), 1u);
}

TEST_P(StoreConformance, APutOfAPresentKeyIsRefusedWhereTheTableSaysSo) {
    const Bytes row = makeRow(kRefusing, {{"vr", 1}, {"group", 2}, {"kind", 3}});
    ASSERT_EQ(put(kRefusingTable, row), Answer::done);
    EXPECT_EQ(put(kRefusingTable, makeRow(kRefusing, {{"vr", 1}, {"group", 2}, {"kind", 4}})), Answer::present);
    EXPECT_EQ(get(kRefusingTable, row), row);
    EXPECT_EQ(countLike(kRefusingTable, kByKind, row), 1u);
}

TEST_P(StoreConformance, AFullTableTakesNoNewKey) {
    const auto row = [](uint64_t group) { return makeRow(kRefusing, {{"vr", 1}, {"group", group}}); };
    for (uint64_t group = 0; group < kRefusing.capacity; ++group)
        ASSERT_EQ(put(kRefusingTable, row(group)), Answer::done);
    EXPECT_EQ(put(kRefusingTable, row(9)), Answer::full);
    EXPECT_EQ(put(kRefusingTable, row(1)), Answer::present);
    EXPECT_EQ(get(kRefusingTable, row(9)), std::nullopt);
    EXPECT_EQ(countLike(kRefusingTable, kByVr, row(9)), kRefusing.capacity);
    EXPECT_EQ(erase(kRefusingTable, row(1)), Answer::done);
    EXPECT_EQ(put(kRefusingTable, row(9)), Answer::done);
    EXPECT_EQ(count(kRefusingTable), kRefusing.capacity);
}

TEST_P(StoreConformance, AnErasedRecordIsGoneFromEveryIndex) {
    ASSERT_EQ(put(kOddTable, odd(1, 2, 3, 4, 5)), Answer::done);
    ASSERT_EQ(put(kOddTable, odd(1, 3, 3, 4, 5)), Answer::done);
    EXPECT_EQ(erase(kOddTable, odd(1, 2)), Answer::done);
    EXPECT_EQ(erase(kOddTable, odd(1, 2)), Answer::absent);
    EXPECT_EQ(get(kOddTable, odd(1, 2)), std::nullopt);
    EXPECT_EQ(count(kOddTable), 1u);
    for (uint32_t index = 0; index < std::size(kOddIndexes); ++index) {
        EXPECT_EQ(countLike(kOddTable, index, odd(1, 3, 3, 4, 5)), 1u) << index;
        EXPECT_EQ(drain(kOddTable, *openLike(kOddTable, index, odd(1, 3, 3, 4, 5))), std::vector{odd(1, 3, 3, 4, 5)});
    }
    EXPECT_EQ(countLike(kOddTable, kByGroup, odd(1, 2, 3)), 0u);
}

TEST_P(StoreConformance, APatchChangesTheNamedFieldsOnly) {
    ASSERT_EQ(put(kOddTable, odd(1, 2, 3, 4, 5)), Answer::done);
    EXPECT_EQ(patch(kOddTable, odd(1, 2, 6, 7, 8), {"kind"}), Answer::done);
    EXPECT_EQ(get(kOddTable, odd(1, 2)), odd(1, 2, 3, 7, 5));
    EXPECT_EQ(countLike(kOddTable, kByKind, odd(0, 0, 0, 4)), 0u);
    EXPECT_EQ(countLike(kOddTable, kByKind, odd(0, 0, 0, 7)), 1u);
    EXPECT_EQ(countLike(kOddTable, kByZone, odd(1, 2, 3)), 1u);
    Bytes noted = odd(1, 2);
    setField(kOdd, noted, "note", 0x1234);
    EXPECT_EQ(patch(kOddTable, noted, {"note"}), Answer::done);
    setField(kOdd, noted = odd(1, 2, 3, 7, 5), "note", 0x1234);
    EXPECT_EQ(get(kOddTable, odd(1, 2)), noted);
    EXPECT_EQ(patch(kOddTable, odd(1, 2, 9, 9, 9), {}), Answer::done);
    EXPECT_EQ(get(kOddTable, odd(1, 2)), noted);
}

TEST_P(StoreConformance, AKeyMayHoldLowBytesPaddingAndConstants) {
    // Of the stamp the low two bytes count.
    ASSERT_EQ(put(kOddTable, odd(1, 2, 0, 0, 0x10005)), Answer::done);
    ASSERT_EQ(put(kOddTable, odd(1, 3, 0, 0, 0x20005)), Answer::done);
    ASSERT_EQ(put(kOddTable, odd(1, 4, 0, 0, 0x20006)), Answer::done);
    const Bytes key("\x01\0\0\0\0\0\0\0\x05\0\x07\0", 12);
    uint64_t records = 0;
    ASSERT_EQ(store->countByKey(kOddTable, kByStamp, raw(key), records), Answer::done);
    EXPECT_EQ(records, 2u);
    EXPECT_EQ(drain(kOddTable, *open(kOddTable, {ScanRange::Order::index, kByStamp, raw(key)})).size(), 2u);
    // No record has a key with another constant or padding.
    for (const size_t at : {size_t{4}, size_t{10}, size_t{11}}) {
        Bytes other = key;
        other[at] = '\x01';
        ASSERT_EQ(store->countByKey(kOddTable, kByStamp, raw(other), records), Answer::done);
        EXPECT_EQ(records, 0u) << at;
        EXPECT_EQ(drain(kOddTable, *open(kOddTable, {ScanRange::Order::index, kByStamp, raw(other)})).size(), 0u);
    }
    const Bytes row = makeRow(kRefusing, {{"vr", 1}, {"group", 2}});
    ASSERT_EQ(put(kRefusingTable, row), Answer::done);
    Bytes primary = keyOf(kRefusing.primary, row);
    EXPECT_EQ(primary.substr(20), Bytes("\x0B\x0A\0\0", 4));
    primary[20] = 0;
    Bytes found = row;
    EXPECT_EQ(store->get(kRefusingTable, raw(primary), raw(found)), Answer::absent);
    EXPECT_EQ(store->patch(kRefusingTable, raw(primary), raw(row), 1 << 3), Answer::absent);
    EXPECT_EQ(store->erase(kRefusingTable, raw(primary)), Answer::absent);
}

TEST_P(StoreConformance, ASortedWalkComparesScalarsAsNumbersAndBytesOneByOne) {
    // 0x0100 is above 0x00FF as a number, below it by its bytes in memory.
    for (const uint64_t zone : {0x0100u, 0x00FFu, 0x0001u, 0xFF00u, 0x00FEu}) {
        ASSERT_EQ(put(kOddTable, odd(0x0100, 0x10000 - zone, zone)), Answer::done);
        ASSERT_EQ(put(kOddTable, odd(0x00FF, 0x10000 - zone, zone)), Answer::done);
    }
    std::vector<std::pair<uint64_t, uint64_t>> order;
    for (const Bytes& row : drain(kOddTable, *openSorted(kOddTable, kByZone))) {
        uint16_t zone;
        uint32_t vr;
        std::memcpy(&zone, row.data() + 4, sizeof zone);
        std::memcpy(&vr, row.data(), sizeof vr);
        order.emplace_back(zone, vr);
    }
    EXPECT_EQ(order.size(), 10u);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    std::vector<Bytes> groups;
    for (const Bytes& row : drain(kOddTable, *openSorted(kOddTable, kByGroup))) groups.push_back(row.substr(8, 16));
    EXPECT_EQ(groups.size(), 10u);
    EXPECT_TRUE(std::is_sorted(groups.begin(), groups.end(),
                               [](const Bytes& a, const Bytes& b) { return std::memcmp(a.data(), b.data(), 16) < 0; }));
}

TEST_P(StoreConformance, ASortedScanMayKeepToOneKey) {
    for (uint64_t group = 0; group < 5; ++group) ASSERT_EQ(put(kOddTable, odd(1, group, group / 2)), Answer::done);
    const Bytes key = keyOf(kOddIndexes[kByZone], odd(1, 0, 1));
    const std::unique_ptr<Scan> scan = open(kOddTable, {ScanRange::Order::sorted, kByZone, raw(key)});
    EXPECT_EQ(drain(kOddTable, *scan).size(), 2u);
    EXPECT_EQ(scan->restart(nullptr), Answer::done);
    EXPECT_EQ(drain(kOddTable, *scan).size(), 5u);
    EXPECT_EQ(scan->restart(raw(key)), Answer::done);
    EXPECT_EQ(drain(kOddTable, *scan).size(), 2u);
}

TEST_P(StoreConformance, AScanStaysAtItsEndUntilItIsRestarted) {
    ASSERT_EQ(put(kOddTable, odd(1, 1)), Answer::done);
    const std::unique_ptr<Scan> scans[] = {openWhole(kOddTable), openLike(kOddTable, kByVr, odd(1, 1)),
                                           openSorted(kOddTable, kByZone)};
    for (const std::unique_ptr<Scan>& scan : scans) EXPECT_EQ(drain(kOddTable, *scan).size(), 1u);
    ASSERT_EQ(put(kOddTable, odd(1, 2)), Answer::done);
    Bytes row = odd(0, 0);
    const Bytes key = keyOf(kOddIndexes[kByVr], odd(1, 1));
    for (const std::unique_ptr<Scan>& scan : scans) {
        EXPECT_EQ(scan->next(), Answer::end);
        EXPECT_EQ(scan->read(raw(row)), Answer::absent);
        EXPECT_EQ(scan->restart(scan == scans[1] ? raw(key) : nullptr), Answer::done);
        EXPECT_EQ(scan->read(raw(row)), Answer::absent);
        EXPECT_EQ(drain(kOddTable, *scan).size(), 2u);
    }
}

TEST_P(StoreConformance, AnIndexScanWithoutKeyIsEmptyUntilItGetsOne) {
    ASSERT_EQ(put(kOddTable, odd(1, 1)), Answer::done);
    ASSERT_EQ(put(kOddTable, odd(2, 1)), Answer::done);
    const std::unique_ptr<Scan> scan = open(kOddTable, {ScanRange::Order::index, kByVr, nullptr});
    EXPECT_EQ(scan->next(), Answer::end);
    const Bytes key = keyOf(kOddIndexes[kByVr], odd(2, 0));
    EXPECT_EQ(scan->restart(raw(key)), Answer::done);
    EXPECT_EQ(drain(kOddTable, *scan), std::vector{odd(2, 1)});
}

TEST_P(StoreConformance, ReadTellsTheRecordAsItIsNow) {
    for (uint64_t group = 0; group < 3; ++group) ASSERT_EQ(put(kOddTable, odd(1, group)), Answer::done);
    const std::unique_ptr<Scan> scans[] = {openWhole(kOddTable), openLike(kOddTable, kByVr, odd(1, 0)),
                                           openSorted(kOddTable, kByZone)};
    Bytes now = odd(0, 0);
    for (const std::unique_ptr<Scan>& scan : scans) {
        EXPECT_EQ(scan->read(raw(now)), Answer::absent);
        Bytes row = step(kOddTable, *scan).value();
        setField(kOdd, row, "stamp", 77);
        EXPECT_EQ(patch(kOddTable, row, {"stamp"}), Answer::done);
        EXPECT_EQ(scan->read(raw(now)), Answer::done);
        EXPECT_EQ(now, row);
        EXPECT_EQ(erase(kOddTable, row), Answer::done);
        EXPECT_EQ(scan->read(raw(now)), Answer::absent);
        // Another record may take the memory of this one, but not its place under the scan.
        EXPECT_EQ(put(kOddTable, odd(1, 100)), Answer::done);
        EXPECT_EQ(scan->read(raw(now)), Answer::absent);
        EXPECT_EQ(erase(kOddTable, odd(1, 100)), Answer::done);
        setField(kOdd, row, "stamp", 0);
        EXPECT_EQ(put(kOddTable, row), Answer::done);
    }
}

TEST_P(StoreConformance, EveryRecordMayBeErasedUnderTheScanThatFindsIt) {
    for (const int order : {0, 1, 2}) {
        for (uint64_t group = 0; group < 100; ++group)
            ASSERT_EQ(put(kOddTable, odd(1, group, group % 7)), Answer::done);
        const std::unique_ptr<Scan> scan = order == 0   ? openWhole(kOddTable)
                                           : order == 1 ? openLike(kOddTable, kByVr, odd(1, 0))
                                                        : openSorted(kOddTable, kByZone);
        size_t found = 0;
        while (const std::optional<Bytes> row = step(kOddTable, *scan)) {
            ++found;
            EXPECT_EQ(erase(kOddTable, *row), Answer::done);
        }
        EXPECT_EQ(found, 100u);
        EXPECT_EQ(count(kOddTable), 0u);
    }
}

TEST_P(StoreConformance, AScanOutlivesTheRecordsOfItsKey) {
    for (uint64_t group = 0; group < 4; ++group) ASSERT_EQ(put(kOddTable, odd(1, group)), Answer::done);
    const std::unique_ptr<Scan> scan = openLike(kOddTable, kByVr, odd(1, 0));
    ASSERT_TRUE(step(kOddTable, *scan).has_value());
    for (uint64_t group = 0; group < 4; ++group) ASSERT_EQ(erase(kOddTable, odd(1, group)), Answer::done);
    EXPECT_EQ(countLike(kOddTable, kByVr, odd(1, 0)), 0u);
    EXPECT_EQ(scan->next(), Answer::end);
    for (uint64_t group = 0; group < 4; ++group) ASSERT_EQ(put(kOddTable, odd(1, group)), Answer::done);
    EXPECT_EQ(drain(kOddTable, *openLike(kOddTable, kByVr, odd(1, 0))).size(), 4u);
}

TEST_P(StoreConformance, ARecordThatStaysIsFoundOnceWhileOthersComeAndGo) {
    // The lasting records are the even ones; the odd ones go and come while each scan is under way.
    for (uint64_t group = 0; group < 200; ++group) ASSERT_EQ(put(kOddTable, odd(1, group, group % 3)), Answer::done);
    const std::unique_ptr<Scan> scans[] = {openWhole(kOddTable), openLike(kOddTable, kByVr, odd(1, 0)),
                                           openSorted(kOddTable, kByZone)};
    for (const std::unique_ptr<Scan>& scan : scans) {
        std::map<Bytes, int> found;
        uint64_t other = 1;
        while (const std::optional<Bytes> row = step(kOddTable, *scan)) {
            ++found[*row];
            ASSERT_EQ(erase(kOddTable, odd(1, other)), Answer::done);
            if (found.size() % 3 != 0) other = (other + 38) % 200;
            const Answer again = put(kOddTable, odd(1, other, other % 3));
            ASSERT_TRUE(again == Answer::done || again == Answer::present);
        }
        for (uint64_t group = 0; group < 200; group += 2) EXPECT_EQ(found[odd(1, group, group % 3)], 1) << group;
        for (uint64_t group = 1; group < 200; group += 2) (void)put(kOddTable, odd(1, group, group % 3));
    }
}

TEST_P(StoreConformance, APatchOfAnIndexedFieldMovesTheRecordUnderAScan) {
    for (uint64_t group = 0; group < 10; ++group) ASSERT_EQ(put(kOddTable, odd(1, group, 0, 1)), Answer::done);
    const std::unique_ptr<Scan> scan = openLike(kOddTable, kByKind, odd(0, 0, 0, 1));
    size_t found = 0;
    while (const std::optional<Bytes> row = step(kOddTable, *scan)) {
        ++found;
        Bytes changed = *row;
        setField(kOdd, changed, "kind", 2);
        EXPECT_EQ(patch(kOddTable, changed, {"kind"}), Answer::done);
        Bytes now = odd(0, 0);
        EXPECT_EQ(scan->read(raw(now)), Answer::done);
        EXPECT_EQ(now, changed);
    }
    EXPECT_EQ(found, 10u);
    EXPECT_EQ(countLike(kOddTable, kByKind, odd(0, 0, 0, 1)), 0u);
    EXPECT_EQ(countLike(kOddTable, kByKind, odd(0, 0, 0, 2)), 10u);
    EXPECT_EQ(countLike(kOddTable, kByVr, odd(1, 0)), 10u);
}

TEST_P(StoreConformance, TheForwardingTableHasAllItsIndexes) {
    const schema::Table& mfib = kTables[kMfibTable];
    const auto entry = [&](uint64_t group, uint64_t source) {
        return makeRow(mfib, {{"vrfId", 1}, {"groupAddr", group}, {"sourceAddr", source}, {"inIfIndex", source % 3}});
    };
    for (uint64_t group = 0; group < 20; ++group) {
        for (uint64_t source = 0; source < 30; ++source) {
            ASSERT_EQ(put(kMfibTable, entry(group, source)), Answer::done);
        }
    }
    const Bytes row = entry(3, 4);
    const uint64_t expected[] = {200, 600, 20, 30, 20, 10, 200, 600, 600, 30, 20};
    static_assert(std::size(expected) == std::size(schema::l3mc6_mfib::kIndexes));
    for (uint32_t index = 0; index < std::size(expected); ++index) {
        EXPECT_EQ(countLike(kMfibTable, index, row), expected[index]) << index;
        EXPECT_EQ(drain(kMfibTable, *openLike(kMfibTable, index, row)).size(), expected[index]) << index;
    }
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(StoreConformance);

}  // namespace mcast6::store::test
