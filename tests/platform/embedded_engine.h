// The embedded engine as the engine behind the recorder. A test that includes this links mcast6engine.
#pragma once

#include "platform/engine/engine.h"
#include "tests/platform/engine.h"

namespace mcast6::recording {

class EmbeddedEngine final : public Engine {
public:
    explicit EmbeddedEngine(engine::Engine& engine) : engine_(engine) {}

    uint32_t createObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) override {
        return engine_.createObject(table, objType, connType, object);
    }
    void releaseObject(uint32_t table, uint64_t object) override { engine_.releaseObject(table, object); }
    uint32_t resetObject(uint32_t table, uint64_t object, uint32_t objType) override {
        return engine_.resetObject(table, object, objType);
    }
    uint32_t createCacheObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) override {
        return engine_.createCacheObject(table, objType, connType, object);
    }
    uint32_t resetCacheObject(uint32_t table, uint64_t object) override {
        return engine_.resetCacheObject(table, object);
    }
    uint32_t setAllFields(uint32_t table, uint64_t object, const void* row, uint32_t length) override {
        return engine_.setAllFields(table, object, row, length);
    }
    uint32_t setField(uint32_t table, uint32_t field, uint64_t object, const void* value, uint32_t length) override {
        return engine_.setField(table, field, object, value, length);
    }
    uint32_t getField(uint32_t table, uint32_t field, uint64_t object, void* value) override {
        return engine_.getField(table, field, object, value);
    }
    uint32_t getFieldBytes(uint32_t table, uint32_t field, uint64_t object, void** bytes, uint32_t* length) override {
        return engine_.getFieldBytes(table, field, object, bytes, length);
    }

    uint32_t write(uint64_t object) override { return engine_.write(object); }
    uint32_t update(uint64_t object, const void* keyDesc, const void* key) override {
        return engine_.update(object, keyDesc, key);
    }
    uint32_t remove(uint64_t object, const void* keyDesc, const void* key) override {
        return engine_.remove(object, keyDesc, key);
    }
    uint32_t read(uint64_t object, const void* keyDesc, const void* key, void* buffer, uint32_t length) override {
        return engine_.read(object, keyDesc, key, buffer, length);
    }
    uint32_t createRootIterator(uint64_t object, const void* keyDesc, const void* key, uint64_t* rootIter) override {
        return engine_.createRootIter(object, keyDesc, key, rootIter);
    }
    uint32_t setProperty(uint64_t rootIter, uint32_t property, const void* value, uint32_t length) override {
        return engine_.setRootIterProperty(rootIter, property, value, length);
    }
    uint32_t next(uint64_t rootIter) override { return engine_.next(rootIter); }
    uint32_t count(uint64_t object, uint32_t* count) override { return engine_.count(object, count); }
    uint32_t countByKey(uint64_t object, const void* keyDesc, const void* key, uint32_t* count) override {
        return engine_.countByKey(object, keyDesc, key, count);
    }
    uint32_t createStatement(uint64_t object, uint32_t kind, const void* params, uint32_t paramCount) override {
        return engine_.createStatement(object, kind, params, paramCount);
    }
    uint32_t appendCondition(uint64_t object, const char* keyName, uint32_t kind, uint32_t reserved1,
                             const void* reserved2, uint32_t reserved3, const void* keyWord, const void* value,
                             uint32_t valueLength) override {
        return engine_.appendCondition(object, keyName, kind, reserved1, reserved2, reserved3, keyWord, value,
                                       valueLength);
    }
    uint32_t createFilteredIterator(uint64_t object, uint64_t* rootIter) override {
        return engine_.createRootIterOfStatement(object, rootIter);
    }
    uint32_t createCachedIterator(uint64_t object, const void* keyDesc, uint64_t* rootIter) override {
        return engine_.createCacheRootIter(object, keyDesc, rootIter);
    }
    uint32_t resetCachedIterator(uint64_t rootIter, const void* key) override {
        return engine_.resetCacheRootIter(rootIter, key);
    }

private:
    engine::Engine& engine_;
};

}  // namespace mcast6::recording
