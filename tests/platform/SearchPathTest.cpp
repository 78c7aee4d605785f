#include "platform/posix/SearchPath.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;
using search_path::RelativeFolders;

class SearchPathTest : public ::testing::Test
{
protected:
    SearchPathTest()
    {
        fs::create_directory(folder / "first");
        fs::create_directory(folder / "second");
    }

    std::string install(const char *name) const { return temporary.write(name, "#!/bin/sh\n", true).string(); }

    [[nodiscard]] std::string both() const { return (folder / "first").string() + ":" + (folder / "second").string(); }

    const test::TemporaryFolder temporary;
    const fs::path folder = temporary.path();
};

TEST_F(SearchPathTest, theFirstFolderThatHasTheProgramCounts)
{
    EXPECT_EQ(search_path::find("tool", both()), std::nullopt);
    const auto second = install("second/tool");
    EXPECT_EQ(search_path::find("tool", both()), second);
    const auto first = install("first/tool");
    EXPECT_EQ(search_path::find("tool", both()), first);
    EXPECT_EQ(search_path::find("other", both()), std::nullopt);
    EXPECT_EQ(search_path::find("tool", ""), std::nullopt);
    EXPECT_EQ(search_path::find("tool", "::/nowhere:"), std::nullopt);
}

TEST_F(SearchPathTest, whatCannotBeRunIsPassedOver)
{
    fs::create_directory(folder / "first/tool");
    const auto second = install("second/tool");
    EXPECT_EQ(search_path::find("tool", both()), second);
    fs::remove(folder / "first/tool");
    std::ofstream(folder / "first/tool") << "text";
    EXPECT_EQ(search_path::find("tool", both()), second);
    EXPECT_FALSE(search_path::isProgram((folder / "first/tool").string()));
    EXPECT_FALSE(search_path::isProgram(folder.string()));
    EXPECT_FALSE(search_path::isProgram(""));
    EXPECT_TRUE(search_path::isProgram(second));
}

TEST_F(SearchPathTest, aLinkIsAsGoodAsWhatItLeadsTo)
{
    fs::create_symlink(install("second/tool"), folder / "first/tool");
    EXPECT_EQ(search_path::find("tool", both()), folder / "first/tool");
    fs::remove(folder / "second/tool");
    EXPECT_EQ(search_path::find("tool", both()), std::nullopt);
}

TEST_F(SearchPathTest, whereWeStandCountsOnlyWhereThatIsWanted)
{
    install("first/tool");
    const auto before = fs::current_path();
    fs::current_path(folder / "first");
    for (const auto *const path : {":/nowhere", ".:/nowhere", "../first"}) {
        EXPECT_EQ(search_path::find("tool", path), std::nullopt);
        EXPECT_TRUE(search_path::find("tool", path, RelativeFolders::follow)) << path;
    }
    EXPECT_EQ(search_path::find("tool", ":", RelativeFolders::follow), "./tool");
    fs::current_path(before);
}

} // namespace
} // namespace orvalen
