#include "platform/macos/LocalisedDatesCoreFoundation.h"

#include "tests/platform/macos/CallsTest.h"
#include "tests/platform/macos/fakes/DateFormatter.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

class LocalisedDatesCoreFoundationTest : public test::CallsTest
{
protected:
    LocalisedDatesCoreFoundationTest()
    {
        fake::dateFormatter() = {.present = 816'467'305.25, .text = "November 15, 2026 at 9:28:25\u202fPM"};
    }

    LocalisedDatesCoreFoundation dates;
};

TEST_F(LocalisedDatesCoreFoundationTest, thePresentIsWrittenInTheUsersLocaleInLongAndMediumStyle)
{
    EXPECT_EQ(dates.now(), "November 15, 2026 at 9:28:25\u202fPM");
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("CFTimeZoneResetSystem", "CFLocaleCopyCurrent",
                            "CFDateFormatterCreate default user's-locale 3 2", "CFAbsoluteTimeGetCurrent",
                            "CFDateFormatterCreateStringWithAbsoluteTime default formatter 816467305.250"));
}

TEST_F(LocalisedDatesCoreFoundationTest, aTravellerIsFollowed)
{
    static_cast<void>(dates.now());
    fake::dateFormatter().present += 3600.0;
    fake::dateFormatter().text = "2026年11月16日 6:28:25";
    static_cast<void>(fake::takeCalls());
    EXPECT_EQ(dates.now(), "2026年11月16日 6:28:25");
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("CFTimeZoneResetSystem", "CFLocaleCopyCurrent",
                            "CFDateFormatterCreate default user's-locale 3 2", "CFAbsoluteTimeGetCurrent",
                            "CFDateFormatterCreateStringWithAbsoluteTime default formatter 816470905.250"));
}

TEST_F(LocalisedDatesCoreFoundationTest, withoutTheUsersLocaleTheSystemsIsTaken)
{
    fake::dateFormatter().hasLocale = false;
    fake::dateFormatter().text = "2026 Nov 15 21:28:25";
    EXPECT_EQ(dates.now(), "2026 Nov 15 21:28:25");
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("CFTimeZoneResetSystem", "CFLocaleCopyCurrent", "CFDateFormatterCreate default null 3 2",
                            "CFAbsoluteTimeGetCurrent",
                            "CFDateFormatterCreateStringWithAbsoluteTime default formatter 816467305.250"));
}

TEST_F(LocalisedDatesCoreFoundationTest, withoutAFormatterTheDateIsEmpty)
{
    fake::dateFormatter().isMade = false;
    EXPECT_EQ(dates.now(), "");
    EXPECT_THAT(fake::takeCalls(), ElementsAre("CFTimeZoneResetSystem", "CFLocaleCopyCurrent",
                                               "CFDateFormatterCreate default user's-locale 3 2"));
}

TEST_F(LocalisedDatesCoreFoundationTest, aDateThatCannotBeWrittenIsEmpty)
{
    fake::dateFormatter().text = std::nullopt;
    EXPECT_EQ(dates.now(), "");
    EXPECT_EQ(fake::takeCalls().size(), 5u);
}

} // namespace
} // namespace orvalen
