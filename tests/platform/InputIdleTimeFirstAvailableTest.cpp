#include "platform/posix/InputIdleTimeFirstAvailable.h"

#include <gmock/gmock.h>

namespace orvalen {
namespace {

using namespace std::chrono_literals;

struct Way : InputIdleTime
{
    explicit Way(std::optional<std::chrono::duration<double>> idle) : idle(idle) {}
    std::optional<std::chrono::duration<double>> sinceLastInput() override
    {
        ++questions;
        return idle;
    }
    std::optional<std::chrono::duration<double>> idle;
    int questions = 0;
};

struct InputIdleTimeWays : ::testing::Test
{
    Way &add(std::optional<std::chrono::duration<double>> idle)
    {
        auto way = std::make_unique<Way>(idle);
        auto &reference = *way;
        ways.push_back(std::move(way));
        return reference;
    }
    std::vector<std::unique_ptr<InputIdleTime>> ways;
};

TEST_F(InputIdleTimeWays, theFirstThatCanAnswers)
{
    add(std::nullopt);
    add(2s);
    auto &last = add(3s);
    InputIdleTimeFirstAvailable idle(std::move(ways));
    EXPECT_EQ(idle.sinceLastInput(), 2s);
    EXPECT_EQ(last.questions, 0);
}

TEST_F(InputIdleTimeWays, oneMayLoseItsVoiceAndFindIt)
{
    auto &first = add(1s);
    add(2s);
    InputIdleTimeFirstAvailable idle(std::move(ways));
    EXPECT_EQ(idle.sinceLastInput(), 1s);
    first.idle = std::nullopt;
    EXPECT_EQ(idle.sinceLastInput(), 2s);
    first.idle = 0s;
    EXPECT_EQ(idle.sinceLastInput(), 0s);
}

TEST_F(InputIdleTimeWays, whereNoneCanThereIsNoIdleTime)
{
    EXPECT_EQ(InputIdleTimeFirstAvailable({}).sinceLastInput(), std::nullopt);
    add(std::nullopt);
    add(std::nullopt);
    EXPECT_EQ(InputIdleTimeFirstAvailable(std::move(ways)).sinceLastInput(), std::nullopt);
}

} // namespace
} // namespace orvalen
