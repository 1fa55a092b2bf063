// The recording platform: implements the whole platform contract with only a script and a trace.
//
// Linked into a test in place of a platform, it answers every call of the library, by default with success, and records
// each as one line of text, in order. A test scripts answers, calls the library, and compares the whole trace:
//
//     Recorder& platform = Recorder::instance();
//     platform.reset();
//     platform.answer("db_write_obj", 13044);
//     EXPECT_EQ(0u, MCAST6_DB_WriteL2McBdEnable(&record));
//     EXPECT_EQ(platform.trace(), (Trace{"create l2mc6_bd_enable 0 0 -> obj1", ...}));
//
// Optionally it forwards to an Engine (forwardTo): calls are recorded, scripted codes take precedence, everything else
// comes from the engine.
//
// The recorder checks rules of the contract that no answer would reveal: handles that are unknown, released or of
// another kind or table, key descriptors whose last 12 bytes are not 0, key words and record lengths that the table
// does not have, buffers that were not cleared. Each finding is a line "MISUSE ..." before the line of its call.
//
// There is one recorder in a program; it is used by one thread at a time.
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

    // Restores the initial state: no script, no trace, no live handle, counters zero, no engine behind.
    void reset();

    // -- the script ---------------------------------------------------------------------------------------------------
    // A function is named as in the contract: "db_write_obj", "db_set_l3mc6_mfib_smoothVersion",
    // "MCAST_DB_ReadGlbVersion", "memcpy_s". A name that the contract does not have throws std::invalid_argument.

    // Queues 'code' as the answer of a call of 'function'. 0 is queued like any other code; the call then succeeds or
    // is forwarded to the engine behind.
    void answer(std::string_view function, uint32_t code);
    // The answer of every call of 'function' that has no queued answer.
    void answerAlways(std::string_view function, uint32_t code);
    // Makes the nth call from now that returns an engine code fail, 1 being the next. Takes precedence over the answers
    // above.
    void failCall(uint64_t n, uint32_t code);
    // The nth call and all that follow.
    void failCallsFrom(uint64_t n, uint32_t code);
    // The nth allocation from now returns null.
    void failAllocation(uint64_t n);
    // Whether the fault of failCall, failCallsFrom or failAllocation has occurred.
    bool faultHit() const;
    // The number of answers queued with answer() and not yet used.
    size_t pendingAnswers() const;

    // Queues the row that a successful db_read_obj_with_buf copies into the buffer. A shorter row leaves the rest of
    // the buffer unchanged. With none queued: the row that the object was stepped to, or nothing.
    void fillNextRead(Bytes row);
    // Queues the row at the object's position after a successful db_root_iterator_next, for getters and reads without a
    // key.
    void fillNextStep(Bytes row);
    // Queues the result of a successful count; 0 with none queued.
    void fillNextCount(uint64_t count);
    // Queues the version that a successful MCAST_DB_ReadGlbVersion returns; 0 with none queued.
    void fillNextGlobalVersion(uint32_t version);
    // The length that a byte getter, "db_get_<table>_<field>", reports from now on instead of the field's width; at
    // most 256.
    void announceLength(std::string_view getter, uint32_t length);
    // Sets the clock, and by how much each reading advances it. Initially 1'700'000'000 and 0.
    void setTime(int64_t seconds, int64_t stepPerReading = 0);
    // Records memcpy_s and readings of the clock too; initially off.
    void traceCopies(bool on);
    void traceClock(bool on);
    // Forwards to an engine, null for none. The engine must outlive its use.
    void forwardTo(Engine* engine);
    // Called before each line is recorded; may add lines about changes that the recorder cannot see. Null for none.
    void watch(std::function<void(Trace&)> watcher);

    // -- what happened ------------------------------------------------------------------------------------------------
    const Trace& trace() const;
    // Returns the trace so far, after a last call of the watcher, and clears it.
    Trace takeTrace();
    // The "MISUSE" lines since reset().
    const Trace& misuses() const;
    // The format strings that the log callback received since reset().
    const std::vector<std::string>& logFormats() const;

    // The number of calls that return an engine code, since reset() or the last failCall or failCallsFrom.
    uint64_t callCount() const;
    // The number of allocations since reset() or the last failAllocation.
    uint64_t allocationCount() const;
    // The number of calls of one function since reset().
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

    // -- functions that a test registers with the library -------------------------------------------------------------
    static void log(uint32_t level, uint32_t logId, const char* format, ...) __attribute__((format(printf, 3, 4)));
    // Blocks are filled with 0xA5.
    static void* alloc(uint64_t size);
    static void free(void* block);

private:
    Recorder() = default;
};

// Makes each call of 'operate' fail in turn: prepare(), then operate() with call 1 returning 'code', then check(1);
// then the same with call 2, and so on until operate() ends before the fault occurs. 'prepare' starts with reset() and
// may script answers; check() can read the trace of the failed run. Returns the number of calls that were made to fail.
uint64_t sweepCalls(uint32_t code, const std::function<void()>& prepare, const std::function<void()>& operate,
                    const std::function<void(uint64_t n)>& check);
// As failEachCall, with allocations.
uint64_t sweepAllocations(const std::function<void()>& prepare, const std::function<void()>& operate,
                          const std::function<void(uint64_t n)>& check);

}  // namespace mcast6::recording
