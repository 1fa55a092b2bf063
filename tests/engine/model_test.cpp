// The engine beside a plain model, in long random sequences with fixed seeds.
//
// The model of a table is a std::map of its rows and, for each index, a multimap from key to primary key. The model of
// an iterator is what the contract promises of it: the records that it has to return, because they have stayed in place
// since it was opened, and the places that it has returned already. A record's place in an index is a number that is
// new whenever the record comes or its key of that index changes.
//
// Every table of the tests goes through this, with rows drawn from so few values that keys meet all the time.
#include <map>
#include <random>
#include <set>

#include "tests/engine/test_tables.h"

namespace mcast6::testing {
namespace {

constexpr int kSteps = 30000;
constexpr uint32_t kWholeTable = 0xFFFFFFFF;  // in place of an index

struct Entry {
    Bytes row;
    uint64_t place = 0;               // in the table
    std::vector<uint64_t> placeOf{};  // in each index
};

class TableModel {
public:
    explicit TableModel(const schema::Table& described) : table(described), index(described.indexes.size()) {}

    Bytes primaryOf(const Bytes& row) const { return keyOf(table.primary, raw(row)); }
    Bytes keyIn(uint32_t i, const Bytes& row) const { return keyOf(table.indexes[i], raw(row)); }

    uint32_t write(const Bytes& row) {
        const auto found = entries.find(primaryOf(row));
        if (found == entries.end()) {
            if (table.capacity != 0 && entries.size() >= table.capacity) return 110024;
            put(row, nullptr);
            return 0;
        }
        if (table.presentWrite == schema::PresentWrite::replaces) change(found, row);
        return 13044;
    }

    uint32_t update(const Bytes& primary, const Bytes& row, uint64_t fields) {
        const auto found = entries.find(primary);
        if (found == entries.end()) return 13044;
        Bytes changed = found->second.row;
        for (size_t i = 0; i < table.fields.size(); ++i) {
            const schema::Field& field = table.fields[i];
            if ((fields >> i & 1) != 0) changed.replace(field.offset, field.width, row, field.offset, field.width);
        }
        change(found, changed);
        return 0;
    }

    uint32_t remove(const Bytes& primary) {
        const auto found = entries.find(primary);
        if (found == entries.end()) return table.absentRemoval;
        take(found);
        return 0;
    }

    uint64_t placeIn(uint32_t i, const Entry& entry) const { return i == kWholeTable ? entry.place : entry.placeOf[i]; }

    const schema::Table& table;
    std::map<Bytes, Entry> entries;
    std::vector<std::multimap<Bytes, Bytes>> index;

private:
    using Found = std::map<Bytes, Entry>::iterator;

    static const std::byte* raw(const Bytes& row) { return reinterpret_cast<const std::byte*>(row.data()); }

    void put(const Bytes& row, const Entry* before) {
        Entry entry{row, before != nullptr ? before->place : ++lastPlace_};
        for (uint32_t i = 0; i < index.size(); ++i) {
            const bool isInPlace = before != nullptr && keyIn(i, before->row) == keyIn(i, row);
            entry.placeOf.push_back(isInPlace ? before->placeOf[i] : ++lastPlace_);
            index[i].emplace(keyIn(i, row), primaryOf(row));
        }
        entries.emplace(primaryOf(row), entry);
    }

    Entry take(Found found) {
        const Entry entry = found->second;
        for (uint32_t i = 0; i < index.size(); ++i) {
            auto [first, last] = index[i].equal_range(keyIn(i, entry.row));
            while (first != last && first->second != found->first) ++first;
            index[i].erase(first);
        }
        entries.erase(found);
        return entry;
    }

    void change(Found found, const Bytes& row) {
        const Entry before = take(found);
        put(row, &before);
    }

