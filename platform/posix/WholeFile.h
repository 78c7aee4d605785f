#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

namespace orvalen {

/// A file that takes an earlier one's place as a whole or not at all: it is written without a name, or under one that
/// nobody looks for, and gets its own when it is complete. A link in its place is replaced, not followed.
///
/// Errors are errno values; 0 is success. Any thread.
namespace whole_file {

struct Kind
{
    /// Its permissions; without, what the user's umask leaves of reading and writing for all.
    std::optional<unsigned> mode = {};
    /// Whether to wait for the disk, and so to find out before the change what it cannot hold.
    bool isOnDisk = false;
};

/// Refuses what somebody else has there. Who is killed amid it leaves nothing behind that another call does not clear
/// away, on file systems that know files without a name. The contents may come in pieces, one after the other.
[[nodiscard]] int replace(const std::filesystem::path &path, std::span<const std::string_view> pieces,
                          const Kind &kind);

/// Whether somebody else owns what stands there, be it a link. The system asks the same of a shared folder's users, but
/// not of root.
[[nodiscard]] bool isForeign(const std::filesystem::path &path);

/// Writes all pieces.
[[nodiscard]] int writeAll(int descriptor, std::span<const std::string_view> pieces);

/// Waits until what was written is on the disk; an error that shows only then is this one's.
[[nodiscard]] int sync(int descriptor);

} // namespace whole_file

} // namespace orvalen
