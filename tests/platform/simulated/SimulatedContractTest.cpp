#include "platform/simulated/SimulatedLaptop.h"
#include "platform/simulated/TemperatureSensorsSimulated.h"
#include "tests/platform/TemperatureSensorsContract.h"
#include "tests/support/FakeMachine.h"

namespace orvalen::test {
namespace {

struct SimulatedMachine
{
    VirtualWorld world;
    FakeProcessors processors;
    SimulatedLaptop laptop{{world, processors, [] { return std::chrono::nanoseconds(0); }}};

    std::unique_ptr<TemperatureSensors> open() { return std::make_unique<TemperatureSensorsSimulated>(laptop); }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, TemperatureSensorsContract, SimulatedMachine);

} // namespace
} // namespace orvalen::test
