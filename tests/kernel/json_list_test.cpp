// A capture as a stream: what is delivered, in which order, and where it is refused.
#include "kernel/capture/json_list.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "kernel/error.h"

namespace mcast6::kernel {
namespace {

class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& content) {
        std::string name = testing::TempDir() + "mcast6-kernel-XXXXXX";
        const int file = mkstemp(name.data());
        if (file < 0) std::abort();
        path_ = name;
        std::ofstream(path_, std::ios::binary) << content;
    }
    ~TemporaryFile() { std::remove(path_.c_str()); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

// Why the list cannot be read, without the path; "" when it can.
std::string whyNot(const std::string& content, const JsonListForm& form = {.holds = "routes"}) {
    const TemporaryFile file(content);
    JsonList list(file.path(), form);
    try {
        list.check();
    } catch (const Error& error) {
        const std::string message = error.what();
        EXPECT_TRUE(message.starts_with(file.path() + ": ")) << message;
        return message.substr(file.path().size() + 2);
    }
    return "";
}

std::string nested(unsigned levels) { return std::string(levels, '[') + std::string(levels, ']'); }

TEST(JsonList, deliversEachEntryAsOftenAsItIsRead) {
    const TemporaryFile file(" [ 1 ,\n{\"a\":[2]}, \"three\" ] \n");
    JsonList list(file.path(), {.holds = "things"});
    list.check();
    EXPECT_EQ(list.entries(), 3U);
    for (int pass = 0; pass < 2; ++pass) {
        std::vector<std::string> entries;
        list.read([&](const Json& entry) { entries.push_back(shownJson(entry)); });
        EXPECT_EQ(entries, (std::vector<std::string>{"1", R"({"a":[2]})", "\"three\""}));
    }
}

TEST(JsonList, deliversRowsOneByOneAndThenTheRest) {
    const TemporaryFile file(R"([{"x":1,"mdb":[{"a":1},{"a":2}],"router":{"br":[]}},{"mdb":7},8,{}])");
    JsonList list(file.path(), {.holds = "group lists", .rowsMember = "mdb"});
    list.check();
    EXPECT_EQ(list.entries(), 4U);
    EXPECT_EQ(list.rows(), 2U);
    std::vector<std::string> seen;
    list.read([&](const Json& entry) { seen.push_back("entry " + shownJson(entry)); },
              [&](const Json& row) { seen.push_back("row " + shownJson(row)); });
    EXPECT_EQ(seen, (std::vector<std::string>{R"(row {"a":1})", R"(row {"a":2})",
                                              R"(entry {"x":1,"mdb":[],"router":{"br":[]}})", R"(entry {"mdb":7})",
                                              "entry 8", "entry {}"}));
}

TEST(JsonList, isNestedAtMost64LevelsDeep) {
    EXPECT_EQ(whyNot(nested(64)), "");
    EXPECT_EQ(whyNot(nested(65)), "entry 1 is nested deeper than 64");
    EXPECT_EQ(whyNot("[1," + nested(64) + "]"), "entry 2 is nested deeper than 64");
    const JsonListForm groups{.holds = "group lists", .rowsMember = "mdb"};
    EXPECT_EQ(whyNot("[{\"mdb\":[" + nested(61) + "]}]", groups), "");
    EXPECT_EQ(whyNot("[{\"mdb\":[" + nested(62) + "]}]", groups), "entry 1 is nested deeper than 64");
    EXPECT_EQ(whyNot("[{\"x\":" + nested(63) + "}]", groups), "entry 1 is nested deeper than 64");
}

TEST(JsonList, hasEntriesOfAtMost16MiB) {
    const std::string large(kLargestEntry - 4096, ' ');
    const std::string tooLarge(kLargestEntry + (size_t{1} << 17), ' ');
    const std::string reason = "and the space before it are larger than 16 MiB";
    EXPECT_EQ(whyNot("[1," + large + "2," + large + "3]"), "");
    EXPECT_EQ(whyNot("[1,[" + tooLarge + "]]"), "entry 2 " + reason);
    EXPECT_EQ(whyNot("[\"" + tooLarge + "\"]"), "entry 1 " + reason);
    EXPECT_EQ(whyNot(tooLarge + "[]"), "entry 1 " + reason);
    EXPECT_EQ(whyNot("[1]" + tooLarge), "entry 2 " + reason);
}

// Rows count for themselves, so that a list of them has no bound.
TEST(JsonList, boundsEachRowAlone) {
    const JsonListForm groups{.holds = "group lists", .rowsMember = "mdb"};
    const std::string large(kLargestEntry - 4096, ' ');
    EXPECT_EQ(whyNot("[{\"mdb\":[1" + large + ",2" + large + ",3]}]", groups), "");
    EXPECT_EQ(whyNot("[{\"x\":[" + large + "],\"mdb\":[],\"y\":[" + large + "]}]", groups),
              "entry 1 and the space before it are larger than 16 MiB");
}

TEST(JsonList, tellsWhereItIsWrong) {
    const std::string wrong = "not valid JSON: parse error at line ";
    EXPECT_EQ(whyNot("[1\n 2]"), wrong + "2, column 2: a comma or ']' is missing after an entry");
    EXPECT_EQ(whyNot("[1] 2"), wrong + "1, column 5: a second value after the list");
    EXPECT_EQ(whyNot("[1,"), wrong + "1, column 4: the text ends too early");
    EXPECT_EQ(whyNot("[{\"a\"\n:}]"), wrong + "2, column 2: invalid value");
    EXPECT_EQ(whyNot("["), wrong + "1, column 2: the text ends too early");
    const JsonListForm groups{.holds = "group lists", .rowsMember = "mdb"};
    EXPECT_EQ(whyNot("[{\"mdb\" []}]", groups), wrong + "1, column 9: a colon is missing after the name of a member");
    EXPECT_EQ(whyNot("[{\"mdb\":[] 1}]", groups), wrong + "1, column 12: a comma or '}' is missing after a member");
    EXPECT_EQ(whyNot("[{\"mdb\":[],}]", groups), wrong + "1, column 12: the name of a member is missing");
    EXPECT_EQ(whyNot("[{\"mdb\":[1", groups), wrong + "1, column 11: the text ends too early");
    EXPECT_EQ(whyNot(std::string("[\0]", 3)),
              "not JSON: a NUL byte at line 1, column 2; the file is damaged, or no text at all");
}

TEST(JsonList, maybeALoneBracketAndThenIsEmpty) {
    const TemporaryFile file("[\n");
    JsonList list(file.path(), {.holds = "VLANs of ports", .mayBeLoneBracket = true});
    list.check();
    EXPECT_TRUE(list.wasLoneBracket());
    EXPECT_EQ(list.entries(), 0U);
    list.read([](const Json&) { ADD_FAILURE() << "an entry of an empty list"; });
    EXPECT_NE(whyNot("[1,", {.holds = "VLANs of ports", .mayBeLoneBracket = true}), "");
}

}  // namespace
}  // namespace mcast6::kernel
