#include "cli/options/advice.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <string_view>

namespace mcast6::ctl {
namespace {

using Names = std::vector<std::string>;

const Names kSettings = {"json", "verbose", "log", "help"};
const Names kProcessOptions = {"store", "version"};

void addOnce(Names& names, const std::string& name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
}

bool contains(const Names& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// How many letters must be put in, left out, changed, or swapped with the next one.
size_t editDistance(std::string_view left, std::string_view right) {
    std::vector<std::vector<size_t>> distance(left.size() + 1, std::vector<size_t>(right.size() + 1));
    for (size_t i = 0; i <= left.size(); ++i) {
        for (size_t j = 0; j <= right.size(); ++j) {
            size_t& here = distance[i][j];
            if (i == 0 || j == 0) {
                here = i + j;
                continue;
            }
            const size_t change = left[i - 1] == right[j - 1] ? 0 : 1;
            here = std::min({distance[i - 1][j] + 1, distance[i][j - 1] + 1, distance[i - 1][j - 1] + change});
            const bool swapped = i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1];
            if (swapped) here = std::min(here, distance[i - 2][j - 2] + 1);
        }
    }
    return distance[left.size()][right.size()];
}

// "; did you mean 'a', 'b' or 'c'?"; empty without names.
std::string didYouMean(const Names& names, std::string_view dashes = "") {
    if (names.empty()) return "";
    std::string text = "; did you mean ";
    for (size_t position = 0; position < names.size(); ++position) {
        if (position > 0) text += position + 1 == names.size() ? " or " : ", ";
        text += fmt::format("'{}{}'", dashes, names[position]);
    }
    return text + "?";
}

// "vrf" of "--vrf=1" and of "-vrf".
std::string optionName(const std::string& word) {
    const size_t start = std::min(word.find_first_not_of('-'), word.size());
    return word.substr(start, word.find('=') - start);
}

// As the parser sees it: "-1" and "-- a heading --" are none.
bool isOption(const std::string& word) {
    if (word.size() < 2 || word[0] != '-') return false;
    const char first = word.starts_with("--") ? (word.size() > 2 ? word[2] : ' ') : word[1];
    return first != '-' && first != '!' && first != ' ' && first != '\n' && (first < '0' || first > '9');
}

std::string called(const Command& command) {
    return command.object.empty() ? command.verb : command.verb + " " + command.object;
}

// Goes over the words as the parser does, up to the first that is wrong.
class Reading {
public:
    Reading(const Commands& commands, bool process) : commands_(commands), process_(process) {}

    std::optional<std::string> of(const Names& words) {
        for (size_t position = 0; position < words.size(); ++position) {
            const std::string& word = words[position];
            const std::string* next = position + 1 < words.size() ? &words[position + 1] : nullptr;
            if (!onlyPositional_ && word == "--") {
                onlyPositional_ = true;
                continue;
            }
            const bool option = !onlyPositional_ && isOption(word);
            if (auto wrong = option ? readOption(word, next) : readWord(word, next)) return wrong;
            if (option && takesNext_) ++position;
        }
        return missing();
    }

private:
    std::optional<std::string> readOption(const std::string& word, const std::string* next) {
        takesNext_ = false;
        const std::string name = optionName(word);
        const bool hasTwoDashes = word.starts_with("--");
        if (hasTwoDashes && (contains(kSettings, name) || (process_ && name == "version"))) {
            if (word.find('=') == std::string::npos) return std::nullopt;
            return fmt::format("--{} takes no value", name);
        }
        const OptionSpec* spec = nullptr;
        if (command_ != nullptr) spec = find(*command_, name);
        const bool isStore = process_ && name == "store";
        if (!hasTwoDashes || (spec == nullptr && !isStore)) return unknownOption(word, name);
        if (contains(seen_, name) && (isStore || spec->kind == OptionKind::kValue)) {
            return fmt::format("--{} is given twice", name);
        }
        seen_.push_back(name);
        const bool isFlag = spec != nullptr && spec->kind == OptionKind::kFlag;
        const bool hasValue = word.find('=') != std::string::npos;
        if (isFlag && hasValue) return fmt::format("--{} takes no value", name);
        takesNext_ = !isFlag && !hasValue;
        if (isFlag || (hasValue && word.back() != '=')) return std::nullopt;
        if (takesNext_ && next != nullptr && !isOption(*next) && *next != "--") return std::nullopt;
        return fmt::format("--{} needs a value after it: --{} {}", name, name, isStore ? "URI" : spec->placeholder);
    }

    std::optional<std::string> readWord(const std::string& word, const std::string* next) {
        if (command_ != nullptr) {
            if (++positional_ <= positionalOf(*command_)) return std::nullopt;
            return fmt::format("unexpected '{}' after '{}'", word, called(*command_));
        }
        if (verb_.empty()) {
            if (!contains(verbs(), word)) return unknownVerb(word, next);
            verb_ = word;
        } else if (!contains(objectsOf(verb_), word)) {
            return unknownObject(word);
        }
        for (const Command& command : commands_) {
            if (command.verb == verb_ && (command.object.empty() || command.object == word)) command_ = &command;
        }
        return std::nullopt;
    }

    std::optional<std::string> missing() const {
        if (verb_.empty()) return fmt::format("no command is given; the commands are {}", fmt::join(verbs(), ", "));
        if (command_ == nullptr) {
            return fmt::format("no command is given after '{}'; there stands one of {}", verb_,
                               fmt::join(objectsOf(verb_), ", "));
        }
        size_t position = 0;
        for (const OptionSpec& spec : command_->options) {
            if (spec.kind == OptionKind::kPositional && ++position > positional_) {
                return fmt::format("{} is missing after '{}': {}", spec.name, called(*command_), spec.help);
            }
            if (spec.required && spec.kind == OptionKind::kValue && !contains(seen_, spec.name)) {
                return fmt::format("--{} is required by '{}': --{} {}, {}", spec.name, called(*command_), spec.name,
                                   spec.placeholder, spec.help);
            }
        }
        return std::nullopt;
    }

