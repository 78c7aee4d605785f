#include "core/Decimals.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace orvalen {
namespace {

std::string printed(double value, int decimals = 1)
{
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    return text.data();
}

TEST(OneDecimal, isRoundedByTheStoredValueNotByTheOneThatWasWritten)
{
    EXPECT_EQ(oneDecimal(0.25), "0.2") << "a tie goes to the even digit";
    EXPECT_EQ(oneDecimal(0.75), "0.8");
    EXPECT_EQ(oneDecimal(37.25), "37.2");
    EXPECT_EQ(oneDecimal(0.15), "0.1") << "stored a little below";
    EXPECT_EQ(oneDecimal(0.35), "0.3") << "stored a little below";
    EXPECT_EQ(oneDecimal(36.95), "37.0") << "stored a little above";
    EXPECT_EQ(oneDecimal(39.95), "40.0") << "stored a little above";
    EXPECT_EQ(oneDecimal(99.96), "100.0");
    EXPECT_EQ(oneDecimal(41), "41.0");
    EXPECT_EQ(oneDecimal(0), "0.0");
    EXPECT_EQ(oneDecimal(-0.04), "-0.0");
    EXPECT_EQ(oneDecimal(std::nan("")), "nan");
}

TEST(NoDecimals, isWhatPrintfSays)
{
    EXPECT_EQ(noDecimals(38.5), "38") << "a tie goes to the even digit";
    EXPECT_EQ(noDecimals(39.5), "40");
    EXPECT_EQ(noDecimals(-0.4), "-0");
    EXPECT_EQ(noDecimals(std::nan("")), "nan");
    for (double value = -10.0; value < 130.0; value += 0.0625)
        for (const double each : {value, std::nextafter(value, 200.0), std::nextafter(value, -200.0)})
            ASSERT_EQ(noDecimals(each), printed(each, 0));
}

TEST(OneDecimal, isWhatPrintfSays)
{
    std::mt19937_64 random(6);
    std::uniform_real_distribution<double> temperature(-10.0, 130.0);
    for (int i = 0; i < 20'000; ++i) {
        const double value = temperature(random);
        const double tie = std::round(value * 10.0) / 10.0 + 0.05; // next to where the digit changes
        for (const double each : {value, tie, std::nextafter(tie, 200.0), std::nextafter(tie, -200.0)})
            ASSERT_EQ(oneDecimal(each), printed(each)) << i;
    }
    for (int i = 0; i < 20'000; ++i) {
        const std::uint64_t bits = random();
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isnan(value)) {
            ASSERT_EQ(oneDecimal(value), printed(value)) << i;
        }
    }
    EXPECT_EQ(oneDecimal(std::numeric_limits<double>::lowest()), printed(std::numeric_limits<double>::lowest()));
}

} // namespace
} // namespace orvalen
