#include "platform/posix/PrivateFile.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;
using test::contentsOf;
using test::modeOf;

constexpr std::size_t limit = 1000;

class PrivateFile : public ::testing::Test
{
protected:
    static void put(const fs::path &path, const std::string &contents) { std::ofstream(path) << contents; }

    [[nodiscard]] long entries() const { return std::distance(fs::directory_iterator(folder), {}); }

    /// Makes `file` somebody else's; false if we may not.
    [[nodiscard]] bool giveAway() const { return geteuid() == 0 && ::lchown(file.c_str(), 65534, 65534) == 0; }

    /// Nothing of it is read, written or opened, and it is not taken for ours.
    void expectUntouchable(const char *what) const
    {
        EXPECT_FALSE(private_file::isOursOrAbsent(file)) << what;
        EXPECT_EQ(private_file::read(file, limit), std::nullopt) << what;
        EXPECT_EQ(private_file::openForReading(file), -1) << what;
        EXPECT_NE(private_file::write(file, "ours"), 0) << what;
    }

    const test::TemporaryFolder temporary;
    const fs::path folder = temporary.path();
    fs::path file = folder / "file";
};

TEST_F(PrivateFile, whatIsWrittenIsReadBack)
{
    for (const std::string &contents : {std::string("8999"), std::string(), std::string("a\0b\n", 4)}) {
        EXPECT_EQ(private_file::write(file, contents), 0);
        EXPECT_EQ(private_file::read(file, limit), contents);
    }
}

TEST_F(PrivateFile, aShorterTextLeavesNothingOfTheLongerOne)
{
    EXPECT_EQ(private_file::write(file, "18999"), 0);
    EXPECT_EQ(private_file::write(file, "80"), 0);
    EXPECT_EQ(contentsOf(file), "80");
}

TEST_F(PrivateFile, newFilesAreTheOwnersAlone)
{
    const auto before = ::umask(0);
    EXPECT_EQ(private_file::write(file, "x"), 0);
    EXPECT_EQ(private_file::replace(folder / "replaced", "x"), 0);
    EXPECT_EQ(private_file::replace(folder / "program", "x", 0700), 0);
    ::umask(0777);
    EXPECT_EQ(private_file::replace(folder / "strict", "x", 0700), 0);
    ::umask(before);
    EXPECT_EQ(modeOf(file), 0600U);
    EXPECT_EQ(modeOf(folder / "replaced"), 0600U);
    EXPECT_EQ(modeOf(folder / "program"), 0700U);
    EXPECT_EQ(modeOf(folder / "strict"), 0700U);
}

TEST_F(PrivateFile, whatIsNotThereIsAbsent)
{
    EXPECT_TRUE(private_file::isOursOrAbsent(file));
    EXPECT_EQ(private_file::read(file, limit), std::nullopt);
    EXPECT_EQ(private_file::openForReading(file), -1);
    EXPECT_EQ(private_file::remove(file), ENOENT);
    EXPECT_EQ(private_file::write(folder / "nowhere" / "file", "x"), ENOENT);
    EXPECT_EQ(private_file::replace(folder / "nowhere" / "file", "x"), ENOENT);
}

TEST_F(PrivateFile, moreThanTheLimitIsNotRead)
{
    put(file, std::string(limit, 'x'));
    EXPECT_EQ(private_file::read(file, limit), std::string(limit, 'x'));
    put(file, std::string(limit + 1, 'x'));
    EXPECT_EQ(private_file::read(file, limit), std::nullopt);
}

TEST_F(PrivateFile, whatIsOpenedIsNotHandedToOtherPrograms)
{
    put(file, "x");
    const int descriptor = private_file::openForReading(file);
    ASSERT_GE(descriptor, 0);
    EXPECT_TRUE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
    ::close(descriptor);
}

TEST_F(PrivateFile, aLinkIsNeverFollowed)
{
    const auto target = folder / "target";
    put(target, "precious");
    fs::create_symlink(target, file);
    expectUntouchable("a link to a file of ours");
    EXPECT_EQ(contentsOf(target), "precious");

    fs::remove(file);
    fs::create_symlink(folder / "not-there", file);
    expectUntouchable("a link to nothing");
    EXPECT_FALSE(fs::exists(folder / "not-there"));
}

TEST_F(PrivateFile, aLinkOfOursIsReplacedAndRemovedItself)
{
    const auto target = folder / "target";
    put(target, "precious");
    fs::create_symlink(target, file);
    EXPECT_EQ(private_file::replace(file, "ours"), 0);
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_EQ(contentsOf(file), "ours");
    EXPECT_EQ(contentsOf(target), "precious");

    fs::remove(file);
    fs::create_symlink(target, file);
    EXPECT_EQ(private_file::remove(file), 0);
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_EQ(contentsOf(target), "precious");
}

