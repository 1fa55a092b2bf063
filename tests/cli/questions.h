// Questions that show and count answer alike, and deletions that take one entry: the same checks for every table.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace mcast6::ctl::test {

struct Question {
    const char* name;
    const char* capture;  // what is imported before
    const char* words;    // after show or count: the table and its filters
    const char* told;     // by --verbose
    uint64_t matches;
};
void PrintTo(const Question& question, std::ostream* out);

// 'import' is the line that imports the capture.
void expectAnswered(const Question& question, const std::string& import);

struct Deletion {
    const char* name;
    const char* capture;
    const char* words;  // after delete: the table and its key
    uint64_t left;
};
void PrintTo(const Deletion& deletion, std::ostream* out);

// The entry goes, and there is none of its key then.
void expectDeleted(const Deletion& deletion, const std::string& import);

}  // namespace mcast6::ctl::test
