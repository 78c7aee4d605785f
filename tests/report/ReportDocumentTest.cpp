#include "report/ReportDocument.h"

#include <gmock/gmock.h>

#include <clocale>
#include <locale>
#include <string>
#include <vector>

#include "core/MakerSite.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

const ReportValues warm{"November 15, 2026 at 9:28:25 PM", {38.4, 37.1, 41.26, 44.95, 30.0, 33.3}, {true, 100}};
const ReportValues cold{"15. November 2026 um 21:28:25", {21.04, 20.0, 22.5, 23.0, 19.96, 25.0}, {false, 7}};

/// The elements of a document that have the tag, attributes and all.
std::vector<std::string> elements(const std::string &document, const std::string &tag)
{
    std::vector<std::string> found;
    const auto end = "</" + tag + ">";
    for (auto begin = document.find("<" + tag); begin != std::string::npos;
         begin = document.find("<" + tag, begin + 1)) {
        if (document[begin + 1 + tag.size()] == '>' || document[begin + 1 + tag.size()] == ' ')
            found.push_back(document.substr(begin, document.find(end, begin) - begin));
    }
    return found;
}

/// What a reader sees of an element: no tags, one space between words.
std::string seen(const std::string &element)
{
    std::string text;
    bool isTag = false;
    for (const char c : element) {
        if (c == '<' || c == '>')
            isTag = c == '<';
        else if (!isTag && (c != '\n' && c != ' '))
            text += c;
        else if (!isTag && !text.empty() && text.back() != ' ')
            text += ' ';
    }
    while (text.ends_with(' '))
        text.pop_back();
    return text;
}

std::vector<std::string> cells(const std::string &document)
{
    std::vector<std::string> texts;
    for (const auto &cell : elements(document, "td"))
        texts.push_back(seen(cell));
    return texts;
}

TEST(ReportDocument, hasTheReadingsInTheirRows)
{
    auto rows = cells(reportDocument(warm));
    rows.resize(12);
    EXPECT_THAT(rows,
                ElementsAre("Display Bridge Reference", "38.4 °C", "Expanded / Bridged (Online)",
                            "Power Management Unit (PMU)", "37.1 °C", "Nominal / Regulated",
                            "Apple M1 SoC Die (Average / Max)", "41.3 °C / 45.0 °C", "Healthy (Zero GPU Artifacts)",
                            "Battery System", "30.0 °C (Level: 100% - AC Charging)", "Normal Operating State"));
    rows = cells(reportDocument(cold));
    rows.resize(12);
    EXPECT_THAT(rows,
                ElementsAre("Display Bridge Reference", "21.0 °C", "Contracted (Blank Risk)",
                            "Power Management Unit (PMU)", "20.0 °C", "Nominal / Regulated",
                            "Apple M1 SoC Die (Average / Max)", "22.5 °C / 23.0 °C", "Healthy (Zero GPU Artifacts)",
                            "Battery System", "20.0 °C (Level: 7% - DC Power)", "Normal Operating State"));
}

TEST(ReportDocument, theBadgeOfTheBridgeFollowsItsReadinessAndNothingElseDoes)
{
    auto values = warm;
    values.temperatures = {37.0, 30.0, 30.0, 30.0, 30.0, 30.0};
    const auto ready = reportDocument(values);
    EXPECT_THAT(ready, HasSubstr("<span class=\"badge badge-success\">Expanded / Bridged (Online)</span>"));
    EXPECT_THAT(ready, Not(HasSubstr("Contracted")));

    values.temperatures.bridgeTemp = 36.96; // prints as 37.0, and is not ready for all that
    auto notReady = reportDocument(values);
    const std::string warning = "<span class=\"badge badge-warning\">Contracted (Blank Risk)</span>";
    EXPECT_THAT(notReady, HasSubstr(warning));
    EXPECT_THAT(notReady, Not(HasSubstr("Expanded")));
    notReady.replace(notReady.find(warning), warning.size(),
                     "<span class=\"badge badge-success\">Expanded / Bridged (Online)</span>");
    EXPECT_EQ(notReady, ready);

    values.temperatures.socMax = 40.0; // a hot chip alone is enough
    EXPECT_THAT(reportDocument(values), HasSubstr("Expanded / Bridged (Online)"));
}

TEST(ReportDocument, saysTheDateAsTheUserWritesIt)
{
    EXPECT_THAT(reportDocument(warm), HasSubstr("Date: November 15, 2026 at 9:28:25 PM<"));
    EXPECT_THAT(reportDocument(cold), HasSubstr("Date: 15. November 2026 um 21:28:25<"));
}

TEST(ReportDocument, aDateIsTextWhateverIsInIt)
{
    auto values = warm;
    values.date = "<b>\"1\" & 2</b>{{socMax}}";
    EXPECT_THAT(reportDocument(values), HasSubstr("Date: &lt;b&gt;&quot;1&quot; &amp; 2&lt;/b&gt;{{socMax}}<"));
}

/// A language with a comma in its numbers, and dots between thousands.
struct Commas : std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\1"; }
};

TEST(ReportDocument, writesNumbersTheSameInEveryLanguage)
{
    const auto expected = reportDocument(warm);
    const auto before = std::locale::global(std::locale(std::locale::classic(), new Commas));
    std::setlocale(LC_NUMERIC, "de_DE.UTF-8"); // where it is installed
    const auto document = reportDocument(warm);
    std::locale::global(before);
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(document, expected);
}

TEST(ReportDocument, leadsToTheMakersSites)
{
    const auto links = elements(reportDocument(warm), "a");
    ASSERT_EQ(links.size(), 2U);
    EXPECT_THAT(links[0], HasSubstr("href=\"" + std::string(makerSite) + "\" target=\"_blank\""));
    EXPECT_THAT(links[0], HasSubstr("var(--primary)"));
    EXPECT_EQ(seen(links[0]), "quenmark.example");
    EXPECT_THAT(links[1], HasSubstr("href=\"" + std::string(makerToolsSite) + "\" target=\"_blank\""));
    EXPECT_THAT(links[1], HasSubstr("var(--accent)"));
    EXPECT_EQ(seen(links[1]), "tools.quenmark.example");
}

TEST(ReportDocument, isMadeInOnePieceOfMemory)
{
    const auto document = reportDocument(warm);
    EXPECT_GE(document.capacity(), 10'131U);
    EXPECT_LE(document.size(), 10'131U);
}

TEST(ReportDocument, asksNobodyForAnything)
{
    const auto document = reportDocument(warm);
    for (const auto *word : {"<link", "<script", "<img", "url(", "@import", "src="})
        EXPECT_THAT(document, Not(HasSubstr(word)));
}

} // namespace
} // namespace orvalen
