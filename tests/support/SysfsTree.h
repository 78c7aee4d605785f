#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace orvalen::test {

/// A folder laid out like /sys, gone with the object. It is described by lines, each within the folder named last:
///
///     [class/hwmon/hwmon0]
///     name = coretemp
///     temp1_input = 43500
///     device -> ../../../devices/platform/coretemp.0
///     temp2_input/
///
/// a file with its one line, a link, and a folder (here in a file's place). A blank value is an empty file.
class SysfsTree
{
public:
    explicit SysfsTree(std::string_view description = {});
    ~SysfsTree();

    SysfsTree(const SysfsTree &) = delete;
    SysfsTree &operator=(const SysfsTree &) = delete;

    [[nodiscard]] std::string root() const { return folder.string(); }
    [[nodiscard]] std::filesystem::path path(std::string_view file) const { return folder / file; }

    /// Adds what is described, in the place of what is there under the same names.
    void add(std::string_view description);
    void write(std::string_view file, std::string_view value);
    void remove(std::string_view file);

    /// From now on who opens the file hangs, for real, until `answer` lets go: gives the hanging ones an answer and
    /// everybody after them too.
    void makeHang(std::string_view file);
    void answer(std::string_view file, std::string_view value);

private:
    std::filesystem::path folder;
};

} // namespace orvalen::test
