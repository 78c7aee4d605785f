#include "platform/posix/TextFilesPosix.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;

class TextFilesPosixTest : public ::testing::Test
{
protected:
    const test::TemporaryFolder temporary;
    const fs::path folder = temporary.path(), file = folder / "file";
    TextFilesPosix files;
};

TEST_F(TextFilesPosixTest, whatIsWrittenIsReadAndRemoved)
{
    EXPECT_EQ(files.read(file), std::nullopt);
    EXPECT_TRUE(files.replace(file, "#!/bin/true\n"));
    EXPECT_EQ(files.read(file), "#!/bin/true\n");
    files.remove(file);
    EXPECT_FALSE(fs::exists(file));
    files.remove(file); // absent: nothing happens
}

TEST_F(TextFilesPosixTest, onlyItsOwnerMayReadAndRunIt)
{
    ASSERT_TRUE(files.replace(file, "x"));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_all);
}

TEST_F(TextFilesPosixTest, aLinkIsReplacedNotFollowed)
{
    std::ofstream(folder / "target") << "precious";
    fs::create_symlink(folder / "target", file);
    EXPECT_EQ(files.read(file), std::nullopt);
    EXPECT_TRUE(files.replace(file, "ours"));
    EXPECT_EQ(files.read(folder / "target"), "precious");
}

TEST_F(TextFilesPosixTest, whatCannotBeWrittenIsSaid)
{
    EXPECT_FALSE(files.replace(folder / "nowhere" / "file", "x"));
    fs::create_directory(file);
    EXPECT_FALSE(files.replace(file, "x"));
    files.remove(file);
    EXPECT_TRUE(fs::is_directory(file));
}

TEST_F(TextFilesPosixTest, sixtyFourKilobytesAreTheMost)
{
    ASSERT_TRUE(files.replace(file, std::string(65536, 'x')));
    EXPECT_EQ(files.read(file), std::string(65536, 'x'));
    ASSERT_TRUE(files.replace(file, std::string(65537, 'x')));
    EXPECT_EQ(files.read(file), std::nullopt);
}

} // namespace
} // namespace orvalen
