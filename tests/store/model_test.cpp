// Random sequences of operations compared with a plain map, with scans open all the while.
#include <algorithm>
#include <random>

#include "tests/store/conformance.h"

namespace mcast6::store::test {
namespace {

constexpr uint32_t kWhole = UINT32_MAX;  // in place of an index: a scan of the table

// An open scan and what the rules let it serve.
struct Watched {
    uint32_t index;
    bool isSorted;
    Bytes key;  // of an index scan
    std::unique_ptr<Scan> scan;
    std::map<Bytes, int> lasting;  // primary keys of the records that have stayed, and how often each was served
    std::map<Bytes, int> places;   // of all others: how many places each took
    std::map<Bytes, int> served;
    Bytes lastKey;
    bool isAtEnd = false;
};

class Model {
public:
    Model(Store& tested, uint32_t number, uint32_t seed) : store(tested), tableNumber(number), random(seed) {}

    void step() {
        const uint32_t choice = pick(100);
        if (choice < 30) return put();
        if (choice < 45) return patch();
        if (choice < 60) return erase();
        if (choice < 64) return open();
        if (choice < 92) return advance();
        if (choice < 94) return close();
        if (choice < 96) return read();
        if (choice < 98) return batch();
        return check();
    }

    void finish() {
        while (!watched.empty()) {
            while (!watched.back().isAtEnd) next(watched.back());
            watched.pop_back();
        }
        check();
    }

private:
    const schema::Table& table() const { return kTables[tableNumber]; }
    uint32_t pick(uint32_t below) { return std::uniform_int_distribution<uint32_t>(0, below - 1)(random); }
    Bytes primaryKey(const Bytes& row) const { return keyOf(table().primary, row); }

    // Few values for each field, so that keys meet.
    Bytes randomRow() {
        return makeRow(table(), {{"vr", pick(2)},
                                 {"group", pick(60)},
                                 {"zone", pick(4) * 0x0080},
                                 {"kind", pick(3)},
                                 {"stamp", pick(5) * 0x8001},
                                 {"note", pick(1000)}});
    }

    bool concerns(const Watched& scan, const Bytes& row) const {
        return scan.index == kWhole || scan.isSorted || keyOf(table().indexes[scan.index], row) == scan.key;
    }

    bool isSamePlace(const Watched& scan, const Bytes& before, const Bytes& after) const {
        if (scan.index == kWhole) return true;
        const schema::Key& key = table().indexes[scan.index];
        return keyOf(key, before) == keyOf(key, after);
    }

    // Notes in all scans that a record came (before null), went (after null) or changed.
    void changed(const Bytes* before, const Bytes* after) {
        const Bytes key = primaryKey(before != nullptr ? *before : *after);
        for (Watched& scan : watched) {
            if (before != nullptr && after != nullptr && isSamePlace(scan, *before, *after)) continue;
            if (before != nullptr && concerns(scan, *before)) {
                if (scan.lasting.erase(key) > 0) ++scan.places[key];
            }
            if (after != nullptr && concerns(scan, *after)) ++scan.places[key];
        }
    }

    void put() {
        const Bytes row = randomRow();
        const auto found = records.find(primaryKey(row));
        const Answer answer = store.put(tableNumber, raw(row));
        if (found == records.end()) {
            if (table().capacity != 0 && records.size() >= table().capacity) {
                ASSERT_EQ(answer, Answer::full);
                return;
            }
            ASSERT_EQ(answer, Answer::done);
            records.emplace(primaryKey(row), row);
            return changed(nullptr, &row);
        }
        ASSERT_EQ(answer, Answer::present);
        if (table().presentWrite == schema::PresentWrite::refused) return;
        const Bytes before = std::exchange(found->second, row);
        changed(&before, &row);
    }

    void patch() {
        const Bytes row = randomRow();
        uint64_t fields = 0;
        for (const std::string_view name : {"zone", "kind", "stamp", "note"}) {
            if (pick(2) == 0) fields |= uint64_t{1} << fieldOf(table(), name);
        }
        const auto found = records.find(primaryKey(row));
        const Answer answer = store.patch(tableNumber, raw(primaryKey(row)), raw(row), fields);
        ASSERT_EQ(answer, found == records.end() ? Answer::absent : Answer::done);
        if (found == records.end()) return;
        const Bytes before = found->second;
        for (size_t i = 0; i < table().fields.size(); ++i) {
            const schema::Field& field = table().fields[i];
            if ((fields >> i & 1) != 0)
                found->second.replace(field.offset, field.width, row, field.offset, field.width);
        }
        changed(&before, &found->second);
    }

