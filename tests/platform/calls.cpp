// The engine part of the recording platform: generic calls and accessors.
//
// Each call does the same: checks and names the arguments, asks the script, then the engine behind or the recorder's
// default, and records the line with the outcome.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <functional>

#include "mcast6_platform/engine.h"
#include "platform/schema/accessors.h"
#include "tests/platform/state.h"

using namespace mcast6::recording;
namespace schema = mcast6::schema;

namespace {

constexpr size_t kDescriptorLength = 16;

std::string arrow(uint32_t code) { return code != 0 ? " -> " + std::to_string(code) : ""; }

bool isClear(const void* bytes, size_t length) {
    const auto* first = static_cast<const uint8_t*>(bytes);
    return std::all_of(first, first + length, [](uint8_t byte) { return byte == 0; });
}

std::string wordText(uint32_t word) {
    char text[9];
    std::snprintf(text, sizeof text, "%08" PRIx32, word);
    return text;
}

uint32_t wordAt(const void* place) {
    uint32_t word = 0;
    std::memcpy(&word, place, sizeof word);
    return word;
}

void checkWord(uint32_t word, const Thing* thing) {
    if (thing == nullptr) return;
    const schema::Table& table = tableOf(thing->table);
    if (table.primary.word == word) return;
    for (const schema::Key& index : table.indexes) {
        if (index.word == word) return;
    }
    state().noteMisuse("key word " + wordText(word) + ", which " + std::string(table.name) + " does not have");
}

uint32_t checkedWord(const void* keyDesc, const Thing* thing) {
    const uint32_t word = wordAt(keyDesc);
    const auto* rest = static_cast<const uint8_t*>(keyDesc) + sizeof word;
    if (!isClear(rest, kDescriptorLength - sizeof word)) {
        state().noteMisuse("key descriptor with " + hexOf(rest, kDescriptorLength - sizeof word) + " after the word");
    }
    checkWord(word, thing);
    return word;
}

// "none" or "key=<word>:<bytes>".
std::string keyText(uint32_t word, const void* key) {
    const size_t length = word & 0xFFFF;
    if (length > schema::kMaxKeyLength) return "key=" + wordText(word) + ":?";
    return "key=" + wordText(word) + ":" + hexOf(key, length);
}

std::string keyText(const void* keyDesc, const void* key, const Thing* thing, bool mayBeNull) {
    if (keyDesc == nullptr || key == nullptr) {
        if (!mayBeNull || keyDesc != key) state().noteMisuse("key or key descriptor missing");
        return "none";
    }
    return keyText(checkedWord(keyDesc, thing), key);
}

// Runs a call whose line begins with 'line'. 'succeed' does the work and may add to the line; it is not called when the
// script returns a failure or the handle is invalid.
uint32_t run(const std::string& function, std::string line, bool usable,
             const std::function<uint32_t(std::string& line)>& succeed) {
    const uint32_t scripted = state().script.answerTo(function, true).value_or(MCAST6_DB_OK);
    uint32_t code = scripted;
    if (code == MCAST6_DB_OK) code = usable ? succeed(line) : static_cast<uint32_t>(MCAST6_DB_BAD_HANDLE);
    state().note(line + arrow(code));
    return code;
}

std::string tableName(uint32_t table) { return std::string(tableOf(table).name); }

std::string fieldName(uint32_t table, uint32_t field) { return std::string(tableOf(table).fields[field].name); }

std::string scalarText(const void* value, uint32_t length) {
    uint64_t number = 0;
    std::memcpy(&number, value, std::min<size_t>(length, sizeof number));
    return std::to_string(number);
}

void checkLength(const std::string& what, uint32_t length, uint32_t expected) {
    if (length == expected) return;
    state().noteMisuse(what + " of " + std::to_string(length) + " bytes instead of " + std::to_string(expected));
}

template <class Queue>
auto takeFirst(Queue& queue) {
    auto first = std::move(queue.front());
    queue.pop_front();
    return first;
}

// Fills the handle that a create call returns; 'make' asks the engine behind.
template <class Make, class Add>
uint32_t give(uint64_t* handle, std::string& line, const Make& make, const Add& add) {
    if (handle == nullptr) {
        state().noteMisuse("null place for a handle");
        return MCAST6_DB_BAD_ARGUMENT;
    }
    uint64_t inner = 0;
    const uint32_t code = state().engine != nullptr ? make(&inner) : static_cast<uint32_t>(MCAST6_DB_OK);
    if (code != MCAST6_DB_OK) return code;
    *handle = add(inner);
    line += " -> " + state().nameOf(*handle);
    return code;
}

// A count is written to a 64-bit word that the caller has cleared.
uint32_t giveCount(uint32_t* count, const std::function<uint32_t(uint32_t*)>& ask) {
    State& recorder = state();
    if (count == nullptr) {
        recorder.noteMisuse("null place for a count");
        return MCAST6_DB_BAD_ARGUMENT;
    }
    if (!isClear(count, sizeof(uint64_t))) recorder.noteMisuse("count word not cleared");
    if (!recorder.script.counts.empty()) {
        const uint64_t records = takeFirst(recorder.script.counts);
        std::memcpy(count, &records, sizeof records);
        return MCAST6_DB_OK;
    }
    return recorder.engine != nullptr ? ask(count) : static_cast<uint32_t>(MCAST6_DB_OK);
}

uint64_t innerOf(const Thing* thing) { return thing != nullptr ? thing->inner : 0; }

uint32_t fillRead(Thing& object, bool keyed, const void* keyDesc, const void* key, void* buffer, uint32_t length) {
    State& recorder = state();
    if (!recorder.script.reads.empty()) {
        object.row = takeFirst(recorder.script.reads);
    } else if (recorder.engine != nullptr) {
        return recorder.engine->read(object.inner, keyDesc, key, buffer, length);
    } else if (keyed) {
        object.row.clear();
    }
    if (!object.row.empty()) std::memcpy(buffer, object.row.data(), std::min<size_t>(length, object.row.size()));
    return MCAST6_DB_OK;
}

}  // namespace

