// The C entries of the platform: each passes its arguments to the engine of the process and does nothing else.
//
// Only making an object opens a store that is not open yet. Without one no handle is valid, and that is what the other
// entries answer.
#include "mcast6_platform/engine.h"

#include "mcast6_platform/platform.h"
#include "platform/engine/last_error.h"
#include "platform/engine/process_engine.h"
#include "platform/schema/accessors.h"

using mcast6::engine::Engine;
using mcast6::engine::openEngine;
using mcast6::engine::refused;

namespace {

template <class... Parameters>
[[gnu::always_inline]] inline uint32_t onOpen(uint32_t (Engine::*call)(Parameters...) noexcept,
                                              std::type_identity_t<Parameters>... arguments) {
    Engine* engine = openEngine();
    return engine != nullptr ? (engine->*call)(arguments...) : refused(MCAST6_DB_BAD_HANDLE);
}

}  // namespace

uint32_t db_write_obj(uint64_t object) { return onOpen(&Engine::write, object); }

uint32_t db_update_obj(uint64_t object, const void* keyDesc, const void* key) {
    return onOpen(&Engine::update, object, keyDesc, key);
}

uint32_t db_remove_obj(uint64_t object, const void* keyDesc, const void* key) {
    return onOpen(&Engine::remove, object, keyDesc, key);
}

// The hot path: inlined into one function down to the store, because calls would be a third of a read.
[[gnu::flatten]] uint32_t db_read_obj_with_buf(uint64_t object, const void* keyDesc, const void* key, void* buffer,
                                               uint32_t length) {
    return onOpen(&Engine::read, object, keyDesc, key, buffer, length);
}

uint32_t db_create_root_iter(uint64_t object, const void* keyDesc, const void* key, uint64_t* rootIter) {
    return onOpen(&Engine::createRootIter, object, keyDesc, key, rootIter);
}

uint32_t db_set_root_iterator_property(uint64_t rootIter, uint32_t property, const void* value, uint32_t length) {
    return onOpen(&Engine::setRootIterProperty, rootIter, property, value, length);
}

uint32_t db_root_iterator_next(uint64_t rootIter) { return onOpen(&Engine::next, rootIter); }

uint32_t db_get_table_record_count(uint64_t object, uint32_t* count) { return onOpen(&Engine::count, object, count); }

uint32_t db_get_table_record_count_by_key(uint64_t object, const void* keyDesc, const void* key, uint32_t* count) {
    return onOpen(&Engine::countByKey, object, keyDesc, key, count);
}

uint32_t db_create_stmt(uint64_t object, uint32_t kind, const void* params, uint32_t paramCount) {
    return onOpen(&Engine::createStatement, object, kind, params, paramCount);
}

uint32_t db_append_stmt_condition(uint64_t object, const char* keyName, uint32_t kind, uint32_t reserved1,
                                  const void* reserved2, uint32_t reserved3, const void* keyWord, const void* value,
                                  uint32_t valueLength) {
    return onOpen(&Engine::appendCondition, object, keyName, kind, reserved1, reserved2, reserved3, keyWord, value,
                  valueLength);
}

uint32_t db_create_root_iterator_by_filter(uint64_t object, uint64_t* rootIter) {
    return onOpen(&Engine::createRootIterOfStatement, object, rootIter);
}

uint32_t db_create_cache_root_iter(uint64_t object, const void* keyDesc, uint64_t* rootIter) {
    return onOpen(&Engine::createCacheRootIter, object, keyDesc, rootIter);
}

uint32_t db_reset_cache_root_iter(uint64_t rootIter, const void* key) {
    return onOpen(&Engine::resetCacheRootIter, rootIter, key);
}

namespace mcast6::accessors {

uint32_t createObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) noexcept {
    Engine* engine = engine::engineOpenedIfNeeded();
    if (engine == nullptr) return refused(MCAST6_DB_NO_MEMORY);
    return engine->createObject(table, objType, connType, object);
}

uint32_t createCacheObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) noexcept {
    Engine* engine = engine::engineOpenedIfNeeded();
    if (engine == nullptr) return refused(MCAST6_DB_NO_MEMORY);
    return engine->createCacheObject(table, objType, connType, object);
}

void releaseObject(uint32_t table, uint64_t object) noexcept {
    if (Engine* engine = openEngine(); engine != nullptr) engine->releaseObject(table, object);
}

uint32_t resetObject(uint32_t table, uint64_t object, uint32_t objType) noexcept {
    return onOpen(&Engine::resetObject, table, object, objType);
}

uint32_t resetCacheObject(uint32_t table, uint64_t object) noexcept {
    return onOpen(&Engine::resetCacheObject, table, object);
}

uint32_t setAllFields(uint32_t table, uint64_t object, const void* row, uint32_t length) noexcept {
    return onOpen(&Engine::setAllFields, table, object, row, length);
}

uint32_t setField(uint32_t table, uint32_t field, uint64_t object, const void* value, uint32_t length) noexcept {
    return onOpen(&Engine::setField, table, field, object, value, length);
}

uint32_t getField(uint32_t table, uint32_t field, uint64_t object, void* value) noexcept {
    return onOpen(&Engine::getField, table, field, object, value);
}

uint32_t getFieldBytes(uint32_t table, uint32_t field, uint64_t object, void** bytes, uint32_t* length) noexcept {
    return onOpen(&Engine::getFieldBytes, table, field, object, bytes, length);
}

}  // namespace mcast6::accessors

uint32_t mcast6_platform_open(const char* uri) { return mcast6::engine::openStore(uri); }

void mcast6_platform_close(void) { mcast6::engine::closeStore(); }

uint32_t mcast6_platform_begin(void) { return mcast6::engine::beginBatch(); }

uint32_t mcast6_platform_commit(void) { return mcast6::engine::commitBatch(); }

uint32_t mcast6_platform_abort(void) { return mcast6::engine::abortBatch(); }

const char* mcast6_platform_error(void) { return mcast6::engine::lastError(); }

uint64_t mcast6_platform_memory(void) {
    const Engine* engine = openEngine();
    return engine != nullptr ? engine->memory() : 0;
}
