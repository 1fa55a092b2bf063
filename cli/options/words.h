// Splits a line of a script into words, as a shell does without expansions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mcast6::ctl {

// 'single' and "double" quotes join; a backslash takes the next character as it is, inside double quotes only before a
// double quote or a backslash; # at the start of a word begins a comment. Throws UsageError.
std::vector<std::string> splitWords(std::string_view line);

}  // namespace mcast6::ctl
