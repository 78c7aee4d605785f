#include "platform/posix/PrivateFile.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/WholeFile.h"

namespace orvalen::private_file {

namespace {

bool isOurs(const struct stat &status)
{
    // A single name, or none: then it was replaced after it was opened.
    return S_ISREG(status.st_mode) && status.st_uid == geteuid() && status.st_nlink <= 1;
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
    int error = ::ftruncate(descriptor, 0) == 0 ? whole_file::writeAll(descriptor, std::span(&contents, 1)) : errno;
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
    return whole_file::replace(path, pieces, {.mode = mode});
}

int remove(const std::filesystem::path &path)
{
    if (whole_file::isForeign(path))
        return EPERM;
    return ::unlink(path.c_str()) == 0 ? 0 : errno;
}

} // namespace orvalen::private_file
