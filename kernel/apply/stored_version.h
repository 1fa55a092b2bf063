// Whether the tables hold anything of a newer smooth version: then what is brought under an older one would look stale.
#pragma once

#include <cstdint>
#include <optional>

namespace mcast6::kernel {

struct StoredVersion {
    const char* databaseName;
    uint32_t smoothVersion;
};

// The first record of the layer-3 tables found in the VR, or of the layer-2 tables, that has a higher version than
// this. Throws TableError.
std::optional<StoredVersion> newerRoutes(uint32_t vrId, uint32_t smoothVersion);
std::optional<StoredVersion> newerBridges(uint32_t smoothVersion);

}  // namespace mcast6::kernel
