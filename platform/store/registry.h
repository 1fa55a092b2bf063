// The kinds of store, by the scheme of their URIs.
//
// A kind is compiled into the platform's library, or lies beside it as a module that is loaded when a URI asks for it:
// mcast6db/mcast6_store_<scheme>.so in the directory of that library, or in the one that the environment variable
// MCAST6_STORE_DIR names (ignored in programs that run with raised privileges). A module stays loaded.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/schema/schema.h"
#include "platform/store/store.h"
#include "platform/store/uri.h"

namespace mcast6::store {

struct StoreKind {
    std::string_view scheme;

    // Opens the store that 'uri' names, for the tables of a catalog that outlives it. Null when that fails, with the
    // reason, which need not repeat the URI. May throw std::bad_alloc.
    std::unique_ptr<Store> (*open)(const Uri& uri, std::span<const schema::Table> tables, std::string& reason);
};

// The version of the store interface: a module for another one is refused. Advances with every change of the classes
// and structures that a module and the platform share.
inline constexpr uint32_t kStoreInterface = 1;

// What a module exports, as 'mcast6_store_module' with C linkage.
struct StoreModule {
    uint32_t interface;  // kStoreInterface
    const StoreKind& (*kind)();
};
inline constexpr const char* kModuleSymbol = "mcast6_store_module";

// The kinds that were compiled in; written by the build.
std::span<const StoreKind* const> compiledIn();

// Opens the store that 'uri' names. Null when that fails, with the reason. May throw std::bad_alloc.
std::unique_ptr<Store> openStore(std::string_view uri, std::span<const schema::Table> tables, std::string& reason);

}  // namespace mcast6::store
