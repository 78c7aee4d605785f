#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>

#include <cstdint>
#include <functional>

struct xcb_connection_t;

namespace orvalen {

/// Follows whether an X11 tray is there, the one that icons are embedded in. Where the program is not on X11 there
/// never is one.
class XEmbedTrayWatch : public QAbstractNativeEventFilter
{
public:
    /// `changed` is called when a tray has come, from the event loop.
    explicit XEmbedTrayWatch(std::function<void()> changed);
    ~XEmbedTrayWatch() override;

    XEmbedTrayWatch(const XEmbedTrayWatch &) = delete;
    XEmbedTrayWatch &operator=(const XEmbedTrayWatch &) = delete;

    /// Asks the X server, which is at hand.
    [[nodiscard]] bool isThere() const;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    xcb_connection_t *xcb = nullptr;
    std::uint32_t manager = 0;   ///< The atom under which a tray, among others, makes itself known.
    std::uint32_t selection = 0; ///< The atom that a tray owns.
    std::function<void()> changed;
};

} // namespace orvalen
