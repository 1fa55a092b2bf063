// The lines of a script, one at a time, as they come.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace mcast6::ctl {

class LineInput {
public:
    // "-" is standard input. Throws Failure.
    explicit LineInput(const std::string& path);
    ~LineInput();
    LineInput(const LineInput&) = delete;
    LineInput& operator=(const LineInput&) = delete;

    // Whether a person types the lines and sees the answers: standard input and standard output are a terminal.
    bool isInteractive() const { return interactive_; }

    // Whether the last line was handed out.
    bool hasEnded() const { return ended_ && start_ == text_.size(); }

    // The next line without its end, which lives until the next call; nothing after the last one. Before it waits for
    // input, and again when a signal ended the wait, it calls 'waiting'. Throws Failure.
    std::optional<std::string_view> next(const std::function<void()>& waiting);

private:
    // Whether there is more. Keeps what was not handed out.
    bool readMore(const std::function<void()>& waiting);

    std::string name_;
    int file_;
    bool interactive_;
    bool ended_ = false;
    size_t start_ = 0;  // of what was not handed out, in text_
    std::string text_;
};

}  // namespace mcast6::ctl
