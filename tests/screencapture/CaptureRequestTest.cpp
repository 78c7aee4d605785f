#include "streaming/screencapture/CaptureRequest.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace orvalen {
namespace {

using Arguments = std::vector<std::string_view>;

CaptureRequest requested(const Arguments &arguments)
{
    const auto answer = captureRequest(arguments);
    if (const auto *const refusal = std::get_if<Refusal>(&answer))
        ADD_FAILURE() << refusal->reason;
    return std::holds_alternative<CaptureRequest>(answer) ? std::get<CaptureRequest>(answer) : CaptureRequest{};
}

std::string refused(const Arguments &arguments)
{
    const auto answer = captureRequest(arguments);
    const auto *const refusal = std::get_if<Refusal>(&answer);
    return refusal ? refusal->reason : "";
}

TEST(CaptureRequest, theStreamServersCommandsAreUnderstood)
{
    EXPECT_EQ(requested({"-x", "-t", "jpg", "/tmp/a.jpg"}), (CaptureRequest{1, "/tmp/a.jpg"}));
    EXPECT_EQ(requested({"-x", "-t", "jpg", "-D", "2", "/tmp/a.jpg"}), (CaptureRequest{2, "/tmp/a.jpg"}));
}

TEST(CaptureRequest, optionsMayBeLeftOutJoinedAndRepeated)
{
    EXPECT_EQ(requested({"a"}), (CaptureRequest{1, "a"}));
    EXPECT_EQ(requested({"-xtjpg", "-D3", "a"}), (CaptureRequest{3, "a"}));
    EXPECT_EQ(requested({"-xD", "3", "-x", "-D", "4", "a"}), (CaptureRequest{4, "a"}));
}

TEST(CaptureRequest, twoDashesEndTheOptions)
{
    EXPECT_EQ(requested({"-x", "--", "-x"}), (CaptureRequest{1, "-x"}));
    EXPECT_EQ(requested({"-"}), (CaptureRequest{1, "-"}));
}

TEST(CaptureRequest, aDisplayBeyondAllNumbersIsTheLastOfThem)
{
    EXPECT_EQ(requested({"-D", "99999999999999999999999", "a"}).display, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(requested({"-D", "0", "a"}).display, 0U);
    EXPECT_EQ(requested({"-D", "007", "a"}).display, 7U);
}

TEST(CaptureRequest, anotherTypeIsRefusedByName)
{
    EXPECT_EQ(refused({"-t", "png", "a"}), "Pictures are of type jpg, not \"png\".");
    EXPECT_EQ(refused({"-t", "", "a"}), "Pictures are of type jpg, not \"\".");
}

TEST(CaptureRequest, aDisplayIsDecimalDigitsAlone)
{
    for (const auto *number : {"", "x", "-1", "+1", " 1", "1 ", "1.0", "0x1", "1_0"})
        EXPECT_EQ(refused({"-D", number, "a"}), "A display has a number, not \"" + std::string(number) + "\".");
}

TEST(CaptureRequest, anythingElseIsRefused)
{
    EXPECT_EQ(refused({}), "One file must be named.");
    EXPECT_EQ(refused({"-x"}), "One file must be named.");
    EXPECT_EQ(refused({""}), "One file must be named.");
    EXPECT_EQ(refused({"a", "b"}), "One file must be named.");
    EXPECT_EQ(refused({"a", "-x"}), "One file must be named.");
    EXPECT_EQ(refused({"-c", "a"}), "There is no option -c.");
    EXPECT_EQ(refused({"--help"}), "There is no option --.");
    EXPECT_EQ(refused({"-x", "-D"}), "Option -D wants a value.");
    EXPECT_EQ(refused({"-xt"}), "Option -t wants a value.");
}

} // namespace
} // namespace orvalen
