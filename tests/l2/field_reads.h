// Reads by field: how each successful getter changes a record.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "tests/platform/recorder.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests {

template <class Record>
struct FieldRead {
    std::string field;  // its name in the database
    void (*readInto)(Record& record);
};

// The recorder's line of a successful getter on obj1.
inline std::string getterLine(const std::string& table, const std::string& field) {
    return "get " + table + "." + field + " obj1";
}

// Changes a record as the successful getters of the trace did.
template <class Record, class FieldReads>
void readWhatWasGot(Record& record, const FieldReads& reads, const std::string& table, const Trace& trace) {
    for (const FieldRead<Record>& read : reads) {
        const auto got = std::find(trace.begin(), trace.end(), getterLine(table, read.field));
        if (got != trace.end()) read.readInto(record);
    }
}

template <size_t kSize>
void setBytes(uint8_t (&field)[kSize], std::string_view hexDigits) {
    const recording::Bytes bytes = recording::unhex(hexDigits);
    std::memcpy(field, bytes.data(), std::min(bytes.size(), kSize));
}

}  // namespace mcast6::tests
