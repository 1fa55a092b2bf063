// Entries of a capture as JSON values, and their members with checked types.
#pragma once

#include <rapidjson/document.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace mcast6::kernel {

using Json = rapidjson::Value;

// "object", "array", "string", "number", "boolean", "null".
const char* typeName(const Json& value);

// As a message shows it: JSON without spaces, cut like any long text.
std::string shownJson(const Json& value);

// The member of this name, the last of several; null: there is none, or 'entry' is no object.
const Json* findMember(const Json& entry, std::string_view name);

// Members of 'entry'. They throw Refused: the entry is no object, or the member is missing or of another type. Texts
// live as long as the entry.
bool hasMember(const Json& entry, const char* name);
std::string_view textMember(const Json& entry, const char* name);
uint32_t numberMember(const Json& entry, const char* name);
const Json& listMember(const Json& entry, const char* name);
// One that is missing is "", 'otherwise', false, an empty object.
std::string_view textOr(const Json& entry, const char* name);
uint32_t numberOr(const Json& entry, const char* name, uint32_t otherwise);
bool truthMember(const Json& entry, const char* name);
const Json& objectMember(const Json& entry, const char* name);

// A member as a message shows it: its text, "?" for another type, 'otherwise' when it is missing. Throws nothing.
std::string shownMember(const Json& entry, const char* name, const char* otherwise = "?");

inline std::string_view textOf(const Json& value) { return {value.GetString(), value.GetStringLength()}; }

}  // namespace mcast6::kernel
