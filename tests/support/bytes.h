// Rows and records as hexadecimal digits, two for each byte.
//
// The value of each sample byte shows its offset: byte n of a caller's record is n (beyond 255, counting down again
// from ff), byte n of a stored row is ff - n. So "34353637" in a written row came from offset 0x34 of the record.
#pragma once

#include <cstring>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/platform/recorder.h"
#include "tests/support/operation_sweep.h"

namespace mcast6::tests {

template <class Record>
void fillWithOffsets(Record& record) {
    uint8_t bytes[sizeof(Record)];
    for (size_t n = 0; n < sizeof bytes; ++n) bytes[n] = static_cast<uint8_t>(n < 256 ? n : 255 - n);
    std::memcpy(&record, bytes, sizeof bytes);
}

inline std::string storedRow(size_t size) {
    recording::Bytes bytes(size);
    for (size_t n = 0; n < size; ++n) bytes[n] = static_cast<uint8_t>(255 - n);
    return recording::hex(bytes);
}

// Returns the row with each "__" (a byte of no field) replaced.
inline std::string withGaps(std::string_view row, std::string_view twoDigits) {
    std::string replaced;
    for (size_t at = 0; at < row.size(); ++at) {
        if (row[at] == ' ') continue;
        replaced += row[at] == '_' ? std::string(twoDigits) : std::string(1, row[at]);
        if (row[at] == '_') ++at;
    }
    return replaced;
}

struct Piece {
    size_t offset;
    std::string_view hexDigits;
};

template <class Record>
void put(Record& record, const std::vector<Piece>& pieces) {
    for (const Piece& piece : pieces) {
        const recording::Bytes bytes = recording::unhex(piece.hexDigits);
        if (piece.offset + bytes.size() > sizeof record) throw std::out_of_range("beyond the record");
        std::memcpy(reinterpret_cast<uint8_t*>(&record) + piece.offset, bytes.data(), bytes.size());
    }
}

// The key as the recorder prints it.
inline std::string keyOf(std::string_view keyWord, std::string_view key) {
    return "key=" + std::string(keyWord) + ":" + digits(key);
}

}  // namespace mcast6::tests