extern "C" {

uint32_t db_write_obj(uint64_t object) {
    const Thing* thing = state().find(object, Kind::object, "write");
    return run("db_write_obj", "write " + state().nameOf(object), thing != nullptr,
               [&](std::string&) { return state().engine != nullptr ? state().engine->write(thing->inner) : 0u; });
}

uint32_t db_update_obj(uint64_t object, const void* keyDesc, const void* key) {
    const Thing* thing = state().find(object, Kind::object, "update");
    const std::string keyed = keyText(keyDesc, key, thing, false);
    return run("db_update_obj", "update " + state().nameOf(object) + " " + keyed, thing != nullptr, [&](std::string&) {
        return state().engine != nullptr ? state().engine->update(thing->inner, keyDesc, key) : 0u;
    });
}

uint32_t db_remove_obj(uint64_t object, const void* keyDesc, const void* key) {
    const Thing* thing = state().find(object, Kind::object, "remove");
    const std::string keyed = keyText(keyDesc, key, thing, false);
    return run("db_remove_obj", "remove " + state().nameOf(object) + " " + keyed, thing != nullptr, [&](std::string&) {
        return state().engine != nullptr ? state().engine->remove(thing->inner, keyDesc, key) : 0u;
    });
}

uint32_t db_read_obj_with_buf(uint64_t object, const void* keyDesc, const void* key, void* buffer, uint32_t length) {
    Thing* thing = state().find(object, Kind::object, "read");
    const std::string keyed = keyText(keyDesc, key, thing, true);
    if (thing != nullptr) checkLength("read buffer", length, tableOf(thing->table).recordSize);
    if (buffer == nullptr) {
        state().noteMisuse("null read buffer");
    } else if (!isClear(buffer, length)) {
        state().noteMisuse("read buffer not cleared");
    }
    const std::string line = "read " + state().nameOf(object) + " " + keyed + " " + std::to_string(length);
    return run("db_read_obj_with_buf", line, thing != nullptr, [&](std::string&) -> uint32_t {
        if (buffer == nullptr) return MCAST6_DB_BAD_ARGUMENT;
        return fillRead(*thing, key != nullptr, keyDesc, key, buffer, length);
    });
}

uint32_t db_create_root_iter(uint64_t object, const void* keyDesc, const void* key, uint64_t* rootIter) {
    const Thing* thing = state().find(object, Kind::object, "root iterator");
    const std::string line = "root_iter " + state().nameOf(object) + " " + keyText(keyDesc, key, thing, true);
    return run("db_create_root_iter", line, thing != nullptr, [&](std::string& outcome) {
        const uint64_t inner = innerOf(thing);
        return give(
            rootIter, outcome,
            [&](uint64_t* made) { return state().engine->createRootIterator(inner, keyDesc, key, made); },
            [&](uint64_t made) { return state().addIterator(object, made); });
    });
}

uint32_t db_set_root_iterator_property(uint64_t rootIter, uint32_t property, const void* value, uint32_t length) {
    const Thing* thing = state().find(rootIter, Kind::iterator, "property");
    if (value == nullptr) state().noteMisuse("null property value");
    const std::string line =
        "property " + state().nameOf(rootIter) + " " + std::to_string(property) + " " + hexOf(value, length);
    return run("db_set_root_iterator_property", line, thing != nullptr, [&](std::string&) -> uint32_t {
        if (value == nullptr) return MCAST6_DB_BAD_ARGUMENT;
        return state().engine != nullptr ? state().engine->setProperty(thing->inner, property, value, length) : 0u;
    });
}

uint32_t db_root_iterator_next(uint64_t rootIter) {
    const Thing* thing = state().find(rootIter, Kind::iterator, "next");
    return run("db_root_iterator_next", "next " + state().nameOf(rootIter), thing != nullptr, [&](std::string&) {
        State& recorder = state();
        if (!recorder.script.steps.empty()) {
            recorder.things[thing->owner].row = takeFirst(recorder.script.steps);
            return 0u;
        }
        recorder.things[thing->owner].row.clear();
        return recorder.engine != nullptr ? recorder.engine->next(thing->inner) : 0u;
    });
}

uint32_t db_get_table_record_count(uint64_t object, uint32_t* count) {
    const Thing* thing = state().find(object, Kind::object, "count");
    return run("db_get_table_record_count", "count " + state().nameOf(object), thing != nullptr, [&](std::string&) {
        return giveCount(count, [&](uint32_t* place) { return state().engine->count(thing->inner, place); });
    });
}

uint32_t db_get_table_record_count_by_key(uint64_t object, const void* keyDesc, const void* key, uint32_t* count) {
    const Thing* thing = state().find(object, Kind::object, "count");
    const std::string line = "count_by_key " + state().nameOf(object) + " " + keyText(keyDesc, key, thing, false);
    return run("db_get_table_record_count_by_key", line, thing != nullptr, [&](std::string&) {
        return giveCount(
            count, [&](uint32_t* place) { return state().engine->countByKey(thing->inner, keyDesc, key, place); });
    });
}

uint32_t db_create_stmt(uint64_t object, uint32_t kind, const void* params, uint32_t paramCount) {
    const Thing* thing = state().find(object, Kind::object, "statement");
    if (params != nullptr || paramCount != 0) state().noteMisuse("statement with parameters");
    const std::string line = "stmt " + state().nameOf(object) + " " + std::to_string(kind);
    return run("db_create_stmt", line, thing != nullptr, [&](std::string&) {
        return state().engine != nullptr ? state().engine->createStatement(thing->inner, kind, params, paramCount) : 0u;
    });
}

uint32_t db_append_stmt_condition(uint64_t object, const char* keyName, uint32_t kind, uint32_t reserved1,
                                  const void* reserved2, uint32_t reserved3, const void* keyWord, const void* value,
                                  uint32_t valueLength) {
    const Thing* thing = state().find(object, Kind::object, "condition");
    if (reserved1 != 0 || reserved2 != nullptr || reserved3 != 0) {
        state().noteMisuse("condition with reserved arguments");
    }
    if (keyName == nullptr || keyWord == nullptr) state().noteMisuse("condition without key name or key word");
    std::string line = "condition " + state().nameOf(object) + " " + (keyName != nullptr ? keyName : "none") + " " +
                       std::to_string(kind) + " key=";
    if (keyWord != nullptr) {
        const uint32_t word = wordAt(keyWord);
        checkWord(word, thing);
        line += wordText(word) + ":";
    }
    line += value != nullptr ? hexOf(value, valueLength) : "none";
    return run("db_append_stmt_condition", line, thing != nullptr, [&](std::string&) {
        if (state().engine == nullptr) return 0u;
        return state().engine->appendCondition(thing->inner, keyName, kind, reserved1, reserved2, reserved3, keyWord,
                                               value, valueLength);
    });
}

uint32_t db_create_root_iterator_by_filter(uint64_t object, uint64_t* rootIter) {
    const Thing* thing = state().find(object, Kind::object, "filtered iterator");
    const std::string line = "filter_iter " + state().nameOf(object);
    return run("db_create_root_iterator_by_filter", line, thing != nullptr, [&](std::string& outcome) {
        const uint64_t inner = innerOf(thing);
        return give(
            rootIter, outcome, [&](uint64_t* made) { return state().engine->createFilteredIterator(inner, made); },
            [&](uint64_t made) { return state().addIterator(object, made); });
    });
}

uint32_t db_create_cache_root_iter(uint64_t object, const void* keyDesc, uint64_t* rootIter) {
    const Thing* thing = state().find(object, Kind::object, "cached iterator");
    if (keyDesc == nullptr) state().noteMisuse("cached iterator without key descriptor");
    const uint32_t word = keyDesc != nullptr ? checkedWord(keyDesc, thing) : 0;
    const std::string line = "cache_iter " + state().nameOf(object) + " " + wordText(word);
    return run("db_create_cache_root_iter", line, thing != nullptr, [&](std::string& outcome) {
        const uint64_t inner = innerOf(thing);
        return give(
            rootIter, outcome,
            [&](uint64_t* made) { return state().engine->createCachedIterator(inner, keyDesc, made); },
            [&](uint64_t made) {
                const uint64_t handle = state().addIterator(object, made);
                state().things[handle].isCached = true;
                state().things[handle].keyWord = word;
                return handle;
            });
    });
}

uint32_t db_reset_cache_root_iter(uint64_t rootIter, const void* key) {
    const Thing* thing = state().find(rootIter, Kind::iterator, "reset");
    if (key == nullptr) state().noteMisuse("cached iterator reset without key");
    std::string line = "reset_cache_iter " + state().nameOf(rootIter);
    line += thing != nullptr && key != nullptr ? " " + keyText(thing->keyWord, key) : " none";
    return run("db_reset_cache_root_iter", line, thing != nullptr, [&](std::string&) -> uint32_t {
        if (key == nullptr) return MCAST6_DB_BAD_ARGUMENT;
        return state().engine != nullptr ? state().engine->resetCachedIterator(thing->inner, key) : 0u;
    });
}

}  // extern "C"

