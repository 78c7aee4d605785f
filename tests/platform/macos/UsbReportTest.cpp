#include "platform/macos/UsbReport.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "mirroring/SecondScreens.h"
#include "tests/mirroring/SmallStack.h"

namespace orvalen {
namespace {

constexpr std::string_view key = "SPUSBDataType";

/// The tree in words: (name below below), "-" for what has no name.
void describe(const std::vector<UsbNode> &nodes, std::string &text)
{
    for (const auto &node : nodes) {
        text += "(" + node.name.value_or("-");
        describe(node.items, text);
        text += ")";
    }
}

std::string treeIn(std::string_view report)
{
    std::string text;
    describe(usbNodesInReport(report, key), text);
    return text;
}

/// That of a report with these buses.
std::string treeOf(const std::string &buses)
{
    return treeIn(R"({"SPUSBDataType": )" + buses + "}");
}

TEST(UsbReport, aLaptopWithATabletOnAHub)
{
    EXPECT_EQ(treeIn(R"({
  "SPUSBDataType" : [
    {
      "_name" : "USB31Bus",
      "host_controller" : "AppleT8103USBXHCI"
    },
    {
      "_items" : [
        {
          "_items" : [
            {
              "_name" : "iPad",
              "bus_power" : "500",
              "Media" : [ { "_name" : "not in the tree", "_items" : [ { "_name" : "iPad" } ] } ],
              "serial_num" : "0000"
            },
            { "_name" : "Mouse" }
          ],
          "_name" : "USB2.0 Hub"
        }
      ],
      "_name" : "USB31Bus"
    }
  ]
})"),
              "(USB31Bus)(USB31Bus(USB2.0 Hub(iPad)(Mouse)))");
}

TEST(UsbReport, namesAreWhatTheyAreWhereTheyAreStrings)
{
    EXPECT_EQ(treeOf(R"([{"_name": "a\"\u00fc\ud83d\ude00 "}])"), "(a\"ü😀 )");
    EXPECT_EQ(treeOf(R"([{"_name": ""}, {}])"), "()(-)");
    EXPECT_EQ(treeOf(R"([{"_name": 1}, {"_name": null}, {"_name": ["iPad"]}, {"_name": {"_name": "iPad"}},
                         {"_name": true}, {"_name": 1.5}, {"_name": -1}])"),
              "(-)(-)(-)(-)(-)(-)(-)");
    EXPECT_EQ(treeOf(R"([{"_Name": "a", "name": "b", "_name ": "c"}])"), "(-)");
}

TEST(UsbReport, whatIsNoArrayOfDictionariesIsNotThere)
{
    for (const std::string other :
         {"null", "true", "1", "-1", "1.5", "\"[]\"", "{}", "{\"a\": {}}", "[1]", "[[]]", "[{}, 1]", "[1, {}]",
          "[{}, null, {}]", "[[{}]]", "[{}, [{}]]", "[{}, \"a\", {}]", "[{\"_items\": [{}]}, false]"}) {
        EXPECT_EQ(treeOf(other), "") << other;
        EXPECT_EQ(treeOf("[{\"_name\": \"hub\", \"_items\": " + other + "}, {\"_name\": \"next\"}]"), "(hub)(next)")
            << other;
    }
}

TEST(UsbReport, anEmptyArrayIsOne)
{
    EXPECT_EQ(treeOf("[]"), "");
    EXPECT_EQ(treeOf(R"([{"_items": []}])"), "(-)");
}

TEST(UsbReport, onlyTheWantedKeyOfTheOutermostDictionaryCounts)
{
    EXPECT_EQ(treeIn(R"([{"SPUSBDataType": [{}]}])"), "");
    EXPECT_EQ(treeIn(R"({"a": {"SPUSBDataType": [{}]}})"), "");
    EXPECT_EQ(treeIn(R"({"SPUSBHostDataType": [{}], "_items": [{}], "_name": "iPad"})"), "");
    EXPECT_EQ(treeIn(R"({"a": [{"_name": "no"}], "SPUSBDataType": [{"_name": "yes"}], "b": [{"_name": "no"}]})"),
              "(yes)");
    EXPECT_EQ(treeOf(R"([{"SPUSBDataType": [{}]}])"), "(-)");
}

