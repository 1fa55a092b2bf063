#include "tests/cli/run.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace mcast6::ctl::test {
namespace {

namespace fs = std::filesystem;

// One for the process; gone with it.
const fs::path& scratch() {
    struct Directory {
        fs::path path;
        Directory() {
            std::string name = (fs::temp_directory_path() / "mcast6ctl-test-XXXXXX").string();
            if (mkdtemp(name.data()) == nullptr) std::abort();
            path = name;
        }
        ~Directory() {
            std::error_code ignored;
            fs::remove_all(path, ignored);
        }
    };
    static const Directory kDirectory;
    return kDirectory.path;
}

std::string shellWord(const std::string& word) {
    std::string quoted = "'";
    for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

}  // namespace

Outcome run(const std::vector<std::string>& words, const std::string& input, const std::string& directory,
            const std::string& redirections) {
    const fs::path in = writeFile("stdin", input);
    const fs::path out = scratch() / "stdout";
    const fs::path err = scratch() / "stderr";
    std::string command = "cd " + shellWord(directory) + " && " + shellWord(MCAST6_CTL);
    for (const std::string& word : words) command += " " + shellWord(word);
    command += " <" + shellWord(in) + " >" + shellWord(out) + " 2>" + shellWord(err) + " " + redirections;
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(out), readFile(err)};
}

Outcome runShell(const std::string& line) {
    const fs::path out = scratch() / "stdout";
    const fs::path err = scratch() / "stderr";
    const std::string command =
        "CTL=" + shellWord(MCAST6_CTL) + "; { " + line + "; } >" + shellWord(out) + " 2>" + shellWord(err);
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(out), readFile(err)};
}

Outcome runScript(const std::string& script, const std::vector<std::string>& options) {
    std::vector<std::string> words{"script", "-"};
    words.insert(words.end(), options.begin(), options.end());
    return run(words, script);
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> all;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) all.push_back(line);
    return all;
}

std::vector<Json> documents(const std::string& out) {
    std::vector<Json> all;
    for (const std::string& line : lines(out)) {
        all.push_back(Json::parse(line, nullptr, false));
        EXPECT_FALSE(all.back().is_discarded()) << "not JSON: " << line;
    }
    return all;
}

std::string sample(const std::string& name) { return std::string(MCAST6_SAMPLES) + "/" + name; }

std::string writeFile(const std::string& name, const std::string& content) {
    const fs::path path = scratch() / name;
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
}

std::string importLine(const std::string& folder, const std::string& options) {
    const std::string suffix = folder == "large" ? ".json.gz" : ".json";
    return "import mroute '" + sample(folder + "/rt.mroute" + suffix) + "' --links '" +
           sample(folder + "/rt.link" + suffix) + "' " + options + "\n";
}

std::string importBridgeLine(const std::string& folder, const std::string& options) {
    return "import bridge '" + sample(folder) + "' " + options + "\n";
}

Json only(const Json& list, const char* name, const Json& value) {
    Json found;
    size_t count = 0;
    for (const Json& entry : list) {
        if (entry.at(name) != value) continue;
        found = entry;
        ++count;
    }
    EXPECT_EQ(count, 1U) << name << " " << value;
    return found;
}

}  // namespace mcast6::ctl::test