namespace mcast6::accessors {

namespace {

std::string createLine(const char* verb, uint32_t table, uint32_t objType, uint32_t connType) {
    return std::string(verb) + " " + tableName(table) + " " + std::to_string(objType) + " " + std::to_string(connType);
}

// The row that getters read: the whole record, and room for any reported length. Its address is stable until the next
// step or read, as the contract promises for the bytes of a field.
Bytes& rowOf(Thing& object) {
    const size_t length = size_t{tableOf(object.table).recordSize} + kMostAnnounced;
    if (object.row.size() < length) object.row.resize(length);
    return object.row;
}

}  // namespace

uint32_t createObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) noexcept {
    const std::string line = createLine("create", table, objType, connType);
    return run("db_create_" + tableName(table) + "_obj", line, true, [&](std::string& outcome) {
        return give(
            object, outcome,
            [&](uint64_t* made) { return state().engine->createObject(table, objType, connType, made); },
            [&](uint64_t made) { return state().addObject(table, made); });
    });
}

uint32_t createCacheObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) noexcept {
    const std::string line = createLine("create_cache", table, objType, connType);
    return run("db_create_" + tableName(table) + "_cache_object", line, true, [&](std::string& outcome) {
        return give(
            object, outcome,
            [&](uint64_t* made) { return state().engine->createCacheObject(table, objType, connType, made); },
            [&](uint64_t made) { return state().addObject(table, made); });
    });
}

