#include "core/MakerSite.h"

#include <gtest/gtest.h>

#include <string>

namespace orvalen {
namespace {

TEST(MakerSite, isOneThatNobodyCanOwn)
{
    EXPECT_TRUE(makerDomain.ends_with(".example"));
    EXPECT_EQ(makerDomain.find('/'), std::string_view::npos);
}

TEST(MakerSite, itsAddressesAreThoseOfTheDomain)
{
    EXPECT_EQ(makerSite, "https://" + std::string(makerDomain) + "/");
    EXPECT_EQ(makerToolsSite, "https://tools." + std::string(makerDomain) + "/");
}

TEST(MakerSite, aPageLiesBelowItsSite)
{
    EXPECT_EQ(sitePage(makerSite, "services"), "https://" + std::string(makerDomain) + "/services");
    EXPECT_EQ(sitePage(makerToolsSite, ""), makerToolsSite);
}

TEST(MakerSite, isNamedAsPeopleWriteIt)
{
    EXPECT_EQ(siteName(makerSite), makerDomain);
    EXPECT_EQ(siteName(makerToolsSite), "tools." + std::string(makerDomain));
    EXPECT_EQ(siteName("https://example.org/a/b/"), "example.org/a/b");
    EXPECT_EQ(siteName("example.org"), "example.org");
    EXPECT_EQ(siteName(""), "");
}

} // namespace
} // namespace orvalen
