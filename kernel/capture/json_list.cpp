#include "kernel/capture/json_list.h"

#include <fmt/format.h>
#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>

#include <array>
#include <cctype>
#include <cstddef>
#include <memory>
#include <utility>

#include "kernel/error.h"

namespace mcast6::kernel {
namespace {

constexpr size_t kBlock = size_t{1} << 16;
// What was checked once need not be checked for its encoding again.
constexpr unsigned kReadFlags = rapidjson::kParseStopWhenDoneFlag;
constexpr unsigned kCheckFlags = rapidjson::kParseValidateEncodingFlag | kReadFlags;

// The text as the parser takes it, a character at a time. To the parser it ends where an entry becomes too large.
class Text {
public:
    using Ch = char;

    explicit Text(Input& input) : input_(input), block_(std::make_unique<char[]>(kBlock)) {
        next_ = end_ = block_.get();
    }

    // NOLINTBEGIN(readability-identifier-naming): the parser's names
    char Peek() { return next_ != end_ || fill() ? *next_ : '\0'; }
    char Take() { return next_ != end_ || fill() ? *next_++ : '\0'; }
    size_t Tell() const { return before_ + static_cast<size_t>(next_ - block_.get()); }
    // For parsing in place, which is not done.
    static void Put(char) {}
    static void Flush() {}
    static char* PutBegin() { return nullptr; }
    static size_t PutEnd(char*) { return 0; }
    // NOLINTEND(readability-identifier-naming)

    // From here on, this many characters and at most a block more.
    void allow(size_t count) { most_ = Tell() + count; }
    size_t allowed() const { return most_ > Tell() ? most_ - Tell() : 0; }
    bool isTooLarge() const { return tooLarge_; }

    bool isAtEnd() { return next_ == end_ && !fill(); }

    void skipSpace() {
        for (char c = Peek(); c == ' ' || c == '\n' || c == '\r' || c == '\t'; c = Peek()) ++next_;
    }

private:
    bool fill() {
        if (Tell() > most_) tooLarge_ = true;
        if (ended_ || tooLarge_) return false;
        before_ = Tell();
        next_ = block_.get();
        const size_t count = input_.read(block_.get(), kBlock);
        end_ = next_ + count;
        ended_ = count == 0;
        return !ended_;
    }

    Input& input_;
    std::unique_ptr<char[]> block_;
    const char* next_;
    const char* end_;
    size_t before_ = 0;  // characters before the block
    size_t most_ = kLargestEntry;
    bool ended_ = false;
    bool tooLarge_ = false;
};

// Passes values on to 'Handler', but no deeper ones than kDeepest.
template <class Handler>
class Shallow {
public:
    Shallow(Handler& handler, unsigned depth) : handler_(handler), depth_(depth) {}
    bool isTooDeep() const { return depth_ > kDeepest; }

    // NOLINTBEGIN(readability-identifier-naming): the parser's names
    using Ch = char;
    using Size = rapidjson::SizeType;
    bool Null() { return handler_.Null(); }
    bool Bool(bool value) { return handler_.Bool(value); }
    bool Int(int value) { return handler_.Int(value); }
    bool Uint(unsigned value) { return handler_.Uint(value); }
    bool Int64(int64_t value) { return handler_.Int64(value); }
    bool Uint64(uint64_t value) { return handler_.Uint64(value); }
    bool Double(double value) { return handler_.Double(value); }
    bool RawNumber(const char* text, Size length, bool copy) { return handler_.RawNumber(text, length, copy); }
    bool String(const char* text, Size length, bool copy) { return handler_.String(text, length, copy); }
    bool Key(const char* text, Size length, bool copy) { return handler_.Key(text, length, copy); }
    bool StartObject() { return ++depth_ <= kDeepest && handler_.StartObject(); }
    bool EndObject(Size count) { return --depth_, handler_.EndObject(count); }
    bool StartArray() { return ++depth_ <= kDeepest && handler_.StartArray(); }
    bool EndArray(Size count) { return --depth_, handler_.EndArray(count); }
    // NOLINTEND(readability-identifier-naming)

private:
    Handler& handler_;
    unsigned depth_;
};

// Line and column of a character, both from 1; found by reading up to there once more.
std::pair<uint64_t, uint64_t> placeOf(Input& input, size_t position) {
    uint64_t line = 1;
    uint64_t column = 1;
    input.rewind();
    Text text(input);
    while (position-- > 0) {
        text.allow(kLargestEntry);
        const bool ends = text.Take() == '\n';
        line += ends ? 1 : 0;
        column = ends ? 1 : column + 1;
    }
    return {line, column};
}

// One pass over the list.
template <unsigned kFlags>
class Pass {
public:
    Pass(const std::string& name, const JsonListForm& form, Input& input, JsonList::Visit atEntry,
         JsonList::Visit atRow)
        : name_(name),
          form_(form),
          input_(input),
          text_(input),
          atEntry_(std::move(atEntry)),
          atRow_(std::move(atRow)) {}

