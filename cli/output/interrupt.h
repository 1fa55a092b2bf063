// SIGINT in a session that a person types: it ends the command that runs, not the process, whose memory is the store.
#pragma once

#include <csignal>

namespace mcast6::ctl {

// While one lives, the first SIGINT makes the command that runs fail at its next output, and a second one before that
// ends the process. There is one at a time.
class InterruptGuard {
public:
    explicit InterruptGuard(bool active);
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    bool active_;
    struct sigaction before_ = {};
};

// Whether SIGINT came since the last call.
bool takeInterrupt();

// Throws Failure when SIGINT came since the last call.
void failIfInterrupted();

// Waits until 'file' can be read; false when SIGINT came, before the wait or in it.
bool waitForInput(int file);

}  // namespace mcast6::ctl
