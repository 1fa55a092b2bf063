// The names that a library exports, from the headers that declare them.
#pragma once

#include <filesystem>
#include <string>

namespace mcast6::facts {

// A version script with every name that a header below 'directory' declares with MCAST6_API, and nothing else global.
std::string exportMap(const std::filesystem::path& directory);

}  // namespace mcast6::facts
