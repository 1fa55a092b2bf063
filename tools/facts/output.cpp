#include "tools/facts/output.h"

#include <fmt/format.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace mcast6::facts {

namespace {

bool holds(const std::filesystem::path& path, std::string_view text) {
    std::ifstream file(path, std::ios::binary);
    return file && std::string(std::istreambuf_iterator<char>(file), {}) == text;
}

std::string nameOf(const schema::Table& table, const schema::KeyPart& part) {
    if (part.isConstant) return fmt::format("{} in {} bytes", part.constant, part.width);
    for (const schema::Field& field : table.fields) {
        if (field.offset != part.offset) continue;
        if (field.width == part.width) return std::string(field.name);
        return fmt::format("low {} bytes of {}", part.width, field.name);
    }
    throw std::logic_error("a key part begins at no field");
}

}  // namespace

void writeFile(const std::filesystem::path& path, std::string_view text) {
    if (holds(path, text)) return;
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path.string());
}

std::string partsOf(const schema::Table& table, const schema::Key& key) {
    std::string names;
    for (const schema::KeyPart& part : key.parts()) names += (names.empty() ? "" : ", ") + nameOf(table, part);
    return names;
}

}  // namespace mcast6::facts
