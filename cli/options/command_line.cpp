#include "cli/options/command_line.h"

#include <CLI/CLI.hpp>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <utility>

#include "cli/options/advice.h"
#include "cli/output/library_log.h"
#include "cli/output/output.h"
#include "mcast6_db/version.h"

namespace mcast6::ctl {
namespace {

constexpr const char* kVersion = "mcast6ctl " MCAST6_DB_VERSION;

const std::map<std::string, const char*> kVerbHelp = {
    {"import", "Bring captured state into the tables"},
    {"show", "Show the entries of a table"},
    {"count", "Count the entries of a table"},
    {"smooth", "Delete the entries of a table that the last import did not confirm"},
    {"set", "Write an entry of a table"},
    {"delete", "Delete an entry of a table"},
};

// One command on the command line; the map keeps the texts where the parser puts them.
struct Offered {
    const Command* command;
    CLI::App* app;
    std::map<std::string, std::string> texts;
    std::map<std::string, CLI::Option*> options;
};

CLI::App* childNamed(CLI::App& parent, const std::string& name, const std::string& help) {
    for (CLI::App* known : parent.get_subcommands([&](CLI::App* app) { return app->get_name() == name; })) return known;
    CLI::App* child = parent.add_subcommand(name, help);
    child->fallthrough();
    return child;
}

// Understands command lines of some commands, one after the other.
class Parser {
public:
    // 'process': the line may have the options of the process.
    Parser(const std::vector<const Command*>& commands, bool process)
        : app_("Operator's tool of the IPv6 multicast tables", "mcast6ctl"), process_(process) {
        app_.require_subcommand(1);
        app_.fallthrough();
        offerSettings();
        for (const Command* command : commands) offerCommand(*command);
    }
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    Invocation parse(const std::vector<std::string>& words, const Settings& before) {
        given_ = {};
        Invocation invocation;
        try {
            app_.parse(std::vector<std::string>(words.rbegin(), words.rend()));
            for (const Offered& offered : offered_) {
                if (offered.app->parsed() > 0) takeArguments(offered, words, invocation);
            }
        } catch (const CLI::ParseError& error) {
            std::ostringstream text;
            const bool withCommand = !app_.get_subcommands().empty() || app_.remaining_size(true) > 0;
            const bool isVersion = dynamic_cast<const CLI::CallForVersion*>(&error) != nullptr;
            if (app_.exit(error, text, text) != 0 || (isVersion && withCommand)) {
                const std::string told = isVersion ? "--version goes without a command" : error.what();
                throw UsageError(whatIsWrong(words, allCommands(), process_).value_or(told));
            }
            invocation.text = text.str();
            return invocation;
        }
        invocation.settings = {given_.json || before.json, given_.verbose || before.verbose, given_.log || before.log};
        return invocation;
    }

    const std::string& store() const { return store_; }

private:
    void offerSettings() {
        app_.add_flag("--json", given_.json, "Print JSON, one document a line");
        app_.add_flag("--verbose", given_.verbose,
                      "Tell on standard error how queries are answered, and all refused entries");
        app_.add_flag("--log", given_.log, "Print the library's log on standard error");
        if (!process_) return;
        app_.add_option("--store", store_, "The store that holds the tables: memory: (this process alone)")
            ->type_name("URI");
        app_.set_version_flag("--version", kVersion);
    }

    void offerCommand(const Command& command) {
        const auto verbHelp = kVerbHelp.find(command.verb);
        CLI::App* place = childNamed(app_, command.verb, verbHelp == kVerbHelp.end() ? command.help : verbHelp->second);
        if (!command.object.empty()) {
            place->require_subcommand(1);
            place = childNamed(*place, command.object, command.help);
        }
        offerOptions(offered_.emplace_back(Offered{&command, place, {}, {}}));
    }

    static void offerOptions(Offered& offered) {
        for (const OptionSpec& spec : offered.command->options) {
            const std::string name = spec.kind == OptionKind::kPositional ? spec.name : "--" + spec.name;
            CLI::Option* option = spec.kind == OptionKind::kFlag
                                      ? offered.app->add_flag(name, spec.help)
                                      : offered.app->add_option(name, offered.texts[spec.name], spec.help);
            if (spec.kind == OptionKind::kValue) option->type_name(spec.placeholder);
            if (spec.kind == OptionKind::kPositional) option->type_name("");
            if (spec.required) option->required();
            offered.options[spec.name] = option;
        }
    }

