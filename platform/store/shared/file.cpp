#include "platform/store/shared/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstring>
#include <random>

#include "platform/store/memory/key_shape.h"

namespace mcast6::store::shared {
namespace {

constexpr const char* kDirectory = "/dev/shm/";
constexpr uint64_t kLeastLimit = kHeapAt + (uint64_t{4} << 20);

std::string because(const std::string& path, const std::string& what) { return path + ": " + what; }

std::string because(const std::string& path, const std::string& what, int error) {
    return path + ": " + what + ": " + std::strerror(error);
}

bool lockWhole(int file, int command, short kind) {
    struct flock whole {};
    whole.l_type = kind;
    whole.l_whence = SEEK_SET;
    int result = 0;
    do result = fcntl(file, command, &whole);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

// This start of the machine; empty where the system does not tell.
std::array<char, 40> bootId() {
    std::array<char, 40> id{};
    const int file = open("/proc/sys/kernel/random/boot_id", O_RDONLY | O_CLOEXEC);
    if (file < 0) return id;
    const ssize_t length = read(file, id.data(), id.size() - 1);
    (void)close(file);
    if (length < 0) id[0] = '\0';
    return id;
}

Header describing(uint64_t fingerprint) {
    Header head{};
    head.magic = kCreating;
    head.format = kFormat;
    head.mutexSize = sizeof(pthread_mutex_t);
    head.pointerSize = sizeof(void*);
    head.fingerprint = fingerprint;
    head.bootId = bootId();
    return head;
}

}  // namespace

std::string pathOf(const std::string& name, std::string& reason) {
    if (name.find('/') != std::string::npos) return name;
    const bool isPlain = !name.empty() && name[0] != '.' && std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '.' || c == '_' || c == '-';
    });
    if (!isPlain || name.size() > 200) {
        reason =
            "\"" + name + "\" is no name of a shared store: use letters, digits, '.', '_' and '-', or a path with '/'";
        return {};
    }
    return std::string(kDirectory) + "mcast6db." + name;
}

OpenedFile::~OpenedFile() {
    if (file < 0) return;
    (void)lockWhole(file, F_OFD_SETLK, F_UNLCK);
    if (!isMapped) (void)close(file);
}

bool OpenedFile::openFile(const FileOptions& options, std::string& reason) {
    path = pathOf(options.path, reason);
    if (path.empty()) return false;
    // Somebody may remove the file between its opening and its locking.
    for (int attempt = 0; attempt < 100; ++attempt) {
        const int flags = options.isReadOnly ? O_RDONLY : O_RDWR | O_CREAT;
        file = ::open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, options.mode);
        if (file < 0) {
            const int error = errno;
            reason = because(path, options.isReadOnly ? "cannot be opened for reading" : "cannot be opened", error);
            if (error == EACCES && !options.isReadOnly) reason += "; with read permission alone, open it ?readonly";
            return false;
        }
        struct stat opened;
        struct stat named;
        if (fstat(file, &opened) != 0 || !S_ISREG(opened.st_mode)) {
            reason = because(path, "is no regular file");
            return false;
        }
        if (!lockWhole(file, F_OFD_SETLKW, options.isReadOnly ? F_RDLCK : F_WRLCK)) {
            reason = because(path, "cannot be locked", errno);
            return false;
        }
        if (stat(path.c_str(), &named) == 0 && named.st_dev == opened.st_dev && named.st_ino == opened.st_ino)
            return true;
        (void)close(file);
        file = -1;
    }
    reason = because(path, "is being removed again and again");
    return false;
}

