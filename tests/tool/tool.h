// Runs the tool's commands inside this program and hands back what they said.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

namespace mcast6::ctl::test {

using Json = nlohmann::json;

// Options of a command with their texts.
using Given = std::map<std::string, std::string>;

struct Answer {
    Json document;        // on standard output; null when the command failed
    std::string told;     // on standard error, by --verbose
    std::string failure;  // empty: it did what it was asked
};

// Runs a command with --json and --verbose. The test fails when there is no such command, or it has no such option.
Answer ask(const std::string& verb, const std::string& object, const Given& given);

// Empty when there is no such command.
std::set<std::string> optionsOf(const std::string& verb, const std::string& object);

}  // namespace mcast6::ctl::test
