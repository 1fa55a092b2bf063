// The text of a capture, a block at a time: a file or standard input, plain or compressed by gzip.
#pragma once

#include <sys/types.h>
#include <zlib.h>

#include <cstddef>
#include <string>
#include <vector>

namespace mcast6::kernel {

// How messages call an input: its path, or "standard input" for "-".
std::string inputName(const std::string& path);

class Input {
public:
    // Throws Error, naming the input and the reason; so do the others.
    explicit Input(const std::string& path);
    ~Input();
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    // The next bytes of the text; 0 at its end.
    size_t read(char* text, size_t capacity);

    // Begins anew. What is no file, such as a pipe, can be read once only: its bytes are kept in a temporary file.
    void rewind();

private:
    size_t readBytes(char* bytes, size_t capacity);
    void keep(const char* bytes, size_t count);
    void fill();
    size_t inflateSome(char* text, size_t capacity);
    [[noreturn]] void fail(const std::string& reason) const;

    std::string name_;
    int file_;
    bool owned_;          // whether 'file_' is closed at the end
    int kept_ = -1;       // the temporary file
    bool keeps_ = false;  // whether bytes still go there
    size_t bytesKept_ = 0;
    off_t start_ = 0;        // where a file that is standard input begins
    std::vector<char> raw_;  // bytes read and not yet taken: from 'taken_' to 'filled_'
    size_t taken_ = 0;
    size_t filled_ = 0;
    bool begun_ = false;
    bool compressed_ = false;
    bool memberEnded_ = false;
    z_stream stream_{};
    bool inflating_ = false;
};

}  // namespace mcast6::kernel
