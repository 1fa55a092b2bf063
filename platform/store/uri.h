// The name of a store: 'scheme:path?name=value&flag'. Path, names and values may hold %XX escapes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mcast6::store {

struct Uri {
    struct Option {
        std::string name;
        std::string value;
        bool hasValue;
    };

    std::string scheme;
    std::string path;
    std::vector<Option> options;
};

// Takes a URI apart. False when it is malformed, with the reason.
bool parseUri(std::string_view text, Uri& uri, std::string& reason);

// Reads the options of a URI one by one. The first mistake is kept and told by finish(), and so is an option that
// nobody has asked for.
class OptionReader {
public:
    explicit OptionReader(const Uri& of) : uri(of), isTaken(of.options.size()) {}

    // A whole number within limits; a size may end in K, M or G, powers of 1024.
    uint64_t number(std::string_view name, uint64_t otherwise, uint64_t least, uint64_t most);
    uint64_t size(std::string_view name, uint64_t otherwise, uint64_t least, uint64_t most);

    // 'name' or 'name=1' is true, 'name=0' or no such option false.
    bool flag(std::string_view name);

    std::string text(std::string_view name, std::string_view otherwise);

    // False when an option was wrong, given twice or unknown, with the reason.
    bool finish(std::string& reason);

private:
    const Uri::Option* take(std::string_view name);
    uint64_t scaled(std::string_view name, uint64_t otherwise, uint64_t least, uint64_t most, bool isSize);
    void complain(std::string text);

    const Uri& uri;
    std::vector<bool> isTaken;
    std::string known;
    std::string mistake;
};

}  // namespace mcast6::store