    std::string unknownOption(const std::string& word, const std::string& name) const {
        const std::string option = fmt::format("option '{}'", word.substr(0, word.find('=')));
        if (!process_ && contains(kProcessOptions, name)) {
            return fmt::format("unknown {}: it is one of the whole process, not of a line of a script", option);
        }
        if (command_ == nullptr) {
            const std::string place = verb_.empty() ? "before a command" : fmt::format("after '{}'", verb_);
            const Names near = nearest(name, optionsBefore());
            if (near.empty() && contains(optionsAfter(), name)) {
                return fmt::format("{} stands too early: it comes after the whole command", option);
            }
            return fmt::format("unknown {} {}{}", option, place, didYouMean(near, "--"));
        }
        Names known = optionsBefore();
        for (const OptionSpec& spec : command_->options) {
            if (spec.kind != OptionKind::kPositional) known.push_back(spec.name);
        }
        std::string unknown = fmt::format("unknown {} after '{}'", option, called(*command_));
        const Names near = nearest(name, known);
        if (!near.empty()) return unknown + didYouMean(near, "--");
        if (positionalOf(*command_) > positional_) return unknown + "; a text that begins with - stands after --";
        return unknown;
    }

    std::string unknownVerb(const std::string& word, const std::string* next) const {
        const std::string unknown = fmt::format("unknown command '{}'", word);
        if (contains(verbs(), word.substr(0, word.find(' '))))
            return unknown + "; give its words without quotes around all";
        Names places;
        for (const Command& command : commands_) {
            if (command.object != word) continue;
            if (next != nullptr && command.verb == *next) {
                return fmt::format("{}; the words are swapped: '{}'", unknown, called(command));
            }
            addOnce(places, called(command));
        }
        if (places.size() > 3) places.resize(3);
        if (!places.empty()) return unknown + didYouMean(places);
        const Names near = nearest(word, verbs());
        if (!near.empty()) return unknown + didYouMean(near);
        return fmt::format("{}; the commands are {}", unknown, fmt::join(verbs(), ", "));
    }

    std::string unknownObject(const std::string& word) const {
        const std::string unknown = fmt::format("unknown command '{}' after '{}'", word, verb_);
        Names places;
        for (const Command& command : commands_) {
            if (command.object == word) addOnce(places, command.verb);
        }
        if (!places.empty()) return fmt::format("{}; '{}' goes after {}", unknown, word, fmt::join(places, ", "));
        const Names near = nearest(word, objectsOf(verb_));
        if (!near.empty()) return unknown + didYouMean(near);
        return fmt::format("{}; there stands one of {}", unknown, fmt::join(objectsOf(verb_), ", "));
    }

    Names verbs() const {
        Names names;
        for (const Command& command : commands_) addOnce(names, command.verb);
        return names;
    }

    Names objectsOf(const std::string& verb) const {
        Names names;
        for (const Command& command : commands_) {
            if (command.verb == verb) addOnce(names, command.object);
        }
        return names;
    }

    Names optionsBefore() const {
        Names names = kSettings;
        if (process_) names.insert(names.end(), kProcessOptions.begin(), kProcessOptions.end());
        return names;
    }

    Names optionsAfter() const {
        Names names;
        for (const Command& command : commands_) {
            for (const OptionSpec& spec : command.options) addOnce(names, spec.name);
        }
        return names;
    }

    static const OptionSpec* find(const Command& command, const std::string& name) {
        for (const OptionSpec& spec : command.options) {
            if (spec.name == name && spec.kind != OptionKind::kPositional) return &spec;
        }
        return nullptr;
    }

    static size_t positionalOf(const Command& command) {
        return static_cast<size_t>(
            std::count_if(command.options.begin(), command.options.end(),
                          [](const OptionSpec& spec) { return spec.kind == OptionKind::kPositional; }));
    }

    const Commands& commands_;
    bool process_;
    bool onlyPositional_ = false;
    bool takesNext_ = false;
    std::string verb_;
    const Command* command_ = nullptr;
    size_t positional_ = 0;
    Names seen_;
};

// "l3-mfib" of "L3_MFIB" and of "l3mc6_mfib", as the database calls the table.
std::string asTheToolWrites(std::string word) {
    for (char& c : word) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c == '_') c = '-';
    }
    const size_t infix = word.find("mc6-");
    if (infix != std::string::npos) word.erase(infix, 3);
    return word;
}

}  // namespace

std::optional<std::string> whatIsWrong(const std::vector<std::string>& words, const Commands& commands, bool process) {
    return Reading(commands, process).of(words);
}

std::vector<std::string> nearest(const std::string& typed, const std::vector<std::string>& candidates) {
    // Longer ones are no slip, and would take long to compare.
    constexpr size_t kLongest = 40;
    if (typed.empty() || typed.size() > kLongest) return {};
    const std::string word = asTheToolWrites(typed);
    size_t closest = std::max<size_t>(1, word.size() / 3) + 1;
    Names near;
    for (const std::string& candidate : candidates) {
        const size_t distance = candidate.starts_with(word) ? 0 : editDistance(word, candidate);
        // A letter or two that are all different are no slip either.
        if (distance > closest || distance >= word.size()) continue;
        if (distance < closest) near.clear();
        closest = distance;
        near.push_back(candidate);
    }
    if (closest > std::max<size_t>(1, word.size() / 3)) near.clear();
    if (near.size() > 3) near.resize(3);
    return near;
}

}  // namespace mcast6::ctl
