// Outcomes: what a table does at each exit of an operation, as data.
//
// The operations of all tables perform the same steps. They differ in what follows: which counter is incremented,
// whether a line is logged before or after the object is released, what is recorded under which table number, what is
// returned. So an operation template (operations.h) only determines the exit: null record, create failed, written and
// so on. For each exit the table lists effects, in order, and a result:
//
//     .written     = {released, dfx(kWritten), returns(0)},
//     .code13044   = {released, record(Error::code13044), dfx(kWritten), returns(0)},
//     .writeFailed = {released, logCode("... failed, ret:%u."), record(Error::write), dfx(kWriteFailed), engineCode},
//
// Outcomes are constants and are expanded at compile time: an operation compiles to straight calls, with no loop and no
// test of an outcome's contents. There is no default outcome. These mistakes do not compile: a missing outcome, a
// message whose number of conversions differs from the number of values that its effect logs, and an exit that releases
// the object twice or not at all.
#pragma once

#include <cstddef>
#include <utility>

#include "frame/codes.h"
#include "frame/log.h"
#include "mcast6_db/iterator.h"
#include "mcast6_platform/host.h"

namespace mcast6 {

// A diagnostic counter and a key performance indicator: the number at the host, and what is counted. A table names its
// own at the top of its file and lists them in 'counters' and 'indicators', from which their names are made for the
// host.
struct Counter {
    uint32_t number;
    const char* counts;
};
struct Kpi {
    uint32_t number;
    const char* counts;
};

template <class Numbered, size_t kCount>
constexpr bool isListed(const Numbered (&list)[kCount], uint32_t number) {
    for (const Numbered& listed : list) {
        if (listed.number == number) return true;
    }
    return false;
}

// Counts one in a counter or an indicator of the table.
template <class Table, const Counter& kCounter>
[[gnu::always_inline]] inline void countOne() {
    static_assert(isListed(Table::counters, kCounter.number),
                  "the table's list of counters lacks one that it counts in");
    MCAST6_DfxCounterInc(kCounter.number);
}
template <class Table, const Kpi& kIndicator>
[[gnu::always_inline]] inline void countOne() {
    static_assert(isListed(Table::indicators, kIndicator.number),
                  "the table's list of indicators lacks one that it counts in");
    MCAST6_KPI_AddKpiData(kIndicator.number);
}

struct Effect {
    enum class Kind : uint8_t { release, log, logCode, logObject, dfx, kpi, record, call };
    static constexpr uint32_t kOfTable = ~uint32_t{0};  // the table's own log id or table number

    Kind kind;
    uint32_t number = 0;        // counter, KPI or error kind
    uint32_t owner = kOfTable;  // log id or table number
    const char* text = nullptr;
    void (*function)() = nullptr;
};

// Declared but never defined: effects are constants, so a message that breaks the rule does not compile.
void log_takes_a_message_without_conversions();
void logCode_takes_a_message_with_exactly_one_conversion();
void logObject_takes_a_message_with_exactly_three_conversions();

constexpr int conversions(const char* text) {
    int count = 0;
    for (; *text != '\0'; ++text) count += *text == '%' ? 1 : 0;
    return count;
}

// The effects. A message is one whole literal in the table's file. 'logId' is given only if it is not the table's own.
inline constexpr Effect released{.kind = Effect::Kind::release};

consteval Effect log(const char* text, uint32_t logId = Effect::kOfTable) {
    if (conversions(text) != 0) log_takes_a_message_without_conversions();
    return {.kind = Effect::Kind::log, .owner = logId, .text = text};
}

// Logs the code of the last step.
consteval Effect logCode(const char* text, uint32_t logId = Effect::kOfTable) {
    if (conversions(text) != 1) logCode_takes_a_message_with_exactly_one_conversion();
    return {.kind = Effect::Kind::logCode, .owner = logId, .text = text};
}

// Logs objType, connType and the code of the last step.
consteval Effect logObject(const char* text, uint32_t logId = Effect::kOfTable) {
    if (conversions(text) != 3) logObject_takes_a_message_with_exactly_three_conversions();
    return {.kind = Effect::Kind::logObject, .owner = logId, .text = text};
}

consteval Effect dfx(const Counter& counter) { return {.kind = Effect::Kind::dfx, .number = counter.number}; }

consteval Effect kpi(const Kpi& indicator) { return {.kind = Effect::Kind::kpi, .number = indicator.number}; }

// Records an error kind, under another table's number if one is given.
consteval Effect record(Error error, uint32_t tableNumber = Effect::kOfTable) {
    return {.kind = Effect::Kind::record, .number = static_cast<uint32_t>(error), .owner = tableNumber};
}

// Calls a host function.
consteval Effect calls(void (*function)()) { return {.kind = Effect::Kind::call, .function = function}; }

struct Result {
    bool isCode;
    uint32_t value;
};

consteval Result returns(uint32_t value) { return {false, value}; }

// The result is the code of the last step.
inline constexpr Result engineCode{true, 0};

// The result is a null handle.
inline constexpr Result returnsNull{false, 1};

inline constexpr size_t kMaxEffects = 6;

struct Outcome {
    Effect effects[kMaxEffects]{};
    uint8_t effectCount = 0;
    bool isTested = true;
    Result result{};

