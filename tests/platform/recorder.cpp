#include "tests/platform/recorder.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "tests/platform/state.h"

namespace mcast6::recording {

namespace {

// Iterators are numbered from here, so that an object handle passed as an iterator is recognised, and the reverse.
constexpr uint64_t kFirstIterator = 1'000'000;

}  // namespace

State& state() {
    static State instance;
    return instance;
}

void State::noteMisuse(const std::string& what) {
    note("MISUSE " + what);
    misuses.push_back("MISUSE " + what);
}

uint64_t State::addObject(uint32_t table, uint64_t inner) {
    const uint64_t handle = ++objectsMade;
    things[handle] = Thing{Kind::object, true, false, table, 0, 0, inner, "obj" + std::to_string(handle), {}};
    return handle;
}

uint64_t State::addIterator(uint64_t owner, uint64_t inner) {
    const uint64_t number = ++iteratorsMade;
    const uint64_t handle = kFirstIterator + number;
    const uint32_t table = things[owner].table;
    things[handle] = Thing{Kind::iterator, true, false, table, 0, owner, inner, "iter" + std::to_string(number), {}};
    return handle;
}

void State::dropIterators(uint64_t owner, bool cachedToo) {
    for (auto& [handle, thing] : things) {
        if (thing.kind == Kind::iterator && thing.owner == owner && (cachedToo || !thing.isCached)) thing.live = false;
    }
}

void State::release(uint64_t object) {
    things[object].live = false;
    dropIterators(object, true);
}

Thing* State::find(uint64_t handle, Kind kind, const char* user) {
    if (handle == 0) return nullptr;
    const auto thing = things.find(handle);
    const char* wrong = nullptr;
    if (thing == things.end()) {
        wrong = "an unknown handle";
    } else if (!thing->second.live) {
        wrong = "a released handle";
    } else if (thing->second.kind != kind) {
        wrong = kind == Kind::object ? "an iterator for an object" : "an object for an iterator";
    }
    if (wrong == nullptr) return &thing->second;
    noteMisuse(std::string(user) + " of " + wrong + ", " +
               (thing == things.end() ? nameOf(handle) : thing->second.name));
    return nullptr;
}

Thing* State::findOf(uint32_t table, uint64_t handle, const char* user) {
    Thing* thing = find(handle, Kind::object, user);
    if (thing == nullptr || thing->table == table) return thing;
    noteMisuse(std::string(user) + " of an object of " + std::string(tableOf(thing->table).name) + ", " + thing->name);
    return nullptr;
}

std::string State::nameOf(uint64_t handle) const {
    if (handle == 0) return "none";
    const auto thing = things.find(handle);
    if (thing == things.end() || !thing->second.live) return "?" + std::to_string(handle);
    return thing->second.name;
}

size_t State::liveThings(Kind kind) const {
    size_t count = 0;
    for (const auto& [handle, thing] : things) count += thing.live && thing.kind == kind;
    return count;
}

const schema::Table& tableOf(uint32_t table) { return schema::catalog()[table]; }

std::string formatted(const char* format, va_list arguments) {
    if (format == nullptr) return "(no format)";
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0) return std::string("(bad format) ") + format;
    std::string text(static_cast<size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, arguments);
    text.pop_back();
    return text;
}

std::string hexOf(const void* bytes, size_t length) {
    if (bytes == nullptr) return "null";
    return hex({static_cast<const uint8_t*>(bytes), length});
}

Recorder& Recorder::instance() {
    static Recorder recorder;
    return recorder;
}

void Recorder::reset() {
    for (const auto& [block, name] : state().blocks) std::free(block);
    state() = State{};
}

void Recorder::answer(std::string_view function, uint32_t code) { state().script.answer(function, code); }
void Recorder::answerAlways(std::string_view function, uint32_t code) { state().script.answerAlways(function, code); }
void Recorder::failCall(uint64_t n, uint32_t code) { state().script.failCall(n, n, code); }
void Recorder::failCallsFrom(uint64_t n, uint32_t code) { state().script.failCall(n, UINT64_MAX, code); }
void Recorder::failAllocation(uint64_t n) { state().script.failAllocation(n); }
bool Recorder::faultHit() const { return state().script.faultHit(); }
size_t Recorder::pendingAnswers() const { return state().script.pending(); }

