// A store that fails: its answers and exceptions become codes, and a failed call changes nothing.
#include <new>
#include <stdexcept>

#include "tests/engine/test_tables.h"

namespace mcast6::testing {
namespace {

using store::Answer;

// What goes wrong in the next call of the store or of one of its scans.
enum class Fault { none, failed, noMemory, badAlloc, otherException };

// A map store that goes wrong on demand.
class FaultyStore final : public store::Store {
public:
    FaultyStore(std::span<const schema::Table> tables, Fault& fault) : inner_(tables), fault_(fault) {}

    Answer put(uint32_t table, const std::byte* row) override {
        return run(fault_, [&] { return inner_.put(table, row); });
    }
    Answer get(uint32_t table, const std::byte* key, std::byte* row) override {
        return run(fault_, [&] { return inner_.get(table, key, row); });
    }
    Answer patch(uint32_t table, const std::byte* key, const std::byte* row, uint64_t fields) override {
        return run(fault_, [&] { return inner_.patch(table, key, row, fields); });
    }
    Answer erase(uint32_t table, const std::byte* key) override {
        return run(fault_, [&] { return inner_.erase(table, key); });
    }
    Answer count(uint32_t table, uint64_t& records) override {
        return run(fault_, [&] { return inner_.count(table, records); });
    }
    Answer countByKey(uint32_t table, uint32_t index, const std::byte* key, uint64_t& records) override {
        return run(fault_, [&] { return inner_.countByKey(table, index, key, records); });
    }
    Answer open(uint32_t table, const store::ScanRange& range, std::unique_ptr<store::Scan>& scan) override {
        return run(fault_, [&] {
            std::unique_ptr<store::Scan> inner;
            const Answer answer = inner_.open(table, range, inner);
            scan = std::make_unique<FaultyScan>(std::move(inner), fault_);
            return answer;
        });
    }
    uint64_t memory() const override { return inner_.memory(); }

private:
    template <class Step>
    static Answer run(Fault fault, Step step) {
        switch (fault) {
            case Fault::none:
                break;
            case Fault::failed:
                return Answer::failed;
            case Fault::noMemory:
                return Answer::noMemory;
            case Fault::badAlloc:
                throw std::bad_alloc();
            case Fault::otherException:
                throw std::runtime_error("the store is broken");
        }
        return step();
    }

    class FaultyScan final : public store::Scan {
    public:
        FaultyScan(std::unique_ptr<store::Scan> inner, Fault& fault) : inner_(std::move(inner)), fault_(fault) {}
        Answer next() override {
            return run(fault_, [&] { return inner_->next(); });
        }
        Answer read(std::byte* row) override {
            return run(fault_, [&] { return inner_->read(row); });
        }
        Answer restart(const std::byte* key) override {
            return run(fault_, [&] { return inner_->restart(key); });
        }

    private:
        std::unique_ptr<store::Scan> inner_;
        Fault& fault_;
    };

    MapStore inner_;
    Fault& fault_;
};

Fault currentFault = Fault::none;

const StoreKind kFaulty[] = {
    {"faulty", [] { return std::make_unique<FaultyStore>(kTables, currentFault); }},
};

class Failures : public EngineTest {
protected:
    // Runs 'call' under every fault: it answers the fault's code, and 'expectUnchanged' holds after each.
    template <class Call, class Check>
    void underEveryFault(Call call, Check expectUnchanged) {
        const std::pair<Fault, uint32_t> faults[] = {
            {Fault::failed, MCAST6_DB_STORE_FAILED},
            {Fault::noMemory, MCAST6_DB_NO_MEMORY},
            {Fault::badAlloc, MCAST6_DB_NO_MEMORY},
            {Fault::otherException, MCAST6_DB_STORE_FAILED},
        };
        for (const auto& [fault, code] : faults) {
            SCOPED_TRACE(static_cast<int>(fault));
            currentFault = fault;
            EXPECT_EQ(call(), code);
            currentFault = Fault::none;
            expectUnchanged();
        }
    }
    void TearDown() override { currentFault = Fault::none; }

