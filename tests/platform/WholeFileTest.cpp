#include "platform/posix/WholeFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/TemporaryFolder.h"

namespace {

int linkError = 0; ///< Instead of giving a file a name; 0: as the system has it.

} // namespace

/// In the place of the C library's.
extern "C" int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    if (linkError == 0)
        return static_cast<int>(::syscall(SYS_linkat, fromFolder, from, toFolder, to, flags));
    errno = linkError;
    return -1;
}

namespace orvalen {
namespace {

namespace fs = std::filesystem;
using test::contentsOf;
using test::modeOf;

/// As a document of the user's.
constexpr whole_file::Kind document{.mode = {}, .isOnDisk = true};

class WholeFile : public ::testing::Test
{
protected:
    ~WholeFile() override { linkError = 0; }

    static int replace(const fs::path &path, std::string_view contents, const whole_file::Kind &kind = document)
    {
        return whole_file::replace(path, std::span(&contents, 1), kind);
    }

    [[nodiscard]] long entries() const { return std::distance(fs::directory_iterator(folder), {}); }

    const test::TemporaryFolder temporary;
    const fs::path folder = temporary.path(), file = folder / "file";
};

TEST_F(WholeFile, aDocumentIsAsReadableAsTheUsersUmaskLetsItBe)
{
    const auto before = ::umask(022);
    EXPECT_EQ(replace(file, "x"), 0);
    EXPECT_EQ(modeOf(file), 0644U);
    ::umask(077);
    EXPECT_EQ(replace(file, "x"), 0);
    EXPECT_EQ(modeOf(file), 0600U) << "not as the one before";
    ::umask(0);
    EXPECT_EQ(replace(file, "x", {.mode = 0640}), 0);
    EXPECT_EQ(modeOf(file), 0640U);
    ::umask(before);
}

TEST_F(WholeFile, anEarlierFileIsReplacedButForItsOtherNames)
{
    std::ofstream(file) << "earlier and longer";
    fs::create_hard_link(file, folder / "second");
    EXPECT_EQ(replace(file, "later"), 0);
    EXPECT_EQ(contentsOf(file), "later");
    EXPECT_EQ(contentsOf(folder / "second"), "earlier and longer");
    EXPECT_EQ(entries(), 2);
}

TEST_F(WholeFile, aLinkIsReplacedAndNotFollowed)
{
    std::ofstream(folder / "target") << "precious";
    for (const auto *target : {"target", "nothing", "file", "."}) {
        fs::remove(file);
        fs::create_symlink(target, file);
        EXPECT_EQ(replace(file, "later"), 0) << target;
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(file))) << target;
        EXPECT_EQ(contentsOf(file), "later");
    }
    EXPECT_EQ(contentsOf(folder / "target"), "precious");
    EXPECT_FALSE(fs::exists(folder / "nothing"));
    EXPECT_EQ(entries(), 2);
}

TEST_F(WholeFile, aFolderInItsPlaceStaysAndNothingIsLeftBesideIt)
{
    fs::create_directory(file);
    EXPECT_EQ(replace(file, "later"), EISDIR);
    EXPECT_TRUE(fs::is_directory(file));
    EXPECT_EQ(entries(), 1);
}

TEST_F(WholeFile, aPipeInItsPlaceHoldsNobodyUp)
{
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(replace(file, "later"), 0);
    EXPECT_EQ(contentsOf(file), "later");
}

TEST_F(WholeFile, aDiskWithoutRoomLeavesTheOldFileAndNothingElse)
{
    std::ofstream(file) << "earlier";
    const auto pid = ::fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit little{1000, 1000};
        ::setrlimit(RLIMIT_FSIZE, &little);
        std::_Exit(replace(file, std::string(5000, 'x')));
    }
    int status = 0;
    ASSERT_EQ(::waitpid(pid, &status, 0), pid);
    EXPECT_EQ(WEXITSTATUS(status), EFBIG);
    EXPECT_EQ(contentsOf(file), "earlier");
    EXPECT_EQ(entries(), 1);
}

TEST_F(WholeFile, whereAFileCannotGetANameLaterItHasOneFromTheStart)
{
    std::ofstream(file) << "earlier";
    for (const int error : {ENOENT, EPERM, EACCES, EXDEV, EOPNOTSUPP}) {
        linkError = error;
        EXPECT_EQ(replace(file, "later " + std::to_string(error)), 0);
        EXPECT_EQ(contentsOf(file), "later " + std::to_string(error));
        EXPECT_EQ(entries(), 1);
    }
}

TEST_F(WholeFile, withoutRoomForANameThereIsNone)
{
    std::ofstream(file) << "earlier";
    for (const int error : {ENOSPC, EDQUOT}) {
        linkError = error;
        EXPECT_EQ(replace(file, "later"), error);
        EXPECT_EQ(contentsOf(file), "earlier");
        EXPECT_EQ(entries(), 1);
    }
}

TEST_F(WholeFile, aFolderThatIsNotThereOrTakesNothingIsAnError)
{
    EXPECT_EQ(replace(folder / "nowhere" / "file", "x"), ENOENT);
    std::ofstream(folder / "plain") << "x";
    EXPECT_EQ(replace(folder / "plain" / "file", "x"), ENOTDIR);
    EXPECT_NE(replace("/proc/self/file", "x"), 0) << "a file system that has no files without a name, nor others";
    EXPECT_EQ(entries(), 1);
}

} // namespace
} // namespace orvalen
