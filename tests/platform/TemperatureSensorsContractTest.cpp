#include "tests/platform/TemperatureSensorsContract.h"

#include "platform/linux/TemperatureSensorsSysfs.h"
#include "platform/posix/BoundedTemperatureSensors.h"
#include "tests/platform/SysfsLaptops.h"
#include "tests/support/SysfsTree.h"

namespace orvalen::test {
namespace {

struct IntelLaptop
{
    std::unique_ptr<TemperatureSensors> open() { return std::make_unique<TemperatureSensorsSysfs>(tree.root()); }
    SysfsTree tree{intelLaptop};
};

struct ForgetfulAmdLaptop
{
    std::unique_ptr<TemperatureSensors> open()
    {
        return std::make_unique<TemperatureSensorsSysfs>(tree.root(), std::chrono::seconds(0));
    }
    SysfsTree tree{amdLaptop};
};

struct BoundedAppleSiliconLaptop
{
    std::unique_ptr<TemperatureSensors> open()
    {
        // A limit that no busy test machine reaches.
        return std::make_unique<BoundedTemperatureSensors>(std::make_unique<TemperatureSensorsSysfs>(tree.root()),
                                                           std::chrono::minutes(1));
    }
    SysfsTree tree{appleSiliconLaptop};
};

using Machines = ::testing::Types<IntelLaptop, ForgetfulAmdLaptop, BoundedAppleSiliconLaptop>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, TemperatureSensorsContract, Machines);

} // namespace
} // namespace orvalen::test