    void takeArguments(const Offered& offered, const std::vector<std::string>& words, Invocation& invocation) const {
        invocation.command = offered.command;
        for (const OptionSpec& spec : offered.command->options) {
            const CLI::Option* option = offered.options.at(spec.name);
            if (option->count() == 0 || (spec.kind == OptionKind::kFlag && !option->as<bool>())) continue;
            const auto text = offered.texts.find(spec.name);
            const std::string given = text == offered.texts.end() ? "" : text->second;
            // The parser takes the next option for the value that was forgotten.
            const bool doubtful = spec.kind == OptionKind::kValue && given.starts_with("--");
            const auto wrong = doubtful ? whatIsWrong(words, allCommands(), process_) : std::nullopt;
            if (wrong) throw UsageError(*wrong);
            invocation.arguments.set(spec.name, given);
        }
    }

    CLI::App app_;
    bool process_;
    Settings given_;
    std::string store_ = ProcessOptions().store;
    std::list<Offered> offered_;
};

// The command that the first words name exactly; null: a longer look is needed.
const Command* namedCommand(const std::vector<std::string>& words) {
    if (words.empty()) return nullptr;
    for (const Command& command : allCommands()) {
        if (command.verb != words[0]) continue;
        if (command.object.empty() || (words.size() > 1 && command.object == words[1])) return &command;
    }
    return nullptr;
}

// What a parser for these words must know: making one of all commands takes longer than most commands.
std::vector<const Command*> commandsFor(const Command* named) {
    if (named != nullptr) return {named};
    std::vector<const Command*> all;
    for (const Command& command : allCommands()) all.push_back(&command);
    return all;
}

// The parser of a script's lines that name this command, kept for the next such line.
Parser& lineParser(const Command* named) {
    static std::map<const Command*, std::unique_ptr<Parser>> kept;
    std::unique_ptr<Parser>& parser = kept[named];
    if (!parser) parser = std::make_unique<Parser>(commandsFor(named), false);
    return *parser;
}

// `help show l3-mfib` asks for what `show l3-mfib --help` tells.
std::vector<std::string> withHelpOption(const std::vector<std::string>& words) {
    if (words.empty() || words.front() != "help") return words;
    std::vector<std::string> asked(words.begin() + 1, words.end());
    asked.emplace_back("--help");
    return asked;
}

bool fillsTables(const Command& command) { return command.verb == "import" || command.verb == "set"; }

// Whoever looks for what another process imported should not have to wonder.
bool wondersAtNewStore(const Tool& tool, const Command& command) {
    if (!tool.hasNewStore) return false;
    return command.verb == "show" || (!tool.inScript && (command.verb == "count" || command.verb == "smooth"));
}

}  // namespace

Invocation parseCommandLine(const std::vector<std::string>& typed, const Settings& settings, ProcessOptions* process) {
    const std::vector<std::string> words = withHelpOption(typed);
    const Command* named = namedCommand(words);
    if (process == nullptr) return lineParser(named).parse(words, settings);
    Parser parser(commandsFor(named), true);
    Invocation invocation = parser.parse(words, settings);
    process->store = parser.store();
    return invocation;
}

void runInvocation(Tool& tool, const Invocation& invocation) {
    print(invocation.text);
    if (invocation.command == nullptr) return;
    const Settings before = std::exchange(tool.settings, invocation.settings);
    printLibraryLog(tool.settings.log);
    if (fillsTables(*invocation.command)) tool.hasNewStore = false;
    try {
        invocation.command->run(tool, invocation.arguments);
    } catch (...) {
        tool.settings = before;
        throw;
    }
    takeLibraryLog();
    if (wondersAtNewStore(tool, *invocation.command)) {
        complain(
            "the store memory: lives in one process, and nothing was imported in this one: "
            "run the import and this command in one `mcast6ctl script -`");
        tool.hasNewStore = false;
    }
    tool.settings = before;
}

}  // namespace mcast6::ctl
