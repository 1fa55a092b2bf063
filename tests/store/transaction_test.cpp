// The rules of batches one by one. Sequences at random: model_test.cpp.
#include <atomic>
#include <thread>

#include "tests/store/conformance.h"

namespace mcast6::store::test {
namespace {

Bytes odd(uint64_t vr, uint64_t group, uint64_t zone = 0, uint64_t kind = 0) {
    return makeRow(kOdd, {{"vr", vr}, {"group", group}, {"zone", zone}, {"kind", kind}});
}

Bytes refusing(uint64_t group, uint64_t kind = 0) {
    return makeRow(kRefusing, {{"vr", 1}, {"group", group}, {"kind", kind}});
}

const std::byte* primaryOf(uint32_t table, const Bytes& row) {
    static thread_local Bytes key;
    key = keyOf(kTables[table].primary, row);
    return raw(key);
}

uint64_t mask(std::string_view field) { return uint64_t{1} << fieldOf(kOdd, field); }

Answer eraseIn(Transaction& batch, uint32_t table, const Bytes& row) {
    return batch.erase(table, primaryOf(table, row));
}

std::optional<Bytes> getIn(Transaction& batch, uint32_t table, const Bytes& row) {
    Bytes found(kTables[table].recordSize, '\x55');
    const Answer answer = batch.get(table, primaryOf(table, row), raw(found));
    if (answer == Answer::done) return found;
    EXPECT_EQ(answer, Answer::absent);
    return std::nullopt;
}

}  // namespace

TEST_P(StoreConformance, ABatchSeesItsOwnStepsAndTheStoreSeesNoneBeforeTheCommit) {
    ASSERT_EQ(put(kOddTable, odd(1, 1, 3)), Answer::done);
    ASSERT_EQ(put(kOddTable, odd(1, 2, 3)), Answer::done);
    const std::unique_ptr<Transaction> batch = begin();
    EXPECT_EQ(batch->put(kOddTable, raw(odd(1, 1, 4))), Answer::present);
    EXPECT_EQ(eraseIn(*batch, kOddTable, odd(1, 2)), Answer::done);
    EXPECT_EQ(eraseIn(*batch, kOddTable, odd(1, 2)), Answer::absent);
    EXPECT_EQ(batch->put(kOddTable, raw(odd(1, 3, 4))), Answer::done);
    EXPECT_EQ(batch->put(kOddTable, raw(odd(1, 3, 5))), Answer::present);
    EXPECT_EQ(batch->patch(kOddTable, primaryOf(kOddTable, odd(1, 3)), raw(odd(1, 3, 6, 7)), mask("kind")),
              Answer::done);
    EXPECT_EQ(batch->patch(kOddTable, primaryOf(kOddTable, odd(1, 9)), raw(odd(1, 9)), mask("kind")), Answer::absent);

    EXPECT_EQ(getIn(*batch, kOddTable, odd(1, 1)), odd(1, 1, 4));
    EXPECT_EQ(getIn(*batch, kOddTable, odd(1, 2)), std::nullopt);
    EXPECT_EQ(getIn(*batch, kOddTable, odd(1, 3)), odd(1, 3, 5, 7));

    EXPECT_EQ(get(kOddTable, odd(1, 1)), odd(1, 1, 3));
    EXPECT_EQ(get(kOddTable, odd(1, 2)), odd(1, 2, 3));
    EXPECT_EQ(get(kOddTable, odd(1, 3)), std::nullopt);
    EXPECT_EQ(count(kOddTable), 2u);
    EXPECT_EQ(countLike(kOddTable, kByZone, odd(1, 0, 3)), 2u);
    EXPECT_EQ(drain(kOddTable, *openWhole(kOddTable)).size(), 2u);

    EXPECT_EQ(batch->commit(), Answer::done);
    EXPECT_EQ(get(kOddTable, odd(1, 1)), odd(1, 1, 4));
    EXPECT_EQ(get(kOddTable, odd(1, 2)), std::nullopt);
    EXPECT_EQ(get(kOddTable, odd(1, 3)), odd(1, 3, 5, 7));
    EXPECT_EQ(count(kOddTable), 2u);
    EXPECT_EQ(countLike(kOddTable, kByZone, odd(1, 0, 3)), 0u);
    EXPECT_EQ(drain(kOddTable, *openLike(kOddTable, kByZone, odd(1, 0, 4))), std::vector{odd(1, 1, 4)});
    EXPECT_EQ(drain(kOddTable, *openLike(kOddTable, kByKind, odd(0, 0, 0, 7))), std::vector{odd(1, 3, 5, 7)});
    EXPECT_EQ(drain(kOddTable, *openSorted(kOddTable, kByZone)), (std::vector{odd(1, 1, 4), odd(1, 3, 5, 7)}));
}

TEST_P(StoreConformance, ABatchThatIsAbortedOrDroppedChangesNothing) {
    ASSERT_EQ(put(kOddTable, odd(1, 1, 3)), Answer::done);
    for (const bool isAborted : {true, false}) {
        std::unique_ptr<Transaction> batch = begin();
        EXPECT_EQ(eraseIn(*batch, kOddTable, odd(1, 1)), Answer::done);
        EXPECT_EQ(batch->put(kOddTable, raw(odd(1, 2))), Answer::done);
        if (isAborted) {
            batch->abort();
            EXPECT_EQ(batch->put(kOddTable, raw(odd(1, 2))), Answer::failed) << "the batch is over";
            EXPECT_EQ(batch->commit(), Answer::failed);
            EXPECT_STRNE(store->reason(), "");
        }
        batch.reset();
        EXPECT_EQ(count(kOddTable), 1u);
        EXPECT_EQ(get(kOddTable, odd(1, 1)), odd(1, 1, 3));
        EXPECT_EQ(put(kOddTable, odd(1, 1, 3)), Answer::present) << "single steps go on";
    }
}

TEST_P(StoreConformance, TheStepsOfABatchOnOneRecordAddUp) {
    ASSERT_EQ(put(kOddTable, odd(1, 1, 3, 3)), Answer::done);
    ASSERT_EQ(put(kOddTable, odd(1, 2, 3, 3)), Answer::done);
    const std::unique_ptr<Transaction> batch = begin();
    // Written, removed, and so never there.
    EXPECT_EQ(batch->put(kOddTable, raw(odd(1, 8))), Answer::done);
    EXPECT_EQ(eraseIn(*batch, kOddTable, odd(1, 8)), Answer::done);
    EXPECT_EQ(getIn(*batch, kOddTable, odd(1, 8)), std::nullopt);
    // The same, and written once more.
    EXPECT_EQ(batch->put(kOddTable, raw(odd(1, 9, 1))), Answer::done);
    EXPECT_EQ(eraseIn(*batch, kOddTable, odd(1, 9)), Answer::done);
    EXPECT_EQ(batch->put(kOddTable, raw(odd(1, 9, 2))), Answer::done);
    // Removed and written again.
    EXPECT_EQ(eraseIn(*batch, kOddTable, odd(1, 1)), Answer::done);
    EXPECT_EQ(batch->put(kOddTable, raw(odd(1, 1, 5, 6))), Answer::done);
    // Two fields, one after the other, then the first again.
    const Bytes key = keyOf(kOdd.primary, odd(1, 2));
    EXPECT_EQ(batch->patch(kOddTable, raw(key), raw(odd(1, 2, 7, 8)), mask("zone")), Answer::done);
    EXPECT_EQ(batch->patch(kOddTable, raw(key), raw(odd(1, 2, 9, 9)), mask("kind")), Answer::done);
    EXPECT_EQ(batch->patch(kOddTable, raw(key), raw(odd(1, 2, 10, 0)), mask("zone")), Answer::done);
    EXPECT_EQ(getIn(*batch, kOddTable, odd(1, 2)), odd(1, 2, 10, 9));
    EXPECT_EQ(batch->commit(), Answer::done);
    EXPECT_EQ(get(kOddTable, odd(1, 8)), std::nullopt);
    EXPECT_EQ(get(kOddTable, odd(1, 9)), odd(1, 9, 2));
    EXPECT_EQ(get(kOddTable, odd(1, 1)), odd(1, 1, 5, 6));
    EXPECT_EQ(get(kOddTable, odd(1, 2)), odd(1, 2, 10, 9));
    EXPECT_EQ(count(kOddTable), 3u);
    EXPECT_EQ(countLike(kOddTable, kByKind, odd(0, 0, 0, 3)), 0u);
}

TEST_P(StoreConformance, BytesThatNoFieldNamesAreZeroInABatchToo) {
    Bytes row = odd(1, 2);
    row[6] = row[37] = row[39] = '\x77';
    const std::unique_ptr<Transaction> batch = begin();
    EXPECT_EQ(batch->put(kOddTable, raw(row)), Answer::done);
    EXPECT_EQ(getIn(*batch, kOddTable, row), odd(1, 2));
    EXPECT_EQ(batch->commit(), Answer::done);
    EXPECT_EQ(get(kOddTable, row), odd(1, 2));
}

TEST_P(StoreConformance, ABatchKeepsTheLimitsOfItsTables) {
    for (uint64_t group = 0; group < kRefusing.capacity; ++group)
        ASSERT_EQ(put(kRefusingTable, refusing(group)), Answer::done);
    const std::unique_ptr<Transaction> batch = begin();
    EXPECT_EQ(batch->put(kRefusingTable, raw(refusing(1, 7))), Answer::present);
    EXPECT_EQ(getIn(*batch, kRefusingTable, refusing(1)), refusing(1)) << "refused";
    EXPECT_EQ(batch->put(kRefusingTable, raw(refusing(9))), Answer::full);
    EXPECT_EQ(eraseIn(*batch, kRefusingTable, refusing(1)), Answer::done);
    EXPECT_EQ(batch->put(kRefusingTable, raw(refusing(9))), Answer::done);
    EXPECT_EQ(batch->put(kRefusingTable, raw(refusing(8))), Answer::full);
    EXPECT_EQ(eraseIn(*batch, kRefusingTable, refusing(9)), Answer::done);
    EXPECT_EQ(batch->put(kRefusingTable, raw(refusing(1, 7))), Answer::done) << "removed before";
    EXPECT_EQ(batch->put(kRefusingTable, raw(refusing(1, 8))), Answer::present);
    EXPECT_EQ(batch->commit(), Answer::done);
    EXPECT_EQ(get(kRefusingTable, refusing(1)), refusing(1, 7));
    EXPECT_EQ(count(kRefusingTable), kRefusing.capacity);
}

TEST_P(StoreConformance, ABatchGoesOverSeveralTables) {
    const std::unique_ptr<Transaction> batch = begin();
    const Bytes route = makeRow(kTables[kMfibTable], {{"vrfId", 4}, {"groupAddr", 5}});
    EXPECT_EQ(batch->put(kMfibTable, raw(route)), Answer::done);
    EXPECT_EQ(batch->put(kRefusingTable, raw(refusing(1))), Answer::done);
    EXPECT_EQ(batch->put(kOddTable, raw(odd(1, 1))), Answer::done);
    EXPECT_EQ(batch->commit(), Answer::done);
    EXPECT_EQ(get(kMfibTable, route), route);
    EXPECT_EQ(count(kRefusingTable), 1u);
    EXPECT_EQ(count(kOddTable), 1u);
}

TEST_P(StoreConformance, AnEmptyBatchIsCommitted) {
    EXPECT_EQ(begin()->commit(), Answer::done);
    EXPECT_EQ(put(kOddTable, odd(1, 1)), Answer::done);
}

TEST_P(StoreConformance, ALargeBatchMovesManyRecordsOfOneKey) {
    constexpr uint64_t kMany = 300;
    for (uint64_t group = 0; group < kMany; ++group) ASSERT_EQ(put(kOddTable, odd(1, group, group % 3)), Answer::done);
    const std::unique_ptr<Scan> scan = openLike(kOddTable, kByVr, odd(1, 0));
    ASSERT_TRUE(step(kOddTable, *scan).has_value());
    const std::unique_ptr<Transaction> batch = begin();
    for (uint64_t group = 0; group < kMany; ++group) {
        if (group % 2 == 0) {
            const Bytes key = keyOf(kOdd.primary, odd(1, group));
            ASSERT_EQ(batch->patch(kOddTable, raw(key), raw(odd(1, group, 7)), mask("zone")), Answer::done);
        } else {
            ASSERT_EQ(batch->put(kOddTable, raw(odd(1, group, 7))), Answer::present);
        }
        ASSERT_EQ(batch->put(kOddTable, raw(odd(2, group, 7))), Answer::done);
    }
    ASSERT_EQ(batch->commit(), Answer::done);
    for (const uint64_t zone : {0u, 1u, 2u}) EXPECT_EQ(countLike(kOddTable, kByZone, odd(1, 0, zone)), 0u);
    EXPECT_EQ(countLike(kOddTable, kByZone, odd(1, 0, 7)), kMany);
    EXPECT_EQ(drain(kOddTable, *openLike(kOddTable, kByZone, odd(2, 0, 7))).size(), kMany);
    EXPECT_EQ(drain(kOddTable, *scan).size(), kMany - 1) << "records that keep their key are served once";
    EXPECT_EQ(count(kOddTable), 2 * kMany);
}

// A writer that did not wait would find the key absent.
TEST_P(StoreConformance, OtherWritersWaitForABatch) {
    for (uint64_t round = 0; round < 20; ++round) {
        std::unique_ptr<Transaction> batch = begin();
        std::atomic<int> arrived{0};
        std::thread single([&, round] {
            ++arrived;
            EXPECT_EQ(put(kOddTable, odd(1, round, 2)), Answer::present);
        });
        std::thread other([&, round] {
            ++arrived;
            const std::unique_ptr<Transaction> next = begin();
            EXPECT_EQ(next->put(kOddTable, raw(odd(2, round))), Answer::present);
            EXPECT_EQ(next->commit(), Answer::done);
        });
        while (arrived < 2) std::this_thread::yield();
        EXPECT_EQ(batch->put(kOddTable, raw(odd(1, round, 1))), Answer::done);
        EXPECT_EQ(batch->put(kOddTable, raw(odd(2, round))), Answer::done);
        EXPECT_EQ(batch->commit(), Answer::done);
        batch.reset();
        single.join();
        other.join();
        EXPECT_EQ(get(kOddTable, odd(1, round)), odd(1, round, 2));
    }
}

TEST_P(StoreConformance, ReadersSeeABatchWholeOrNotAtAll) {
    constexpr uint64_t kMoving = 40;
    for (uint64_t group = 0; group < kMoving; ++group) ASSERT_EQ(put(kOddTable, odd(1, group, 0)), Answer::done);
    std::atomic<bool> isOver = false;
    std::thread reader([&] {
        while (!isOver) {
            for (const uint64_t zone : {0u, 1u}) {
                const uint64_t found = countLike(kOddTable, kByZone, odd(1, 0, zone));
                ASSERT_TRUE(found == 0 || found == kMoving) << found;
            }
            ASSERT_EQ(count(kOddTable), kMoving);
        }
    });
    for (uint64_t round = 1; round <= 200; ++round) {
        const std::unique_ptr<Transaction> batch = begin();
        for (uint64_t group = 0; group < kMoving; ++group) {
            ASSERT_EQ(batch->put(kOddTable, raw(odd(1, group, round % 2))), Answer::present);
        }
        ASSERT_EQ(batch->put(kOddTable, raw(odd(2, 0))), Answer::done);
        ASSERT_EQ(eraseIn(*batch, kOddTable, odd(2, 0)), Answer::done);
        ASSERT_EQ(batch->commit(), Answer::done);
    }
    isOver = true;
    reader.join();
}

}  // namespace mcast6::store::test
