// The recording platform: the whole platform contract with nothing behind it but a script and a trace.
//
// Linked into a test in place of a platform, it answers every call of the library, by default with success, and notes
// each as one line of text, in order. A test scripts answers, calls the library, and compares the whole trace:
//
//     Recorder& platform = Recorder::instance();
//     platform.reset();
//     platform.answer("db_write_obj", 13044);
//     EXPECT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
//     EXPECT_EQ(platform.trace(), (Trace{"create l2mc6_bd_enable 0 0 -> obj1", ...}));
//
// Optionally an Engine stands behind it (forwardTo): calls are noted, scripted codes win, all else is the engine's.
//
// The recorder checks what the contract forbids and no answer would show: handles that are unknown, released or of
// another kind or table, key descriptors with anything in their last 12 bytes, key words and record lengths that the
// table does not have, buffers that were not cleared. Each finding is a line "MISUSE ..." before the line of its call.
//
// There is one recorder in a program; one thread at a time uses it.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/platform/engine.h"

namespace mcast6::recording {

using Bytes = std::vector<uint8_t>;

// The lines of a trace. GoogleTest prints them one below the other.
struct Trace : std::vector<std::string> {
    using std::vector<std::string>::vector;
};
void PrintTo(const Trace& trace, std::ostream* out);

// Bytes from hexadecimal digits, blanks ignored; and back.
Bytes unhex(std::string_view digits);
std::string hex(std::span<const uint8_t> bytes);

class Recorder {
public:
    static Recorder& instance();

    // Everything as at the start: no script, no trace, no live handle, counters zero, no engine behind.
    void reset();

    // -- the script ---------------------------------------------------------------------------------------------------
    // A function is named as in the contract: "db_write_obj", "db_set_l3mc6_mfib_smoothVersion",
    // "MCAST_DB_ReadGlbVersion", "memcpy_s". A name that the contract does not have throws std::invalid_argument.

    // The next call of 'function' that has no earlier answer waiting answers 'code'. 0 waits its turn like any
    // other and leaves the call to succeed, or to the engine behind.
    void answer(std::string_view function, uint32_t code);
    // Every call of 'function' with no answer waiting.
    void answerAlways(std::string_view function, uint32_t code);
    // The nth call from now that answers an engine code, 1 being the next; it wins over the answers above.
    void failCall(uint64_t n, uint32_t code);
    // The nth and all that follow.
    void failCallsFrom(uint64_t n, uint32_t code);
    // The nth allocation from now answers null.
    void failAllocation(uint64_t n);
    // Whether failCall, failCallsFrom or failAllocation has met its call.
    bool faultHit() const;
    // Answers that were scripted with answer() and not yet given.
    size_t pendingAnswers() const;

    // What the next successful db_read_obj_with_buf puts into the buffer; several wait in line. A shorter row leaves the
    // rest of the buffer alone. With none waiting: the row that the object was stepped to, or nothing at all.
    void fillNextRead(Bytes row);
    // The row under the object after the next successful db_root_iterator_next, for getters and reads without a key.
    void fillNextStep(Bytes row);
    // What the next successful count gives; 0 with none waiting.
    void fillNextCount(uint64_t count);
    // The version that the next successful MCAST_DB_ReadGlbVersion gives; 0 with none waiting.
    void fillNextGlobalVersion(uint32_t version);
    // The length that a byte getter, "db_get_<table>_<field>", announces from now on instead of the field's width;
    // at most 256.
    void announceLength(std::string_view getter, uint32_t length);
    // The clock, and by how much each reading of it moves it on. At the start 1'700'000'000 and 0.
    void setTime(int64_t seconds, int64_t stepPerReading = 0);
    // Notes memcpy_s and readings of the clock too; off at the start.
    void traceCopies(bool on);
    void traceClock(bool on);
    // Puts an engine behind, null for none. It must outlive its use.
    void forwardTo(Engine* engine);
    // Called before each line is noted, and may add lines of its own: what changed where the recorder cannot look. Null
    // for none.
    void watch(std::function<void(Trace&)> watcher);

    // -- what happened ------------------------------------------------------------------------------------------------
    const Trace& trace() const;
    // The trace so far, after a last look of the watcher; it starts anew.
    Trace takeTrace();
    // The "MISUSE" lines since reset().
    const Trace& misuses() const;
    // The format strings that the log callback got since reset(), as they came.
    const std::vector<std::string>& logFormats() const;

    // Calls that answer an engine code, since reset() or the last failCall or failCallsFrom.
    uint64_t callCount() const;
    // Allocations since reset() or the last failAllocation.
    uint64_t allocationCount() const;
    // Calls of one function since reset().
    uint64_t callsOf(std::string_view function) const;
    uint64_t dfx(uint32_t counterId) const;
    uint64_t kpi(uint32_t kpiId) const;
    uint64_t trapCount() const;
    uint64_t clockReadings() const;

    size_t liveObjects() const;
    size_t liveIterators() const;
    size_t liveBlocks() const;
    // How the trace names a handle: "obj1", "iter1", "none", "?7".
    std::string nameOf(uint64_t handle) const;

    // -- what a test registers with the library -----------------------------------------------------------------------
    static void log(uint32_t level, uint32_t logId, const char* format, ...) __attribute__((format(printf, 3, 4)));
    // Blocks come filled with 0xA5.
    static void* alloc(uint64_t size);
    static void free(void* block);

private:
    Recorder() = default;
};

// Lets each call of 'operate' fail in turn: prepare(), then operate() with call 1 answering 'code', then check(1); and
// so on with call 2 and further until operate() ends before the fault is met. 'prepare' starts with reset() and may
// script answers; check() sees the trace of the failed run. Returns how many calls were made to fail.
uint64_t sweepCalls(uint32_t code, const std::function<void()>& prepare, const std::function<void()>& operate,
                    const std::function<void(uint64_t n)>& check);
// The same with allocations.
uint64_t sweepAllocations(const std::function<void()>& prepare, const std::function<void()>& operate,
                          const std::function<void(uint64_t n)>& check);

}  // namespace mcast6::recording
