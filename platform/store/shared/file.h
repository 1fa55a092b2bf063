// The file of a shared store: finding it, making it, and refusing what is not one or cannot be trusted.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/store/shared/region.h"

namespace mcast6::store::shared {

struct FileOptions {
    std::string path;                     // a name without a slash stands for a file in /dev/shm; with one it is a path
    uint64_t limit = uint64_t{32} << 30;  // most bytes, for a new file; an old one keeps its own
    mode_t mode = 0600;                   // of a new file
    std::optional<gid_t> group;           // of a new file; none: the process's
    bool isReadOnly = false;
};

// The path that a name stands for, or what is wrong with it in 'reason' and nothing.
std::string pathOf(const std::string& name, std::string& reason);

// Locks the file while it is opened: makers and openers of one file come one after the other. A maker that died leaves
// a file that tells so, and the next one begins anew.
class OpenedFile {
public:
    OpenedFile() = default;
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;
    ~OpenedFile();

    // Opens or makes the file and maps it into the region. False, with the reason: it cannot be, or must not.
    bool open(const FileOptions& options, uint64_t fingerprint, Region& region, std::string& reason);

    // Whether the region is empty: the caller makes the tables, then calls complete().
    bool isNew() const { return isEmpty; }
    void complete(Region& region);

private:
    bool openFile(const FileOptions& options, std::string& reason);
    bool make(const FileOptions& options, uint64_t fingerprint, Region& region, std::string& reason);
    bool check(const FileOptions& options, const Header& head, uint64_t fingerprint, std::string& reason) const;

    std::string path;
    int file = -1;
    bool isMapped = false;  // the region has the file now
    bool isEmpty = false;
};

}  // namespace mcast6::store::shared
