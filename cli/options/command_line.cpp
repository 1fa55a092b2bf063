#include "cli/options/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <sstream>
#include <utility>

#include "cli/output/library_log.h"
#include "cli/output/output.h"
#include "mcast6_db/version.h"

namespace mcast6::ctl {
namespace {

constexpr const char* kVersion = "mcast6ctl " MCAST6_DB_VERSION;

// One command on the command line; the map keeps the texts where the parser puts them.
struct Offered {
    const Command* command;
    CLI::App* app;
    std::map<std::string, std::string> texts;
    std::map<std::string, CLI::Option*> options;
};

const std::map<std::string, const char*> kVerbHelp = {
    {"import", "Bring captured state into the tables"},
    {"show", "Show the entries of a table"},
    {"count", "Count the entries of a table"},
    {"smooth", "Delete the entries of a table that the last import did not confirm"},
    {"set", "Write an entry of a table"},
    {"delete", "Delete an entry of a table"},
};

void offerOptions(Offered& offered) {
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

CLI::App* childNamed(CLI::App& parent, const std::string& name, const std::string& help) {
    for (CLI::App* known : parent.get_subcommands([&](CLI::App* app) { return app->get_name() == name; })) return known;
    CLI::App* child = parent.add_subcommand(name, help);
    child->fallthrough();
    return child;
}

std::vector<std::unique_ptr<Offered>> offerCommands(CLI::App& app) {
    std::vector<std::unique_ptr<Offered>> all;
    for (const Command& command : allCommands()) {
        const auto verbHelp = kVerbHelp.find(command.verb);
        CLI::App* place = childNamed(app, command.verb, verbHelp == kVerbHelp.end() ? command.help : verbHelp->second);
        if (!command.object.empty()) {
            place->require_subcommand(1);
            place = childNamed(*place, command.object, command.help);
        }
        auto offered = std::make_unique<Offered>();
        offered->command = &command;
        offered->app = place;
        offerOptions(*offered);
        all.push_back(std::move(offered));
    }
    return all;
}

void offerSettings(CLI::App& app, Settings& settings) {
    app.add_flag("--json", settings.json, "Print JSON, one document a line");
    app.add_flag("--verbose", settings.verbose,
                 "Tell on standard error how queries are answered, and all refused entries");
    app.add_flag("--log", settings.log, "Print the library's log on standard error");
}

// The parser misses a command, and obeys the option --version, before it looks at the word that stands in a command's place.
std::string explain(const CLI::App& app, const CLI::ParseError& error) {
    const bool isVersion = dynamic_cast<const CLI::CallForVersion*>(&error) != nullptr;
    const bool missing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    if (!missing && !isVersion && dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr) return error.what();
    // The innermost command that was understood.
    const CLI::App* place = &app;
    while (!place->get_subcommands().empty()) place = place->get_subcommands().front();
    const bool complete = place->get_require_subcommand_min() == 0;
    const std::string path = place == &app ? "" : " after '" + place->get_name() + "'";
    const std::vector<std::string> unknown = app.remaining(true);
    if (unknown.empty() && complete) return isVersion ? "--version goes without a command" : error.what();
    if (unknown.empty()) return "no command is given" + path;
    const std::string word = "'" + unknown.front() + "'";
    if (unknown.front().starts_with('-')) return "unknown option " + word + path;
    return (complete ? "unexpected " : "unknown command ") + word + path;
}

// 'settings' is where the parser put what was given; what was set already stays.
Settings joined(const Settings& given, const Settings& before) {
    return {given.json || before.json, given.verbose || before.verbose, given.log || before.log};
}

}  // namespace

Invocation parseCommandLine(const std::vector<std::string>& words, const Settings& settings, ProcessOptions* process) {
    CLI::App app("Operator's tool of the IPv6 multicast tables", "mcast6ctl");
    app.require_subcommand(1);
    app.fallthrough();
    Settings given;
    offerSettings(app, given);
    if (process != nullptr) {
        app.add_option("--store", process->store, "The store that holds the tables: memory: (this process alone)")
            ->type_name("URI");
        app.set_version_flag("--version", kVersion);
    }
    const auto all = offerCommands(app);
    Invocation invocation;
    try {
        std::vector<std::string> reversed(words.rbegin(), words.rend());
        app.parse(std::move(reversed));
    } catch (const CLI::ParseError& error) {
        std::ostringstream text;
        const bool withCommand = !app.get_subcommands().empty() || app.remaining_size(true) > 0;
        const bool isVersion = dynamic_cast<const CLI::CallForVersion*>(&error) != nullptr;
        if (app.exit(error, text, text) != 0 || (isVersion && withCommand)) throw UsageError(explain(app, error));
        invocation.text = text.str();
        return invocation;
    }
    invocation.settings = joined(given, settings);
    for (const auto& offered : all) {
        if (!offered->app->parsed()) continue;
        invocation.command = offered->command;
        for (const OptionSpec& spec : offered->command->options) {
            const CLI::Option* option = offered->options.at(spec.name);
            if (option->count() == 0 || (spec.kind == OptionKind::kFlag && !option->as<bool>())) continue;
            invocation.arguments.set(spec.name, offered->texts[spec.name]);
        }
    }
    return invocation;
}

void runInvocation(Tool& tool, const Invocation& invocation) {
    print(invocation.text);
    if (invocation.command == nullptr) return;
    const Settings before = std::exchange(tool.settings, invocation.settings);
    printLibraryLog(tool.settings.log);
    try {
        invocation.command->run(tool, invocation.arguments);
    } catch (...) {
        tool.settings = before;
        throw;
    }
    takeLibraryLog();
    tool.settings = before;
}

void runLine(Tool& tool, const std::vector<std::string>& words) {
    runInvocation(tool, parseCommandLine(words, tool.settings, nullptr));
}

}  // namespace mcast6::ctl
