#include "streaming/server/Answers.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "streaming/server/ViewerPage.h"

namespace orvalen {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

WallTime at(long long seconds, long long microseconds = 0)
{
    return WallTime(std::chrono::seconds(seconds) + std::chrono::microseconds(microseconds));
}

std::string headOf(Route route)
{
    return std::string(std::string_view(answerTo(route, at(784111777)).head));
}

std::string bodyOf(Route route)
{
    const auto answer = answerTo(route, at(784111777));
    return std::string(std::string_view(answer.composed)) + std::string(answer.page);
}

const std::string firstLines = "HTTP/1.0 200 OK\r\nServer: Orvalen\r\nDate: Sun, 06 Nov 1994 08:49:37 GMT\r\n";

TEST(Answers, theViewerPage)
{
    EXPECT_EQ(headOf(Route::viewerPage), firstLines + "Content-Type: text/html; charset=utf-8\r\nContent-Length: " +
                                             std::to_string(viewerPage().size()) + "\r\n\r\n");
    EXPECT_EQ(bodyOf(Route::viewerPage), viewerPage());
}

TEST(Answers, theStatus)
{
    EXPECT_EQ(headOf(Route::status), firstLines + "Content-Type: application/json\r\nContent-Length: 46\r\n\r\n");
    EXPECT_EQ(bodyOf(Route::status), "{\"status\": \"online\", \"time\": 784111777.000000}");
}

TEST(Answers, noIcon)
{
    EXPECT_EQ(headOf(Route::favicon),
              "HTTP/1.0 204 No Content\r\nServer: Orvalen\r\nDate: Sun, 06 Nov 1994 08:49:37 GMT\r\n\r\n");
    EXPECT_EQ(bodyOf(Route::favicon), "");
}

TEST(Answers, theBeginningOfAStream)
{
    EXPECT_EQ(headOf(Route::stream), firstLines + "Age: 0\r\n"
                                                  "Cache-Control: no-cache, private, no-store, must-revalidate\r\n"
                                                  "Pragma: no-cache\r\n"
                                                  "Content-Type: multipart/x-mixed-replace; boundary=FRAME\r\n\r\n");
    EXPECT_EQ(bodyOf(Route::stream), "");
}

TEST(Answers, theHeadOfAnything)
{
    EXPECT_EQ(headOf(Route::headOfAnything), firstLines + "Content-Type: text/html; charset=utf-8\r\n\r\n");
    EXPECT_EQ(bodyOf(Route::headOfAnything), "");
}

TEST(Answers, errorsAreShortPages)
{
    const std::pair<Route, std::string> errors[] = {{Route::notFound, "404 Not Found"},
                                                    {Route::notImplemented, "501 Not Implemented"},
                                                    {Route::malformed, "400 Bad Request"},
                                                    {Route::tooLarge, "431 Request Header Fields Too Large"}};
    for (const auto &[route, status] : errors) {
        const auto body = bodyOf(route);
        EXPECT_THAT(body, StartsWith("<!DOCTYPE html>"));
        EXPECT_THAT(body, HasSubstr("<h1>" + status + "</h1>"));
        EXPECT_THAT(body, EndsWith("</html>\n"));
        EXPECT_EQ(headOf(route),
                  "HTTP/1.0 " + status +
                      "\r\nServer: Orvalen\r\nDate: Sun, 06 Nov 1994 08:49:37 GMT\r\nConnection: close\r\n"
                      "Content-Type: text/html; charset=utf-8\r\nContent-Length: " +
                      std::to_string(body.size()) + "\r\n\r\n");
    }
}

TEST(Answers, methodAndPathDecideToTheCharacter)
{
    const std::tuple<const char *, const char *, Route> cases[] = {
        {"GET", "/", Route::viewerPage},
        {"GET", "/api/status", Route::status},
        {"GET", "/favicon.ico", Route::favicon},
        {"GET", "/stream.mjpg", Route::stream},
        {"GET", "/index.html", Route::notFound},
        {"GET", "//", Route::notFound},
        {"GET", "/STREAM.mjpg", Route::notFound},
        {"GET", "/stream.mjpg/", Route::notFound},
        {"GET", "/stream%2Emjpg", Route::notFound},
        {"GET", "/api/status/", Route::notFound},
        {"GET", "/../", Route::notFound},
        {"GET", "*", Route::notFound},
        {"GET", "stream.mjpg", Route::notFound},
        {"HEAD", "/", Route::headOfAnything},
        {"HEAD", "/stream.mjpg", Route::headOfAnything},
        {"HEAD", "/nothing", Route::headOfAnything},
        {"POST", "/", Route::notImplemented},
        {"OPTIONS", "*", Route::notImplemented},
        {"get", "/", Route::notImplemented},
        {"GETS", "/", Route::notImplemented},
    };
    for (const auto &[method, path, route] : cases)
        EXPECT_EQ(routeOf({method, path, "d=2"}), route) << method << " " << path;
}

TEST(Answers, datesAreWrittenAsTheWebWritesThem)
{
    EXPECT_EQ(std::string_view(httpDate(at(0))), "Thu, 01 Jan 1970 00:00:00 GMT");
    EXPECT_EQ(std::string_view(httpDate(at(784111777, 999999))), "Sun, 06 Nov 1994 08:49:37 GMT");
    EXPECT_EQ(std::string_view(httpDate(at(951782400))), "Tue, 29 Feb 2000 00:00:00 GMT");
    EXPECT_EQ(std::string_view(httpDate(at(1767225599))), "Wed, 31 Dec 2025 23:59:59 GMT");
    EXPECT_EQ(std::string_view(httpDate(at(4102444800))), "Fri, 01 Jan 2100 00:00:00 GMT");
}

TEST(Answers, theTimeHasItsFraction)
{
    EXPECT_EQ(std::string_view(statusObject(at(1763733600, 123456))),
              "{\"status\": \"online\", \"time\": 1763733600.123456}");
    EXPECT_EQ(std::string_view(statusObject(at(1763733600, 7))),
              "{\"status\": \"online\", \"time\": 1763733600.000007}");
}

TEST(Answers, partsAreFramedToTheByte)
{
    EXPECT_EQ(std::string(std::string_view(partHead(331234))) + "JPEG" + std::string(partEnd),
              "--FRAME\r\nContent-Type: image/jpeg\r\nContent-Length: 331234\r\n\r\nJPEG\r\n");
}

TEST(ShortText, cutsOffWhatDoesNotFit)
{
    ShortText text(std::string(ShortText::capacity - 1, 'a'));
    text << "bc";
    EXPECT_EQ(std::string_view(text), std::string(ShortText::capacity - 1, 'a') + "b");
    text << "d" << 12;
    EXPECT_EQ(std::string_view(text).size(), ShortText::capacity);
}

TEST(ShortText, padsNumbersWithZeros)
{
    ShortText text;
    text.zeroPadded(7, 2).zeroPadded(12, 2).zeroPadded(123, 2);
    EXPECT_EQ(std::string_view(text), "0712123");
}

} // namespace
} // namespace orvalen
