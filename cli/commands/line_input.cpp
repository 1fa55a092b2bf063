#include "cli/commands/line_input.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "cli/failure.h"
#include "cli/output/interrupt.h"
#include "kernel/capture/input.h"

namespace mcast6::ctl {
namespace {

constexpr size_t kBlock = size_t{1} << 16;
constexpr size_t kLongestLine = size_t{1} << 20;

}  // namespace

LineInput::LineInput(const std::string& path)
    : name_(kernel::inputName(path)),
      file_(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      interactive_(path == "-" && isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0) {
    if (file_ < 0) throw Failure(fmt::format("{}: {}", name_, std::strerror(errno)));
}

LineInput::~LineInput() {
    if (file_ != STDIN_FILENO) close(file_);
}

std::optional<std::string_view> LineInput::next(const std::function<void()>& waiting) {
    size_t searched = start_;
    for (;;) {
        const size_t end = text_.find('\n', searched);
        if (end != std::string::npos) {
            const std::string_view line = std::string_view(text_).substr(start_, end - start_);
            start_ = end + 1;
            return line;
        }
        if (text_.size() - start_ > kLongestLine) {
            throw Failure(fmt::format("{}: a line is longer than {} bytes: this is no script", name_, kLongestLine));
        }
        searched = text_.size() - start_;
        if (!ended_ && readMore(waiting)) continue;
        if (start_ == text_.size()) return std::nullopt;
        const std::string_view line = std::string_view(text_).substr(start_);
        start_ = text_.size();
        return line;
    }
}

bool LineInput::readMore(const std::function<void()>& waiting) {
    text_.erase(0, start_);
    start_ = 0;
    char block[kBlock];
    ssize_t size = 0;
    for (;;) {
        waiting();
        if (interactive_ && !waitForInput(file_)) continue;
        size = read(file_, block, sizeof block);
        if (size >= 0 || errno != EINTR) break;
    }
    if (size < 0) throw Failure(fmt::format("{}: {}", name_, std::strerror(errno)));
    ended_ = size == 0;
    text_.append(block, static_cast<size_t>(size));
    return !ended_;
}

}  // namespace mcast6::ctl
