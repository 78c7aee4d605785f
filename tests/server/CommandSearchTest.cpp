#include "streaming/server/CommandSearch.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;

class CommandSearchTest : public testing::Test
{
protected:
    CommandSearchTest()
    {
        for (const auto *name : {"first", "second", "own"})
            fs::create_directory(folder / name);
    }

    [[nodiscard]] std::string in(std::string_view name) const { return (folder / name).string(); }
    [[nodiscard]] std::string bothFolders() const { return in("first") + ":" + in("second"); }

    const test::TemporaryFolder folder;
    CommandSearch search{"shoot", in("own")};
};

TEST_F(CommandSearchTest, theFirstOfTheSearchPathCounts)
{
    const auto second = folder.write("second/shoot", "#!/bin/sh\n", true);
    EXPECT_EQ(search.find(bothFolders()), second);
    const auto first = folder.write("first/shoot", "#!/bin/sh\n", true);
    EXPECT_EQ(search.find(bothFolders()), first);
}

TEST_F(CommandSearchTest, theOwnFolderIsTheLastResort)
{
    EXPECT_EQ(search.find(bothFolders()), nullptr);
    const auto own = folder.write("own/shoot", "#!/bin/sh\n", true);
    EXPECT_EQ(search.find(bothFolders()), own);
    EXPECT_EQ(CommandSearch("shoot", "").find(bothFolders()), nullptr);
    const auto second = folder.write("second/shoot", "#!/bin/sh\n", true);
    EXPECT_EQ(search.find(bothFolders()), second);
}

TEST_F(CommandSearchTest, whatCannotBeRunIsPassedOver)
{
    fs::create_directory(folder / "first/shoot");
    const auto second = folder.write("second/shoot", "text");
    fs::permissions(second, fs::perms::owner_read);
    const auto own = folder.write("own/shoot", "#!/bin/sh\n", true);
    EXPECT_EQ(search.find(bothFolders()), own);
}

TEST_F(CommandSearchTest, anEmptyEntryIsTheCurrentFolder)
{
    EXPECT_EQ(search.find(""), nullptr);
    const auto before = fs::current_path();
    fs::current_path(folder / "first");
    folder.write("first/shoot", "#!/bin/sh\n", true);
    EXPECT_STREQ(search.find(in("second") + ":"), "./shoot");
    fs::current_path(before);
}

TEST_F(CommandSearchTest, theOwnFolderIsWhereTheProgramReallyLies)
{
    const auto program = folder.write("own/server", "#!/bin/sh\n", true);
    fs::create_symlink(program, folder / "first/server");
    const auto own = fs::canonical(folder / "own").string();
    EXPECT_EQ(folderOfProgram(program.string(), ""), own);
    EXPECT_EQ(folderOfProgram((folder / "first/server").string(), ""), own);
    EXPECT_EQ(folderOfProgram("server", bothFolders()), own);
    EXPECT_EQ(folderOfProgram("server", in("second")), "");
    EXPECT_EQ(folderOfProgram("", bothFolders()), "");
    EXPECT_EQ(folderOfProgram(in("nowhere/server"), ""), "");
}

} // namespace
} // namespace orvalen
