// The operations that tables share, written once.
//
// Each template is the algorithm of one kind of operation: it takes the steps, finds the way out, and concludes with the
// outcome that the table gives for it (outcome.h). It has no switches: where a table's steps differ, and not just what
// follows from them, the table has a short function of its own instead.
//
// What a table gives (Table below):
//     Record                      the caller's record
//     number, logId               row of the error statistics, log id of its messages
//     objects                     its exported pair {create, release}, used for every object but cached ones
//     Row, Primary                its field map and primary key
//     set, get                    its exported conversions
//     setAllFields                the accessor that fills an object from a row
//     onRead, onWrite, ...        its outcomes
#pragma once

#include "frame/codes.h"
#include "frame/keys.h"
#include "frame/outcome.h"
#include "mcast6_db/iterator.h"
#include "mcast6_platform/engine.h"

namespace mcast6 {

struct CreateOutcomes {
    Outcome created;
    Outcome failed;
};

struct ReadOutcomes {
    Outcome nullRecord;
    Outcome createFailed;
    Outcome found;
    Outcome absent;
    Outcome readFailed;
};

// A read with an object that is there already.
struct KeyedReadOutcomes {
    Outcome found;
    Outcome absent;
    Outcome readFailed;
};

// How a read comes by its object where the read itself is a keyed read with outcomes of its own.
struct GivenObjectOutcomes {
    Outcome nullRecord;
    Outcome createFailed;
};

struct WriteOutcomes {
    Outcome nullRecord;
    Outcome createFailed;
    Outcome setFailed;
    Outcome written;
    Outcome code13044;
    Outcome writeFailed;
};

// For a table whose write tells a full table (110024) from other failures.
struct LimitedWriteOutcomes : WriteOutcomes {
    Outcome tableFull;
};

struct UpdateOutcomes {
    Outcome nullRecord;
    Outcome createFailed;
    Outcome setFailed;
    Outcome updated;
    Outcome code13044;
    Outcome updateFailed;
};

struct RemoveOutcomes {
    Outcome nullRecord;
    Outcome createFailed;
    Outcome removed;
    Outcome code13044;
    Outcome removeFailed;
};

// For a table to whose removal 15005 means something else than a failure.
struct RemoveOrAbsentOutcomes : RemoveOutcomes {
    Outcome code15005;
};

struct EntryOutcomes {
    Outcome nullParameter;
    Outcome ended;
    Outcome nextFailed;
    Outcome entry;
    Outcome vanished;
    Outcome readFailed;
};

// An iterator that the frame builds.
struct IterOutcomes {
    Outcome failed;
};

// An iterator that a module builds itself, with a report of its own for each step.
struct BuildOutcomes {
    Outcome createFailed;
    Outcome rootIterFailed;
    Outcome propertyFailed;
    Outcome allocationFailed;
};

// The same into a handle of the caller's.
struct BuildIntoOutcomes {
    Outcome createFailed;
    Outcome rootIterFailed;
    Outcome propertyFailed;
};

// A step of an iterator that reads by field.
struct NextItemOutcomes {
    Outcome nullHandle;
    Outcome ended;
    Outcome nextFailed;
    Outcome entry;
};

struct CountOutcomes {
    Outcome createFailed;
    Outcome countFailed;
};

struct CacheOutcomes {
    Outcome createFailed;
    Outcome resetFailed;
};

// A count by key whose result is the count itself.
struct MatchOutcomes {
    Outcome createFailed;
    Outcome absent;
    Outcome countFailed;
};

// How a table reaches the objects of the engine.
struct Accessors {
    Mcast6DbCreateFunc create;
    void (*release)(Mcast6DbHandle object);
    uint32_t (*setAllFields)(Mcast6DbHandle object, const void* row, uint32_t length);
};

constexpr bool releasesEach(int times, const auto&... outcomes) {
    return ((!outcomes.isTested || outcomes.releases() == times) && ...);
}

// ---- Conversions

template <class Table, auto kTold = nullptr>
uint32_t setRow(const typename Table::Record* record, void* row) {
    return Table::Row::template set<kTold>(*record, static_cast<std::byte*>(row),
                                           static_cast<uint64_t>(MCAST6_DB_GetSysTime()));
}

template <class Table, auto kTold = nullptr>
uint32_t getRecord(const void* row, typename Table::Record* record) {
    const uint32_t told = Table::Row::template get<kTold>(static_cast<const std::byte*>(row), *record);
    Table::OnGet::get(*record);
    return told;
}

// Stamps a row with the current time, which it gives back: the smooth time always, the creation time when asked.
template <class Table>
uint64_t stampRow(bool withCreate, void* row) {
    using Record = typename Table::Record;
    using Create = decltype(Table::Row::template fieldOf<&Record::timeStampCreate>());
    using Smooth = decltype(Table::Row::template fieldOf<&Record::timeStampSmooth>());
    const auto now = static_cast<uint64_t>(MCAST6_DB_GetSysTime());
    store(static_cast<std::byte*>(row) + Smooth::offset, now);
    if (withCreate) store(static_cast<std::byte*>(row) + Create::offset, now);
    return now;
}

// Stamps a row from a record as a conversion would, which may keep the record's creation time.
template <class Table>
void stampRowFrom(const typename Table::Record* record, void* row) {
    using Record = typename Table::Record;
    const auto now = static_cast<uint64_t>(MCAST6_DB_GetSysTime());
    auto* const bytes = static_cast<std::byte*>(row);
    decltype(Table::Row::template fieldOf<&Record::timeStampCreate>())::set(*record, bytes, now);
    decltype(Table::Row::template fieldOf<&Record::timeStampSmooth>())::set(*record, bytes, now);
}

// Gives the code of the last address's copy.
template <class Table>
uint32_t putPrimaryKey(uint32_t* keyWord, void* key, const typename Table::Record* record) {
    *keyWord = Table::Primary::word;
    return Table::Primary::put(static_cast<std::byte*>(key), *record);
}

// ---- Objects

template <class Table>
uint32_t createObject(uint32_t objType, uint32_t connType, Mcast6DbHandle* object) {
    static_assert(releasesEach(0, Table::onCreate.created, Table::onCreate.failed), "onCreate: releases nothing");
    const uint32_t code = Table::accessors.create(objType, connType, object);
    const Step step{.code = code, .objType = objType, .connType = connType};
    if (code != kOk) return conclude<Table, Table::onCreate, &CreateOutcomes::failed>(step);
    return conclude<Table, Table::onCreate, &CreateOutcomes::created>(step);
}

template <class Table, uint32_t kCounter>
void releaseObject(Mcast6DbHandle object) {
    Table::accessors.release(object);
    MCAST6_DfxCounterInc(kCounter);
}

// Makes '*slot' hold a cached object that was just reset.
template <class Table, const CacheOutcomes& kOn>
uint32_t obtainCached(uint32_t objType, uint32_t connType, Mcast6DbHandle* slot, const Mcast6DbCacheFuncs& funcs) {
    static_assert(releasesEach(0, kOn.createFailed, kOn.resetFailed), "cached objects are never released");
    Step step{.object = *slot, .objType = objType, .connType = connType};
    if (step.object == 0) {
        step.code = funcs.create(objType, connType, &step.object);
        if (step.code != kOk) return conclude<Table, kOn, &CacheOutcomes::createFailed>(step);
    }
    step.code = funcs.reset(step.object);
    if (step.code != kOk) return conclude<Table, kOn, &CacheOutcomes::resetFailed>(step);
    *slot = step.object;
    return kOk;
}

// ---- Field setters of updates: a list, called in order and to the end; the codes are ORed

template <auto kSetter, auto kMember>
struct Sets {
    static uint32_t apply(Mcast6DbHandle object, const RecordOf<kMember>& record) {
        if constexpr (std::is_invocable_v<decltype(kSetter), Mcast6DbHandle, const void*, uint32_t>) {
            return kSetter(object, &(record.*kMember), sizeof(TypeOf<kMember>));
        } else {
            return kSetter(object, valueOf<kMember>(record));
        }
    }
};

template <auto kSetter>
struct SetsNow {
    static uint32_t apply(Mcast6DbHandle object, const auto& /*record*/) {
        return kSetter(object, static_cast<uint64_t>(MCAST6_DB_GetSysTime()));
    }
};

// Sets the smooth time stamp of an object to the current time, and the creation time to the same when asked.
template <class Setter>
uint32_t setStamps(Setter setSmooth, Setter setCreate, Mcast6DbHandle object, bool withCreate) {
    const auto now = static_cast<uint64_t>(MCAST6_DB_GetSysTime());
    uint32_t code = setSmooth(object, now);
    if (withCreate) code |= setCreate(object, now);
    return code;
}

template <class... Setters>
struct FieldSetters {
    static uint32_t apply(Mcast6DbHandle object, const auto& record) {
        uint32_t code = kOk;
        ((code |= Setters::apply(object, record)), ...);
        return code;
    }
};

// ---- Field getters of reads by field: a list, called in order and to the end; the codes are ORed. A getter that fails
// leaves its member as it is.

// A scalar, or bytes copied as long as the engine says, up to the member's width; the copy's code counts too.
template <auto kGetter, auto kMember>
struct Gets {
    using Stored = TypeOf<kMember>;
    static uint32_t apply(Mcast6DbHandle object, RecordOf<kMember>& record) {
        if constexpr (std::is_integral_v<Stored>) {
            Stored value{};
            const uint32_t code = kGetter(object, &value);
            if (code == kOk) assign<kMember>(record, value);
            return code;
        } else {
            void* bytes = nullptr;
            uint32_t length = 0;
            const uint32_t code = kGetter(object, &bytes, &length);
            if (code != kOk) return code;
            return static_cast<uint32_t>(memcpy_s(&(record.*kMember), sizeof(Stored), bytes, length));
        }
    }
};

// An address; only the getter's code counts.
template <auto kGetter, auto kMember>
struct GetsAddress {
    static uint32_t apply(Mcast6DbHandle object, RecordOf<kMember>& record) {
        void* bytes = nullptr;
        uint32_t length = 0;
        const uint32_t code = kGetter(object, &bytes, &length);
        if (code == kOk) MCAST6_DB_GetAddress(&(record.*kMember), sizeof(Mcast6Ipv6Addr), bytes, length);
        return code;
    }
};

template <class... Getters>
struct FieldGetters {
    static uint32_t apply(Mcast6DbHandle object, auto& record) {
        uint32_t code = kOk;
        ((code |= Getters::apply(object, record)), ...);
        return code;
    }
};

// ---- One record

template <class Table>
uint32_t readRow(Mcast6DbHandle object, const typename Table::Record& record, std::byte (&row)[Table::Row::size]) {
    const auto key = Table::Primary::of(record);
    return db_read_obj_with_buf(object, &key.descriptor, key.bytes, row, sizeof row);
}

template <class Table, const KeyedReadOutcomes& kOn>
uint32_t keyedRead(typename Table::Record* record, Mcast6DbHandle object) {
    static_assert(releasesEach(0, kOn.found, kOn.absent, kOn.readFailed), "a given object is its giver's to release");
    std::byte row[Table::Row::size]{};
    const Step step{.code = readRow<Table>(object, *record, row), .object = object};
    if (step.code == kNoSuchObject) return conclude<Table, kOn, &KeyedReadOutcomes::absent>(step);
    if (step.code != kOk) return conclude<Table, kOn, &KeyedReadOutcomes::readFailed>(step);
    Table::get(row, record);
    return conclude<Table, kOn, &KeyedReadOutcomes::found>(step);
}

// A keyed read with an object made for it, which is released whatever the read says.
template <class Table, const GivenObjectOutcomes& kOn, const KeyedReadOutcomes& kOnRead>
uint32_t readWithOwnObject(typename Table::Record* record) {
    static_assert(releasesEach(0, kOn.nullRecord, kOn.createFailed), "a read: there is no object to release yet");
    if constexpr (kOn.nullRecord.isTested) {
        if (record == nullptr) return conclude<Table, kOn, &GivenObjectOutcomes::nullRecord>({});
    }
    Step step;
    step.code = Table::objects.create(kReadObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &GivenObjectOutcomes::createFailed>(step);
    const uint32_t code = keyedRead<Table, kOnRead>(record, step.object);
    Table::objects.release(step.object);
    return code;
}

template <class Table, const ReadOutcomes& kOn = Table::onRead>
uint32_t readRecord(typename Table::Record* record) {
    static_assert(
        releasesEach(0, kOn.nullRecord, kOn.createFailed) && releasesEach(1, kOn.found, kOn.absent, kOn.readFailed),
        "onRead: after the create every way out releases the object exactly once");
    if constexpr (kOn.nullRecord.isTested) {
        if (record == nullptr) return conclude<Table, kOn, &ReadOutcomes::nullRecord>({});
    }
    Step step;
    step.code = Table::objects.create(kReadObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &ReadOutcomes::createFailed>(step);

    std::byte row[Table::Row::size]{};
    step.code = readRow<Table>(step.object, *record, row);
    if (step.code == kNoSuchObject) return conclude<Table, kOn, &ReadOutcomes::absent>(step);
    if (step.code != kOk) return conclude<Table, kOn, &ReadOutcomes::readFailed>(step);
    Table::get(row, record);
    return conclude<Table, kOn, &ReadOutcomes::found>(step);
}

// A write from the object on: converts, sets all fields, writes, and releases the object on every way out.
template <class Table, const auto& kOn>
uint32_t writeOn(Mcast6DbHandle object, const typename Table::Record* record) {
    static_assert(releasesEach(1, kOn.setFailed, kOn.written, kOn.code13044, kOn.writeFailed),
                  "onWrite: after the create every way out releases the object exactly once");
    Step step{.object = object};
    std::byte row[Table::Row::size]{};
    Table::set(record, row);
    step.code = Table::accessors.setAllFields(step.object, row, sizeof row);
    if (step.code != kOk) return conclude<Table, kOn, &WriteOutcomes::setFailed>(step);

    step.code = db_write_obj(step.object);
    if (step.code == kOk) return conclude<Table, kOn, &WriteOutcomes::written>(step);
    if (step.code == kExistsOrAbsent) return conclude<Table, kOn, &WriteOutcomes::code13044>(step);
    if constexpr (requires { kOn.tableFull; }) {
        static_assert(releasesEach(1, kOn.tableFull), "onWrite: a full table releases the object too");
        if (step.code == kTableFull) return conclude<Table, kOn, &LimitedWriteOutcomes::tableFull>(step);
    }
    return conclude<Table, kOn, &WriteOutcomes::writeFailed>(step);
}

template <class Table, const auto& kOn = Table::onWrite>
uint32_t writeRecord(const typename Table::Record* record) {
    static_assert(releasesEach(0, kOn.nullRecord, kOn.createFailed), "onWrite: there is no object to release yet");
    if constexpr (kOn.nullRecord.isTested) {
        if (record == nullptr) return conclude<Table, kOn, &WriteOutcomes::nullRecord>({});
    }
    Step step;
    step.code = Table::objects.create(kWriteObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &WriteOutcomes::createFailed>(step);

    return writeOn<Table, kOn>(step.object, record);
}

// An update from the set object on: updates the record with this key and releases the object on every way out.
template <class Table, const UpdateOutcomes& kOn>
uint32_t updateOn(Mcast6DbHandle object, const KeyBuffer<Table::Primary::word>& key) {
    static_assert(releasesEach(1, kOn.updated, kOn.code13044, kOn.updateFailed),
                  "an update: after the create every way out releases the object exactly once");
    const Step step{.code = db_update_obj(object, &key.descriptor, key.bytes), .object = object};
    if (step.code == kOk) return conclude<Table, kOn, &UpdateOutcomes::updated>(step);
    if (step.code == kExistsOrAbsent) return conclude<Table, kOn, &UpdateOutcomes::code13044>(step);
    return conclude<Table, kOn, &UpdateOutcomes::updateFailed>(step);
}

// Changes the stored record with the key of 'record' in the fields that 'setFields' sets on the object it is given. A
// failed setter ends the update.
template <class Table, const UpdateOutcomes& kOn, class SetFields>
uint32_t updateRecordWith(const typename Table::Record* record, SetFields setFields) {
    static_assert(releasesEach(0, kOn.nullRecord, kOn.createFailed) && releasesEach(1, kOn.setFailed),
                  "an update: after the create every way out releases the object exactly once");
    if constexpr (kOn.nullRecord.isTested) {
        if (record == nullptr) return conclude<Table, kOn, &UpdateOutcomes::nullRecord>({});
    }
    Step step;
    step.code = Table::objects.create(kUpdateObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &UpdateOutcomes::createFailed>(step);

    const auto key = Table::Primary::of(*record);
    step.code = setFields(step.object, record);
    if (step.code != kOk) return conclude<Table, kOn, &UpdateOutcomes::setFailed>(step);
    return updateOn<Table, kOn>(step.object, key);
}

// The same with a list of setters.
template <class Table, const UpdateOutcomes& kOn, class Setters>
uint32_t updateRecord(const typename Table::Record* record) {
    return updateRecordWith<Table, kOn>(record, [](Mcast6DbHandle object, const typename Table::Record* given) {
        return Setters::apply(object, *given);
    });
}

template <class Table, const auto& kOn = Table::onRemove>
uint32_t removeRecord(const typename Table::Record* record) {
    static_assert(releasesEach(0, kOn.nullRecord, kOn.createFailed) &&
                      releasesEach(1, kOn.removed, kOn.code13044, kOn.removeFailed),
                  "onRemove: after the create every way out releases the object exactly once");
    if constexpr (kOn.nullRecord.isTested) {
        if (record == nullptr) return conclude<Table, kOn, &RemoveOutcomes::nullRecord>({});
    }
    Step step;
    step.code = Table::objects.create(kRemoveObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &RemoveOutcomes::createFailed>(step);

    const auto key = Table::Primary::of(*record);
    step.code = db_remove_obj(step.object, &key.descriptor, key.bytes);
    if (step.code == kOk) return conclude<Table, kOn, &RemoveOutcomes::removed>(step);
    if (step.code == kExistsOrAbsent) return conclude<Table, kOn, &RemoveOutcomes::code13044>(step);
    if constexpr (requires { kOn.code15005; }) {
        static_assert(releasesEach(1, kOn.code15005), "onRemove: an absent record releases the object too");
        if (step.code == kNoSuchObject) return conclude<Table, kOn, &RemoveOrAbsentOutcomes::code15005>(step);
    }
    return conclude<Table, kOn, &RemoveOutcomes::removeFailed>(step);
}

// ---- Iterators

// Takes the effects of a failed construction; the handle is null.
template <class Table, const auto& kOn, auto kWay>
Mcast6DbRes* concludeNull(const Step& step) {
    conclude<Table, kOn, kWay>(step);
    return nullptr;
}

template <class Table, const IterOutcomes& kOn>
Mcast6DbRes* createIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    static_assert(releasesEach(0, kOn.failed), "a failed iterator has left no object");
    Mcast6DbRes* const iterator = MCAST6_DB_CreateIterCommon(&Table::objects, descriptor, key);
    if (iterator == nullptr) conclude<Table, kOn, &IterOutcomes::failed>({});
    return iterator;
}

// Sets the property that every root iterator gets: one record a step.
inline uint32_t setOneRecordPerStep(Mcast6DbHandle rootIter) {
    constexpr uint32_t kRecordsPerStep = 0;
    constexpr uint32_t kOne = 1;
    return db_set_root_iterator_property(rootIter, kRecordsPerStep, &kOne, sizeof kOne);
}

// The steps of MCAST6_DB_CreateIterCommonWithDbRes, each with its own report. 'built' is written on success only.
template <class Table, const auto& kOn>
uint32_t buildIterInto(Mcast6DbRes& built, const Mcast6DbKeyDesc* descriptor, const void* key) {
    using On = std::remove_cvref_t<decltype(kOn)>;
    static_assert(releasesEach(0, kOn.createFailed) && releasesEach(1, kOn.rootIterFailed, kOn.propertyFailed),
                  "a built iterator: after the create every failure releases the object exactly once");
    Step step;
    step.code = Table::objects.create(kIterateObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &On::createFailed>(step);

    Mcast6DbHandle rootIter = 0;
    step.code = db_create_root_iter(step.object, descriptor, key, &rootIter);
    if (step.code != kOk) return conclude<Table, kOn, &On::rootIterFailed>(step);
    step.code = setOneRecordPerStep(rootIter);
    if (step.code != kOk) return conclude<Table, kOn, &On::propertyFailed>(step);
    built = {step.object, rootIter};
    return kOk;
}

// Puts what was built into a handle from the memory hook; null when there is no memory.
template <class Table, const auto& kOn>
Mcast6DbRes* allocateIter(const Mcast6DbRes& built) {
    using On = std::remove_cvref_t<decltype(kOn)>;
    static_assert(releasesEach(1, kOn.allocationFailed), "a failed allocation releases the object exactly once");
    auto* const iterator = static_cast<Mcast6DbRes*>(MCAST6_DB_Malloc(sizeof built));
    if (iterator == nullptr) {
        conclude<Table, kOn, &On::allocationFailed>({.object = built.object});
        return nullptr;
    }
    *iterator = built;
    return iterator;
}

// The steps of MCAST6_DB_CreateIterCommon, each with its own report.
template <class Table, const BuildOutcomes& kOn>
Mcast6DbRes* buildIter(const Mcast6DbKeyDesc* descriptor, const void* key) {
    Mcast6DbRes built{};
    if (buildIterInto<Table, kOn>(built, descriptor, key) != kOk) return nullptr;
    return allocateIter<Table, kOn>(built);
}

// Reads the record at an iterator's position.
template <class Table>
uint32_t readPosition(const Mcast6DbRes& iterator, std::byte (&row)[Table::Row::size]) {
    return db_read_obj_with_buf(iterator.object, nullptr, nullptr, row, sizeof row);
}

// 'kGet' is given where the entries of a table are converted otherwise than its keyed reads.
template <class Table, const EntryOutcomes& kOn = Table::onEntry, auto kGet = Table::get>
uint32_t nextRecord(const Mcast6DbRes* iterator, typename Table::Record* record) {
    static_assert(
        releasesEach(0, kOn.nullParameter, kOn.ended, kOn.nextFailed, kOn.entry, kOn.vanished, kOn.readFailed),
        "a step keeps the iterator's object");
    if constexpr (kOn.nullParameter.isTested) {
        if (iterator == nullptr || record == nullptr) return conclude<Table, kOn, &EntryOutcomes::nullParameter>({});
    }
    Step step{.code = db_root_iterator_next(iterator->rootIter)};
    if (step.code == kEndOfIteration) return conclude<Table, kOn, &EntryOutcomes::ended>(step);
    if (step.code != kOk) return conclude<Table, kOn, &EntryOutcomes::nextFailed>(step);

    std::byte row[Table::Row::size]{};
    step.code = readPosition<Table>(*iterator, row);
    if (step.code == kNoSuchObject) return conclude<Table, kOn, &EntryOutcomes::vanished>(step);
    if (step.code != kOk) return conclude<Table, kOn, &EntryOutcomes::readFailed>(step);
    kGet(row, record);
    return conclude<Table, kOn, &EntryOutcomes::entry>(step);
}

// Steps an iterator and has 'readItem' read the record field by field from the handle's object.
template <class Table, const NextItemOutcomes& kOn, class ReadItem>
uint32_t nextItem(const Mcast6DbRes* iterator, typename Table::Record* record, ReadItem readItem) {
    static_assert(releasesEach(0, kOn.nullHandle, kOn.ended, kOn.nextFailed, kOn.entry),
                  "a step keeps the iterator's object");
    if constexpr (kOn.nullHandle.isTested) {
        if (iterator == nullptr) return conclude<Table, kOn, &NextItemOutcomes::nullHandle>({});
    }
    const Step step{.code = db_root_iterator_next(iterator->rootIter), .object = iterator->object};
    if (step.code == kEndOfIteration) return conclude<Table, kOn, &NextItemOutcomes::ended>(step);
    if (step.code != kOk) return conclude<Table, kOn, &NextItemOutcomes::nextFailed>(step);
    readItem(iterator->object, record);
    return conclude<Table, kOn, &NextItemOutcomes::entry>(step);
}

// Releases a handle with its object; the root iterator goes with the object.
template <class Table>
void releaseIter(Mcast6DbRes* iterator) {
    if (iterator == nullptr) return;
    Table::objects.release(iterator->object);
    MCAST6_DB_Free(iterator);
}

// ---- Counts

// Where the engine puts a count: 32 bits are read, and an engine that fills 64 finds room.
struct alignas(uint64_t) CountWord {
    uint32_t low = 0;
    uint32_t high = 0;
};

// Counts all records with an object of type 9; '*count' is written on success.
template <class Table>
uint32_t countAll(uint32_t* count) {
    Mcast6DbHandle object = 0;
    uint32_t code = Table::objects.create(kCountObject, kConnType, &object);
    if (code != kOk) return code;
    CountWord counted;
    code = db_get_table_record_count(object, &counted.low);
    Table::objects.release(object);
    if (code == kOk) *count = counted.low;
    return code;
}

// Counts the records with a key with an object of type 9; '*count' is written on success. A failed count is told after
// the object is gone.
template <class Table, const CountOutcomes& kOn>
uint32_t countByKey(const Mcast6DbKeyDesc* descriptor, const void* key, uint32_t* count) {
    static_assert(releasesEach(0, kOn.createFailed, kOn.countFailed), "the count releases its object itself");
    Step step;
    step.code = Table::objects.create(kCountObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &CountOutcomes::createFailed>(step);
    CountWord counted;
    step.code = db_get_table_record_count_by_key(step.object, descriptor, key, &counted.low);
    Table::objects.release(step.object);
    if (step.code != kOk) return conclude<Table, kOn, &CountOutcomes::countFailed>(step);
    *count = counted.low;
    return kOk;
}

// Gives the number of records with a key; what it gives when the object cannot be made or the count fails, the outcomes
// say.
template <class Table, const MatchOutcomes& kOn>
uint32_t countMatches(const Mcast6DbKeyDesc* descriptor, const void* key) {
    static_assert(releasesEach(0, kOn.createFailed) && releasesEach(1, kOn.absent, kOn.countFailed),
                  "a count: after the create every way out releases the object exactly once");
    Step step;
    step.code = Table::objects.create(kCountObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &MatchOutcomes::createFailed>(step);
    CountWord counted;
    step.code = db_get_table_record_count_by_key(step.object, descriptor, key, &counted.low);
    if (step.code == kNoSuchObject) return conclude<Table, kOn, &MatchOutcomes::absent>(step);
    if (step.code != kOk) return conclude<Table, kOn, &MatchOutcomes::countFailed>(step);
    Table::objects.release(step.object);
    return counted.low;
}

}  // namespace mcast6
