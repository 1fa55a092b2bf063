// URIs, their options, and the fingerprint of a schema.
#include "platform/store/uri.h"

#include <gtest/gtest.h>

#include <array>

#include "platform/schema/catalog.h"
#include "platform/store/fingerprint.h"
#include "tests/store/conformance.h"

namespace mcast6::store::test {
namespace {

Uri parsed(std::string_view text) {
    Uri uri;
    std::string reason;
    EXPECT_TRUE(parseUri(text, uri, reason)) << text << ": " << reason;
    return uri;
}

std::string refusal(std::string_view text) {
    Uri uri;
    std::string reason;
    EXPECT_FALSE(parseUri(text, uri, reason)) << text;
    return reason;
}

TEST(StoreUri, HasASchemeAPathAndOptions) {
    const Uri plain = parsed("memory:");
    EXPECT_EQ(plain.scheme, "memory");
    EXPECT_EQ(plain.path, "");
    EXPECT_TRUE(plain.options.empty());
    const Uri full = parsed("shm:/run/a%20b%3F?size=64M&readonly&name=x%26y=z");
    EXPECT_EQ(full.scheme, "shm");
    EXPECT_EQ(full.path, "/run/a b?");
    ASSERT_EQ(full.options.size(), 3u);
    EXPECT_EQ(full.options[0].name, "size");
    EXPECT_EQ(full.options[0].value, "64M");
    EXPECT_FALSE(full.options[1].hasValue);
    EXPECT_EQ(full.options[2].value, "x&y=z");
}

TEST(StoreUri, RefusesWhatItCannotRead) {
    EXPECT_NE(refusal("memory").find("colon"), std::string::npos);
    EXPECT_NE(refusal(":x").find("colon"), std::string::npos);
    for (const char* const text : {"a:%", "a:%4", "a:%4x", "a:%00"}) {
        EXPECT_NE(refusal(text).find("'%'"), std::string::npos) << text;
    }
    for (const char* const text : {"a:?", "a:?=1", "a:?x&", "a:?x=%1"}) {
        EXPECT_NE(refusal(text).find("malformed"), std::string::npos) << text;
    }
}

TEST(StoreUri, OptionsAreReadOneByOne) {
    const Uri uri = parsed("a:?n=17&s=3K&big=2G&plain=5&on&off=0&yes=1&t=word");
    OptionReader options(uri);
    EXPECT_EQ(options.number("n", 1, 1, 100), 17u);
    EXPECT_EQ(options.number("missing", 42, 1, 100), 42u);
    EXPECT_EQ(options.size("s", 1, 1, 1 << 20), 3072u);
    EXPECT_EQ(options.size("big", 1, 1, UINT64_MAX), uint64_t{2} << 30);
    EXPECT_EQ(options.size("plain", 1, 1, 100), 5u);
    EXPECT_TRUE(options.flag("on"));
    EXPECT_FALSE(options.flag("off"));
    EXPECT_TRUE(options.flag("yes"));
    EXPECT_FALSE(options.flag("none"));
    EXPECT_EQ(options.text("t", "other"), "word");
    EXPECT_EQ(options.text("none2", "other"), "other");
    std::string reason;
    EXPECT_TRUE(options.finish(reason)) << reason;
}

std::string complaintAbout(const char* text) {
    const Uri uri = parsed(text);
    OptionReader options(uri);
    (void)options.number("n", 1, 2, 100);
    (void)options.size("s", 1, 1, 1 << 20);
    (void)options.flag("f");
    (void)options.text("t", "");
    std::string reason;
    EXPECT_FALSE(options.finish(reason)) << text;
    return reason;
}

TEST(StoreUri, MistakesInOptionsAreNamed) {
    EXPECT_EQ(complaintAbout("a:?x=1"), "unknown option 'x'; a: takes n, s, f, t");
    EXPECT_EQ(complaintAbout("a:?n=1"), "option 'n': '1' is not a number from 2 to 100");
    for (const char* const text : {"a:?n=101", "a:?n=", "a:?n", "a:?n=5K", "a:?n=-3", "a:?n=99999999999999999999"}) {
        EXPECT_NE(complaintAbout(text).find("is not a number from 2 to 100"), std::string::npos) << text;
    }
    for (const char* const text : {"a:?s=0", "a:?s=2M", "a:?s=5T", "a:?s=1KB", "a:?s=99999999999999999G"}) {
        EXPECT_NE(complaintAbout(text).find("is not a size"), std::string::npos) << text;
    }
    EXPECT_EQ(complaintAbout("a:?f=yes"), "option 'f': 'yes' is neither 0 nor 1");
    EXPECT_EQ(complaintAbout("a:?t"), "option 't' needs a value");
    EXPECT_EQ(complaintAbout("a:?n=3&n=4"), "option 'n' is given twice");
}

TEST(StoreFingerprint, DependsOnEverythingThatAStoreIsBuiltFrom) {
    const uint64_t all = fingerprint(kTables);
    EXPECT_EQ(fingerprint(kTables), all);
    EXPECT_NE(fingerprint(schema::storeCatalog()), fingerprint(schema::catalog()));
    EXPECT_NE(fingerprint(std::span(kTables).first(2)), all);
    const auto changed = [](auto change) {
        std::array<schema::Table, std::size(kTables)> tables{kTables[0], kTables[1], kTables[2]};
        change(tables);
        return fingerprint(tables);
    };
    EXPECT_NE(changed([](auto& tables) { std::swap(tables[0], tables[1]); }), all);
    EXPECT_NE(changed([](auto& tables) { tables[0].name = "other"; }), all);
    EXPECT_NE(changed([](auto& tables) { ++tables[0].recordSize; }), all);
    EXPECT_NE(changed([](auto& tables) { tables[0].capacity = 4; }), all);
    EXPECT_NE(changed([](auto& tables) { tables[0].presentWrite = schema::PresentWrite::refused; }), all);
    EXPECT_NE(changed([](auto& tables) { tables[0].fields = tables[0].fields.first(5); }), all);
    EXPECT_NE(changed([](auto& tables) { tables[0].indexes = tables[0].indexes.first(4); }), all);
    EXPECT_NE(changed([](auto& tables) { tables[0].primary.partSlots[0].width = 2; }), all);
    EXPECT_NE(changed([](auto& tables) { tables[1].primary.partSlots[2].constant = 1; }), all);
    EXPECT_EQ(changed([](auto&) {}), all);
}

}  // namespace
}  // namespace mcast6::store::test
