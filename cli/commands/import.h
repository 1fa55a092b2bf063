// What every import shares: what its end tells the caller of the tool, the failures of the kernel's library as the
// tool's, and a bar of progress.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/options/command.h"
#include "kernel/apply/stored_version.h"
#include "kernel/error.h"

namespace mcast6::ctl {

// What became of the entries of an import.
struct ImportCounts {
    uint64_t read = 0;
    uint64_t imported = 0;
    uint64_t refused = 0;
};

// Tells standard error what 'input' lacks, if anything, and has the tool end with the exit code for it.
void tellEnd(Tool& tool, const std::string& input, const ImportCounts& counts);

// An error of the kernel's library as the tool's: the one of a table with the meaning of its code and the log lines.
Failure failureOf(const kernel::Error& error, const std::string& before = "");

// Runs 'work' and throws its errors as Failure.
void asFailure(const std::function<void()>& work);

// Throws Failure when there is a newer record; 'where' tells the part of the store that was searched.
void refuseOlder(const std::string& input, uint32_t smoothVersion, const std::string& where,
                 const std::optional<kernel::StoredVersion>& newer);

// Warns, once for an import, of a link list without details.
void warnOfMissingDetails(const std::string& path);

// What displays and filters need of a link list.
std::vector<LinkName> namesOf(const LinkTable& links);

OptionSpec forceOption();

// A bar on standard error, when that is a terminal and the work is long.
class Progress {
public:
    Progress(std::string what, uint64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    void at(uint64_t done);
    // Before anything else is printed.
    void clear();

private:
    std::string what_;
    uint64_t total_;
    uint64_t percentShown_ = 101;
    bool shown_;
};

}  // namespace mcast6::ctl
