// What the generated accessors call. Every accessor is one of these with its table's and field's number, so a platform
// writes nine functions, not hundreds. The numbers are positions: of the table in schema::catalog(), of the field in
// the table's list. All answer an engine code and never throw.
#pragma once

#include <cstdint>

namespace mcast6::accessors {

uint32_t createObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) noexcept;
void releaseObject(uint32_t table, uint64_t object) noexcept;
uint32_t resetObject(uint32_t table, uint64_t object, uint32_t objType) noexcept;
uint32_t createCacheObject(uint32_t table, uint32_t objType, uint32_t connType, uint64_t* object) noexcept;
uint32_t resetCacheObject(uint32_t table, uint64_t object) noexcept;
uint32_t setAllFields(uint32_t table, uint64_t object, const void* row, uint32_t length) noexcept;
uint32_t setField(uint32_t table, uint32_t field, uint64_t object, const void* value, uint32_t length) noexcept;
// 'value' takes the field's width in bytes.
uint32_t getField(uint32_t table, uint32_t field, uint64_t object, void* value) noexcept;
// '*bytes' points into the object and holds until the object is stepped, read, reset or released.
uint32_t getFieldBytes(uint32_t table, uint32_t field, uint64_t object, void** bytes, uint32_t* length) noexcept;

}  // namespace mcast6::accessors
