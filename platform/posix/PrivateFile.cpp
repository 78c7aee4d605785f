#include "platform/posix/PrivateFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace orvalen::private_file {

namespace {

bool isOurs(const struct stat &status)
{
    // A single name, or none: then it was replaced after it was opened.
    return S_ISREG(status.st_mode) && status.st_uid == geteuid() && status.st_nlink <= 1;
}

/// Whether somebody else owns what stands there, be it a link. The system asks the same of a shared folder's users, but
/// not of root.
bool isForeign(const std::filesystem::path &path)
{
    struct stat status = {};
    return ::lstat(path.c_str(), &status) == 0 && status.st_uid != geteuid();
}

/// Opens what stands there if it is ours; -1 with errno set if not.
int openOurs(const std::filesystem::path &path, int flags)
{
    // Non-blocking: a pipe under that name must not hold us up before it can be refused.
    const int descriptor = ::open(path.c_str(), flags | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return -1;
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && isOurs(status))
        return descriptor;
    ::close(descriptor);
    errno = EPERM;
    return -1;
}

/// Writes all pieces; 0 or an errno value.
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

/// A file that ends with its descriptor unless it gets a name; -1 where there is no such thing.
int openNameless([[maybe_unused]] const std::filesystem::path &folder)
{
#ifdef O_TMPFILE
    return ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
#else
    return -1;
#endif
}

/// Always the same name for the same path: what a killed process of ours has left under it is cleared away here. Where
/// somebody else's cannot be cleared away, a name with our process's number.
int giveName(int descriptor, std::string &name)
{
    constexpr int tries = 100; // others may do the same at the same time
    const auto nameless = "/proc/self/fd/" + std::to_string(descriptor);
    bool isOther = false;
    for (int i = 0; i < tries; ++i) {
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

} // namespace

bool isOursOrAbsent(const std::filesystem::path &path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0)
        return errno == ENOENT;
    return isOurs(status);
}

int openForReading(const std::filesystem::path &path)
{
    return openOurs(path, O_RDONLY);
}

std::optional<std::string> read(const std::filesystem::path &path, std::size_t limit)
{
    const int descriptor = openForReading(path);
    if (descriptor < 0)
        return std::nullopt;
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || static_cast<std::size_t>(status.st_size) > limit) {
        ::close(descriptor);
        return std::nullopt;
    }
    // One more than there is, to see the end. Who lets it grow meanwhile is read up to here.
    std::string contents(static_cast<std::size_t>(status.st_size) + 1, '\0');
    std::size_t size = 0;
    ssize_t got = 0;
    while (size < contents.size() && (got = ::read(descriptor, contents.data() + size, contents.size() - size)) != 0) {
        if (got > 0)
            size += static_cast<std::size_t>(got);
        else if (errno != EINTR)
            break;
    }
    ::close(descriptor);
    if (got < 0 || size > limit)
        return std::nullopt;
    contents.resize(size);
    return contents;
}

int write(const std::filesystem::path &path, std::string_view contents)
{
    const int descriptor = openOurs(path, O_WRONLY | O_CREAT); // truncated only when known to be ours
    if (descriptor < 0)
        return errno;
    int error = ::ftruncate(descriptor, 0) == 0 ? writeAll(descriptor, std::span(&contents, 1)) : errno;
    if (::close(descriptor) != 0 && error == 0)
        error = errno;
    return error;
}

int replace(const std::filesystem::path &path, std::string_view contents, unsigned mode)
{
    return replace(path, std::span(&contents, 1), mode);
}

int replace(const std::filesystem::path &path, std::span<const std::string_view> pieces, unsigned mode)
{
    if (isForeign(path))
        return EPERM;
    auto folder = path.parent_path();
    if (folder.empty())
        folder = ".";
    auto temporary = (folder / ('.' + path.filename().string() + ".orvalen")).string();
    int descriptor = openNameless(folder);
    const bool isNameless = descriptor >= 0;
    if (!isNameless) {
        temporary = path.string() + ".XXXXXX";
        descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);
        if (descriptor < 0)
            return errno;
    }
    int error = writeAll(descriptor, pieces);
    if (error == 0 && ::fchmod(descriptor, mode) != 0)
        error = errno;
    if (error == 0 && isNameless)
        error = giveName(descriptor, temporary);
    const bool hasName = !isNameless || error == 0;
    if (::close(descriptor) != 0 && error == 0)
        error = errno;
    // Where another process has just done the same, that name is gone again, and its file or ours stands there.
    if (error == 0 && ::rename(temporary.c_str(), path.c_str()) != 0 && !(isNameless && errno == ENOENT))
        error = errno;
    if (error != 0 && hasName)
        ::unlink(temporary.c_str());
    return error;
}

int remove(const std::filesystem::path &path)
{
    if (isForeign(path))
        return EPERM;
    return ::unlink(path.c_str()) == 0 ? 0 : errno;
}

} // namespace orvalen::private_file
