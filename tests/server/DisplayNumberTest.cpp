#include "streaming/server/DisplayNumber.h"

#include <limits>

#include <gtest/gtest.h>

namespace orvalen {
namespace {

TEST(DisplayNumber, isTheMainDisplayUnlessAskedFor)
{
    for (const auto *query : {"", "d", "d=", "t=5", "d=&t=5", "dd=2", "D=2", "=2", "&&", "x=d=2", "%64x=2", "d%=2"})
        EXPECT_EQ(displayNumber(query), 1) << query;
}

TEST(DisplayNumber, isADecimalInteger)
{
    EXPECT_EQ(displayNumber("d=2"), 2);
    EXPECT_EQ(displayNumber("d=2&t=1763733600123"), 2);
    EXPECT_EQ(displayNumber("t=1763733600123&d=2"), 2);
    EXPECT_EQ(displayNumber("&d=2&"), 2);
    EXPECT_EQ(displayNumber("d=0"), 0);
    EXPECT_EQ(displayNumber("d=-3"), -3);
    EXPECT_EQ(displayNumber("d=%2B3"), 3);
    EXPECT_EQ(displayNumber("d=-0"), 0);
    EXPECT_EQ(displayNumber("d=000000000000000000000000000000000000000000002"), 2);
}

TEST(DisplayNumber, isTheFirstOfSeveral)
{
    EXPECT_EQ(displayNumber("d=2&d=3"), 2);
    EXPECT_EQ(displayNumber("d=&d=3"), 1);
    EXPECT_EQ(displayNumber("d&d=3"), 1);
    EXPECT_EQ(displayNumber("d=x&d=3"), 1);
}

TEST(DisplayNumber, mayHaveBlanksAround)
{
    EXPECT_EQ(displayNumber("d=+2"), 2); // a plus sign is a blank
    EXPECT_EQ(displayNumber("d=++2++"), 2);
    EXPECT_EQ(displayNumber("d=%202%20"), 2);
    EXPECT_EQ(displayNumber("d=%09%0d%0a%0b%0c-2%09"), -2);
    EXPECT_EQ(displayNumber("d=+"), 1);
    EXPECT_EQ(displayNumber("d=2+3"), 1);
    EXPECT_EQ(displayNumber("d=-+2"), 1);
}

TEST(DisplayNumber, mayBeEncoded)
{
    EXPECT_EQ(displayNumber("%64=%32"), 2);
    EXPECT_EQ(displayNumber("d=%31%32"), 12);
    EXPECT_EQ(displayNumber("d=%2d7"), -7);
    EXPECT_EQ(displayNumber("d=%"), 1);
    EXPECT_EQ(displayNumber("d=2%"), 1);
    EXPECT_EQ(displayNumber("d=2%3"), 1);
    EXPECT_EQ(displayNumber("d=%zz"), 1);
    EXPECT_EQ(displayNumber("d=%2532"), 1); // decoded once
    EXPECT_EQ(displayNumber("d=2%00"), 1);
}

TEST(DisplayNumber, hasNothingElseInIt)
{
    for (const auto *query :
         {"d=abc", "d=2x", "d=x2", "d=1_0", "d=2.0", "d=2,0", "d=0x2", "d=1e1", "d=--2", "d=+-%2B2", "d=%2B-2", "d=-",
          "d=%2B", "d=2=", "d==2", "d=2;t", "d=\xd9\xa2", "d=%EF%BC%92", "d=2%C2%A0"})
        EXPECT_EQ(displayNumber(query), 1) << query;
}

TEST(DisplayNumber, fitsInto64Bits)
{
    EXPECT_EQ(displayNumber("d=9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(displayNumber("d=9223372036854775808"), 1);
    EXPECT_EQ(displayNumber("d=-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(displayNumber("d=-9223372036854775809"), 1);
    EXPECT_EQ(displayNumber("d=92233720368547758070"), 1);
    EXPECT_EQ(displayNumber("d=18446744073709551618"), 1); // two, if the high bits were lost
}

} // namespace
} // namespace orvalen
