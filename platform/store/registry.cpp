#include "platform/store/registry.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>

namespace mcast6::store {
namespace {

// A scheme becomes part of a file's name, so it is plain: lower-case letters and digits.
bool isPlain(std::string_view scheme) {
    constexpr size_t kLongest = 32;
    return scheme.size() <= kLongest && std::all_of(scheme.begin(), scheme.end(), [](char c) {
               return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
           });
}

// Where modules lie, without a slash at the end. Empty when that is unknown.
std::string moduleDirectory() {
    if (const char* const named = secure_getenv("MCAST6_STORE_DIR"); named != nullptr && *named != '\0') return named;
    Dl_info self{};
    // The address of something in this library finds its file.
    if (dladdr(reinterpret_cast<const void*>(&openStore), &self) == 0 || self.dli_fname == nullptr) return {};
    const std::string_view file = self.dli_fname;
    const size_t slash = file.rfind('/');
    return std::string(slash == std::string_view::npos ? "." : file.substr(0, slash)) + "/mcast6db";
}

std::string knownKinds() {
    std::string list;
    for (const StoreKind* const kind : compiledIn()) list.append(list.empty() ? "" : ", ").append(kind->scheme) += ':';
    return list;
}

const StoreKind* loadKind(const std::string& scheme, std::string& reason) {
    const std::string directory = moduleDirectory();
    const std::string file = directory + "/mcast6_store_" + scheme + ".so";
    void* const module = isPlain(scheme) && !directory.empty() ? dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL) : nullptr;
    if (module == nullptr) {
        const char* const why = isPlain(scheme) ? dlerror() : nullptr;
        reason = "unknown kind; known kinds are " + knownKinds();
        if (why != nullptr) reason.append("; no module either: ").append(why);
        return nullptr;
    }
    const auto* const description = static_cast<const StoreModule*>(dlsym(module, kModuleSymbol));
    if (description == nullptr) {
        reason = file + " is not a store module: it has no symbol " + kModuleSymbol;
        return nullptr;
    }
    if (description->interface != kStoreInterface) {
        reason = file + " was built for version " + std::to_string(description->interface) +
                 " of the store interface, this library has version " + std::to_string(kStoreInterface);
        return nullptr;
    }
    const StoreKind& kind = description->kind();
    if (kind.scheme == scheme) return &kind;
    reason = file + " holds another kind of store, " + std::string(kind.scheme) + ":";
    return nullptr;
}

}  // namespace

std::unique_ptr<Store> openStore(std::string_view uri, std::span<const schema::Table> tables, std::string& reason) {
    Uri parsed;
    if (!parseUri(uri, parsed, reason)) {
        reason += "; known kinds are " + knownKinds();
        return nullptr;
    }
    for (const StoreKind* const kind : compiledIn()) {
        if (kind->scheme == parsed.scheme) return kind->open(parsed, tables, reason);
    }
    const StoreKind* const loaded = loadKind(parsed.scheme, reason);
    return loaded != nullptr ? loaded->open(parsed, tables, reason) : nullptr;
}

}  // namespace mcast6::store