    uint64_t lastPlace_ = 0;
};

// An iterator and what is known of it.
struct Walk {
    uint64_t handle = 0;
    uint32_t index = kWholeTable;
    bool isCached = false, isSorted = false, isKeyed = false, hasEnded = false;
    Bytes key{};
    Bytes lastSorted{};
    std::map<Bytes, uint64_t> due{};                       // place by primary key, as it was at the opening
    std::set<uint64_t> seen{};                             // places
    std::optional<std::pair<Bytes, uint64_t>> position{};  // primary key and place
};

struct Walker {
    uint64_t object = 0;
    bool isCache = false;
    std::vector<Walk> walks{};
    size_t last = SIZE_MAX;  // in walks, stepped last
};

class Sequence {
public:
    Sequence(engine::Engine& tested, uint32_t tableId, uint32_t seed)
        : engine_(tested), table_(tableId), model_(kTables[tableId]), random_(seed) {
        for (const schema::Field& field : model_.table.fields) {
            if (isPrimary(field)) ++primaryFields_;
        }
    }

    void run() {
        for (int step = 0; step < kSteps && !::testing::Test::HasFailure(); ++step) {
            SCOPED_TRACE("step " + std::to_string(step));
            one();
        }
        while (!walkers_.empty()) release(0);
        EXPECT_GT(steps_, kSteps / 20) << "too few steps to say anything";
        EXPECT_GT(ends_, kSteps / 200);
    }

private:
    uint32_t below(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }
    bool oneIn(uint32_t n) { return below(n) == 0; }

    bool isPrimary(const schema::Field& field) const {
        for (const schema::KeyPart& part : model_.table.primary.parts()) {
            if (!part.isConstant && part.offset >= field.offset && part.offset < field.offset + field.width)
                return true;
        }
        return false;
    }

    // About 80 different primary keys; three values for every other field, in its lowest or its highest byte.
    Bytes randomRow() {
        const uint32_t values = primaryFields_ == 1 ? 80 : primaryFields_ == 2 ? 9 : primaryFields_ == 3 ? 4 : 3;
        Bytes row(model_.table.recordSize, '\0');
        for (const schema::Field& field : model_.table.fields) {
            const bool isKey = isPrimary(field);
            const size_t place = isKey || oneIn(2) ? field.offset : field.offset + field.width - 1U;
            row[place] = static_cast<char>(below(isKey ? values : 3));
        }
        return row;
    }

    // A key of an index, more often than not one that matches something.
    Bytes randomKey(uint32_t i) {
        if (model_.entries.empty() || oneIn(4)) return model_.keyIn(i, randomRow());
        const auto entry = std::next(model_.entries.begin(), below(static_cast<uint32_t>(model_.entries.size())));
        return model_.keyIn(i, entry->second.row);
    }

    void one() {
        const uint32_t dice = below(100);
        if (dice < 25) return write();
        if (dice < 35) return update();
        if (dice < 50) return remove();
        if (dice < 57) return read();
        if (dice < 62) return count();
        if (dice < 64) return open();
        if (dice < 65) return reset();
        if (dice < 72) return iterate();
        step();
    }

    uint64_t make(uint32_t objType) {
        uint64_t object = 0;
        EXPECT_EQ(engine_.createObject(table_, objType, 0, &object), 0U);
        return object;
    }

    void setFields(uint64_t object, const Bytes& row, uint64_t fields) {
        for (uint32_t i = 0; i < model_.table.fields.size(); ++i) {
            const schema::Field& field = model_.table.fields[i];
            if ((fields >> i & 1) == 0) continue;
            EXPECT_EQ(engine_.setField(table_, i, object, row.data() + field.offset, field.width), 0U);
        }
    }

    void write() {
        const Bytes row = randomRow();
        const uint64_t object = make(kWrite);
        if (oneIn(4)) {
            setFields(object, row, ~uint64_t{0});
        } else {
            EXPECT_EQ(engine_.setAllFields(table_, object, row.data(), model_.table.recordSize), 0U);
        }
        EXPECT_EQ(engine_.write(object), model_.write(row));
        engine_.releaseObject(table_, object);
    }

    void update() {
        const Bytes row = randomRow();
        uint64_t fields = 0;
        for (uint32_t i = 0; i < model_.table.fields.size(); ++i) {
            if (!isPrimary(model_.table.fields[i]) && oneIn(3)) fields |= uint64_t{1} << i;
        }
        const uint64_t object = make(kUpdate);
        setFields(object, row, fields);
        const Bytes key = model_.primaryOf(row);
        const uint32_t code = engine_.update(object, &model_.table.primary.word, key.data());
        if (fields == 0) {
            EXPECT_EQ(code, MCAST6_DB_BAD_OPERATION);
        } else {
            EXPECT_EQ(code, model_.update(key, row, fields));
        }
        engine_.releaseObject(table_, object);
    }

