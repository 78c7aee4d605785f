#include "platform/posix/TextFilesPosix.h"

#include <cstddef>

#include "platform/posix/PrivateFile.h"

namespace orvalen {

namespace {

constexpr std::size_t largestFile = 64 * 1024; ///< Bytes.
constexpr unsigned ownerMayRun = 0700;

} // namespace

bool TextFilesPosix::replace(const std::string &path, std::string_view contents)
{
    return private_file::replace(path, contents, ownerMayRun) == 0;
}

std::optional<std::string> TextFilesPosix::read(const std::string &path)
{
    return private_file::read(path, largestFile);
}

void TextFilesPosix::remove(const std::string &path)
{
    [[maybe_unused]] const int error = private_file::remove(path);
}

} // namespace orvalen
