#include "cli/output/interrupt.h"

#include <poll.h>

#include <cerrno>

#include "cli/failure.h"

namespace mcast6::ctl {
namespace {

volatile std::sig_atomic_t interrupted = 0;

void noteInterrupt(int /*signal*/) { interrupted = 1; }

void catchNext(struct sigaction* before) {
    struct sigaction action = {};
    action.sa_handler = noteInterrupt;
    // The next one ends the process, unless this one is taken before; a wait for input ends.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, before);
}

}  // namespace

InterruptGuard::InterruptGuard(bool active) : active_(active) {
    if (active_) catchNext(&before_);
}

InterruptGuard::~InterruptGuard() {
    if (active_) sigaction(SIGINT, &before_, nullptr);
}

bool takeInterrupt() {
    if (interrupted == 0) return false;
    interrupted = 0;
    catchNext(nullptr);
    return true;
}

void failIfInterrupted() {
    if (takeInterrupt()) throw Failure("interrupted");
}

// The signal is held back but for the wait itself: one that came between a look at 'interrupted' and the wait would be
// noticed only after the next input.
bool waitForInput(int file) {
    sigset_t held;
    sigset_t before;
    sigemptyset(&held);
    sigaddset(&held, SIGINT);
    pthread_sigmask(SIG_BLOCK, &held, &before);
    pollfd waited{file, POLLIN, 0};
    while (interrupted == 0 && ppoll(&waited, 1, nullptr, &before) < 0 && errno == EINTR) {
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return interrupted == 0;
}

}  // namespace mcast6::ctl