    void remove() {
        Bytes key = model_.primaryOf(randomRow());
        if (Walk* walk = anyWalk(); walk != nullptr && walk->position && oneIn(3)) key = walk->position->first;
        const uint64_t object = make(kRemove);
        EXPECT_EQ(engine_.remove(object, &model_.table.primary.word, key.data()), model_.remove(key));
        engine_.releaseObject(table_, object);
    }

    void read() {
        const Bytes key = model_.primaryOf(randomRow());
        const uint64_t object = make(kRead);
        const Bytes untouched(model_.table.recordSize, '\x5A');
        Bytes row = untouched;
        const uint32_t code =
            engine_.read(object, &model_.table.primary.word, key.data(), row.data(), model_.table.recordSize);
        const auto found = model_.entries.find(key);
        if (found == model_.entries.end()) {
            EXPECT_EQ(code, 15005U);
            EXPECT_EQ(row, untouched);
        } else {
            EXPECT_EQ(code, 0U);
            EXPECT_EQ(row, found->second.row);
            expectGetters(object, row);
        }
        engine_.releaseObject(table_, object);
    }

    void count() {
        const uint64_t object = make(kCount);
        uint64_t records = 0;
        uint32_t* const count = reinterpret_cast<uint32_t*>(&records);
        EXPECT_EQ(engine_.count(object, count), 0U);
        EXPECT_EQ(records, model_.entries.size());
        for (uint32_t i = 0; i < model_.index.size(); ++i) {
            const schema::Key& index = model_.table.indexes[i];
            if (index.kind() != schema::KeyKind::secondary) continue;
            const Bytes key = randomKey(i);
            EXPECT_EQ(engine_.countByKey(object, &index.word, key.data(), count), 0U);
            EXPECT_EQ(records, model_.index[i].count(key)) << "index " << i;
        }
        engine_.releaseObject(table_, object);
    }

    void expectGetters(uint64_t object, const Bytes& row) {
        for (uint32_t i = 0; i < model_.table.fields.size(); ++i) {
            const schema::Field& field = model_.table.fields[i];
            const Bytes expected = row.substr(field.offset, field.width);
            if (field.kind == schema::FieldKind::scalar) {
                Bytes value(field.width, '\x5A');
                EXPECT_EQ(engine_.getField(table_, i, object, value.data()), 0U);
                EXPECT_EQ(value, expected) << field.name;
            } else {
                void* bytes = nullptr;
                uint32_t length = 0;
                EXPECT_EQ(engine_.getFieldBytes(table_, i, object, &bytes, &length), 0U);
                ASSERT_EQ(length, field.width);
                EXPECT_EQ(Bytes(static_cast<const char*>(bytes), length), expected) << field.name;
            }
        }
    }

    // Objects that iterate.

    void open() {
        if (walkers_.size() >= 6) return release(below(6));
        Walker walker;
        walker.isCache = oneIn(2);
        const auto create = walker.isCache ? &engine::Engine::createCacheObject : &engine::Engine::createObject;
        EXPECT_EQ((engine_.*create)(table_, kIterate, 0, &walker.object), 0U);
        walkers_.push_back(walker);
    }

    void release(size_t i) {
        const Walker walker = walkers_[i];
        engine_.releaseObject(table_, walker.object);
        for (const Walk& walk : walker.walks) EXPECT_EQ(engine_.next(walk.handle), MCAST6_DB_BAD_HANDLE);
        walkers_.erase(walkers_.begin() + static_cast<ptrdiff_t>(i));
    }

    void reset() {
        if (walkers_.empty()) return;
        Walker& walker = walkers_[below(static_cast<uint32_t>(walkers_.size()))];
        const bool asCache = walker.isCache && oneIn(2);
        EXPECT_EQ(asCache ? engine_.resetCacheObject(table_, walker.object)
                          : engine_.resetObject(table_, walker.object, kIterate),
                  0U);
        std::vector<Walk> kept;
        for (const Walk& walk : walker.walks) {
            if (asCache && walk.isCached) {
                kept.push_back(walk);
            } else {
                EXPECT_EQ(engine_.next(walk.handle), MCAST6_DB_BAD_HANDLE);
            }
        }
        walker.walks = kept;
        walker.last = SIZE_MAX;
    }

