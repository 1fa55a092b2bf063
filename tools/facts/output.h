// What the programs here share: files that are written, and keys as a reader names them.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/schema/schema.h"

namespace mcast6::facts {

// Writes 'text' to 'path', unless the file holds it already: what depends on the file is then not made again.
void writeFile(const std::filesystem::path& path, std::string_view text);

// The parts of a key in order: fields, low bytes of fields, constants.
std::string partsOf(const schema::Table& table, const schema::Key& key);

}  // namespace mcast6::facts
