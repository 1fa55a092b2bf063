// An operation told as data, and the sweep that holds the library to it.
//
// A description lists the engine calls and allocations of an operation in their order, what each way out leaves behind,
// and nothing is left to the code under test: numbers, messages and bytes are spelled out where the operation is told.
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
// From it come the run in which all goes well; each null parameter; each call failing with each of 1, 13044, 15005,
// 110012, 110024 and 9; each allocation failing; the calls of one step failing together; and all of that once more with
// no log callback. Each time everything is compared that the library shows: the result, every line of the recorder's
// trace in order, the log's formats as they came, all error statistics, the caller's memory, and what is still alive.
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

// What a run of an operation shows to its caller, the host and the engine.
struct Picture {
    std::string result;
    Trace trace;  // with a line "record <table> <kind>" before the line that follows a recorded error
    std::vector<std::string> logFormats;
    ErrorStatistics errors{};
    std::map<std::string, std::string> memory;  // by Watched::name
    int64_t objects = 0;                        // alive, more than before
    int64_t iterators = 0;
    int64_t blocks = 0;
};

// A picture that is being made of what should happen.
struct Expectation {
    Picture picture;
    uint32_t code = 0;  // what the failing call answered
    bool isLogged = true;
};

// How results other than numbers are told.
inline constexpr const char* kNull = "null";
inline constexpr const char* kHandle = "handle";
inline constexpr const char* kNothing = "nothing";

// -- effects: what a way out does, in the order in which it does it ---------------------------------------------------

using Effect = std::function<void(Expectation&)>;
using Effects = std::vector<Effect>;

// Stands for the answer of the failing call; for several failing calls, the OR of their answers.
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
// What a watched piece of memory holds afterwards; without this it must be as before.
Effect leaves(std::string name, std::string text);
// Objects, iterators and blocks that are alive and were not before; negative: fewer than before.
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

// Something that can fail: a call that answers an engine code, or an allocation.
struct Call {
    std::string line;   // as the recorder notes it
    std::string given;  // what it gives when it succeeds: "obj1"
    bool isAllocation = false;
};
Call call(std::string line);
Call gives(std::string line, std::string given);
Call allocation(uint32_t size, std::string given);
// A scalar setter's line.
Call sets(std::string_view field, std::string_view object, uint64_t value);

// Calls of which all are made even when one of them fails; mostly there is just one.
struct Step {
    std::vector<Call> calls;
    Effects failed;                             // what follows a failure, to the end of the operation
    std::map<uint32_t, Effects> answered = {};  // answers that are not treated as the others are
    Effects done = {};                          // what follows success, before the next step
};

struct Watched {
    std::string name;
    std::function<std::string()> text;
};

// What an operation starts from.
struct Scene {
    std::function<void()> prepare = [] {};
    std::vector<Watched> watched = {};
};

// Calls the operation and tells the result as text.
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

// Puts the recorder and the library back to their start, registers the recorder's memory hooks and its log callback
// ('isLogged' false: none), and lets the trace tell recorded errors.
void startOver(bool isLogged = true);

// Runs every case of the operation and returns one text for each that is not as described, which names the case and
// shows what differs. 'cases', if not null, is added the number of cases that were run.
std::vector<std::string> mismatches(const Operation& operation, size_t* cases = nullptr);

// -- helpers for descriptions -----------------------------------------------------------------------------------------

// Hexadecimal digits without the blanks that make them readable.
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
