// The script of the recording platform: which code a call returns, and the next outputs.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mcast6::recording {

// Every function of the contract that a script may name.
bool isContractFunction(std::string_view name);

// The longest length that a byte getter can report.
inline constexpr uint32_t kMostAnnounced = 256;

class Script {
public:
    void answer(std::string_view function, uint32_t code) { waiting_[checked(function)].push_back(code); }
    void answerAlways(std::string_view function, uint32_t code) { always_[checked(function)] = code; }
    void failCall(uint64_t n, uint64_t last, uint32_t code);
    void failAllocation(uint64_t n);
    void announceLength(std::string_view getter, uint32_t length);

    // The scripted answer of the current call, none if the script leaves it to the engine. 'counted': a call that
    // returns an engine code, which failCall counts.
    std::optional<uint32_t> answerTo(const std::string& function, bool counted);
    bool allocationFails();
    uint32_t lengthOf(const std::string& getter, uint32_t width) const;

    bool faultHit() const { return faultHit_; }
    size_t pending() const;
    uint64_t calls() const { return calls_; }
    uint64_t allocations() const { return allocations_; }
    uint64_t callsOf(std::string_view function) const;

    std::deque<std::vector<uint8_t>> reads;
    std::deque<std::vector<uint8_t>> steps;
    std::deque<uint64_t> counts;
    std::deque<uint32_t> globalVersions;

private:
    static std::string checked(std::string_view function);

    std::map<std::string, std::deque<uint32_t>> waiting_;
    std::map<std::string, uint32_t> always_;
    std::map<std::string, uint32_t> lengths_;
    std::map<std::string, uint64_t> made_;
    uint64_t firstFault_ = 0;  // 0 is none
    uint64_t lastFault_ = 0;
    uint32_t faultCode_ = 0;
    uint64_t failingAllocation_ = 0;  // 0 is none
    bool faultHit_ = false;
    uint64_t calls_ = 0;
    uint64_t allocations_ = 0;
};

}  // namespace mcast6::recording