    const Bytes key = join(0U, 1U);
    const KeyDesc byPort{kByPort};
    const Bytes port = join(uint16_t{4});
};

TEST_P(Failures, OfAWrite) {
    const Route route{.id = 1};
    const uint64_t writer = object(kWrite);
    EXPECT_EQ(engine.setAllFields(kRoute, writer, &route, sizeof route), 0U);
    underEveryFault([&] { return engine.write(writer); }, [&] { EXPECT_EQ(records(), 0U); });
    EXPECT_EQ(engine.write(writer), 0U) << "the object still holds the record";
}

TEST_P(Failures, OfAnUpdate) {
    EXPECT_EQ(write(Route{.id = 1, .version = 3}), 0U);
    const uint64_t updater = object(kUpdate);
    const uint32_t version = 4;
    EXPECT_EQ(engine.setField(kRoute, kVersion, updater, &version, 4), 0U);
    underEveryFault([&] { return engine.update(updater, &kRouteKey, key.data()); },
                    [&] {
                        Route stored;
                        EXPECT_EQ(read(0, 1, stored), 0U);
                        EXPECT_EQ(stored.version, 3U);
                    });
    EXPECT_EQ(engine.update(updater, &kRouteKey, key.data()), 0U);
}

TEST_P(Failures, OfARemoval) {
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    const uint64_t remover = object(kRemove);
    underEveryFault([&] { return engine.remove(remover, &kRouteKey, key.data()); }, [&] { EXPECT_EQ(records(), 1U); });
    EXPECT_EQ(engine.remove(remover, &kRouteKey, key.data()), 0U);
}

TEST_P(Failures, OfAKeyedRead) {
    EXPECT_EQ(write(Route{.id = 1, .version = 3}), 0U);
    const uint64_t reader = object(kRead);
    Route buffer{.id = 77};
    uint32_t version = 99;
    underEveryFault([&] { return engine.read(reader, &kRouteKey, key.data(), &buffer, sizeof buffer); },
                    [&] {
                        EXPECT_EQ(buffer.id, 77U);
                        EXPECT_EQ(engine.getField(kRoute, kVersion, reader, &version), MCAST6_DB_BAD_OPERATION);
                    });
    EXPECT_EQ(version, 99U);
}

TEST_P(Failures, OfACount) {
    const uint64_t counter = object(kCount);
    uint64_t count = 7;
    uint32_t* const count32 = reinterpret_cast<uint32_t*>(&count);
    underEveryFault([&] { return engine.count(counter, count32); }, [&] { EXPECT_EQ(count, 7U); });
    underEveryFault([&] { return engine.countByKey(counter, &byPort, port.data(), count32); },
                    [&] { EXPECT_EQ(count, 7U); });
}

TEST_P(Failures, OfTheMakingOfAnIterator) {
    EXPECT_EQ(write(Route{.id = 1}), 0U);
    const uint64_t walker = object(kIterate);
    EXPECT_EQ(engine.createStatement(walker, 2, nullptr, 0), 0U);
    EXPECT_EQ(engine.appendCondition(walker, kVersionOrder, 3, 0, nullptr, 0, &kInVersionOrder, nullptr, 0), 0U);
    uint64_t rootIter = 7;
    const auto expectNone = [&] { EXPECT_EQ(rootIter, 7U); };
    underEveryFault([&] { return engine.createRootIter(walker, nullptr, nullptr, &rootIter); }, expectNone);
    underEveryFault([&] { return engine.createRootIter(walker, &byPort, port.data(), &rootIter); }, expectNone);
    underEveryFault([&] { return engine.createCacheRootIter(walker, &byPort, &rootIter); }, expectNone);
    underEveryFault([&] { return engine.createRootIterOfStatement(walker, &rootIter); }, expectNone);
    EXPECT_EQ(engine.iteratorSlots(), 0U);
    EXPECT_EQ(engine.createRootIterOfStatement(walker, &rootIter), 0U) << "the statement is still there";
    EXPECT_THAT(walk(walker, rootIter), ::testing::ElementsAre(1));
}

TEST_P(Failures, OfAStep) {
    for (uint32_t id = 1; id <= 3; ++id) EXPECT_EQ(write(Route{.id = id}), 0U);
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = tableIter(walker), other = tableIter(walker);
    Route before, after;
    EXPECT_EQ(engine.next(other), 0U);
    EXPECT_EQ(engine.next(rootIter), 0U);
    EXPECT_EQ(engine.next(rootIter), 0U);
    EXPECT_EQ(engine.read(walker, nullptr, nullptr, &before, sizeof before), 0U);
    underEveryFault([&] { return engine.next(rootIter); },
                    [&] {
                        EXPECT_EQ(engine.read(walker, nullptr, nullptr, &after, sizeof after), 0U);
                        EXPECT_EQ(after, before);
                    });
    underEveryFault([&] { return engine.next(other); },
                    [&] {
                        EXPECT_EQ(engine.read(walker, nullptr, nullptr, &after, sizeof after), 0U);
                        EXPECT_EQ(after, before) << "a step that failed is none";
                    });
    EXPECT_EQ(engine.next(rootIter), 0U);
    EXPECT_EQ(engine.next(rootIter), 110012U);
}

TEST_P(Failures, OfReadingAtAPosition) {
    EXPECT_EQ(write(Route{.id = 1, .version = 3}), 0U);
    const uint64_t walker = object(kIterate);
    const uint64_t rootIter = tableIter(walker);
    EXPECT_EQ(engine.next(rootIter), 0U);
    Route buffer{.id = 77};
    uint32_t version = 99;
    void* bytes = &buffer;
    uint32_t length = 99;
    underEveryFault([&] { return engine.read(walker, nullptr, nullptr, &buffer, sizeof buffer); },
                    [&] { EXPECT_EQ(buffer.id, 77U); });
    underEveryFault([&] { return engine.getField(kRoute, kVersion, walker, &version); },
                    [&] { EXPECT_EQ(version, 99U); });
    underEveryFault([&] { return engine.getFieldBytes(kRoute, kGroup, walker, &bytes, &length); },
                    [&] { EXPECT_EQ(length, 99U); });
    EXPECT_EQ(engine.getField(kRoute, kVersion, walker, &version), 0U);
    EXPECT_EQ(version, 3U);
}

TEST_P(Failures, OfTheResetOfACachedIterator) {
    EXPECT_EQ(write(Route{.id = 1, .port = 4}), 0U);
    const uint64_t walker = cacheObject(kIterate);
    uint64_t rootIter = 0;
    EXPECT_EQ(engine.createCacheRootIter(walker, &byPort, &rootIter), 0U);
    underEveryFault([&] { return engine.resetCacheRootIter(rootIter, port.data()); },
                    [&] { EXPECT_EQ(engine.next(rootIter), MCAST6_DB_BAD_OPERATION); });
    EXPECT_EQ(engine.resetCacheRootIter(rootIter, port.data()), 0U);
    EXPECT_EQ(engine.next(rootIter), 0U);
}

INSTANTIATE_TEST_SUITE_P(Stores, Failures, ::testing::ValuesIn(kFaulty), storeName);

}  // namespace
}  // namespace mcast6::testing
