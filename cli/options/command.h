// A command of the tool as data: what is typed, its options, and what runs. The command line is made from a list of
// these, so that a new table or import adds its own to the list and nothing else.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/kernel.h"
#include "cli/output/link_names.h"
#include "mcast6_db/types.h"

namespace mcast6::ctl {

struct Settings {
    bool json = false;
    bool verbose = false;
    bool log = false;
};

// What lives from one command of a script to the next, besides the store.
struct Tool {
    Settings settings;
    LinkNames links;  // what displays and options name interfaces by
    // How the tool ends when no command fails: the highest of what the commands set.
    ExitCode outcome = kDone;
    // The store is this process's memory, and no command has put anything into it or was told so.
    bool hasNewStore = false;
    bool inScript = false;
};

enum class OptionKind {
    kValue,       // --name VALUE
    kFlag,        // --name
    kPositional,  // NAME
};

struct OptionSpec {
    OptionKind kind;
    std::string name;         // without dashes
    std::string placeholder;  // what stands for the value in the help text
    std::string help;
    bool required = false;
};

OptionSpec valueOption(std::string name, std::string placeholder, std::string help);
OptionSpec flagOption(std::string name, std::string help);
OptionSpec positional(std::string name, std::string help);
OptionSpec required(OptionSpec option);

// What was given on the command line, by option name. The readers throw Failure, naming option and text.
class Arguments {
public:
    void set(const std::string& name, std::string text) { texts_[name] = std::move(text); }
    bool has(const std::string& name) const { return texts_.contains(name); }
    // "" when it was not given.
    const std::string& text(const std::string& name) const;
    uint32_t number(const std::string& name, uint32_t otherwise) const;
    uint32_t routingTable(const std::string& name, uint32_t otherwise) const;

private:
    std::map<std::string, std::string> texts_;
};

// The readers of single texts, for options that need more than a name.
uint32_t readNumber(const std::string& option, const std::string& text, uint32_t largest = UINT32_MAX);
uint32_t readRoutingTable(const std::string& option, const std::string& text);
Mcast6Ipv6Addr readAddress(const std::string& option, const std::string& text);

// Where options look the names of interfaces up: in the links of one VR. While the names of one VR alone are known,
// they stand for their indexes in all VRs.
struct LinkScope {
    const LinkNames& names;
    Layer layer;
    uint32_t vrId;
};
// An index, or a name of 'scope'.
uint32_t readInterface(const std::string& option, const std::string& text, const LinkScope& scope);
// Tells that several VRs have an interface of this name.
Failure ambiguousInterface(const std::string& option, const std::string& text, const std::vector<uint32_t>& routers);

struct Command {
    std::string verb;    // "show"
    std::string object;  // "l3-mfib"; empty when the verb is the whole command
    std::string help;
    std::vector<OptionSpec> options;
    std::function<void(Tool&, const Arguments&)> run;  // throws Failure
};

using Commands = std::vector<Command>;

// All commands. Each group stands in a file of its own.
const Commands& allCommands();
void addImportMroute(Commands& commands);
void addImportBridge(Commands& commands);
void addBdEnable(Commands& commands);
void addL2Tables(Commands& commands);
void addL3Tables(Commands& commands);
void addStats(Commands& commands);
void addScript(Commands& commands);

}  // namespace mcast6::ctl
