#include "streaming/screencapture/CaptureBackEnd.h"

#include <gtest/gtest.h>

#include "streaming/screencapture/CaptureError.h"

namespace orvalen {
namespace {

class BackEnd : public CaptureBackEnd
{
public:
    explicit BackEnd(std::string why) : why(std::move(why)) {}

    [[nodiscard]] std::string obstacle() override
    {
        ++asked;
        return why;
    }
    [[nodiscard]] std::vector<Display> displays() override { return {}; }
    [[nodiscard]] std::unique_ptr<Picture> open(const Display &, unsigned) override { return nullptr; }

    const std::string why;
    int asked = 0;
};

CaptureBackEnds backEnds(const std::vector<std::string> &obstacles)
{
    CaptureBackEnds all;
    for (const auto &obstacle : obstacles)
        all.push_back(std::make_unique<BackEnd>(obstacle));
    return all;
}

TEST(CaptureBackEnds, theFirstThatCanIsTaken)
{
    const auto all = backEnds({"not here", "", ""});
    EXPECT_EQ(&firstAvailable(all), all[1].get());
    EXPECT_EQ(static_cast<BackEnd &>(*all[2]).asked, 0); // nobody asks further
}

TEST(CaptureBackEnds, ifNoneCanTheLastOneSaysWhy)
{
    const auto why = [](const CaptureBackEnds &all) -> std::string {
        try {
            (void)firstAvailable(all);
            return {};
        } catch (const CaptureError &error) {
            return error.what();
        }
    };
    EXPECT_EQ(why(backEnds({"not here", "not there"})), "not there");
    EXPECT_EQ(why({}), "Nothing here can capture a screen.");
}

} // namespace
} // namespace orvalen
