#pragma once

#include <bitset>
#include <cstdint>
#include <functional>
#include <optional>
#include <xcb/xcb.h>

namespace orvalen {

/// Tells presses from repetitions, by what a server reports to one who has grabbed single keys: nothing before the
/// press of such a key, and nothing after its release. Times are those of the events, in ms.
class HeldKeysX11
{
public:
    /// `releasesBeforeRepetitions`: the server reports a release before each repetition, at the same time.
    explicit HeldKeysX11(bool releasesBeforeRepetitions) : releasesBeforeRepetitions(releasesBeforeRepetitions) {}

    /// True for a press, false for a repetition.
    [[nodiscard]] bool press(xcb_keycode_t key, xcb_timestamp_t time);

    void release(xcb_keycode_t key, xcb_timestamp_t time);

    /// Whether there is a key whose release is awaited.
    [[nodiscard]] bool isAny() const { return activeKey.has_value(); }

    /// What is not down was released without a report.
    void keepOnly(const std::function<bool(xcb_keycode_t)> &isDown);

private:
    struct Release
    {
        xcb_keycode_t key;
        xcb_timestamp_t time;
        bool wasActive;
    };

    bool releasesBeforeRepetitions;
    std::optional<xcb_keycode_t> activeKey; ///< By whose press we have the keyboard, until its release.
    std::bitset<256> held;                  ///< Pressed since then.
    std::optional<Release> lastRelease;
};

} // namespace orvalen
