#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvalen {

/// Files under fixed names in a folder that everybody may write to, such as the one for temporary files. What somebody
/// else put under such a name (a link, a directory, a file of another user's) is never followed, read or written.
///
/// Errors are errno values; 0 is success. Any thread. New files are readable and writable for their owner alone.
namespace private_file {

/// Nothing stands there, or a regular file of this user's with a single name.
[[nodiscard]] bool isOursOrAbsent(const std::filesystem::path &path);

/// All bytes of a file of ours; std::nullopt without one, or if it has more than `limit` bytes.
[[nodiscard]] std::optional<std::string> read(const std::filesystem::path &path, std::size_t limit);

/// Opens a file of ours for reading, close-on-exec; -1 with errno set without one.
[[nodiscard]] int openForReading(const std::filesystem::path &path);

/// Creates or truncates a file of ours and writes `contents` into it with one call.
[[nodiscard]] int write(const std::filesystem::path &path, std::string_view contents);

/// Puts a new file in the place of what this user has there (a link is replaced, not followed), as a whole or not at
/// all: who is killed amid it leaves nothing behind that another call does not clear away, on file systems that know
/// files without a name. `mode`: its permissions. The contents may come in pieces, one after the other.
[[nodiscard]] int replace(const std::filesystem::path &path, std::string_view contents, unsigned mode = 0600);
[[nodiscard]] int replace(const std::filesystem::path &path, std::span<const std::string_view> pieces,
                          unsigned mode = 0600);

/// Removes what this user has there; a link itself, not what it leads to.
[[nodiscard]] int remove(const std::filesystem::path &path);

} // namespace private_file

} // namespace orvalen
