#include "platform/macos/UsbTreeSystemProfiler.h"

#include <gmock/gmock.h>

#include "tests/support/StreamFakes.h"

namespace orvalen {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

class UsbTreeSystemProfilerTest : public ::testing::Test
{
protected:
    static inline const std::string older = "/usr/sbin/system_profiler SPUSBDataType -json";
    static inline const std::string newer = "/usr/sbin/system_profiler SPUSBHostDataType -json";

    std::vector<std::string> namesOfBuses()
    {
        std::vector<std::string> names;
        for (const auto &node : UsbTreeSystemProfiler(processes).read())
            names.push_back(node.name.value_or("(none)"));
        return names;
    }

    test::Diary diary;
    test::FakeChildProcesses processes{diary};
};

TEST_F(UsbTreeSystemProfilerTest, asksForTheReportAndReadsIt)
{
    processes.outputs[older] = R"({"SPUSBDataType": [{"_name": "USB31Bus"}, {}]})";
    EXPECT_THAT(namesOfBuses(), ElementsAre("USB31Bus", "(none)"));
    EXPECT_THAT(diary.take(), ElementsAre("output of " + older));
}

TEST_F(UsbTreeSystemProfilerTest, whereThatReportIsEmptyAsksForTheOneOfNewerSystems)
{
    for (const auto *const empty :
         {"", "{}", R"({"SPUSBDataType": []})", R"({"SPUSBHostDataType": [{}]})", "no JSON"}) {
        processes.outputs[older] = empty;
        processes.outputs[newer] = R"({"SPUSBHostDataType": [{"_name": "USB Bus"}], "SPUSBDataType": [{}, {}]})";
        EXPECT_THAT(namesOfBuses(), ElementsAre("USB Bus"));
        EXPECT_THAT(diary.take(), ElementsAre("output of " + older, "output of " + newer));
    }
}

TEST_F(UsbTreeSystemProfilerTest, aBusWithoutANameIsSomething)
{
    processes.outputs[older] = R"({"SPUSBDataType": [{}]})";
    EXPECT_THAT(namesOfBuses(), ElementsAre("(none)"));
    EXPECT_THAT(diary.take(), ElementsAre("output of " + older));
}

TEST_F(UsbTreeSystemProfilerTest, aReportThatIsCutOffIsNone)
{
    const std::string report = R"({"SPUSBDataType": [{"_name": "USB31Bus"}]})";
    processes.outputs[older] = report;
    processes.outputs[newer] = R"({"SPUSBHostDataType": [{}]})";
    const auto read = [&](std::size_t bytes) {
        return UsbTreeSystemProfiler(processes, {.bytes = bytes, .time = UsbTreeSystemProfiler::patience}).read();
    };
    EXPECT_EQ(read(report.size()).at(0).name, "USB31Bus");
    EXPECT_EQ(read(report.size() - 1).at(0).name, std::nullopt) << "the other one";
}

TEST_F(UsbTreeSystemProfilerTest, withNothingInEitherThereIsNothing)
{
    EXPECT_THAT(namesOfBuses(), IsEmpty());
    EXPECT_THAT(diary.take(), ElementsAre("output of " + older, "output of " + newer));
}

TEST_F(UsbTreeSystemProfilerTest, aMissingProgramReportsNothing)
{
    processes.missing.insert("/usr/sbin/system_profiler");
    EXPECT_THAT(namesOfBuses(), IsEmpty());
}

TEST_F(UsbTreeSystemProfilerTest, neitherSizeNorTimeOfAReportIsUnlimited)
{
    (void)namesOfBuses();
    EXPECT_THAT(
        processes.outputLimits,
        AllOf(::testing::SizeIs(2), Each(AllOf(Field(&OutputLimits::bytes, UsbTreeSystemProfiler::largestReport),
                                               Field(&OutputLimits::time, UsbTreeSystemProfiler::patience)))));
}

} // namespace
} // namespace orvalen