TEST_F(PrivateFile, aFileWithASecondNameIsNotTakenForOurs)
{
    put(file, "precious");
    fs::create_hard_link(file, folder / "second");
    expectUntouchable("a second name");
    EXPECT_EQ(contentsOf(folder / "second"), "precious");
    EXPECT_EQ(private_file::replace(file, "ours"), 0);
    EXPECT_EQ(contentsOf(folder / "second"), "precious");
}

TEST_F(PrivateFile, aPipeADeviceOrAFolderIsRefusedAndHoldsNobodyUp)
{
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    expectUntouchable("a pipe");
    EXPECT_EQ(private_file::replace(file, "ours"), 0) << "nobody else's";
    EXPECT_EQ(contentsOf(file), "ours");

    fs::remove(file);
    fs::create_directory(file);
    expectUntouchable("a folder");
    EXPECT_NE(private_file::replace(file, "ours"), 0);
    EXPECT_NE(private_file::remove(file), 0);
    EXPECT_TRUE(fs::is_directory(file));
    EXPECT_EQ(entries(), 1) << "nothing left over";

    file = "/dev/null";
    expectUntouchable("a device");
}

TEST_F(PrivateFile, somebodyElsesFileIsLeftAlone)
{
    put(file, "theirs");
    if (!giveAway())
        GTEST_SKIP() << "only root can give files away";
    fs::permissions(file, fs::perms(0666));
    expectUntouchable("another user's");
    EXPECT_EQ(private_file::replace(file, "ours"), EPERM);
    EXPECT_EQ(private_file::remove(file), EPERM);
    EXPECT_EQ(contentsOf(file), "theirs");
    EXPECT_EQ(entries(), 1);
}

TEST_F(PrivateFile, somebodyElsesLinkIsLeftAlone)
{
    put(folder / "target", "precious");
    fs::create_symlink(folder / "target", file);
    if (!giveAway())
        GTEST_SKIP() << "only root can give files away";
    expectUntouchable("another user's link");
    EXPECT_EQ(private_file::replace(file, "ours"), EPERM);
    EXPECT_EQ(private_file::remove(file), EPERM);
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(contentsOf(folder / "target"), "precious");
}

TEST_F(PrivateFile, theSystemsFilesAreNotOursForAnOrdinaryUser)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "they are root's";
    file = "/etc/passwd";
    expectUntouchable("root's");
}

TEST_F(PrivateFile, aReplacementIsWholeOrOldButNeverHalf)
{
    const std::string one(50'000, '1');
    const std::string two(80'000, '2');
    ASSERT_EQ(private_file::replace(file, one), 0);
    std::atomic<bool> done = false;
    std::thread writer([&] {
        for (int i = 0; i < 300; ++i)
            EXPECT_EQ(private_file::replace(file, i % 2 == 0 ? two : one), 0);
        done = true;
    });
    std::string odd;
    while (!done && odd.empty()) {
        const auto contents = private_file::read(file, 100'000);
        if (contents != one && contents != two)
            odd = contents ? "half a file" : "no file";
    }
    writer.join();
    EXPECT_EQ(odd, "");
    EXPECT_EQ(entries(), 1) << "nothing left over";
}

TEST_F(PrivateFile, whatStandsUnderTheNameOnTheWayDoesNotStopAReplacement)
{
    put(folder / ".file.orvalen", "left by one that was killed");
    EXPECT_EQ(private_file::replace(file, "first"), 0);
    EXPECT_EQ(entries(), 1) << "it is cleared away";

    fs::create_directory(folder / ".file.orvalen"); // like somebody else's: cannot be
    EXPECT_EQ(private_file::replace(file, "second"), 0);
    EXPECT_EQ(contentsOf(file), "second");
    EXPECT_EQ(entries(), 2);
}

TEST_F(PrivateFile, aDiskWithoutRoomLeavesTheOldFileAndNothingElse)
{
    put(file, "old");
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit little{1000, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &little), 0);
    const int replaced = private_file::replace(file, std::string(5000, 'x'));
    const int written = private_file::write(folder / "other", std::string(5000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(replaced, EFBIG);
    EXPECT_EQ(written, EFBIG);
    EXPECT_EQ(contentsOf(file), "old");
    EXPECT_EQ(entries(), 2) << "the old file and the one that was begun";
}

} // namespace
} // namespace orvalen
