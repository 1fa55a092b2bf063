// A script whose lines come one by one: from a person at a terminal, or from a program that waits for each answer.
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/cli/run.h"

namespace mcast6::ctl::test {
namespace {

// `mcast6ctl script -` at the other end of a terminal or of a socket.
class Session {
public:
    enum Kind { kTerminal, kSocket };

    explicit Session(Kind kind) {
        if (kind == kTerminal) {
            child_ = forkpty(&end_, nullptr, nullptr, nullptr);
        } else {
            int ends[2] = {-1, -1};
            EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
            end_ = ends[0];
            child_ = fork();
            if (child_ == 0) {
                dup2(ends[1], STDIN_FILENO);
                dup2(ends[1], STDOUT_FILENO);
                close(ends[0]);
            }
            close(ends[1]);
        }
        if (child_ == 0) {
            execl(MCAST6_CTL, MCAST6_CTL, "script", "-", static_cast<char*>(nullptr));
            _exit(127);
        }
    }
    ~Session() {
        if (child_ > 0) kill(child_, SIGKILL);
        wait();
        close(end_);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void type(const std::string& text) {
        ASSERT_EQ(write(end_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    // Waits until the session has printed 'expected' after what was expected before; false when it does not come.
    bool says(const std::string& expected) {
        constexpr int kLongWait = 60000;
        for (;;) {
            const size_t found = heard_.find(expected, seen_);
            if (found != std::string::npos) {
                seen_ = found + expected.size();
                return true;
            }
            pollfd waited{end_, POLLIN, 0};
            char block[4096];
            if (poll(&waited, 1, kLongWait) != 1) return false;
            const ssize_t size = read(end_, block, sizeof block);
            if (size <= 0) return false;
            heard_.append(block, static_cast<size_t>(size));
        }
    }

    const std::string& heard() const { return heard_; }

    // Ends what the session can read.
    void finish() { shutdown(end_, SHUT_WR); }

    // -1: it did not end by itself.
    int wait() {
        if (child_ <= 0) return -1;
        int status = 0;
        waitpid(child_, &status, 0);
        child_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t child_ = -1;
    int end_ = -1;
    size_t seen_ = 0;
    std::string heard_;
};

TEST(Session, prompts_and_goes_on_after_errors_until_quit) {
    Session session(Session::kTerminal);
    ASSERT_TRUE(session.says("mcast6> ")) << session.heard();
    session.type("set bd-enable --bd 7 --on\n");
    ASSERT_TRUE(session.says("bd-enable: added bridge domain 7 of VR 0\r\nmcast6> ")) << session.heard();
    session.type("shov\n");
    ASSERT_TRUE(session.says("mcast6ctl: unknown command 'shov'; did you mean 'show'?\r\nmcast6> ")) << session.heard();
    session.type("count bd-enable\n");
    ASSERT_TRUE(session.says("\r\n1\r\nmcast6> ")) << session.heard();
    session.type("quit\n");
    EXPECT_EQ(session.wait(), 0);
}

TEST(Session, survives_an_interrupt_and_ends_with_the_input) {
    Session session(Session::kTerminal);
    ASSERT_TRUE(session.says("mcast6> ")) << session.heard();
    session.type("say half a li\x03");
    ASSERT_TRUE(session.says("\nmcast6> ")) << session.heard();
    // Each comes as early as one can: between the prompt and the wait for a line.
    for (int i = 0; i < 200; ++i) {
        session.type("\x03");
        ASSERT_TRUE(session.says("\nmcast6> ")) << session.heard();
    }
    session.type("say whole\n");
    ASSERT_TRUE(session.says("\r\nwhole\r\nmcast6> ")) << session.heard();
    session.type("\x04");
    EXPECT_EQ(session.wait(), 0);
}

TEST(Session, of_a_program_answers_each_line_without_a_prompt) {
    Session session(Session::kSocket);
    session.type("say first\n");
    ASSERT_TRUE(session.says("first\n")) << session.heard();
    session.type("say --json second\ncount bd-");
    ASSERT_TRUE(session.says("{\"text\":\"second\"}\n")) << session.heard();
    session.type("enable\n");
    ASSERT_TRUE(session.says("0\n")) << session.heard();
    session.finish();
    EXPECT_EQ(session.wait(), 0);
    EXPECT_EQ(session.heard(), "first\n{\"text\":\"second\"}\n0\n");
}

}  // namespace
}  // namespace mcast6::ctl::test
