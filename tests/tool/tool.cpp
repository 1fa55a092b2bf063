#include "tests/tool/tool.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "cli/failure.h"
#include "cli/options/command.h"
#include "cli/output/library_log.h"

namespace mcast6::ctl::test {
namespace {

// What a stream of the process is given, kept in memory while this lives.
class Capture {
public:
    explicit Capture(FILE* stream)
        : stream_(stream), saved_(dup(fileno(stream))), kept_(memfd_create("captured", MFD_CLOEXEC)) {
        std::fflush(stream_);
        dup2(kept_, fileno(stream_));
    }
    ~Capture() {
        restore();
        close(kept_);
    }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    std::string take() {
        restore();
        std::string text(static_cast<size_t>(lseek(kept_, 0, SEEK_END)), '\0');
        EXPECT_EQ(pread(kept_, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
        return text;
    }

private:
    void restore() {
        if (saved_ < 0) return;
        std::fflush(stream_);
        dup2(saved_, fileno(stream_));
        close(saved_);
        saved_ = -1;
    }

    FILE* stream_;
    int saved_;
    int kept_;
};

const Command* find(const std::string& verb, const std::string& object) {
    const Commands& all = allCommands();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Command& command) {
        return command.verb == verb && command.object == object;
    });
    return found == all.end() ? nullptr : &*found;
}

}  // namespace

std::set<std::string> optionsOf(const std::string& verb, const std::string& object) {
    std::set<std::string> names;
    const Command* command = find(verb, object);
    if (command == nullptr) return names;
    for (const OptionSpec& option : command->options) names.insert(option.name);
    return names;
}

Answer ask(const std::string& verb, const std::string& object, const Given& given) {
    Answer answer;
    const Command* command = find(verb, object);
    if (command == nullptr) {
        ADD_FAILURE() << "no command: " << verb << " " << object;
        return answer;
    }
    const std::set<std::string> options = optionsOf(verb, object);
    Arguments arguments;
    for (const auto& [name, text] : given) {
        EXPECT_TRUE(options.contains(name)) << verb << " " << object << " has no --" << name;
        arguments.set(name, text);
    }
    Tool tool;
    tool.settings.json = true;
    tool.settings.verbose = true;
    Capture out(stdout);
    Capture err(stderr);
    try {
        command->run(tool, arguments);
    } catch (const Failure& failure) {
        answer.failure = failure.what();
    }
    takeLibraryLog();
    answer.told = err.take();
    const std::string text = out.take();
    if (!answer.failure.empty()) return answer;
    answer.document = Json::parse(text, nullptr, false);
    EXPECT_FALSE(answer.document.is_discarded()) << verb << " " << object << " printed no JSON: " << text;
    return answer;
}

}  // namespace mcast6::ctl::test