    void run() {
        skipSpace();
        if (text_.isAtEnd()) fail("empty, not JSON");
        if (text_.Peek() != '[') return refuseWhole();
        text_.Take();
        list([this] { entry(); });
        text_.allow(kLargestEntry);
        skipSpace();
        if (!text_.isAtEnd()) failHere("a second value after the list");
    }

    uint64_t entries() const { return entries_; }
    uint64_t rows() const { return rows_; }
    bool wasLoneBracket() const { return loneBracket_; }

private:
    using Pool = rapidjson::MemoryPoolAllocator<>;
    using Document = rapidjson::GenericDocument<rapidjson::UTF8<>, Pool>;

    [[noreturn]] void fail(const std::string& reason) const { throw Error(fmt::format("{}: {}", name_, reason)); }

    [[noreturn]] void failAt(size_t position, bool isNul, const std::string& reason) const {
        const auto [line, column] = placeOf(input_, position);
        if (isNul) {
            fail(fmt::format("not JSON: a NUL byte at line {}, column {}; the file is damaged, or no text at all", line,
                             column));
        }
        fail(fmt::format("not valid JSON: parse error at line {}, column {}: {}", line, column, reason));
    }

    // What stands at the next character is wrong, if it is there at all.
    [[noreturn]] void failHere(const std::string& reason) {
        const bool ended = text_.isAtEnd();
        checkSize();
        failAt(text_.Tell(), !ended && text_.Peek() == '\0', ended ? "the text ends too early" : reason);
    }

    void checkSize() const {
        if (!text_.isTooLarge()) return;
        fail(fmt::format("entry {} and the space before it are larger than {} MiB", entries_ + 1, kLargestEntry >> 20));
    }

    void skipSpace() {
        text_.skipSpace();
        checkSize();
    }

    // The values up to the closing bracket; the opening one was taken.
    template <class Each>
    void list(Each each) {
        skipSpace();
        if (text_.Peek() == ']') {
            text_.Take();
            return;
        }
        if (text_.isAtEnd() && form_.mayBeLoneBracket && entries_ == 0) {
            loneBracket_ = true;
            return;
        }
        for (;;) {
            each();
            skipSpace();
            if (text_.Peek() == ']') break;
            if (text_.Peek() != ',') failHere("a comma or ']' is missing after an entry");
            text_.Take();
        }
        text_.Take();
    }

    template <class Handler>
    void parse(Handler& handler, unsigned depth) {
        Shallow<Handler> shallow(handler, depth);
        const rapidjson::ParseResult result = reader_.template Parse<kFlags>(text_, shallow);
        if (!result.IsError()) return;
        if (shallow.isTooDeep()) fail(fmt::format("entry {} is nested deeper than {}", entries_ + 1, kDeepest));
        if (text_.isAtEnd()) failHere("");
        std::string reason = rapidjson::GetParseError_En(result.Code());
        reason.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(reason.front())));
        if (reason.back() == '.') reason.pop_back();
        failAt(result.Offset(), text_.Peek() == '\0', reason);
    }

