#include "platform/engine/process_engine.h"

#include <mutex>
#include <string>
#include <string_view>

#include "platform/engine/answers.h"
#include "platform/schema/catalog.h"
#include "platform/store/registry.h"

namespace mcast6::engine {

std::atomic<Engine*> processEngine{nullptr};

namespace {

constexpr const char* kDefaultUri = "memory:";

// Guards opening and closing, the name of what is open, and the engine that waits for a store.
std::mutex opening;
Engine* parked = nullptr;
std::string& openUri() {
    static std::string* const uri = new std::string;  // as long-lived as the engine
    return *uri;
}

// How often a store has been opened: a batch is known by the opening that it was begun in.
std::atomic<uint64_t> openings{0};

void complain(std::string_view uri, std::string_view reason) {
    constexpr size_t kShown = 400;  // there is room for two
    const std::string_view shown = uri.substr(0, kShown);
    noteError("store '%.*s%s': %.*s", static_cast<int>(shown.size()), shown.data(),
              shown.size() < uri.size() ? "..." : "", static_cast<int>(reason.size()), reason.data());
}

// Under 'opening', with nothing open. Throws std::bad_alloc.
uint32_t openNow(const char* uri) {
    std::string reason;
    std::unique_ptr<store::Store> store = store::openStore(uri, schema::storeCatalog(), reason);
    if (store == nullptr) {
        complain(uri, reason);
        return MCAST6_DB_BAD_ARGUMENT;
    }
    std::string name(uri);
    if (parked != nullptr) {
        parked->attach(std::move(store));
    } else {
        parked = new Engine(std::move(store), schema::storeCatalog());
    }
    openUri().swap(name);
    openings.fetch_add(1, std::memory_order_relaxed);
    processEngine.store(parked, std::memory_order_release);
    parked = nullptr;
    return MCAST6_DB_OK;
}

// The calling thread's batch, known by its opening; 0 is none. A thread that ends with a batch open aborts it, as
// nobody else can.
class BatchMark {
public:
    ~BatchMark() {
        if (opened == 0) return;
        const std::lock_guard lock(opening);
        if (isStillOpen()) (void)openEngine()->abort();
    }

    bool isSet() const { return opened != 0; }
    bool isStillOpen() const { return openEngine() != nullptr && opened == openings.load(std::memory_order_relaxed); }
    void set() { opened = openings.load(std::memory_order_relaxed); }
    void clear() { opened = 0; }

private:
    uint64_t opened = 0;
};
thread_local BatchMark ownBatch;

uint32_t endBatch(uint32_t (Engine::*end)() noexcept) noexcept {
    if (!ownBatch.isSet()) return refused(MCAST6_DB_NO_BATCH);
    const bool isGone = !ownBatch.isStillOpen();
    ownBatch.clear();
    return isGone ? refused(MCAST6_DB_BATCH_GONE) : (openEngine()->*end)();
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
        Engine* const closed = processEngine.exchange(nullptr, std::memory_order_acq_rel);
        if (closed == nullptr) return uint32_t{MCAST6_DB_OK};
        closed->detach();
        parked = closed;
        openUri() = std::string();
        return uint32_t{MCAST6_DB_OK};
    });
}

uint32_t beginBatch() noexcept {
    Engine* const engine = engineOpenedIfNeeded();
    if (engine == nullptr) return refused(MCAST6_DB_NO_MEMORY);
    const uint32_t code = engine->begin();
    if (code == MCAST6_DB_OK) ownBatch.set();
    return code;
}

uint32_t commitBatch() noexcept { return endBatch(&Engine::commit); }

uint32_t abortBatch() noexcept { return endBatch(&Engine::abort); }

const char* lastError() noexcept { return lastErrorText(openEngine()); }

}  // namespace mcast6::engine
