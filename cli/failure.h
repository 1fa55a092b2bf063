// How a command ends when it cannot do what it was asked.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace mcast6::ctl {

enum ExitCode : int {
    kDone = 0,
    kFailed = 1,
    kWrongUsage = 2,
    kPartial = 3,  // an import refused some entries and brought the others
    kNothing = 4,  // an import brought nothing: every entry was refused, or there was none
};

// what() names the input and the reason, and is shown to the operator, with each note on a line of its own below it.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& message, ExitCode code = kFailed, std::vector<std::string> notes = {})
        : std::runtime_error(message), code_(code), notes_(std::move(notes)) {}
    ExitCode exitCode() const { return code_; }
    const std::vector<std::string>& notes() const { return notes_; }

    // The same failure, told as one of 'place': a file and a line, an entry.
    Failure in(const std::string& place) const { return Failure(place + ": " + what(), code_, notes_); }

private:
    ExitCode code_;
    std::vector<std::string> notes_;
};

// The command line itself is wrong; nothing was tried.
class UsageError : public Failure {
public:
    explicit UsageError(const std::string& message) : Failure(message, kWrongUsage) {}
};

// A library operation answered 'code'. The message carries the code's meaning, the notes the library's log lines since
// the last successful command.
Failure libraryFailure(const std::string& operation, uint32_t code);

// The same for an operation that tells a failure by a null pointer.
Failure libraryFailure(const std::string& operation);

}  // namespace mcast6::ctl
