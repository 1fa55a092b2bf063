// script and say: several commands on one store, one after the other.
#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands/line_input.h"
#include "cli/failure.h"
#include "cli/options/command.h"
#include "cli/options/command_line.h"
#include "cli/options/words.h"
#include "cli/output/interrupt.h"
#include "cli/output/output.h"
#include "kernel/capture/input.h"

namespace mcast6::ctl {
namespace {

constexpr const char* kPrompt = "mcast6> ";

// JSON documents stay alone on standard output.
void echoLine(const Tool& tool, std::string_view line) {
    std::string spaced(line);
    std::replace(spaced.begin(), spaced.end(), '\t', ' ');
    if (tool.settings.json) return complain(spaced);
    printLine(fmt::format("> {}", spaced));
}

bool endsScript(const std::vector<std::string>& words) {
    return words.size() == 1 && (words.front() == "quit" || words.front() == "exit");
}

// A script may be written on one system and read on another.
std::string_view withoutByteOrderMark(std::string_view line) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (line.starts_with(kMark)) line.remove_prefix(kMark.size());
    return line;
}

class Script {
public:
    Script(Tool& tool, const Arguments& arguments)
        : tool_(tool),
          name_(kernel::inputName(arguments.text("FILE"))),
          isStandardInput_(arguments.text("FILE") == "-"),
          echo_(arguments.has("echo")),
          input_(arguments.text("FILE")),
          keepGoing_(arguments.has("keep-going") || input_.isInteractive()) {}

    void run() {
        tool_.inScript = true;
        const InterruptGuard guard(input_.isInteractive());
        while (const auto line = input_.next([this] { beforeWaiting(); })) {
            ++number_;
            try {
                if (!runLine(number_ == 1 ? withoutByteOrderMark(*line) : *line)) break;
            } catch (const Failure& failure) {
                fail(failure);
            } catch (const std::exception& error) {
                fail(Failure(error.what()));
            }
        }
        if (input_.isInteractive()) {
            if (input_.hasEnded()) printLine("");
            tool_.outcome = kDone;
        } else if (failed_ > 0) {
            throw Failure(fmt::format("{}: {} of its commands failed", name_, failed_));
        }
    }

private:
    // Who gives the next line may wait for the answers to those before.
    void beforeWaiting() {
        if (input_.isInteractive()) print(takeInterrupt() ? std::string("\n") + kPrompt : kPrompt);
        flushOutput();
    }

    // False: the line ends the script.
    bool runLine(std::string_view line) {
        if (line.starts_with("\x1f\x8b")) {
            throw Failure("the script is compressed; give `zcat FILE | mcast6ctl script -` what it holds");
        }
        const std::vector<std::string> words = splitWords(line);
        if (words.empty()) return true;
        if (endsScript(words)) return false;
        if (echo_ && words.front() != "say") echoLine(tool_, line);
        const Invocation invocation = parseCommandLine(words, tool_.settings, nullptr);
        if (invocation.command != nullptr && invocation.command->verb == "script") {
            throw UsageError("a script cannot run another one");
        }
        if (isStandardInput_ && invocation.command != nullptr && readsStandardInput(invocation)) {
            throw UsageError("standard input is the script, so that nothing else can be read from it: name a file");
        }
        runInvocation(tool_, invocation);
        return true;
    }

    static bool readsStandardInput(const Invocation& invocation) {
        const Command& command = *invocation.command;
        return command.verb == "import" &&
               std::any_of(command.options.begin(), command.options.end(),
                           [&](const OptionSpec& option) { return invocation.arguments.text(option.name) == "-"; });
    }

    void fail(const Failure& failure) {
        const Failure told = input_.isInteractive() ? failure : failure.in(fmt::format("{}:{}", name_, number_));
        if (!keepGoing_) throw Failure(told);
        complain(told.what(), told.notes());
        ++failed_;
    }

    Tool& tool_;
    std::string name_;
    bool isStandardInput_;
    bool echo_;
    LineInput input_;
    bool keepGoing_;
    size_t number_ = 0;
    size_t failed_ = 0;
};

void runScript(Tool& tool, const Arguments& arguments) { Script(tool, arguments).run(); }

void say(Tool& tool, const Arguments& arguments) {
    const std::string& text = arguments.text("TEXT");
    if (!tool.settings.json) return printLine(text);
    JsonWriter json;
    json.beginObject().member("text", text).endObject();
    printLine(json.take());
}

}  // namespace

void addScript(Commands& commands) {
    commands.push_back(
        {"script",
         "",
         "Run the commands of a file, one a line, on one store",
         {positional("FILE", "The script; - is standard input, on a terminal with a prompt; quit or exit ends it"),
          flagOption("echo", "Print each command before it runs"),
          flagOption("keep-going", "Go on after a command that fails")},
         runScript});
    commands.push_back({"say", "", "Print a text, as a heading in a script", {positional("TEXT", "The text")}, say});
}

}  // namespace mcast6::ctl
