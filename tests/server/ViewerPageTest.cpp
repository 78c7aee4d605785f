#include "streaming/server/ViewerPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvalen {
namespace {

using testing::HasSubstr;

TEST(ViewerPage, isAWholeDocument)
{
    const std::string page(viewerPage());
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>\n<html lang=\"en\">"));
    EXPECT_TRUE(page.ends_with("</html>\n"));
}

TEST(ViewerPage, saysWhatPeopleKnowItBy)
{
    const std::string page(viewerPage());
    for (const auto *text : {
             "<meta charset=\"utf-8\">",
             "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1, maximum-scale=1, "
             "user-scalable=no\">",
             "<meta name=\"apple-mobile-web-app-capable\" content=\"yes\">",
             "<meta name=\"apple-mobile-web-app-status-bar-style\" content=\"black-translucent\">",
             "<title>Orvalen Studio • Live Screen Mirror</title>",
             ">🛡️ Orvalen Clone Studio<",
             "<a id=\"tab1\" class=\"tab active\" href=\"javascript:switchScreen(1)\">💻 Screen 1 (Retina)</a>",
             "<a id=\"tab2\" class=\"tab\" href=\"javascript:switchScreen(2)\">📱 Screen 2 (SideScreen)</a>",
             ">LIVE MIRROR<",
             "<img id=\"screen\" src=\"/stream.mjpg?d=1\" alt=\"Live Mac Screen\">",
             ">⚡ Zero-Latency Hardware Bypass • Quenmark Technologies<",
             ">⚡ Reconnect</button>",
             ">⛶ Fullscreen</button>",
         })
        EXPECT_THAT(page, HasSubstr(text));
}

TEST(ViewerPage, hasItsColours)
{
    const std::string page(viewerPage());
    for (const auto *colour :
         {"#000", "#fff", "#111827", "#1f2937", "#38BDF8", "#374151", "#9ca3af", "#0284c7", "#059669", "#2563eb"})
        EXPECT_THAT(page, HasSubstr(colour));
}

TEST(ViewerPage, asksNobodyElseForAnything)
{
    const std::string page(viewerPage());
    EXPECT_EQ(page.find("http:"), std::string::npos);
    EXPECT_EQ(page.find("https:"), std::string::npos);
}

} // namespace
} // namespace orvalen
