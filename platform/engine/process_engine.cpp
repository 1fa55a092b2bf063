#include "platform/engine/process_engine.h"

#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/engine/answers.h"
#include "platform/schema/catalog.h"
#include "platform/store/memory/memory_store.h"

namespace mcast6::engine {

std::atomic<Engine*> processEngine{nullptr};

namespace {

constexpr std::string_view kDefaultUri = "memory:";

// A kind of store: the part of a URI before the colon, and what opens it. 'rest' is what follows the colon; a store
// that cannot be opened is null, with the reason in 'reason'.
struct Scheme {
    std::string_view name;
    std::unique_ptr<store::Store> (*open)(std::string_view rest, std::string& reason);
};

std::unique_ptr<store::Store> openMemory(std::string_view rest, std::string& reason) {
    if (!rest.empty()) {
        reason = "nothing may follow 'memory:'";
        return nullptr;
    }
    return store::makeMemoryStore(schema::catalog());
}

constexpr Scheme kSchemes[] = {
    {"memory", openMemory},
};

// Guards opening and closing, and the name of what is open.
std::mutex opening;
std::string& openUri() {
    static std::string* const uri = new std::string;  // as long-lived as the engine
    return *uri;
}

// A fixed buffer, so that reporting a failure cannot fail.
thread_local char errorText[1024] = "";
constexpr size_t kShownUri = 400;  // the text has room for two

void complain(std::string_view uri, std::string_view reason) {
    const std::string_view shown = uri.substr(0, kShownUri);
    std::snprintf(errorText, sizeof errorText, "store '%.*s%s': %.*s", static_cast<int>(shown.size()), shown.data(),
                  shown.size() < uri.size() ? "..." : "", static_cast<int>(reason.size()), reason.data());
}

std::string knownSchemes() {
    std::string list;
    for (const Scheme& scheme : kSchemes) list.append(list.empty() ? "" : ", ").append(scheme.name).append(":");
    return list;
}

std::unique_ptr<store::Store> storeNamed(std::string_view uri, std::string& reason) {
    const size_t colon = uri.find(':');
    if (colon == std::string_view::npos) {
        reason = "not a URI, there is no colon; known kinds are " + knownSchemes();
        return nullptr;
    }
    for (const Scheme& scheme : kSchemes) {
        if (scheme.name == uri.substr(0, colon)) return scheme.open(uri.substr(colon + 1), reason);
    }
    reason = "unknown kind; known kinds are " + knownSchemes();
    return nullptr;
}

// Under 'opening', with nothing open. Throws std::bad_alloc.
uint32_t openNow(std::string_view uri) {
    std::string reason;
    std::unique_ptr<store::Store> store = storeNamed(uri, reason);
    if (store == nullptr) {
        complain(uri, reason);
        return MCAST6_DB_BAD_ARGUMENT;
    }
    std::string name(uri);
    std::unique_ptr<Engine> engine = std::make_unique<Engine>(std::move(store), schema::catalog());
    openUri().swap(name);
    processEngine.store(engine.release(), std::memory_order_release);
    return MCAST6_DB_OK;
}

}  // namespace

uint32_t openStore(const char* uri) noexcept {
    if (uri == nullptr) {
        complain("", "the URI is null");
        return MCAST6_DB_BAD_ARGUMENT;
    }
    const uint32_t code = guarded([&] {
        const std::lock_guard lock(opening);
        if (openEngine() != nullptr) {
            complain(uri, "'" + openUri() + "' is open already");
            return uint32_t{MCAST6_DB_BAD_OPERATION};
        }
        return openNow(uri);
    });
    if (code == MCAST6_DB_NO_MEMORY) complain(uri, "out of memory");
    if (code == MCAST6_DB_STORE_FAILED) complain(uri, "the store failed");
    return code;
}

Engine* engineOpenedIfNeeded() noexcept {
    if (Engine* engine = openEngine(); engine != nullptr) return engine;
    guarded([] {
        const std::lock_guard lock(opening);
        return openEngine() != nullptr ? uint32_t{MCAST6_DB_OK} : openNow(kDefaultUri);
    });
    return openEngine();
}

void closeStore() noexcept {
    guarded([] {
        const std::lock_guard lock(opening);
        delete processEngine.exchange(nullptr, std::memory_order_acq_rel);
        openUri() = std::string();
        return uint32_t{MCAST6_DB_OK};
    });
}

const char* lastError() noexcept { return errorText; }

}  // namespace mcast6::engine
