#include "streaming/server/RequestHead.h"

#include <cstdint>
#include <limits>

#include <boost/asio/buffer.hpp>
#include <boost/beast/http/basic_parser.hpp>

#include "streaming/server/Contract.h"

namespace orvalen {

namespace {

namespace http = boost::beast::http;

std::string_view viewOf(boost::beast::string_view text)
{
    return {text.data(), text.size()};
}

/// Keeps the first line and counts the fields.
class HeadParser : public http::basic_parser<true>
{
public:
    HeadParser()
    {
        header_limit(static_cast<std::uint32_t>(limits::requestHeadBytes)); // of the first line, and of the fields
        body_limit(std::numeric_limits<std::uint64_t>::max()); // bodies are never read: they may claim any length
    }

    std::string_view method;
    std::string_view target;

private:
    using ErrorCode = boost::beast::error_code;
    using Text = boost::beast::string_view;

    void on_request_impl(http::verb, Text sentMethod, Text sentTarget, int, ErrorCode &) override
    {
        method = viewOf(sentMethod);
        target = viewOf(sentTarget);
    }

    void on_field_impl(http::field, Text, Text, ErrorCode &error) override
    {
        if (++fields > limits::requestFields)
            error = http::error::header_limit;
    }

    void on_response_impl(int, Text, int, ErrorCode &) override {}
    void on_header_impl(ErrorCode &) override {}
    void on_body_init_impl(const boost::optional<std::uint64_t> &, ErrorCode &) override {}
    std::size_t on_body_impl(Text body, ErrorCode &) override { return body.size(); }
    void on_chunk_header_impl(std::uint64_t, Text, ErrorCode &) override {}
    std::size_t on_chunk_body_impl(std::uint64_t, Text body, ErrorCode &) override { return body.size(); }
    void on_finish_impl(ErrorCode &) override {}

    int fields = 0;
};

/// The part of a target from the path on.
std::string_view withoutHost(std::string_view target)
{
    const auto scheme = target.find("://");
    const auto firstOther =
        target.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+-.");
    if (scheme == std::string_view::npos || scheme == 0 || scheme != firstOther)
        return target;
    const auto begin = target.find_first_of("/?", scheme + 3);
    return begin == std::string_view::npos ? std::string_view() : target.substr(begin);
}

} // namespace

std::variant<RequestHead, NoRequest> parseRequestHead(std::string_view bytes)
{
    bytes = bytes.substr(0, limits::requestHeadBytes);
    HeadParser parser;
    boost::beast::error_code error;
    parser.put(boost::asio::const_buffer(bytes.data(), bytes.size()), error);
    if (error == http::error::header_limit)
        return NoRequest::tooLarge;
    if (error && error != http::error::need_more)
        return NoRequest::malformed;
    if (!parser.is_header_done())
        return bytes.size() >= limits::requestHeadBytes ? NoRequest::tooLarge : NoRequest::incomplete;

    const auto target = withoutHost(parser.target);
    const auto mark = target.find('?');
    RequestHead head{parser.method, target.substr(0, mark), {}};
    if (mark != std::string_view::npos)
        head.query = target.substr(mark + 1);
    if (head.path.empty())
        head.path = "/";
    return head;
}

} // namespace orvalen
