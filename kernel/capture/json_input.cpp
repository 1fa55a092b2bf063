#include "kernel/capture/json_input.h"

#include <fmt/format.h>
#include <zlib.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

#include "cli/failure.h"

namespace mcast6::ctl {
namespace {

// More than any capture; less than would exhaust a machine that is fed a decompression bomb.
constexpr size_t kLargestInput = size_t{1} << 31;
constexpr size_t kBlock = size_t{1} << 16;

Failure unreadable(const std::string& path, const std::string& reason) {
    return Failure(fmt::format("{}: {}", inputName(path), reason));
}

std::string readBytes(const std::string& path) {
    const auto close = [](std::FILE* file) {
        if (file != stdin) std::fclose(file);
    };
    const std::unique_ptr<std::FILE, decltype(close)> file(path == "-" ? stdin : std::fopen(path.c_str(), "rb"), close);
    if (!file) throw unreadable(path, std::strerror(errno));
    std::string bytes;
    char block[kBlock];
    size_t count = 0;
    while ((count = std::fread(block, 1, sizeof block, file.get())) > 0) {
        bytes.append(block, count);
        if (bytes.size() > kLargestInput) throw unreadable(path, "larger than 2 GiB");
    }
    if (std::ferror(file.get()) != 0) throw unreadable(path, std::strerror(errno));
    return bytes;
}

bool isGzip(std::string_view bytes) { return bytes.starts_with("\x1f\x8b"); }

// One after another, as `cat a.gz b.gz` leaves them.
std::string decompress(const std::string& path, const std::string& bytes) {
    z_stream stream{};
    constexpr int kGzipOnly = 16 + MAX_WBITS;
    if (inflateInit2(&stream, kGzipOnly) != Z_OK) throw unreadable(path, "no memory to decompress it");
    const std::unique_ptr<z_stream, decltype(&inflateEnd)> ending(&stream, inflateEnd);

    // The input is at most 2 GiB and so fits zlib's 32-bit count.
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    std::string text;
    char block[kBlock];
    int state = Z_OK;
    while (state != Z_STREAM_END || isGzip({reinterpret_cast<const char*>(stream.next_in), stream.avail_in})) {
        if (state == Z_STREAM_END) inflateReset(&stream);
        stream.next_out = reinterpret_cast<Bytef*>(block);
        stream.avail_out = sizeof block;
        state = inflate(&stream, Z_NO_FLUSH);
        if (state == Z_BUF_ERROR) throw unreadable(path, "the compressed data ends too early");
        if (state != Z_OK && state != Z_STREAM_END) throw unreadable(path, "the compressed data is damaged");
        text.append(block, sizeof block - stream.avail_out);
        if (text.size() > kLargestInput) throw unreadable(path, "larger than 2 GiB when decompressed");
    }
    return text;
}

const Json& member(const Json& entry, const char* name) {
    if (!hasMember(entry, name)) throw Refused(fmt::format("'{}' is missing", name));
    return entry.at(name);
}

}  // namespace

std::string inputName(const std::string& path) { return path == "-" ? "standard input" : path; }

std::string readInput(const std::string& path) {
    std::string bytes = readBytes(path);
    return isGzip(bytes) ? decompress(path, bytes) : bytes;
}

Json readJsonList(const std::string& path, const char* what) {
    const std::string text = readInput(path);
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) throw unreadable(path, "empty, not JSON");
    Json list;
    try {
        list = Json::parse(text);
    } catch (const Json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
        std::string_view reason = error.what();
        if (const size_t start = reason.find("] "); start != std::string_view::npos) reason.remove_prefix(start + 2);
        throw unreadable(path, fmt::format("not valid JSON: {}", reason));
    }
    if (!list.is_array()) {
        throw unreadable(path, fmt::format("not a list of {}: the whole is of type {}", what, list.type_name()));
    }
    return list;
}

bool hasMember(const Json& entry, const char* name) {
    if (!entry.is_object()) throw Refused(fmt::format("of type {}, not an object", entry.type_name()));
    return entry.contains(name);
}

std::string textMember(const Json& entry, const char* name) {
    const Json& value = member(entry, name);
    if (!value.is_string()) throw Refused(fmt::format("'{}' is of type {}, not a string", name, value.type_name()));
    return value.get<std::string>();
}

uint32_t numberMember(const Json& entry, const char* name) {
    const Json& value = member(entry, name);
    if (!value.is_number()) throw Refused(fmt::format("'{}' is of type {}, not a number", name, value.type_name()));
    if (!value.is_number_unsigned() || value.get<uint64_t>() > UINT32_MAX) {
        throw Refused(fmt::format("'{}' is {}, not a number from 0 to {}", name, value.dump(), UINT32_MAX));
    }
    return value.get<uint32_t>();
}

const Json& listMember(const Json& entry, const char* name) {
    const Json& value = member(entry, name);
    if (!value.is_array()) throw Refused(fmt::format("'{}' is of type {}, not a list", name, value.type_name()));
    return value;
}

std::string textOr(const Json& entry, const char* name) {
    return hasMember(entry, name) ? textMember(entry, name) : "";
}

uint32_t numberOr(const Json& entry, const char* name, uint32_t otherwise) {
    return hasMember(entry, name) ? numberMember(entry, name) : otherwise;
}

bool truthMember(const Json& entry, const char* name) {
    if (!hasMember(entry, name)) return false;
    const Json& value = entry.at(name);
    if (value.is_boolean()) return value.get<bool>();
    return numberMember(entry, name) != 0;
}

const Json& objectMember(const Json& entry, const char* name) {
    static const Json kNone = Json::object();
    if (!hasMember(entry, name)) return kNone;
    const Json& value = entry.at(name);
    if (!value.is_object()) throw Refused(fmt::format("'{}' is of type {}, not an object", name, value.type_name()));
    return value;
}

}  // namespace mcast6::ctl
