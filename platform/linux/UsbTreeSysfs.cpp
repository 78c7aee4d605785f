#include "platform/linux/UsbTreeSysfs.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/SysfsFiles.h"

namespace orvalen {

namespace {

/// The number of a bus, then those of the ports that lead to the device: in this order each comes before what hangs
/// from it, and a bus or hub has its ports in order.
using Place = std::vector<unsigned>;

std::optional<unsigned> takeNumber(std::string_view &text)
{
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || (text.front() == '0' && end != text.data() + 1))
        return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

bool take(std::string_view &text, std::string_view what)
{
    const bool isThere = text.starts_with(what);
    text.remove_prefix(isThere ? what.size() : 0);
    return isThere;
}

/// "usb3" is a bus, "3-1.4" what is plugged into the fourth port of the hub at its first. Everything else is neither:
/// "3-1.4:1.0" is a part of a device.
std::optional<Place> placeFrom(std::string_view folder)
{
    const bool isBus = take(folder, "usb");
    const auto bus = takeNumber(folder);
    if (!bus)
        return std::nullopt;
    Place place{*bus};
    if (isBus)
        return folder.empty() ? std::optional(place) : std::nullopt;
    do {
        if (!take(folder, place.size() == 1 ? "-" : "."))
            return std::nullopt;
        const auto port = takeNumber(folder);
        if (!port)
            return std::nullopt;
        place.push_back(*port);
    } while (!folder.empty());
    return place;
}

bool leadsTo(const Place &above, const Place &below)
{
    return above.size() < below.size() && std::equal(above.begin(), above.end(), below.begin());
}

/// What the device says, without the line end that the kernel adds. Never waits for a writer.
std::optional<std::string> productIn(const std::string &folder)
{
    const int descriptor = ::open((folder + "/product").c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    // A USB string has 126 letters: this holds them in UTF-8 with room to spare.
    std::array<char, 1024> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by the read
    struct stat status = {};
    ssize_t length = -1;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        do
            length = ::read(descriptor, buffer.data(), buffer.size());
        while (length < 0 && errno == EINTR);
    }
    ::close(descriptor);
    if (length < 0)
        return std::nullopt;
    std::string product(buffer.data(), static_cast<std::size_t>(length));
    if (product.ends_with('\n'))
        product.pop_back();
    return product;
}

} // namespace

UsbTreeSysfs::UsbTreeSysfs(std::string root) : root(std::move(root)) {}

std::vector<UsbNode> UsbTreeSysfs::read()
{
    std::map<Place, std::string> folders;
    for (auto &name : sysfs::entries(root).value_or(std::vector<std::string>{})) {
        if (auto place = placeFrom(name))
            folders.emplace(std::move(*place), std::move(name));
    }

    std::vector<UsbNode> buses;
    std::vector<std::pair<const Place *, UsbNode *>> above; // the way down to the last node
    for (const auto &[place, name] : folders) {
        while (!above.empty() && !leadsTo(*above.back().first, place))
            above.pop_back();
        auto &siblings = above.empty() ? buses : above.back().second->items;
        siblings.emplace_back(productIn(root + "/" + name));
        above.emplace_back(&place, &siblings.back());
    }
    return buses;
}

} // namespace orvalen
