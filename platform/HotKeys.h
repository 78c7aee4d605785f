#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace orvalen {

/// What a hot key is known by when it is pressed.
struct HotKeyId
{
    std::uint32_t signature = 0; ///< Four characters, the first in the highest byte.
    std::uint32_t id = 0;

    friend bool operator==(const HotKeyId &, const HotKeyId &) = default;
};

/// A key that works whatever program has the keyboard.
struct HotKey
{
    std::uint32_t keyCode = 0;   ///< As Carbon's kVK_ANSI_ constants: the place of the key on an American keyboard.
    std::uint32_t modifiers = 0; ///< A sum of the constants below; exactly these are held.
    HotKeyId identifier;

    static constexpr std::uint32_t commandKey = 0x100; ///< Carbon's cmdKey; Super on other keyboards.
    static constexpr std::uint32_t optionKey = 0x800;  ///< Carbon's optionKey; Alt.
};

/// Something that stands with the system until it is destroyed.
class HotKeyHandle
{
public:
    virtual ~HotKeyHandle() = default;
};

/// Keys that the system hands to us from any program. Main thread only; presses arrive there. A system that is slow to
/// answer is not waited for long: then the handle is there before the answer is. If that is a yes, the handle works
/// from then on, if it is a no, it never does.
class HotKeys
{
public:
    virtual ~HotKeys() = default;

    /// Called once for each press, however long the key is held. std::nullopt: which key it was could not be learned.
    /// True: the press counts as handled and goes nowhere else.
    using Handler = std::function<bool(const std::optional<HotKeyId> &)>;

    /// From now on presses go to `handler`. Null if the system says that it has no such service.
    [[nodiscard]] virtual std::unique_ptr<HotKeyHandle> installHandler(Handler handler) = 0;

    /// Asks for a key, for the handler installed last. Null if the system says that it is somebody else's, or there
    /// is no such service.
    [[nodiscard]] virtual std::unique_ptr<HotKeyHandle> registerHotKey(const HotKey &key) = 0;
};

} // namespace orvalen