TEST(UsbReport, ofAKeyThatStandsThereTwiceTheLastOneCounts)
{
    EXPECT_EQ(treeIn(R"({"SPUSBDataType": [{}, {}], "SPUSBDataType": [{"_name": "a"}]})"), "(a)");
    EXPECT_EQ(treeIn(R"({"SPUSBDataType": [{}, {}], "SPUSBDataType": 1})"), "");
    EXPECT_EQ(treeOf(R"([{"_name": "a", "_name": "b"}, {"_name": "a", "_name": 1}, {"_name": "a", "_name": {}}])"),
              "(b)(-)(-)");
    EXPECT_EQ(treeOf(R"([{"_items": [{}, {}], "_items": [{"_name": "a"}]}, {"_items": [{}], "_items": [0]},
                         {"_items": [{}], "_items": {}}, {"_items": [{}], "_items": "a"}])"),
              "(-(a))(-)(-)(-)");
}

TEST(UsbReport, whatIsNoJsonIsEmpty)
{
    using namespace std::string_view_literals;
    for (const auto report : {""sv,
                              " "sv,
                              "\0"sv,
                              "nothing"sv,
                              "{"sv,
                              "[]"sv,
                              "null"sv,
                              "\"SPUSBDataType\""sv,
                              "{\"SPUSBDataType\": [{}]"sv,
                              "{\"SPUSBDataType\": [{}]}}"sv,
                              "{\"SPUSBDataType\": [{}]} more"sv,
                              "{\"SPUSBDataType\": [{}]}\0"sv,
                              "{\"SPUSBDataType\": [{}]}\0{"sv,
                              "{\"SPUSBDataType\": [{},]}"sv,
                              "{\"SPUSBDataType\": [{}], }"sv,
                              "{SPUSBDataType: [{}]}"sv,
                              "{\"SPUSBDataType\": [{}], \"a\": 01}"sv,
                              "{\"SPUSBDataType\": [{\"_name\": \"\xFF\"}]}"sv,
                              "{\"SPUSBDataType\": [{}], \"a\": \"\xC3\"}"sv,
                              "{\"SPUSBDataType\": [{\"_name\": \"\\ud800\"}]}"sv,
                              "{\"SPUSBDataType\": [{\"_name\": \"a\nb\"}]}"sv,
                              "{\"SPUSBDataType\": [{}], \"a\": 1e999}"sv,
                              "\xFF\xFE{\0}\0"sv})
        EXPECT_EQ(treeIn(report), "") << report;
}

TEST(UsbReport, noBeginningOfAReportIsOne)
{
    const std::string report =
        R"({"SPUSBDataType": [{"_name": "iPad", "_items": [{"_name": "a\u00fc"}, {}]}], "b": [1]})";
    ASSERT_EQ(treeIn(report), "(iPad(aü)(-))");
    for (std::size_t length = 0; length < report.size(); ++length)
        EXPECT_EQ(treeIn(std::string_view(report).substr(0, length)), "") << length;
}

TEST(UsbReport, noByteInTheWrongPlaceDoesHarm)
{
    const std::string report = R"({"SPUSBDataType": [{"_name": "iPad", "_items": [{"_name": "b"}, {}]}]})";
    int accepted = 0;
    for (std::size_t place = 0; place < report.size(); ++place) {
        for (int byte = 0; byte < 256; ++byte) {
            auto changed = report;
            changed[place] = static_cast<char>(byte);
            accepted += !treeIn(changed).empty();
        }
    }
    EXPECT_GT(accepted, 256); // other names, say
    EXPECT_LT(accepted, 256 * static_cast<int>(report.size()) / 2);
}

