#include "tests/tool/table.h"

#include <iterator>

namespace mcast6::ctl::test {
namespace {

constexpr Address kGroups[] = {{{{0xFF0E0000, 0, 0, 1}}, "ff0e::1"}, {{{0xFF0E0000, 0, 0, 2}}, "ff0e::2"}};
constexpr Address kSources[] = {
    {{{0, 0, 0, 0}}, "::"}, {{{0x20010DB8, 0, 0, 1}}, "2001:db8::1"}, {{{0x20010DB8, 0, 0, 0x10001}}, "2001:db8::1:1"}};

}  // namespace

void PrintTo(const TableFacts& facts, std::ostream* out) { *out << facts.name; }

Address drawGroup(Numbers& numbers) { return kGroups[numbers.below(std::size(kGroups))]; }
Address drawSource(Numbers& numbers) { return kSources[numbers.below(std::size(kSources))]; }

Given texts(const Words& words) {
    Given all;
    for (const auto& [name, number] : words) all[name] = std::to_string(number);
    return all;
}

Json joined(Json object, const Json& further) {
    object.update(further);
    return object;
}

Given joined(Given given, const Given& further) {
    given.insert(further.begin(), further.end());
    return given;
}

}  // namespace mcast6::ctl::test
