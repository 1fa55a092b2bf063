// The command line: made from the list of commands, for the process and for each line of a script.
#pragma once

#include <string>
#include <vector>

#include "cli/options/command.h"

namespace mcast6::ctl {

// What the process's own command line has besides a command.
struct ProcessOptions {
    std::string store = "memory:";
};

// A command line, understood.
struct Invocation {
    const Command* command = nullptr;  // null: 'text' is all there is to do
    Arguments arguments;
    Settings settings;
    std::string text;  // help or version
};

// Understands 'words', which do not include the program's name. 'process' is null for a line of a script, which has no
// options of the process. Throws UsageError.
Invocation parseCommandLine(const std::vector<std::string>& words, const Settings& settings, ProcessOptions* process);

// Runs what was understood. Throws Failure.
void runInvocation(Tool& tool, const Invocation& invocation);

}  // namespace mcast6::ctl
