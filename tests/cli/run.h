// Runs the built tool as an operator would, and hands back what it said.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace mcast6::ctl::test {

using Json = nlohmann::json;

// How the tool ends when an import refused some of its entries, and when it brought none.
constexpr int kPartial = 3;
constexpr int kNothing = 4;

struct Outcome {
    int exitCode = -1;  // -1: it did not end by itself
    std::string out;
    std::string err;
};

// 'words' are the tool's arguments; 'input' is its standard input; it runs in 'directory'. 'redirections' are the
// shell's, after those that make the outcome: "2>&-" closes standard error.
Outcome run(const std::vector<std::string>& words, const std::string& input = "", const std::string& directory = ".",
            const std::string& redirections = "");

// A line of shell in which $CTL is the tool.
Outcome runShell(const std::string& line);

// A script on standard input.
Outcome runScript(const std::string& script, const std::vector<std::string>& options = {});

// The JSON documents of an output, one a line; a line that is none fails the test.
std::vector<Json> documents(const std::string& out);

std::vector<std::string> lines(const std::string& text);

std::string readFile(const std::string& path);

// The path of a file of samples/.
std::string sample(const std::string& name);

// A file with this content, removed at the end of the test program.
std::string writeFile(const std::string& name, const std::string& content);

// The words that import a sample of routes with its link list.
std::string importLine(const std::string& folder, const std::string& options = "");

// The line that imports the bridges of a sample.
std::string importBridgeLine(const std::string& folder, const std::string& options = "");

// The entry of a list of objects whose member 'name' is 'value'; null, and the test fails, when there is not exactly
// one.
Json only(const Json& list, const char* name, const Json& value);

}  // namespace mcast6::ctl::test