void releaseObject(uint32_t table, uint64_t object) noexcept {
    const Thing* thing = state().findOf(table, object, "release");
    state().note("release " + tableName(table) + " " + state().nameOf(object));
    if (thing == nullptr) return;
    if (state().engine != nullptr) state().engine->releaseObject(table, thing->inner);
    state().release(object);
}

uint32_t resetObject(uint32_t table, uint64_t object, uint32_t objType) noexcept {
    Thing* thing = state().findOf(table, object, "reset");
    const std::string line = "reset " + tableName(table) + " " + state().nameOf(object) + " " + std::to_string(objType);
    return run("db_reset_" + tableName(table) + "_object", line, thing != nullptr, [&](std::string&) {
        const uint32_t code =
            state().engine != nullptr ? state().engine->resetObject(table, thing->inner, objType) : 0u;
        if (code != 0) return code;
        thing->row.clear();
        state().dropIterators(object, false);
        return code;
    });
}

uint32_t resetCacheObject(uint32_t table, uint64_t object) noexcept {
    Thing* thing = state().findOf(table, object, "reset");
    const std::string line = "reset_cache " + tableName(table) + " " + state().nameOf(object);
    return run("db_reset_" + tableName(table) + "_cache_object", line, thing != nullptr, [&](std::string&) {
        const uint32_t code = state().engine != nullptr ? state().engine->resetCacheObject(table, thing->inner) : 0u;
        if (code != 0) return code;
        thing->row.clear();
        state().dropIterators(object, false);
        return code;
    });
}

