#include "ui/kit/SliderScale.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace orvalen::kit {
namespace {

using ::testing::ElementsAre;

constexpr SliderScale degrees{.from = 38.0, .to = 44.0, .step = 0.5};
constexpr SliderScale minutes{.from = 1.0, .to = 10.0, .step = 1.0};

std::vector<double> climbed(const SliderScale &scale)
{
    std::vector<double> places{scale.from};
    for (double next = scale.moved(scale.from, 1); next != places.back(); next = scale.moved(next, 1))
        places.push_back(next);
    return places;
}

TEST(SliderScale, itsPlacesAreStepsFromTheLowerEnd)
{
    EXPECT_THAT(climbed(degrees),
                ElementsAre(38.0, 38.5, 39.0, 39.5, 40.0, 40.5, 41.0, 41.5, 42.0, 42.5, 43.0, 43.5, 44.0));
    EXPECT_THAT(climbed(minutes), ElementsAre(1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0));
    EXPECT_EQ(degrees.steps(), 12);
    EXPECT_EQ(minutes.steps(), 9);
}

TEST(SliderScale, whatIsNoNumberIsAtTheLowerEnd)
{
    constexpr auto none = std::numeric_limits<double>::quiet_NaN();
    constexpr auto infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(degrees.fraction(none), 0.0);
    EXPECT_EQ(degrees.nearest(none), 38.0);
    EXPECT_EQ(degrees.moved(none, 1), 38.0);
    EXPECT_EQ(degrees.fraction(infinite), 1.0); // beyond the upper end
    EXPECT_EQ(degrees.fraction(-infinite), 0.0);
}

TEST(SliderScale, theNearestPlace)
{
    EXPECT_EQ(degrees.nearest(40.2), 40.0);
    EXPECT_EQ(degrees.nearest(40.3), 40.5);
    EXPECT_EQ(degrees.nearest(45.3), 44.0);
    EXPECT_EQ(degrees.nearest(-10.0), 38.0);
    EXPECT_EQ(minutes.nearest(9.9), 10.0);
}

TEST(SliderScale, aValueBetweenPlacesComesToOneWithItsFirstStep)
{
    EXPECT_EQ(degrees.moved(40.2, 1), 40.5);
    EXPECT_EQ(degrees.moved(40.2, -1), 40.0);
    EXPECT_EQ(degrees.moved(40.2, 2), 41.0);
    EXPECT_EQ(minutes.moved(9.9, 1), 10.0);
    EXPECT_EQ(minutes.moved(9.9, -1), 9.0);
    EXPECT_EQ(minutes.moved(3.0 + 1e-12, 1), 4.0); // as good as on its place
    EXPECT_EQ(minutes.moved(3.0 - 1e-12, -1), 2.0);
}

TEST(SliderScale, aValueBeyondThePlacesComesBackToTheEndAndGoesNoFurther)
{
    EXPECT_EQ(degrees.moved(45.3, -1), 44.0);
    EXPECT_EQ(degrees.moved(45.3, -2), 43.5);
    EXPECT_EQ(degrees.moved(45.3, 1), 45.3);
    EXPECT_EQ(degrees.moved(20.0, 1), 38.0);
    EXPECT_EQ(degrees.moved(20.0, -1), 20.0);
    EXPECT_EQ(degrees.moved(1e300, -1), 44.0);
    EXPECT_EQ(minutes.moved(0.5, 1), 1.0);
    EXPECT_EQ(degrees.moved(44.0, 1), 44.0);
    EXPECT_EQ(degrees.moved(38.0, -1), 38.0);
}

TEST(SliderScale, whereAValueStands)
{
    EXPECT_EQ(degrees.fraction(38.0), 0.0);
    EXPECT_EQ(degrees.fraction(41.0), 0.5);
    EXPECT_EQ(degrees.fraction(44.0), 1.0);
    EXPECT_EQ(degrees.fraction(45.3), 1.0);
    EXPECT_EQ(degrees.fraction(0.0), 0.0);
    EXPECT_EQ(degrees.at(0.51), 41.0);
    EXPECT_EQ(degrees.at(-3.0), 38.0);
    EXPECT_EQ(degrees.at(3.0), 44.0);
}

} // namespace
} // namespace orvalen::kit
