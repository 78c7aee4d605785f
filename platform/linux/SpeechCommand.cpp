#include "platform/linux/SpeechCommand.h"

#include <chrono>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/posix/SearchPath.h"

namespace orvalen {

namespace {

struct Command
{
    std::string name;
    std::vector<std::string> options; ///< An English voice, the text as it stands; the text comes after them.
};

const std::vector<Command> &commands()
{
    // -w: a speech service that was started for us leaves in mid-sentence when its last client is gone. -m none: commas
    // and colons are not read out. -b 1: UTF-8.
    static const std::vector<Command> list = {
        {"spd-say", {"-w", "-N", "Orvalen", "-l", "en", "-m", "none", "--"}},
        {"espeak-ng", {"-v", "en", "-b", "1", "--"}},
    };
    return list;
}

/// One that has not failed by then speaks.
constexpr std::chrono::seconds timeToFail{1};

} // namespace

SpeechCommand::SpeechCommand(ChildProcesses &processes, std::string searchPath)
    : processes(processes), searchPath(std::move(searchPath))
{
}

void SpeechCommand::speak(std::string_view text)
{
    for (const auto &[name, options] : commands()) {
        if (const auto program = search_path::find(name, searchPath)) {
            auto arguments = options;
            arguments.emplace_back(text);
            const std::scoped_lock lock(mutex);
            if (voice)
                voice->terminate();
            voice.reset();
            try {
                voice = processes.launch(*program, arguments);
            } catch (const std::system_error &) {
                continue;
            }
            if (voice->exitStatusWithin(timeToFail).value_or(0) == 0)
                return;
            voice.reset();
        }
    }
}

} // namespace orvalen
