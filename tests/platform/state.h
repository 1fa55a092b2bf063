// The state of the recording platform between calls. The calls are in calls.cpp and host.cpp.
#pragma once

#include <cstdarg>
#include <functional>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/schema/catalog.h"
#include "tests/platform/recorder.h"
#include "tests/platform/script.h"

namespace mcast6::recording {

enum class Kind : uint8_t { object, iterator };

struct Thing {
    Kind kind;
    bool live;
    bool isCached;  // iterators only
    uint32_t table;
    uint32_t keyWord;  // cached iterators: the key word of their resets
    uint64_t owner;    // iterators: the object they were created on
    uint64_t inner;    // the handle of the engine behind
    std::string name;
    Bytes row;  // objects: the row that was read or stepped to, for getters
};

struct State {
    Script script;
    Trace trace;
    Trace misuses;
    std::vector<std::string> logFormats;
    std::unordered_map<uint64_t, Thing> things;
    std::unordered_map<void*, std::string> blocks;
    std::map<uint32_t, uint64_t> dfx;
    std::map<uint32_t, uint64_t> kpi;
    uint64_t objectsMade = 0;
    uint64_t iteratorsMade = 0;
    uint64_t blocksMade = 0;
    uint64_t traps = 0;
    uint64_t clockReadings = 0;
    int64_t now = 1'700'000'000;
    int64_t clockStep = 0;
    bool tracesCopies = false;
    bool tracesClock = false;
    Engine* engine = nullptr;
    std::function<void(Trace&)> watcher;

    void note(std::string line) {
        if (watcher) watcher(trace);
        trace.push_back(std::move(line));
    }
    void noteMisuse(const std::string& what);

    uint64_t addObject(uint32_t table, uint64_t inner);
    uint64_t addIterator(uint64_t owner, uint64_t inner);
    // Ends the iterators of an object; cached ones only together with the object.
    void dropIterators(uint64_t owner, bool cachedToo);
    void release(uint64_t object);

    // The live object or iterator of a handle. Null if there is none, which is recorded as misuse except for handle 0.
    Thing* find(uint64_t handle, Kind kind, const char* user);
    Thing* findOf(uint32_t table, uint64_t handle, const char* user);
    // The text of a handle, valid or not.
    std::string nameOf(uint64_t handle) const;
    size_t liveThings(Kind kind) const;
};

State& state();

const schema::Table& tableOf(uint32_t table);
std::string formatted(const char* format, va_list arguments);
std::string hexOf(const void* bytes, size_t length);

}  // namespace mcast6::recording
