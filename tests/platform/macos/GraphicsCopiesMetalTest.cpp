#include "platform/macos/GraphicsCopiesMetal.h"

#include <gmock/gmock.h>

#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/Metal.h"
#include "tests/platform/macos/fakes/ObjectiveC.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::size_t pulseBytes = 33'554'432;

/// Runs without an autorelease pool, as the threads that heat do.
class GraphicsCopiesMetalTest : public ::testing::Test
{
protected:
    GraphicsCopiesMetalTest()
    {
        fake::setGraphicsSystem({});
        static_cast<void>(fake::takeCalls());
    }
    ~GraphicsCopiesMetalTest() override { EXPECT_EQ(fake::livingObjects(), 0) << "forgotten"; }

    GraphicsCopiesMetal copies;
};

TEST_F(GraphicsCopiesMetalTest, aPulseIsOneCopyAfterAnotherEachWaitedFor)
{
    auto queue = copies.openDefaultQueue();
    ASSERT_TRUE(queue);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("MTLCreateSystemDefaultDevice", "newCommandQueue"));
    auto a = queue->makeBuffer(pulseBytes), b = queue->makeBuffer(pulseBytes);
    ASSERT_TRUE(a && b);
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("newBufferWithLength 33554432 options 0", "newBufferWithLength 33554432 options 0"));
    for (int round = 1; round <= 2; ++round) {
        queue->copy(*a, *b, pulseBytes);
        EXPECT_THAT(fake::takeCalls(),
                    ElementsAre("commandBuffer", "blitCommandEncoder",
                                "copyFromBuffer A sourceOffset 0 toBuffer B destinationOffset 0 size 33554432",
                                "endEncoding", "commit", "waitUntilCompleted"))
            << "round " << round;
        EXPECT_EQ(fake::livingObjects(), 4) << "device, queue and two buffers are all that a round leaves";
    }
    b.reset();
    a.reset();
    EXPECT_EQ(fake::livingObjects(), 2);
    queue.reset();
    EXPECT_EQ(fake::livingObjects(), 0);
    EXPECT_THAT(fake::takeCalls(), IsEmpty());
}

TEST_F(GraphicsCopiesMetalTest, eachPulseOpensAQueueOfItsOwn)
{
    static_cast<void>(copies.openDefaultQueue());
    const auto second = copies.openDefaultQueue();
    EXPECT_TRUE(second);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("MTLCreateSystemDefaultDevice", "newCommandQueue",
                                               "MTLCreateSystemDefaultDevice", "newCommandQueue"));
    EXPECT_EQ(fake::livingObjects(), 2);
}

TEST_F(GraphicsCopiesMetalTest, aBufferHoldsOnToItsMemoryWhateverBecomesOfTheQueue)
{
    auto queue = copies.openDefaultQueue();
    const auto buffer = queue->makeBuffer(1);
    queue.reset();
    EXPECT_EQ(fake::livingObjects(), 1);
}

TEST_F(GraphicsCopiesMetalTest, withoutADeviceThereIsNoQueue)
{
    fake::setGraphicsSystem({.hasDevice = false});
    EXPECT_FALSE(copies.openDefaultQueue());
    EXPECT_THAT(fake::takeCalls(), ElementsAre("MTLCreateSystemDefaultDevice"));
}

TEST_F(GraphicsCopiesMetalTest, aDeviceWithoutAQueueIsGivenBack)
{
    fake::setGraphicsSystem({.hasQueue = false});
    EXPECT_FALSE(copies.openDefaultQueue());
    EXPECT_THAT(fake::takeCalls(), ElementsAre("MTLCreateSystemDefaultDevice", "newCommandQueue"));
    EXPECT_EQ(fake::livingObjects(), 0);
}

TEST_F(GraphicsCopiesMetalTest, aBufferThatIsNotToBeHadIsNull)
{
    fake::setGraphicsSystem({.buffers = 1});
    const auto queue = copies.openDefaultQueue();
    ASSERT_TRUE(queue);
    EXPECT_TRUE(queue->makeBuffer(pulseBytes));
    EXPECT_FALSE(queue->makeBuffer(pulseBytes));
}

TEST_F(GraphicsCopiesMetalTest, withoutACommandBufferTheCopyIsLeftOut)
{
    fake::setGraphicsSystem({.hasCommandBuffers = false});
    const auto queue = copies.openDefaultQueue();
    const auto a = queue->makeBuffer(pulseBytes), b = queue->makeBuffer(pulseBytes);
    static_cast<void>(fake::takeCalls());
    queue->copy(*a, *b, pulseBytes);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("commandBuffer"));
    EXPECT_EQ(fake::livingObjects(), 4);
}

TEST_F(GraphicsCopiesMetalTest, withoutAnEncoderNothingIsCommitted)
{
    fake::setGraphicsSystem({.hasEncoders = false});
    const auto queue = copies.openDefaultQueue();
    const auto a = queue->makeBuffer(pulseBytes), b = queue->makeBuffer(pulseBytes);
    static_cast<void>(fake::takeCalls());
    queue->copy(*a, *b, pulseBytes);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("commandBuffer", "blitCommandEncoder"));
    EXPECT_EQ(fake::livingObjects(), 4);
}

TEST_F(GraphicsCopiesMetalTest, copiesWhatItIsAskedToInTheDirectionAsked)
{
    const auto queue = copies.openDefaultQueue();
    const auto a = queue->makeBuffer(4096), b = queue->makeBuffer(1024);
    static_cast<void>(fake::takeCalls());
    queue->copy(*b, *a, 100);
    EXPECT_EQ(fake::takeCalls().at(2), "copyFromBuffer B sourceOffset 0 toBuffer A destinationOffset 0 size 100");
}

} // namespace
} // namespace orvalen
