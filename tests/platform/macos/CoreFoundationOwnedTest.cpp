#include "platform/macos/CoreFoundationOwned.h"

#include <gtest/gtest.h>

#include "tests/platform/macos/fakes/CoreFoundation.h"

namespace orvalen {
namespace {

using corefoundation::Owned;

TEST(CoreFoundationOwned, releasesOnce)
{
    {
        Owned<CFTypeRef> one(fake::makeString("a"));
        Owned<CFTypeRef> other(std::move(one));
        EXPECT_FALSE(one); // NOLINT(bugprone-use-after-move): that is what is asked
        EXPECT_TRUE(other);
        EXPECT_EQ(fake::living(), 1);
        other = Owned<CFTypeRef>(fake::makeString("b"));
        EXPECT_EQ(fake::living(), 1);
    }
    EXPECT_EQ(fake::living(), 0);
}

TEST(CoreFoundationOwned, releasesNothingWhereThereIsNothing)
{
    const Owned<CFTypeRef> null(nullptr);
    const Owned<CFTypeRef> none;
    EXPECT_FALSE(null);
    EXPECT_FALSE(none);
    EXPECT_EQ(none.get(), nullptr);
}

TEST(CoreFoundationOwned, keepsTextAsItIs)
{
    for (const std::string text : {"", "PMU tdie1", "39°", "🛡️ Orvalen"})
        EXPECT_EQ(corefoundation::text(corefoundation::makeString(text).get()), text);
    EXPECT_EQ(fake::living(), 0);
}

TEST(CoreFoundationOwned, readsNoTextFromWhatIsNone)
{
    const Owned<CFTypeRef> number(fake::makeNumber(std::int64_t{5}));
    EXPECT_EQ(corefoundation::text(number.get()), "");
    EXPECT_EQ(corefoundation::text(nullptr), "");
    EXPECT_FALSE(corefoundation::makeString("\xFF"));
}

TEST(CoreFoundationOwned, knowsAnObjectsType)
{
    const Owned<CFTypeRef> number(fake::makeNumber(1.5));
    EXPECT_TRUE(corefoundation::isOf(CFNumberGetTypeID(), number.get()));
    EXPECT_FALSE(corefoundation::isOf(CFStringGetTypeID(), number.get()));
    EXPECT_FALSE(corefoundation::isOf(CFBooleanGetTypeID(), number.get()));
    EXPECT_FALSE(corefoundation::isOf(CFStringGetTypeID(), nullptr));
}

} // namespace
} // namespace orvalen
