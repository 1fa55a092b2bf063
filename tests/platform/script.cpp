#include "tests/platform/script.h"

#include <set>
#include <stdexcept>

#include "platform/schema/catalog.h"

namespace mcast6::recording {

namespace {

std::set<std::string, std::less<>> contractFunctions() {
    std::set<std::string, std::less<>> names{
        "db_write_obj",
        "db_update_obj",
        "db_remove_obj",
        "db_read_obj_with_buf",
        "db_create_root_iter",
        "db_set_root_iterator_property",
        "db_root_iterator_next",
        "db_get_table_record_count",
        "db_get_table_record_count_by_key",
        "db_create_stmt",
        "db_append_stmt_condition",
        "db_create_root_iterator_by_filter",
        "db_create_cache_root_iter",
        "db_reset_cache_root_iter",
        "MCAST_DB_ReadGlbVersion",
        "MCAST_DB_UpdateGlbVersion",
        "MCAST_DB_WriteGlbVersion",
        "memcpy_s",
    };
    for (const schema::Table& table : schema::catalog()) {
        const std::string name(table.name);
        names.insert("db_create_" + name + "_obj");
        names.insert("db_reset_" + name + "_object");
        names.insert("db_create_" + name + "_cache_object");
        names.insert("db_reset_" + name + "_cache_object");
        names.insert("db_set_" + name + "_all_fields");
        for (const schema::Field& field : table.fields) {
            names.insert("db_set_" + name + "_" + std::string(field.name));
            names.insert("db_get_" + name + "_" + std::string(field.name));
        }
    }
    return names;
}

}  // namespace

bool isContractFunction(std::string_view name) {
    static const std::set<std::string, std::less<>> names = contractFunctions();
    return names.contains(name);
}

std::string Script::checked(std::string_view function) {
    std::string name(function);
    if (!isContractFunction(name)) throw std::invalid_argument("no function of the contract answers a code: " + name);
    return name;
}

void Script::failCall(uint64_t n, uint64_t last, uint32_t code) {
    firstFault_ = n;
    lastFault_ = last;
    faultCode_ = code;
    calls_ = 0;
    faultHit_ = false;
}

void Script::failAllocation(uint64_t n) {
    failingAllocation_ = n;
    allocations_ = 0;
    faultHit_ = false;
}

void Script::announceLength(std::string_view getter, uint32_t length) {
    if (length > kMostAnnounced)
        throw std::invalid_argument("announced length above " + std::to_string(kMostAnnounced));
    lengths_[checked(getter)] = length;
}

std::optional<uint32_t> Script::answerTo(const std::string& function, bool counted) {
    ++made_[function];
    if (counted) {
        ++calls_;
        if (firstFault_ != 0 && calls_ >= firstFault_ && calls_ <= lastFault_) {
            faultHit_ = true;
            return faultCode_;
        }
    }
    if (const auto queue = waiting_.find(function); queue != waiting_.end() && !queue->second.empty()) {
        const uint32_t code = queue->second.front();
        queue->second.pop_front();
        return code;
    }
    if (const auto code = always_.find(function); code != always_.end()) return code->second;
    return std::nullopt;
}

bool Script::allocationFails() {
    ++allocations_;
    if (allocations_ != failingAllocation_) return false;
    faultHit_ = true;
    return true;
}

uint32_t Script::lengthOf(const std::string& getter, uint32_t width) const {
    const auto length = lengths_.find(getter);
    return length != lengths_.end() ? length->second : width;
}

size_t Script::pending() const {
    size_t count = 0;
    for (const auto& [function, codes] : waiting_) count += codes.size();
    return count;
}

uint64_t Script::callsOf(std::string_view function) const {
    const auto made = made_.find(checked(function));
    return made != made_.end() ? made->second : 0;
}

}  // namespace mcast6::recording