    // Makes an iterator of a random kind, or gives a cached one its next key.
    void iterate() {
        if (walkers_.empty()) return;
        Walker& walker = walkers_[below(static_cast<uint32_t>(walkers_.size()))];
        if (!walker.walks.empty() && oneIn(2))
            return restart(walker, below(static_cast<uint32_t>(walker.walks.size())));
        if (walker.walks.size() >= 4) return;
        Walk walk;
        walk.index = below(static_cast<uint32_t>(model_.index.size()) + 1);
        if (walk.index == model_.index.size()) {
            walk.index = kWholeTable;
            EXPECT_EQ(engine_.createRootIter(walker.object, nullptr, nullptr, &walk.handle), 0U);
        } else if (model_.table.indexes[walk.index].kind() == schema::KeyKind::sorted) {
            makeSorted(walker, walk);
        } else {
            const uint32_t word = model_.table.indexes[walk.index].word;
            walk.isKeyed = true;
            walk.isCached = oneIn(2);
            walk.key = randomKey(walk.index);
            EXPECT_EQ(walk.isCached ? engine_.createCacheRootIter(walker.object, &word, &walk.handle)
                                    : engine_.createRootIter(walker.object, &word, walk.key.data(), &walk.handle),
                      0U);
        }
        if (walk.isCached) {
            EXPECT_EQ(engine_.next(walk.handle), MCAST6_DB_BAD_OPERATION);
            EXPECT_EQ(engine_.resetCacheRootIter(walk.handle, walk.key.data()), 0U);
        }
        begin(walk);
        walker.walks.push_back(walk);
    }

    void makeSorted(const Walker& walker, Walk& walk) {
        const schema::Key& index = model_.table.indexes[walk.index];
        walk.isSorted = true;
        walk.isKeyed = oneIn(3);
        if (walk.isKeyed) walk.key = randomKey(walk.index);
        EXPECT_EQ(engine_.createStatement(walker.object, 2, nullptr, 0), 0U);
        EXPECT_EQ(engine_.appendCondition(walker.object, std::string(index.conditionName).c_str(), 3, 0, nullptr, 0,
                                          &index.word, walk.isKeyed ? walk.key.data() : nullptr,
                                          static_cast<uint32_t>(walk.key.size())),
                  0U);
        EXPECT_EQ(engine_.createRootIterOfStatement(walker.object, &walk.handle), 0U);
    }

    void restart(Walker& walker, size_t i) {
        Walk& walk = walker.walks[i];
        const Bytes key = walk.isCached ? randomKey(walk.index) : Bytes(64, '\0');
        const uint32_t code = engine_.resetCacheRootIter(walk.handle, key.data());
        if (!walk.isCached) {
            EXPECT_EQ(code, MCAST6_DB_BAD_OPERATION);
            return;
        }
        EXPECT_EQ(code, 0U);
        walk.key = key;
        begin(walk);
        if (walker.last == i) walker.last = SIZE_MAX;
    }

    bool matches(const Walk& walk, const Entry& entry) const {
        return !walk.isKeyed || model_.keyIn(walk.index, entry.row) == walk.key;
    }

    void begin(Walk& walk) {
        walk.hasEnded = false;
        walk.position.reset();
        walk.lastSorted.clear();
        walk.seen.clear();
        walk.due.clear();
        for (const auto& [primary, entry] : model_.entries) {
            if (matches(walk, entry)) walk.due[primary] = model_.placeIn(walk.index, entry);
        }
    }

    Walk* anyWalk() {
        if (walkers_.empty()) return nullptr;
        Walker& walker = walkers_[below(static_cast<uint32_t>(walkers_.size()))];
        return walker.walks.empty() ? nullptr : &walker.walks[below(static_cast<uint32_t>(walker.walks.size()))];
    }

