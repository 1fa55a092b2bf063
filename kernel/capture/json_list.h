// A capture as the list that it is, entry by entry. It is read twice: first all of it is checked, so that a text that
// is cut off or wrong brings nothing at all, then its entries are delivered. Memory is bounded by the largest entry,
// which may have kLargestEntry bytes of text and be nested kDeepest levels deep, the list itself among them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "kernel/capture/input.h"
#include "kernel/capture/json.h"

namespace mcast6::kernel {

constexpr size_t kLargestEntry = size_t{16} << 20;
constexpr unsigned kDeepest = 64;

struct JsonListForm {
    const char* holds;  // what the entries are, in messages: "routes"
    const char* rowsMember =
        nullptr;  // a member of the entries that is a long list itself: each of its rows counts as an entry
    bool mayBeLoneBracket = false;  // "[" and nothing else is the empty list
};

class JsonList {
public:
    // Opens the input. Throws Error, naming it and the reason; so do the others.
    JsonList(const std::string& path, const JsonListForm& form);

    // Reads all of it. 'atEntry', if any, gets each entry without its rows.
    using Visit = std::function<void(const Json& entry)>;
    void check(const Visit& atEntry = {});

    // After the check: the entries and their rows.
    uint64_t entries() const { return entries_; }
    uint64_t rows() const { return rows_; }
    // Whether the input was a lone "[".
    bool wasLoneBracket() const { return loneBracket_; }

    // Delivers what was checked. An entry is delivered after its rows, without them. Values live until the call
    // returns.
    void read(const Visit& atEntry, const Visit& atRow = {});

private:
    std::string name_;
    JsonListForm form_;
    Input input_;
    uint64_t entries_ = 0;
    uint64_t rows_ = 0;
    bool loneBracket_ = false;
};

}  // namespace mcast6::kernel
