#include "platform/linux/SoundsCanberra.h"

#include <canberra.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace orvalen {
namespace {

struct Sound
{
    std::string_view name;
    const char *everywhere; ///< Its nearest relative in the freedesktop theme.
};

constexpr std::array sounds = {Sound{"Blow", "device-added"}, Sound{"Glass", "complete"}, Sound{"Tink", "message"}};

/// Tries the theme by name, then the file, then the sound that is there on every desktop. Returns at once; the result
/// is one of libcanberra's.
int start(ca_context *context, const Sound &sound, const std::filesystem::path &themeFolder)
{
    const std::string event(sound.name);
    const std::string file = themeFolder / "stereo" / (event + ".oga");
    const int result =
        ca_context_play(context, 0, CA_PROP_EVENT_ID, event.c_str(), CA_PROP_MEDIA_FILENAME, file.c_str(), nullptr);
    if (result != CA_ERROR_NOTFOUND && result != CA_ERROR_SYSTEM)
        return result;
    return ca_context_play(context, 0, CA_PROP_EVENT_ID, sound.everywhere, nullptr);
}

} // namespace

SoundsCanberra::SoundsCanberra(std::filesystem::path themeFolder) : themeFolder(std::move(themeFolder)) {}

void SoundsCanberra::play(std::string_view name)
{
    const auto sound = std::find_if(sounds.begin(), sounds.end(), [&](const Sound &one) { return one.name == name; });
    if (sound == sounds.end() || !starting.try_acquire())
        return;
    // A context whose server has gone stays mute when the server is back. A new one hears of it.
    for (int attempt = 0; attempt < 2; ++attempt) {
        const Context present = presentContext();
        if (!present)
            break;
        const int result = start(present.get(), *sound, themeFolder);
        if (result == CA_SUCCESS || result == CA_ERROR_NOTFOUND)
            break;
        forget(present);
    }
    starting.release();
}

SoundsCanberra::Context SoundsCanberra::makeContext()
{
    ca_context *created = nullptr;
    if (ca_context_create(&created) != CA_SUCCESS)
        return nullptr;
    ca_context_change_props(created, CA_PROP_APPLICATION_NAME, "Orvalen", CA_PROP_CANBERRA_XDG_THEME_NAME, "orvalen",
                            CA_PROP_CANBERRA_ENABLE, "1", CA_PROP_MEDIA_ROLE, "event", nullptr);
    return {created, ca_context_destroy};
}

SoundsCanberra::Context SoundsCanberra::presentContext()
{
    const std::scoped_lock lock(mutex);
    if (!context)
        context = makeContext();
    return context;
}

void SoundsCanberra::forget(const Context &gone)
{
    const std::scoped_lock lock(mutex);
    if (context == gone)
        context.reset();
}

} // namespace orvalen
