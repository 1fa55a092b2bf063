// Operations on one record: read, write, update, remove.
#pragma once

#include "frame/conversions.h"
#include "frame/field_access.h"
#include "frame/objects.h"
#include "mcast6_platform/engine.h"

namespace mcast6 {

template <class Table>
uint32_t readRow(Mcast6DbHandle object, const typename Table::Record& record, RowOf<Table>& row) {
    const auto key = Table::Primary::of(record);
    return db_read_obj_with_buf(object, &key.descriptor, key.bytes, row.data(), row.size);
}

template <class Table, const KeyedReadOutcomes& kOn>
uint32_t keyedRead(typename Table::Record* record, Mcast6DbHandle object) {
    static_assert(releasesEach(0, kOn.found, kOn.absent, kOn.readFailed),
                  "the caller releases the object that it passes");
    RowOf<Table> row;
    const Step step{.code = readRow<Table>(object, *record, row), .object = object};
    if (step.code == kNoSuchObject) return conclude<Table, kOn, &KeyedReadOutcomes::absent>(step);
    if (step.code != kOk) return conclude<Table, kOn, &KeyedReadOutcomes::readFailed>(step);
    Table::get(row.data(), record);
    return conclude<Table, kOn, &KeyedReadOutcomes::found>(step);
}

// A keyed read with its own object, which is released whatever the result.
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

// Whether the row of a read is converted before its object is released, or after.
enum class Conversion { beforeRelease, afterRelease };

template <class Table, Conversion kConversion = Conversion::beforeRelease, const ReadOutcomes& kOn = Table::onRead>
uint32_t readRecord(typename Table::Record* record) {
    static_assert(
        releasesEach(0, kOn.nullRecord, kOn.createFailed) && releasesEach(1, kOn.found, kOn.absent, kOn.readFailed),
        "onRead: after the create every exit releases the object exactly once");
    if constexpr (kOn.nullRecord.isTested) {
        if (record == nullptr) return conclude<Table, kOn, &ReadOutcomes::nullRecord>({});
    }
    Step step;
    step.code = Table::objects.create(kReadObject, kConnType, &step.object);
    if (step.code != kOk) return conclude<Table, kOn, &ReadOutcomes::createFailed>(step);

    RowOf<Table> row;
    step.code = readRow<Table>(step.object, *record, row);
    if (step.code == kNoSuchObject) return conclude<Table, kOn, &ReadOutcomes::absent>(step);
    if (step.code != kOk) return conclude<Table, kOn, &ReadOutcomes::readFailed>(step);
    if constexpr (kConversion == Conversion::beforeRelease) Table::get(row.data(), record);
    const uint32_t result = conclude<Table, kOn, &ReadOutcomes::found>(step);
    if constexpr (kConversion == Conversion::afterRelease) Table::get(row.data(), record);
    return result;
}

// The part of a write that follows the create: converts, sets all fields, writes, and releases the object at every
// exit.
template <class Table, const auto& kOn>
uint32_t writeOn(Mcast6DbHandle object, const typename Table::Record* record) {
    static_assert(releasesEach(1, kOn.setFailed, kOn.written, kOn.code13044, kOn.writeFailed),
                  "onWrite: after the create every exit releases the object exactly once");
    Step step{.object = object};
    RowOf<Table> row;
    Table::set(record, row.data());
    step.code = Table::accessors.setAllFields(step.object, row.data(), row.size);
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

// The part of an update that follows the setters: updates the record with this key and releases the object at every
// exit.
template <class Table, const UpdateOutcomes& kOn>
uint32_t updateOn(Mcast6DbHandle object, const KeyBuffer<Table::Primary::word>& key) {
    static_assert(releasesEach(1, kOn.updated, kOn.code13044, kOn.updateFailed),
                  "an update: after the create every exit releases the object exactly once");
    const Step step{.code = db_update_obj(object, &key.descriptor, key.bytes), .object = object};
    if (step.code == kOk) return conclude<Table, kOn, &UpdateOutcomes::updated>(step);
    if (step.code == kExistsOrAbsent) return conclude<Table, kOn, &UpdateOutcomes::code13044>(step);
    return conclude<Table, kOn, &UpdateOutcomes::updateFailed>(step);
}

// Updates the stored record with the key of 'record': the fields that 'setFields' sets on the object. A failed setter
// ends the update.
template <class Table, const UpdateOutcomes& kOn, class SetFields>
uint32_t updateRecordWith(const typename Table::Record* record, SetFields setFields) {
    static_assert(releasesEach(0, kOn.nullRecord, kOn.createFailed) && releasesEach(1, kOn.setFailed),
                  "an update: after the create every exit releases the object exactly once");
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

// As updateRecordWith, with a list of setters.
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
                  "onRemove: after the create every exit releases the object exactly once");
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

}  // namespace mcast6
