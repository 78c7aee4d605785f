#include "report/ReportTemplate.h"

#include <gtest/gtest.h>

#include <string>

namespace orvalen {
namespace {

std::string marked(std::string_view name)
{
    return "{{" + std::string(name) + "}}";
}

/// A page with every mark, in the order of the marks or the other way round.
std::string wholePage(bool backwards = false)
{
    std::string page;
    for (const auto name : reportMarkNames)
        page = backwards ? "<i>" + marked(name) + page : page + "<i>" + marked(name);
    return page + "</html>";
}

TEST(ReportTemplate, isTakenApartAtItsMarks)
{
    const auto page = wholePage();
    const auto parts = ReportTemplate::of(page);
    EXPECT_EQ(parts.places.front().before, "<i>");
    EXPECT_EQ(parts.places.front().mark, ReportMark::date);
    EXPECT_EQ(parts.places.back().mark, ReportMark::makerToolsSiteName);
    EXPECT_EQ(parts.end, "</html>");

    const auto backwards = wholePage(true);
    EXPECT_EQ(ReportTemplate::of(backwards).places.front().mark, ReportMark::makerToolsSiteName);
}

TEST(ReportTemplate, aMarkThatIsMissingUnknownRepeatedOrTooManyIsAnError)
{
    const auto page = wholePage();
    const auto replaced = [&page](const std::string &from, const std::string &to) {
        return std::string(page).replace(page.find(from), from.size(), to);
    };
    EXPECT_THROW((void)ReportTemplate::of(replaced("{{socMax}}", "44.9")), std::invalid_argument);
    EXPECT_THROW((void)ReportTemplate::of(replaced("{{socMax}}", "{{serial}}")), std::invalid_argument);
    EXPECT_THROW((void)ReportTemplate::of(replaced("{{socMax}}", "{{socTemp}}")), std::invalid_argument);
    EXPECT_THROW((void)ReportTemplate::of(replaced("{{socMax}}", "{{socMax")), std::invalid_argument);
    EXPECT_THROW((void)ReportTemplate::of(replaced("{{socMax}}", "{{}}")), std::invalid_argument);
    EXPECT_THROW((void)ReportTemplate::of(page + marked("date")), std::invalid_argument);
    EXPECT_THROW((void)ReportTemplate::of(page + marked("serial")), std::invalid_argument);
    EXPECT_THROW((void)ReportTemplate::of(""), std::invalid_argument);
}

} // namespace
} // namespace orvalen
