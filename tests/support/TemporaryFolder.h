#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace orvalen::test {

/// A new empty folder that goes with this object.
class TemporaryFolder
{
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    ~TemporaryFolder();

    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return folder / name; }
    [[nodiscard]] const std::filesystem::path &path() const { return folder; }

    /// Names in it, in order.
    [[nodiscard]] std::vector<std::string> names() const;

    /// Writes a file, and makes it a program if wanted; its path.
    std::filesystem::path write(std::string_view name, std::string_view contents, bool isProgram = false) const;

private:
    std::filesystem::path folder;
};

void write(const std::filesystem::path &file, std::string_view contents);
[[nodiscard]] std::string contentsOf(const std::filesystem::path &file);

/// Permissions of the file itself, or of the link; 0 if it is not there.
[[nodiscard]] unsigned modeOf(const std::filesystem::path &file);

/// The search path of the process, with `folder` first, until this object goes.
class FirstOnSearchPath
{
public:
    explicit FirstOnSearchPath(const std::filesystem::path &folder);
    FirstOnSearchPath(const FirstOnSearchPath &) = delete;
    FirstOnSearchPath &operator=(const FirstOnSearchPath &) = delete;
    ~FirstOnSearchPath();

private:
    std::string before;
};

} // namespace orvalen::test
