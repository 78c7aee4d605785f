#include "core/Text.h"

#include <gtest/gtest.h>

#include <string>

namespace orvalen {
namespace {

TEST(Text, onlyWellFormedBytesAreUtf8)
{
    for (const auto *bytes : {"", "plain", "Größe", "日本語", "🛡️", "\u0085"})
        EXPECT_TRUE(text::isUtf8(bytes)) << bytes;
    for (const auto *bytes : {"\xFF", "\xC3", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\x80"})
        EXPECT_FALSE(text::isUtf8(bytes)) << bytes;
    EXPECT_TRUE(text::isUtf8(std::string("a\0b", 3)));
}

TEST(Text, trimmingTakesWhiteSpaceFromBothEndsAndLeavesTheInside)
{
    EXPECT_EQ(text::trimmed(" \t a b \r\n"), "a b");
    EXPECT_EQ(text::trimmed("\u2009ä\u205F"), "ä");
    EXPECT_EQ(text::trimmed("a"), "a");
    EXPECT_EQ(text::trimmed(" \n\u3000"), "");
    EXPECT_EQ(text::trimmed(""), "");
    EXPECT_EQ(text::trimmed("\u200Ba"), "\u200Ba") << "a space of no width is none";
    EXPECT_EQ(text::trimmed(" a \xFF"), std::nullopt);
}

TEST(Text, smallLettersOfEveryScript)
{
    EXPECT_EQ(text::lowerCased("MacBook-AIR 7"), "macbook-air 7");
    EXPECT_EQ(text::lowerCased("ÄÖÜ ΣΑΣ Ж Ⅷ"), "äöü σας ж ⅷ");
    EXPECT_EQ(text::lowerCased("İI"), "i\u0307i") << "one letter that becomes two, and no Turkish";
    EXPECT_EQ(text::lowerCased("𐐀"), "𐐨") << "beyond the first plane";
    EXPECT_EQ(text::lowerCased(""), "");
    EXPECT_EQ(text::lowerCased("A\xFF"
                               "B"),
              "a\uFFFDb");
}

TEST(Text, aPictureIsASignThatComesInColours)
{
    for (const char32_t sign : {U'⚡', U'💡'})
        EXPECT_TRUE(text::isPicture(sign));
    for (const char32_t sign : {U'⚠', U'⌘', U'↗', U'•', U'1', U'#', U'°'}) // some of them may be asked to
        EXPECT_FALSE(text::isPicture(sign));
}

} // namespace
} // namespace orvalen
