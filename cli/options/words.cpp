#include "cli/options/words.h"

#include "cli/failure.h"

namespace mcast6::ctl {
namespace {

constexpr std::string_view kSpace = " \t\r";

bool isSpace(char c) { return kSpace.find(c) != std::string_view::npos; }

// Takes one word from the front of 'rest', which is not empty and begins with no space.
std::string takeWord(std::string_view& rest) {
    std::string word;
    char quote = 0;
    while (!rest.empty() && (quote != 0 || !isSpace(rest.front()))) {
        const char c = rest.front();
        rest.remove_prefix(1);
        if (quote == 0 && (c == '\'' || c == '"')) {
            quote = c;
        } else if (c == quote) {
            quote = 0;
        } else if (c == '\\' && quote != '\'') {
            if (rest.empty()) throw UsageError("a backslash ends the line");
            const char next = rest.front();
            const bool escapes = quote == 0 || next == '"' || next == '\\';
            if (!escapes) word += c;
            word += next;
            rest.remove_prefix(1);
        } else {
            word += c;
        }
    }
    if (quote != 0) throw UsageError(std::string("a quote ") + quote + " is not closed");
    return word;
}

}  // namespace

std::vector<std::string> splitWords(std::string_view line) {
    std::vector<std::string> words;
    for (;;) {
        line.remove_prefix(std::min(line.find_first_not_of(kSpace), line.size()));
        if (line.empty() || line.front() == '#') return words;
        words.push_back(takeWord(line));
    }
}

}  // namespace mcast6::ctl
