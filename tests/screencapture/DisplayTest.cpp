#include "streaming/screencapture/Display.h"

#include <gtest/gtest.h>

#include <limits>

#include "streaming/screencapture/CaptureError.h"

namespace orvalen {
namespace {

constexpr Rectangle left{0, 0, 100, 100};
constexpr Rectangle right{100, 0, 100, 100};
constexpr Rectangle belowLeft{0, 100, 100, 100};

TEST(Displays, thePrimaryOneIsTheFirstWhereverItStands)
{
    EXPECT_EQ(inOrder({{left, false}, {right, true}}), (std::vector<Display>{{right, true}, {left, false}}));
    EXPECT_EQ(inOrder({{left, true}, {right, false}}), (std::vector<Display>{{left, true}, {right, false}}));
}

TEST(Displays, theOthersAreCountedFromLeftToRightThenDownwards)
{
    EXPECT_EQ(inOrder({{right, false}, {belowLeft, false}, {left, false}}),
              (std::vector<Display>{{left, false}, {belowLeft, false}, {right, false}}));
}

TEST(Displays, thoseThatShowNothingDoNotCount)
{
    EXPECT_EQ(inOrder({{{0, 0, 0, 100}, true}, {{0, 0, 100, -1}, false}, {right, false}}),
              (std::vector<Display>{{right, false}}));
}

TEST(Displays, mirroredOnesCountEach)
{
    EXPECT_EQ(inOrder({{left, false}, {left, true}}).size(), 2U);
}

TEST(Displays, numbersBeginWithOne)
{
    const std::vector<Display> two{{left, true}, {right, false}};
    EXPECT_EQ(numbered(two, 1), two[0]);
    EXPECT_EQ(numbered(two, 2), two[1]);
}

TEST(Displays, aNumberWithoutDisplaySaysHowManyThereAre)
{
    const auto sentence = [](std::size_t count, std::uint64_t number) -> std::string {
        try {
            (void)numbered(std::vector<Display>(count), number);
            return "none";
        } catch (const CaptureError &error) {
            return error.what();
        }
    };
    EXPECT_EQ(sentence(1, 2), "There is no display 2; there is 1.");
    EXPECT_EQ(sentence(2, 0), "There is no display 0; there are 2.");
    EXPECT_EQ(sentence(2, std::numeric_limits<std::uint64_t>::max()),
              "There is no display 18446744073709551615; there are 2.");
}

TEST(Rectangles, shareWhatBothCover)
{
    EXPECT_EQ(intersection({0, 0, 10, 10}, {5, 6, 10, 10}), (Rectangle{5, 6, 5, 4}));
    EXPECT_EQ(intersection({-5, -5, 10, 10}, {0, 0, 3, 30}), (Rectangle{0, 0, 3, 5}));
    EXPECT_TRUE(intersection({0, 0, 10, 10}, {10, 0, 10, 10}).isEmpty());
    EXPECT_TRUE(intersection({0, 0, 10, 10}, {-20, 0, 10, 10}).isEmpty());
}

} // namespace
} // namespace orvalen
