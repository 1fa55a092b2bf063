// script and say: several commands on one store, one after the other.
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>

#include "cli/commands/import.h"
#include "cli/options/command.h"
#include "cli/options/command_line.h"
#include "cli/options/words.h"
#include "cli/output/output.h"
#include "kernel/capture/input.h"

namespace mcast6::ctl {
namespace {

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// JSON documents stay alone on standard output.
void echoLine(const Tool& tool, std::string_view line) {
    if (tool.settings.json) return complain(line);
    printLine(fmt::format("> {}", line));
}

void runScriptLine(Tool& tool, std::string_view line, bool echo) {
    const std::vector<std::string> words = splitWords(line);
    if (words.empty()) return;
    if (words.front() == "script") throw UsageError("a script cannot run another one");
    if (echo && words.front() != "say") echoLine(tool, line);
    runLine(tool, words);
}

std::string readInput(const std::string& path) {
    std::string text;
    asFailure([&] {
        kernel::Input input(path);
        char block[4096];
        while (const size_t count = input.read(block, sizeof block)) text.append(block, count);
    });
    return text;
}

void runScript(Tool& tool, const Arguments& arguments) {
    const std::string& path = arguments.text("FILE");
    const std::string text = readInput(path);
    size_t number = 0;
    size_t failed = 0;
    for (const std::string_view line : splitLines(text)) {
        ++number;
        try {
            runScriptLine(tool, line, arguments.has("echo"));
        } catch (const Failure& failure) {
            const std::string message = fmt::format("{}:{}: {}", kernel::inputName(path), number, failure.what());
            if (!arguments.has("keep-going")) throw Failure(message, failure.exitCode());
            complain(message);
            ++failed;
        }
    }
    if (failed > 0) throw Failure(fmt::format("{}: {} of its commands failed", kernel::inputName(path), failed));
}

void say(Tool& tool, const Arguments& arguments) {
    const std::string& text = arguments.text("TEXT");
    if (!tool.settings.json) return printLine(text);
    JsonWriter json;
    json.beginObject().member("text", text).endObject();
    printLine(json.take());
}

}  // namespace

void addScript(Commands& commands) {
    commands.push_back({"script",
                        "",
                        "Run the commands of a file, one a line, on one store",
                        {positional("FILE", "The script; - is standard input"),
                         flagOption("echo", "Print each command before it runs"),
                         flagOption("keep-going", "Go on after a command that fails")},
                        runScript});
    commands.push_back({"say", "", "Print a text, as a heading in a script", {positional("TEXT", "The text")}, say});
}

}  // namespace mcast6::ctl
