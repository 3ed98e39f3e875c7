// Goes between a program and the system (LD_PRELOAD): counts the calls that concern the files below
// a directory, writes them down, and makes one of them go wrong. The environment says what:
//
//   FAULTS_DIRECTORY  the directory
//   FAULTS_LOG        where the calls are written down, one in a line
//   FAULTS_AT         the number of the call that goes wrong, from 1
//   FAULTS_KIND       how: "EIO", "ENOSPC", "kill" (the program ends before the call), "tear" (a
//                     write ends the program in the middle), "short" (a write takes half of the
//                     bytes), "fill" (so it does, and the disk is full then) or "blind" (from there
//                     on nobody is told what there is)
//   FAULTS_PLAIN      when it is set, the file system knows neither links nor files without a name
//
// Nothing is counted before the program calls faultsBegin().

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

namespace
{
constexpr int killed = 9;

struct Settings {
    std::string directory, kind;
    int at = 0;
    bool isPlain = false;
    int log = -1;
};

std::string variable(const char *name)
{
    const char *value = getenv(name); // NOLINT(concurrency-mt-unsafe): nobody sets one
    return value ? value : "";
}

const Settings &settings()
{
    static const Settings settings = [] {
        Settings read{variable("FAULTS_DIRECTORY"), variable("FAULTS_KIND"),
                      int(std::strtol(variable("FAULTS_AT").c_str(), nullptr, 10)),
                      !variable("FAULTS_PLAIN").empty()};
        if (const std::string log = variable("FAULTS_LOG"); !log.empty())
            read.log = int(syscall(SYS_openat, AT_FDCWD, log.c_str(),
                                   O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
        return read;
    }();
    return settings;
}

std::atomic_bool hasBegun = false;
std::atomic_int calls = 0;

constexpr size_t longestPath = 600;
std::array<std::array<char, longestPath>, 1024> openPaths{}; // by descriptor; empty for the others

bool isBelow(const char *path)
{
    const std::string &directory = settings().directory;
    return path && !directory.empty() && strncmp(path, directory.c_str(), directory.size()) == 0;
}

const char *pathOf(int descriptor)
{
    const bool isKnown = descriptor >= 0 && size_t(descriptor) < openPaths.size();
    return isKnown && openPaths[size_t(descriptor)][0] ? openPaths[size_t(descriptor)].data()
                                                       : nullptr;
}

void remember(int descriptor, const char *path)
{
    if (descriptor >= 0 && size_t(descriptor) < openPaths.size())
        snprintf(openPaths[size_t(descriptor)].data(), longestPath, "%s", path);
}

enum class Verdict { Go, Refuse, Tear, Shorten };

std::atomic_bool isFull = false;

/// Counts a call and says what becomes of it.
Verdict judge(const char *name, const char *path, const char *more = "")
{
    if (!hasBegun)
        return Verdict::Go;
    const int number = ++calls;
    std::array<char, 2 * longestPath> line{};
    const int length = snprintf(line.data(), line.size(), "%s\t%s\t%s\n", name, path, more);
    syscall(SYS_write, settings().log, line.data(), size_t(length));
    const bool isWrite = strcmp(name, "write") == 0;
    if (isFull && isWrite) {
        errno = ENOSPC;
        return Verdict::Refuse;
    }
    const std::string &kind = settings().kind;
    const bool isLook = strcmp(name, "look") == 0;
    if (kind == "blind" && isLook && number >= settings().at) {
        errno = EACCES;
        return Verdict::Refuse;
    }
    if (number != settings().at || kind == "blind")
        return Verdict::Go;
    if (kind == "kill")
        _exit(killed);
    if (kind == "tear")
        return isWrite ? Verdict::Tear : Verdict::Go;
    if (kind == "short" || kind == "fill") {
        isFull = isWrite && kind == "fill";
        return isWrite ? Verdict::Shorten : Verdict::Go;
    }
    errno = kind == "ENOSPC" ? ENOSPC : EIO;
    return Verdict::Refuse;
}

int openFile(int directory, const char *path, int flags, mode_t mode)
{
    const bool isCounted = isBelow(path);
    if (isCounted) {
        const bool isTemporary = (flags & O_TMPFILE) == O_TMPFILE;
        const bool isWritten = (flags & O_ACCMODE) != O_RDONLY;
        if (judge("open", path,
                  isTemporary ? "temporary"
                  : isWritten ? "write"
                              : "read") != Verdict::Go)
            return -1;
        if (isTemporary && hasBegun && settings().isPlain) {
            errno = EOPNOTSUPP;
            return -1;
        }
    }
    const int descriptor = int(syscall(SYS_openat, directory, path, flags, mode));
    if (isCounted && descriptor >= 0)
        remember(descriptor, path);
    return descriptor;
}

mode_t modeOf(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}
} // namespace

#define FAULTS_EXPORT extern "C" __attribute__((visibility("default")))

FAULTS_EXPORT void faultsBegin()
{
    hasBegun = true;
}

#define FAULTS_OPEN(name)                                                                          \
    FAULTS_EXPORT int name(const char *path, int flags, ...)                                       \
    {                                                                                              \
        va_list arguments;                                                                         \
        va_start(arguments, flags);                                                                \
        const mode_t mode = modeOf(flags, arguments);                                              \
        va_end(arguments);                                                                         \
        return openFile(AT_FDCWD, path, flags, mode);                                              \
    }
FAULTS_OPEN(open)
FAULTS_OPEN(open64)
#undef FAULTS_OPEN

#define FAULTS_OPENAT(name)                                                                        \
    FAULTS_EXPORT int name(int directory, const char *path, int flags, ...)                        \
    {                                                                                              \
        va_list arguments;                                                                         \
        va_start(arguments, flags);                                                                \
        const mode_t mode = modeOf(flags, arguments);                                              \
        va_end(arguments);                                                                         \
        return openFile(directory, path, flags, mode);                                             \
    }
FAULTS_OPENAT(openat)
FAULTS_OPENAT(openat64)
#undef FAULTS_OPENAT

FAULTS_EXPORT ssize_t read(int descriptor, void *bytes, size_t size)
{
    if (const char *path = pathOf(descriptor); path && judge("read", path) != Verdict::Go)
        return -1;
    return syscall(SYS_read, descriptor, bytes, size);
}

namespace
{
/// Anything that puts bytes into a file; `put` is given how many of them.
template <typename Put>
ssize_t writeTo(int descriptor, size_t size, const Put &put)
{
    if (const char *path = pathOf(descriptor)) {
        switch (judge("write", path)) {
        case Verdict::Go:
            break;
        case Verdict::Refuse:
            return -1;
        case Verdict::Tear:
            put(size / 2);
            _exit(killed);
        case Verdict::Shorten:
            return put(size / 2);
        }
    }
    return put(size);
}
} // namespace

FAULTS_EXPORT ssize_t write(int descriptor, const void *bytes, size_t size)
{
    return writeTo(descriptor, size,
                   [=](size_t part) { return syscall(SYS_write, descriptor, bytes, part); });
}

FAULTS_EXPORT ssize_t pwrite(int descriptor, const void *bytes, size_t size, off_t place)
{
    return writeTo(descriptor, size, [=](size_t part) {
        return syscall(SYS_pwrite64, descriptor, bytes, part, place);
    });
}

FAULTS_EXPORT ssize_t pwrite64(int descriptor, const void *bytes, size_t size, off64_t place)
{
    return pwrite(descriptor, bytes, size, place);
}

FAULTS_EXPORT ssize_t writev(int descriptor, const iovec *pieces, int count)
{
    return writeTo(descriptor, size_t(count),
                   [=](size_t part) { return syscall(SYS_writev, descriptor, pieces, part); });
}

FAULTS_EXPORT ssize_t sendfile(int to, int from, off_t *place, size_t size) noexcept
{
    return writeTo(to, size,
                   [=](size_t part) { return syscall(SYS_sendfile, to, from, place, part); });
}

FAULTS_EXPORT ssize_t sendfile64(int to, int from, off64_t *place, size_t size) noexcept
{
    return sendfile(to, from, place, size);
}

FAULTS_EXPORT ssize_t copy_file_range(int from, off64_t *fromPlace, int to, off64_t *toPlace,
                                      size_t size, unsigned flags)
{
    return writeTo(to, size, [=](size_t part) {
        return syscall(SYS_copy_file_range, from, fromPlace, to, toPlace, part, flags);
    });
}

/// All of a file at once.
FAULTS_EXPORT int ioctl(int descriptor, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    const char *path = request == FICLONE ? pathOf(descriptor) : nullptr;
    if (path && judge("clone", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_ioctl, descriptor, request, argument));
}

FAULTS_EXPORT int fsync(int descriptor)
{
    if (const char *path = pathOf(descriptor); path && judge("fsync", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_fsync, descriptor));
}

FAULTS_EXPORT int fdatasync(int descriptor)
{
    if (const char *path = pathOf(descriptor); path && judge("fsync", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_fdatasync, descriptor));
}

FAULTS_EXPORT int fchmod(int descriptor, mode_t mode) noexcept
{
    if (const char *path = pathOf(descriptor); path && judge("fchmod", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_fchmod, descriptor, mode));
}

FAULTS_EXPORT int ftruncate(int descriptor, off_t size) noexcept
{
    if (const char *path = pathOf(descriptor); path && judge("truncate", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_ftruncate, descriptor, size));
}

FAULTS_EXPORT int ftruncate64(int descriptor, off64_t size) noexcept
{
    return ftruncate(descriptor, size);
}

FAULTS_EXPORT int close(int descriptor)
{
    int refused = 0;
    if (const char *path = pathOf(descriptor)) {
        if (judge("close", path) != Verdict::Go)
            refused = errno;
        openPaths[size_t(descriptor)][0] = '\0';
    }
    const int result = int(syscall(SYS_close, descriptor)); // the descriptor is gone either way
    if (refused == 0)
        return result;
    errno = refused;
    return -1;
}

FAULTS_EXPORT int sync_file_range(int descriptor, off64_t from, off64_t size, unsigned flags)
{
    if (const char *path = pathOf(descriptor); path && judge("begin", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_sync_file_range, descriptor, from, size, flags));
}

FAULTS_EXPORT int utimensat(int directory, const char *path, const timespec *times,
                            int flags) noexcept
{
    if (isBelow(path) && judge("utime", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_utimensat, directory, path, times, flags));
}

FAULTS_EXPORT int futimens(int descriptor, const timespec *times) noexcept
{
    if (const char *path = pathOf(descriptor); path && judge("utime", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_utimensat, descriptor, nullptr, times, 0));
}

FAULTS_EXPORT int fchmodat(int directory, const char *path, mode_t mode, int) noexcept
{
    if (isBelow(path) && judge("chmod", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_fchmodat, directory, path, mode));
}

FAULTS_EXPORT int chmod(const char *path, mode_t mode) noexcept
{
    return fchmodat(AT_FDCWD, path, mode, 0);
}

FAULTS_EXPORT int truncate(const char *path, off_t size) noexcept
{
    if (isBelow(path) && judge("truncate", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_truncate, path, size));
}

FAULTS_EXPORT int truncate64(const char *path, off64_t size) noexcept
{
    return truncate(path, size);
}

FAULTS_EXPORT int fstatat(int directory, const char *path, struct stat *status, int flags) noexcept
{
    if (isBelow(path) && judge("look", path, "stat") != Verdict::Go)
        return -1;
    return int(syscall(SYS_newfstatat, directory, path, status, flags));
}

FAULTS_EXPORT int stat(const char *path, struct stat *status) noexcept
{
    return fstatat(AT_FDCWD, path, status, 0);
}

FAULTS_EXPORT int lstat(const char *path, struct stat *status) noexcept
{
    return fstatat(AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW);
}

FAULTS_EXPORT int fstat(int descriptor, struct stat *status) noexcept
{
    if (const char *path = pathOf(descriptor); path && judge("fstat", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_fstat, descriptor, status));
}

// The same where every size has 64 bits anyway.
static_assert(sizeof(struct stat) == sizeof(struct stat64));

FAULTS_EXPORT int fstatat64(int directory, const char *path, struct stat64 *status,
                            int flags) noexcept
{
    return fstatat(directory, path, reinterpret_cast<struct stat *>(status), flags);
}

FAULTS_EXPORT int stat64(const char *path, struct stat64 *status) noexcept
{
    return fstatat64(AT_FDCWD, path, status, 0);
}

FAULTS_EXPORT int lstat64(const char *path, struct stat64 *status) noexcept
{
    return fstatat64(AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW);
}

FAULTS_EXPORT int fstat64(int descriptor, struct stat64 *status) noexcept
{
    return fstat(descriptor, reinterpret_cast<struct stat *>(status));
}

FAULTS_EXPORT int statx(int directory, const char *path, int flags, unsigned mask,
                        struct statx *status) noexcept
{
    const bool isOfDescriptor = (flags & AT_EMPTY_PATH) != 0 && path[0] == '\0';
    if (const char *open = isOfDescriptor ? pathOf(directory) : nullptr;
        open && judge("fstat", open) != Verdict::Go)
        return -1;
    if (isBelow(path) && judge("look", path, "statx") != Verdict::Go)
        return -1;
    return int(syscall(SYS_statx, directory, path, flags, mask, status));
}

FAULTS_EXPORT int access(const char *path, int mode) noexcept
{
    if (isBelow(path) && judge("look", path, "access") != Verdict::Go)
        return -1;
    return int(syscall(SYS_faccessat, AT_FDCWD, path, mode));
}

FAULTS_EXPORT int mkdir(const char *path, mode_t mode) noexcept
{
    if (isBelow(path) && judge("mkdir", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_mkdirat, AT_FDCWD, path, mode));
}

FAULTS_EXPORT int unlink(const char *path) noexcept
{
    if (isBelow(path) && judge("unlink", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}

FAULTS_EXPORT int unlinkat(int directory, const char *path, int flags) noexcept
{
    if (isBelow(path) && judge("unlink", path) != Verdict::Go)
        return -1;
    return int(syscall(SYS_unlinkat, directory, path, flags));
}

FAULTS_EXPORT int renameat2(int from, const char *path, int to, const char *target,
                            unsigned flags) noexcept
{
    if (isBelow(target) && judge("rename", path, target) != Verdict::Go)
        return -1;
    return int(syscall(SYS_renameat2, from, path, to, target, flags));
}

FAULTS_EXPORT int renameat(int from, const char *path, int to, const char *target) noexcept
{
    return renameat2(from, path, to, target, 0);
}

FAULTS_EXPORT int rename(const char *path, const char *target) noexcept
{
    return renameat2(AT_FDCWD, path, AT_FDCWD, target, 0);
}

FAULTS_EXPORT int linkat(int from, const char *path, int to, const char *target, int flags) noexcept
{
    if (isBelow(target)) {
        if (judge("link", path, target) != Verdict::Go)
            return -1;
        if (hasBegun && settings().isPlain) {
            errno = EPERM;
            return -1;
        }
    }
    return int(syscall(SYS_linkat, from, path, to, target, flags));
}

FAULTS_EXPORT int link(const char *path, const char *target) noexcept
{
    return linkat(AT_FDCWD, path, AT_FDCWD, target, 0);
}
