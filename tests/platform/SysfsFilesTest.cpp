#include "platform/linux/SysfsFiles.h"

#include <gmock/gmock.h>

#include "tests/support/SysfsTree.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::Optional;

TEST(SysfsFiles, namesComeAsPeopleCount)
{
    const test::SysfsTree tree("[class]\nhwmon10/\nhwmon2/\nBAT1/\nhwmon1/\nhwmon/\nBAT0/\nhwmon2a/\n");
    EXPECT_THAT(sysfs::entries(tree.path("class")),
                Optional(ElementsAre("BAT0", "BAT1", "hwmon", "hwmon1", "hwmon2", "hwmon2a", "hwmon10")));
}

TEST(SysfsFiles, comparesNumbersOfAnyLength)
{
    EXPECT_TRUE(sysfs::comesBefore("zone99999999999999999998", "zone99999999999999999999"));
    EXPECT_TRUE(sysfs::comesBefore("zone9", "zone99999999999999999999"));
    EXPECT_FALSE(sysfs::comesBefore("zone007", "zone7"));
    EXPECT_FALSE(sysfs::comesBefore("zone7", "zone007"));
    EXPECT_FALSE(sysfs::comesBefore("same", "same"));
}

TEST(SysfsFiles, aMissingFolderIsNotAnEmptyOne)
{
    const test::SysfsTree tree("[class]\n");
    EXPECT_EQ(sysfs::entries(tree.path("nowhere")), std::nullopt);
    EXPECT_THAT(sysfs::entries(tree.path("class")), Optional(ElementsAre()));
}

TEST(SysfsFiles, textComesWithoutItsLineEnd)
{
    const test::SysfsTree tree("label = Package id 0\nempty =\n");
    EXPECT_EQ(sysfs::text(tree.path("label")), "Package id 0");
    EXPECT_EQ(sysfs::text(tree.path("empty")), "");
    EXPECT_EQ(sysfs::text(tree.path("missing")), std::nullopt);
}

TEST(SysfsFiles, wholeNumbersOnly)
{
    test::SysfsTree tree("plain = 43500\nnegative = -5000\nwords = n/a\ntail = 43500 mC\nfraction = 43.5\nempty =\n"
                         "huge = 99999999999999999999\nlargest = 9223372036854775807\nplus = +1\nfolder/\n");
    EXPECT_EQ(sysfs::number(tree.path("plain")).value, 43500);
    EXPECT_EQ(sysfs::number(tree.path("negative")).value, -5000);
    EXPECT_EQ(sysfs::number(tree.path("largest")).value, 9223372036854775807);
    for (const auto *file : {"words", "tail", "fraction", "empty", "huge", "plus", "folder"}) {
        EXPECT_EQ(sysfs::number(tree.path(file)).value, std::nullopt) << file;
        EXPECT_FALSE(sysfs::number(tree.path(file)).isGone) << file;
    }
}

TEST(SysfsFiles, onlyAMissingFileIsGone)
{
    const test::SysfsTree tree("there = 1\nloop -> loop\nfails -> /proc/self/mem\n");
    EXPECT_TRUE(sysfs::number(tree.path("missing")).isGone);
    EXPECT_TRUE(sysfs::number(tree.path("missing/temp1_input")).isGone);
    EXPECT_TRUE(sysfs::number(tree.path("there/temp1_input")).isGone);
    EXPECT_FALSE(sysfs::number(tree.path("loop")).isGone);
    EXPECT_FALSE(sysfs::number(tree.path("fails")).isGone);
    EXPECT_EQ(sysfs::number(tree.path("fails")).value, std::nullopt);
}

} // namespace
} // namespace orvalen
