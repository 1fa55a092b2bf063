// mcast6ctl: imports captured state into the tables, and shows, counts and ages what they hold.
#include <fcntl.h>
#include <unistd.h>

#include <exception>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "cli/options/command_line.h"
#include "cli/output/library_log.h"
#include "cli/output/output.h"
#include "mcast6_platform/platform.h"

namespace {

using namespace mcast6::ctl;

ExitCode run(const std::vector<std::string>& words) {
    ProcessOptions process;
    const Invocation invocation = parseCommandLine(words, Settings{}, &process);
    Tool tool;
    tool.hasNewStore = process.store.starts_with("memory:");
    if (invocation.command != nullptr) {
        installLibraryLog();
        if (mcast6_platform_open(process.store.c_str()) != 0) {
            throw Failure("--store " + process.store + ": " + mcast6_platform_error());
        }
    }
    runInvocation(tool, invocation);
    finishOutput();
    return tool.outcome;
}

// Standard streams that the caller closed become ones that can be neither read nor written: a file or a store opened in
// their place would get what is meant for them.
void holdStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) != -1) continue;
        // The lowest free number, which is this one.
        open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

int report(const std::string& message, const std::vector<std::string>& notes, int exitCode) {
    complain(message, notes);
    if (exitCode == kWrongUsage) complain("`mcast6ctl --help` and `mcast6ctl COMMAND --help` tell what there is");
    return exitCode;
}

}  // namespace

int main(int count, char** texts) {
    holdStandardStreams();
    int exitCode = kDone;
    try {
        exitCode = run({texts + 1, texts + count});
    } catch (const Failure& failure) {
        exitCode = report(failure.what(), failure.notes(), failure.exitCode());
    } catch (const std::exception& error) {
        exitCode = report(error.what(), {}, kFailed);
    }
    mcast6_platform_close();
    return exitCode;
}
