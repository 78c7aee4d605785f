#include "platform/posix/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace orvalen::whole_file {

namespace {

constexpr int tries = 100;                                                           ///< To find a name.
constexpr mode_t forAll = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH; ///< Less the umask.

/// A file that ends with its descriptor unless it gets a name; -1 with errno set if there can be none.
int openNameless([[maybe_unused]] const std::filesystem::path &folder, [[maybe_unused]] mode_t mode)
{
#ifdef O_TMPFILE
    return ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
#else
    errno = EOPNOTSUPP;
    return -1;
#endif
}

/// A new file under `name` and what makes it one that nobody else has; -1 with errno set if there can be none.
int openUnder(std::string &name, mode_t mode)
{
    std::random_device random;
    const auto beginning = name + '.';
    int descriptor = -1;
    for (int i = 0; i < tries && descriptor < 0 && (i == 0 || errno == EEXIST); ++i) {
        name = beginning + std::to_string(random());
        descriptor = ::open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC | O_NOFOLLOW, mode);
    }
    return descriptor;
}

/// Always the same name for the same path: what a killed process of ours has left under it is cleared away here. Where
/// somebody else's cannot be cleared away, a name with our process's number.
int giveName(int descriptor, std::string &name)
{
    const auto nameless = "/proc/self/fd/" + std::to_string(descriptor);
    bool isOther = false;
    for (int i = 0; i < tries; ++i) { // others may do the same at the same time
        if (::linkat(AT_FDCWD, nameless.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0)
            return 0;
        if (errno != EEXIST)
            return errno;
        if (::unlink(name.c_str()) == 0 || errno == ENOENT)
            continue;
        if (std::exchange(isOther, true))
            return errno;
        name += '.' + std::to_string(::getpid());
    }
    return EEXIST;
}

/// Contents, permissions and disk; all but the name.
int fill(int descriptor, std::span<const std::string_view> pieces, const Kind &kind)
{
    int error = writeAll(descriptor, pieces);
    if (error == 0 && kind.mode && ::fchmod(descriptor, *kind.mode) != 0)
        error = errno;
    if (error == 0 && kind.isOnDisk)
        error = sync(descriptor);
    return error;
}

/// The whole file under `name`, which may be given a number. Nothing is there if that fails.
int writeNameless(std::string &name, const std::filesystem::path &folder, mode_t mode,
                  std::span<const std::string_view> pieces, const Kind &kind)
{
    const int descriptor = openNameless(folder, mode);
    if (descriptor < 0)
        return errno;
    int error = fill(descriptor, pieces, kind);
    if (error == 0)
        error = giveName(descriptor, name);
    const bool hasName = error == 0;
    if (::close(descriptor) != 0 && error == 0)
        error = errno;
    if (error != 0 && hasName)
        ::unlink(name.c_str());
    return error;
}

/// The same under a name from the start. Who is killed amid it leaves it there.
int writeNamed(std::string &name, mode_t mode, std::span<const std::string_view> pieces, const Kind &kind)
{
    const int descriptor = openUnder(name, mode);
    if (descriptor < 0)
        return errno;
    int error = fill(descriptor, pieces, kind);
    if (::close(descriptor) != 0 && error == 0)
        error = errno;
    if (error != 0)
        ::unlink(name.c_str());
    return error;
}

/// Whether a name from the start would not help either.
bool isFinal(int error)
{
    return error == EEXIST || error == ENOSPC || error == EDQUOT;
}

} // namespace

int replace(const std::filesystem::path &path, std::span<const std::string_view> pieces, const Kind &kind)
{
    if (isForeign(path))
        return EPERM;
    auto folder = path.parent_path();
    if (folder.empty())
        folder = ".";
    const auto beside = (folder / ('.' + path.filename().string() + ".orvalen")).string();
    const mode_t mode = kind.mode ? S_IRUSR | S_IWUSR : forAll;
    auto temporary = beside;
    int error = writeNameless(temporary, folder, mode, pieces, kind);
    const bool wasNameless = error == 0;
    if (error != 0 && !isFinal(error)) { // the file system has no such files, or there is no /proc to name them by
        temporary = beside;
        error = writeNamed(temporary, mode, pieces, kind);
    }
    if (error != 0)
        return error;
    // Where another process has just done the same, that name is gone again, and its file or ours stands there.
    if (::rename(temporary.c_str(), path.c_str()) != 0 && !(wasNameless && errno == ENOENT)) {
        error = errno;
        ::unlink(temporary.c_str());
    }
    return error;
}

bool isForeign(const std::filesystem::path &path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0 && status.st_uid != geteuid();
}

int writeAll(int descriptor, std::span<const std::string_view> pieces)
{
    constexpr std::size_t most = 512; // half of what systems take at once
    std::vector<iovec> left;
    left.reserve(pieces.size());
    for (const auto piece : pieces)
        left.push_back({const_cast<char *>(piece.data()), piece.size()});
    for (auto next = left.begin(); next != left.end();) {
        const auto count = std::min<std::size_t>(most, static_cast<std::size_t>(left.end() - next));
        const ssize_t written = ::writev(descriptor, &*next, static_cast<int>(count));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return errno;
        auto rest = static_cast<std::size_t>(written);
        const bool isStuck = rest == 0 && next->iov_len > 0;
        if (isStuck)
            return EIO;
        for (; next != left.end() && rest >= next->iov_len; ++next)
            rest -= next->iov_len;
        if (next != left.end()) {
            next->iov_base = static_cast<char *>(next->iov_base) + rest;
            next->iov_len -= rest;
        }
    }
    return 0;
}

int sync(int descriptor)
{
#ifdef F_FULLFSYNC // where fsync goes as far as the drive, not to its medium
    if (::fcntl(descriptor, F_FULLFSYNC) == 0)
        return 0;
    const bool isMediumsOwn = errno == EIO || errno == ENOSPC || errno == EDQUOT;
    if (isMediumsOwn)
        return errno;
        // The file system does not know it.
#endif
    return ::fsync(descriptor) == 0 || errno == EINVAL ? 0 : errno; // EINVAL: a file system without a disk
}

} // namespace orvalen::whole_file