bool OpenedFile::open(const FileOptions& options, uint64_t fingerprint, Region& region, std::string& reason) {
    if (!openFile(options, reason)) return false;
    Header head{};
    const ssize_t length = pread(file, &head, sizeof head, 0);
    if (length < 0) {
        reason = because(path, "cannot be read", errno);
        return false;
    }
    const bool isUnfinished = length == 0 || (length >= 8 && head.magic == kCreating);
    if (isUnfinished && !options.isReadOnly) return make(options, fingerprint, region, reason);
    if (isUnfinished) {
        reason =
            because(path, "is not finished: whoever was making it has died, and whoever may write can make it anew");
        return false;
    }
    if (length < static_cast<ssize_t>(sizeof head)) head = Header{};
    if (!check(options, head, fingerprint, reason)) return false;
    if (!region.mapFile(file, head.limit, !options.isReadOnly)) {
        reason =
            because(path, "cannot be mapped: " + std::to_string(head.limit >> 20) + " MiB of address space", errno);
        return false;
    }
    isMapped = true;
    return true;
}

bool OpenedFile::check(const FileOptions& /*options*/, const Header& head, uint64_t fingerprint,
                       std::string& reason) const {
    const auto refuse = [&](const std::string& why) {
        reason = because(path, why);
        return false;
    };
    if (head.magic == __builtin_bswap64(kComplete)) return refuse("was made on a machine of another byte order");
    if (head.magic != kComplete) return refuse("is not a shared store");
    if (head.format != kFormat) {
        return refuse("has format " + std::to_string(head.format) + ", this program reads format " +
                      std::to_string(kFormat) + ": remove the file, or use the program that made it");
    }
    const Header own = describing(fingerprint);
    if (head.mutexSize != own.mutexSize || head.pointerSize != own.pointerSize) {
        return refuse("was made by a program of another C library or word size");
    }
    if (head.fingerprint != own.fingerprint)
        return refuse("has other tables than this program: remove the file, or use its own");
    if (head.bootId != own.bootId) {
        return refuse("was left behind by an earlier start of this machine and may be damaged: remove it");
    }
    struct stat status;
    const bool isWhole =
        fstat(file, &status) == 0 && static_cast<uint64_t>(status.st_size) >= kHeapAt + head.heapBacked;
    if (!isWhole || head.limit < kLeastLimit || head.limit > kHeapAt + kMostHeap) {
        return refuse("is damaged: shorter than it says, or of an impossible size");
    }
    return true;
}

bool OpenedFile::make(const FileOptions& options, uint64_t fingerprint, Region& region, std::string& reason) {
    const Header head = describing(fingerprint);
    // From here on the file tells that it is not finished.
    if (pwrite(file, &head, sizeof head, 0) != static_cast<ssize_t>(sizeof head) || ftruncate(file, sizeof head) != 0) {
        reason = because(path, "cannot be written", errno);
        return false;
    }
    if (options.group && fchown(file, static_cast<uid_t>(-1), *options.group) != 0) {
        reason = because(path, "cannot be given to group " + std::to_string(*options.group), errno);
        return false;
    }
    // The umask is for files that nobody said anything of.
    if (fchmod(file, options.mode) != 0) {
        reason = because(path, "cannot be given its mode", errno);
        return false;
    }
    uint64_t limit = std::clamp(options.limit, kLeastLimit, kHeapAt + kMostHeap) / 4096 * 4096;
    // A process whose address space is limited makes a smaller one.
    while (!region.mapFile(file, limit, true)) {
        if (errno != ENOMEM || limit / 2 < kLeastLimit) {
            reason = because(path, "cannot be mapped: " + std::to_string(limit >> 20) + " MiB of address space", errno);
            return false;
        }
        limit = limit / 2 / 4096 * 4096;
    }
    isMapped = true;
    if (!region.format(limit)) {
        const int error = errno;
        reason = because(path, "no memory", error);
        if (error == EOPNOTSUPP)
            reason = because(path, "lies in a file system that cannot reserve space; use one in memory");
        return false;
    }
    region.setSecrets(memory::HashSecrets::random());
    isEmpty = true;
    return true;
}

void OpenedFile::complete(Region& region) { region.setComplete(); }

}  // namespace mcast6::store::shared
