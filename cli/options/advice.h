// What is wrong with a command line that the option parser refused: what was expected where, and what was probably
// meant.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/options/command.h"

namespace mcast6::ctl {

// Of the first wrong word of 'words'; nothing when there is none that is wrong. 'process': the line may have the
// options of the process, and is no line of a script.
std::optional<std::string> whatIsWrong(const std::vector<std::string>& words, const Commands& commands, bool process);

// Those of 'candidates' that 'typed' is most likely a slip for, three at most: the beginning of one, some letters off,
// or the name that the database has for it.
std::vector<std::string> nearest(const std::string& typed, const std::vector<std::string>& candidates);

}  // namespace mcast6::ctl
