#include "platform/macos/StatusBarAppKit.h"

#include <optional>
#include <string>
#include <utility>

#include "platform/macos/FoundationString.h"

#import <AppKit/AppKit.h>

/// What a button calls when it is clicked. Buttons do not keep their target alive.
@interface OrvalenStatusItemTarget : NSObject
- (void)statusItemClicked:(id)sender;
@end

@implementation OrvalenStatusItemTarget {
@public
    std::function<void()> action;
}

- (void)statusItemClicked:(id)sender
{
    // The action may replace itself, or destroy the item and with it this object.
    if (const auto running = action)
        running();
}

@end

namespace orvalen {

namespace {

/// Notes what is asked for; whether it is something else than what is there.
template <typename Value>
bool changes(std::optional<Value> &shown, Value wanted)
{
    if (shown == wanted)
        return false;
    shown = std::move(wanted);
    return true;
}

class StatusItemAppKit : public StatusItem, public StatusItemButton
{
public:
    /// The bar does not keep its items alive.
    explicit StatusItemAppKit(NSStatusItem *item) : item(item), target([OrvalenStatusItemTarget new])
    {
        item.button.target = target;
        item.button.action = @selector(statusItemClicked:);
    }

    ~StatusItemAppKit() override
    {
        item.button.target = nil;
        [NSStatusBar.systemStatusBar removeStatusItem:item];
    }

    StatusItemAppKit(StatusItemAppKit &&) = delete;

    StatusItemButton *button() override { return item.button ? this : nullptr; }

    void setImage(std::string_view symbol, std::string_view accessibilityDescription) override
    {
        if (!changes(shownImage, std::pair(std::string(symbol), std::string(accessibilityDescription))))
            return;
        NSImage *const image = [NSImage imageWithSystemSymbolName:foundationString(symbol)
                                         accessibilityDescription:foundationString(accessibilityDescription)];
        [image setTemplate:YES];
        item.button.image = image;
    }

    void setImagePosition(ImagePosition position) override
    {
        if (changes(shownPosition, position))
            item.button.imagePosition = static_cast<NSCellImagePosition>(position);
    }

    void setTitle(std::string_view title) override
    {
        if (changes(shownTitle, std::string(title)))
            item.button.title = foundationString(title);
    }

    void setAction(std::function<void()> action) override { target->action = std::move(action); }

private:
    NSStatusItem *item;
    OrvalenStatusItemTarget *target;
    std::optional<std::pair<std::string, std::string>> shownImage;
    std::optional<ImagePosition> shownPosition;
    std::optional<std::string> shownTitle;
};

} // namespace

std::unique_ptr<StatusItem> StatusBarAppKit::statusItemWithLength(double length)
{
    return std::make_unique<StatusItemAppKit>([NSStatusBar.systemStatusBar statusItemWithLength:length]);
}

} // namespace orvalen
