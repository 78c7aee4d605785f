#include "streaming/PortFile.h"

#include <gtest/gtest.h>

#include <string>

namespace orvalen {
namespace {

TEST(PortFile, aNumberAsTheServerWritesIt)
{
    EXPECT_EQ(portFrom("8999"), 8999);
    EXPECT_EQ(portFrom("8088"), 8088);
}

TEST(PortFile, whiteSpaceAndLineEndsAroundItAreNoPartOfIt)
{
    EXPECT_EQ(portFrom(" 9000\n"), 9000);
    EXPECT_EQ(portFrom("\r\n\t 9000 \v\f\n\n"), 9000);
    EXPECT_EQ(portFrom("\u00A0\u20289000\u0085\u3000"), 9000) << "those of every script";
}

TEST(PortFile, oneSignMayStandBeforeTheDigits)
{
    EXPECT_EQ(portFrom("+9000"), 9000);
    EXPECT_EQ(portFrom("-9000"), -9000);
    EXPECT_EQ(portFrom("-0"), 0);
    EXPECT_EQ(portFrom("+00009000"), 9000);
}

TEST(PortFile, everyIntegerIsANumberWhetherOrNotThereIsSuchAPort)
{
    EXPECT_EQ(portFrom("0"), 0);
    EXPECT_EQ(portFrom("65536"), 65536);
    EXPECT_EQ(portFrom("2147483647"), 2147483647);
    EXPECT_EQ(portFrom("-2147483648"), -2147483647 - 1);
}

TEST(PortFile, whatOverflowsIsNone)
{
    for (const auto *text : {"2147483648", "-2147483649", "9223372036854775808", "99999999999999999999999999"})
        EXPECT_EQ(portFrom(text), std::nullopt) << text;
}

TEST(PortFile, anythingElseIsNone)
{
    for (const auto *text : {"",       " \n",    "+",        "-",     "+-9000",   "-+9000",    "--1",       "++1",
                             "- 9000", "+ 9000", "90 00",    "9000x", "x9000",    "0x2328",    "9e3",       "9000.0",
                             "9_000",  "9,000",  "８９９９", "٨٩٩٩",  "9000\xFF", "\xFF 9000", "9000\n9001"})
        EXPECT_EQ(portFrom(text), std::nullopt) << text;
    EXPECT_EQ(portFrom(std::string("9000\0", 5)), std::nullopt) << "a zero byte";
    EXPECT_EQ(portFrom(std::string(65536, ' ')), std::nullopt);
    EXPECT_EQ(portFrom(std::string(65536, '9')), std::nullopt);
}

} // namespace
} // namespace orvalen
