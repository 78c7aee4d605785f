#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <semaphore>

#include "platform/Sounds.h"

struct ca_context;

namespace orvalen {

/// Plays sounds through libcanberra, as event sounds of the theme "orvalen".
///
/// The desktop's copy of the theme comes first, then the theme's own folder, then a sound of the same meaning in the
/// theme that every desktop has. Played even where the desktop's event sounds are off: the user has a switch of ours.
class SoundsCanberra : public Sounds
{
public:
    /// `themeFolder` is the one that holds the theme's index; it need not exist.
    explicit SoundsCanberra(std::filesystem::path themeFolder);

    void play(std::string_view name) override;

private:
    using Context = std::shared_ptr<ca_context>; ///< Connects at its first sound and stays connected. Null: no sounds.

    [[nodiscard]] static Context makeContext();
    [[nodiscard]] Context presentContext();
    void forget(const Context &gone);

    std::filesystem::path themeFolder;
    std::counting_semaphore<4> starting{4}; ///< A sound server that hangs holds this many threads, not all.
    std::mutex mutex;
    Context context; ///< Made for the first sound and anew for the first one after the sound server went away.
};

} // namespace orvalen
