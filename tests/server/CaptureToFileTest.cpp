#include "streaming/server/CaptureToFile.h"

#include <filesystem>
#include <limits>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;

class CaptureToFileTest : public testing::Test
{
protected:
    /// A script that also writes its arguments to "log".
    void commandIs(std::string_view script)
    {
        folder.write("screencapture",
                     "#!/bin/sh\necho \"$@\" >>" + (folder / "log").string() + "\nfor file; do :; done\n" +
                         std::string(script),
                     true);
    }

    [[nodiscard]] std::string fileOf(std::string_view number) const { return prefix + std::string(number) + ".jpg"; }
    [[nodiscard]] std::string log() const { return test::contentsOf(folder / "log"); }

    const test::TemporaryFolder folder;
    const test::FirstOnSearchPath onSearchPath{folder.path()};
    const std::string prefix = (folder / "disp_").string();
    std::mutex descriptors;
    CaptureCommand command{"", descriptors};
    CaptureToFile source{command, prefix};
};

TEST_F(CaptureToFileTest, namesOnlyDisplaysBeyondTheMainOne)
{
    commandIs("printf picture >\"$file\"");
    for (const std::int64_t display :
         {std::int64_t(1), std::int64_t(2), std::int64_t(0), std::int64_t(-1), std::numeric_limits<std::int64_t>::max(),
          std::numeric_limits<std::int64_t>::min()}) {
        const auto capture = source.capture(display);
        EXPECT_TRUE(capture.succeeded);
        EXPECT_EQ(capture.frame.bytes(), "picture");
    }
    EXPECT_EQ(log(), "-x -t jpg " + fileOf("1") + "\n" + "-x -t jpg -D 2 " + fileOf("2") + "\n" + "-x -t jpg " +
                         fileOf("0") + "\n" + "-x -t jpg " + fileOf("-1") + "\n" + "-x -t jpg -D 9223372036854775807 " +
                         fileOf("9223372036854775807") + "\n" + "-x -t jpg " + fileOf("-9223372036854775808") + "\n");
}

TEST_F(CaptureToFileTest, aFailureBringsNoFrame)
{
    commandIs("printf picture >\"$file\"; exit 1");
    const auto capture = source.capture(1);
    EXPECT_FALSE(capture.succeeded);
    EXPECT_TRUE(capture.frame.isEmpty());
}

TEST_F(CaptureToFileTest, successWithoutAFileIsSuccess)
{
    commandIs("exit 0");
    EXPECT_TRUE(source.capture(1).succeeded);
    EXPECT_TRUE(source.capture(1).frame.isEmpty());
    commandIs(": >\"$file\"");
    EXPECT_TRUE(source.capture(1).succeeded);
    EXPECT_TRUE(source.capture(1).frame.isEmpty());
}

TEST_F(CaptureToFileTest, anEarlierFileIsServedAsIfNew)
{
    folder.write("disp_2.jpg", "earlier");
    commandIs("exit 0");
    EXPECT_EQ(source.capture(2).frame.bytes(), "earlier");
}

TEST_F(CaptureToFileTest, nothingIsRunWhereSomethingElseHasTheName)
{
    commandIs("printf picture >\"$file\"");
    folder.write("secret", "secret");
    fs::create_symlink(folder / "secret", fileOf("1"));
    fs::create_directory(fileOf("2"));
    ASSERT_EQ(mkfifo(fileOf("3").c_str(), 0600), 0);
    fs::create_hard_link(folder / "secret", fileOf("4"));
    fs::create_symlink(folder / "nowhere", fileOf("5"));
    for (int display = 1; display <= 5; ++display) {
        const auto capture = source.capture(display);
        EXPECT_FALSE(capture.succeeded) << display;
        EXPECT_TRUE(capture.frame.isEmpty()) << display;
    }
    EXPECT_EQ(log(), "");
    EXPECT_EQ(test::contentsOf(folder / "secret"), "secret");
}

TEST_F(CaptureToFileTest, whatTheCommandPutsThereIsNotFollowed)
{
    const auto secret = folder.write("secret", "secret");
    commandIs("ln -s " + secret.string() + " \"$file\"");
    const auto capture = source.capture(1);
    EXPECT_TRUE(capture.succeeded);
    EXPECT_TRUE(capture.frame.isEmpty());
}

} // namespace
} // namespace orvalen
