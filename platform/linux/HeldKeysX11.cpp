#include "platform/linux/HeldKeysX11.h"

#include <utility>

namespace orvalen {

bool HeldKeysX11::press(xcb_keycode_t key, xcb_timestamp_t time)
{
    const auto release = std::exchange(lastRelease, std::nullopt);
    if (releasesBeforeRepetitions && release && release->key == key && time - release->time <= 1) {
        if (release->wasActive)
            activeKey = key;
        held.set(key);
        return false;
    }
    if (!activeKey) {
        activeKey = key;
        held.reset();
    }
    const bool isNew = !held[key];
    held.set(key);
    return isNew;
}

void HeldKeysX11::release(xcb_keycode_t key, xcb_timestamp_t time)
{
    const bool wasActive = activeKey == key;
    if (held[key])
        lastRelease = Release{key, time, wasActive};
    held.reset(key);
    if (wasActive)
        activeKey.reset(); // the releases of other keys go elsewhere from now on
}

void HeldKeysX11::keepOnly(const std::function<bool(xcb_keycode_t)> &isDown)
{
    for (std::size_t key = 0; key < held.size(); ++key) {
        if (held[key] && !isDown(static_cast<xcb_keycode_t>(key)))
            held.reset(key);
    }
    if (activeKey && !held[*activeKey])
        activeKey.reset();
}

} // namespace orvalen
