// Captures as JSON: plain or gzip-compressed files, or standard input, and their members with checked types.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

namespace mcast6::ctl {

using Json = nlohmann::json;

// Why one entry of a capture cannot be taken; the catcher adds file and entry.
class Refused : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// How messages call an input: its path, or "standard input" for "-".
std::string inputName(const std::string& path);

// The whole input, decompressed when it is gzip, whatever it is called. Throws Failure.
std::string readInput(const std::string& path);

// The list that is the whole of an input; 'what' names its entries in messages. Throws Failure.
Json readJsonList(const std::string& path, const char* what);

// Members of 'entry'. They throw Refused: the entry is no object, or the member is missing or of another type.
bool hasMember(const Json& entry, const char* name);
std::string textMember(const Json& entry, const char* name);
uint32_t numberMember(const Json& entry, const char* name);
const Json& listMember(const Json& entry, const char* name);
// One that is missing is "", 'otherwise', false, an empty object.
std::string textOr(const Json& entry, const char* name);
uint32_t numberOr(const Json& entry, const char* name, uint32_t otherwise);
bool truthMember(const Json& entry, const char* name);
const Json& objectMember(const Json& entry, const char* name);

}  // namespace mcast6::ctl