    void erase() {
        const Bytes key = primaryKey(randomRow());
        const auto found = records.find(key);
        ASSERT_EQ(store.erase(tableNumber, raw(key)), found == records.end() ? Answer::absent : Answer::done);
        if (found == records.end()) return;
        const Bytes before = found->second;
        records.erase(found);
        changed(&before, nullptr);
    }

    void open() {
        if (watched.size() >= 8) return;
        Watched scan{};
        const auto indexCount = static_cast<uint32_t>(table().indexes.size());
        scan.index = pick(indexCount + 1);
        if (scan.index == indexCount) scan.index = kWhole;
        ScanRange range{ScanRange::Order::table, 0, nullptr};
        if (scan.index != kWhole) {
            const schema::Key& key = table().indexes[scan.index];
            scan.isSorted = key.kind() == schema::KeyKind::sorted && pick(3) > 0;
            if (!scan.isSorted) scan.key = keyOf(key, randomRow());
            range = {scan.isSorted ? ScanRange::Order::sorted : ScanRange::Order::index, scan.index,
                     scan.isSorted ? nullptr : raw(scan.key)};
        }
        ASSERT_EQ(store.open(tableNumber, range, scan.scan), Answer::done);
        for (const auto& [key, row] : records) {
            if (concerns(scan, row)) scan.lasting[key] = 0;
        }
        watched.push_back(std::move(scan));
    }

    void advance() {
        if (watched.empty()) return;
        Watched& scan = watched[pick(static_cast<uint32_t>(watched.size()))];
        for (uint32_t steps = pick(6) + 1; steps > 0; --steps) next(scan);
    }

    void next(Watched& scan) {
        const Answer answer = scan.scan->next();
        if (answer == Answer::end) {
            scan.isAtEnd = true;
            for (const auto& [key, times] : scan.lasting) EXPECT_EQ(times, 1) << "a lasting record is served once";
            return;
        }
        ASSERT_EQ(answer, Answer::done);
        ASSERT_FALSE(scan.isAtEnd);
        Bytes row(table().recordSize, '\0');
        ASSERT_EQ(scan.scan->read(raw(row)), Answer::done);
        const Bytes key = primaryKey(row);
        ASSERT_EQ(records.count(key), 1u);
        ASSERT_EQ(records[key], row);
        ASSERT_TRUE(concerns(scan, row));
        const int served = ++scan.served[key];
        const auto lasting = scan.lasting.find(key);
        if (lasting != scan.lasting.end()) {
            ASSERT_EQ(++lasting->second, 1);
        } else {
            ASSERT_LE(served, scan.places[key]);
        }
        if (!scan.isSorted) return;
        const schema::Key& order = table().indexes[scan.index];
        const Bytes sortKey = sortable(order, keyOf(order, row));
        ASSERT_LE(scan.lastKey, sortKey);
        scan.lastKey = sortKey;
    }

    // Some steps on a copy of the model, which then takes its place or is dropped.
    void batch() {
        std::unique_ptr<Transaction> steps;
        ASSERT_EQ(store.begin(steps), Answer::done);
        std::map<Bytes, Bytes> staged = records;
        for (uint32_t left = pick(30); left > 0; --left) batchStep(*steps, staged);
        if (pick(4) == 0) {
            steps->abort();
            return;
        }
        ASSERT_EQ(steps->commit(), Answer::done);
        const std::map<Bytes, Bytes> before = std::exchange(records, staged);
        for (const auto& [key, row] : before) {
            const auto now = records.find(key);
            if (now == records.end()) {
                changed(&row, nullptr);
            } else if (now->second != row) {
                changed(&row, &now->second);
            }
        }
        for (const auto& [key, row] : records) {
            if (before.count(key) == 0) changed(nullptr, &row);
        }
    }