    // The next value, in 'document'; only checked when nobody wants it.
    void value(Document& document, unsigned depth, bool wanted) {
        skipSpace();
        if (wanted) {
            const auto generate = [&](Document& handler) { return parse(handler, depth), true; };
            document.Populate(generate);
        } else {
            rapidjson::BaseReaderHandler<> ignored;
            parse(ignored, depth);
        }
    }

    void entry() {
        text_.allow(kLargestEntry);
        skipSpace();
        if (form_.rowsMember != nullptr && text_.Peek() == '{') {
            entryWithRows();
        } else {
            pool_.Clear();
            Document document(&pool_);
            value(document, 1, static_cast<bool>(atEntry_));
            if (atEntry_) atEntry_(document);
        }
        ++entries_;
    }

    // Its rows one by one, and then the rest of it; there the rows are an empty list.
    void entryWithRows() {
        constexpr unsigned kDepth = 2;
        pool_.Clear();
        Document rest(&pool_);
        rest.SetObject();
        text_.Take();
        skipSpace();
        for (bool isFirst = true; text_.Peek() != '}'; isFirst = false) {
            if (!isFirst) {
                if (text_.Peek() != ',') failHere("a comma or '}' is missing after a member");
                text_.Take();
                skipSpace();
            }
            if (text_.Peek() != '"') failHere("the name of a member is missing");
            Document name(&pool_);
            value(name, kDepth, true);
            skipSpace();
            if (text_.Peek() != ':') failHere("a colon is missing after the name of a member");
            text_.Take();
            skipSpace();
            Document member(&pool_);
            if (textOf(name) == form_.rowsMember && text_.Peek() == '[') {
                const size_t allowed = text_.allowed();
                text_.Take();
                list([this] { row(); });
                text_.allow(allowed);
                member.SetArray();
            } else {
                value(member, kDepth, true);
            }
            rest.AddMember(static_cast<Json&>(name), static_cast<Json&>(member), pool_);
            skipSpace();
        }
        text_.Take();
        if (atEntry_) atEntry_(rest);
    }

    void row() {
        constexpr unsigned kDepth = 3;
        text_.allow(kLargestEntry);
        rowPool_.Clear();
        Document document(&rowPool_);
        value(document, kDepth, static_cast<bool>(atRow_));
        if (atRow_) atRow_(document);
        ++rows_;
    }

    // The whole is no list: it is told what it is, unless it is no JSON at all.
    void refuseWhole() {
        Document whole(&pool_);
        value(whole, 0, true);
        skipSpace();
        if (!text_.isAtEnd()) failHere("a second value after the first one");
        fail(fmt::format("not a list of {}: the whole is of type {}", form_.holds, typeName(whole)));
    }

    const std::string& name_;
    const JsonListForm& form_;
    Input& input_;
    Text text_;
    JsonList::Visit atEntry_;
    JsonList::Visit atRow_;
    rapidjson::Reader reader_;
    // What most entries fit into, so that they need no memory of their own.
    alignas(std::max_align_t) std::array<char, kBlock> entryMemory_;
    alignas(std::max_align_t) std::array<char, kBlock> rowMemory_;
    Pool pool_{entryMemory_.data(), entryMemory_.size()};
    Pool rowPool_{rowMemory_.data(), rowMemory_.size()};
    uint64_t entries_ = 0;
    uint64_t rows_ = 0;
    bool loneBracket_ = false;
};

}  // namespace

JsonList::JsonList(const std::string& path, const JsonListForm& form)
    : name_(inputName(path)), form_(form), input_(path) {}

void JsonList::check(const Visit& atEntry) {
    Pass<kCheckFlags> pass(name_, form_, input_, atEntry, {});
    pass.run();
    entries_ = pass.entries();
    rows_ = pass.rows();
    loneBracket_ = pass.wasLoneBracket();
}

void JsonList::read(const Visit& atEntry, const Visit& atRow) {
    input_.rewind();
    Pass<kReadFlags>(name_, form_, input_, atEntry, atRow).run();
}

}  // namespace mcast6::kernel
