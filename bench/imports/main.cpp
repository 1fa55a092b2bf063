// mcast6imports: processor time and memory of an import of many routes, beside those of `jq length` on the same capture
// and the memory of the store that it fills.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/imports/capture.h"

namespace mcast6::bench {
namespace {

namespace fs = std::filesystem;

class Directory {
public:
    Directory() {
        std::string name = (fs::temp_directory_path() / "mcast6imports-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
        path_ = name;
    }
    ~Directory() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;
    std::string file(const char* name) const { return (path_ / name).string(); }
    std::string path() const { return path_.string(); }

private:
    fs::path path_;
};

struct Usage {
    double seconds;  // of the processor
    double megabytes;
};

// Runs a program with its output in a file.
Usage run(std::vector<std::string> words, const std::string& output) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("cannot fork");
    if (child == 0) {
        const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (file >= 0 && dup2(file, STDOUT_FILENO) >= 0) execvp(arguments[0], arguments.data());
        std::perror(arguments[0]);
        _exit(127);
    }
    int status = 0;
    rusage used{};
    if (wait4(child, &status, 0, &used) < 0) throw std::runtime_error("cannot wait");
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error(words.front() + " failed");
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return {seconds(used.ru_utime) + seconds(used.ru_stime), static_cast<double>(used.ru_maxrss) / 1024};
}

// What `stats` told of the store, in a JSON document of one line.
double storeMegabytes(const std::string& path) {
    std::ifstream file(path);
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const std::string member = "\"memoryBytes\":";
    const size_t found = text.rfind(member);
    if (found == std::string::npos) throw std::runtime_error("no memory of the store in " + text);
    return std::strtod(text.c_str() + found + member.size(), nullptr) / 1024 / 1024;
}

void measure(const std::string& tool, uint32_t routes, uint32_t rounds) {
    const Directory directory;
    writeCapture(directory.path(), routes);
    const std::string capture = directory.file("mroute.json");
    const std::string script = directory.file("script");
    std::ofstream(script) << "import mroute " << capture << " --links " << directory.file("link.json") << "\nstats\n";
    const std::string output = directory.file("output");
    for (uint32_t round = 0; round < rounds; ++round) {
        const Usage peer = run({"jq", "length", capture}, output);
        const Usage import = run({tool, "--json", "script", script}, output);
        const double store = storeMegabytes(output);
        std::printf("%u routes: import %.2f s, %.0f MiB; jq length %.2f s; store %.0f MiB; time %.2f, memory %.2f\n",
                    routes, import.seconds, import.megabytes, peer.seconds, store, import.seconds / peer.seconds,
                    import.megabytes / store);
        std::fflush(stdout);
    }
}

}  // namespace
}  // namespace mcast6::bench

int main(int count, char** texts) {
    CLI::App app("Measures an import of many routes beside jq and the store that it fills.", "mcast6imports");
    app.option_defaults()->always_capture_default();
    std::string tool;
    uint32_t routes = 1'000'000;
    uint32_t rounds = 3;
    app.add_option("--tool", tool, "The tool, mcast6ctl")->required();
    app.add_option("--routes", routes, "Routes, with three outgoing interfaces each on average")
        ->check(CLI::Range(1, 16'000'000));
    app.add_option("--repeat", rounds, "Rounds")->check(CLI::Range(1, 1000));
    try {
        app.parse(count, texts);
        mcast6::bench::measure(tool, routes, rounds);
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "mcast6imports: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