std::string repeated(std::string_view text, int times)
{
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

/// Names of the second screens in a report, found on a small stack.
std::vector<std::string> secondScreensIn(const std::string &report)
{
    std::vector<std::string> names;
    test::onSmallStack([&] {
        std::vector<USBDeviceInfo> list;
        parseTree(usbNodesInReport(report, key), list);
        for (const auto &device : list)
            names.push_back(device.name);
    });
    return names;
}

TEST(UsbReport, anyDepthIsReadToItsBottomOnASmallStack)
{
    for (const int depth : {10'000, 100'000}) {
        const auto report = R"({"SPUSBDataType":)" + repeated(R"([{"_items":)", depth) + R"([{"_name":"iPad"}])" +
                            repeated("}]", depth) + "}";
        EXPECT_THAT(secondScreensIn(report), ::testing::ElementsAre("iPad")) << depth;
        EXPECT_THAT(secondScreensIn(report.substr(0, report.size() / 2)), ::testing::IsEmpty()) << depth;
    }
}

TEST(UsbReport, aMillionLevelsOfSomethingElseAreLeftOut)
{
    constexpr int depth = 1'000'000;
    const auto deep = repeated("[", depth) + repeated("]", depth);
    EXPECT_THAT(secondScreensIn(R"({"a":)" + deep + R"(,"SPUSBDataType":[{"_name":"iPad","_items":)" + deep + "}]}"),
                ::testing::ElementsAre("iPad"));
    EXPECT_THAT(secondScreensIn(deep.substr(0, depth)), ::testing::IsEmpty());
}

TEST(UsbReport, manyDevicesAreAllRead)
{
    constexpr int count = 20'000;
    const auto report = R"({"SPUSBDataType":[{}],"SPUSBDataType":[{})" + repeated(",{}", count - 1) + "]}";
    EXPECT_EQ(usbNodesInReport(report, key).size(), static_cast<std::size_t>(count));
}

constexpr std::size_t manyBytes = 8'000'000;

TEST(UsbReport, eightMegabytesOfNamedHubsAreReadToTheEnd)
{
    std::string report = R"({"SPUSBDataType":[)";
    const auto properties = repeated(R"("location_id":"0x14100000 / 1",)", 10);
    std::ptrdiff_t hubs = 0;
    for (; report.size() < manyBytes; ++hubs) {
        report += hubs == 0 ? "" : ",";
        report += "{" + properties + R"("_name":"USB2.0 Hub",)" + properties +
                  R"("_items":[)"
                  R"({"_name":"USB2.0 Hub","_items":[{"_name":"iPad","manufacturer":"Apple Inc."},{"_name":"Mouse"}]},)"
                  R"({"_name":"Keyboard"}]})";
    }
    const auto names = secondScreensIn(report + "]}");
    EXPECT_EQ(std::ssize(names), hubs);
    EXPECT_EQ(std::count(names.begin(), names.end(), "iPad"), hubs);
    EXPECT_THAT(secondScreensIn(report), ::testing::IsEmpty());
}

TEST(UsbReport, whatARecordSaysOfThoseAboveItIsNoTree)
{
    std::string report = R"({"SPUSBDataType":)";
    std::string above = "{}";
    std::string tree;
    int depth = 0;
    for (; report.size() < manyBytes; ++depth) { // each one as long as all above it
        const auto name = "hub " + std::to_string(depth);
        above = "{\"_name\":\"" + name + R"(","location_id":"0x14100000","parent":)" + above + "}";
        report.append("[").append(above, 0, above.size() - 1).append(",\"_items\":");
        tree += "(" + name;
    }
    report += "[]" + repeated("}]", depth) + "}";
    EXPECT_EQ(treeIn(report), tree + std::string(static_cast<std::size_t>(depth), ')'));
}

TEST(UsbReport, aHugeNameIsAName)
{
    const std::string name(500'000, 'x');
    EXPECT_EQ(treeOf("[{\"_name\":\"" + name + "\"}]"), "(" + name + ")");
    EXPECT_THAT(secondScreensIn("{\"SPUSBDataType\":[{\"_name\":\"" + name + "iPad\"}]}"),
                ::testing::ElementsAre(name + "iPad"));
}

} // namespace
} // namespace orvalen
