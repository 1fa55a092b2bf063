// Writing, updating, removing, reading and counting records.
#include <array>
#include <cstring>

#include "platform/engine/answers.h"
#include "platform/engine/engine.h"

namespace mcast6::engine {

namespace {

// What is wrong with a call on an object of the wanted type that names a primary key, or MCAST6_DB_OK.
uint32_t checkKeyedCall(const Object* object, ObjType wanted, const void* keyDesc, const void* key) {
    if (object == nullptr) return MCAST6_DB_BAD_HANDLE;
    if (object->type != wanted) return MCAST6_DB_BAD_OPERATION;
    if (keyDesc == nullptr || key == nullptr) return MCAST6_DB_BAD_ARGUMENT;
    return keyWordAt(keyDesc) == object->facts->primaryWord ? MCAST6_DB_OK : MCAST6_DB_BAD_KEY;
}

// A count is 64 bits wide in a place that is declared, and maybe aligned, as 32.
void fillCount(uint32_t* count, uint64_t records) { std::memcpy(count, &records, sizeof records); }

uint32_t readByKey(store::Store& store, const Object& object, const void* key, void* buffer) {
    const store::Answer answer = store.get(object.facts->id, keyBytes(key), static_cast<std::byte*>(buffer));
    return codeOf(answer, MCAST6_DB_NO_SUCH_RECORD);
}

// The same, and keeps the record for the getters. A function of its own, like the read at a position, so that the hot
// path, a read through a cache object, spills no registers for it.
[[gnu::noinline]] uint32_t readAndKeep(store::Store& store, Object& object, const void* key, void* buffer) {
    const uint32_t code = readByKey(store, object, key, buffer);
    if (code != MCAST6_DB_OK) return code;
    std::memcpy(object.row.data(), buffer, object.facts->recordSize);
    object.hasRead = true;
    return MCAST6_DB_OK;
}

// What is wrong with a place for a record of the object's table.
uint32_t checkBuffer(const Object& object, const void* buffer, uint32_t length) {
    if (buffer == nullptr) return MCAST6_DB_BAD_ARGUMENT;
    return length == object.facts->recordSize ? MCAST6_DB_OK : MCAST6_DB_BAD_LENGTH;
}

[[gnu::noinline]] uint32_t readAtPosition(const Object& object, void* buffer, uint32_t length) {
    if (object.type != ObjType::iterate) return refused(MCAST6_DB_BAD_OPERATION);
    if (const uint32_t wrong = checkBuffer(object, buffer, length); wrong != MCAST6_DB_OK) return refused(wrong);
    if (object.lastStepped == nullptr) return refused(MCAST6_DB_BAD_OPERATION);
    if (object.lastStepped->place != Iterator::Place::onRecord) return MCAST6_DB_NO_SUCH_RECORD;
    return codeOf(object.lastStepped->scan->read(static_cast<std::byte*>(buffer)), MCAST6_DB_NO_SUCH_RECORD);
}

}  // namespace

uint32_t Engine::write(uint64_t object) noexcept {
    return guarded([&] {
        const Object* written = objects_.find(object);
        if (written == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
        if (written->type != ObjType::write || written->fieldsSet == 0) return refused(MCAST6_DB_BAD_OPERATION);
        return codeOf(front().put(written->facts->id, written->row.data()), MCAST6_DB_STORE_FAILED);
    });
}

uint32_t Engine::update(uint64_t object, const void* keyDesc, const void* key) noexcept {
    return guarded([&] {
        const Object* changes = objects_.find(object);
        const uint32_t wrong = checkKeyedCall(changes, ObjType::update, keyDesc, key);
        if (wrong != MCAST6_DB_OK) return refused(wrong);
        if (changes->fieldsSet == 0) return refused(MCAST6_DB_BAD_OPERATION);
        return codeOf(front().patch(changes->facts->id, keyBytes(key), changes->row.data(), changes->fieldsSet),
                      MCAST6_DB_EXISTS_OR_ABSENT);
    });
}

uint32_t Engine::remove(uint64_t object, const void* keyDesc, const void* key) noexcept {
    return guarded([&] {
        const Object* remover = objects_.find(object);
        const uint32_t wrong = checkKeyedCall(remover, ObjType::remove, keyDesc, key);
        if (wrong != MCAST6_DB_OK) return refused(wrong);
        const TableFacts& facts = *remover->facts;
        return codeOf(front().erase(facts.id, keyBytes(key)), facts.table->absentRemoval);
    });
}

uint32_t Engine::read(uint64_t object, const void* keyDesc, const void* key, void* buffer, uint32_t length) noexcept {
    return guarded([&] {
        Object* reader = objects_.find(object);
        uint32_t wrong = checkKeyedCall(reader, ObjType::read, keyDesc, key);
        if (wrong == MCAST6_DB_OK) wrong = checkBuffer(*reader, buffer, length);
        if (wrong == MCAST6_DB_OK) {
            return reader->isCache ? readByKey(front(), *reader, key, buffer)
                                   : readAndKeep(front(), *reader, key, buffer);
        }
        const bool isPositional = reader != nullptr && keyDesc == nullptr && key == nullptr;
        return isPositional ? readAtPosition(*reader, buffer, length) : refused(wrong);
    });
}

uint32_t Engine::count(uint64_t object, uint32_t* count) noexcept {
    return guarded([&] {
        const Object* counter = objects_.find(object);
        if (counter == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
        if (counter->type != ObjType::count) return refused(MCAST6_DB_BAD_OPERATION);
        if (count == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
        uint64_t records = 0;
        const uint32_t code = codeOf(store_->count(counter->facts->id, records), MCAST6_DB_STORE_FAILED);
        if (code == MCAST6_DB_OK) fillCount(count, records);
        return code;
    });
}

// Counts the records with a key of a secondary index, or with a primary key: one or none.
uint32_t Engine::countWithKey(const TableFacts& facts, uint32_t keyWord, const std::byte* key, uint64_t& records) {
    if (keyWord == facts.primaryWord) {
        std::array<std::byte, schema::kMaxRecordSize> row;
        const store::Answer answer = store_->get(facts.id, key, row.data());
        records = answer == store::Answer::done ? 1 : 0;
        return codeOf(answer, MCAST6_DB_OK);
    }
    const std::optional<uint32_t> index = facts.secondaryIndex(keyWord);
    if (!index) return refused(MCAST6_DB_BAD_KEY);
    return codeOf(store_->countByKey(facts.id, *index, key, records), MCAST6_DB_STORE_FAILED);
}

uint32_t Engine::countByKey(uint64_t object, const void* keyDesc, const void* key, uint32_t* count) noexcept {
    return guarded([&] {
        const Object* counter = objects_.find(object);
        if (counter == nullptr) return refused(MCAST6_DB_BAD_HANDLE);
        if (counter->type != ObjType::count) return refused(MCAST6_DB_BAD_OPERATION);
        if (keyDesc == nullptr || key == nullptr || count == nullptr) return refused(MCAST6_DB_BAD_ARGUMENT);
        uint64_t records = 0;
        const uint32_t code = countWithKey(*counter->facts, keyWordAt(keyDesc), keyBytes(key), records);
        if (code == MCAST6_DB_OK) fillCount(count, records);
        return code;
    });
}

}  // namespace mcast6::engine