uint32_t setAllFields(uint32_t table, uint64_t object, const void* row, uint32_t length) noexcept {
    const Thing* thing = state().findOf(table, object, "set");
    checkLength("row", length, tableOf(table).recordSize);
    if (row == nullptr) state().noteMisuse("null row");
    const std::string line = "set_all " + tableName(table) + " " + state().nameOf(object) + " " + hexOf(row, length);
    return run("db_set_" + tableName(table) + "_all_fields", line, thing != nullptr, [&](std::string&) {
        return state().engine != nullptr ? state().engine->setAllFields(table, thing->inner, row, length) : 0u;
    });
}

uint32_t setField(uint32_t table, uint32_t field, uint64_t object, const void* value, uint32_t length) noexcept {
    const schema::Field& description = tableOf(table).fields[field];
    const std::string name = fieldName(table, field);
    const Thing* thing = state().findOf(table, object, "set");
    checkLength(tableName(table) + "." + name, length, description.width);
    if (value == nullptr) state().noteMisuse("null bytes for " + tableName(table) + "." + name);
    const bool isNumber = description.kind == schema::FieldKind::scalar && value != nullptr;
    const std::string line = "set " + tableName(table) + "." + name + " " + state().nameOf(object) + " " +
                             (isNumber ? scalarText(value, length) : hexOf(value, length));
    return run("db_set_" + tableName(table) + "_" + name, line, thing != nullptr, [&](std::string&) {
        return state().engine != nullptr ? state().engine->setField(table, field, thing->inner, value, length) : 0u;
    });
}

uint32_t getField(uint32_t table, uint32_t field, uint64_t object, void* value) noexcept {
    const schema::Field& description = tableOf(table).fields[field];
    const std::string name = fieldName(table, field);
    Thing* thing = state().findOf(table, object, "get");
    const std::string line = "get " + tableName(table) + "." + name + " " + state().nameOf(object);
    return run("db_get_" + tableName(table) + "_" + name, line, thing != nullptr, [&](std::string&) -> uint32_t {
        if (state().engine != nullptr && thing->row.empty()) {
            return state().engine->getField(table, field, thing->inner, value);
        }
        const Bytes& row = rowOf(*thing);
        std::memcpy(value, row.data() + description.offset, description.width);
        return MCAST6_DB_OK;
    });
}

uint32_t getFieldBytes(uint32_t table, uint32_t field, uint64_t object, void** bytes, uint32_t* length) noexcept {
    const schema::Field& description = tableOf(table).fields[field];
    const std::string name = fieldName(table, field);
    const std::string function = "db_get_" + tableName(table) + "_" + name;
    Thing* thing = state().findOf(table, object, "get");
    const std::string line = "get " + tableName(table) + "." + name + " " + state().nameOf(object);
    return run(function, line, thing != nullptr, [&](std::string&) -> uint32_t {
        const uint32_t announced = state().script.lengthOf(function, description.width);
        if (state().engine != nullptr && thing->row.empty()) {
            const uint32_t code = state().engine->getFieldBytes(table, field, thing->inner, bytes, length);
            if (code == MCAST6_DB_OK && announced != description.width) *length = announced;
            return code;
        }
        Bytes& row = rowOf(*thing);
        *bytes = row.data() + description.offset;
        *length = announced;
        return MCAST6_DB_OK;
    });
}

}  // namespace mcast6::accessors
