// The interface of an engine behind the recorder. Handles here are the engine's own.
#pragma once

#include <cstdint>

namespace mcast6::recording {

// Each function is the one of the same name in platform/schema/accessors.h, or the generic call of engine.h.
class Engine {
public:
    virtual ~Engine() = default;

    virtual uint32_t createObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) = 0;
    virtual void releaseObject(uint32_t table, uint64_t object) = 0;
    virtual uint32_t resetObject(uint32_t table, uint64_t object, uint32_t objType) = 0;
    virtual uint32_t createCacheObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) = 0;
    virtual uint32_t resetCacheObject(uint32_t table, uint64_t object) = 0;
    virtual uint32_t setAllFields(uint32_t table, uint64_t object, const void* row, uint32_t length) = 0;
    virtual uint32_t setField(uint32_t table, uint32_t field, uint64_t object, const void* value, uint32_t length) = 0;
    virtual uint32_t getField(uint32_t table, uint32_t field, uint64_t object, void* value) = 0;
    virtual uint32_t getFieldBytes(uint32_t table, uint32_t field, uint64_t object, void** bytes, uint32_t* length) = 0;

    virtual uint32_t write(uint64_t object) = 0;
    virtual uint32_t update(uint64_t object, const void* keyDesc, const void* key) = 0;
    virtual uint32_t remove(uint64_t object, const void* keyDesc, const void* key) = 0;
    virtual uint32_t read(uint64_t object, const void* keyDesc, const void* key, void* buffer, uint32_t length) = 0;
    virtual uint32_t createRootIterator(uint64_t object, const void* keyDesc, const void* key, uint64_t* rootIter) = 0;
    virtual uint32_t setProperty(uint64_t rootIter, uint32_t property, const void* value, uint32_t length) = 0;
    virtual uint32_t next(uint64_t rootIter) = 0;
    virtual uint32_t count(uint64_t object, uint32_t* count) = 0;
    virtual uint32_t countByKey(uint64_t object, const void* keyDesc, const void* key, uint32_t* count) = 0;
    virtual uint32_t createStatement(uint64_t object, uint32_t kind, const void* params, uint32_t paramCount) = 0;
    virtual uint32_t appendCondition(uint64_t object, const char* keyName, uint32_t kind, uint32_t reserved1,
                                     const void* reserved2, uint32_t reserved3, const void* keyWord, const void* value,
                                     uint32_t valueLength) = 0;
    virtual uint32_t createFilteredIterator(uint64_t object, uint64_t* rootIter) = 0;
    virtual uint32_t createCachedIterator(uint64_t object, const void* keyDesc, uint64_t* rootIter) = 0;
    virtual uint32_t resetCachedIterator(uint64_t rootIter, const void* key) = 0;
};

}  // namespace mcast6::recording
