#pragma once

#include <functional>
#include <memory>
#include <string_view>

namespace orvalen {

/// The part of a status item that people see and click. Setting what it shows already costs nothing.
class StatusItemButton
{
public:
    /// Where the image stands; numbered as AppKit's NSCellImagePosition.
    enum class ImagePosition
    {
        left = 2, ///< Before the title.
    };

    virtual ~StatusItemButton() = default;

    virtual void setImage(std::string_view symbol, std::string_view accessibilityDescription) = 0;
    virtual void setImagePosition(ImagePosition position) = 0;
    virtual void setTitle(std::string_view title) = 0;        ///< UTF-8.
    virtual void setAction(std::function<void()> action) = 0; ///< What a click does.
};

/// A small sign of ours in the system's own bar. Destroying it takes it away.
class StatusItem
{
public:
    virtual ~StatusItem() = default;

    /// Null if the system gave none. Lives as long as the item.
    [[nodiscard]] virtual StatusItemButton *button() = 0;
};

/// The menu bar's right end, the tray, the panel. Main thread only.
class StatusBar
{
public:
    static constexpr double variableLength = -1.0; ///< As wide as its contents; AppKit's NSVariableStatusItemLength.

    virtual ~StatusBar() = default;

    /// Never null. A bar that appears only later shows the item from then on.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> statusItemWithLength(double length) = 0;
};

} // namespace orvalen
