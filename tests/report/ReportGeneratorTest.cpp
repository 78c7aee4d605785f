#include "report/ReportGenerator.h"

#include <gmock/gmock.h>

#include "report/ReportDocument.h"
#include "tests/support/ReportFakes.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Optional;

class ReportGeneratorTest : public ::testing::Test
{
protected:
    std::optional<std::string> generate()
    {
        return ReportGenerator::generateAndOpenReport(ReportGenerator::Services{engine, dates, documents});
    }

    const std::string path = "/srv/anna/Desktop/Quenmark_Display_Diagnostic_Report.html";
    test::ReportDiary diary;
    test::FakeMachine machine;
    test::FakeReadings engine{machine, diary};
    test::FakeLocalisedDates dates{diary};
    test::FakeDocuments documents{diary};
};

TEST_F(ReportGeneratorTest, theReadingsComeFirstAndTheBrowserLast)
{
    EXPECT_THAT(generate(), Optional(path));
    EXPECT_THAT(diary, ElementsAre("sensors", "power", "folder", "date", "write", "open " + path));
}

TEST_F(ReportGeneratorTest, whatIsWrittenIsTheDocumentOfTheseValues)
{
    engine.power = {false, 73};
    ASSERT_TRUE(generate());
    ASSERT_EQ(documents.files.size(), 1U);
    EXPECT_EQ(documents.files[path], reportDocument({dates.date, engine.temperatures, engine.power}));
    EXPECT_THAT(documents.files[path], HasSubstr("Date: November 15, 2026 at 9:28:25 PM<"));
}

TEST_F(ReportGeneratorTest, nothingIsOpenedOfWhatCouldNotBeWritten)
{
    ASSERT_TRUE(generate());
    const auto earlier = documents.files;
    diary.clear();
    documents.canWrite = false;
    engine.temperatures.bridgeTemp = 20.0;
    EXPECT_EQ(generate(), std::nullopt);
    EXPECT_THAT(diary, ElementsAre("sensors", "power", "folder", "date", "write"));
    EXPECT_EQ(documents.files, earlier);
}

TEST_F(ReportGeneratorTest, aSecondReportTakesTheFirstOnesPlace)
{
    ASSERT_TRUE(generate());
    engine.temperatures.bridgeTemp = 20.5;
    ASSERT_TRUE(generate());
    ASSERT_EQ(documents.files.size(), 1U);
    EXPECT_THAT(documents.files[path], HasSubstr("20.5 °C"));
}

TEST_F(ReportGeneratorTest, sensorsThatDoNotAnswerAreReportedAsTheyAreRead)
{
    machine.sensors.readings = std::nullopt;
    ThermalEngine silent(machine.engineMachine());
    ASSERT_TRUE(ReportGenerator::generateAndOpenReport({silent, dates, documents}));
    EXPECT_THAT(documents.files[path], HasSubstr("<strong>0.0 °C</strong>"));
    EXPECT_THAT(documents.files[path], HasSubstr("0.0 °C / 0.0 °C"));
    EXPECT_THAT(documents.files[path], HasSubstr("0.0 °C (Level: 100% - DC Power)"));
}

} // namespace
} // namespace orvalen
