// What stops the reading or applying of the kernel's state. what() names the input and what is wrong with it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace mcast6::kernel {

// An input as a whole cannot be used; what was brought from it until then stays.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// An operation on a table answered with a failure. what() is the operation; 'code' is 0 where the operation has none.
class TableError : public Error {
public:
    explicit TableError(const std::string& operation, uint32_t code = 0) : Error(operation), code_(code) {}
    uint32_t code() const { return code_; }

private:
    uint32_t code_;
};

// Why one entry is wrong; the catcher adds input and entry.
class Refused : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Why one entry, which is right, has no place in the tables.
class Skipped : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace mcast6::kernel
