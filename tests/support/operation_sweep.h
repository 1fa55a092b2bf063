// An operation described as data, and the sweep that checks the library against the description.
//
// A description lists the engine calls and allocations of an operation in order, and the effects of each exit. It takes
// nothing from the code under test: numbers, messages and bytes are literals.
//
//     const LogId config{0x0F2E1012};
//     const Effect released = allOf({line("release l2mc6_bd_enable obj1"), dfx(454)});
//     Operation{
//         .name = "MCAST6_DB_WriteL2McBdEnable",
//         .scene = scene(),                                          // records, caches and iterators to start from
//         .run = [] { return MCAST6_DB_WriteL2McBdEnable(&record); },
//         .nulls = {{"record", [] { return MCAST6_DB_WriteL2McBdEnable(nullptr); }, {dfx(456), returns(1)}}},
//         .steps =
//             {
//                 {.calls = {gives("create l2mc6_bd_enable 0 0", "obj1")},
//                  .failed = {dfx(453), config("write failed, ret:%u.", code), dfx(456), returns(code)},
//                  .done = {dfx(452)}},
//                 {.calls = {call("write obj1")},
//                  .failed = {released, record(26, 2), dfx(456), returns(code)},
//                  .answered = {{13044, {released, record(26, 1), dfx(455), returns(0)}}}},
//             },
//         .done = {released, dfx(455), returns(0)},
//     }
//
// The sweep runs the successful case; each null parameter; each call failing with each of 1, 13044, 15005, 110012,
// 110024 and 9; each allocation failing; all calls of one step failing together; and all of these again without a log
// callback. Each run compares everything that is visible: the result, every line of the recorder's trace in order, the
// log formats, all error statistics, the caller's memory, and the live objects, iterators and blocks.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/platform/recorder.h"

namespace mcast6::tests {

using recording::Trace;

inline constexpr uint32_t kTables = 33;
inline constexpr uint32_t kErrorKinds = 10;
using ErrorStatistics = std::array<std::array<uint64_t, kErrorKinds>, kTables>;

// What is visible after a run of an operation: to its caller, the host and the engine.
struct Observation {
    std::string result;
    Trace trace;  // with a line "record <table> <kind>" before the line that follows a recorded error
    std::vector<std::string> logFormats;
    ErrorStatistics errors{};
    std::map<std::string, std::string> memory;  // by Watched::name
    int64_t objects = 0;                        // alive, in addition to those before
    int64_t iterators = 0;
    int64_t blocks = 0;
};

// The observation that a description predicts, built effect by effect.
struct Expectation {
    Observation expected;
    uint32_t code = 0;  // what the failing call returned
    bool isLogged = true;
};

// The text of results other than numbers.
inline constexpr const char* kNull = "null";
inline constexpr const char* kHandle = "handle";
inline constexpr const char* kNothing = "nothing";

// -- effects: what an exit does, in order -----------------------------------------------------------------------------

using Effect = std::function<void(Expectation&)>;
using Effects = std::vector<Effect>;

// The code that the failing call returned; for several failing calls, the OR of their codes.
struct Code {};
inline constexpr Code code;

// A number or Code.
struct Argument {
    Argument(Code) : isCode(true), number(0) {}
    Argument(uint32_t value) : isCode(false), number(value) {}
    uint32_t in(const Expectation& expectation) const { return isCode ? expectation.code : number; }

    bool isCode;
    uint32_t number;
};

Effect allOf(Effects effects);
// A line of the recorder's trace.
Effect line(std::string text);
Effect dfx(uint32_t counterId);
Effect kpi(uint32_t kpiId);
// An error in the statistics.
Effect record(uint32_t tableNumber, uint32_t errorKind);
// The result: a number, a pointer, or nothing at all.
Effect returns(Argument result);
Effect returnsNull();
Effect returnsHandle();
Effect returnsNothing();
// The content of watched memory afterwards; without this effect it must be unchanged.
Effect leaves(std::string name, std::string text);
// The change in the number of live objects, iterators and blocks; may be negative.
Effect keeps(int64_t objects, int64_t iterators, int64_t blocks);

// Effects of a log line: config("format", arguments...).
struct LogId {
    uint32_t id;

    template <class... Arguments>
    Effect operator()(const char* format, Arguments... arguments) const {
        return line(format, std::vector<Argument>{Argument(arguments)...});
    }

private:
    Effect line(const char* format, std::vector<Argument> arguments) const;
};

// -- operations -------------------------------------------------------------------------------------------------------

// Something that can fail: a call that returns an engine code, or an allocation.
struct Call {
    std::string line;   // as the recorder prints it
    std::string given;  // what it returns on success: "obj1"
    bool isAllocation = false;
};
Call call(std::string line);
Call gives(std::string line, std::string given);
Call allocation(uint32_t size, std::string given);
// The line of a scalar setter.
Call sets(std::string_view field, std::string_view object, uint64_t value);

// Usually one call. With several, all are made even if one fails.
struct Step {
    std::vector<Call> calls;
    Effects failed;                             // effects after a failure, to the end of the operation
    std::map<uint32_t, Effects> answered = {};  // by code, where the effects differ from 'failed'
    Effects done = {};                          // effects after success, before the next step
};

struct Watched {
    std::string name;
    std::function<std::string()> text;
};

// The state before an operation.
struct Scene {
    std::function<void()> prepare = [] {};
    std::vector<Watched> watched = {};
};

// Calls the operation and returns its result as text.
class Run {
public:
    template <class Function>
    Run(Function function) : run_([function] { return textOf(function); }) {}
    std::string operator()() const { return run_(); }

private:
    template <class Function>
    static std::string textOf(const Function& function) {
        using Result = decltype(function());
        if constexpr (std::is_void_v<Result>) {
            function();
            return kNothing;
        } else if constexpr (std::is_pointer_v<Result>) {
            return function() != nullptr ? kHandle : kNull;
        } else {
            return std::to_string(function());
        }
    }

    std::function<std::string()> run_;
};

struct NullCase {
    std::string parameter;
    Run run;
    Effects effects;
};

struct Operation {
    std::string name;
    Scene scene = {};
    Run run;
    std::vector<NullCase> nulls = {};
    std::vector<Step> steps;
    Effects done;
};

// Resets the recorder and the library, registers the recorder's memory hooks and its log callback (none if 'isLogged'
// is false), and adds recorded errors to the trace.
void startOver(bool isLogged = true);

// Runs every case of the operation. Returns one text for each case that differs from the description; it names the case
// and shows the differences. Adds the number of cases to '*cases' if that is not null.
std::vector<std::string> mismatches(const Operation& operation, size_t* cases = nullptr);

// -- helpers for descriptions -----------------------------------------------------------------------------------------

// Hexadecimal digits without the blanks between them.
std::string digits(std::string_view text);
// The bytes of something as hexadecimal digits.
template <class T>
std::string bytesOf(const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    return recording::hex({reinterpret_cast<const uint8_t*>(&value), sizeof value});
}
// The recorder's name of an engine handle.
std::string nameOf(uint64_t handle);

template <class T>
Watched watchBytes(std::string name, const T& place) {
    return {std::move(name), [&place] { return bytesOf(place); }};
}
Watched watchHandle(std::string name, const uint64_t& handle);

}  // namespace mcast6::tests
