// Runs on the software driver, so that it runs everywhere.
#include "platform/linux/GraphicsCopiesVulkan.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "platform/linux/GraphicsBufferVulkan.h"

namespace orvalen {
namespace {

constexpr std::size_t pulseBytes = 33'554'432;

class GraphicsCopiesVulkanTest : public ::testing::Test
{
protected:
    GraphicsCopiesVulkanTest()
    {
        if (!queue)
            ADD_FAILURE() << "no software Vulkan driver: install mesa-vulkan-drivers";
    }

    static std::span<std::byte> contentsOf(GraphicsBuffer &buffer)
    {
        return static_cast<GraphicsBufferVulkan &>(buffer).contents();
    }

    static void fillRandomly(std::span<std::byte> bytes, unsigned seed)
    {
        std::mt19937 random(seed);
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<std::byte>(random()); });
    }

    GraphicsCopiesVulkan copies{GraphicsCopiesVulkan::SoftwareDevices::accepted};
    std::unique_ptr<GraphicsQueue> queue = copies.openDefaultQueue();
};

bool isVulkanLoaded()
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find("libvulkan") != std::string::npos)
            return true;
    return false;
}

TEST(GraphicsCopiesVulkanLoading, theLibraryIsLoadedOnlyWhileAQueueIsOpen)
{
    EXPECT_FALSE(isVulkanLoaded());
    GraphicsCopiesVulkan copies(GraphicsCopiesVulkan::SoftwareDevices::accepted);
    EXPECT_FALSE(isVulkanLoaded());
    auto queue = copies.openDefaultQueue();
    EXPECT_TRUE(isVulkanLoaded());
    queue.reset();
    EXPECT_FALSE(isVulkanLoaded());
}

TEST_F(GraphicsCopiesVulkanTest, copiesAllThirtyTwoMebibytes)
{
    ASSERT_TRUE(queue);
    const auto a = queue->makeBuffer(pulseBytes), b = queue->makeBuffer(pulseBytes);
    ASSERT_TRUE(a && b);
    const auto from = contentsOf(*a), to = contentsOf(*b);
    ASSERT_EQ(from.size(), pulseBytes);
    ASSERT_EQ(to.size(), pulseBytes);
    for (unsigned round = 1; round <= 3; ++round) {
        fillRandomly(from, round);
        std::fill(to.begin(), to.end(), std::byte{0});
        queue->copy(*a, *b, pulseBytes);
        EXPECT_TRUE(std::ranges::equal(from, to)) << "round " << round;
    }
}

TEST_F(GraphicsCopiesVulkanTest, copiesNoMoreThanAsked)
{
    ASSERT_TRUE(queue);
    const auto a = queue->makeBuffer(4096), b = queue->makeBuffer(4096);
    ASSERT_TRUE(a && b);
    const auto from = contentsOf(*a), to = contentsOf(*b);
    std::fill(from.begin(), from.end(), std::byte{7});
    std::fill(to.begin(), to.end(), std::byte{1});
    queue->copy(*a, *b, 100);
    EXPECT_EQ(std::count(to.begin(), to.begin() + 100, std::byte{7}), 100);
    EXPECT_EQ(std::count(to.begin() + 100, to.end(), std::byte{1}), 3996);
}

TEST_F(GraphicsCopiesVulkanTest, aCopyBeyondTheEndIsLeftOut)
{
    ASSERT_TRUE(queue);
    const auto a = queue->makeBuffer(4096), b = queue->makeBuffer(1024);
    ASSERT_TRUE(a && b);
    const auto from = contentsOf(*a), to = contentsOf(*b);
    std::fill(from.begin(), from.end(), std::byte{7});
    std::fill(to.begin(), to.end(), std::byte{1});
    queue->copy(*a, *b, 2048);
    queue->copy(*a, *b, 0);
    EXPECT_EQ(std::count(to.begin(), to.end(), std::byte{1}), 1024);
}

TEST_F(GraphicsCopiesVulkanTest, moreMemoryThanThereIsGivesNoBuffer)
{
    ASSERT_TRUE(queue);
    EXPECT_FALSE(queue->makeBuffer(std::size_t{1} << 50));
    EXPECT_FALSE(queue->makeBuffer(std::numeric_limits<std::size_t>::max()));
    EXPECT_FALSE(queue->makeBuffer(0));
    EXPECT_TRUE(queue->makeBuffer(4096)) << "and does no harm to the next";
}

TEST_F(GraphicsCopiesVulkanTest, severalQueuesAreOpenAtATime)
{
    const auto other = copies.openDefaultQueue();
    ASSERT_TRUE(queue && other);
    const auto a = other->makeBuffer(64), b = other->makeBuffer(64);
    ASSERT_TRUE(a && b);
    queue.reset();
    contentsOf(*a)[0] = std::byte{9};
    other->copy(*a, *b, 64);
    EXPECT_EQ(contentsOf(*b)[0], std::byte{9});
}

TEST_F(GraphicsCopiesVulkanTest, aQueueWhoseCopyDoesNotEndInTimeIsGivenUp)
{
    GraphicsCopiesVulkan impatient(GraphicsCopiesVulkan::SoftwareDevices::accepted, std::chrono::nanoseconds::zero());
    auto stuck = impatient.openDefaultQueue();
    ASSERT_TRUE(stuck);
    auto a = stuck->makeBuffer(pulseBytes), b = stuck->makeBuffer(pulseBytes);
    ASSERT_TRUE(a && b);
    stuck->copy(*a, *b, pulseBytes);
    EXPECT_FALSE(stuck->makeBuffer(4096)) << "no time at all was enough for 32 MiB";
    stuck->copy(*a, *b, pulseBytes); // Nothing, and above all no second wait.
    a.reset(), b.reset(), stuck.reset();
    EXPECT_FALSE(impatient.openDefaultQueue()) << "a second queue would be lost like the first";
    EXPECT_TRUE(copies.openDefaultQueue()) << "another adapter knows nothing of it";
}

TEST_F(GraphicsCopiesVulkanTest, aProcessorInDisguiseCountsAsNone)
{
    EXPECT_FALSE(GraphicsCopiesVulkan().openDefaultQueue());
}

/// In a process of its own: drivers are looked up from the environment.
[[noreturn]] void openWithoutDrivers()
{
    setenv("VK_ICD_FILENAMES", "/nonexistent.json", 1);
    setenv("VK_DRIVER_FILES", "/nonexistent.json", 1);
    GraphicsCopiesVulkan copies(GraphicsCopiesVulkan::SoftwareDevices::accepted);
    std::_Exit(copies.openDefaultQueue() ? 1 : 0);
}

TEST(GraphicsCopiesVulkanDeathTest, withoutDriversThereIsNoQueueAndNoWord)
{
    EXPECT_EXIT(openWithoutDrivers(), ::testing::ExitedWithCode(0), "^$");
}

} // namespace
} // namespace orvalen
