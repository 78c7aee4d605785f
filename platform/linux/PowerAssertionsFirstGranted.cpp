#include "platform/linux/PowerAssertionsFirstGranted.h"

#include <utility>

namespace orvalen {

namespace {

struct Answer
{
    bool wasAnybodyThere = false;
    std::unique_ptr<SleepInhibition> granted;
};

Answer ask(const PowerAssertionsFirstGranted::Inhibitors &inhibitors, const std::string &reason,
           SleepInhibitor::Deadline deadline)
{
    Answer answer;
    for (const auto &inhibitor : inhibitors) {
        if (inhibitor->isAvailable(deadline) == false)
            continue;
        answer.wasAnybodyThere = true;
        answer.granted = inhibitor->inhibit(reason, deadline);
        if (answer.granted)
            break;
    }
    return answer;
}

} // namespace

PowerAssertionsFirstGranted::PowerAssertionsFirstGranted(Ways ways, std::chrono::milliseconds patience)
    : ways(std::move(ways)), patience(patience)
{
}

std::optional<std::uint32_t> PowerAssertionsFirstGranted::create(const PowerAssertion &assertion)
{
    if (assertion.type != "PreventUserIdleSystemSleep")
        return std::nullopt;
    const auto deadline = std::chrono::steady_clock::now() + patience;
    auto answer = ask(ways.desktop, assertion.name, deadline);
    if (!answer.wasAnybodyThere)
        answer = ask(ways.withoutDesktop, assertion.name, deadline);
    if (!answer.granted)
        return std::nullopt;
    return keep(std::move(answer.granted));
}

void PowerAssertionsFirstGranted::release(std::uint32_t identifier)
{
    held.erase(identifier);
}

std::uint32_t PowerAssertionsFirstGranted::keep(std::unique_ptr<SleepInhibition> inhibition)
{
    do
        ++last;
    while (last == 0 || held.contains(last)); // after four thousand million of them
    held[last] = std::move(inhibition);
    return last;
}

} // namespace orvalen
