#include "kernel/capture/json.h"

#include <fmt/format.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstring>

#include "kernel/error.h"
#include "kernel/text.h"

namespace mcast6::kernel {
namespace {

const Json& member(const Json& entry, const char* name) {
    if (!entry.IsObject()) throw Refused(fmt::format("of type {}, not an object", typeName(entry)));
    if (const Json* found = findMember(entry, name)) return *found;
    throw Refused(fmt::format("'{}' is missing", name));
}

Refused ofAnotherType(const char* name, const Json& value, const char* wanted) {
    return Refused(fmt::format("'{}' is of type {}, not {}", name, typeName(value), wanted));
}

}  // namespace

const char* typeName(const Json& value) {
    switch (value.GetType()) {
        case rapidjson::kNullType:
            return "null";
        case rapidjson::kFalseType:
        case rapidjson::kTrueType:
            return "boolean";
        case rapidjson::kObjectType:
            return "object";
        case rapidjson::kArrayType:
            return "array";
        case rapidjson::kStringType:
            return "string";
        case rapidjson::kNumberType:
            return "number";
    }
    return "?";
}

std::string shownJson(const Json& value) {
    rapidjson::StringBuffer text;
    rapidjson::Writer<rapidjson::StringBuffer> writer(text);
    value.Accept(writer);
    return shown({text.GetString(), text.GetSize()});
}

const Json* findMember(const Json& entry, std::string_view name) {
    if (!entry.IsObject()) return nullptr;
    for (auto found = entry.MemberEnd(); found != entry.MemberBegin();) {
        --found;
        if (textOf(found->name) == name) return &found->value;
    }
    return nullptr;
}

bool hasMember(const Json& entry, const char* name) {
    if (!entry.IsObject()) throw Refused(fmt::format("of type {}, not an object", typeName(entry)));
    return findMember(entry, name) != nullptr;
}

std::string_view textMember(const Json& entry, const char* name) {
    const Json& value = member(entry, name);
    if (!value.IsString()) throw ofAnotherType(name, value, "a string");
    return textOf(value);
}

uint32_t numberMember(const Json& entry, const char* name) {
    const Json& value = member(entry, name);
    if (!value.IsNumber()) throw ofAnotherType(name, value, "a number");
    if (!value.IsUint()) {
        throw Refused(fmt::format("'{}' is {}, not a number from 0 to {}", name, shownJson(value), UINT32_MAX));
    }
    return value.GetUint();
}

const Json& listMember(const Json& entry, const char* name) {
    const Json& value = member(entry, name);
    if (!value.IsArray()) throw ofAnotherType(name, value, "a list");
    return value;
}

std::string_view textOr(const Json& entry, const char* name) {
    return hasMember(entry, name) ? textMember(entry, name) : std::string_view();
}

uint32_t numberOr(const Json& entry, const char* name, uint32_t otherwise) {
    return hasMember(entry, name) ? numberMember(entry, name) : otherwise;
}

bool truthMember(const Json& entry, const char* name) {
    if (!hasMember(entry, name)) return false;
    const Json& value = member(entry, name);
    return value.IsBool() ? value.GetBool() : numberMember(entry, name) != 0;
}

const Json& objectMember(const Json& entry, const char* name) {
    static const Json kNone(rapidjson::kObjectType);
    if (!hasMember(entry, name)) return kNone;
    const Json& value = member(entry, name);
    if (!value.IsObject()) throw ofAnotherType(name, value, "an object");
    return value;
}

std::string shownMember(const Json& entry, const char* name, const char* otherwise) {
    const Json* value = findMember(entry, name);
    if (value == nullptr) return otherwise;
    return value->IsString() ? shown(textOf(*value)) : "?";
}

}  // namespace mcast6::kernel
