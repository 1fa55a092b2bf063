// 'shm:', the kind of store: its URI and options. See README.md.
#include <grp.h>

#include <charconv>
#include <cstring>

#include "platform/store/registry.h"
#include "platform/store/shared/shared_store.h"

namespace mcast6::store::shared {

const StoreKind& storeKind();

namespace {

constexpr uint64_t kSmallest = uint64_t{1} << 20;
constexpr uint64_t kLargest = uint64_t{32} << 30;

bool parseMode(const std::string& text, mode_t& mode) {
    unsigned bits = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bits, 8);
    mode = bits;
    return error == std::errc() && end == text.data() + text.size() && bits <= 0777;
}

std::unique_ptr<Store> open(const Uri& uri, std::span<const schema::Table> tables, std::string& reason) {
    OptionReader options(uri);
    FileOptions file;
    file.path = uri.path;
    file.limit = options.size("size", file.limit, kSmallest, kLargest);
    file.isReadOnly = options.flag("readonly");
    const std::string mode = options.text("mode", "0600");
    const std::string group = options.text("group", "");
    if (!options.finish(reason)) return nullptr;
    if (!parseMode(mode, file.mode)) {
        reason = "option 'mode': '" + mode + "' is not an octal number from 0 to 0777";
        return nullptr;
    }
    if (!group.empty()) {
        const ::group* const found = getgrnam(group.c_str());
        if (found == nullptr) {
            reason = "option 'group': there is no group '" + group + "'";
            return nullptr;
        }
        file.group = found->gr_gid;
    }
    return SharedStore::open(file, tables, reason);
}

constexpr StoreKind kShared{"shm", open};

}  // namespace

const StoreKind& storeKind() { return kShared; }

}  // namespace mcast6::store::shared
