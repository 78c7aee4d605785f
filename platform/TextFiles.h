#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvalen {

/// Small text files under fixed names in a folder that everybody may write to. No operation follows a link or touches
/// what another user owns. Any thread.
class TextFiles
{
public:
    virtual ~TextFiles() = default;

    /// Puts a file with these contents in the place of whatever stood there, as a whole or not at all, readable for its
    /// owner alone and for the owner to run. False if that failed.
    virtual bool replace(const std::string &path, std::string_view contents) = 0;

    /// The bytes of a file of ours; std::nullopt if there is none, it is unreadable, or absurdly large (over 64 KiB).
    [[nodiscard]] virtual std::optional<std::string> read(const std::string &path) = 0;

    /// Removes it if it is there.
    virtual void remove(const std::string &path) = 0;
};

} // namespace orvalen