    void step() {
        if (walkers_.empty()) return;
        Walker& walker = walkers_[below(static_cast<uint32_t>(walkers_.size()))];
        if (!oneIn(4) && !walker.walks.empty()) {
            const size_t i = below(static_cast<uint32_t>(walker.walks.size()));
            walker.last = i;
            do {
                stepOn(walker.walks[i], walker.object);
            } while (!walker.walks[i].hasEnded && !oneIn(5));
        }
        expectPosition(walker);
    }

    void stepOn(Walk& walk, uint64_t object) {
        const uint32_t code = engine_.next(walk.handle);
        if (code == MCAST6_DB_END_OF_ITERATION) {
            for (const auto& [primary, place] : walk.due) {
                const auto found = model_.entries.find(primary);
                const bool hasStayed =
                    found != model_.entries.end() && model_.placeIn(walk.index, found->second) == place;
                EXPECT_TRUE(!hasStayed || walk.seen.count(place) != 0) << "a record that stayed was left out";
            }
            ++ends_;
            walk.hasEnded = true;
            walk.position.reset();
            return;
        }
        EXPECT_EQ(code, 0U);
        EXPECT_FALSE(walk.hasEnded);
        ++steps_;
        expectNew(walk, object);
    }

    // The record under a position that was just reached: it matches, it is new, and it comes in order.
    void expectNew(Walk& walk, uint64_t object) {
        Bytes row(model_.table.recordSize, '\0');
        ASSERT_EQ(engine_.read(object, nullptr, nullptr, row.data(), model_.table.recordSize), 0U);
        const auto found = model_.entries.find(model_.primaryOf(row));
        ASSERT_NE(found, model_.entries.end());
        EXPECT_EQ(row, found->second.row);
        EXPECT_TRUE(matches(walk, found->second));
        const uint64_t place = model_.placeIn(walk.index, found->second);
        EXPECT_TRUE(walk.seen.insert(place).second) << "a record came twice";
        walk.position = {found->first, place};
        if (!walk.isSorted) return;
        const Bytes sorted = ordered(model_.table.indexes[walk.index], model_.keyIn(walk.index, row));
        EXPECT_LE(walk.lastSorted, sorted);
        walk.lastSorted = sorted;
    }

    // What reading at the position of a walker answers now. A record that moved since may count as gone or not.
    void expectPosition(const Walker& walker) {
        const Bytes untouched(model_.table.recordSize, '\x5A');
        Bytes row = untouched;
        const uint32_t code = engine_.read(walker.object, nullptr, nullptr, row.data(), model_.table.recordSize);
        if (walker.last == SIZE_MAX) {
            EXPECT_EQ(code, MCAST6_DB_BAD_OPERATION);
            return;
        }
        const Walk& walk = walker.walks[walker.last];
        const auto found = walk.position ? model_.entries.find(walk.position->first) : model_.entries.end();
        if (found == model_.entries.end()) {
            EXPECT_EQ(code, 15005U);
        } else if (model_.placeIn(walk.index, found->second) == walk.position->second) {
            EXPECT_EQ(code, 0U);
        }
        if (code == 0) {
            ASSERT_NE(found, model_.entries.end());
            EXPECT_EQ(row, found->second.row);
            if (oneIn(4)) expectGetters(walker.object, row);
        } else {
            EXPECT_EQ(code, 15005U);
            EXPECT_EQ(row, untouched);
        }
    }

    engine::Engine& engine_;
    const uint32_t table_;
    TableModel model_;
    std::mt19937 random_;
    uint32_t primaryFields_ = 0;
    std::vector<Walker> walkers_;
    int steps_ = 0, ends_ = 0;
};

class Model : public EngineTest {
protected:
    void run(uint32_t table) {
        for (const uint32_t seed : {1U, 20240611U, 7777777U}) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            engine::Engine fresh(GetParam().make(), kTables);
            Sequence(fresh, table, seed).run();
            if (HasFailure()) return;
        }
    }
};

TEST_P(Model, Route) { run(kRoute); }
TEST_P(Model, Port) { run(kPortTable); }
TEST_P(Model, L3Mc6Mfib) { run(kMfib); }
TEST_P(Model, L2Mc6BdEnable) { run(kBdEnable); }

INSTANTIATE_TEST_SUITE_P(Stores, Model, ::testing::ValuesIn(kStores), storeName);

}  // namespace
}  // namespace mcast6::testing
