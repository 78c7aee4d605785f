#include "tests/platform/macos/fakes/RunningApplications.h"

#include <utility>

#include "platform/macos/RunningApplications.h"

namespace orvalen {

namespace {

std::function<bool(std::string_view)> answer;

} // namespace

void fake::setRunningElsewhere(std::function<bool(std::string_view)> newAnswer)
{
    answer = std::move(newAnswer);
}

bool isRunningElsewhere(std::string_view bundleIdentifier)
{
    return answer && answer(bundleIdentifier);
}

} // namespace orvalen
