#include "streaming/server/Answers.h"

#include <array>

#include "streaming/server/ViewerPage.h"

namespace orvalen {

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view htmlType = "Content-Type: text/html; charset=utf-8\r\n";

/// Status line and the fields that accompany every answer.
ShortText headBegin(std::string_view status, WallTime now)
{
    ShortText head("HTTP/1.0 ");
    head << status << lineEnd << "Server: Orvalen" << lineEnd << "Date: " << httpDate(now) << lineEnd;
    return head;
}

void endWithLength(Answer &answer)
{
    const auto length = answer.page.size() + std::string_view(answer.composed).size();
    answer.head << "Content-Length: " << length << lineEnd << lineEnd;
}

Answer error(std::string_view status, std::string_view explanation, WallTime now)
{
    Answer answer{headBegin(status, now), {}, {}};
    answer.composed << "<!DOCTYPE html>\n<html lang=\"en\">\n<head><meta charset=\"utf-8\"><title>" << status
                    << "</title></head>\n<body><h1>" << status << "</h1><p>" << explanation << "</p></body>\n</html>\n";
    answer.head << "Connection: close" << lineEnd << htmlType;
    endWithLength(answer);
    return answer;
}

} // namespace

Route routeOf(const RequestHead &request)
{
    if (request.method == "HEAD")
        return Route::headOfAnything;
    if (request.method != "GET")
        return Route::notImplemented;
    if (request.path == "/")
        return Route::viewerPage;
    if (request.path == "/api/status")
        return Route::status;
    if (request.path == "/favicon.ico")
        return Route::favicon;
    if (request.path == "/stream.mjpg")
        return Route::stream;
    return Route::notFound;
}

Answer answerTo(Route route, WallTime now)
{
    switch (route) {
    case Route::viewerPage: {
        Answer answer{headBegin("200 OK", now), {}, viewerPage()};
        answer.head << htmlType;
        endWithLength(answer);
        return answer;
    }
    case Route::status: {
        Answer answer{headBegin("200 OK", now), statusObject(now), {}};
        answer.head << "Content-Type: application/json" << lineEnd;
        endWithLength(answer);
        return answer;
    }
    case Route::favicon: {
        Answer answer{headBegin("204 No Content", now), {}, {}};
        answer.head << lineEnd;
        return answer;
    }
    case Route::stream: {
        Answer answer{headBegin("200 OK", now), {}, {}};
        answer.head << "Age: 0\r\n"
                       "Cache-Control: no-cache, private, no-store, must-revalidate\r\n"
                       "Pragma: no-cache\r\n"
                       "Content-Type: multipart/x-mixed-replace; boundary=FRAME\r\n"
                    << lineEnd;
        return answer;
    }
    case Route::headOfAnything: {
        Answer answer{headBegin("200 OK", now), {}, {}};
        answer.head << htmlType << lineEnd;
        return answer;
    }
    case Route::notFound:
        return error("404 Not Found", "There is nothing under this address.", now);
    case Route::notImplemented:
        return error("501 Not Implemented", "Only GET and HEAD are understood.", now);
    case Route::tooLarge:
        return error("431 Request Header Fields Too Large", "The request is larger than this server reads.", now);
    case Route::malformed:
        break;
    }
    return error("400 Bad Request", "This was not a request.", now);
}

ShortText httpDate(WallTime now)
{
    static constexpr std::array weekdays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr std::array months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto today = std::chrono::floor<std::chrono::days>(now);
    const std::chrono::year_month_day date(today);
    const std::chrono::hh_mm_ss time(std::chrono::floor<std::chrono::seconds>(now) - today);
    ShortText text;
    text << weekdays[std::chrono::weekday(today).c_encoding()] << ", ";
    text.zeroPadded(static_cast<unsigned>(date.day()), 2)
        << " " << months[static_cast<unsigned>(date.month()) - 1] << " ";
    text.zeroPadded(static_cast<unsigned long>(static_cast<int>(date.year())), 4) << " ";
    text.zeroPadded(static_cast<unsigned long>(time.hours().count()), 2) << ":";
    text.zeroPadded(static_cast<unsigned long>(time.minutes().count()), 2) << ":";
    text.zeroPadded(static_cast<unsigned long>(time.seconds().count()), 2) << " GMT";
    return text;
}

ShortText statusObject(WallTime now)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(now);
    ShortText text("{\"status\": \"online\", \"time\": ");
    text << seconds.time_since_epoch().count() << ".";
    text.zeroPadded(static_cast<unsigned long>((now - seconds).count()), 6) << "}";
    return text;
}

ShortText partHead(std::size_t frameBytes)
{
    ShortText text("--FRAME\r\nContent-Type: image/jpeg\r\nContent-Length: ");
    text << frameBytes << lineEnd << lineEnd;
    return text;
}

} // namespace orvalen
