#pragma once

#include <string>
#include <string_view>

namespace orvalen {

/// Files that are made for the user, in the user's own folders. Main thread only.
class Documents
{
public:
    virtual ~Documents() = default;

    /// Absolute path of the folder "Desktop", as the system names it for this user. It need not exist.
    [[nodiscard]] virtual std::string desktopFolder() = 0;

    /// Puts a file with these contents in the place of an earlier one, on disk as a whole or not at all. Waits for the
    /// disk, which may be slow: only it knows whether it has room. False if that failed, for want of the folder, say;
    /// then everything is as before.
    virtual bool write(const std::string &path, std::string_view contents) = 0;

    /// Shows the file with the program that the user has chosen for its kind, and returns at once. No such program:
    /// nothing happens.
    virtual void open(const std::string &path) = 0;
};

} // namespace orvalen
