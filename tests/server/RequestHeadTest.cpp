#include "streaming/server/RequestHead.h"

#include <string>

#include <gtest/gtest.h>

#include "streaming/server/Contract.h"

namespace orvalen {
namespace {

/// "METHOD PATH QUERY", or why there is none.
std::string described(std::string_view bytes)
{
    const auto parsed = parseRequestHead(bytes);
    if (const auto *head = std::get_if<RequestHead>(&parsed))
        return std::string(head->method) + " " + std::string(head->path) + " " + std::string(head->query);
    switch (std::get<NoRequest>(parsed)) {
    case NoRequest::incomplete:
        return "incomplete";
    case NoRequest::malformed:
        return "malformed";
    case NoRequest::tooLarge:
        return "too large";
    }
    return "nothing that there is";
}

std::string lineAsHead(std::string_view line)
{
    return described(std::string(line) + "\r\n\r\n");
}

TEST(RequestHead, takesTheFirstLineApart)
{
    EXPECT_EQ(lineAsHead("GET / HTTP/1.0"), "GET / ");
    EXPECT_EQ(lineAsHead("GET /stream.mjpg?d=2&t=17 HTTP/1.1"), "GET /stream.mjpg d=2&t=17");
    EXPECT_EQ(lineAsHead("HEAD /a%20b?c?d HTTP/1.1"), "HEAD /a%20b c?d");
    EXPECT_EQ(lineAsHead("BREW /pot HTTP/1.1"), "BREW /pot ");
    EXPECT_EQ(lineAsHead("get / HTTP/1.1"), "get / ");
    EXPECT_EQ(lineAsHead("GET /\xc3\xa4 HTTP/1.1"), "GET /\xc3\xa4 ");
    EXPECT_EQ(lineAsHead("GET /? HTTP/1.1"), "GET / ");
}

TEST(RequestHead, findsThePathOfAWholeAddress)
{
    EXPECT_EQ(lineAsHead("GET http://10.0.0.7:8999/stream.mjpg?d=2 HTTP/1.1"), "GET /stream.mjpg d=2");
    EXPECT_EQ(lineAsHead("GET HTTP://host/ HTTP/1.1"), "GET / ");
    EXPECT_EQ(lineAsHead("GET http://host HTTP/1.1"), "GET / ");
    EXPECT_EQ(lineAsHead("GET http://host?d=3 HTTP/1.1"), "GET / d=3");
    EXPECT_EQ(lineAsHead("GET http:// HTTP/1.1"), "GET / ");
}

TEST(RequestHead, leavesOtherTargetsAsTheyAre)
{
    EXPECT_EQ(lineAsHead("OPTIONS * HTTP/1.1"), "OPTIONS * ");
    EXPECT_EQ(lineAsHead("CONNECT host:443 HTTP/1.1"), "CONNECT host:443 ");
    EXPECT_EQ(lineAsHead("GET //host/ HTTP/1.1"), "GET //host/ ");
    EXPECT_EQ(lineAsHead("GET ://host/ HTTP/1.1"), "GET ://host/ ");
    EXPECT_EQ(lineAsHead("GET stream.mjpg HTTP/1.1"), "GET stream.mjpg ");
    EXPECT_EQ(lineAsHead("GET /x?u=http://host/ HTTP/1.1"), "GET /x u=http://host/");
    EXPECT_EQ(lineAsHead("GET /x/http://host/ HTTP/1.1"), "GET /x/http://host/ ");
}

TEST(RequestHead, endsAtTheEmptyLine)
{
    EXPECT_EQ(described("POST / HTTP/1.1\r\nHost: a\r\nContent-Length: 99999999999\r\n\r\nand a body"), "POST / ");
    EXPECT_EQ(described("GET / HTTP/1.1\r\nHost: a\r\n\r\nGET /next HTTP/1.1\r\n\r\n"), "GET / ");
    EXPECT_EQ(described("POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nzz"), "POST / ");
}

TEST(RequestHead, isIncompleteUntilThen)
{
    const std::string whole = "GET /stream.mjpg?d=2 HTTP/1.1\r\nHost: a\r\nAccept: image/*\r\n\r\n";
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(described(whole.substr(0, length)), "incomplete") << length;
    EXPECT_EQ(described(whole), "GET /stream.mjpg d=2");
}

TEST(RequestHead, isNotMadeOfAnything)
{
    EXPECT_EQ(described(std::string("\x16\x03\x01\x02\x00\x01\x00", 7)), "malformed"); // somebody tries https
    EXPECT_EQ(described("\r\n\r\n"), "malformed");
    EXPECT_EQ(described("GET /\r\n"), "malformed");
    EXPECT_EQ(described("GET / HTTP/1.1\n\n"), "malformed");
    EXPECT_EQ(lineAsHead("GET  / HTTP/1.1"), "malformed");
    EXPECT_EQ(lineAsHead("GET / HTTP/2.0"), "malformed");
    EXPECT_EQ(lineAsHead("GET / FTP/1.1"), "malformed");
    EXPECT_EQ(lineAsHead("GET / HTTP/1.1 "), "malformed");
    EXPECT_EQ(lineAsHead("GET /\x01 HTTP/1.1"), "malformed");
    EXPECT_EQ(lineAsHead(std::string("GET /a\0b HTTP/1.1", 17)), "malformed");
    EXPECT_EQ(lineAsHead("GET / HTTP/1.1\r\nno field at all"), "malformed");
    EXPECT_EQ(lineAsHead("GET / HTTP/1.1\r\n: nameless"), "malformed");
    EXPECT_EQ(lineAsHead("POST / HTTP/1.1\r\nContent-Length: -1"), "malformed");
    EXPECT_EQ(lineAsHead("POST / HTTP/1.1\r\nContent-Length: 1\r\nContent-Length: 2"), "malformed");
}

TEST(RequestHead, hasABoundedNumberOfFields)
{
    std::string head = "GET / HTTP/1.1\r\n";
    for (int field = 0; field < limits::requestFields; ++field)
        head += "a: b\r\n";
    EXPECT_EQ(described(head + "\r\n"), "GET / ");
    EXPECT_EQ(described(head + "a: b\r\n\r\n"), "too large");
}

TEST(RequestHead, hasABoundedNumberOfBytes)
{
    const std::string begin = "GET / HTTP/1.1\r\na: ";
    const std::string end = "\r\n\r\n";
    const auto room = limits::requestHeadBytes - begin.size() - end.size();
    EXPECT_EQ(described(begin + std::string(room, 'b') + end), "GET / ");
    EXPECT_EQ(described(begin + std::string(room + 1, 'b') + end), "too large");
    EXPECT_EQ(described("GET /" + std::string(limits::requestHeadBytes, 'a')), "too large");
    EXPECT_EQ(described(std::string(limits::requestHeadBytes, 'A')), "too large");
}

} // namespace
} // namespace orvalen
