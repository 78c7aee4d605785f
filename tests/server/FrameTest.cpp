#include "streaming/server/Frame.h"

#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "streaming/server/Descriptor.h"
#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

Frame frameOfFile(const std::filesystem::path &file, std::size_t limit = 1'000'000)
{
    const Descriptor opened(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    return Frame::ofFile(opened.get(), limit);
}

TEST(Frame, isEmptyUntilItHasBytes)
{
    EXPECT_TRUE(Frame().isEmpty());
    EXPECT_EQ(Frame().bytes(), "");
    EXPECT_TRUE(Frame::of("").isEmpty());
}

TEST(Frame, copiesShareTheBytes)
{
    Frame copy;
    {
        const Frame frame = Frame::of("picture");
        copy = frame;
        EXPECT_EQ(copy.bytes().data(), frame.bytes().data());
    }
    EXPECT_EQ(copy.bytes(), "picture");
}

TEST(Frame, canBeReplaced)
{
    Frame frame = Frame::of("one");
    const Frame first = frame;
    frame = Frame::of("two");
    EXPECT_EQ(first.bytes(), "one");
    EXPECT_EQ(frame.bytes(), "two");
    const Frame moved = std::move(frame);
    EXPECT_EQ(moved.bytes(), "two");
}

TEST(Frame, holdsAWholeFile)
{
    const test::TemporaryFolder folder;
    const std::string picture(300'001, 'p');
    EXPECT_EQ(frameOfFile(folder.write("picture", picture)).bytes(), picture);
}

TEST(Frame, isEmptyWithoutAFileOfUse)
{
    const test::TemporaryFolder folder;
    EXPECT_TRUE(frameOfFile(folder.write("empty", "")).isEmpty());
    EXPECT_TRUE(frameOfFile(folder.write("large", "12345"), 4).isEmpty());
    EXPECT_TRUE(frameOfFile(folder / "missing").isEmpty());
    EXPECT_EQ(frameOfFile(folder.write("just", "1234"), 4).bytes(), "1234");
}

TEST(Frame, theNextOneTakesItsPages)
{
    const std::string large(100'000, 'l');
    const auto *place = Frame::of(large).bytes().data();
    const Frame next = Frame::of(std::string(90'000, 'n'));
    EXPECT_EQ(next.bytes().data(), place);
    EXPECT_EQ(next.bytes(), std::string(90'000, 'n'));
    const Frame other = Frame::of(large);
    EXPECT_EQ(next.bytes(), std::string(90'000, 'n'));
    EXPECT_EQ(other.bytes(), large);
}

TEST(Frame, isCountedWhileItIsSupersededAndHeld)
{
    const auto before = Frame::supersededMemory();
    Frame frame = Frame::of(std::string(100'000, 'f'));
    EXPECT_GE(frame.memory(), 100'000U);
    EXPECT_LE(frame.memory(), 250'000U);
    const auto memory = frame.memory();
    Frame copy = frame;
    frame.supersede();
    EXPECT_TRUE(copy.isSuperseded());
    EXPECT_EQ(Frame::supersededMemory(), before + memory);
    copy.supersede();
    EXPECT_EQ(Frame::supersededMemory(), before + memory);
    frame = {};
    EXPECT_EQ(Frame::supersededMemory(), before + memory);
    copy = {};
    EXPECT_EQ(Frame::supersededMemory(), before);
    EXPECT_FALSE(Frame::of(std::string(100'000, 'n')).isSuperseded()); // in the same pages
    EXPECT_EQ(Frame::supersededMemory(), before);
}

TEST(Frame, anEmptyOneTakesNothing)
{
    Frame empty;
    const auto before = Frame::supersededMemory();
    empty.supersede();
    EXPECT_FALSE(empty.isSuperseded());
    EXPECT_EQ(empty.memory(), 0U);
    EXPECT_EQ(Frame::supersededMemory(), before);
}

TEST(Frame, beginsWhereCopyingIsFast)
{
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(Frame::of("picture").bytes().data()) % 64, 0U);
}

} // namespace
} // namespace orvalen
