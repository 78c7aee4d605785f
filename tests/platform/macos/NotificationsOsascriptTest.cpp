#include "platform/macos/NotificationsOsascript.h"

#include "tests/platform/macos/CommandsTest.h"

namespace orvalen {
namespace {

const std::string interpreter = "/usr/bin/osascript";

struct NotificationsOsascriptTest : test::CommandsTest
{
    NotificationsOsascriptTest() { processes.failing[interpreter] = 0; } // who asks how it went ends it

    NotificationsOsascript notifications{processes};
};

TEST_F(NotificationsOsascriptTest, theMessageComesBeforeTheTitleInAScriptOfOneLine)
{
    notifications.post("Orvalen", "Display Ready! Temperature: 40.0°C");
    expectStarted(interpreter, {"-e", "display notification \"Display Ready! Temperature: 40.0\xC2\xB0"
                                      "C\" with title \"Orvalen\""});
}

TEST_F(NotificationsOsascriptTest, nothingInTheTextsIsChanged)
{
    notifications.post("A \"title\"", "one \\ and \"two\"\n$HOME %s");
    expectStarted(interpreter,
                  {"-e", "display notification \"one \\ and \"two\"\n$HOME %s\" with title \"A \"title\"\""});
}

TEST_F(NotificationsOsascriptTest, emptyTextsAreStillQuoted)
{
    notifications.post("", "");
    expectStarted(interpreter, {"-e", R"(display notification "" with title "")"});
}

TEST_F(NotificationsOsascriptTest, withoutTheInterpreterNothingHappens)
{
    processes.missing.insert(interpreter);
    EXPECT_NO_THROW(notifications.post("Orvalen", "Hello."));
    EXPECT_EQ(diary.take().size(), 1U) << "once is enough";
}

TEST_F(NotificationsOsascriptTest, whereNothingCanBeStartedNothingHappens)
{
    exhaustTheSystem();
    EXPECT_NO_THROW(notifications.post("Orvalen", "Hello."));
    EXPECT_EQ(diary.take().size(), 1U);
}

} // namespace
} // namespace orvalen
