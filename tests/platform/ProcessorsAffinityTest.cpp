#include "platform/linux/ProcessorsAffinity.h"

#include <gtest/gtest.h>

#include <sched.h>
#include <thread>

namespace orvalen {
namespace {

TEST(ProcessorsAffinity, thereIsAlwaysOne)
{
    EXPECT_GE(ProcessorsAffinity().activeCount(), 1);
}

TEST(ProcessorsAffinity, countsOnlyTheCoresThatItMayUse)
{
    cpu_set_t all;
    ASSERT_EQ(::sched_getaffinity(0, sizeof all, &all), 0);
    EXPECT_EQ(ProcessorsAffinity().activeCount(), CPU_COUNT(&all));

    int count = 0;
    std::thread([&] {
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(::sched_getcpu(), &one);
        ASSERT_EQ(::sched_setaffinity(0, sizeof one, &one), 0);
        count = ProcessorsAffinity().activeCount();
    }).join();
    EXPECT_EQ(count, 1);
}

} // namespace
} // namespace orvalen