    void batchStep(Transaction& steps, std::map<Bytes, Bytes>& staged) {
        const Bytes row = randomRow();
        const auto found = staged.find(primaryKey(row));
        const bool isPresent = found != staged.end();
        const bool refuses = table().presentWrite == schema::PresentWrite::refused;
        const bool isFull = table().capacity != 0 && staged.size() >= table().capacity;
        Bytes seen(table().recordSize, '\0');
        switch (pick(4)) {
            case 0:
                ASSERT_EQ(steps.put(tableNumber, raw(row)), isPresent ? Answer::present
                                                            : isFull  ? Answer::full
                                                                      : Answer::done);
                if (isPresent ? !refuses : !isFull) staged[primaryKey(row)] = row;
                break;
            case 1: {
                const uint64_t fields = uint64_t{1} << fieldOf(table(), "zone") | uint64_t{1}
                                                                                      << fieldOf(table(), "note");
                ASSERT_EQ(steps.patch(tableNumber, raw(primaryKey(row)), raw(row), fields),
                          isPresent ? Answer::done : Answer::absent);
                if (isPresent) {
                    for (const size_t i : {fieldOf(table(), "zone"), fieldOf(table(), "note")}) {
                        const schema::Field& field = table().fields[i];
                        found->second.replace(field.offset, field.width, row, field.offset, field.width);
                    }
                }
                break;
            }
            case 2:
                ASSERT_EQ(steps.erase(tableNumber, raw(primaryKey(row))), isPresent ? Answer::done : Answer::absent);
                if (isPresent) staged.erase(found);
                break;
            default:
                ASSERT_EQ(steps.get(tableNumber, raw(primaryKey(row)), raw(seen)),
                          isPresent ? Answer::done : Answer::absent);
                if (isPresent) {
                    ASSERT_EQ(seen, found->second);
                }
                break;
        }
    }

    // The record under a scan's position may have changed or gone since the step.
    void read() {
        if (watched.empty()) return;
        Watched& scan = watched[pick(static_cast<uint32_t>(watched.size()))];
        if (scan.isAtEnd || scan.served.empty()) return;
        Bytes row(table().recordSize, '\0');
        if (scan.scan->read(raw(row)) == Answer::done) {
            ASSERT_EQ(records[primaryKey(row)], row);
        }
    }

    void close() {
        if (watched.empty()) return;
        const uint32_t number = pick(static_cast<uint32_t>(watched.size()));
        watched.erase(watched.begin() + number);
    }

    void check() {
        uint64_t found = 0;
        ASSERT_EQ(store.count(tableNumber, found), Answer::done);
        ASSERT_EQ(found, records.size());
        const Bytes row = randomRow();
        Bytes stored(table().recordSize, '\0');
        const auto expected = records.find(primaryKey(row));
        ASSERT_EQ(store.get(tableNumber, raw(primaryKey(row)), raw(stored)),
                  expected == records.end() ? Answer::absent : Answer::done);
        if (expected != records.end()) {
            ASSERT_EQ(stored, expected->second);
        }
        for (uint32_t index = 0; index < table().indexes.size(); ++index) {
            const Bytes key = keyOf(table().indexes[index], row);
            const auto matches = std::count_if(records.begin(), records.end(), [&](const auto& record) {
                return keyOf(table().indexes[index], record.second) == key;
            });
            ASSERT_EQ(store.countByKey(tableNumber, index, raw(key), found), Answer::done);
            ASSERT_EQ(found, static_cast<uint64_t>(matches));
        }
    }

    Store& store;
    const uint32_t tableNumber;
    std::mt19937 random;
    std::map<Bytes, Bytes> records;  // by primary key
    std::vector<Watched> watched;
};

}  // namespace

TEST_P(StoreConformance, RandomOperationsAgreeWithAPlainMap) {
    for (uint32_t seed = 1; seed <= 12; ++seed) {
        const std::unique_ptr<Store> tested = GetParam()(std::span<const schema::Table>(kTables));
        for (const uint32_t table : {kOddTable, kRefusingTable}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", table " << table);
            Model model(*tested, table, seed);
            for (int i = 0; i < 6000 && !HasFatalFailure() && !HasNonfatalFailure(); ++i) model.step();
            model.finish();
            if (HasFatalFailure() || HasNonfatalFailure()) return;
        }
    }
}

}  // namespace mcast6::store::test
