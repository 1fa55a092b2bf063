// The exits of each kind of operation. A table gives one outcome for every member; see outcome.h.
#pragma once

#include "frame/outcome.h"

namespace mcast6 {

struct CreateOutcomes {
    Outcome created;
    Outcome failed;
};

struct ReadOutcomes {
    Outcome nullRecord;
    Outcome createFailed;
    Outcome found;
    Outcome absent;
    Outcome readFailed;
};

// A read with an object that the caller provides.
struct KeyedReadOutcomes {
    Outcome found;
    Outcome absent;
    Outcome readFailed;
};

// The exits before a keyed read: those of the steps that obtain its object.
struct GivenObjectOutcomes {
    Outcome nullRecord;
    Outcome createFailed;
};

struct WriteOutcomes {
    Outcome nullRecord;
    Outcome createFailed;
    Outcome setFailed;
    Outcome written;
    Outcome code13044;
    Outcome writeFailed;
};

// For a table whose write distinguishes a full table (110024) from other failures.
struct LimitedWriteOutcomes : WriteOutcomes {
    Outcome tableFull;
};

struct UpdateOutcomes {
    Outcome nullRecord;
    Outcome createFailed;
    Outcome setFailed;
    Outcome updated;
    Outcome code13044;
    Outcome updateFailed;
};

struct RemoveOutcomes {
    Outcome nullRecord;
    Outcome createFailed;
    Outcome removed;
    Outcome code13044;
    Outcome removeFailed;
};

// For a table whose removal does not treat 15005 as a failure.
struct RemoveOrAbsentOutcomes : RemoveOutcomes {
    Outcome code15005;
};

struct EntryOutcomes {
    Outcome nullParameter;
    Outcome ended;
    Outcome nextFailed;
    Outcome entry;
    Outcome vanished;
    Outcome readFailed;
};

// An iterator that the frame creates.
struct IterOutcomes {
    Outcome failed;
};

// An iterator with an outcome for each step of its creation.
struct BuildOutcomes {
    Outcome createFailed;
    Outcome rootIterFailed;
    Outcome propertyFailed;
    Outcome allocationFailed;
};

// As BuildOutcomes, into a handle that the caller provides.
struct BuildIntoOutcomes {
    Outcome createFailed;
    Outcome rootIterFailed;
    Outcome propertyFailed;
};

// A step of an iterator that reads by field.
struct NextItemOutcomes {
    Outcome nullHandle;
    Outcome ended;
    Outcome nextFailed;
    Outcome entry;
};

struct CountOutcomes {
    Outcome createFailed;
    Outcome countFailed;
};

struct CacheOutcomes {
    Outcome createFailed;
    Outcome resetFailed;
};

// A count by key whose result is the count itself.
struct MatchOutcomes {
    Outcome createFailed;
    Outcome absent;
    Outcome countFailed;
};

// The generated accessors of a table's engine objects.
struct Accessors {
    Mcast6DbCreateFunc create;
    void (*release)(Mcast6DbHandle object);
    uint32_t (*setAllFields)(Mcast6DbHandle object, const void* row, uint32_t length);
};

constexpr bool releasesEach(int times, const auto&... outcomes) {
    return ((!outcomes.isTested || outcomes.releases() == times) && ...);
}

}  // namespace mcast6
