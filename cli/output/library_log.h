// The library's log callback. Lines are kept until they are taken, so that a failure can carry them.
#pragma once

#include <string>
#include <vector>

namespace mcast6::ctl {

// Registers the callback, which also clears the library's error statistics.
void installLibraryLog();

// Whether lines also go to standard error as they come.
void printLibraryLog(bool print);

// The lines since the last call, the latest at most.
std::vector<std::string> takeLibraryLog();

}  // namespace mcast6::ctl
