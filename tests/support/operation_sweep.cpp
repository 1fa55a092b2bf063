#include "tests/support/operation_sweep.h"

#include <cstdio>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "mcast6_db.h"
#include "tests/platform/state.h"
#include "tests/support/process_state.h"

namespace mcast6::tests {

namespace {

using recording::Recorder;

// Each call is made to fail with each of these; the last represents all other failures of the engine.
constexpr uint32_t kCodes[] = {1, 13044, 15005, 110012, 110024, 9};

Recorder& platform() { return Recorder::instance(); }

ErrorStatistics errorStatistics() {
    ErrorStatistics statistics{};
    for (uint32_t table = 0; table < kTables; ++table) {
        for (uint32_t kind = 0; kind < kErrorKinds; ++kind) statistics[table][kind] = g_mcast6DbErrStat[table][kind];
    }
    return statistics;
}

std::string recordLine(uint32_t tableNumber, uint32_t errorKind) {
    return "record " + std::to_string(tableNumber) + " " + std::to_string(errorKind);
}

// Adds a line for each error recorded since 'seen', and updates 'seen'.
void noteErrors(ErrorStatistics& seen, Trace& trace) {
    const ErrorStatistics now = errorStatistics();
    for (uint32_t table = 0; table < kTables; ++table) {
        for (uint32_t kind = 0; kind < kErrorKinds; ++kind) {
            for (uint64_t n = seen[table][kind]; n < now[table][kind]; ++n) trace.push_back(recordLine(table, kind));
        }
    }
    seen = now;
}

std::map<std::string, std::string> memoryOf(const Scene& scene) {
    std::map<std::string, std::string> memory;
    for (const Watched& piece : scene.watched) memory[piece.name] = piece.text();
    return memory;
}

struct Alive {
    int64_t objects = static_cast<int64_t>(platform().liveObjects());
    int64_t iterators = static_cast<int64_t>(platform().liveIterators());
    int64_t blocks = static_cast<int64_t>(platform().liveBlocks());
};

// One run of an operation.
struct Case {
    std::string name;
    Run run;
    std::function<void()> fault;  // set up after the scene
    Expectation expectation;      // without the memory that must be unchanged
};

// Runs a case on its scene and returns the observation. Adds the memory before the run to the expectation.
Observation pictureOf(const Scene& scene, const Case& item, Expectation& expectation) {
    startOver(item.expectation.isLogged);
    scene.prepare();
    platform().takeTrace();
    const size_t logLinesBefore = platform().logFormats().size();
    const ErrorStatistics errorsBefore = errorStatistics();
    const Alive before;
    for (const auto& [name, text] : memoryOf(scene)) expectation.expected.memory.emplace(name, text);
    item.fault();

    Observation observed;
    observed.result = item.run();

    recording::state().watcher(recording::state().trace);
    observed.trace = platform().takeTrace();
    const auto& formats = platform().logFormats();
    observed.logFormats.assign(formats.begin() + static_cast<std::ptrdiff_t>(logLinesBefore), formats.end());
    observed.errors = errorStatistics();
    for (uint32_t table = 0; table < kTables; ++table) {
        for (uint32_t kind = 0; kind < kErrorKinds; ++kind) observed.errors[table][kind] -= errorsBefore[table][kind];
    }
    observed.memory = memoryOf(scene);
    const Alive after;
    observed.objects = after.objects - before.objects;
    observed.iterators = after.iterators - before.iterators;
    observed.blocks = after.blocks - before.blocks;
    return observed;
}

template <class Lines>
void print(std::ostream& out, const char* what, const Lines& lines) {
    out << "  " << what << ":\n";
    for (const std::string& text : lines) out << "    " << text << "\n";
}

template <class Value>
void compare(std::ostream& out, const std::string& what, const Value& actual, const Value& expected) {
    if (actual == expected) return;
    out << "  " << what << " is " << actual << ", expected " << expected << "\n";
}

template <class Lines>
void compareLines(std::ostream& out, const std::string& what, const Lines& actual, const Lines& expected) {
    if (actual == expected) return;
    print(out, (what + " is").c_str(), actual);
    print(out, (what + " expected").c_str(), expected);
}

void compareErrors(std::ostream& out, const ErrorStatistics& actual, const ErrorStatistics& expected) {
    for (uint32_t table = 0; table < kTables; ++table) {
        for (uint32_t kind = 0; kind < kErrorKinds; ++kind) {
            compare(out, "errors of table " + std::to_string(table) + ", kind " + std::to_string(kind),
                    actual[table][kind], expected[table][kind]);
        }
    }
}

std::string differences(const Observation& actual, const Observation& expected) {
    std::ostringstream out;
    compare(out, "result", actual.result, expected.result);
    compareLines(out, "trace", actual.trace, expected.trace);
    compareLines(out, "log formats", actual.logFormats, expected.logFormats);
    compareErrors(out, actual.errors, expected.errors);
    for (const auto& [name, text] : expected.memory) {
        const auto piece = actual.memory.find(name);
        compare(out, name, piece != actual.memory.end() ? piece->second : "not watched", text);
    }
    compare(out, "number of new objects", actual.objects, expected.objects);
    compare(out, "number of new iterators", actual.iterators, expected.iterators);
    compare(out, "number of new blocks", actual.blocks, expected.blocks);
    return out.str();
}

void apply(const Effects& effects, Expectation& expectation) {
    for (const Effect& effect : effects) effect(expectation);
}

void succeed(const Call& call, Expectation& expectation) {
    expectation.expected.trace.push_back(call.given.empty() ? call.line : call.line + " -> " + call.given);
}

void fail(const Call& call, Expectation& expectation, uint32_t answer) {
    const std::string outcome = call.isAllocation ? "null" : std::to_string(answer);
    expectation.expected.trace.push_back(call.line + " -> " + outcome);
}

// The expectation of everything before a step.
Expectation before(const Operation& operation, size_t step, bool isLogged) {
    Expectation expectation;
    expectation.isLogged = isLogged;
    for (size_t i = 0; i < step; ++i) {
        for (const Call& call : operation.steps[i].calls) succeed(call, expectation);
        apply(operation.steps[i].done, expectation);
    }
    return expectation;
}

// The number of allocations, or of calls that return a code, before the given one.
uint64_t countBefore(const Operation& operation, size_t step, size_t position, bool allocations) {
    uint64_t count = 0;
    for (size_t i = 0; i <= step; ++i) {
        const auto& calls = operation.steps[i].calls;
        const size_t end = i < step ? calls.size() : position;
        for (size_t j = 0; j < end; ++j) count += calls[j].isAllocation == allocations;
    }
    return count;
}

// A case is built for each kind of run: with a log callback and without.
using Build = std::function<Case(bool isLogged)>;

// Applies the effects to the expectation of a case.
Case concluded(Case item, const Effects& effects) {
    apply(effects, item.expectation);
    return item;
}

Build success(const Operation& operation) {
    return [&operation](bool isLogged) {
        Case item{"all goes well", operation.run, [] {}, before(operation, operation.steps.size(), isLogged)};
        return concluded(std::move(item), operation.done);
    };
}

Build nullParameter(const NullCase& null) {
    return [&null](bool isLogged) {
        Case item{"null " + null.parameter, null.run, [] {}, {}};
        item.expectation.isLogged = isLogged;
        return concluded(std::move(item), null.effects);
    };
}

Build failure(const Operation& operation, size_t stepIndex, size_t position, uint32_t answer) {
    return [&operation, stepIndex, position, answer](bool isLogged) {
        const Step& step = operation.steps[stepIndex];
        const Call& failing = step.calls[position];
        const uint64_t number = 1 + countBefore(operation, stepIndex, position, failing.isAllocation);
        Case item{"'" + failing.line + "' fails", operation.run, {}, before(operation, stepIndex, isLogged)};
        if (failing.isAllocation) {
            item.fault = [number] { platform().failAllocation(number); };
        } else {
            item.name += " with " + std::to_string(answer);
            item.fault = [number, answer] { platform().failCall(number, answer); };
        }
        item.expectation.code = answer;
        for (const Call& call : step.calls) {
            if (&call == &failing) {
                fail(call, item.expectation, answer);
            } else {
                succeed(call, item.expectation);
            }
        }
        const auto special = step.answered.find(answer);
        return concluded(std::move(item), special != step.answered.end() ? special->second : step.failed);
    };
}

// "set l3mc6_mfib.smoothVersion obj1 7" is a call of db_set_l3mc6_mfib_smoothVersion.
std::string accessorOf(const Call& call) {
    const size_t dot = call.line.find('.');
    const size_t end = call.line.find(' ', dot);
    if (dot == std::string::npos || end == std::string::npos) {
        throw std::logic_error("calls that go together are setters or getters of fields: " + call.line);
    }
    const std::string verb = call.line.substr(0, call.line.find(' '));
    return "db_" + verb + "_" + call.line.substr(verb.size() + 1, dot - verb.size() - 1) + "_" +
           call.line.substr(dot + 1, end - dot - 1);
}

// Every call of a step fails, each with its own bit.
Build failureTogether(const Operation& operation, size_t stepIndex) {
    return [&operation, stepIndex](bool isLogged) {
        const Step& step = operation.steps[stepIndex];
        Case item{"'" + step.calls.front().line + "' and the other calls of its step fail",
                  operation.run,
                  {},
                  before(operation, stepIndex, isLogged)};
        std::vector<std::pair<std::string, uint32_t>> answers;
        uint32_t answer = 0x100;
        for (const Call& call : step.calls) {
            answers.emplace_back(accessorOf(call), answer);
            fail(call, item.expectation, answer);
            item.expectation.code |= answer;
            answer <<= 1;
        }
        item.fault = [answers] {
            for (const auto& [function, bit] : answers) platform().answer(function, bit);
        };
        return concluded(std::move(item), step.failed);
    };
}

std::vector<Build> casesOf(const Operation& operation) {
    std::vector<Build> cases{success(operation)};
    for (const NullCase& null : operation.nulls) cases.push_back(nullParameter(null));
    for (size_t step = 0; step < operation.steps.size(); ++step) {
        const auto& calls = operation.steps[step].calls;
        for (size_t position = 0; position < calls.size(); ++position) {
            if (calls[position].isAllocation) {
                cases.push_back(failure(operation, step, position, 0));
                continue;
            }
            for (const uint32_t answer : kCodes) cases.push_back(failure(operation, step, position, answer));
        }
        if (calls.size() > 1) cases.push_back(failureTogether(operation, step));
    }
    return cases;
}

Effect returnsText(const char* text) {
    return [text](Expectation& expectation) { expectation.expected.result = text; };
}

}  // namespace

Effect allOf(Effects effects) {
    return [effects = std::move(effects)](Expectation& expectation) { apply(effects, expectation); };
}

Effect line(std::string text) {
    return [text = std::move(text)](Expectation& expectation) { expectation.expected.trace.push_back(text); };
}

Effect dfx(uint32_t counterId) { return line("dfx " + std::to_string(counterId)); }

Effect kpi(uint32_t kpiId) { return line("kpi " + std::to_string(kpiId)); }

Effect record(uint32_t tableNumber, uint32_t errorKind) {
    return [tableNumber, errorKind](Expectation& expectation) {
        expectation.expected.trace.push_back(recordLine(tableNumber, errorKind));
        ++expectation.expected.errors.at(tableNumber).at(errorKind);
    };
}

Effect returns(Argument result) {
    return [result](Expectation& expectation) { expectation.expected.result = std::to_string(result.in(expectation)); };
}

Effect returnsNull() { return returnsText(kNull); }

Effect returnsHandle() { return returnsText(kHandle); }

Effect returnsNothing() { return returnsText(kNothing); }

Effect leaves(std::string name, std::string text) {
    return [name = std::move(name), text = std::move(text)](Expectation& expectation) {
        expectation.expected.memory[name] = text;
    };
}

Effect keeps(int64_t objects, int64_t iterators, int64_t blocks) {
    return [objects, iterators, blocks](Expectation& expectation) {
        expectation.expected.objects = objects;
        expectation.expected.iterators = iterators;
        expectation.expected.blocks = blocks;
    };
}

Effect LogId::line(const char* format, std::vector<Argument> arguments) const {
    if (arguments.size() > 3) throw std::logic_error("log line with more than three arguments");
    return [logId = id, format, arguments = std::move(arguments)](Expectation& expectation) {
        if (!expectation.isLogged) return;
        uint32_t values[3] = {};
        for (size_t i = 0; i < arguments.size(); ++i) values[i] = arguments[i].in(expectation);
        char head[40];
        std::snprintf(head, sizeof head, "log 9 0x%08X ", logId);
        char text[400];
        std::snprintf(text, sizeof text, format, values[0], values[1], values[2]);
        expectation.expected.trace.push_back(head + ('"' + std::string(text) + '"'));
        expectation.expected.logFormats.emplace_back(format);
    };
}

Call call(std::string line) { return {std::move(line), "", false}; }

Call gives(std::string line, std::string given) { return {std::move(line), std::move(given), false}; }

Call allocation(uint32_t size, std::string given) { return {"alloc " + std::to_string(size), std::move(given), true}; }

Call sets(std::string_view field, std::string_view object, uint64_t value) {
    return call("set " + std::string(field) + " " + std::string(object) + " " + std::to_string(value));
}

void startOver(bool isLogged) {
    platform().reset();
    forgetProcessState();
    const Mcast6DbMemCallback hooks{&Recorder::alloc, &Recorder::free};
    MCAST6_DB_InitMem(&hooks);
    const Mcast6DbContext context{isLogged ? &Recorder::log : nullptr};
    if (MCAST6_DB_RegCallBack(&context) != 0) throw std::logic_error("the log callback was refused");
    const auto seen = std::make_shared<ErrorStatistics>();
    platform().watch([seen](Trace& trace) { noteErrors(*seen, trace); });
}

std::vector<std::string> mismatches(const Operation& operation, size_t* cases) {
    std::vector<std::string> texts;
    for (const Build& build : casesOf(operation)) {
        for (const bool isLogged : {true, false}) {
            const Case item = build(isLogged);
            Expectation expectation = item.expectation;
            const Observation actual = pictureOf(operation.scene, item, expectation);
            if (cases != nullptr) ++*cases;
            const std::string found = differences(actual, expectation.expected);
            if (found.empty()) continue;
            texts.push_back(operation.name + ": " + item.name + (isLogged ? "" : ", no log callback") + "\n" + found);
        }
    }
    platform().reset();
    return texts;
}

std::string digits(std::string_view text) { return recording::hex(recording::unhex(text)); }

std::string nameOf(uint64_t handle) { return recording::state().nameOf(handle); }

Watched watchHandle(std::string name, const uint64_t& handle) {
    return {std::move(name), [&handle] { return nameOf(handle); }};
}

}  // namespace mcast6::tests
