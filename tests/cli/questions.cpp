#include "tests/cli/questions.h"

#include <gtest/gtest.h>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

std::string firstWord(const std::string& words) { return words.substr(0, words.find(' ')); }

}  // namespace

void PrintTo(const Question& question, std::ostream* out) { *out << question.name; }

void expectAnswered(const Question& question, const std::string& import) {
    const std::string words = question.words;
    const Outcome outcome = runScript(import + "show " + words + "\ncount " + words + "\n", {"--json"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[1].at("entries").size(), question.matches);
    EXPECT_EQ(all[2].at("count"), question.matches);
    const Outcome told = runScript(import + "show " + words + " --verbose\n");
    EXPECT_EQ(told.err, "mcast6ctl: " + firstWord(words) + ": query by " + question.told + "\n");
}

void PrintTo(const Deletion& deletion, std::ostream* out) { *out << deletion.name; }

void expectDeleted(const Deletion& deletion, const std::string& import) {
    const std::string words = deletion.words;
    const Outcome outcome =
        runScript(import + "delete " + words + "\ncount " + firstWord(words) + "\ndelete " + words + "\n", {"--json"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.err.find(": no entry for "), std::string::npos) << outcome.err;
    const std::vector<Json> all = documents(outcome.out);
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[1].at("deleted"), 1);
    EXPECT_EQ(all[2].at("count"), deletion.left);
}

}  // namespace mcast6::ctl::test
