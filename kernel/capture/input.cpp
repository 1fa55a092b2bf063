#include "kernel/capture/input.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "kernel/error.h"

namespace mcast6::kernel {
namespace {

constexpr size_t kBlock = size_t{1} << 16;
// Of a pipe, compressed or not. Files may be of any size.
constexpr size_t kMostKept = size_t{8} << 30;

bool isFile(int file) {
    struct stat status {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

// A file without a name, on disk rather than in the memory that /tmp may be.
int temporaryFile() {
    const char* chosen = std::getenv("TMPDIR");
    std::string name = std::string(chosen != nullptr && *chosen != '\0' ? chosen : "/var/tmp") + "/mcast6.XXXXXX";
    const int file = mkostemp(name.data(), O_CLOEXEC);
    if (file >= 0) unlink(name.c_str());
    return file;
}

}  // namespace

std::string inputName(const std::string& path) { return path == "-" ? "standard input" : path; }

Input::Input(const std::string& path)
    : name_(inputName(path)),
      file_(path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      owned_(path != "-"),
      raw_(kBlock) {
    if (file_ < 0) fail(std::strerror(errno));
    keeps_ = !isFile(file_);
    if (!keeps_ && !owned_) start_ = std::max<off_t>(lseek(file_, 0, SEEK_CUR), 0);
}

Input::~Input() {
    if (inflating_) inflateEnd(&stream_);
    if (owned_ && file_ >= 0) close(file_);
    if (kept_ >= 0) close(kept_);
}

void Input::fail(const std::string& reason) const { throw Error(fmt::format("{}: {}", name_, reason)); }

size_t Input::readBytes(char* bytes, size_t capacity) {
    for (;;) {
        const ssize_t count = ::read(keeps_ || kept_ < 0 ? file_ : kept_, bytes, capacity);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail(std::strerror(errno));
        if (keeps_) keep(bytes, static_cast<size_t>(count));
        return static_cast<size_t>(count);
    }
}

void Input::keep(const char* bytes, size_t count) {
    if (kept_ < 0) kept_ = temporaryFile();
    if (kept_ < 0) fail(fmt::format("no temporary file to keep it in: {}", std::strerror(errno)));
    bytesKept_ += count;
    if (bytesKept_ > kMostKept) fail("more than 8 GiB from what is no file; write it to a file first");
    while (count > 0) {
        const ssize_t written = write(kept_, bytes, count);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail(fmt::format("keeping it in a temporary file: {}", std::strerror(errno)));
        bytes += written;
        count -= static_cast<size_t>(written);
    }
}

void Input::rewind() {
    const bool fromKept = kept_ >= 0;
    if (keeps_ && !fromKept) fail("nothing was read of it");
    if (lseek(fromKept ? kept_ : file_, fromKept ? 0 : start_, SEEK_SET) < 0) fail(std::strerror(errno));
    keeps_ = false;
    taken_ = filled_ = 0;
    begun_ = memberEnded_ = false;
    if (inflating_) inflateEnd(&stream_);
    inflating_ = false;
}

// Brings more bytes behind those that are left, if any come.
void Input::fill() {
    std::memmove(raw_.data(), raw_.data() + taken_, filled_ - taken_);
    filled_ -= taken_;
    taken_ = 0;
    filled_ += readBytes(raw_.data() + filled_, raw_.size() - filled_);
}

size_t Input::read(char* text, size_t capacity) {
    if (!begun_) {
        begun_ = true;
        // A pipe may bring the two bytes that tell gzip one by one.
        fill();
        if (filled_ == 1) fill();
        compressed_ = filled_ >= 2 && std::memcmp(raw_.data(), "\x1f\x8b", 2) == 0;
    }
    if (compressed_) return inflateSome(text, capacity);
    if (taken_ == filled_) return readBytes(text, capacity);
    const size_t count = std::min(capacity, filled_ - taken_);
    std::memcpy(text, raw_.data() + taken_, count);
    taken_ += count;
    return count;
}

// One member after another, as `cat a.gz b.gz` leaves them; what follows the last one is no text.
size_t Input::inflateSome(char* text, size_t capacity) {
    constexpr int kGzipOnly = 16 + MAX_WBITS;
    if (!inflating_) {
        stream_ = {};
        if (inflateInit2(&stream_, kGzipOnly) != Z_OK) fail("no memory to decompress it");
        inflating_ = true;
    }
    for (;;) {
        if (filled_ - taken_ < 2) fill();
        if (memberEnded_) {
            if (filled_ - taken_ < 2 || std::memcmp(raw_.data() + taken_, "\x1f\x8b", 2) != 0) return 0;
            inflateReset(&stream_);
            memberEnded_ = false;
        }
        stream_.next_in = reinterpret_cast<Bytef*>(raw_.data() + taken_);
        stream_.avail_in = static_cast<uInt>(filled_ - taken_);
        stream_.next_out = reinterpret_cast<Bytef*>(text);
        stream_.avail_out = static_cast<uInt>(capacity);
        const int state = inflate(&stream_, Z_NO_FLUSH);
        if (state == Z_BUF_ERROR) fail("the compressed data ends too early");
        if (state != Z_OK && state != Z_STREAM_END) fail("the compressed data is damaged");
        taken_ = filled_ - stream_.avail_in;
        memberEnded_ = state == Z_STREAM_END;
        if (const size_t count = capacity - stream_.avail_out; count > 0) return count;
    }
}

}  // namespace mcast6::kernel
