#pragma once

#include "platform/TemperatureSensors.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace orvalen::test {

/// What holds for every adapter of TemperatureSensors. `Machine` is made anew for each case and stands for a machine
/// whose sensors stay as they are, some of them at least with an answer:
///
///     struct Machine { std::unique_ptr<TemperatureSensors> open(); };
///
///     INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, TemperatureSensorsContract, SimulatedMachine);
template <typename Machine>
class TemperatureSensorsContract : public ::testing::Test
{
protected:
    static std::vector<std::string> products(const std::optional<std::vector<TemperatureReading>> &readings)
    {
        std::vector<std::string> names;
        for (const auto &reading : readings.value_or(std::vector<TemperatureReading>{}))
            names.push_back(reading.product);
        return names;
    }

    Machine machine;
};

TYPED_TEST_SUITE_P(TemperatureSensorsContract);

TYPED_TEST_P(TemperatureSensorsContract, answers)
{
    const auto readings = this->machine.open()->read();
    ASSERT_TRUE(readings.has_value());
    EXPECT_FALSE(readings->empty());
}

TYPED_TEST_P(TemperatureSensorsContract, everyAnswerIsANumber)
{
    const auto readings = this->machine.open()->read();
    ASSERT_TRUE(readings.has_value());
    for (const auto &[product, celsius] : *readings)
        EXPECT_TRUE(std::isfinite(celsius)) << product << ": " << celsius;
}

TYPED_TEST_P(TemperatureSensorsContract, namesAreOneLineWithoutSpaceAround)
{
    for (const auto &product : this->products(this->machine.open()->read())) {
        EXPECT_TRUE(std::none_of(product.begin(), product.end(), [](unsigned char c) { return std::iscntrl(c); }))
            << product;
        EXPECT_FALSE(product.starts_with(' ') || product.ends_with(' ')) << '"' << product << '"';
    }
}

TYPED_TEST_P(TemperatureSensorsContract, theOrderStaysTheSame)
{
    const auto sensors = this->machine.open();
    const auto first = this->products(sensors->read());
    ASSERT_FALSE(first.empty());
    for (int i = 0; i < 20; ++i)
        ASSERT_EQ(this->products(sensors->read()), first);
}

TYPED_TEST_P(TemperatureSensorsContract, anotherThreadGetsTheSame)
{
    const auto sensors = this->machine.open();
    const auto here = this->products(sensors->read());
    ASSERT_FALSE(here.empty());
    std::vector<std::string> there;
    std::thread([&] { there = this->products(sensors->read()); }).join();
    EXPECT_EQ(there, here);
}

TYPED_TEST_P(TemperatureSensorsContract, manyThreadsAtOnceGetTheSame)
{
    const auto sensors = this->machine.open();
    const auto alone = this->products(sensors->read());
    ASSERT_FALSE(alone.empty());
    constexpr int readsEach = 50;
    std::vector<int> same(8, 0);
    std::vector<std::thread> threads;
    for (int &count : same) {
        threads.emplace_back([&] {
            for (int i = 0; i < readsEach; ++i)
                count += this->products(sensors->read()) == alone ? 1 : 0;
        });
    }
    for (auto &thread : threads)
        thread.join();
    EXPECT_THAT(same, ::testing::Each(readsEach));
}

TYPED_TEST_P(TemperatureSensorsContract, twoAtOnceDoNotDisturbEachOther)
{
    const auto one = this->machine.open();
    auto other = this->machine.open();
    const auto names = this->products(one->read());
    ASSERT_FALSE(names.empty());
    EXPECT_EQ(this->products(other->read()), names);
    other.reset();
    EXPECT_EQ(this->products(one->read()), names);
}

TYPED_TEST_P(TemperatureSensorsContract, canGoUnasked)
{
    auto unasked = this->machine.open();
    ASSERT_TRUE(unasked);
    unasked.reset();
    EXPECT_TRUE(this->machine.open()->read().has_value());
}

REGISTER_TYPED_TEST_SUITE_P(TemperatureSensorsContract, answers, everyAnswerIsANumber,
                            namesAreOneLineWithoutSpaceAround, theOrderStaysTheSame, anotherThreadGetsTheSame,
                            manyThreadsAtOnceGetTheSame, twoAtOnceDoNotDisturbEachOther, canGoUnasked);

} // namespace orvalen::test