    template <class... Parts>
    consteval Outcome(Parts... parts) {  // NOLINT(google-explicit-constructor): tables write {effect, ..., result}
        static_assert(sizeof...(Parts) >= 1 && sizeof...(Parts) <= kMaxEffects + 1, "effects, then one result");
        (add(parts), ...);
    }

    static consteval Outcome untested() {
        Outcome outcome{returns(0)};
        outcome.isTested = false;
        return outcome;
    }

    constexpr int releases() const {
        int count = 0;
        for (uint8_t i = 0; i < effectCount; ++i) count += effects[i].kind == Effect::Kind::release ? 1 : 0;
        return count;
    }

private:
    constexpr void add(const Effect& effect) { effects[effectCount++] = effect; }
    constexpr void add(const Result& last) { result = last; }
};

// For a table that does not check for null: the caller guarantees that there is none.
inline constexpr Outcome callerGuarantees = Outcome::untested();

// The values that the effects of an outcome use.
struct Step {
    uint32_t code = kOk;
    Mcast6DbHandle object = 0;
    uint32_t objType = 0;
    uint32_t connType = kConnType;
};

template <class Table, const auto& kOn, auto kExit, size_t kIndex>
[[gnu::always_inline]] inline void applyEffect([[maybe_unused]] const Step& step) {
    constexpr Effect effect = (kOn.*kExit).effects[kIndex];
    using Kind = Effect::Kind;
    if constexpr (effect.kind == Kind::release) {
        Table::objects.release(step.object);
    } else if constexpr (effect.kind == Kind::dfx) {
        static_assert(isListed(Table::counters, effect.number),
                      "the table's list of counters lacks one that an outcome counts in");
        MCAST6_DfxCounterInc(effect.number);
    } else if constexpr (effect.kind == Kind::kpi) {
        static_assert(isListed(Table::indicators, effect.number),
                      "the table's list of indicators lacks one that an outcome counts in");
        MCAST6_KPI_AddKpiData(effect.number);
    } else if constexpr (effect.kind == Kind::call) {
        effect.function();
    } else if constexpr (effect.kind == Kind::record) {
        if constexpr (effect.owner == Effect::kOfTable) {
            MCAST6_DB_RecordErrState(Table::number, effect.number);
        } else {
            MCAST6_DB_RecordErrState(effect.owner, effect.number);
        }
    } else {
        uint32_t logId = effect.owner;
        if constexpr (effect.owner == Effect::kOfTable) logId = Table::logId;
        if constexpr (effect.kind == Kind::log) logLine(logId, effect.text);
        if constexpr (effect.kind == Kind::logCode) logLine(logId, effect.text, step.code);
        if constexpr (effect.kind == Kind::logObject) {
            logLine(logId, effect.text, step.objType, step.connType, step.code);
        }
    }
}

// Applies the effects of one exit, in order, and returns its result. 'kOn' is the table's outcomes of the operation,
// 'kExit' the member for the exit.
template <class Table, const auto& kOn, auto kExit>
[[gnu::always_inline]] inline uint32_t conclude(const Step& step) {
    constexpr Outcome outcome = kOn.*kExit;
    [&]<size_t... kIndex>(std::index_sequence<kIndex...>) { (applyEffect<Table, kOn, kExit, kIndex>(step), ...); }
    (std::make_index_sequence<outcome.effectCount>{});
    return outcome.result.isCode ? step.code : outcome.result.value;
}

}  // namespace mcast6