void Recorder::fillNextRead(Bytes row) { state().script.reads.push_back(std::move(row)); }
void Recorder::fillNextStep(Bytes row) { state().script.steps.push_back(std::move(row)); }
void Recorder::fillNextCount(uint64_t count) { state().script.counts.push_back(count); }
void Recorder::fillNextGlobalVersion(uint32_t version) { state().script.globalVersions.push_back(version); }
void Recorder::announceLength(std::string_view getter, uint32_t length) {
    state().script.announceLength(getter, length);
}
void Recorder::setTime(int64_t seconds, int64_t stepPerReading) {
    state().now = seconds;
    state().clockStep = stepPerReading;
}
void Recorder::traceCopies(bool on) { state().tracesCopies = on; }
void Recorder::traceClock(bool on) { state().tracesClock = on; }
void Recorder::forwardTo(Engine* engine) { state().engine = engine; }
void Recorder::watch(std::function<void(Trace&)> watcher) { state().watcher = std::move(watcher); }

const Trace& Recorder::trace() const { return state().trace; }
Trace Recorder::takeTrace() {
    if (state().watcher) state().watcher(state().trace);
    return std::exchange(state().trace, {});
}
const Trace& Recorder::misuses() const { return state().misuses; }
const std::vector<std::string>& Recorder::logFormats() const { return state().logFormats; }

uint64_t Recorder::callCount() const { return state().script.calls(); }
uint64_t Recorder::allocationCount() const { return state().script.allocations(); }
uint64_t Recorder::callsOf(std::string_view function) const { return state().script.callsOf(function); }
uint64_t Recorder::trapCount() const { return state().traps; }
uint64_t Recorder::clockReadings() const { return state().clockReadings; }
uint64_t Recorder::dfx(uint32_t counterId) const {
    const auto counter = state().dfx.find(counterId);
    return counter != state().dfx.end() ? counter->second : 0;
}
uint64_t Recorder::kpi(uint32_t kpiId) const {
    const auto indicator = state().kpi.find(kpiId);
    return indicator != state().kpi.end() ? indicator->second : 0;
}

size_t Recorder::liveObjects() const { return state().liveThings(Kind::object); }
size_t Recorder::liveIterators() const { return state().liveThings(Kind::iterator); }
size_t Recorder::liveBlocks() const { return state().blocks.size(); }
std::string Recorder::nameOf(uint64_t handle) const { return state().nameOf(handle); }

void Recorder::log(uint32_t level, uint32_t logId, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::string text = formatted(format, arguments);
    va_end(arguments);
    char head[40];
    std::snprintf(head, sizeof head, "log %u 0x%08X ", level, logId);
    state().logFormats.emplace_back(format != nullptr ? format : "");
    state().note(head + ('"' + text + '"'));
}

void* Recorder::alloc(uint64_t size) {
    const std::string line = "alloc " + std::to_string(size);
    void* block = state().script.allocationFails() ? nullptr : std::malloc(size != 0 ? size : 1);
    if (block == nullptr) {
        state().note(line + " -> null");
        return nullptr;
    }
    std::memset(block, 0xA5, size);
    const std::string name = "block" + std::to_string(++state().blocksMade);
    state().blocks[block] = name;
    state().note(line + " -> " + name);
    return block;
}

void Recorder::free(void* block) {
    if (block == nullptr) {
        state().note("free none");
        return;
    }
    const auto known = state().blocks.find(block);
    if (known == state().blocks.end()) {
        state().noteMisuse("free of an unknown block");
        state().note("free ?");
        return;
    }
    state().note("free " + known->second);
    state().blocks.erase(known);
    std::free(block);
}

uint64_t sweepCalls(uint32_t code, const std::function<void()>& prepare, const std::function<void()>& operate,
                    const std::function<void(uint64_t n)>& check) {
    Recorder& platform = Recorder::instance();
    for (uint64_t n = 1;; ++n) {
        prepare();
        platform.failCall(n, code);
        operate();
        if (!platform.faultHit()) return n - 1;
        check(n);
    }
}

uint64_t sweepAllocations(const std::function<void()>& prepare, const std::function<void()>& operate,
                          const std::function<void(uint64_t n)>& check) {
    Recorder& platform = Recorder::instance();
    for (uint64_t n = 1;; ++n) {
        prepare();
        platform.failAllocation(n);
        operate();
        if (!platform.faultHit()) return n - 1;
        check(n);
    }
}

}  // namespace mcast6::recording
